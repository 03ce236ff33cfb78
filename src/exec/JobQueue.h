#ifndef SALTMARROW_EXEC_JOBQUEUE_H
#define SALTMARROW_EXEC_JOBQUEUE_H

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace saltmarrow {

// While a job runs (a command, a handler of a form and whatever it runs), the
// interface stays live, so a medium change, a hand-over or a timer can arrive
// in the middle of it. Such work must not run inside the job: it waits until
// the job has ended and then runs from the event loop.
class JobQueue {
public:
    // How to come back from the event loop once the last job has ended.
    // Without it the waiting work runs as the last job ends.
    std::function<void(std::function<void()>)> post;

    // Marks a job for as long as it lives; jobs nest.
    class Job {
    public:
        explicit Job(JobQueue &queue) : queue_(&queue) { ++queue_->depth_; }
        Job(Job &&other) noexcept : queue_(std::exchange(other.queue_, nullptr)) {}
        Job(const Job &) = delete;
        Job &operator=(const Job &) = delete;
        Job &operator=(Job &&) = delete;
        ~Job() {
            if (queue_) queue_->ended();
        }

    private:
        JobQueue *queue_;
    };
    [[nodiscard]] Job begin() { return Job(*this); }
    bool busy() const { return depth_ > 0; }

    // Runs work now when no job runs, else once the jobs have ended. Work
    // under a key that is already waiting takes its place, so a burst of the
    // same event runs once; work without a key always runs.
    void whenIdle(std::function<void()> work, const std::string &key = {});

private:
    void ended();
    void drain();

    struct Waiting {
        std::string key;
        std::function<void()> work;
    };
    int depth_ = 0;
    bool posted_ = false;
    std::vector<Waiting> waiting_;
};

}  // namespace saltmarrow

#endif
