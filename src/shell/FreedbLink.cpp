#include "shell/FreedbLink.h"

#include <QAction>
#include <QApplication>

#include "shell/LanguageForms.h"
#include "shell/frmMain.h"

namespace saltmarrow {

FreedbHost freedbHost(frmMain &main) {
    FreedbHost host;
    host.dialogs = main.environment().dialogs;
    host.errors = main.environment().errors;
    host.terminate = main.environment().terminate;
    host.message = [&main](std::string_view key) { return main.messages.text(key); };
    host.loadSettings = [&main] {
        return FreedbSettings{main.settings.text("ServerList"), main.settings.integer("Server"),
                              main.settings.text("Email"), main.settings.text("SearchSite")};
    };
    host.saveSettings = [&main](const FreedbSettings &s) {
        main.settings.setText("ServerList", s.strServerList);
        main.settings.setInteger("Server", s.intServer);
        main.settings.setText("Email", s.strFreedbEmail);
        main.settings.setText("SearchSite", s.strSearchSite);
    };
    host.alwaysOnTop = [&main] { return main.mnuOnTop->isChecked(); };
    host.applyLanguage = [&main](QWidget *form) {
        applyLanguage(form, false, main.settings.text("Language"), main.messages, main.appDir);
    };
    return host;
}

QueryFreedbHook queryFreedbHook(frmMain &main) {
    return [&main](const std::vector<long> &lengthsMs) {
        return QueryFreedb(freedbHost(main), lengthsMs, QApplication::activeWindow());
    };
}

GetTrackLengthsHook getTrackLengthsHook(frmMain &main) {
    return [&main] { return GetTrackLengths(freedbHost(main), QApplication::activeWindow()); };
}

}  // namespace saltmarrow
