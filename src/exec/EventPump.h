#ifndef SALTMARROW_EXEC_EVENTPUMP_H
#define SALTMARROW_EXEC_EVENTPUMP_H

#include <chrono>
#include <functional>
#include <utility>

namespace saltmarrow {

// "Let events run", by time rather than by count: where a loop pumps per item
// or per line, a turn of the interface's event loop is taken at most once
// every interval, so the window stays live without a million items costing a
// million turns.
class EventPump {
public:
    static constexpr std::chrono::milliseconds kInterval{10};

    explicit EventPump(std::function<void()> step = {}) : step_(std::move(step)) {}

    // A turn, unless the last one was less than the interval ago.
    void operator()() {
        if (!step_ || Clock::now() - last_ < kInterval) return;
        step_();
        last_ = Clock::now();
    }
    // The events have just run by other means (a wait in the event loop).
    void ran() { last_ = Clock::now(); }

private:
    using Clock = std::chrono::steady_clock;
    std::function<void()> step_;
    Clock::time_point last_{};
};

}  // namespace saltmarrow

#endif
