#ifndef SALTMARROW_TESTS_DEVICES_SCRIPTEDHOST_H
#define SALTMARROW_TESTS_DEVICES_SCRIPTEDHOST_H

#include <deque>
#include <string>
#include <vector>

#include "../exec/EnglishTexts.h"
#include "devices/DeviceHost.h"
#include "platform/LinuxDriveLayer.h"
#include "testlib/ScriptedDialogs.h"

namespace saltmarrow::test {

// Lines as commandOutput holds them: CR LF before every line.
inline std::string asOutput(const std::vector<std::string> &lines) {
    std::string out;
    for (const auto &l : lines) out += "\r\n" + l;
    return out;
}

// cdrdao's disk-info of an 80 minute recordable CD.
inline std::vector<std::string> diskInfo(bool rewritable, bool blank, bool appendable) {
    std::vector<std::string> lines = {
        "That data below may not reflect the real status of the inserted medium",
        std::string("CD-RW                : ") + (rewritable ? "yes" : "no"),
        "Total Capacity       : 79:59:74 (359849 blocks, 702/807 MB)",
        "CD-R medium          : Taiyo Yuden",
        std::string("CD-R empty           : ") + (blank ? "yes" : "no"),
        std::string("Appendable           : ") + (appendable ? "yes" : "no")};
    if (appendable) lines.push_back("Remaining Capacity   : 73:31:50 (330875 blocks, 646/727 MB)");
    return lines;
}

// The main form for the device procedures: answers each command from a
// queue of stored tool outputs and records what it was asked and told.
struct ScriptedHost {
    std::deque<ToolRun> answers;
    std::vector<std::string> commands;
    std::vector<std::string> statuses;
    std::vector<std::string> splash;
    std::vector<int> sleeps;
    Mode mode = Mode::WriteCD;
    std::string log;
    ScriptedDialogs dialogs;
    platform::LinuxDriveLayer layer{"/nonexistent/cdrom.info"};
    DeviceHost host;

    ScriptedHost() {
        host.layer = &layer;
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
        host.ChangeCurrentMode = [this](Mode m) { mode = m; };
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
    // The next output.
    void answer(const std::vector<std::string> &lines, bool ok = true) {
        answers.push_back({ok, asOutput(lines)});
    }
};

}  // namespace saltmarrow::test

#endif
