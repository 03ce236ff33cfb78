#ifndef SALTMARROW_PLATFORM_CHILDPROCESS_H
#define SALTMARROW_PLATFORM_CHILDPROCESS_H

#include <sys/types.h>

#include <string>
#include <string_view>
#include <vector>

namespace saltmarrow::platform {

// One console job: a program, or the pipeline of a batch file, started without
// a shell in a process group of its own, with standard output and standard
// error of every stage merged into one pipe that the caller reads.
//
// A command line whose program is a ".bat" or ".cmd" file is run the way the
// program's batch files are written: "@ECHO OFF", then one command whose tools
// are joined by " | ". Each stage is split by the Windows argument rules and
// the stages are joined by pipes; the job ends when every stage has ended, and
// its exit code is that of the last stage.
class ChildProcess {
public:
    ChildProcess() = default;
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;
    ~ChildProcess();

    // Starts the job in startFolder (empty: the current folder). False if the
    // line is empty, unbalanced beyond repair, or a program cannot be started;
    // then nothing runs.
    bool start(std::string_view commandLine, const std::string &startFolder);

    // Waits up to ms milliseconds for the job to end; returns early when output
    // is waiting. True once every stage has ended.
    bool waitFor(int ms);
    bool finished() const { return running_ == 0 && !stages_.empty(); }

    // What a wait on the job can watch instead of polling it: the end of every
    // stage that runs and the output pipe, as long as it can still deliver.
    // Empty when the end of a stage cannot be watched (no pidfd): then only
    // short waits on waitFor see the job end in time.
    std::vector<int> waitDescriptors();

    // Bytes waiting in the output pipe, without blocking.
    int bytesWaiting() const;
    // Reads at most max bytes that are waiting; never blocks. Returns the count.
    int read(char *buffer, int max);

    // Exit code of the last stage; -1 when it was killed or has not ended.
    int exitCode() const { return exitCode_; }

    // Kills the whole process group. False when the job has already ended.
    bool kill();

    pid_t processGroup() const { return group_; }
    const std::vector<pid_t> &pids() const;

private:
    struct Stage {
        pid_t pid = -1;
        int pidfd = -1;
        bool ended = false;
        int status = 0;
    };
    void reap(bool block);
    void closeAll();

    std::vector<Stage> stages_;
    mutable std::vector<pid_t> pidList_;
    int output_ = -1;
    bool outputClosed_ = false;
    pid_t group_ = -1;
    int running_ = 0;
    int exitCode_ = -1;
};

// The command of a batch file as the program writes it (batchCommand of its
// text). Empty if it cannot be read.
std::string readBatchCommand(const std::string &path);

}  // namespace saltmarrow::platform

#endif
