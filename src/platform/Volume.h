#ifndef SALTMARROW_PLATFORM_VOLUME_H
#define SALTMARROW_PLATFORM_VOLUME_H

#include <cstdint>
#include <optional>
#include <string>

namespace saltmarrow::platform {

struct VolumeSpace {
    std::uint64_t availableBytes = 0;  // what an ordinary user may still write
    std::string mountPoint;            // the folder the file system is mounted on
};

// The file system that holds path, or would hold it: a path that does not
// exist yet is taken by its nearest existing parent. Nothing if none can be
// asked.
std::optional<VolumeSpace> volumeSpace(const std::string &path);

// A new empty folder below parent whose name the system makes unique, from
// prefix and six characters of its own. Empty if it cannot be made.
std::string makeTempFolder(const std::string &parent, const std::string &prefix);

}  // namespace saltmarrow::platform

#endif
