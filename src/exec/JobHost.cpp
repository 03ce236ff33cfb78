#include "exec/JobHost.h"

#include "platform/Dialogs.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

std::string JobHost::text(std::string_view key) const {
    return message ? message(key) : std::string();
}

std::string JobHost::format(std::string_view key, std::string_view first) const {
    return vb::Replace(text(key), "%1", first);
}

int JobHost::msgBox(const std::string &text, int style, const std::string &title) const {
    return dialogs ? dialogs->MsgBoxOverMe(text, style, title) : platform::mb::OK;
}

bool JobHost::flag(std::string_view key) const {
    return vb::settingIsTrue(value(key));
}

void JobHost::events(bool now) const {
    const auto t = std::chrono::steady_clock::now();
    if (!now && t - lastEvents_ < std::chrono::milliseconds(10)) return;
    lastEvents_ = t;
    if (letEventsRun) letEventsRun();
}

}  // namespace saltmarrow
