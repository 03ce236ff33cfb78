#include "shell/VersionText.h"

namespace saltmarrow {

std::string versionText(int major, int minor, int revision, const std::string &preRelease) {
    std::string v = std::to_string(major) + "." + std::to_string(minor);
    if (revision > 0 && revision < 27) v += static_cast<char>(96 + revision);
    if (!preRelease.empty()) v += " " + preRelease;
    return v;
}

}  // namespace saltmarrow
