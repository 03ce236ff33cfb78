#include "exec/JobQueue.h"

namespace saltmarrow {

void JobQueue::whenIdle(std::function<void()> work, const std::string &key) {
    if (depth_ == 0) {
        work();
        return;
    }
    for (Waiting &w : waiting_)
        if (!key.empty() && w.key == key) {
            w.work = std::move(work);
            return;
        }
    waiting_.push_back({key, std::move(work)});
}

void JobQueue::ended() {
    if (--depth_ > 0 || waiting_.empty() || posted_) return;
    if (!post) return drain();
    posted_ = true;
    post([this] {
        posted_ = false;
        drain();
    });
}

void JobQueue::drain() {
    // A drain that comes round inside another job's event loop leaves the
    // work to that job's end.
    while (depth_ == 0 && !waiting_.empty()) {
        std::function<void()> work = std::move(waiting_.front().work);
        waiting_.erase(waiting_.begin());
        work();
    }
}

}  // namespace saltmarrow
