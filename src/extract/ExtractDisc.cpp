#include "extract/ExtractDisc.h"

#include <cctype>
#include <chrono>
#include <cstdio>

#include "support/TimeText.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace {

constexpr std::string_view kAlbumLine = "Album title: '";
constexpr std::string_view kTitleField = " title '";
constexpr std::string_view kFromField = " from '";
constexpr std::string_view kNoTitle = "Audio Track";

// A quoted name of the scan, from just behind its opening quote. icedax puts
// a backslash before every quote and backslash of a name, so the name ends at
// the first quote without one; every backslash goes. end is left on the
// closing quote.
std::string quotedName(std::string_view line, std::size_t from, std::size_t &end) {
    std::string name;
    std::size_t i = from;
    for (; i < line.size() && line[i] != '\''; ++i)
        if (line[i] != '\\')
            name += line[i];
        else if (++i < line.size() && line[i] != '\\')
            name += line[i];
    end = i;
    return cleanName(name);
}

std::string twoDigits(long n) {
    char text[24];
    std::snprintf(text, sizeof text, "%02ld", n);
    return text;
}

bool holdsAt(std::string_view line, std::size_t pos, std::string_view text) {
    return pos <= line.size() && line.substr(pos, text.size()) == text;
}

// The text of "m:ss.ff" as "mm:ss:ff".
std::string trackTime(std::string_view field) {
    std::vector<std::string> parts = vb::Split(vb::Replace(field, ".", ":"), ":");
    for (auto &p : parts) p = twoDigits(static_cast<long>(vb::Val(p)));
    return vb::Join(parts, ":");
}

double secondsSinceMidnight() {
    using namespace std::chrono;
    const auto now = system_clock::now().time_since_epoch();
    return static_cast<double>(duration_cast<milliseconds>(now).count() % 86400000) / 1000.0;
}

}  // namespace

std::string rowNumber(std::size_t row) {
    return twoDigits(static_cast<long>(row) + 1);
}

std::string cleanName(std::string_view text) {
    std::string name(text);
    for (char &c : name)
        if (std::iscntrl(static_cast<unsigned char>(c))) c = ' ';
    return vb::Trim(name);
}

void ExtractDisc::clear() {
    extractArtist = kUnknownArtist;
    extractAlbum = kUnknownAlbum;
    rows.clear();
    extractTracks.clear();
}

void ExtractDisc::recieveCDDA2WAV_TOC(std::string_view line) {
    std::size_t end = 0;
    if (line.substr(0, kAlbumLine.size()) == kAlbumLine) {
        const std::string album = quotedName(line, kAlbumLine.size(), end);
        if (album.empty()) return;
        extractAlbum = album;
        if (!holdsAt(line, end + 1, kFromField)) return;
        const std::string artist = quotedName(line, end + 1 + kFromField.size(), end);
        if (!artist.empty()) extractArtist = artist;
        return;
    }
    // "T01:       0  4:12.45 audio linear copydenied stereo title '...' from '...'"
    if (line.size() < 5 || line[0] != 'T' || !std::isdigit(static_cast<unsigned char>(line[1])) ||
        !std::isdigit(static_cast<unsigned char>(line[2])) || line[3] != ':')
        return;
    const std::size_t colon = vb::InStr(5, line, ":");
    if (colon == 0) return;
    const std::size_t fieldStart = vb::InStrRev(line, " ", colon);
    std::size_t fieldEnd = vb::InStr(colon, line, " ");
    if (fieldStart == 0 || fieldEnd == 0) return;
    std::size_t kindEnd = vb::InStr(fieldEnd + 1, line, " ");
    if (kindEnd == 0) kindEnd = line.size() + 1;
    if (vb::Mid(line, fieldEnd + 1, kindEnd - fieldEnd - 1) != "audio") return;

    AudioObjects t;
    t.Length = trackTime(vb::Mid(line, fieldStart + 1, fieldEnd - fieldStart - 1));
    t.Millisecs = trackTimeToMs(t.Length);
    const std::string start = vb::Trim(vb::Mid(line, 5, fieldStart - 5));  // in sectors of 1/75 s
    t.Start = msToTrackTime(static_cast<std::int64_t>(vb::Val(start) * 1000 / 75));
    t.Title = kUnknownTitle;
    t.Artist = kUnknownArtist;
    t.Album = extractAlbum;  // icedax names the album before the tracks
    if (const std::size_t title = vb::InStr(line, kTitleField)) {
        const std::string name = quotedName(line, title - 1 + kTitleField.size(), end);
        if (!name.empty()) t.Title = name;
        if (holdsAt(line, end, "'") && holdsAt(line, end + 1, kFromField)) {
            const std::string artist = quotedName(line, end + 1 + kFromField.size(), end);
            if (!artist.empty()) t.Artist = artist;
        }
    }
    t.PregapType = "PREGAP";
    t.Index = rowNumber(rows.size());

    ExtractRow row;
    row.Tag = newKey();
    row.discTrack = (line[1] - '0') * 10 + (line[2] - '0');
    extractTracks.emplace(row.Tag, std::move(t));
    rows.push_back(std::move(row));
    setRowText(rows.size() - 1);
}

std::size_t ExtractDisc::selectedCount() const {
    std::size_t n = 0;
    for (const auto &r : rows) n += r.selected ? 1 : 0;
    return n;
}

double ExtractDisc::selectedSeconds() const {
    double seconds = 0;
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (rows[i].selected) seconds += track(i).Millisecs / 1000.0;
    return seconds;
}

std::optional<std::size_t> ExtractDisc::rowOfDiscTrack(int discTrack) const {
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (rows[i].discTrack == discTrack) return i;
    return std::nullopt;
}

std::vector<long> ExtractDisc::freedbLengths() const {
    std::vector<long> lengths;
    if (rows.empty()) return lengths;
    // The disc's identity counts from the first frame after the two-second lead-in.
    lengths.push_back(trackTimeToMs(track(0).Start) + 2000);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        long ms = track(i).Millisecs;
        if (i + 1 < rows.size()) ms += trackTimeToMs(track(i + 1).Pause);
        lengths.push_back(ms);
    }
    return lengths;
}

void ExtractDisc::applyFreedb(const FreedbResult &result) {
    if (result.empty()) return;
    extractAlbum = cleanName(result[0].first);
    extractArtist = cleanName(result[0].second);
    for (std::size_t i = 1; i < result.size() && i <= rows.size(); ++i) {
        AudioObjects &t = track(i - 1);
        t.Album = extractAlbum;
        t.Title = cleanName(result[i].first);
        // The row shows "Audio Track" for a nameless track, and so is the file named.
        if (t.Title.empty()) t.Title = kNoTitle;
        t.Artist = cleanName(result[i].second);
        setRowText(i - 1);
    }
}

void ExtractDisc::renameRow(std::size_t row, std::string_view text) {
    std::string title(text);
    const std::string prefix = rowNumber(row) + " - ";
    if (title.rfind(prefix, 0) == 0) title.erase(0, prefix.size());
    title = cleanName(title);
    if (!title.empty()) track(row).Title = title;
    setRowText(row);
}

void ExtractDisc::setRowText(std::size_t row) {
    rows.at(row).text = rowNumber(row) + " - " + track(row).Title;
}

std::string ExtractDisc::newKey() {
    std::uniform_int_distribution<int> r(0, 32767);
    for (;;) {
        char timer[32];
        std::snprintf(timer, sizeof timer, "%.7g", secondsSinceMidnight());
        std::string key = timer + std::string("@") + std::to_string(r(random_));
        if (!extractTracks.count(key)) return key;
    }
}

}  // namespace saltmarrow
