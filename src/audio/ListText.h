#ifndef SALTMARROW_AUDIO_LISTTEXT_H
#define SALTMARROW_AUDIO_LISTTEXT_H

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace saltmarrow {

// Hands each line of a play list or sheet to line, as UTF-8 without its line
// end (CR LF, LF or a lone CR). A file that is valid UTF-8 is taken as such,
// any other as Latin-1; a byte order mark is never part of the first line.
// False when path is not a regular file that can be read.
bool readListLines(const std::string &path, const std::function<void(const std::string &line)> &line);

// A time "mm:ss:ff" in frames of 1/75 second, exact, or nothing when the text
// is not one (seconds from 0 to 59, frames from 0 to 74, blanks around allowed).
std::optional<std::int64_t> framesOfTime(std::string_view text);
std::string timeOfFrames(std::int64_t frames);

// The absolute, normalised path of an existing file or folder, links left as
// they are (a row keeps the name the user gave); empty when it is missing.
std::string longPathName(const std::string &path);

// The files that a list names. A name is taken as it stands, relative to the
// list's own folder; a name that is not found there is looked for by its
// file name alone (behind the last "/" or "\") in the list's folder, which is
// how a list written on another system, or moved, is repaired.
class ListPaths {
public:
    explicit ListPaths(const std::string &listPath);
    // The absolute path of the file, or nothing when neither way finds it.
    std::optional<std::string> find(const std::string &named);
    const std::string &folder() const { return folder_; }
    bool repaired = false;

private:
    std::string folder_;
    // The folder's files by lower-cased name, read once when first needed:
    // names from other systems come in any case.
    std::optional<std::map<std::string, std::string>> byLowerName_;
};

}  // namespace saltmarrow

#endif
