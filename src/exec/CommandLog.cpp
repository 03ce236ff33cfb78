#include "exec/CommandLog.h"

namespace saltmarrow {

void CommandLog::writeLine(std::string_view line) {
    if (!stream_.is_open()) {
        if (!allowed_ || failed_ || path_.empty()) return;
        stream_.open(path_, std::ios::binary | std::ios::trunc);
        if (!stream_.is_open()) {
            failed_ = true;  // tried once this run; the log is not worth a message
            return;
        }
    }
    stream_ << line << "\r\n";
    stream_.flush();
    if (!stream_) stream_.clear();
}

void CommandLog::writeSeparator() {
    if (!stream_.is_open()) return;
    stream_ << "\r\n" << kSeparator << "\r\n\r\n";
    stream_.flush();
    if (!stream_) stream_.clear();
}

void CommandLog::close() {
    if (stream_.is_open()) stream_.close();
}

}  // namespace saltmarrow
