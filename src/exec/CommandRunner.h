#ifndef SALTMARROW_EXEC_COMMANDRUNNER_H
#define SALTMARROW_EXEC_COMMANDRUNNER_H

#include <string>

#include "exec/CommandLog.h"
#include "exec/DOSOutputs.h"
#include "exec/JobQueue.h"

namespace saltmarrow {

// The main form's road to the tools: its objDOS, the command log and the
// output of the last command that succeeded. The form connects objDOS's
// events to its own handlers; those write each line to log first.
class CommandRunner {
public:
    CommandRunner() = default;
    explicit CommandRunner(std::string externalFolder) : externalFolder_(std::move(externalFolder)) {}

    void setExternalFolder(std::string folder) { externalFolder_ = std::move(folder); }
    const std::string &externalFolder() const { return externalFolder_; }

    // Runs command with buffer size 256 and a wait of 1 ms in the external
    // folder. True if it ended with exit code 0; then commandOutput holds
    // what it printed, else commandOutput is empty. A command asked for while
    // another runs is refused (false) and leaves no trace.
    bool commandExecute(const std::string &command);

    DOSOutputs objDOS;
    // The jobs of the main form: each command is one, and so is each handler.
    JobQueue jobs;
    CommandLog log;
    std::string commandOutput;

private:
    std::string externalFolder_;
};

}  // namespace saltmarrow

#endif
