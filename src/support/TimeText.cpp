#include "support/TimeText.h"

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

}  // namespace saltmarrow
