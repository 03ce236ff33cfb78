#ifndef SALTMARROW_TESTS_DEVICES_SCRIPTEDHOST_H
#define SALTMARROW_TESTS_DEVICES_SCRIPTEDHOST_H

#include <deque>
#include <string>
#include <vector>

#include "../exec/EnglishTexts.h"
#include "devices/DeviceHost.h"
#include "platform/Dialogs.h"
#include "platform/DriveLayer.h"

namespace saltmarrow::test {

// The main form for the device procedures: answers each command from a
// queue of stored tool outputs and records what it was asked and told.
struct ScriptedHost {
    std::deque<ToolRun> answers;
    std::vector<std::string> commands;
    std::vector<std::string> statuses;
    std::vector<std::string> splash;
    std::vector<int> sleeps;
    std::string mode = "WRITE CD";
    std::string log;
    platform::ScriptedDialogs dialogs;
    DeviceHost host;

    ScriptedHost() {
        static const platform::WindowsDriveLayer windows;  // the stored outputs are the Windows tools'
        host.layer = &windows;
        host.cdrdao = "/app/external/cdrdao";
        host.run = [this](const std::string &command) {
            commands.push_back(command);
            if (answers.empty()) return ToolRun{};
            ToolRun next = answers.front();
            answers.pop_front();
            return next;
        };
        host.dialogs = &dialogs;
        host.message = [](std::string_view key) { return englishText(key); };
        host.currentMode = [this] { return mode; };
        host.ChangeCurrentMode = [this](const std::string &m) { mode = m; };
        host.showStatus = [this](const std::string &text) { statuses.push_back(text); };
        host.logText = [this] { return log; };
        host.setLogText = [this](const std::string &text) { log = text; };
        host.sleepMs = [this](int ms) { sleeps.push_back(ms); };
        host.splashVisible = [] { return true; };
        host.splashStatus = [this](const std::string &text) { splash.push_back(text); };
        host.splashProgress = [this](int max, int value) {
            splash.push_back("bar " + std::to_string(max) + " " + std::to_string(value));
        };
        host.splashStep = [this] { splash.push_back("step"); };
    }
    void answer(const std::string &output, bool ok = true) { answers.push_back({ok, output}); }
};

// A tool output as commandOutput holds it: CR LF before every line.
inline std::string toolOutput(const std::vector<std::string> &lines) {
    std::string out;
    for (const auto &l : lines) out += "\r\n" + l;
    return out;
}

inline std::vector<std::string> scanBanner() {
    return {"Cdrdao version 1.2.4 - (C) Andreas Mueller <andreas@daneb.de>",
            "  SCSI interface library - (C) Joerg Schilling",
            "  Paranoia DAE library - (C) Monty",
            "",
            "Check http://cdrdao.sourceforge.net/drives.html#dt for current driver tables.",
            ""};
}

// A scan of one layer that loaded, listing the given device lines.
inline std::string scanOutput(const std::vector<std::string> &deviceLines) {
    std::vector<std::string> lines = scanBanner();
    lines.push_back("Loading layer... OK!");
    lines.push_back("");
    lines.insert(lines.end(), deviceLines.begin(), deviceLines.end());
    return toolOutput(lines);
}

}  // namespace saltmarrow::test

#endif
