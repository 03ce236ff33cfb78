#ifndef SALTMARROW_DISCOPS_SHEETFILE_H
#define SALTMARROW_DISCOPS_SHEETFILE_H

#include <fstream>
#include <optional>
#include <string>
#include <string_view>

// Reading and writing image sheets, and the few path questions the sheet
// checks ask. Sheets come from every kind of program: they are read with CR LF,
// LF or a lone CR as line end and always written back with CR LF.
namespace saltmarrow::discops {

// Hands out the lines of a sheet one at a time, whatever its line ends; a
// line end at the very end of the file gives no extra empty line.
class SheetReader {
public:
    // Raises a run-time error when path is not a readable regular file: a
    // folder or a device is never read as a sheet.
    explicit SheetReader(const std::string &path);
    bool next(std::string &line);
    // The sheet began with a UTF-8 byte order mark, which next() left out.
    bool hadByteOrderMark() const { return byteOrderMark_; }

private:
    std::ifstream in_;
    std::string pending_;  // what is left of the last piece after a lone CR
    std::size_t pendingAt_ = 0;
    bool havePending_ = false;
    bool first_ = true;
    bool byteOrderMark_ = false;
};

// Replaces the whole file with text, as is, through a temporary file beside it
// (replaceFileAtomically): a full disk or a crash never leaves half a sheet.
// Raises a run-time error when the file cannot be written (read-only sheet,
// vanished folder).
void writeSheet(const std::string &path, std::string_view text);

// The path questions of the checks, on the platform's own paths.
std::string parentFolder(std::string_view path);  // "" for a bare name
std::string fileNamePart(std::string_view path);  // behind the last "/" or "\"
std::string baseName(std::string_view path);      // file name without its extension
// path itself if absolute, else joined to base; "." and ".." folded away.
std::string resolvePath(std::string_view path, std::string_view base);
bool isRegularFile(const std::string &path);
// Two names of the same file. Names that do not exist are the same only if
// they spell the same canonical path.
bool sameFile(const std::string &a, const std::string &b);
// A regular file called name in folder; the file system is case-sensitive, but
// sheets written on other systems name their files in any case, so a name that
// differs only in case is taken when the exact one is missing.
std::optional<std::string> findInFolder(const std::string &folder, std::string_view name);
// The long form of a name as it stands on disk: the absolute path of an
// existing file or folder, the empty text if it is missing.
std::string longName(std::string_view path, std::string_view base);

}  // namespace saltmarrow::discops

#endif
