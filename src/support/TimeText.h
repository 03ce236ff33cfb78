#ifndef SALTMARROW_SUPPORT_TIMETEXT_H
#define SALTMARROW_SUPPORT_TIMETEXT_H

#include <string>

namespace saltmarrow {

// "3mins 3secs" for 183 with the default words; zero alone gives "00mins 00secs".
std::string secondsToText(long seconds, const std::string &mins = "mins", const std::string &secs = "secs");

// The elapsed time of a job: hours only when there are any, then as
// secondsToText ("1hrs 2mins 5secs", "4mins 0secs").
std::string elapsedTimeText(long seconds, const std::string &hrs, const std::string &mins,
                            const std::string &secs);

}  // namespace saltmarrow

#endif
