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
    // "value N", "max N", "status TEXT", "caption TEXT", "kill", in order.
    std::vector<std::string> events;
    int value = 0;
    int max = 100;
    std::string status;
    std::string log;  // txtOutputs
    std::vector<std::string> commandLog;
    Mode mode = Mode::None;
    std::string caption;
    std::string trayTip;
    bool writeSucceeded = false;
    bool writeFailed = false;
    int kills = 0;
    double now = 1000.0;  // seconds since midnight
    // Texts a test puts in place of the program's own.
    std::map<std::string, std::string, std::less<>> texts;
    RecordingSounds recordedSounds;
    std::function<bool(const std::string &)> run;     // commandExecute
    std::vector<std::string> frame;                   // what the read frame did to the form
    std::function<void(const std::string &)> onLine;  // sees each line first, as the log file does

    std::function<double()> clock() {
        return [this] { return now; };
    }
    std::vector<std::string> progressEvents() const {
        std::vector<std::string> out;
        for (const auto &e : events)
            if (e.rfind("value ", 0) == 0 || e.rfind("max ", 0) == 0) out.push_back(e);
        return out;
    }

    int progressValue() const override { return value; }
    void setProgressValue(int v) override {
        value = v;
        events.push_back("value " + std::to_string(v));
    }
    void setProgressMax(int m) override {
        max = m;
        events.push_back("max " + std::to_string(m));
    }
    void setStatus(const std::string &text) override {
        status = text;
        events.push_back("status " + text);
    }
    bool logEmpty() const override { return log.empty(); }
    void appendLog(const std::string &line) override {
        if (!log.empty()) log += "\r\n";
        log += line;
    }
    void clearLog() override { log.clear(); }
    void setCaption(const std::string &text) override {
        caption = text;
        events.push_back("caption " + text);
    }
    void setTrayTip(const std::string &tip) override { trayTip = tip; }
    void setWriteSucceeded() override { writeSucceeded = true; }
    void setWriteFailed() override { writeFailed = true; }
    bool killInstantly() override {
        ++kills;
        events.push_back("kill");
        return true;
    }
    void letEventsRun() override {}
    std::string message(std::string_view key) const override {
        auto it = texts.find(key);
        return it == texts.end() ? englishText(key) : it->second;
    }
    platform::Sounds &sounds() override { return recordedSounds; }
    void writeCommandLog(const std::string &line) override {
        if (onLine) onLine(line);
        commandLog.push_back(line);
    }
    Mode currentMode() const override { return mode; }
    void ChangeCurrentMode(Mode m) override { mode = m; }
    bool commandExecute(const std::string &command) override {
        frame.push_back("execute " + command);
        return run ? run(command) : false;
    }
    void autoHideSettings() override { frame.push_back("autohide"); }
    void enableControls(bool enable, bool cancellable) override {
        frame.push_back(std::string("enable ") + (enable ? "1" : "0") + (cancellable ? "1" : "0"));
    }
    void restoreWindow() override { frame.push_back("restore"); }
    std::string elapsedTimeText(long seconds) const override { return std::to_string(seconds) + " Secs"; }
};

}  // namespace saltmarrow::test

#endif
