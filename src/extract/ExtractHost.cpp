#include "extract/ExtractHost.h"

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
    {"msgExtractNoTemplate", "Please enter a file name template in the extraction settings."},
    {"msgExtractTemplateOutside", "The file name template \"%1\" has to name a file below the output folder."},
    {"msgExtractFolder", "The folder %1 cannot be written to."},
    {"msgEncoderMissing", "The encoder %1 was not found."},
};
// clang-format on

}  // namespace

std::string ExtractHost::text(std::string_view key) const {
    std::string t = message ? message(key) : std::string();
    if (!t.empty()) return t;
    for (const auto &row : kExtraTexts)
        if (row.key == key) return std::string(row.text);
    return t;
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
