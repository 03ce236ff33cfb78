#include "audio/TrackProperties.h"

#include <algorithm>
#include <cstdio>

#include "support/TimeText.h"

namespace saltmarrow {

namespace {

constexpr std::string_view kNoTime = "00:00:00";
constexpr std::size_t kTimeWidth = 8;  // "mm:ss:ff"
constexpr std::size_t kTimeDigits = 6;

bool colonAt(std::size_t caret) {
    return caret == 2 || caret == 5;
}

}  // namespace

TrackFields loadTrack(const AudioObjects &t) {
    return {t.Pause, t.Start,     t.Finish == kNoTime ? std::string() : t.Finish, t.Title, t.Artist,
            t.ISRC,  t.PregapType};
}

bool checkChanges(const TrackFields &f, const AudioObjects &t) {
    return f != loadTrack(t);
}

void saveTrack(AudioProject &project, std::size_t row, const TrackFields &f, const AlbumFields &album) {
    AudioObjects &t = project.track(row);
    t.Pause = f.txtPause;
    t.Start = f.txtStartMS;
    t.Finish = f.txtFinishMS;
    t.Length = msToTrackTime(static_cast<std::int64_t>(trackTimeToMs(t.Finish)) - trackTimeToMs(t.Start));
    project.rows[row].pause = t.Pause;
    project.rows[row].length = t.Length;
    t.PregapType = f.PregapType;
    t.Title = f.txtTrackTitle;
    t.Artist = f.txtTrackArtist;
    t.ISRC = f.txtTrackISRC;
    if (!t.Title.empty()) t.ID3merged = mergedTitle(t);
    project.strAlbumArtist = album.txtAlbumArtist;
    project.strAlbumTitle = album.txtAlbumTitle;
    project.strAlbumCatalog = album.txtAlbumCatalog;
}

std::optional<std::string> checkTime(std::string_view text) {
    std::string digits;
    for (const char c : text) {
        if (c == ':') continue;
        if (c < '0' || c > '9') return std::nullopt;
        digits += c;
    }
    digits = (digits + "00000000").substr(0, kTimeDigits);
    return digits.substr(0, 2) + ":" + digits.substr(2, 2) + ":" + digits.substr(4, 2);
}

std::optional<TimeEdit> timeKey(std::string_view text, std::size_t caret, char key) {
    if (key < '0' || key > '9') return std::nullopt;
    TimeEdit edit{std::string(text), std::min(caret, text.size())};
    if (colonAt(edit.caret)) {
        if (edit.caret == edit.text.size()) edit.text += ':';
        ++edit.caret;
    }
    if (edit.caret >= kTimeWidth) return std::nullopt;
    if (edit.caret == 3 && key > '5') return std::nullopt;  // sixty seconds and more
    if (edit.caret < edit.text.size())
        edit.text[edit.caret] = key;
    else
        edit.text += key;
    ++edit.caret;
    if (colonAt(edit.caret) && edit.caret < edit.text.size()) ++edit.caret;
    return edit;
}

std::size_t timeCaret(std::size_t caret, int step, std::size_t size) {
    std::size_t to = step < 0 ? (caret > 0 ? caret - 1 : 0) : std::min(caret + 1, size);
    if (colonAt(to) && to < size) to = step < 0 ? to - 1 : to + 1;
    return to;
}

void leaveTimeField(TrackFields &f, std::string TrackFields::*field, const AudioObjects &t) {
    const std::optional<std::string> whole = checkTime(f.*field);
    f.*field = whole ? *whole : loadTrack(t).*field;
    if (field == &TrackFields::txtPause) return;
    const std::int32_t end = trackTimeToMs(t.OrigLength);
    if (trackTimeToMs(f.*field) > end) f.*field = t.OrigLength;
    if (trackTimeToMs(f.txtStartMS) > trackTimeToMs(f.txtFinishMS))
        f.txtStartMS = checkTime(f.txtFinishMS).value_or(std::string(kNoTime));
}

std::vector<std::string> statusPanels(const AudioObjects &t, std::size_t row, const AudioHost &host) {
    char size[48];
    std::snprintf(size, sizeof size, "%.2f MB", t.DataLength / 1048576.0);
    return {host.text("msgStatusTrack") + " " + std::to_string(row + 1), t.FullPath, size,
            "Standard " + t.Length};
}

}  // namespace saltmarrow
