#include "exec/CommandRunner.h"

namespace saltmarrow {

bool CommandRunner::commandExecute(const std::string &command) {
    if (objDOS.isRunning()) return false;
    const auto job = jobs.begin();
    bool result = false;
    try {
        log.writeSeparator();
        commandOutput.clear();
        short bufferSize = 256;
        long wait = 1;
        std::string folder = externalFolder_;
        objDOS.ExecuteCommand(command, bufferSize, wait, folder, true, true, true, result);
        if (result) commandOutput = objDOS.totalOutput;
    } catch (...) {
        // A command that could not run is a failed command; callers read the
        // result, nothing else is said here.
        result = false;
    }
    return result;
}

}  // namespace saltmarrow
