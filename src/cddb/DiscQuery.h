#ifndef SALTMARROW_CDDB_DISCQUERY_H
#define SALTMARROW_CDDB_DISCQUERY_H

#include <optional>
#include <string>
#include <vector>

namespace saltmarrow::cddb {

// What a disc database is asked for a disc, from its lengths.
struct DiscQuery {
    std::string discId;   // eight lower-case hex digits for discs of up to 255 tracks
    std::string offsets;  // track count, frame offset of each track, disc length in seconds
    long seconds = 0;     // disc length, lead-in included
    std::string query;    // the query command, with its trailing blank
};

// One row of an audio project, as far as its place on the disc goes.
struct TrackTiming {
    std::string Pause;  // "mm:ss:ff"
    std::string Length;
    std::string PregapType;  // "PREGAP", "PRE_TRACK" or "POST_TRACK"
};

// The lengths a disc of these rows is asked for by: the first row's pause
// stands for the lead-in; each track counts with the pause of the row after
// it where that pause is a gap of silence of its own ("PREGAP").
std::vector<long> discLengths(const std::vector<TrackTiming> &rows);

// lengthsMs[0] is the lead-in before the first track, lengthsMs[1..n] the
// lengths of the n tracks. No query without a track.
std::optional<DiscQuery> discQuery(const std::vector<long> &lengthsMs);

}  // namespace saltmarrow::cddb

#endif
