#include <QAction>
#include <QPlainTextEdit>
#include <QSystemTrayIcon>

#include "discops/DiscCopy.h"
#include "discops/DiscErase.h"
#include "exec/frmLog.h"
#include "platform/CurrentDriveLayer.h"
#include "shell/frmMain.h"

// The main form's disc jobs of the read/copy and tools menus: the form
// gathers its panels and lends itself as their host; the jobs decide.
namespace saltmarrow {

void frmMain::connectDiscJobs() {
    on(mnuCopyCD, "mnuCopyCD_Click", [this] { mnuCopyCD_Click(); });
    on(mnuReadCD, "mnuReadCD_Click", [this] { runDiscJob(discops::mnuReadCD_Click); });
    on(mnuDDump, "mnuDDump_Click", [this] { runDiscJob(discops::mnuDDump_Click); });
    on(mnuResetWriter, "mnuResetWriter_Click", [this] { runDiscJob(discops::mnuResetWriter_Click); });
    copyDisc = [this] { runDiscJob(discops::copyDisc); };
}

void frmMain::runDiscJob(void (*job)(const discops::DiscJobHost &, const discops::DiscJobPanels &)) {
    const DeviceHost device = deviceHost();
    discops::DiscJobHost host;
    host.device = &device;
    host.devices = &deviceState;
    host.reading = &interpreterState;
    host.writeCancelled = &writeCancelled;
    host.writeFailed = &writeFailed;
    host.tools = {paths.strCdrdao, paths.strToc2Cue, paths.strReadom};
    host.tempFolder = appDir + "/external/TEMP";
    host.box = [this](const std::string &text, int style, const std::string &title) {
        return MsgBoxOverMe(text, style, title);
    };
    host.totalOutput = [this] { return runner.objDOS.totalOutput; };
    host.enableControls = [this](bool enable) { enableControls(enable, false); };
    host.openSettings = [this] { showSettings(true); };
    host.settingsShown = [this] { return mnuDeviceSettings->isChecked(); };
    host.autoHideSettings = [this] { autoHideSettings(); };
    host.lastReadFolder = [this] { return settings.text("MRURead"); };
    host.setLastReadFolder = [this](const std::string &folder) { settings.setText("MRURead", folder); };
    host.discStatus = [this] { return discStatus(); };
    host.readcd = [this](const std::string &command) { return interpreter->readcd(command); };
    host.writeFrame = [this](const std::string &command) { writeFrame(command); };
    host.loadImage = [this](const std::string &image) {
        commandLine = image;
        parseCommand();
    };
    host.appendLog = [this](const std::string &line) { log->appendLine(QString::fromStdString(line)); };

    discops::DiscJobPanels panels;
    panels.write = writePanel();
    panels.read = readPanel();
    panels.settings = fragmentSettings();
    panels.confirmWrite = mnuConfirmWrite->isChecked();
    job(host, panels);
}

void frmMain::mnuCopyCD_Click() {
    const Mode remembered = currentMode;
    ChangeCurrentMode(Mode::CopyCD);
    cmdWrite_Click();
    enableControls(true, false);
    ChangeCurrentMode(remembered);
}

void frmMain::discErase(const std::string &eraseMode) {
    const Mode remembered = currentMode;
    eraseCancelled_ = false;
    const int index = writerIndex();
    if (index < 0 || static_cast<std::size_t>(index) >= deviceState.devices.Count()) return;
    const discops::ErasePlan plan =
        discops::planErase(eraseMode, deviceState.devices.item(static_cast<std::size_t>(index)), writePanel(),
                           fragmentSettings(), {paths.strCdrdao, paths.strdvdrecord}, platform::driveLayer());
    ChangeCurrentMode(plan.mode);
    if (cSysTray1) cSysTray1->setToolTip(QString::fromStdString(msg("logBlankingDisc")));
    // The DVD writer blanks under its writing task; its blanking time then counts as its success.
    interpreterState.erasing = plan.mode == Mode::WriteDVD;
    writeFrame(plan.command);
    interpreterState.erasing = false;
    if (cSysTray1) cSysTray1->setToolTip(windowTitle());
    ChangeCurrentMode(remembered);
}

}  // namespace saltmarrow
