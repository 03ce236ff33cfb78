#include "shell/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFileInfo>
#include <QGroupBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <QSystemTrayIcon>
#include <QTime>
#include <QTimer>
#include <filesystem>

#include "devices/Discovery.h"
#include "devices/frmDeviceInfo.h"
#include "discops/DiscErase.h"
#include "discops/ImageDelete.h"
#include "discops/ImageLoad.h"
#include "discops/WriteDispatcher.h"
#include "discops/frmEraseCD.h"
#include "exec/EventPump.h"
#include "exec/frmLog.h"
#include "platform/CommandLine.h"
#include "platform/CurrentDriveLayer.h"
#include "platform/Dialogs.h"
#include "platform/EventWait.h"
#include "platform/MediumWatcher.h"
#include "platform/SingleInstance.h"
#include "platform/Sounds.h"
#include "shell/AudioLink.h"
#include "shell/DataLink.h"
#include "shell/ExtractLink.h"
#include "shell/LanguageForms.h"
#include "shell/MainInterpreterView.h"
#include "shell/ProductPicture.h"
#include "shell/SettingsControls.h"
#include "shell/WriteFrame.h"
#include "shell/frmAbout.h"
#include "shell/frmLanguage.h"
#include "shell/frmStartUp.h"
#include "support/ErrorReport.h"
#include "support/RuntimeError.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace {

const char *const kModule = "frmMain";

QString q(const std::string &s) {
    return QString::fromStdString(s);
}

double secondsSinceMidnight() {
    return QTime::currentTime().msecsSinceStartOfDay() / 1000.0;
}

}  // namespace

frmMain::frmMain(ShellEnvironment env) : env_(std::move(env)) {
    setObjectName("frmMain");
    setWindowTitle(QStringLiteral("saltmarrow"));
    setWindowIcon(productIcon());
    appDir = env_.appDir;
    commandLine = env_.commandLine;
    buildControls();
    buildMenus();
    log = new frmLog(*env_.dialogs, this);
    log->onUserHide = [this] { mnuLog->setChecked(false); };
    log->onMoved = [this] { logMoved(); };
    eraseForm = new frmEraseCD(
        eraseCancelled_, [this](const std::string &mode) { run("discErase", [&] { discErase(mode); }); },
        this);
    connectHandlers();
    connectDiscJobs();

    runner.setExternalFolder(appDir + "/external");
    runner.log.setPath(appDir + "/external/TEMP/commandlog.txt");
    // Whatever a line does wrong is reported here: it must not end the read
    // of a tool that is still running.
    runner.objDOS.ReceiveOutputs = [this](const std::string &line) {
        run("objDOS_ReceiveOutputs", [&] { interpreter->objDOS_ReceiveOutputs(line); });
    };
    runner.objDOS.nullOutputs = [this] {
        run("objDOS_nullOutputs", [&] { interpreter->objDOS_nullOutputs(); });
    };
    runner.objDOS.pump = [] { QCoreApplication::processEvents(QEventLoop::AllEvents); };
    runner.objDOS.waitForEvents = platform::waitForEvents;
    runner.jobs.post = [this](std::function<void()> work) { QTimer::singleShot(0, this, std::move(work)); };
    dataLink_ = std::make_unique<DataLink>(*this, env_);
    interpreterView_ = std::make_unique<MainInterpreterView>(*this, *env_.sounds);
    interpreter = std::make_unique<OutputInterpreter>(*interpreterView_, interpreterState,
                                                      secondsSinceMidnight, paths.cygwinRoot);
}

frmMain::~frmMain() = default;

void frmMain::run(const char *procedure, const std::function<void()> &handler) {
    const auto job = runner.jobs.begin();
    guard(*env_.errors, kModule, procedure, handler, [this] {
        if (env_.terminate) env_.terminate();
    });
}

void frmMain::on(QObject *sender, const char *procedure, const std::function<void()> &handler) {
    if (auto *a = qobject_cast<QAction *>(sender))
        connect(a, &QAction::triggered, this, [this, procedure, handler] { run(procedure, handler); });
    else if (auto *b = qobject_cast<QAbstractButton *>(sender))
        connect(b, &QAbstractButton::clicked, this, [this, procedure, handler] { run(procedure, handler); });
    else if (auto *c = qobject_cast<QComboBox *>(sender))
        connect(c, &QComboBox::activated, this, [this, procedure, handler] { run(procedure, handler); });
}

void frmMain::connectHandlers() {
    on(cmdWrite, "cmdWrite_Click", [this] { cmdWrite_Click(); });
    on(mnuLoad, "mnuLoad_Click", [this] { mnuLoad_Click(); });
    on(mnuLog, "mnuLog_Click", [this] { mnuLog_Click(); });
    on(mnuExit, "mnuExit_Click", [this] { close(); });
    on(mnuSysTrayExit, "mnuSysTrayExit_Click", [this] { close(); });
    on(mnuDeviceSettings, "mnuDeviceSettings_Click", [this] { mnuDeviceSettings_Click(); });
    on(mnuOnTop, "mnuOnTop_Click", [this] { applyOnTop(); });
    on(mnuMouseOver, "mnuMouseOver_Click",
       [this] { enableTooltips(this, mnuMouseOver->isChecked(), messages); });
    on(mnuHelpContents, "mnuHelpContents_Click", [this] {
        if (env_.openDocument) env_.openDocument(appDir + "/help/index.html");
    });
    on(mnuDonate, "mnuDonate_Click", [this] { mnuDonate_Click(); });
    on(mnuDonate2, "mnuDonate2_Click", [this] { mnuDonate_Click(); });
    on(mnuAbout, "mnuAbout_Click", [this] { mnuAbout_Click(); });
    on(mnuSysTrayAbout, "mnuSysTrayAbout_Click", [this] { mnuAbout_Click(); });
    on(mnuExternal, "mnuExternal_Click",
       [this] { MsgBoxOverMe(externalToolsList(paths, messages), platform::mb::Information); });
    on(mnuDeviceInfo, "mnuDeviceInfo_Click", [this] { mnuDeviceInfo_Click(); });
    on(mnuErase, "mnuErase_Click", [this] { mnuErase_Click(); });
    on(mnuAudioCD, "mnuAudioCD_Click", [this] { showAudioCD(*this); });
    on(mnuExtractTracks, "mnuExtractTracks_Click", [this] { showExtractTracks(*this); });
    on(mnuLanguages, "mnuLanguages_Click", [this] {
        autoHideSettings();
        frmLanguage dialog(appDir, settings.text("Language"), messages, *env_.dialogs, this);
        if (auto language = dialog.choose(this)) {
            settings.setText("Language", *language);
            close();
        }
        raise();
        activateWindow();
    });
    on(mnuRestore, "mnuRestore_Click", [this] { mnuRestore_Click(); });
    on(chkSimulate, "chkSimulate_Click", [this] {
        if (cmdWrite->property("tag").toString() == "tagged") enableControls(std::nullopt, false);
    });
    // The last two panels follow their boxes however they change, loaded
    // settings included.
    connect(chkSimulate, &QCheckBox::toggled, this,
            [this](bool on) { sbPanel[4]->setText(on ? QStringLiteral("Simulate") : QString()); });
    connect(ChkWriteDriverRaw, &QCheckBox::toggled, this,
            [this](bool on) { sbPanel[3]->setText(on ? QStringLiteral("RAW") : QString()); });
    connect(cmbSpeed, &QComboBox::currentTextChanged, this,
            [this](const QString &t) { sbPanel[2]->setText(t); });
    on(cmbWriterDevice, "cmbWriterDevice_Click", [this] { cmbWriterDevice_Click(); });
    on(cmbReaderDevice, "cmbReaderDevice_Click", [this] { cmbReaderDevice_Click(); });
    on(chkUseSPTI, "chkUseSPTI_Click", [this] { chkUseSPTI_Click(); });
    // Every change of a panel is kept in its drive's option fields at once.
    for (QWidget *box :
         std::initializer_list<QWidget *>{ChkWriteDriverRaw, chkWriteCDText, chkBurnProof, chkEject, chkForce,
                                          chkOverburn, chkMultiSession, chkSimulate, cmbSpeed, cmbBuffers})
        on(box, "writeOptions_Click", [this] { writeOptions_Click(); });
    for (QWidget *box : std::initializer_list<QWidget *>{chkReadRaw, chkReadCDText, chkSwapAudio,
                                                         chkSimpleTOC, cmbParanoia, cmbSubs})
        on(box, "readOptions_Click", [this] { readOptions_Click(); });
    connect(txtStatus, &QLineEdit::textChanged, this, [this] { updateCaptionProgress(); });
}

std::string frmMain::msg(const std::string &key) const {
    return messages.text(key);
}

void frmMain::setStatus(const std::string &text) {
    txtStatus->setText(q(text));
}

int frmMain::MsgBoxOverMe(const std::string &text, int style, const std::string &title) {
    return env_.dialogs->MsgBoxOverMe(text, style, title.empty() ? "saltmarrow" : title);
}

void frmMain::showRefusal(const discops::Refusal &refusal) {
    if (!refusal.key.empty()) MsgBoxOverMe(msg(refusal.key), refusal.style);
    if (!refusal.statusKey.empty()) setStatus(msg(refusal.statusKey));
    if (refusal.openSettings && !mnuDeviceSettings->isChecked()) showSettings(true);
}

void frmMain::splash(const std::string &text, int step) {
    if (!startUp_) return;
    startUp_->lblStatus->setText(q(text));
    if (step >= 0) startUp_->prgStatus->setValue(step);
    QCoreApplication::processEvents();
}

bool frmMain::startAsSecondInstance() {
    instance_ = std::make_unique<platform::SingleInstance>(appDir);
    if (!instance_->firstInstanceRunning()) {
        instance_->listen([this](const std::string &text) { receiveHandOver(text); });
        return false;
    }
    // With the marker file an instance without arguments may start beside
    // the first one; anything else goes to the first one.
    const bool mayStart = commandLine.empty() && QFileInfo::exists(q(appDir + "/multi.instance"));
    if (!mayStart && instance_->handOver(commandLine)) return true;
    secondInstance = true;
    runner.log.setAllowed(false);
    instance_.reset();
    return false;
}

bool frmMain::Form_Load() {
    // A hand-over or a medium change that comes during start-up waits for its end.
    const auto job = runner.jobs.begin();
    langTemplate_ = vb::InStr(commandLine, "/langtemplate", vb::Compare::Text) > 0;
    if (env_.singleInstance && startAsSecondInstance()) return false;
    // Without an SPTI layer the box stays off and out of reach, as on a
    // system that never had the layer.
    isNT = platform::driveLayer().hasSPTILayer();
    if (!isNT) {
        chkUseSPTI->setProperty("tag", QString());
        chkUseSPTI->setEnabled(false);
    }

    // The interface choice, the DVD writer and the language come first, so
    // that the splash already speaks the user's language.
    const std::string ini = settingsPath(appDir);
    run("preloadSettings", [&] { preloadSettings(ini, settings); });
    const std::string language = startLanguage(this, settings, messages, appDir);
    for (QWidget *form : std::initializer_list<QWidget *>{log, eraseForm})
        applyLanguage(form, false, language, messages, appDir);
    writeCaption = cmdWrite->text().toStdString();
    if (env_.showSplash) {
        startUp_ = new frmStartUp();
        startUp_->setAttribute(Qt::WA_DeleteOnClose);
        if (QScreen *screen = QGuiApplication::primaryScreen())
            startUp_->move(screen->geometry().center() - startUp_->rect().center());
        startUp_->show();
        splash("Starting...", 0);
    }

    // A folder that cannot be made is reported; on Ignore start-up goes on
    // without it and the tools that need it say so when used.
    run("Form_Load", [&] {
        std::error_code ec;
        std::filesystem::create_directories(appDir + "/external/TEMP", ec);
        if (ec) throw RuntimeError(err::PathNotFound, "Path not found: " + appDir + "/external/TEMP");
    });
    splash("Looking for tools...", 1);
    ToolRegistry tools(appDir, *env_.dialogs, messages);
    paths = tools.resolveTools();
    commandFile = appDir + "/external/TEMP/command.bat";
    mkisofsToc = appDir + "/external/TEMP/mkisofs.toc";
    parseCommand();
    if (settings.boolean("UseProDVD")) tools.applyProDVD(paths);
    deviceState.isNT = isNT;
    deviceState.chkUseSPTI = settings.ticked("SPTI Interface") ? 1 : 0;

    splash("Scanning devices...", 2);
    DeviceLists lists;
    {
        DeviceHost host = deviceHost();
        run("scanbus", [&] { startupScanDevices(deviceState, host, !paths.strCdrdao.empty(), lists); });
    }
    chkUseSPTI->setChecked(deviceState.chkUseSPTI == 1);
    applyDeviceLists(lists);
    fillFixedLists();
    log->setLogFont(QStringLiteral("ProFontWindows"), 9);

    splash("Loading settings...", 3);
    // The store holds every default already; what the controls say now (the
    // interface the scan settled) goes in before the file is read.
    encoderTable = defaultEncoderTable();
    settingsFromControls(this, settings);
    run("loadSettings", [&] {
        loadSettings(ini, settings, encoderTable, {&deviceState.devices, lists.reader});
    });
    // Whatever the read reached stands, a malformed line or not.
    controlsFromSettings(this, settings);
    applyLegacySettings(this, settings);
    slot.lastFolder = settings.text("MRUWrite");
    deviceState.chkUseSPTI = chkUseSPTI->isChecked() ? 1 : 0;
    if (auto i = entryOfDevice(deviceState.devices, settings.text("ReaderDevice"), lists.reader,
                               chkUseSPTI->isChecked()))
        lists.readerIndex = static_cast<int>(*i);
    log->setLogFont(q(settings.text("CommandLog Font")), settings.real("CommandLog Size"));

    // Drivers and drive queries, then the writers among the drives.
    {
        DeviceHost host = deviceHost();
        run("getDrivers",
            [&] { startupConfigureDevices(deviceState, host, lists, settings.text("WriterDevice")); });
    }
    applyDeviceLists(lists);
    for (const auto &line : toolReportLines(paths, messages)) runner.log.writeLine(line);

    fixSizes();
    if (chkAutoHide->isChecked()) mnuDeviceSettings->setChecked(false);
    showSettings(mnuDeviceSettings->isChecked());

    if (QSystemTrayIcon::isSystemTrayAvailable()) {
        cSysTray1 = new QSystemTrayIcon(productIcon(), this);
        cSysTray1->setToolTip(QStringLiteral("saltmarrow"));
        cSysTray1->setContextMenu(mnuSysTray);
        connect(cSysTray1, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason r) {
            if (r == QSystemTrayIcon::DoubleClick || r == QSystemTrayIcon::Trigger)
                run("cSysTray1_DblClick", [this] { mnuRestore_Click(); });
        });
    }
    enableTooltips(this, mnuMouseOver->isChecked(), messages);
    log->txtOutputs->moveCursor(QTextCursor::End);
    if (langTemplate_) {
        run("writeLanguageTemplate", [&] {
            writeLanguageTemplate(appDir, "Template", {this, log, eraseForm}, messages, Version);
        });
    }

    // A disc put in or taken out refreshes the drive status by itself.
    // During a job the refresh waits for its end, and a burst of changes gives one refresh.
    new platform::MediumWatcher(
        [this](bool removed) {
            runner.jobs.whenIdle(
                [this, removed] { run("WindowProc", [&] { updateMediaInfo(true, removed, false); }); },
                "medium");
        },
        this);

    formLoaded = true;
    run("cmbWriterDevice_Click", [this] { cmbWriterDevice_Click(); });
    run("cmbReaderDevice_Click", [this] { cmbReaderDevice_Click(); });
    enableControls(std::nullopt, false);
    splash("Ready", 4);
    if (startUp_) startUp_->close();
    for (int i = 0; i < 4; ++i) QCoreApplication::processEvents();
    return true;
}

void frmMain::fillFixedLists() {
    cmbBuffers->clear();
    for (auto b : kBufferSizes) cmbBuffers->addItem(q(std::string(b)));
    cmbBuffers->setCurrentIndex(3);
    cmbParanoia->clear();
    for (const char *key : {"cmbNoChecking", "cmbOverlapRead", "cmbAdditionalChecks", "cmbScratchDetect"})
        cmbParanoia->addItem(q(msg(key)));
    cmbParanoia->setCurrentIndex(0);
    cmbSubs->clear();
    for (const char *key : {"cmbNoSubs", "cmbRWSubs", "cmbRawRWSubs"}) cmbSubs->addItem(q(msg(key)));
    cmbSubs->setCurrentIndex(0);
}

void frmMain::receiveHandOver(const std::string &text) {
    // A running write keeps its image: the new one is loaded once the job has ended.
    runner.jobs.whenIdle([this, text] {
        run("WindowProc", [&] {
            commandLine = text.substr(0, platform::SingleInstance::kMaxText);
            parseCommand();
            mnuRestore_Click();
        });
    });
}

discops::ImageContext frmMain::imageContext() {
    discops::ImageContext ctx;
    ctx.appDir = appDir;
    ctx.dialogs = env_.dialogs;
    ctx.msg = [this](const std::string &key) { return msg(key); };
    ctx.cdrdao = paths.strCdrdao;
    // Sizes and checks run cdrdao quietly: its lines are nobody's business.
    ctx.run = [this](const std::string &command) {
        const Mode old = currentMode;
        ChangeCurrentMode(Mode::HideMe);
        const bool ok = commandExecute(command);
        ChangeCurrentMode(old);
        return discops::CommandResult{ok, ok ? runner.commandOutput : std::string()};
    };
    return ctx;
}

void frmMain::parseCommand() {
    slot.startCommand = commandLine;
    if (vb::InStr(commandLine, "/langtemplate", vb::Compare::Text) > 0) return;
    discops::ParseCommandInput input;
    input.cmdWriteEnabled = cmdWrite->isEnabled();
    input.formLoaded = formLoaded;
    input.commandLine = commandLine;
    input.chkCheckCUE = chkCheckCUE->isChecked();
    input.discSizeText = "700MB";
    discops::ParseCommandResult r = discops::parseCommand(slot, input, imageContext());
    if (!r.ran) return;
    sbPanel[0]->setText(q(r.panel1));
    sbPanel[0]->setToolTip(q(slot.strFilename));
    ChangeCurrentMode(r.mode);
    setStatus(r.txtStatus);
    if (r.startWrite) cmdWrite_Click();
    // Before the form is up the write waits for its first showing.
    else if (!formLoaded && r.loaded && vb::Left(vb::Trim(commandLine), 3) == "-w ")
        autoWritePending = true;
}

void frmMain::enableControls(std::optional<bool> enable, bool cancellable) {
    if (enable && *enable) {
        cancellable = false;
        updateMediaInfo(false, false, false);
    }
    if (cancellable) {
        cmdWrite->setProperty("tag", QString());
        cmdWrite->setText(q(msg("msgCancel")));
        cmdWrite->setEnabled(true);
    } else {
        cmdWrite->setProperty("tag", "tagged");
        cmdWrite->setText(chkSimulate->isChecked() ? q(msg("msgSimulate")) : q(writeCaption));
    }
    if (!enable) return;
    for (QMenu *m : {mnuFile, mnuSettings, mnuHelp, mnuTools, mnuMastering, mnuReadCopy})
        m->menuAction()->setEnabled(*enable);
    for (QWidget *w : findChildren<QWidget *>())
        if (w->property("tag").toString() == QLatin1String("tagged")) w->setEnabled(*enable);
    // The close button goes with the menus; closeEvent refuses while busy.
    busy_ = !*enable;
}

bool frmMain::commandExecute(const std::string &command) {
    return runner.commandExecute(command);
}

void frmMain::writeFrame(const std::string &command) {
    writeSucceeded = false;
    writeFailed = false;
    autoHideSettings();
    log->clearLog();
    ProgressBar1->setValue(0);
    setStatus(msg("msgInitWrite"));
    if (cSysTray1) cSysTray1->setToolTip(txtStatus->text());
    enableControls(false, true);

    framing_ = true;
    const QDateTime writeStartTime = QDateTime::currentDateTime();
    commandExecute(command);
    framing_ = false;

    ProgressBar1->setValue(0);
    setWindowTitle(QStringLiteral("saltmarrow"));
    if (cSysTray1) {
        cSysTray1->setIcon(productIcon());
        cSysTray1->setToolTip(windowTitle());
    }
    enableControls(true, false);

    WriteOutcomeInput in;
    in.writeSucceeded = writeSucceeded;
    in.writeFailed = writeFailed;
    in.writeCancelled = writeCancelled;
    in.confirmWrite = mnuConfirmWrite->isChecked();
    in.deleteImages = chkDelImage->isChecked();
    in.mode = interpreterState.erasing ? Mode::EraseCD : currentMode;  // a DVD blank is an erase too
    in.elapsedSeconds = writeStartTime.secsTo(QDateTime::currentDateTime());
    WriteOutcome out = decideWriteOutcome(in, {msg("msgTimeHrs"), msg("msgTimeMins"), msg("msgTimeSecs")});

    if (out.restoreFromTray) mnuRestore_Click();
    if (out.playAsterisk) env_.sounds->play("SystemAsterisk", true);
    if (out.setSpeedPanel) sbPanel[2]->setText(cmbSpeed->currentText());
    if (out.statusKey.empty()) return;
    std::string status = msg(out.statusKey);
    if (!out.elapsedText.empty()) status = vb::Replace(status, "%1", out.elapsedText);
    setStatus(status);
    if (out.showMessageBox) MsgBoxOverMe(status, platform::mb::Information);
    if (out.offerDelete) deleteImage();
}

void frmMain::cmdWrite_Click() {
    discops::WriteClick click;
    click.cancelling = cmdWrite->text() == q(msg("msgCancel"));
    click.mode = currentMode;
    click.panel = writePanel();
    click.settings = fragmentSettings();
    click.confirmWrite = mnuConfirmWrite->isChecked();

    discops::WriteHost host;
    host.box = [this](const std::string &text, int style) { return MsgBoxOverMe(text, style); };
    host.status = [this](const std::string &text) { setStatus(text); };
    host.killInstantly = [this] { runner.objDOS.killInstantly(); };
    host.writeCancelled = &writeCancelled;
    host.openSettings = [this] {
        if (!mnuDeviceSettings->isChecked()) showSettings(true);
    };
    host.chooseImage = [this] { mnuLoad_Click(); };
    host.enableControls = [this](bool enable) { enableControls(enable, false); };
    host.autoHideSettings = [this] { autoHideSettings(); };
    host.refreshMedia = [this] {
        updateMediaInfo(false, false, false);
        return writePanel();
    };
    host.offerErase = [this] { return eraseForm->offerErase(); };
    host.copyDisc = copyDisc;
    host.writeDataCD = writeDataCD;
    host.writeDVDImage = writeDVDImage;
    host.write = [this](const discops::WritePlan &plan) {
        runner.setExternalFolder(plan.folder);
        writeFrame(platform::quoteArgument(commandFile));
        runner.setExternalFolder(appDir + "/external");
    };
    discops::cmdWrite_Click(click, deviceState, deviceHost(), slot, imageContext(), host);
}

void frmMain::deleteImage() {
    discops::DeleteImageResult r = discops::deleteImage(slot, strTempName, currentMode, imageContext());
    if (r.panel1) sbPanel[0]->setText(q(*r.panel1));
    if (r.reload) {
        commandLine = slot.startCommand;
        parseCommand();
    }
}

void frmMain::mnuLoad_Click() {
    if (!discops::chooseImage(slot, *env_.dialogs)) return;
    commandLine = slot.startCommand;
    parseCommand();
}

void frmMain::mnuLog_Click() {
    placeLog();
}

void frmMain::mnuDeviceSettings_Click() {
    showSettings(mnuDeviceSettings->isChecked());
}

void frmMain::saveSettings() {
    if (!formLoaded) return;
    settingsFromControls(this, settings);
    const bool spti = chkUseSPTI->isChecked();
    const DeviceTable &devices = deviceState.devices;
    settings.setText("WriterDevice",
                     deviceNumberOfEntry(devices, cmbWriterDevice->currentText().toStdString(), spti));
    settings.setText("ReaderDevice",
                     deviceNumberOfEntry(devices, cmbReaderDevice->currentText().toStdString(), spti));
    settings.setText("MRUWrite", slot.lastFolder);
    settings.setText("Version", Version);
    saltmarrow::saveSettings(settingsPath(appDir), formLoaded, settings, devices, encoderTable);
}

void frmMain::mnuDonate_Click() {
    if (env_.openDocument) env_.openDocument(appDir + "/help/donate.html");
}

void frmMain::mnuAbout_Click() {
    auto *about = new frmAbout(q(Version), this);
    about->setAttribute(Qt::WA_DeleteOnClose);
    about->show();
}

void frmMain::mnuDeviceInfo_Click() {
    if (auto refusal = discops::writerRefusal(cmbWriterDevice->currentText().toStdString()))
        return showRefusal(*refusal);
    autoHideSettings();
    if (!deviceInfoForm) {
        deviceInfoHost_ = std::make_unique<DeviceHost>(deviceHost());
        DeviceInfoSources sources;
        sources.writerDevice = [this] { return writerDeviceFragment(); };
        sources.discFreeBytes = [this] { return slot.discFreeBytes; };
        deviceInfoForm = new frmDeviceInfo(deviceState, *deviceInfoHost_, sources, this);
        applyLanguage(deviceInfoForm, false, settings.text("Language"), messages, appDir);
    }
    // Filled first, so that it is placed by the size its texts give it.
    deviceInfoForm->ShowDeviceInfo(writerIndex());
    deviceInfoForm->showBeside(this);
}

void frmMain::mnuErase_Click() {
    if (auto refusal = discops::writerRefusal(cmbWriterDevice->currentText().toStdString()))
        return showRefusal(*refusal);
    autoHideSettings();
    eraseForm->exec();
}

void frmMain::updateCaptionProgress() {
    if (!framing_ || !isWriteMode(currentMode)) return;
    const std::string caption = progressCaption(ProgressBar1->value(), ProgressBar1->maximum(), "saltmarrow");
    setWindowTitle(q(caption));
    if (cSysTray1) cSysTray1->setToolTip(q(caption));
}

bool frmMain::queryUnload() {
    const std::string temp = settings.text("TempFolder");
    if (temp.empty() || !QFileInfo(q(temp)).isDir()) return true;
    const int answer =
        MsgBoxOverMe(msg("msgDeleteTemp") + temp + "?", platform::mb::YesNoCancel | platform::mb::Question);
    if (answer == platform::mb::Cancel) return false;
    if (answer == platform::mb::Yes) {
        std::error_code ec;
        std::filesystem::remove_all(temp, ec);
    }
    return true;
}

void frmMain::Form_Unload() {
    if (cSysTray1) cSysTray1->hide();
    run("saveSettings", [this] { saveSettings(); });
    formLoaded = false;
    runner.log.close();
    log->allowClose();
    log->close();
    if (startUp_) startUp_->close();
}

void frmMain::closeEvent(QCloseEvent *event) {
    if (busy_) {
        event->ignore();
        return;
    }
    bool go = true;
    run("Form_QueryUnload", [&] { go = queryUnload(); });
    if (!go) {
        event->ignore();
        return;
    }
    run("Form_Unload", [&] { Form_Unload(); });
    event->accept();
    QCoreApplication::quit();  // the tray keeps no program alive once the form is gone
}

}  // namespace saltmarrow
