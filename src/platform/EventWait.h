#ifndef SALTMARROW_PLATFORM_EVENTWAIT_H
#define SALTMARROW_PLATFORM_EVENTWAIT_H

#include <vector>

namespace saltmarrow::platform {

// Waits in the interface's event loop for at most ms milliseconds, until one
// of fds can be read or events of the interface have run: the command runner
// waits on its tool and keeps the window live in one and the same wait,
// without turning round while nothing happens.
void waitForEvents(int ms, const std::vector<int> &fds);

}  // namespace saltmarrow::platform

#endif
