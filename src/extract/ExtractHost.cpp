#include "extract/ExtractHost.h"

#include "platform/Dialogs.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

std::string ExtractHost::text(std::string_view key) const {
    return message ? message(key) : std::string();
}

std::string ExtractHost::format(std::string_view key, std::string_view first) const {
    return vb::Replace(text(key), "%1", first);
}

int ExtractHost::msgBox(const std::string &text, int style) const {
    return dialogs ? dialogs->MsgBoxOverMe(text, style, "saltmarrow") : platform::mb::OK;
}

std::optional<std::size_t> ExtractHost::encoderIndex() const {
    const std::size_t rows = encoderRows().size();
    if (rows == 0) return std::nullopt;
    const double chosen = vb::Val(value("UseEncoder"));
    return chosen < 0 || chosen >= static_cast<double>(rows) ? 0 : static_cast<std::size_t>(chosen);
}

void ExtractHost::events(bool now) const {
    const auto t = std::chrono::steady_clock::now();
    if (!now && t - lastEvents_ < std::chrono::milliseconds(10)) return;
    lastEvents_ = t;
    if (letEventsRun) letEventsRun();
}

}  // namespace saltmarrow
