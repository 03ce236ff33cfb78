#include "shell/ExtractLink.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>

#include "extract/frmExtractTracks.h"
#include "platform/CurrentDriveLayer.h"
#include "platform/Dialogs.h"
#include "shell/FreedbLink.h"
#include "shell/LanguageForms.h"
#include "shell/MainHooks.h"
#include "shell/frmMain.h"
#include "support/ErrorReport.h"

namespace saltmarrow {

ExtractHost extractHost(frmMain &main) {
    ExtractHost host;
    const ShellEnvironment &env = main.environment();
    fillMainHooks(main, host);
    host.encoders = [&main] {
        std::vector<EncoderRow> rows;
        if (main.encoderTable)
            for (const auto &row : main.encoderTable->rows) rows.push_back(row);
        return rows;
    };
    host.setEncoder = [&main](std::size_t row, const EncoderRow &fields) {
        if (main.encoderTable && row < main.encoderTable->rowCount()) main.encoderTable->rows[row] = fields;
    };
    host.externalFolder = main.runner.externalFolder();
    host.readerDevice = [&main] {
        const std::string text = main.cmbReaderDevice->currentText().toStdString();
        if (main.cmbReaderDevice->currentIndex() < 0 || text.empty()) return std::string();
        const platform::DriveLayer &layer = platform::driveLayer();
        return layer.cdrdaoDevice(layer.addressOf(text), main.chkUseSPTI->isChecked(), false);
    };
    host.QueryFreedb = queryFreedbHook(main);
    host.openFolder = env.openDocument;
    host.guard = [&main](const char *procedure, const std::function<void()> &handler) {
        // A medium change or a hand-over that comes meanwhile waits for the handler's end.
        const auto job = main.runner.jobs.begin();
        const ShellEnvironment &e = main.environment();
        if (!e.errors) return handler();
        guard(*e.errors, "frmExtractTracks", procedure, handler, [&e] {
            if (e.terminate) e.terminate();
        });
    };
    host.translateForm = [&main](QWidget *form) {
        applyLanguage(form, false, main.settings.text("Language"), main.messages, main.appDir);
    };
    return host;
}

void showExtractTracks(frmMain &main) {
    if (main.cmbReaderDevice->currentIndex() < 0) {
        main.MsgBoxOverMe(main.msg("msgSelectReader"), platform::mb::Exclamation);
        return;
    }
    const bool made = !main.extractTracks;
    if (made) {
        main.extractTracks = new frmExtractTracks(extractHost(main), &main);
        applyLanguage(main.extractTracks, false, main.settings.text("Language"), main.messages, main.appDir);
    }
    main.extractTracks->show();
    main.extractTracks->raise();
    main.extractTracks->activateWindow();
    if (made) main.extractTracks->Form_Load();
}

}  // namespace saltmarrow
