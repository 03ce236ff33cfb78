#include "platform/Volume.h"

#include <sys/stat.h>
#include <sys/statvfs.h>

#include <cstdlib>
#include <filesystem>
#include <vector>

namespace saltmarrow::platform {

namespace fs = std::filesystem;

std::optional<VolumeSpace> volumeSpace(const std::string &path) {
    std::error_code ec;
    fs::path at = fs::absolute(path.empty() ? fs::path(".") : fs::path(path), ec).lexically_normal();
    if (ec) return std::nullopt;
    while (!fs::exists(at, ec) && at.has_relative_path()) at = at.parent_path();
    struct statvfs vfs {};
    struct stat st {};
    if (::statvfs(at.c_str(), &vfs) != 0 || ::stat(at.c_str(), &st) != 0) return std::nullopt;
    VolumeSpace space;
    space.availableBytes = static_cast<std::uint64_t>(vfs.f_bavail) * vfs.f_frsize;
    // The mount point is the highest folder above that is still on the same device.
    fs::path mount = at;
    while (mount.has_relative_path()) {
        struct stat up {};
        if (::stat(mount.parent_path().c_str(), &up) != 0 || up.st_dev != st.st_dev) break;
        mount = mount.parent_path();
    }
    space.mountPoint = mount.string();
    return space;
}

std::string makeTempFolder(const std::string &parent, const std::string &prefix) {
    std::string pattern = (fs::path(parent) / (prefix + "XXXXXX")).string();
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    if (::mkdtemp(name.data()) == nullptr) return {};
    return name.data();
}

}  // namespace saltmarrow::platform
