#ifndef SALTMARROW_EXEC_DOSOUTPUTS_H
#define SALTMARROW_EXEC_DOSOUTPUTS_H

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace saltmarrow {

namespace platform {
class ChildProcess;
}

// Runs one console command and hands its merged output to the owner line by
// line while the interface keeps running through the pump callback.
class DOSOutputs {
public:
    DOSOutputs();
    ~DOSOutputs();
    DOSOutputs(const DOSOutputs &) = delete;
    DOSOutputs &operator=(const DOSOutputs &) = delete;

    // Events, in their order of declaration.
    std::function<void(const std::string &line)> ReceiveOutputs;
    std::function<void()> nullOutputs;
    // The start of a line whose end has not come yet, each time more of it
    // arrives: a tool that asks a question and waits for the answer never
    // ends the line it asks it in.
    std::function<void(const std::string &text)> openLine;
    // One step of the interface's event loop ("let events run"). The runner
    // takes one at most every 10 ms, and before each line it hands on once
    // that much time has passed.
    std::function<void()> pump;
    // Where the interface can wait on the tool and on its own events at once
    // (platform::waitForEvents in the program): the runner then sleeps until
    // output, the end of the tool or an event of the interface comes, up to
    // ms. Without it the runner waits on the tool alone and pumps in between.
    std::function<void(int ms, const std::vector<int> &fds)> waitForEvents;

    // Everything the current or last command printed, in complete-line
    // blocks, each block behind a CR LF.
    std::string totalOutput;

    // Runs commandLine in startFolder and returns once it has ended. The
    // result is true only if it started and ended with exit code 0. While a
    // command runs, another is refused: false, and no event.
    // bufferSize is the largest chunk of one read; wait the milliseconds of
    // each wait on the process.
    void ExecuteCommand(const std::string &commandLine, short &bufferSize, long &wait,
                        std::string &startFolder, bool captureStdOut, bool captureStdErr, bool convertOEM,
                        bool &result);
    bool ExecuteCommand(const std::string &commandLine, int bufferSize = 256, int wait = 1,
                        std::string startFolder = {});

    // Ends the running job, every process of it. False if there is none.
    bool killInstantly();

    // A command is running: ExecuteCommand has not returned yet.
    bool isRunning() const;

private:
    std::unique_ptr<platform::ChildProcess> process_;
    bool busy_ = false;
};

// Turns one chunk of tool output into text: bytes that are not UTF-8 become
// U+FFFD; an incomplete sequence at the end is left in pending for the next
// chunk unless final is set.
std::string decodeOutputChunk(std::string &pending, std::string_view bytes, bool final);

// The line-end normalisation of one chunk: CR LF -> LF, CR -> LF, LF -> CR LF.
std::string normaliseLineEnds(std::string_view chunk);

}  // namespace saltmarrow

#endif
