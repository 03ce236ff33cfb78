#ifndef SALTMARROW_TESTS_EXEC_RECORDINGVIEW_H
#define SALTMARROW_TESTS_EXEC_RECORDINGVIEW_H

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "EnglishTexts.h"
#include "exec/OutputInterpreter.h"
#include "testlib/RecordingSounds.h"

namespace saltmarrow::test {

// The main form as far as the interpreter reaches it: records what it is
// told, in order, and keeps a clock that only moves when the test says so.
class RecordingView : public InterpreterView {
public:
    std::vector<std::string>
        events;  // "value N", "max N", "status TEXT", "caption TEXT", "kill", frame steps
    int value = 0;
    std::string status, log, caption, trayTip;
    std::vector<std::string> commandLog;
    Mode mode = Mode::None;
    bool writeSucceeded = false, writeFailed = false;
    double now = 1000.0;                                    // seconds since midnight
    std::map<std::string, std::string, std::less<>> texts;  // in place of the program's own
    RecordingSounds recordedSounds;
    std::function<bool(const std::string &)> run;  // commandExecute

    std::function<double()> clock() {
        return [this] { return now; };
    }
    std::vector<std::string> progressEvents() const {
        std::vector<std::string> out;
        for (const auto &e : events)
            if (e.rfind("value ", 0) == 0 || e.rfind("max ", 0) == 0) out.push_back(e);
        return out;
    }
    int count(const std::string &event) const {
        return static_cast<int>(std::count(events.begin(), events.end(), event));
    }

    int progressValue() const override { return value; }
    void setProgressValue(int v) override { events.push_back("value " + std::to_string(value = v)); }
    void setProgressMax(int m) override { events.push_back("max " + std::to_string(m)); }
    void setStatus(const std::string &text) override { events.push_back("status " + (status = text)); }
    bool logEmpty() const override { return log.empty(); }
    void appendLog(const std::string &line) override { log += (log.empty() ? "" : "\r\n") + line; }
    void clearLog() override { log.clear(); }
    void setCaption(const std::string &text) override { events.push_back("caption " + (caption = text)); }
    void setTrayTip(const std::string &tip) override { trayTip = tip; }
    void setWriteSucceeded() override { writeSucceeded = true; }
    void setWriteFailed() override { writeFailed = true; }
    bool killInstantly() override {
        events.push_back("kill");
        return true;
    }
    void letEventsRun() override {}
    std::string message(std::string_view key) const override {
        auto it = texts.find(key);
        return it == texts.end() ? englishText(key) : it->second;
    }
    platform::Sounds &sounds() override { return recordedSounds; }
    void writeCommandLog(const std::string &line) override { commandLog.push_back(line); }
    Mode currentMode() const override { return mode; }
    void ChangeCurrentMode(Mode m) override { mode = m; }
    bool commandExecute(const std::string &command) override {
        events.push_back("execute " + command);
        return run ? run(command) : false;
    }
    void autoHideSettings() override { events.push_back("autohide"); }
    void enableControls(bool enable, bool cancellable) override {
        events.push_back(std::string("enable ") + (enable ? "1" : "0") + (cancellable ? "1" : "0"));
    }
    void restoreWindow() override { events.push_back("restore"); }
    std::string elapsedTimeText(long seconds) const override { return std::to_string(seconds) + " Secs"; }
};

}  // namespace saltmarrow::test

#endif
