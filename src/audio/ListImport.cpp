#include "audio/ListImport.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <set>

#include "audio/ListText.h"
#include "audio/mdlMediaInfo.h"
#include "platform/Dialogs.h"
#include "support/TimeText.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace fs = std::filesystem;
namespace mb = platform::mb;

namespace {

// Stands in a block for a file that could not be found: the block makes no track.
constexpr std::string_view kRemoveMe = "REMOVE_ME";
constexpr std::string_view kNoTime = "00:00:00";
constexpr long kSamplesPerFrame = 588;  // 44100 / 75

std::string trimLine(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(" \t");
    if (begin == std::string_view::npos) return {};
    return std::string(text.substr(begin, text.find_last_not_of(" \t") - begin + 1));
}

// The text between the first pair of double quotes at or after position from.
std::optional<std::string> betweenQuotes(std::string_view line, std::size_t from = 1) {
    const std::size_t open = vb::InStr(from, line, "\"");
    const std::size_t close = open ? vb::InStr(open + 1, line, "\"") : 0;
    if (!close) return std::nullopt;
    return vb::Mid(line, open + 1, close - open - 1);
}

// The line with the text inside double quotes blanked out, so that a keyword
// is never found inside a title or a file name.
std::string outsideQuotes(std::string_view line) {
    std::string out(line);
    bool inside = false;
    for (char &c : out) {
        if (c == '"')
            inside = !inside;
        else if (inside)
            c = '_';
    }
    return out;
}

std::string withoutQuotes(std::string_view text) {
    return vb::Replace(text, "\"", "");
}

std::string twoDigits(std::size_t n) {
    char text[24];
    std::snprintf(text, sizeof text, "%02zu", n);
    return text;
}

// A time as sheets write it, "mm:ss:ff", or a count of samples; empty for
// anything else ("99:99:99", "ab:cd:ef"), which counts as not given.
std::string sheetTime(std::string_view text) {
    const std::string t = trimLine(text);
    if (!t.empty() && t.size() <= 12 && t.find_first_not_of("0123456789") == std::string::npos)
        return timeOfFrames(std::stoll(t) / kSamplesPerFrame);
    const std::optional<std::int64_t> frames = framesOfTime(t);
    return frames ? timeOfFrames(*frames) : std::string();
}

// What follows keyword in line (both as found outside quotes), trimmed.
std::string behind(const std::string &line, const std::string &plain, std::string_view keyword) {
    return trimLine(vb::Mid(line, vb::InStr(plain, keyword) + keyword.size()));
}

std::string percentDecoded(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && std::isxdigit(static_cast<unsigned char>(text[i + 1])) &&
            std::isxdigit(static_cast<unsigned char>(text[i + 2]))) {
            out += static_cast<char>(std::stoi(std::string(text.substr(i + 1, 2)), nullptr, 16));
            i += 2;
        } else {
            out += text[i];
        }
    }
    return out;
}

// The path of what follows "file:": "//host/path" loses its host, and "%20"
// is a blank.
std::string fromFileUrl(std::string_view rest) {
    if (rest.starts_with("//")) {
        const std::size_t slash = rest.find('/', 2);
        rest = slash == std::string_view::npos ? std::string_view() : rest.substr(slash);
    }
    return percentDecoded(rest);
}

// What a cue or TOC block gathers until its end.
struct Block {
    std::string pause, index0, index1, type, isrc, title, performer;
    std::string start, length;  // of a TOC's FILE statement
};

// The work shared by the cue and TOC imports: the CD-Text question, the files
// and their headers, the album fields of the first block, the records.
class SheetImport {
public:
    SheetImport(AudioProject &project, const std::string &path, const AddOptions &options,
                const AudioHost &host, std::string_view question)
        : project(project),
          options(options),
          host(host),
          paths(path),
          first(project.count()),
          question_(question) {}

    // Asked once per import, at the first line that has CD-Text.
    void askCDText() {
        if (answer_.empty())
            answer_ =
                host.msgBox(host.text(question_), mb::YesNo | mb::Question) == mb::Yes ? "True" : "False";
    }
    bool cdText() const { return answer_ == "True"; }

    // The title or performer of a line goes to the block, or to the next
    // block when the block has one already.
    void name(std::string &field, std::string &overflow, const std::string &line, std::size_t at) {
        askCDText();
        const std::string text = betweenQuotes(line, at).value_or("");
        (field.empty() ? field : overflow) = text;
    }

    // The file that a FILE statement names, found or repaired; when it is
    // lost the user is told and the block is marked to make no track.
    std::string file(const std::string &named) {
        if (auto found = paths.find(named)) return *found;
        if (told_.insert(named).second) host.msgBox(host.format("msgNotFound", named), mb::Information);
        return std::string(kRemoveMe);
    }
    static bool real(const std::string &file) { return !file.empty() && file != kRemoveMe; }
    void readHeader(const std::string &file) { header = real(file) ? readMediaInfo(file) : MediaFileInfo{}; }

    void album(const Block &b) {
        if (cdText() && !b.title.empty()) project.strAlbumTitle = b.title;
        if (cdText() && !b.performer.empty()) project.strAlbumArtist = b.performer;
        if (!catalog.empty()) project.strAlbumCatalog = catalog;
    }

    AudioObjects record(const Block &b, const std::string &fullPath) const {
        AudioObjects t;
        t.Album = cdText() ? project.strAlbumTitle : vb::Trim(header.Album);
        t.Artist = cdText() ? b.performer : vb::Trim(header.Artist);
        t.Title = cdText() ? b.title : vb::Trim(header.Title);
        t.Comments = vb::Trim(header.Comments);
        t.Genre = vb::Trim(header.Genre);
        t.Year = vb::Trim(header.Year);
        t.TrackNumber = t.Index = twoDigits(project.count() + 1);
        t.ISRC = b.isrc;
        if (!t.Title.empty()) t.ID3merged = mergedTitle(t);
        // The row's name for now: the names are made again at the end.
        if (options.mnuCDText)
            t.Track = t.Title.empty() ? baseNameOf(fullPath) : t.ID3merged;
        else
            t.Text = fileNameOf(fullPath);
        t.Millisecs = header.Millisecs;
        t.OrigLength = t.Finish = t.Length = msToTrackTime(header.Millisecs);
        t.Frequency = static_cast<float>(header.Frequency);
        t.DataLength = static_cast<float>(header.DataLength);
        t.Channels = header.Channels;
        t.Bitrate = header.Bitrate;
        t.Samples = header.Samples;
        t.FullPath = fullPath;
        t.PregapType = b.type;
        return t;
    }

    void append(AudioObjects t) {
        const std::string text = t.Track;
        project.appendTrack(std::move(t), text);
    }

    void end() {
        project.refreshTrackNames(options.mnuCDText);
        if (paths.repaired) host.msgBox(host.text("msgIncorrectPathsReparied"), mb::Information);
    }

    AudioProject &project;
    const AddOptions &options;
    const AudioHost &host;
    ListPaths paths;
    const std::size_t first;  // the first row of this import
    MediaFileInfo header;     // of the file in use
    std::string catalog;
    bool firstBlock = true;

private:
    std::string question_;
    std::string answer_;          // "True" or "False" once asked
    std::set<std::string> told_;  // lost files are named once
};

std::int64_t ms(const std::string &time) {
    return trackTimeToMs(time);
}

}  // namespace

void importTrackList(AudioProject &project, const std::string &path, const AddOptions &options,
                     const AudioHost &host) {
    std::error_code ec;
    std::string self = fs::weakly_canonical(path, ec).string();
    if (ec) self = path;
    if (std::find(project.listsOpen.begin(), project.listsOpen.end(), self) != project.listsOpen.end())
        return;
    project.listsOpen.push_back(self);
    struct Close {
        std::vector<std::string> &open;
        ~Close() { open.pop_back(); }
    } close{project.listsOpen};

    ListPaths paths(path);
    readListLines(path, [&](const std::string &text) {
        host.events();
        std::string line = trimLine(text);
        const std::size_t url = vb::InStr(line, "file:");
        if (url) line = vb::Mid(line, url + 5);  // BPL entries and URLs
        if (vb::InStr(line, "FILE ")) line = betweenQuotes(line).value_or(line);
        if (const std::size_t equals = vb::InStr(line, "=")) line = vb::Mid(line, equals + 1);  // PLS
        line.erase(std::remove_if(line.begin(), line.end(), [](char c) { return c == '"' || c == '>'; }),
                   line.end());
        if (url) line = fromFileUrl(line);
        // Comments and titles name no file and go by without a word.
        if (auto file = paths.find(line)) project.addTrack(*file, "", "00:00:00", "", options, host);
    });
    if (paths.repaired) host.msgBox(host.text("msgIncorrectPathsReparied"), mb::Information);
}

void importCUEFile(AudioProject &project, const std::string &path, const AddOptions &options,
                   const AudioHost &host) {
    SheetImport s(project, path, options, host, "msgCUEImportCDText");
    Block b;
    std::string nextTitle, nextPerformer;
    // The file of the block, the file named for the next one, and the file
    // that a block without one of its own lies in.
    std::string current, pending, shared;

    const auto endBlock = [&] {
        if (s.firstBlock) {
            s.album(b);
            s.firstBlock = false;
        } else {
            const std::string in = current.empty() ? shared : current;
            if (SheetImport::real(in)) {
                AudioObjects t = s.record(b, current);
                std::string index1 = b.index1, pause = b.pause;
                if (b.type == "PRE_TRACK") {
                    // The gap belongs to the track: it starts at index 0.
                    pause = msToTrackTime(ms(b.index1) - ms(b.index0));
                    index1 = b.index0;
                } else if (b.type == "POST_TRACK" && project.count() > 0) {
                    pause = msToTrackTime(project.track(project.count() - 1).Millisecs - ms(b.index0));
                }
                t.Pause = pause.empty() ? std::string(kNoTime) : pause;
                t.Start = index1.empty() || index1 == "0" ? std::string(kNoTime) : index1;
                s.append(std::move(t));
            }
            shared = in;
            current = pending;
            pending.clear();
            if (!current.empty()) s.readHeader(current);
        }
        b = Block{};
        b.title = std::move(nextTitle);
        b.performer = std::move(nextPerformer);
        nextTitle.clear();
        nextPerformer.clear();
    };

    const bool read = readListLines(path, [&](const std::string &text) {
        host.events();
        const std::string line = trimLine(text);
        const std::string plain = outsideQuotes(line);
        const auto has = [&](std::string_view keyword) { return vb::InStr(plain, keyword) > 0; };
        if (plain.starts_with("TRACK ") && plain.ends_with(" AUDIO")) endBlock();  // a data track ends none
        if (has("INDEX 01 ")) {
            b.index1 = sheetTime(behind(line, plain, "INDEX 01 "));
            if (!b.index0.empty() && !b.index1.empty() && ms(b.index1) > ms(b.index0)) b.type = "PRE_TRACK";
        }
        if (has("INDEX 00 ")) {
            b.index0 = sheetTime(behind(line, plain, "INDEX 00 "));
            if (!b.index0.empty() && b.index0 != kNoTime) b.type = "POST_TRACK";
        }
        if (has("PERFORMER ")) s.name(b.performer, nextPerformer, line, vb::InStr(plain, "PERFORMER "));
        if (has("TITLE ")) s.name(b.title, nextTitle, line, vb::InStr(plain, "TITLE "));
        if (plain.starts_with("PREGAP ")) {
            b.pause = sheetTime(vb::Mid(line, 8));
            b.type = "PREGAP";
        }
        if (plain.starts_with("CATALOG ")) s.catalog = trimLine(vb::Mid(line, 9));
        if (plain.starts_with("ISRC ")) b.isrc = trimLine(vb::Mid(line, 6));
        if (has("FILE ")) {
            const std::optional<std::string> named = betweenQuotes(line, vb::InStr(plain, "FILE "));
            if (!named) return;
            const std::string file = s.file(*named);
            // A file named after the block's INDEX 01 is the next block's:
            // this block lies in the file before it.
            if (current.empty() && b.index1.empty()) {
                current = file;
                s.readHeader(current);
            } else {
                pending = file;
            }
        }
    });
    if (!read) return;
    endBlock();

    // A single-file sheet is spread down the list: each track ends where
    // the next one, on the same file, starts.
    for (std::size_t i = s.first; i < project.count(); ++i) {
        AudioObjects &t = project.track(i);
        AudioObjects &next = project.track(i + 1 < project.count() ? i + 1 : i);
        if (next.FullPath.empty()) {
            t.Finish = next.Start;
            next.FullPath = t.FullPath;
        } else {
            t.Finish = t.OrigLength;
        }
        t.Length = project.rows[i].length = msToTrackTime(ms(t.Finish) - ms(t.Start));
        if (t.PregapType.empty()) t.PregapType = "PREGAP";
    }
    s.end();
}

void importTOCFile(AudioProject &project, const std::string &path, const AddOptions &options,
                   const AudioHost &host) {
    SheetImport s(project, path, options, host, "msgTOCImportCDText");
    Block b;
    std::string file, lastFile, previousFile;  // of the block; of the last and the one before it
    int cdTextDepth = 0;                       // inside the braces of a CD_TEXT block

    const auto endBlock = [&] {
        if (s.firstBlock) {
            s.album(b);
            s.firstBlock = false;
        } else if (SheetImport::real(file)) {
            AudioObjects t = s.record(b, file);
            t.Pause = b.pause.empty() ? std::string(kNoTime) : b.pause;
            if (t.PregapType.empty()) t.PregapType = "PREGAP";
            t.Start = b.start.empty() ? std::string(kNoTime) : b.start;
            // Without a length the track runs to the end of its file.
            t.Length = !b.length.empty() ? b.length : msToTrackTime(s.header.Millisecs - ms(t.Start));
            t.Finish = msToTrackTime(ms(t.Start) + ms(t.Length));
            s.append(std::move(t));
        }
        b = Block{};
        file.clear();
    };

    const bool read = readListLines(path, [&](const std::string &text) {
        host.events();
        const std::string line = trimLine(text);
        if (line.starts_with("//")) return;
        const std::string plain = outsideQuotes(line);
        if (line == "TRACK AUDIO") endBlock();
        if (plain.starts_with("START")) {
            const std::string time = line.size() > 7 ? sheetTime(vb::Mid(line, 7)) : std::string();
            if (ms(time) > 0) {
                b.pause = time;
                b.type = "PRE_TRACK";
            } else if (SheetImport::real(file) && file == previousFile) {
                // The tail of the previous track's file: this track's gap.
                b.pause = !b.length.empty() ? b.length : msToTrackTime(s.header.Millisecs - ms(b.start));
                b.type = "POST_TRACK";
            }
        }
        if (plain.starts_with("PREGAP ")) {
            b.pause = sheetTime(vb::Mid(line, 8));
            b.type = "PREGAP";
        }
        if (plain.starts_with("CATALOG ")) s.catalog = trimLine(withoutQuotes(vb::Mid(line, 9)));
        if (plain.starts_with("ISRC ")) b.isrc = trimLine(withoutQuotes(vb::Mid(line, 6)));
        if (const std::size_t at = vb::InStr(plain, "FILE ")) {
            const std::optional<std::string> named = betweenQuotes(line, at);
            if (!named) return;
            previousFile = lastFile;
            file = lastFile = s.file(*named);
            s.readHeader(file);
            const std::size_t open = vb::InStr(at, line, "\"");
            const std::string rest = trimLine(vb::Mid(line, vb::InStr(open + 1, line, "\"") + 1));
            const std::size_t blank = vb::InStr(rest, " ");
            b.start = sheetTime(blank ? vb::Left(rest, blank - 1) : rest);
            b.length = blank ? sheetTime(vb::Mid(rest, blank + 1)) : std::string();
        }
        // CD-Text on one line, as the compile writes it, or spread over the
        // lines of a block, as cdrdao writes it.
        if (plain.starts_with("CD_TEXT ") || plain == "CD_TEXT") {
            s.askCDText();
            cdTextDepth = 0;
        }
        if (plain.starts_with("CD_TEXT") || cdTextDepth > 0) {
            std::string ignored;
            if (vb::InStr(plain, "TITLE ") && b.title.empty())
                s.name(b.title, ignored, line, vb::InStr(plain, "TITLE "));
            if (vb::InStr(plain, "PERFORMER ") && b.performer.empty())
                s.name(b.performer, ignored, line, vb::InStr(plain, "PERFORMER "));
            cdTextDepth += static_cast<int>(std::count(plain.begin(), plain.end(), '{') -
                                            std::count(plain.begin(), plain.end(), '}'));
        }
    });
    if (!read) return;
    endBlock();

    // Deliberate: each track gets the next one's pause back, whatever its
    // type; the compile took it off only for a POST_TRACK successor.
    for (std::size_t i = s.first; i < project.count(); ++i) {
        const std::int64_t p = i + 1 < project.count() ? ms(project.track(i + 1).Pause) : 0;
        AudioObjects &t = project.track(i);
        t.Finish = msToTrackTime(ms(t.Finish) + p);
        t.Length = project.rows[i].length = msToTrackTime(ms(t.Length) + p);
    }
    s.end();
}

void importList(AudioProject &project, const std::string &kind, const std::string &path,
                const AddOptions &options, const AudioHost &host) {
    if (kind == "CUE")
        importCUEFile(project, path, options, host);
    else if (kind == "TOC")
        importTOCFile(project, path, options, host);
    else
        importTrackList(project, path, options, host);
}

}  // namespace saltmarrow
