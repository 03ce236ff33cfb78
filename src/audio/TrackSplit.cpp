#include "audio/TrackSplit.h"

#include <cstdio>

#include "audio/ListText.h"
#include "platform/Dialogs.h"

namespace saltmarrow {

namespace mb = platform::mb;

namespace {

std::string digits(std::size_t n, int width) {
    char text[24];
    std::snprintf(text, sizeof text, "%0*zu", width, n);
    return text;
}

}  // namespace

std::size_t makePieces(AudioProject &project, const std::vector<std::string> &lengths) {
    if (project.count() != 1 || project.track(0).Millisecs <= 0) return 0;
    const AudioObjects source = project.track(0);
    const std::int64_t whole = static_cast<std::int64_t>(source.Millisecs) * 75 / 1000;
    std::vector<std::int64_t> pieces;
    std::int64_t used = 0;
    for (const auto &text : lengths) {
        const std::optional<std::int64_t> frames = framesOfTime(text);
        if (!frames || *frames <= 0 || *frames > whole - used) continue;
        pieces.push_back(*frames);
        used += *frames;
    }
    if (used > 0 && used < whole) pieces.push_back(whole - used);
    if (pieces.size() < 2) return 0;

    AudioObjects &first = project.track(0);
    first.Finish = first.Length = project.rows[0].length = timeOfFrames(pieces[0]);
    first.IsSplit = true;
    project.rows[0].text = source.ID3merged + " 001 ";
    std::int64_t start = pieces[0];
    for (std::size_t i = 1; i < pieces.size(); ++i) {
        AudioObjects t;
        t.FullPath = source.FullPath;
        t.OrigLength = source.OrigLength;
        t.Millisecs = source.Millisecs;
        t.Album = source.Album;
        t.Artist = source.Artist;
        t.Comments = source.Comments;
        t.Genre = source.Genre;
        t.Year = source.Year;
        t.Title = source.Title;
        t.Frequency = source.Frequency;
        t.DataLength = source.DataLength;
        t.Channels = source.Channels;
        t.Bitrate = source.Bitrate;
        t.Samples = source.Samples;
        t.Pause = "00:00:00";
        t.PregapType = "PRE_TRACK";
        t.Start = timeOfFrames(start);
        t.Length = timeOfFrames(pieces[i]);
        t.Finish = timeOfFrames(start + pieces[i]);
        t.Index = digits(project.count() + 1, 2);
        t.IsSplit = true;
        project.appendTrack(std::move(t), source.ID3merged + " " + digits(i + 1, 3), "(s)");
        start += pieces[i];
    }
    return pieces.size();
}

std::vector<std::string> lengthsFromText(std::string_view text) {
    std::vector<std::string> words;
    std::string word;
    for (const char c : text) {
        if (c != ' ' && c != '\t' && c != '\r' && c != '\n') {
            word += c;
        } else if (!word.empty()) {
            words.push_back(word);
            word.clear();
        }
    }
    if (!word.empty()) words.push_back(word);
    return words;
}

bool splitTrack(AudioProject &project, SplitSource source, bool useCDText, const AudioHost &host) {
    if (project.count() != 1) {
        host.msgBox(host.text("msgSplitTracks"), mb::Information);
        return false;
    }
    // Said before the lengths are sought, not after.
    if (project.track(0).Millisecs <= 0) {
        host.msgBox(host.text("msgLengthUnknown"), mb::Exclamation);
        return false;
    }
    std::vector<std::string> lengths;
    FreedbResult names;
    if (source == SplitSource::Database && host.GetTrackLengths) {
        auto entry = host.GetTrackLengths();
        if (!entry) return false;
        lengths = std::move(entry->first);
        names = std::move(entry->second);
    } else {
        if (!host.dialogs) return false;
        const std::optional<std::string> typed =
            host.dialogs->inputBox(host.text("msgSplitTrackHelp"), "", "");
        if (!typed) return false;
        lengths = lengthsFromText(*typed);
    }
    if (makePieces(project, lengths) == 0) return false;
    if (names.size() > 1) {
        for (std::size_t i = 0; i < project.count(); ++i) {
            AudioObjects &t = project.track(i);
            t.Album = names[0].first;
            if (i + 1 < names.size()) {
                t.Title = names[i + 1].first;
                t.Artist = names[i + 1].second;
            }
            if (!t.Title.empty()) t.ID3merged = mergedTitle(t);
        }
        project.refreshTrackNames(useCDText);
    }
    return true;
}

}  // namespace saltmarrow
