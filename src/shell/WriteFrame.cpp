#include "shell/WriteFrame.h"

#include <array>
#include <string_view>

#include "support/TimeText.h"

namespace saltmarrow {

namespace {
constexpr std::array kWriteModes{Mode::WriteCD, Mode::AudioCD, Mode::CopyCD,
                                 Mode::DataCD,  Mode::DataDVD, Mode::WriteDVD};
}

bool isWriteMode(Mode mode) {
    for (auto m : kWriteModes)
        if (mode == m) return true;
    return false;
}

WriteOutcome decideWriteOutcome(const WriteOutcomeInput &in, const TimeWords &words) {
    WriteOutcome out;
    const bool erasing = in.mode == Mode::EraseCD;
    if (in.confirmWrite)
        out.restoreFromTray = true;
    else if (!erasing)
        out.playAsterisk = true;

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

}  // namespace saltmarrow
