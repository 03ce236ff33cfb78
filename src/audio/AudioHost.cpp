#include "audio/AudioHost.h"

#include "platform/Dialogs.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

std::string AudioHost::text(std::string_view key) const {
    return message ? message(key) : std::string();
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
