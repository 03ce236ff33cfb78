#ifndef SALTMARROW_AUDIO_AUDIOPROJECT_H
#define SALTMARROW_AUDIO_AUDIOPROJECT_H

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

// One row of the track list: what it shows and the key of its record.
struct TrackRow {
    std::string Tag;       // key into colAllTracks
    std::string text;      // the name column
    std::string pause;     // sub-item 1
    std::string length;    // sub-item 2
    std::string position;  // sub-item 3, hidden: the place in the list, "00"
    bool selected = false;
};

// What adding reads of the form at that moment.
struct AddOptions {
    bool chk2secgap = true;
    bool mnuCDText = true;
    std::string audioExtensions = "*.wav";  // the kinds a decoder is installed for
};

enum class AddResult { Added, Routed, Ignored, Refused };

// The status of the project's length: the bar of an 80 minute disc and panel 1.
struct Totals {
    int barValue = 0;
    std::string panel;
};

inline constexpr int kDiscSeconds = 4800;  // 80 minutes

// The audio project: the rows in their order, the records in a keyed map
// beside them, the album fields. Every rule of the track list lives here; the
// form shows the rows and forwards the user's commands.
class AudioProject {
public:
    std::vector<TrackRow> rows;
    std::map<std::string, AudioObjects> colAllTracks;
    std::string strAlbumTitle;
    std::string strAlbumArtist;
    std::string strAlbumCatalog;
    double totalUsed = 0;  // seconds
    // The play lists being read now: a list that names itself, or one that
    // names it back, is not read again.
    std::vector<std::string> listsOpen;

    std::size_t count() const { return rows.size(); }
    AudioObjects &track(std::size_t row) { return colAllTracks.at(rows.at(row).Tag); }
    const AudioObjects &track(std::size_t row) const { return colAllTracks.at(rows.at(row).Tag); }
    std::optional<std::size_t> selectedRow() const;

    // One file at the end of the list; an empty Pause or Length takes the
    // default. Play lists and sheets are imported (ListImport.h).
    AddResult addTrack(const std::string &FullPath, const std::string &Pause, const std::string &Start,
                       const std::string &Length, const AddOptions &options, const AudioHost &host);
    // The plain files of one folder, without its lists and sheets, in order.
    void addFolder(const std::string &folder, const AddOptions &options, const AudioHost &host);
    // Files from the file dialog or a drop: folders are added at once, the
    // files after them in sorted order.
    void addFiles(std::vector<std::string> paths, const AddOptions &options, const AudioHost &host);
    // A made record under a new key (with keySuffix behind it); returns its row.
    std::size_t appendTrack(AudioObjects record, const std::string &rowText, std::string_view keySuffix = {});

    Totals updateTotals(const AudioHost &host);
    void refreshTrackNames(bool useCDText);
    void findAlbumNames();

    // A click on a column header: the one captioned "Track" sorts by name.
    void columnClick(bool trackColumn);
    // Swap with the row above (below); the row's new place, or nothing.
    std::optional<std::size_t> moveUp(std::size_t row);
    std::optional<std::size_t> moveDown(std::size_t row);
    void removeSelected();
    void clear();
    void allToCurrentPause(std::size_t row);
    // Names from file names: %1 artist, %2 title, %3 album, %4 track number,
    // %0 (and any other token) discarded. Literal text is skipped by count.
    void filterFilename(const std::string &filter, bool selectedOnly);

    // The play list of mnuSaveTracklist.
    std::string tracklistText() const;
    // Track lengths for the disc database: the first pause, then each track
    // with the gap in front of the next one when that is a PREGAP.
    std::vector<long> freedbLengths() const;
    void applyFreedb(const FreedbResult &result);

private:
    std::string newKey(std::string_view suffix);
    void renumber();

    std::mt19937 random_{std::random_device{}()};
};

// Path pieces, by "/" alone: a backslash is a character of a Linux name.
std::string fileNameOf(const std::string &path);
std::string baseNameOf(const std::string &path);
std::string extensionOf(const std::string &path);  // upper-cased, without the dot

// Ascending by plain byte comparison.
void sortPaths(std::vector<std::string> &paths);

// "03 - Title", or the title alone without a track number.
std::string mergedTitle(const AudioObjects &track);

}  // namespace saltmarrow

#endif
