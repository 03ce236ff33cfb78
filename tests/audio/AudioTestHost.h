#ifndef SALTMARROW_TESTS_AUDIO_AUDIOTESTHOST_H
#define SALTMARROW_TESTS_AUDIO_AUDIOTESTHOST_H

#include <cstdint>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "audio/AudioCompile.h"
#include "audio/AudioHost.h"
#include "platform/Dialogs.h"
#include "testlib/ScriptedDialogs.h"
#include "shell/MessageTable.h"

namespace saltmarrow::test {

// A canonical 16-bit WAV of silence.
inline void writeWave(const std::string &path, int rate = 44100, int channels = 2, int ms = 5000) {
    const std::uint32_t bytes = static_cast<std::uint32_t>(rate / 1000.0 * ms) * channels * 2;
    auto le = [](std::uint32_t v, int n) {
        std::string s;
        for (int i = 0; i < n; ++i) s += static_cast<char>((v >> (8 * i)) & 0xFF);
        return s;
    };
    std::ofstream(path, std::ios::binary)
        << "RIFF" << le(36 + bytes, 4) << "WAVEfmt " << le(16, 4) << le(1, 2) << le(channels, 2)
        << le(rate, 4) << le(rate * channels * 2, 4) << le(channels * 2, 2) << le(16, 2) << "data"
        << le(bytes, 4) << std::string(bytes, '\0');
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
