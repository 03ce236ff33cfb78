#ifndef SALTMARROW_SUPPORT_TIMETEXT_H
#define SALTMARROW_SUPPORT_TIMETEXT_H

#include <cstdint>
#include <string>
#include <string_view>

namespace saltmarrow {

// "3mins 3secs" for 183 with the default words; zero alone gives "00mins 00secs".
std::string secondsToText(long seconds, const std::string &mins = "mins", const std::string &secs = "secs");

// The elapsed time of a job: hours only when there are any, then as
// secondsToText ("1hrs 2mins 5secs", "4mins 0secs").
std::string elapsedTimeText(long seconds, const std::string &hrs, const std::string &mins,
                            const std::string &secs);

// Track times are "mm:ss:ff" with 75 frames a second; minutes may run past two
// digits. A negative length counts as zero; frames round half to even, and a
// frame count that rounds up to 75 carries into the seconds, 60 seconds into
// the minutes (3599999 ms is "60:00:00").
std::string msToTrackTime(std::int64_t ms);
// The milliseconds of a track time, each field added and rounded on its own
// (that is how stored lengths come back to the same figure). "" and "0" are 0,
// and so is anything that is not three numeric fields.
std::int32_t trackTimeToMs(std::string_view text);

}  // namespace saltmarrow

#endif
