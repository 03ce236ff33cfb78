#include "platform/FolderListing.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>

namespace saltmarrow::platform {

namespace {

std::string resolved(const std::string &path) {
    std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr), &std::free);
    return real ? std::string(real.get()) : std::string();
}

// A name whose own entry is a link: what it points at decides.
void describeLink(FolderEntry &entry, const std::string &fullPath, int dirFd) {
    struct stat st {};
    const int rc = dirFd >= 0 ? fstatat(dirFd, entry.name.c_str(), &st, 0) : stat(fullPath.c_str(), &st);
    if (rc != 0) {
        entry.kind = EntryKind::Missing;
    } else if (S_ISDIR(st.st_mode)) {
        entry.kind = EntryKind::FolderLink;
    } else if (S_ISREG(st.st_mode)) {
        entry.target = resolved(fullPath);
        entry.kind = entry.target.empty() ? EntryKind::Missing : EntryKind::File;
        entry.size = static_cast<std::uint64_t>(st.st_size);
    } else {
        entry.kind = EntryKind::Other;
    }
}

void describe(FolderEntry &entry, const struct stat &st, const std::string &fullPath, int dirFd) {
    if (S_ISLNK(st.st_mode)) {
        describeLink(entry, fullPath, dirFd);
    } else if (S_ISDIR(st.st_mode)) {
        entry.kind = EntryKind::Folder;
    } else if (S_ISREG(st.st_mode)) {
        entry.kind = EntryKind::File;
        entry.size = static_cast<std::uint64_t>(st.st_size);
    } else {
        entry.kind = EntryKind::Other;
    }
}

std::string join(const std::string &folder, const std::string &name) {
    return !folder.empty() && folder.back() == '/' ? folder + name : folder + "/" + name;
}

}  // namespace

FolderListing listFolder(const std::string &path, const std::function<void()> &perEntry) {
    FolderListing listing;
    DIR *dir = opendir(path.c_str());
    if (!dir) {
        listing.error = errno;
        return listing;
    }
    const int fd = dirfd(dir);
    errno = 0;
    while (dirent *d = readdir(dir)) {
        if (perEntry) perEntry();
        FolderEntry entry;
        entry.name = d->d_name;
        if (entry.name == "." || entry.name == "..") continue;
        // The folder's own type word saves a stat for every subfolder.
        if (d->d_type == DT_DIR) {
            entry.kind = EntryKind::Folder;
        } else {
            struct stat st {};
            if (fstatat(fd, d->d_name, &st, AT_SYMLINK_NOFOLLOW) == 0)
                describe(entry, st, S_ISLNK(st.st_mode) ? join(path, entry.name) : std::string(), fd);
        }
        listing.entries.push_back(std::move(entry));
        errno = 0;
    }
    listing.error = errno;
    closedir(dir);
    listing.ok = listing.error == 0;
    std::sort(listing.entries.begin(), listing.entries.end(),
              [](const FolderEntry &a, const FolderEntry &b) { return a.name < b.name; });
    return listing;
}

FolderEntry inspectPath(const std::string &path) {
    FolderEntry entry;
    std::string trimmed = path;
    while (trimmed.size() > 1 && trimmed.back() == '/') trimmed.pop_back();
    const auto slash = trimmed.rfind('/');
    entry.name = slash == std::string::npos ? trimmed : trimmed.substr(slash + 1);
    struct stat st {};
    if (lstat(trimmed.c_str(), &st) == 0) describe(entry, st, trimmed, -1);
    return entry;
}

}  // namespace saltmarrow::platform
