#include "discops/SheetCheck.h"

#include <cmath>
#include <filesystem>
#include <limits>

#include "discops/SheetFile.h"
#include "platform/Dialogs.h"
#include "support/RuntimeError.h"
#include "support/mdlFunctions.h"

namespace saltmarrow::discops {

namespace fs = std::filesystem;
using vb::InStr;
using vb::InStrRev;
using vb::Left;
using vb::Mid;
using vb::Right;
using vb::Trim;
using vb::UCase;

namespace {

constexpr std::string_view kCrLf = "\r\n";
constexpr int kQuestion = platform::mb::Question | platform::mb::YesNo;  // 36

struct TrackType {
    std::string_view word;
    std::int16_t blockSize;
};

// The TRACK type words of toc and cue sheets and the bytes of one block.
// clang-format off
constexpr TrackType kTrackTypes[] = {
    {"MODE1",          2048},
    {"MODE2_FORM1",    2048},
    {"MODE1/2048",     2048},
    {"MODE2_FORM2",    2324},
    {"MODE2",          2336},
    {"MODE2_FORM_MIX", 2336},
    {"MODE2/2336",     2336},
    {"CDI/2336",       2336},
    {"AUDIO",          2352},
    {"MODE1_RAW",      2352},
    {"MODE2_RAW",      2352},
    {"MODE2/2352",     2352},
    {"MODE1/2352",     2352},
    {"CDI/2352",       2352},
};
// clang-format on

// Only the start of a line matters; sheets can be long and so can lines.
std::string_view lineStart(std::string_view line, std::size_t length) {
    std::size_t first = line.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view() : line.substr(first, length);
}

bool isFileStatement(std::string_view line) {
    std::string start = UCase(lineStart(line, 8));
    return Left(start, 4) == "FILE" || start == "DATAFILE";
}

// Other programs write names with doubled quotes; four passes collapse the runs
// that occur in practice. True if there was anything to collapse.
bool collapseDoubledQuotes(std::string &line) {
    if (InStr(line, "\"\"") == 0) return false;
    for (int pass = 0; pass < 4; ++pass) line = vb::Replace(line, "\"\"", "\"");
    return true;
}

// A file statement cut around the name it gives. A name without its pair of
// quotes is taken as far as it goes, so that the line can be rebuilt quoted.
struct NamedStatement {
    std::string before;  // up to the opening quote, without it
    std::string name;
    std::string after;  // behind the closing quote
    bool quoted = false;

    std::string withName(std::string_view newName) const {
        return before + "\"" + std::string(newName) + "\"" + after;
    }
};

NamedStatement cutTocStatement(const std::string &line) {
    NamedStatement s;
    std::size_t q1 = InStr(line, "\"");
    if (q1 > 0) {
        std::size_t q2 = InStr(q1 + 1, line, "\"");
        s.before = Left(line, q1 - 1);
        if (q2 > 0) {
            s.name = Mid(line, q1 + 1, q2 - q1 - 1);
            s.after = Mid(line, q2 + 1);
            s.quoted = true;
        } else {
            s.name = vb::RTrim(Mid(line, q1 + 1));
        }
        return s;
    }
    // No quote at all: the word behind the keyword is the name.
    std::size_t keyword = line.find_first_not_of(' ');
    std::size_t keywordEnd = line.find(' ', keyword);
    std::size_t nameStart =
        keywordEnd == std::string::npos ? line.size() : line.find_first_not_of(' ', keywordEnd);
    if (nameStart == std::string::npos) nameStart = line.size();
    std::size_t nameEnd = line.find(' ', nameStart);
    if (nameEnd == std::string::npos) nameEnd = line.size();
    s.before = line.substr(0, nameStart);
    if (!s.before.empty() && s.before.back() != ' ') s.before += ' ';
    s.name = line.substr(nameStart, nameEnd - nameStart);
    s.after = line.substr(nameEnd);
    return s;
}

std::string fill(std::string text, std::string_view value) {
    return vb::Replace(text, "%1", value);
}

// The sheet is refused with a box; nothing else follows.
void refuse(CheckImageResult &result, std::string text, platform::Dialogs &dialogs) {
    result.refused = true;
    result.refusalText = std::move(text);
    dialogs.MsgBoxOverMe(result.refusalText, platform::mb::Exclamation, {});
}

// The question to correct the sheet, and the rewrite on Yes.
void offerFix(CheckImageResult &result, const std::string &sheet, const std::string &rebuilt,
              const std::string &header, const std::string &question, platform::Dialogs &dialogs) {
    if (result.report.empty()) return;
    result.asked = true;
    std::string text =
        header + std::string(kCrLf) + result.report + std::string(kCrLf) + std::string(kCrLf) + question;
    if (dialogs.MsgBoxOverMe(text, kQuestion, {}) != platform::mb::Yes) return;
    writeSheet(sheet, rebuilt);
    result.rewritten = true;
}

void checkTocSheet(const CheckImageInput &input, const std::string &sheet, CheckImageResult &result,
                   platform::Dialogs &dialogs, const MessageText &msg) {
    const std::string sheetFolder = parentFolder(sheet);
    const std::string current =
        input.workingFolder.empty() ? input.appDir + "/external" : input.workingFolder;
    bool doubleQuotes = false;
    bool incorrect = false;
    std::string rebuilt;
    SheetReader reader(sheet);
    result.read = true;
    std::string line;
    while (reader.next(line)) {
        if (isFileStatement(line)) {
            if (collapseDoubledQuotes(line)) doubleQuotes = true;
            NamedStatement s = cutTocStatement(line);
            std::string filePart = fileNamePart(s.name);
            std::string asNamed = resolvePath(s.name, current);
            if (auto candidate = findInFolder(sheetFolder, filePart)) {
                result.imageDataFile = *candidate;
                line = s.withName(*candidate);
                if (!s.quoted || !sameFile(asNamed, *candidate)) incorrect = true;
            } else if (isRegularFile(asNamed)) {
                if (!s.quoted) {
                    line = s.withName(s.name);
                    incorrect = true;
                }
            } else {
                // A name with no file part says more as the whole statement.
                refuse(result, fill(msg("msgNotFound"), filePart.empty() ? Trim(line) : filePart), dialogs);
                return;
            }
        }
        rebuilt += line;
        rebuilt += kCrLf;
    }
    result.workingFolder = input.appDir + "/external";
    if (reader.hadByteOrderMark()) result.report += std::string(kCrLf) + msg("msgSheetByteOrderMark");
    if (doubleQuotes) result.report += std::string(kCrLf) + msg("msgTocDoubleQuotes");
    if (incorrect) result.report += std::string(kCrLf) + msg("msgTocIncorrectDat");
    offerFix(result, sheet, rebuilt, msg("msgTocError"), msg("msgTocFix"), dialogs);
}

void checkCueSheet(const std::string &sheet, CheckImageResult &result, platform::Dialogs &dialogs,
                   const MessageText &msg) {
    const std::string sheetFolder = parentFolder(sheet);
    bool doubleQuotes = false;
    bool noQuotes = false;
    bool seenFile = false;
    std::string name;
    std::string candidate;
    std::string rebuilt;
    SheetReader reader(sheet);
    result.read = true;
    std::string line;
    while (reader.next(line)) {
        if (isFileStatement(line)) {
            // A second statement is refused before anything is made of it.
            if (seenFile) {
                refuse(result, msg("msgCUEOneFile"), dialogs);
                return;
            }
            seenFile = true;
            if (collapseDoubledQuotes(line)) doubleQuotes = true;
            std::size_t q1 = InStr(line, "\"");
            std::size_t q2 = q1 > 0 ? InStr(q1 + 1, line, "\"") : 0;
            if (q1 > 0 && q2 > 0) {
                name = Mid(line, q1 + 1, q2 - q1 - 1);
            } else {
                // The stretch between the first and the last blank, without
                // the stray quote of a name that was never closed.
                noQuotes = true;
                std::string t = Trim(line);
                std::size_t first = InStr(t, " ");
                std::size_t last = InStrRev(t, " ");
                name = (first > 0 && last > first) ? Mid(t, first + 1, last - first - 1) : std::string();
                name = Trim(vb::Replace(name, "\"", ""));
            }
            // The data file of a cue sheet bears the sheet's own name, whatever
            // the sheet says.
            auto found = findInFolder(sheetFolder, baseName(sheet) + ".bin");
            if (!found) {
                refuse(result, msg("msgCueSameFolder"), dialogs);
                return;
            }
            candidate = *found;
            result.imageDataFile = candidate;
            line = "FILE \"" + fileNamePart(candidate) + "\" BINARY";
        }
        rebuilt += line;
        rebuilt += kCrLf;
    }
    result.workingFolder = sheetFolder;
    if (reader.hadByteOrderMark()) result.report += std::string(kCrLf) + msg("msgSheetByteOrderMark");
    if (doubleQuotes) result.report += std::string(kCrLf) + msg("msgCueDoubleQuotes");
    if (seenFile && !sameFile(resolvePath(name, sheetFolder), candidate))
        result.report += std::string(kCrLf) + msg("msgCueIncorrectBin");
    if (noQuotes) result.report += std::string(kCrLf) + msg("msgCueNoQuotes");
    offerFix(result, sheet, rebuilt, msg("msgCueError"), msg("msgCueFix"), dialogs);
}

}  // namespace

std::optional<std::int16_t> blockSizeOfTrackType(std::string_view word) {
    for (const auto &row : kTrackTypes)
        if (row.word == word) return row.blockSize;
    std::size_t slash = InStr(word, "/");
    if (slash == 0) return std::nullopt;
    double value = std::nearbyint(vb::Val(Mid(word, slash + 1)));
    if (value < std::numeric_limits<std::int16_t>::min() || value > std::numeric_limits<std::int16_t>::max())
        raiseError(err::Overflow);
    return static_cast<std::int16_t>(value);
}

CheckImageResult checkImage(const CheckImageInput &input, platform::Dialogs &dialogs,
                            const MessageText &msg) {
    CheckImageResult result;
    const std::string ending = UCase(Right(input.strFilename, 4));
    if (ending == ".ISO") {
        result.imageDataFile = input.strFilename;
        return result;
    }
    if (ending != ".CUE" && ending != ".TOC") return result;
    if (!input.chkCheckCUE) return result;

    const std::string base = input.workingFolder.empty() ? input.appDir + "/external" : input.workingFolder;
    const std::string sheet = resolvePath(input.strFilename, base);
    if (ending == ".TOC")
        checkTocSheet(input, sheet, result, dialogs, msg);
    else
        checkCueSheet(sheet, result, dialogs, msg);
    return result;
}

std::int16_t checkTOC(const std::string &path, std::string_view action, std::int16_t &imageBlockSize,
                      const std::string &workingFolder) {
    const bool cue = UCase(Right(path, 4)) == ".CUE";
    const std::string sheet = resolvePath(path, workingFolder);
    const std::string sheetFolder = parentFolder(sheet);
    std::string rebuilt;
    {
        SheetReader reader(sheet);
        std::string line;
        while (reader.next(line)) {
            // "FILE " finds "DATAFILE " as well. A line without a quote names
            // nothing cdrdao could read and is left alone.
            std::size_t quote = InStr(line, "\"");
            if (quote > 0 && InStr(line, "FILE ", vb::Compare::Text) > 0) {
                std::string raw = Mid(line, quote + 1);
                if (std::size_t close = InStr(raw, "\""); close > 0) raw = Left(raw, close - 1);
                std::string name = vb::Replace(raw, "\\", "/");
                std::string asNamed = resolvePath(name, workingFolder);
                if (!name.empty() && isRegularFile(asNamed)) {
                    if (action == kTocDelete) {
                        std::error_code ec;
                        fs::remove(asNamed, ec);
                        if (ec) raiseError(err::PermissionDenied);
                    }
                } else if (auto beside = findInFolder(sheetFolder, fileNamePart(name))) {
                    line = Left(line, quote) + *beside + Mid(line, quote + 1 + raw.size());
                }
            }
            if (vb::equalsText(lineStart(line, 6), "TRACK ")) {
                std::string type = vb::LTrim(Mid(Trim(line), 7));
                // A cue line reads "TRACK 01 MODE1/2352": the number goes first.
                if (cue) type = Mid(type, InStr(type, " ") + 1);
                type = Trim(type);
                if (std::size_t blank = InStr(type, " "); blank > 0) type = Left(type, blank - 1);
                if (auto size = blockSizeOfTrackType(UCase(type))) imageBlockSize = *size;
            }
            rebuilt += line;
            rebuilt += kCrLf;
        }
    }
    if (action == kTocRepair) writeSheet(sheet, rebuilt);
    return imageBlockSize == 0 ? static_cast<std::int16_t>(2048) : imageBlockSize;
}

}  // namespace saltmarrow::discops
