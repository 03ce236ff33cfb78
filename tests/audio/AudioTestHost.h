#ifndef SALTMARROW_TESTS_AUDIO_AUDIOTESTHOST_H
#define SALTMARROW_TESTS_AUDIO_AUDIOTESTHOST_H

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "audio/AudioCompile.h"
#include "audio/AudioHost.h"
#include "audio/mdlMediaInfo.h"
#include "exec/DOSOutputs.h"
#include "platform/CommandLine.h"
#include "platform/Dialogs.h"
#include "shell/MessageTable.h"
#include "support/TimeText.h"
#include "testlib/ScriptedDialogs.h"

namespace saltmarrow::test {

inline std::string le16(int v) {
    return {static_cast<char>(v & 0xFF), static_cast<char>(v >> 8 & 0xFF)};
}
inline std::string le32(std::uint32_t v) {
    return le16(static_cast<int>(v & 0xFFFF)) + le16(static_cast<int>(v >> 16));
}

// A PCM WAV header for data bytes of sound; with a format chunk of 16 bytes
// it is the canonical one of 44 bytes.
inline std::string waveHeader(int channels, std::uint32_t rate, int bits, std::uint32_t data,
                              std::uint32_t fmtSize = 16) {
    return "RIFF" + le32(36 + data) + "WAVEfmt " + le32(fmtSize) + le16(1) + le16(channels) + le32(rate) +
           le32(rate * channels * bits / 8) + le16(channels * bits / 8) + le16(bits) + "data" + le32(data);
}

// A canonical 16-bit WAV of silence.
inline void writeWave(const std::string &path, int rate = 44100, int channels = 2, int ms = 5000) {
    const std::uint32_t bytes = static_cast<std::uint32_t>(rate / 1000.0 * ms) * channels * 2;
    std::ofstream(path, std::ios::binary)
        << waveHeader(channels, rate, 16, bytes) << std::string(bytes, '\0');
}

// A track of the given length as the project keeps it, from its start.
inline AudioObjects trackRecord(const std::string &path, const std::string &length,
                                const std::string &pause = "00:00:00", const std::string &type = "PREGAP") {
    AudioObjects t;
    t.FullPath = path;
    t.Millisecs = trackTimeToMs(length);
    t.Length = t.OrigLength = t.Finish = length;
    t.Start = "00:00:00";
    t.Pause = pause;
    t.PregapType = type;
    return t;
}

// What a test compares of a file's tags.
inline std::string tagText(const MediaFileInfo &i) {
    return i.Title + "|" + i.Artist + "|" + i.Album + "|" + i.Year + "|" + i.Genre + "|" +
           std::to_string(i.TrackNumber) + "|" + i.Comments;
}

// cdrdao's subcommand on a TOC file, for its output; a TOC it refuses fails the test.
inline std::string cdrdao(const std::string &subcommand, const std::string &toc) {
    DOSOutputs run;
    EXPECT_TRUE(run.ExecuteCommand("cdrdao " + subcommand + " " + platform::quoteArgument(toc)))
        << run.totalOutput;
    return run.totalOutput;
}

// The main window as a test plays it: English texts, settings in a map,
// scripted dialogs, the command log in a list and an optional free-space seam.
struct AudioTestHost {
    test::ScriptedDialogs dialogs;
    MessageTable messages;
    std::map<std::string, std::string, std::less<>> settings;
    std::vector<std::string> log;
    std::string tempName, loaded;
    std::optional<platform::VolumeSpace> space;
    AudioHost host;

    AudioTestHost() {
        host.dialogs = &dialogs;
        host.message = [this](std::string_view key) { return messages.text(key); };
        host.setting = [this](std::string_view key) {
            auto it = settings.find(key);
            return it == settings.end() ? std::string() : it->second;
        };
        host.setSetting = [this](std::string_view key, const std::string &v) {
            settings[std::string(key)] = v;
        };
        host.tempName = [this] { return tempName; };
        host.setTempName = [this](const std::string &t) { tempName = t; };
        host.writeCommandLog = [this](const std::string &line) { log.push_back(line); };
        host.freeSpace = [this](const std::string &p) { return space ? space : platform::volumeSpace(p); };
        host.loadCompiledToc = [this](const std::string &toc, bool) { loaded = toc; };
    }
    std::vector<std::string> boxes() const {
        std::vector<std::string> texts;
        for (const auto &p : dialogs.prompts)
            if (p.kind == "msgbox") texts.push_back(p.text);
        return texts;
    }
};

// The form's bar, status panel and buttons as the compile drives them.
struct RecordingView : CompileView {
    std::int64_t value = 0, max = 4800;
    std::vector<std::string> panels;
    bool hidden = false, enabled = true;
    std::int64_t barValue() const override { return value; }
    std::int64_t barMax() const override { return max; }
    void setBarMax(std::int64_t m) override { max = m; }
    void setBarValue(std::int64_t v) override { value = v; }
    void setPanel(const std::string &text) override { panels.push_back(text); }
    void selectRow(std::size_t, bool) override {}
    void compileRunning(bool) override {}
    void enableControls(bool enable) override { enabled = enable; }
    void hideForm() override { hidden = true; }
};

}  // namespace saltmarrow::test

#endif
