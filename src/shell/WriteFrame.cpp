#include "shell/WriteFrame.h"

#include <array>
#include <string_view>

#include "support/TimeText.h"

namespace saltmarrow {

namespace {
constexpr std::array<std::string_view, 6> kWriteModes{"WRITE CD", "AUDIO CD", "COPY CD",
                                                      "DATA CD",  "DATA DVD", "WRITE DVD"};
}

bool isWriteMode(const std::string &mode) {
    for (auto m : kWriteModes)
        if (mode == m) return true;
    return false;
}

WriteOutcome decideWriteOutcome(const WriteOutcomeInput &in, const TimeWords &words) {
    WriteOutcome out;
    const bool erasing = in.mode == "ERASE CD";
    if (in.confirmWrite) out.restoreFromTray = true;
    else if (!erasing) out.playAsterisk = true;

    if (in.writeCancelled) {
        out.statusKey = "msgWriteCancelled";
        return out;
    }
    out.setSpeedPanel = true;
    if (in.writeFailed) return out;  // the interpreter has said what went wrong
    if (in.writeSucceeded) {
        out.statusKey = "msgWriteSuccess";
        out.elapsedText = elapsedTimeText(in.elapsedSeconds, words.hrs, words.mins, words.secs);
        out.offerDelete = in.deleteImages;
    } else {
        out.statusKey = "msgErrorsLogged";
    }
    out.showMessageBox = in.confirmWrite && !erasing;
    return out;
}

std::string progressCaption(int value, int max, const std::string &product) {
    int percent = max > 0 ? value * 100 / max : 0;
    if (percent < 0) percent = 0;
    std::string digits = std::to_string(percent);
    if (digits.size() < 2) digits = "0" + digits;
    return digits + "% " + product;
}

std::string versionText(int major, int minor, int revision, const std::string &preRelease) {
    std::string v = std::to_string(major) + "." + std::to_string(minor);
    if (revision > 0 && revision < 27) v += static_cast<char>(96 + revision);
    if (!preRelease.empty()) v += " " + preRelease;
    return v;
}

}  // namespace saltmarrow
