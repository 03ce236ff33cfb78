#ifndef SALTMARROW_DATA_DATAHOST_H
#define SALTMARROW_DATA_DATAHOST_H

#include <functional>
#include <string>
#include <string_view>

#include "data/DataProject.h"

namespace saltmarrow::platform {
class Dialogs;
}

namespace saltmarrow::data {

// What the data project's procedures need around them. The main window fills
// the first part, the data form the rest; a hook left empty does nothing.
struct DataHost {
    // The main window.
    platform::Dialogs *dialogs = nullptr;                      // MsgBoxOverMe and the rest
    std::function<std::string(std::string_view key)> message;  // the message table
    std::function<std::string(std::string_view key)> setting;  // saltmarrow.ini, as text
    std::function<void(std::string_view key, const std::string &value)> setSetting;
    std::function<void()> letEventsRun;

    // The data form.
    std::function<void(const std::string &text)> showStatus;     // panel 1 of sbStatusBar
    std::function<void(double max, double value)> showProgress;  // pbCopyProgress
    std::function<void(bool enabled)> enableControls;            // the tagged controls
    std::function<void(const std::string &caption)> setBurnCaption;
    std::function<void(bool enabled)> enableImageList;
    std::function<void(NodeId folder)> showFolder;                   // listFiles shows it, its node selected
    std::function<void()> sortViews;                                 // updateSize's sorting of tree and list
    std::function<std::string(std::string_view extension)> iconKey;  // lower-case extension, "" for none

    std::string text(std::string_view key) const { return message ? message(key) : std::string(); }
    std::string settingText(std::string_view key) const { return setting ? setting(key) : std::string(); }
    bool settingTrue(std::string_view key) const;  // "True", or a number other than 0
    void store(std::string_view key, const std::string &value) const {
        if (setSetting) setSetting(key, value);
    }
    int ask(const std::string &text, int style, const std::string &title = {}) const;
};

}  // namespace saltmarrow::data

#endif
