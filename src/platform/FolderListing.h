#ifndef SALTMARROW_PLATFORM_FOLDERLISTING_H
#define SALTMARROW_PLATFORM_FOLDERLISTING_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace saltmarrow::platform {

// What a name in a folder stands for, as a data project sees it. A link is
// looked through once: to a file it is that file; to a folder it is never
// followed, so that a link loop cannot hold a walk.
enum class EntryKind : unsigned char {
    Missing,     // gone since it was listed, or a link that points nowhere
    File,        // a regular file, or a link to one
    Folder,      // a real folder
    FolderLink,  // a link to a folder
    Other,       // a pipe, a socket, a device: nothing a disc can hold
};

struct FolderEntry {
    std::string name;  // the bytes the file system holds
    EntryKind kind = EntryKind::Missing;
    std::uint64_t size = 0;  // of a file (the target's for a link)
    std::string target;      // a link to a file: the file it resolves to
};

struct FolderListing {
    bool ok = false;
    int error = 0;                     // errno of a folder that could not be read
    std::vector<FolderEntry> entries;  // sorted by name, without "." and ".."
};

// Reads the whole folder before the caller acts on any of it. perEntry runs
// once per name read, so that a caller can keep the interface alive.
FolderListing listFolder(const std::string &path, const std::function<void()> &perEntry = {});

// One path, as listFolder would describe it; name is the last element.
FolderEntry inspectPath(const std::string &path);

}  // namespace saltmarrow::platform

#endif
