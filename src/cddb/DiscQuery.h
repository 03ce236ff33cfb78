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

// lengthsMs[0] is the lead-in before the first track, lengthsMs[1..n] the
// lengths of the n tracks. No query without a track.
std::optional<DiscQuery> discQuery(const std::vector<long> &lengthsMs);

}  // namespace saltmarrow::cddb

#endif
