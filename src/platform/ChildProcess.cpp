#include "platform/ChildProcess.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/CommandLine.h"
#include "support/mdlFunctions.h"

extern char **environ;

namespace saltmarrow::platform {

namespace {

bool isBatchFile(std::string_view program) {
    auto ext = vb::LCase(vb::Right(program, 4));
    return ext == ".bat" || ext == ".cmd";
}

int openPidfd(pid_t pid) {
#ifdef SYS_pidfd_open
    int fd = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
    if (fd >= 0) fcntl(fd, F_SETFD, FD_CLOEXEC);
    return fd;
#else
    (void)pid;
    return -1;
#endif
}

// Starts one stage with the given standard input and output; standard error
// goes to errFd. group 0 makes a new process group led by this stage.
pid_t spawnStage(const std::vector<std::string> &args, const std::string &folder, int inFd, int outFd,
                 int errFd, pid_t group) {
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attr;
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_init(&attr);
    posix_spawn_file_actions_adddup2(&actions, inFd, 0);
    posix_spawn_file_actions_adddup2(&actions, outFd, 1);
    posix_spawn_file_actions_adddup2(&actions, errFd, 2);
    if (!folder.empty()) posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    posix_spawnattr_setpgroup(&attr, group);
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    sigaddset(&defaults, SIGINT);
    sigaddset(&defaults, SIGTERM);
    posix_spawnattr_setsigdefault(&attr, &defaults);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attr, &none);
    posix_spawnattr_setflags(&attr, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);

    std::vector<char *> argv;
    for (const auto &a : args) argv.push_back(const_cast<char *>(a.c_str()));
    argv.push_back(nullptr);
    pid_t pid = -1;
    int rc = posix_spawnp(&pid, argv[0], &actions, &attr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attr);
    return rc == 0 ? pid : -1;
}

}  // namespace

std::string readBatchCommand(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return {};
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    return batchCommand(text);
}

ChildProcess::~ChildProcess() {
    if (running_ > 0) {
        kill();
        reap(true);
    }
    closeAll();
}

void ChildProcess::closeAll() {
    for (auto &s : stages_)
        if (s.pidfd >= 0) {
            close(s.pidfd);
            s.pidfd = -1;
        }
    if (output_ >= 0) {
        close(output_);
        output_ = -1;
    }
}

bool ChildProcess::start(std::string_view commandLine, const std::string &startFolder) {
    if (!stages_.empty()) return false;
    auto first = splitCommandLine(commandLine);
    if (first.empty() || first[0].empty()) return false;

    std::vector<std::vector<std::string>> stageArgs;
    if (isBatchFile(first[0])) {
        std::string batch = first[0];
        if (!startFolder.empty() && !batch.empty() && batch[0] != '/') batch = startFolder + "/" + batch;
        std::string command = readBatchCommand(batch);
        if (command.empty()) return false;
        for (const auto &stage : splitPipeline(command)) {
            auto args = splitCommandLine(stage);
            if (args.empty() || args[0].empty()) return false;
            stageArgs.push_back(std::move(args));
        }
    } else {
        stageArgs.push_back(std::move(first));
    }

    int out[2];
    if (pipe2(out, O_CLOEXEC) != 0) return false;
    int devNull = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (devNull < 0) {
        close(out[0]);
        close(out[1]);
        return false;
    }

    int inFd = devNull;
    bool ok = true;
    for (std::size_t i = 0; i < stageArgs.size() && ok; ++i) {
        bool last = i + 1 == stageArgs.size();
        int link[2] = {-1, -1};
        if (!last && pipe2(link, O_CLOEXEC) != 0) {
            ok = false;
            break;
        }
        pid_t pid = spawnStage(stageArgs[i], startFolder, inFd, last ? out[1] : link[1], out[1],
                               group_ > 0 ? group_ : 0);
        if (inFd != devNull) close(inFd);
        if (!last) close(link[1]);
        inFd = last ? -1 : link[0];
        if (pid < 0) {
            ok = false;
            if (inFd >= 0) close(inFd);
            break;
        }
        if (group_ < 0) group_ = pid;
        Stage s;
        s.pid = pid;
        s.pidfd = openPidfd(pid);
        stages_.push_back(s);
        ++running_;
    }
    close(devNull);
    close(out[1]);
    output_ = out[0];
    fcntl(output_, F_SETFL, fcntl(output_, F_GETFL) | O_NONBLOCK);

    if (!ok) {
        // A stage that cannot start fails the whole job, as a batch line would.
        if (running_ > 0) {
            ::kill(-group_, SIGKILL);
            reap(true);
        }
        closeAll();
        stages_.clear();
        group_ = -1;
        running_ = 0;
        return false;
    }
    return true;
}

void ChildProcess::reap(bool block) {
    for (auto &s : stages_) {
        if (s.ended) continue;
        int status = 0;
        pid_t r;
        do {
            r = waitpid(s.pid, &status, block ? 0 : WNOHANG);
        } while (r < 0 && errno == EINTR);
        if (r == s.pid || (r < 0 && errno == ECHILD)) {
            s.ended = true;
            s.status = status;
            --running_;
            if (s.pidfd >= 0) {
                close(s.pidfd);
                s.pidfd = -1;
            }
        }
    }
    if (running_ == 0 && !stages_.empty()) {
        int st = stages_.back().status;
        exitCode_ = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    }
}

bool ChildProcess::waitFor(int ms) {
    if (stages_.empty()) return true;
    reap(false);
    if (running_ == 0) return true;
    if (bytesWaiting() > 0) return false;  // output is waiting: do not sleep on it
    std::vector<pollfd> fds;
    bool allPidfds = true;
    for (const auto &s : stages_)
        if (!s.ended) {
            if (s.pidfd < 0) allPidfds = false;
            else fds.push_back({s.pidfd, POLLIN, 0});
        }
    // Without pidfds the end of a stage cannot be polled: wait in short steps.
    int timeout = allPidfds ? ms : (ms > 1 ? 1 : ms);
    // The output pipe wakes the wait too, until it has hung up for good (a
    // tool may close its output and run on).
    if (!outputClosed_ && output_ >= 0) fds.push_back({output_, POLLIN, 0});
    if (timeout > 0) {
        int r;
        do {
            r = poll(fds.data(), fds.size(), timeout);
        } while (r < 0 && errno == EINTR);
        if (r > 0 && !outputClosed_ && fds.back().fd == output_ && (fds.back().revents & (POLLHUP | POLLERR)) &&
            bytesWaiting() == 0) {
            outputClosed_ = true;
            fds.pop_back();
            do {
                r = poll(fds.data(), fds.size(), timeout);
            } while (r < 0 && errno == EINTR);
        }
    }
    reap(false);
    return running_ == 0;
}

std::vector<int> ChildProcess::waitDescriptors() {
    reap(false);
    std::vector<int> fds;
    for (const auto &s : stages_) {
        if (s.ended) continue;
        if (s.pidfd < 0) return {};
        fds.push_back(s.pidfd);
    }
    if (outputClosed_ || output_ < 0) return fds;
    // A pipe that has hung up with nothing left in it would wake every wait.
    pollfd p{output_, POLLIN, 0};
    if (poll(&p, 1, 0) > 0 && (p.revents & (POLLHUP | POLLERR)) && bytesWaiting() == 0)
        outputClosed_ = true;
    else
        fds.push_back(output_);
    return fds;
}

int ChildProcess::bytesWaiting() const {
    if (output_ < 0) return 0;
    int n = 0;
    if (ioctl(output_, FIONREAD, &n) != 0) return 0;
    return n;
}

int ChildProcess::read(char *buffer, int max) {
    if (output_ < 0 || max <= 0) return 0;
    ssize_t r;
    do {
        r = ::read(output_, buffer, static_cast<size_t>(max));
    } while (r < 0 && errno == EINTR);
    return r > 0 ? static_cast<int>(r) : 0;
}

bool ChildProcess::kill() {
    if (stages_.empty()) return false;
    reap(false);
    if (running_ == 0) return false;
    return ::kill(-group_, SIGKILL) == 0;
}

const std::vector<pid_t> &ChildProcess::pids() const {
    pidList_.clear();
    for (const auto &s : stages_) pidList_.push_back(s.pid);
    return pidList_;
}

}  // namespace saltmarrow::platform
