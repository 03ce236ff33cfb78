#ifndef SALTMARROW_EXEC_OUTPUTINTERPRETER_H
#define SALTMARROW_EXEC_OUTPUTINTERPRETER_H

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "exec/Mode.h"

namespace saltmarrow {

namespace platform {
class Sounds;
}

struct LogChainRow;

// The main form as the output interpreter sees it. The form implements it;
// tests record it.
class InterpreterView {
public:
    virtual ~InterpreterView() = default;

    // ProgressBar1. A value may be set above the current maximum: the write
    // progress sets the value before the maximum.
    virtual int progressValue() const = 0;
    virtual void setProgressValue(int value) = 0;
    virtual void setProgressMax(int max) = 0;
    virtual void setStatus(const std::string &text) = 0;  // txtStatus
    // The log window: appending puts a CR LF first unless it is empty.
    virtual bool logEmpty() const = 0;
    virtual void appendLog(const std::string &line) = 0;
    virtual void clearLog() = 0;
    virtual void setCaption(const std::string &caption) = 0;
    virtual void setTrayTip(const std::string &tip) = 0;

    virtual void setWriteSucceeded() = 0;
    virtual void setWriteFailed() = 0;
    virtual bool killInstantly() = 0;  // objDOS
    virtual void letEventsRun() = 0;
    virtual std::string message(std::string_view key) const = 0;  // the message table
    virtual platform::Sounds &sounds() = 0;
    virtual void writeCommandLog(const std::string &line) = 0;  // commandlog.txt, first instance only
    virtual Mode currentMode() const = 0;
    virtual void ChangeCurrentMode(Mode mode) = 0;

    // What the frame of a disc read needs of the form.
    virtual bool commandExecute(const std::string &command) = 0;
    virtual void autoHideSettings() = 0;
    virtual void enableControls(bool enable, bool cancellable) = 0;
    virtual void restoreWindow() = 0;
    virtual std::string elapsedTimeText(long seconds) const = 0;  // hours, minutes, seconds in words
};

// The interpreter's own state on the main form.
struct InterpreterState {
    std::int32_t readSector = 0;  // sector a read has reached
    float readSectors = 0;        // length of the disc in sectors
    float discBytes = 0;          // that length times 2352
    // Time of the last update of each throttled display, seconds since midnight.
    double lastReadUpdate = 0;
    double lastDVDUpdate = 0;
    double lastWriteUpdate = 0;
    bool reading = false;  // a disc read is under way
    bool erasing = false;  // the DVD writer blanks a disc: its blanking time is its success
    // Free bytes where a dump goes (negative: not known); a larger disc stops the dump.
    double readRoom = -1;
    bool readTooLarge = false;  // the dump was stopped for that
};

// Turns the lines of a running tool into status, progress, log lines and
// the outcome flags, by the current mode.
class OutputInterpreter {
public:
    // clock gives seconds since midnight; cygwinRoot is the tools' own name
    // for the external folder (empty where there is none).
    OutputInterpreter(InterpreterView &view, InterpreterState &state, std::function<double()> clock,
                      std::string cygwinRoot = {});

    void objDOS_ReceiveOutputs(const std::string &line);
    void objDOS_nullOutputs();

    // True if line holds pattern; translated is then line with every pattern
    // replaced, and sound (if any) is played.
    bool translateLog(const std::string &line, std::string &translated, std::string_view pattern,
                      const std::string &replacement, std::string_view sound);

    bool recieveWrite(const std::string &line);
    bool recieveDVD(const std::string &line);
    void recieveDVDSize(const std::string &line);
    bool recieveTOC(const std::string &line);
    bool checkRead(const std::string &line);
    bool recieveReadCD();
    // readom's lines: its capacity, its progress and its errors.
    bool recieveDump(const std::string &line);
    // The frame of a disc read: runs command and reports the outcome.
    bool readcd(const std::string &command);

private:
    void runChain(const LogChainRow *rows, std::size_t count, const std::string &line,
                  std::string &translated);
    bool due(double last, bool always) const;
    std::string progressText(long written, long total, bool hasFill, long fill) const;
    void deviceNotReady();

    InterpreterView &view_;
    InterpreterState &state_;
    std::function<double()> clock_;
    std::string cygwinRoot_;
};

// Each word's first letter upper case, the rest lower case.
std::string properCase(std::string_view text);

}  // namespace saltmarrow

#endif
