#include "exec/DOSOutputs.h"

#include <algorithm>
#include <vector>

#include "exec/EventPump.h"
#include "platform/ChildProcess.h"
#include "support/RuntimeError.h"

namespace saltmarrow {

namespace {

constexpr long kStillRunning = 258;  // the wait's "timed out" result
constexpr int kLongestIdleWait = 10;     // milliseconds
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

// Length of the UTF-8 sequence that starts with lead, 0 if lead cannot start one.
int sequenceLength(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    return 0;
}

bool validContinuation(unsigned char lead, int index, unsigned char c) {
    if ((c & 0xC0) != 0x80) return false;
    if (index != 1) return true;
    if (lead == 0xE0) return c >= 0xA0;
    if (lead == 0xED) return c <= 0x9F;
    if (lead == 0xF0) return c >= 0x90;
    if (lead == 0xF4) return c <= 0x8F;
    return true;
}

}  // namespace

std::string decodeOutputChunk(std::string &pending, std::string_view bytes, bool final) {
    std::string in = pending + std::string(bytes);
    pending.clear();
    std::string out;
    out.reserve(in.size());
    std::size_t i = 0;
    while (i < in.size()) {
        auto lead = static_cast<unsigned char>(in[i]);
        int len = sequenceLength(lead);
        if (len == 1) {
            out += in[i++];
            continue;
        }
        if (len == 0) {
            out += kReplacement;
            ++i;
            continue;
        }
        int good = 1;
        while (good < len && i + good < in.size() &&
               validContinuation(lead, good, static_cast<unsigned char>(in[i + good])))
            ++good;
        if (good == len) {
            out.append(in, i, len);
            i += len;
        } else if (i + good == in.size() && !final) {
            pending = in.substr(i);  // the rest of this character is still in the pipe
            break;
        } else {
            out += kReplacement;
            i += good;
        }
    }
    return out;
}

std::string normaliseLineEnds(std::string_view chunk) {
    std::string out;
    out.reserve(chunk.size() + chunk.size() / 8);
    for (std::size_t i = 0; i < chunk.size(); ++i) {
        char c = chunk[i];
        if (c == '\r') {
            if (i + 1 < chunk.size() && chunk[i + 1] == '\n') ++i;
            out += "\r\n";
        } else if (c == '\n') {
            out += "\r\n";
        } else {
            out += c;
        }
    }
    return out;
}

DOSOutputs::DOSOutputs() = default;
DOSOutputs::~DOSOutputs() = default;

bool DOSOutputs::isRunning() const {
    return busy_;
}

bool DOSOutputs::ExecuteCommand(const std::string &commandLine, int bufferSize, int wait,
                                std::string startFolder) {
    short size = static_cast<short>(bufferSize);
    long w = wait;
    bool result = false;
    ExecuteCommand(commandLine, size, w, startFolder, true, true, true, result);
    return result;
}

void DOSOutputs::ExecuteCommand(const std::string &commandLine, short &bufferSize, long &wait,
                                std::string &startFolder, bool captureStdOut, bool captureStdErr,
                                bool convertOEM, bool &result) {
    (void)convertOEM;  // the tools' bytes are taken as UTF-8 here; no code page to convert from
    result = false;
    // One job at a time: the running one and its output stay as they are.
    if (busy_) return;
    totalOutput.clear();
    if (commandLine.empty()) return;
    if (!captureStdOut && !captureStdErr) raiseError(err::InvalidProcedureCall);
    const int size = bufferSize > 0 ? bufferSize : 256;
    std::vector<char> buffer(static_cast<std::size_t>(size));

    auto process = std::make_unique<platform::ChildProcess>();
    if (!process->start(commandLine, startFolder)) return;
    process_ = std::move(process);
    platform::ChildProcess &job = *process_;
    busy_ = true;
    struct Idle {
        bool &busy;
        ~Idle() { busy = false; }
    } idle{busy_};

    std::string carry;
    std::string pending;  // bytes of a character cut by the end of a read
    // A tool that prints fast does not pay a turn of the event loop for each
    // line; a wait in the event loop counts as a turn.
    EventPump letEventsRun(pump);
    // The wait ends at once when output arrives or the job ends, so idle turns
    // may stretch it (up to kLongestIdleWait) without delaying a single line.
    const int shortestWait = wait > 0 ? static_cast<int>(wait) : 0;
    int currentWait = shortestWait;
    for (;;) {
        long waitResult;
        std::vector<int> fds;
        if (waitForEvents && job.bytesWaiting() < 1 && !(fds = job.waitDescriptors()).empty()) {
            // One wait for the tool and the window together: nothing turns
            // round until output, the end of the job or an event comes.
            waitForEvents(std::max(currentWait, kLongestIdleWait), fds);
            letEventsRun.ran();
            waitResult = job.waitFor(0) ? 0 : kStillRunning;
        } else {
            waitResult = job.waitFor(currentWait) ? 0 : kStillRunning;
        }
        letEventsRun();
        int n = std::min(job.bytesWaiting(), size);
        if (n < 1) {
            currentWait = std::min(std::max(currentWait * 2, 1), std::max(kLongestIdleWait, shortestWait));
            if (nullOutputs) nullOutputs();
            letEventsRun();
            if (waitResult != kStillRunning) break;
            continue;
        }
        n = job.read(buffer.data(), n);
        currentWait = shortestWait;
        // The pipe of a pipe-based platform holds more than one buffer, so
        // once the job has ended its output is drained to the end rather than
        // cut after one read; only the very last chunk ends an open line.
        const bool atEnd = waitResult != kStillRunning && job.bytesWaiting() < 1;
        std::string chunk = normaliseLineEnds(
            decodeOutputChunk(pending, std::string_view(buffer.data(), static_cast<std::size_t>(n)), atEnd));

        // The carry never holds a line end, so only the new chunk is searched.
        const std::size_t searchFrom = carry.empty() ? 0 : carry.size() - 1;
        carry += chunk;
        std::string text = std::move(carry);
        carry.clear();
        std::size_t last = std::string::npos;
        for (std::size_t i = text.size(); i-- > searchFrom + 1;)
            if (text[i] == '\n' && text[i - 1] == '\r') {
                last = i - 1;
                break;
            }
        if (last != std::string::npos) {
            if (last + 2 == text.size()) {
                text.resize(last);
            } else {
                carry = text.substr(last + 2);
                text.resize(last);
            }
        } else if (!text.empty() && !atEnd) {
            carry = std::move(text);
            text.clear();
        }

        if (!text.empty()) {
            totalOutput += "\r\n";
            totalOutput += text;
            std::size_t from = 0;
            for (;;) {
                std::size_t at = text.find("\r\n", from);
                std::string piece =
                    text.substr(from, at == std::string::npos ? std::string::npos : at - from);
                letEventsRun();
                if (ReceiveOutputs) ReceiveOutputs(piece);
                if (at == std::string::npos) break;
                from = at + 2;
            }
        }
        if (!carry.empty() && openLine) openLine(carry);
        letEventsRun();
        if (atEnd) break;
    }
    std::string rest = decodeOutputChunk(pending, {}, true);
    carry += rest;
    if (!carry.empty() && ReceiveOutputs) ReceiveOutputs(carry);

    result = job.finished() && job.exitCode() == 0;
}

bool DOSOutputs::killInstantly() { return process_ && process_->kill(); }

}  // namespace saltmarrow
