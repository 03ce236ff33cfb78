#include "audio/AudioToc.h"

#include <string_view>

#include "support/TimeText.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace {

constexpr std::string_view kCrLf = "\r\n";
constexpr std::string_view kNoPause = "00:00:00";

struct ModeRow {
    std::string_view extension;
    std::string_view mode;
};

constexpr ModeRow kModes[] = {
    {"ISO", "MODE1"},  {"DAT", "MODE1"}, {"BIN", "MODE1"}, {"WAV", "AUDIO"},
    {"MP3", "AUDIO"},  {"MP2", "AUDIO"}, {"APE", "AUDIO"}, {"OGG", "AUDIO"},
    {"FLAC", "AUDIO"}, {"MPC", "AUDIO"}, {"AAC", "AUDIO"}, {"MP4", "AUDIO"},
};

// A TOC string ends at its line: quotes are removed, and a control
// character (a tag may hold a line break) becomes a blank.
void cleanString(std::string &text) {
    text = vb::Replace(text, "\"", "");
    for (char &c : text)
        if (static_cast<unsigned char>(c) < 0x20) c = ' ';
}

std::string minus(const std::string &time, const std::string &pause) {
    return msToTrackTime(static_cast<std::int64_t>(trackTimeToMs(time)) - trackTimeToMs(pause));
}

}  // namespace

std::string modeType(const std::string &path) {
    const std::string extension = extensionOf(path);
    for (const auto &row : kModes)
        if (row.extension == extension) return std::string(row.mode);
    return {};
}

std::string cdText(bool languageMap, std::string &title, std::string &artist) {
    cleanString(title);
    cleanString(artist);
    if (title.empty() && artist.empty()) return {};
    return "CD_TEXT {" + std::string(languageMap ? "LANGUAGE_MAP {0: 9} " : "") + "LANGUAGE 0 {TITLE \"" +
           title + "\" PERFORMER \"" + artist + "\"}}" + std::string(kCrLf);
}

std::string tocHead(AudioProject &project, bool useCDText) {
    std::string head;
    if (!project.strAlbumCatalog.empty()) head += "CATALOG \"" + project.strAlbumCatalog + "\"\r\n";
    head += "CD_ROM_XA\r\n";
    if (useCDText)
        head += cdText(true, project.strAlbumTitle, project.strAlbumArtist) + "\r\n\r\n";
    else
        head += kCrLf;
    return head;
}

std::string tocTrack(AudioProject &project, std::size_t row, const std::string &path, bool useCDText,
                     std::string &lastTocFile) {
    AudioObjects &t = project.track(row);
    std::string block = "TRACK AUDIO\r\n";
    if (!t.ISRC.empty()) block += "ISRC \"" + t.ISRC + "\"\r\n";
    if (useCDText) block += cdText(false, t.Title, t.Artist);

    const std::string file = vb::Replace(path.empty() ? t.FullPath : path, "\\", "/");
    std::string length = t.Length == t.OrigLength ? std::string() : t.Length;
    // A POST_TRACK successor takes the tail of this source as its gap.
    if (row + 1 < project.count() && project.track(row + 1).PregapType == "POST_TRACK")
        length = minus(t.Length, project.track(row + 1).Pause);
    // The blank before an empty length stays: whole files end in a blank.
    const std::string fileStatement = "FILE \"" + file + "\" " + t.Start + " " + length + "\r\n";

    std::string type = t.PregapType;
    if (row == 0 && type == "POST_TRACK") type = "PREGAP";  // no track in front to take it from
    const bool pause = t.Pause != kNoPause;
    if (type == "PREGAP") {
        if (pause) block += "PREGAP " + t.Pause + "\r\n";
        block += fileStatement;
    } else if (type == "PRE_TRACK") {
        block += fileStatement;
        if (pause) block += "START " + t.Pause + "\r\n";
    } else if (type == "POST_TRACK") {
        if (pause) {
            const AudioObjects &previous = project.track(row - 1);
            const std::string field = previous.Finish != previous.Length ? " " + t.Pause : std::string();
            block += "FILE \"" + vb::Replace(lastTocFile, "\\", "/") + "\" " +
                     minus(previous.Length, t.Pause) + field + "\r\nSTART\r\n";
        }
        block += fileStatement;
    }
    lastTocFile = file;
    return block;
}

std::string cdTextHead(const AudioProject &project) {
    std::string head = project.strAlbumTitle;
    if (!project.strAlbumArtist.empty()) head += " - " + project.strAlbumArtist;
    return head + "\r\n\r\n";
}

std::string cdTextLine(const AudioObjects &track, const std::string &albumArtist) {
    std::string line = track.Title;
    if (track.Artist != albumArtist) line += " - " + track.Artist;
    return line + "\r\n";
}

}  // namespace saltmarrow
