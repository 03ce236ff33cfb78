#include "shell/AudioLink.h"

#include <QAction>
#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

#include "audio/frmAudioCD.h"
#include "shell/FreedbLink.h"
#include "shell/LanguageForms.h"
#include "shell/MainHooks.h"
#include "shell/frmMain.h"
#include "support/AtomicFile.h"
#include "support/ErrorReport.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

AudioHost audioHost(frmMain &main) {
    AudioHost host;
    const ShellEnvironment &env = main.environment();
    fillMainHooks(main, host);
    host.tools = DecoderTools{main.paths.strLame, main.paths.strOGG, main.paths.strFLAC,    main.paths.strMAC,
                              main.paths.strMPC,  main.paths.strAAC, main.paths.strWaveGain};
    host.tempName = [&main] { return main.strTempName; };
    host.setTempName = [&main](const std::string &folder) { main.strTempName = folder; };
    host.writeCommandLog = [&main](const std::string &line) { main.runner.log.writeLine(line); };
    host.replaceFile = [](const std::string &path, std::string_view bytes) {
        replaceFileAtomically(path, bytes);
    };
    host.loadCompiledToc = [&main](const std::string &toc, bool autoWrite) {
        loadAudioToc(main, toc, autoWrite);
    };
    host.openDocument = env.openDocument;
    host.guard = [&env](const char *procedure, const std::function<void()> &handler) {
        guard(*env.errors, "frmAudioCD", procedure, handler, [&env] {
            if (env.terminate) env.terminate();
        });
    };
    host.tooltipsShown = [&main] { return main.mnuMouseOver->isChecked(); };
    host.QueryFreedb = queryFreedbHook(main);
    if (auto lengths = getTrackLengthsHook(main))
        host.GetTrackLengths =
            [lengths]() -> std::optional<std::pair<std::vector<std::string>, FreedbResult>> {
            auto found = lengths();
            if (!found) return std::nullopt;
            return std::make_pair(std::move(found->lengths), std::move(found->names));
        };
    host.translateForm = [&main](QWidget *form) {
        applyLanguage(form, false, main.settings.text("Language"), main.messages, main.appDir);
    };
    return host;
}

void loadAudioToc(frmMain &main, const std::string &tocPath, bool autoWrite) {
    main.slot.strFilename = tocPath;
    main.slot.tempISOSheet = false;
    const std::string label = vb::UCase(main.msg("msgAudioCD"));
    main.sbPanel[0]->setText(QString::fromStdString(label));
    main.setStatus(label);
    main.ChangeCurrentMode(Mode::AudioCD);
    main.mnuRestore_Click();
    if (autoWrite) QTimer::singleShot(0, main.cmdWrite, [&main] { main.cmdWrite->click(); });
}

void showAudioCD(frmMain &main) {
    if (!main.audioCD) {
        main.audioCD = new frmAudioCD(audioHost(main), &main);
        applyLanguage(main.audioCD, false, main.settings.text("Language"), main.messages, main.appDir);
        main.audioCD->Form_Load();
    }
    main.audioCD->enableTooltips(main.mnuMouseOver->isChecked());
    main.audioCD->show();
    main.audioCD->raise();
    main.audioCD->activateWindow();
}

}  // namespace saltmarrow
