#include "audio/AudioHost.h"

#include "platform/Dialogs.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace {

struct ExtraText {
    std::string_view key;
    std::string_view text;
};

// clang-format off
constexpr ExtraText kExtraTexts[] = {
    {"msgTrackTooShort", "These tracks are shorter than 4 seconds:\r\n%1\r\n\r\n"
                         "cdrdao refuses such a disc unless Force Execution is ticked in the write settings. "
                         "Compile anyway?"},
    {"msgTracksLeftOut", "%1 track(s) could not be read and were left out; see the command log."},
    {"logTrackLeftOut", "Track %1 left out, it could not be read: "},
};
// clang-format on

}  // namespace

std::string AudioHost::text(std::string_view key) const {
    std::string t = message ? message(key) : std::string();
    if (!t.empty()) return t;
    for (const auto &row : kExtraTexts)
        if (row.key == key) return std::string(row.text);
    return t;
}

std::string AudioHost::format(std::string_view key, std::string_view first) const {
    return vb::Replace(text(key), "%1", first);
}

int AudioHost::msgBox(const std::string &text, int style) const {
    return dialogs ? dialogs->MsgBoxOverMe(text, style, "saltmarrow") : platform::mb::OK;
}

bool AudioHost::flag(std::string_view key) const {
    const std::string v = vb::Trim(value(key));
    return vb::equalsText(v, "True") || (vb::IsNumeric(v) && vb::Val(v) != 0);
}

void AudioHost::events(bool now) const {
    const auto t = std::chrono::steady_clock::now();
    if (!now && t - lastEvents_ < std::chrono::milliseconds(10)) return;
    lastEvents_ = t;
    if (letEventsRun) letEventsRun();
}

std::optional<platform::VolumeSpace> AudioHost::space(const std::string &path) const {
    return freeSpace ? freeSpace(path) : platform::volumeSpace(path);
}

}  // namespace saltmarrow
