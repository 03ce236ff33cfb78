#include "audio/AudioProject.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <filesystem>

#include "audio/ListImport.h"
#include "audio/mdlMediaInfo.h"
#include "platform/Dialogs.h"
#include "support/TimeText.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace fs = std::filesystem;
namespace mb = platform::mb;

namespace {

constexpr std::string_view kAudioKinds[] = {"MP3", "MP2", "WAV", "OGG", "FLAC", "AAC", "MP4", "MPC", "APE"};
constexpr std::string_view kListKinds[] = {"CUE", "TOC", "M3U", "M3U8", "PLS", "BPL"};
// The kinds whose headers the readers know; the others give no length.
constexpr std::string_view kReadableKinds[] = {"MP3", "MP2", "OGG", "FLAC", "WAV"};

template <std::size_t N>
bool oneOf(std::string_view word, const std::string_view (&list)[N]) {
    return std::find(std::begin(list), std::end(list), word) != std::end(list);
}

bool isMpeg(std::string_view extension) {
    return extension == "MP3" || extension == "MP2";
}

std::string twoDigits(long n) {
    char buf[24];
    std::snprintf(buf, sizeof buf, "%02ld", n);
    return buf;
}

double secondsSinceMidnight() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return local.tm_hour * 3600.0 + local.tm_min * 60.0 + local.tm_sec;
}

std::string withTrackNumber(const std::string &text) {
    return vb::IsNumeric(text) ? twoDigits(std::lround(vb::Val(text))) : text;
}

}  // namespace

std::string fileNameOf(const std::string &path) {
    return fs::path(path).filename().string();
}

std::string baseNameOf(const std::string &path) {
    return fs::path(path).stem().string();
}

std::string extensionOf(const std::string &path) {
    std::string ext = fs::path(path).extension().string();
    return vb::UCase(ext.empty() ? ext : ext.substr(1));
}

void sortPaths(std::vector<std::string> &paths) {
    std::sort(paths.begin(), paths.end());
}

std::string mergedTitle(const AudioObjects &track) {
    return track.TrackNumber.empty() ? track.Title : track.TrackNumber + " - " + track.Title;
}

std::optional<std::size_t> AudioProject::selectedRow() const {
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (rows[i].selected) return i;
    return std::nullopt;
}

std::string AudioProject::newKey(std::string_view suffix) {
    // The timer text and a random number make a key that is unique in
    // practice; the loop makes it unique for certain.
    std::uniform_real_distribution<double> r(0.0, 1.0);
    for (;;) {
        const long a = static_cast<long>(r(random_) * 32769);
        const long b = static_cast<long>(r(random_) * 32769);
        char timer[32];
        std::snprintf(timer, sizeof timer, "%.7g", secondsSinceMidnight());
        std::string key = timer + std::to_string(std::lround((a + b) / 2.0)) + "@" + std::string(suffix);
        if (!colAllTracks.count(key)) return key;
    }
}

std::size_t AudioProject::appendTrack(AudioObjects record, const std::string &rowText,
                                      std::string_view keySuffix) {
    TrackRow row;
    row.Tag = newKey(keySuffix);
    row.text = rowText;
    row.pause = record.Pause;
    row.length = record.Length;
    row.position = record.Index;
    colAllTracks.emplace(row.Tag, std::move(record));
    rows.push_back(std::move(row));
    return rows.size() - 1;
}

AddResult AudioProject::addTrack(const std::string &FullPath, const std::string &Pause,
                                 const std::string &Start, const std::string &Length,
                                 const AddOptions &options, const AudioHost &host) {
    host.events();
    const std::string extension = extensionOf(FullPath);
    if (!oneOf(extension, kAudioKinds)) {
        if (!oneOf(extension, kListKinds)) return AddResult::Ignored;
        importList(*this, extension, FullPath, options, host);
        return AddResult::Routed;
    }
    if (vb::InStr(options.audioExtensions, vb::LCase(extension), vb::Compare::Text) == 0)
        return AddResult::Ignored;

    strAlbumTitle.clear();
    strAlbumArtist.clear();
    const MediaFileInfo info = readMediaInfo(FullPath);
    // A missing file, or one whose reader found nothing, is named; it is
    // added all the same, with whatever could be read.
    if (info.FileName.empty() || (info.Millisecs == 0 && oneOf(extension, kReadableKinds)))
        host.msgBox(host.format("msgCouldNotReadHeader", fileNameOf(FullPath)), mb::Exclamation);

    // MPEG files pass: their decoder resamples to 44100 Hz stereo.
    if (info.Frequency != 44100 && !isMpeg(extension) && info.Frequency >= 1) {
        host.msgBox(host.format("msgSampleRateOf", fileNameOf(FullPath)), mb::Information);
        return AddResult::Refused;
    }
    if (info.Channels > 0 && info.Channels != 2 && !isMpeg(extension)) {
        host.msgBox(host.format("msgNumberOfChannels", fileNameOf(FullPath)), mb::Information);
        return AddResult::Refused;
    }

    AudioObjects t;
    t.Album = vb::Trim(info.Album);
    t.Artist = vb::Trim(info.Artist);
    t.Comments = vb::Trim(info.Comments);
    t.Genre = vb::Trim(info.Genre);
    t.Title = vb::Trim(info.Title);
    t.Year = vb::Trim(info.Year);
    if (info.TrackNumber > 0) t.TrackNumber = twoDigits(info.TrackNumber);
    t.Frequency = static_cast<float>(info.Frequency);
    t.DataLength = static_cast<float>(info.DataLength);
    t.Channels = info.Channels;
    t.Bitrate = info.Bitrate;
    t.Samples = info.Samples;
    if (!t.Title.empty()) t.ID3merged = mergedTitle(t);
    if (options.mnuCDText)
        t.Text = t.Title.empty() ? baseNameOf(FullPath) : t.ID3merged;
    else
        t.Text = fileNameOf(FullPath);
    t.Pause = !Pause.empty() ? Pause : options.chk2secgap ? "00:02:00" : "00:00:00";
    t.Start = Start;
    t.Finish = t.OrigLength = msToTrackTime(info.Millisecs);
    t.Length = Length.empty() ? msToTrackTime(info.Millisecs) : Length;
    t.Index = twoDigits(static_cast<long>(rows.size()) + 1);
    t.FullPath = FullPath;
    t.Millisecs = info.Millisecs;
    t.PregapType = "PREGAP";
    const std::string text = t.Text;
    appendTrack(std::move(t), text);
    return AddResult::Added;
}

void AudioProject::addFolder(const std::string &folder, const AddOptions &options, const AudioHost &host) {
    std::vector<std::string> files;
    std::error_code ec;
    for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        std::error_code kind;
        if (!it->is_regular_file(kind)) continue;
        const std::string path = it->path().string();
        if (!oneOf(extensionOf(path), kListKinds)) files.push_back(path);
    }
    sortPaths(files);
    for (const auto &path : files) addTrack(path, "", "00:00:00", "", options, host);
}

void AudioProject::addFiles(std::vector<std::string> paths, const AddOptions &options,
                            const AudioHost &host) {
    std::vector<std::string> files;
    for (auto &path : paths) {
        std::error_code ec;
        if (fs::is_directory(path, ec))
            addFolder(path, options, host);
        else
            files.push_back(std::move(path));
    }
    sortPaths(files);
    for (const auto &path : files) addTrack(path, "", "00:00:00", "", options, host);
}

Totals AudioProject::updateTotals(const AudioHost &host) {
    totalUsed = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const AudioObjects &t = track(i);
        totalUsed += trackTimeToMs(t.Length) / 1000.0;
        // The other two kinds of pause are part of the source's length.
        if (t.PregapType == "PREGAP") totalUsed += trackTimeToMs(t.Pause) / 1000.0;
    }
    Totals totals;
    totals.barValue = static_cast<int>(std::min<double>(totalUsed, kDiscSeconds));
    totals.panel = host.text("msgTotalTime") +
                   secondsToText(vb::CLng(totalUsed), host.text("msgTimeMins"), host.text("msgTimeSecs"));
    return totals;
}

void AudioProject::refreshTrackNames(bool useCDText) {
    for (auto &row : rows) {
        const AudioObjects &t = colAllTracks.at(row.Tag);
        if (!useCDText)
            row.text = fileNameOf(t.FullPath);
        else
            row.text = t.Title.empty() ? baseNameOf(t.FullPath) : t.ID3merged;
    }
}

void AudioProject::findAlbumNames() {
    const auto common = [this](std::string AudioObjects::*field) {
        std::string value = track(0).*field;
        for (std::size_t i = 1; i < rows.size(); ++i)
            if (track(i).*field != value) return std::string();
        return value;
    };
    if (rows.empty()) {
        if (strAlbumArtist.empty()) strAlbumArtist = "Various Artists";
        return;
    }
    if (strAlbumTitle.empty()) strAlbumTitle = common(&AudioObjects::Album);
    if (strAlbumArtist.empty()) strAlbumArtist = common(&AudioObjects::Artist);
    if (strAlbumArtist.empty()) strAlbumArtist = "Various Artists";
}

void AudioProject::renumber() {
    for (std::size_t i = 0; i < rows.size(); ++i) rows[i].position = twoDigits(static_cast<long>(i) + 1);
}

void AudioProject::columnClick(bool trackColumn) {
    if (trackColumn)
        std::stable_sort(rows.begin(), rows.end(), [](const TrackRow &a, const TrackRow &b) {
            return vb::LCase(a.text) < vb::LCase(b.text);
        });
    renumber();
}

std::optional<std::size_t> AudioProject::moveUp(std::size_t row) {
    if (rows.size() < 2 || row == 0 || row >= rows.size()) return std::nullopt;
    renumber();
    std::swap(rows[row].position, rows[row - 1].position);
    // The numbers are compared as numbers: a text sort would scatter a list
    // of more than 99 rows.
    std::stable_sort(rows.begin(), rows.end(), [](const TrackRow &a, const TrackRow &b) {
        return vb::Val(a.position) < vb::Val(b.position);
    });
    return row - 1;
}

std::optional<std::size_t> AudioProject::moveDown(std::size_t row) {
    if (rows.size() < 2 || row + 1 >= rows.size()) return std::nullopt;
    if (!moveUp(row + 1)) return std::nullopt;
    return row + 1;
}

void AudioProject::removeSelected() {
    const std::optional<std::size_t> focus = selectedRow();
    if (!focus) return;
    std::vector<TrackRow> kept;
    for (auto &row : rows) {
        if (row.selected)
            colAllTracks.erase(row.Tag);
        else
            kept.push_back(std::move(row));
    }
    rows = std::move(kept);
    if (!rows.empty()) rows[std::min(*focus, rows.size() - 1)].selected = true;
}

void AudioProject::clear() {
    rows.clear();
    colAllTracks.clear();
    strAlbumTitle.clear();
    strAlbumArtist.clear();
    strAlbumCatalog.clear();
    totalUsed = 0;
}

void AudioProject::allToCurrentPause(std::size_t row) {
    const AudioObjects from = track(row);
    const std::string text = rows.at(row).pause;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        track(i).Pause = from.Pause;
        track(i).PregapType = from.PregapType;
        rows[i].pause = text;
    }
}

void AudioProject::filterFilename(const std::string &filter, bool selectedOnly) {
    for (auto &row : rows) {
        if (selectedOnly && !row.selected) continue;
        AudioObjects &t = colAllTracks.at(row.Tag);
        std::string F = filter;
        std::string N = baseNameOf(t.FullPath);
        bool usable = true;
        while (!N.empty()) {
            const std::size_t p = vb::InStr(F, "%");
            if (p == 0) {
                usable = false;
                break;
            }
            if (p > 1) {
                // Literal text is skipped by its length, not compared.
                F = vb::Mid(F, p);
                N = vb::Mid(N, p);
            }
            const std::string token = vb::Mid(F, 2, 1);
            F = vb::Mid(F, 3);
            std::string value;
            if (F.empty()) {
                value = N;
                N.clear();
            } else {
                const std::size_t next = vb::InStr(F, "%");
                const std::string delimiter = next ? vb::Left(F, next - 1) : F;
                F = vb::Mid(F, delimiter.size() + 1);
                const std::size_t at = N.empty() ? 0 : vb::InStr(N, delimiter);
                if (at > 0) {
                    value = vb::Left(N, at - 1);
                    N = vb::Mid(N, at + delimiter.size());
                } else {
                    value = N;
                    N.clear();
                }
            }
            // Tokens other than 1 to 4 discard their part of the name.
            if (token == "1") t.Artist = value;
            if (token == "2") t.Title = value;
            if (token == "3") t.Album = value;
            if (token == "4") t.TrackNumber = withTrackNumber(value);
        }
        if (usable && !t.Title.empty()) t.ID3merged = mergedTitle(t);
    }
}

std::string AudioProject::tracklistText() const {
    std::string text = "#EXTM3U\r\n";
    for (std::size_t i = 0; i < rows.size(); ++i) text += track(i).FullPath + "\r\n";
    return text;
}

std::vector<long> AudioProject::freedbLengths() const {
    std::vector<long> lengths;
    if (rows.empty()) return lengths;
    lengths.push_back(trackTimeToMs(track(0).Pause));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        long ms = trackTimeToMs(track(i).Length);
        if (i + 1 < rows.size() && track(i + 1).PregapType == "PREGAP")
            ms += trackTimeToMs(track(i + 1).Pause);
        lengths.push_back(ms);
    }
    return lengths;
}

void AudioProject::applyFreedb(const FreedbResult &result) {
    if (result.empty()) return;
    for (std::size_t i = 0; i < rows.size() && i + 1 < result.size(); ++i) {
        AudioObjects &t = track(i);
        t.Album = result[0].first;
        t.Title = result[i + 1].first;
        t.Artist = result[i + 1].second;
        if (!t.Title.empty()) t.ID3merged = mergedTitle(t);
    }
    strAlbumTitle = result[0].first;
    strAlbumArtist = result[0].second;
}

}  // namespace saltmarrow
