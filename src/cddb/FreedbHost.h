#ifndef SALTMARROW_CDDB_FREEDBHOST_H
#define SALTMARROW_CDDB_FREEDBHOST_H

#include <functional>
#include <string>
#include <string_view>

class QWidget;

namespace saltmarrow {

class ErrorReporter;
namespace platform {
class Dialogs;
}

// The settings the database dialog reads and keeps.
struct FreedbSettings {
    std::string strServerList;  // host names (or CGI URLs), each followed by "|"
    int intServer = 0;          // index of the selected entry
    std::string strFreedbEmail;
    std::string strSearchSite;  // the web site of the search by words
};

// The main form as the database dialog sees it. Hooks may be left empty.
struct FreedbHost {
    platform::Dialogs *dialogs = nullptr;                      // message and input boxes
    std::function<std::string(std::string_view key)> message;  // the message table
    std::function<FreedbSettings()> loadSettings;
    std::function<void(const FreedbSettings &)> saveSettings;
    std::function<bool()> alwaysOnTop;
    std::function<void(QWidget *form)> applyLanguage;  // captions of the form from the language file
    ErrorReporter *errors = nullptr;                   // the report of an unexpected error
    std::function<void()> terminate;                   // when the report says stop

    std::string text(std::string_view key) const { return message ? message(key) : std::string(key); }
};

}  // namespace saltmarrow

#endif
