#ifndef SALTMARROW_DATA_FOLDEROBJECTS_H
#define SALTMARROW_DATA_FOLDEROBJECTS_H

#include <string>
#include <string_view>

namespace saltmarrow::data {

// One item of a data project, a file or a folder, as the rest of the program
// reads it. The project keeps its items in a compact form of its own and
// hands out this record on request.
struct FolderObjects {
    std::string Name;      // the name on the disc; renaming changes it
    std::string OrigName;  // the name when added, after fileNameCheck: the key in its folder
    bool isFolder = false;
    double Size = 0;  // bytes; a folder's is the sum of all below it
    short SortOrder = 0;
    std::string SourcePath;  // empty for a folder made with New Folder
    std::string IconKey;     // "folder" for folders
};

// The name an item gets on the disc: ";" becomes "_" and "=" stays (the path
// list escapes it). Names are bytes here: a "\" (the tree's separator) and a
// "/" become "_", and so does every byte that is not part of valid UTF-8, so
// that a Joliet tree can hold the name.
std::string fileNameCheck(std::string_view name);

// A path list holds one entry a line: a name with a line break cannot go in.
bool hasLineBreak(std::string_view name);

// Tree keys and display paths are names joined by "\".
std::string_view lastElement(std::string_view key);
std::string_view parentKey(std::string_view key);  // empty for a key without "\"

// File system paths: the last element, the folder above it, and a join that
// does not double the "/" of the root.
std::string_view pathLeaf(std::string_view path);
std::string pathParent(std::string_view path);
std::string joinPath(std::string_view folder, std::string_view name);
// "/" is the one drive root: it has no parent folder.
bool isDriveRoot(std::string_view path);

// A byte count through "####,###,###,##0", with the given group separator.
std::string formatSize(double bytes, std::string_view separator = ",");

// The order of listFiles and treeFolders: folders before files, each by name
// (letters compared without case, then as bytes).
bool listsBefore(bool aFolder, std::string_view a, bool bFolder, std::string_view b);

}  // namespace saltmarrow::data

#endif
