#include "platform/EventWait.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <memory>

namespace saltmarrow::platform {

void waitForEvents(int ms, const std::vector<int> &fds) {
    // Nobody listens to them: their events alone end the wait.
    std::vector<std::unique_ptr<QSocketNotifier>> notifiers;
    for (int fd : fds) notifiers.push_back(std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read));
    QTimer deadline;
    deadline.setSingleShot(true);
    deadline.start(ms);
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

}  // namespace saltmarrow::platform
