#include "support/TimeText.h"

#include <cstdio>

#include "support/mdlFunctions.h"

namespace saltmarrow {

std::string secondsToText(long seconds, const std::string &mins, const std::string &secs) {
    // The zero case alone has two-digit fields; kept as users know it.
    if (seconds == 0) return "00" + mins + " 00" + secs;
    return std::to_string(seconds / 60) + mins + " " + std::to_string(seconds % 60) + secs;
}

std::string elapsedTimeText(long seconds, const std::string &hrs, const std::string &mins,
                            const std::string &secs) {
    if (seconds < 0) seconds = 0;
    if (seconds < 3600) return secondsToText(seconds, mins, secs);
    return std::to_string(seconds / 3600) + hrs + " " + secondsToText(seconds % 3600, mins, secs);
}

std::string msToTrackTime(std::int64_t ms) {
    if (ms < 0) ms = 0;
    auto frames = static_cast<std::int64_t>(vb::CLng(static_cast<double>(ms % 1000) / (1000.0 / 75.0)));
    std::int64_t seconds = (ms / 1000) % 60;
    std::int64_t minutes = ms / 1000 / 60;
    if (frames == 75) {
        frames = 0;
        if (++seconds == 60) {
            seconds = 0;
            ++minutes;
        }
    }
    char text[40];
    std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld", static_cast<long long>(minutes),
                  static_cast<long long>(seconds), static_cast<long long>(frames));
    return text;
}

std::int32_t trackTimeToMs(std::string_view text) {
    if (text.empty() || text == "0") return 0;
    const auto parts = vb::Split(text, ":");
    if (parts.size() != 3) return 0;
    for (const auto &p : parts)
        if (!vb::IsNumeric(p)) return 0;
    try {
        std::int32_t ms = vb::CLng(vb::CDbl(parts[0]) * 60000);
        ms = vb::CLng(ms + vb::CDbl(parts[1]) * 1000);
        return vb::CLng(ms + vb::CDbl(parts[2]) * (1000.0 / 75.0));
    } catch (...) {
        return 0;  // a time too long for the field is as good as no time
    }
}

}  // namespace saltmarrow
