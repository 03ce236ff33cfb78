#include "audio/AudioHost.h"

namespace saltmarrow {

std::optional<platform::VolumeSpace> AudioHost::space(const std::string &path) const {
    return freeSpace ? freeSpace(path) : platform::volumeSpace(path);
}

}  // namespace saltmarrow
