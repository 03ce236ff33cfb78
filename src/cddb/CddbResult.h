#ifndef SALTMARROW_CDDB_CDDBRESULT_H
#define SALTMARROW_CDDB_CDDBRESULT_H

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cddb/CddbSession.h"

namespace saltmarrow::cddb {

// Row 0: album title and album artist; row i: title and artist of track i.
using ResultTable = std::vector<std::pair<std::string, std::string>>;

// The names of the entry that was read, split into artist and title where the
// user chose it; at most maxTracks track rows.
ResultTable tracklist(const FreedbState &s, std::size_t maxTracks = SIZE_MAX);

// The length of each track of the entry, "mm:ss:ff", from the frame offsets
// among its "#" lines.
std::vector<std::string> entryTrackLengths(std::string_view cddbEntry);

}  // namespace saltmarrow::cddb

#endif
