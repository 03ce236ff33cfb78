#ifndef SALTMARROW_EXTRACT_EXTRACTDISC_H
#define SALTMARROW_EXTRACT_EXTRACTDISC_H

#include <cstddef>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "audio/AudioHost.h"
#include "audio/AudioObjects.h"

namespace saltmarrow {

inline constexpr std::string_view kUnknownArtist = "Unknown Artist";
inline constexpr std::string_view kUnknownAlbum = "Unknown Album";
inline constexpr std::string_view kUnknownTitle = "Unknown Title";

// One row of the extraction list: the key of its record, what it shows, the
// number the track has on the disc, and the user's selection.
struct ExtractRow {
    std::string Tag;
    std::string text;
    int discTrack = 0;
    bool selected = false;
};

// The audio tracks of the disc in the reader, as cdda2wav's scan lists them,
// with the names of the disc. Rows are numbered by their place in the list;
// a data track gets none, but each row keeps the track's own number on the
// disc, which is what cdda2wav reads by.
class ExtractDisc {
public:
    std::string extractArtist{kUnknownArtist};
    std::string extractAlbum{kUnknownAlbum};
    std::vector<ExtractRow> rows;
    std::map<std::string, AudioObjects> extractTracks;

    // Unknown names and no rows, as a scan begins.
    void clear();
    // One line of the scan (icedax's "-gui" form of the table of contents).
    void recieveCDDA2WAV_TOC(std::string_view line);

    std::size_t count() const { return rows.size(); }
    AudioObjects &track(std::size_t row) { return extractTracks.at(rows.at(row).Tag); }
    const AudioObjects &track(std::size_t row) const { return extractTracks.at(rows.at(row).Tag); }
    std::string caption() const { return extractArtist + " - " + extractAlbum; }
    std::size_t selectedCount() const;
    double selectedSeconds() const;
    // The row that holds track discTrack of the disc.
    std::optional<std::size_t> rowOfDiscTrack(int discTrack) const;

    // The lengths the disc database asks by: the lead-in before the first
    // track, then each track with the pause in front of the next.
    std::vector<long> freedbLengths() const;
    // Album title and artist from row 0, title and artist of each track after.
    void applyFreedb(const FreedbResult &result);
    // A row's text as the user edited it names the track anew.
    void renameRow(std::size_t row, std::string_view text);

private:
    void setRowText(std::size_t row);
    std::string newKey();
    std::mt19937 random_{std::random_device{}()};
};

// "01" for the first row.
std::string rowNumber(std::size_t row);
// A name from the disc or the database as the program uses it: control
// characters become blanks, and the ends are trimmed.
std::string cleanName(std::string_view text);

}  // namespace saltmarrow

#endif
