#ifndef SALTMARROW_PLATFORM_FILES_H
#define SALTMARROW_PLATFORM_FILES_H

#include <filesystem>
#include <string>

// The file questions the jobs ask where a failure is an answer, not an error.
namespace saltmarrow::platform {

// Whether anything stands at path; a path that cannot be asked about is not there.
inline bool exists(const std::string &path) {
    std::error_code ec;
    return std::filesystem::exists(path, ec);
}

// Removes the file at path if it is there, and says nothing when it cannot.
inline void removeFile(const std::string &path) {
    std::error_code ec;
    std::filesystem::remove(path, ec);
}

}  // namespace saltmarrow::platform

#endif
