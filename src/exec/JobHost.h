#ifndef SALTMARROW_EXEC_JOBHOST_H
#define SALTMARROW_EXEC_JOBHOST_H

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

namespace saltmarrow {

namespace platform {
class Dialogs;
}

// What every menu job's host takes from the main window alike: its dialogs,
// the message table, saltmarrow.ini's values as text and the event pump. A
// hook left empty does nothing, or gives nothing where it answers.
struct JobHost {
    platform::Dialogs *dialogs = nullptr;                      // MsgBoxOverMe and the rest
    std::function<std::string(std::string_view key)> message;  // the message table
    std::function<std::string(std::string_view key)> setting;  // saltmarrow.ini values as text
    std::function<void(std::string_view key, const std::string &value)> setSetting;
    std::function<void()> letEventsRun;

    // The text of key in the message table; with "%1" replaced by first.
    std::string text(std::string_view key) const;
    std::string format(std::string_view key, std::string_view first) const;
    int msgBox(const std::string &text, int style, const std::string &title = "saltmarrow") const;
    std::string value(std::string_view key) const { return setting ? setting(key) : std::string(); }
    bool flag(std::string_view key) const;  // a "True"/"False" setting
    void setValue(std::string_view key, const std::string &v) const {
        if (setSetting) setSetting(key, v);
    }
    // Lets the interface run, at most once every 10 ms unless now is set:
    // loops over many files must not spend their time in the event loop.
    void events(bool now = false) const;

private:
    mutable std::chrono::steady_clock::time_point lastEvents_{};
};

}  // namespace saltmarrow

#endif
