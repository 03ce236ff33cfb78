#ifndef SALTMARROW_EXEC_COMMANDLOG_H
#define SALTMARROW_EXEC_COMMANDLOG_H

#include <fstream>
#include <string>
#include <string_view>

namespace saltmarrow {

// commandlog.txt: every line the tools printed in this run, as it arrived.
// The file is created (overwriting the last run's) when the first line comes,
// and never by an instance that is not the first one.
class CommandLog {
public:
    CommandLog() = default;
    explicit CommandLog(std::string path) : path_(std::move(path)) {}

    void setPath(std::string path) { path_ = std::move(path); }
    const std::string &path() const { return path_; }
    // A later instance keeps its hands off the first instance's log.
    void setAllowed(bool allowed) { allowed_ = allowed; }

    bool isOpen() const { return stream_.is_open(); }
    // Writes one line with CR LF, opening the file first if need be. Faults
    // are ignored: the log never stops a job.
    void writeLine(std::string_view line);
    // The empty line, the 62-hyphen separator and an empty line, written
    // before a command when the log is already open.
    void writeSeparator();
    void close();

    static constexpr std::string_view kSeparator =
        "--------------------------------------------------------------";

private:
    std::string path_;
    bool allowed_ = true;
    bool failed_ = false;
    std::ofstream stream_;
};

}  // namespace saltmarrow

#endif
