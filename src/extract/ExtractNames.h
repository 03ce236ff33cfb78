#ifndef SALTMARROW_EXTRACT_EXTRACTNAMES_H
#define SALTMARROW_EXTRACT_EXTRACTNAMES_H

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace saltmarrow {

// Markers and what they stand for, tried in this order at each place.
using Marker = std::pair<std::string_view, std::string>;

// Replaces the markers in one pass: what a marker puts in is never read again,
// so a title holding "%2" stays a title.
std::string replaceMarkers(std::string_view text, std::span<const Marker> markers);

// What the markers of the file name template stand for, for one track.
struct NameValues {
    std::string artist;      // %1, the disc's artist
    std::string album;       // %2, the disc's album
    std::string number;      // %3, the row, "01"
    std::string title;       // %4
    std::string trackAlbum;  // %5, the track's album
};

// A name as a piece of a path: "/" becomes "-" and "\" goes, so "AC/DC" stays
// one name.
std::string pathValue(std::string_view name);

// The message key of a template that cannot name a file below the output
// folder (empty, absolute, or climbing out with ".."); none when it can.
std::optional<std::string_view> templateProblem(std::string_view pattern);

// The folders and the file name, below the output folder, that the template
// gives for a track. "\" and "/" both separate folders; empty pieces drop out,
// and a piece of dots alone ("..") has them turned into "_".
std::vector<std::string> fillTemplate(std::string_view pattern, const NameValues &values);

// Creates the folders below base, level by level, and makes sure the file
// name.extension can be written there. Returns the path without extension,
// or none with the folder that cannot be written to in failed.
std::optional<std::string> prepareTarget(const std::string &base, const std::vector<std::string> &pieces,
                                         const std::string &extension, std::string &failed);

}  // namespace saltmarrow

#endif
