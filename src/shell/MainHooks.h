#ifndef SALTMARROW_SHELL_MAINHOOKS_H
#define SALTMARROW_SHELL_MAINHOOKS_H

#include <QCoreApplication>
#include <string>
#include <string_view>

#include "exec/JobHost.h"
#include "shell/frmMain.h"

namespace saltmarrow {

// What every menu job's host takes from the main window alike: its dialogs,
// the message table, saltmarrow.ini's values as text and the event pump.
inline void fillMainHooks(frmMain &main, JobHost &host) {
    host.dialogs = main.environment().dialogs;
    host.message = [&main](std::string_view key) { return main.messages.text(key); };
    host.setting = [&main](std::string_view key) { return main.settings.text(key); };
    host.setSetting = [&main](std::string_view key, const std::string &value) {
        main.settings.setText(key, value);
    };
    host.letEventsRun = [] { QCoreApplication::processEvents(); };
}

}  // namespace saltmarrow

#endif
