#include "shell/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <QSystemTrayIcon>
#include <QThread>
#include <QTime>
#include <QTimer>
#include <QVBoxLayout>
#include <cmath>
#include <filesystem>
#include <map>

#include "devices/Discovery.h"
#include "devices/DriveQueries.h"
#include "devices/frmDeviceInfo.h"
#include "discops/ImageDelete.h"
#include "discops/ImageLoad.h"
#include "discops/ImageSize.h"
#include "discops/SheetCheck.h"
#include "discops/SheetFile.h"
#include "discops/frmEraseCD.h"
#include "exec/EventPump.h"
#include "exec/LogDocking.h"
#include "exec/frmLog.h"
#include "platform/CommandLine.h"
#include "platform/Dialogs.h"
#include "platform/DriveLayer.h"
#include "platform/EventWait.h"
#include "platform/MediumWatcher.h"
#include "platform/SingleInstance.h"
#include "platform/Sounds.h"
#include "shell/AudioLink.h"
#include "shell/DataLink.h"
#include "shell/ExtractLink.h"
#include "shell/LanguageForms.h"
#include "shell/SettingsControls.h"
#include "shell/WriteFrame.h"
#include "shell/frmLanguage.h"
#include "shell/frmStartUp.h"
#include "support/ErrorReport.h"
#include "support/RuntimeError.h"
#include "support/TimeText.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace {

constexpr int kTwipsPerPixel = 15;
const char *const kModule = "frmMain";

QString q(const std::string &s) {
    return QString::fromStdString(s);
}

// The main form as the output interpreter sees it.
class MainInterpreterView : public InterpreterView {
public:
    MainInterpreterView(frmMain &form, platform::Sounds &sounds) : f_(form), sounds_(sounds) {}

    int progressValue() const override { return f_.ProgressBar1->value(); }
    void setProgressValue(int value) override {
        // The write progress sets the value before the maximum.
        if (value > f_.ProgressBar1->maximum()) f_.ProgressBar1->setMaximum(value);
        f_.ProgressBar1->setValue(value);
    }
    void setProgressMax(int max) override { f_.ProgressBar1->setMaximum(std::max(max, 1)); }
    void setStatus(const std::string &text) override { f_.setStatus(text); }
    bool logEmpty() const override { return f_.log->txtOutputs->document()->isEmpty(); }
    void appendLog(const std::string &line) override { f_.log->appendLine(q(line)); }
    void clearLog() override { f_.log->clearLog(); }
    void setCaption(const std::string &caption) override { f_.setWindowTitle(q(caption)); }
    void setTrayTip(const std::string &tip) override {
        if (f_.cSysTray1) f_.cSysTray1->setToolTip(q(tip));
    }
    void setWriteSucceeded() override { f_.writeSucceeded = true; }
    void setWriteFailed() override { f_.writeFailed = true; }
    bool killInstantly() override { return f_.runner.objDOS.killInstantly(); }
    void letEventsRun() override { events_(); }
    std::string message(std::string_view key) const override { return f_.messages.text(key); }
    platform::Sounds &sounds() override { return sounds_; }
    void writeCommandLog(const std::string &line) override { f_.runner.log.writeLine(line); }
    std::string currentMode() const override { return f_.currentMode; }
    void ChangeCurrentMode(const std::string &mode) override { f_.ChangeCurrentMode(mode); }
    bool commandExecute(const std::string &command) override { return f_.commandExecute(command); }
    void autoHideSettings() override { f_.autoHideSettings(); }
    void enableControls(bool enable, bool cancellable) override { f_.enableControls(enable, cancellable); }
    void restoreWindow() override { f_.mnuRestore_Click(); }
    std::string elapsedTimeText(long seconds) const override {
        return saltmarrow::elapsedTimeText(seconds, f_.msg("msgTimeHrs"), f_.msg("msgTimeMins"),
                                           f_.msg("msgTimeSecs"));
    }

private:
    frmMain &f_;
    platform::Sounds &sounds_;
    // The interpreters let events run several times a line.
    EventPump events_{[] { QCoreApplication::processEvents(); }};
};

double secondsSinceMidnight() {
    return QTime::currentTime().msecsSinceStartOfDay() / 1000.0;
}

int checkValue(const QCheckBox *box) {
    return box->isChecked() ? 1 : 0;
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
    connectHandlers();

    runner.setExternalFolder(appDir + "/external");
    runner.log.setPath(appDir + "/external/TEMP/commandlog.txt");
    runner.objDOS.ReceiveOutputs = [this](const std::string &line) { objDOS_ReceiveOutputs(line); };
    runner.objDOS.nullOutputs = [this] { objDOS_nullOutputs(); };
    runner.objDOS.pump = [] { QCoreApplication::processEvents(QEventLoop::AllEvents); };
    runner.objDOS.waitForEvents = platform::waitForEvents;
    runner.jobs.post = [this](std::function<void()> work) { QTimer::singleShot(0, this, std::move(work)); };
    eraseForm_ = new frmEraseCD(
        eraseCancelled_, [this](const std::string &mode) { run("discErase", [&] { discErase(mode); }); },
        this);
    offerErase = [this] { return eraseForm_->offerErase(); };
    dataLink_ = std::make_unique<DataLink>(*this, env_);
    interpreterView_ = std::make_unique<MainInterpreterView>(*this, *env_.sounds);
    interpreter = std::make_unique<OutputInterpreter>(*interpreterView_, interpreterState,
                                                      secondsSinceMidnight, paths.cygwinRoot);
}

frmMain::~frmMain() = default;

void frmMain::buildControls() {
    auto *central = new QWidget(this);
    central->setObjectName("centralArea");
    setCentralWidget(central);

    txtStatus = new QLineEdit(central);
    txtStatus->setObjectName("txtStatus");
    txtStatus->setReadOnly(true);
    txtStatus->setFocusPolicy(Qt::NoFocus);
    ProgressBar1 = new QProgressBar(central);
    ProgressBar1->setObjectName("ProgressBar1");
    ProgressBar1->setRange(0, 100);
    ProgressBar1->setValue(0);
    ProgressBar1->setTextVisible(false);
    cmdWrite = new QPushButton(QStringLiteral("&Write"), central);
    cmdWrite->setObjectName("cmdWrite");
    cmdWrite->setProperty("tag", "tagged");
    cmdWrite->setMinimumWidth(96);

    auto tagged = [](QWidget *w) {
        w->setProperty("tag", "tagged");
        return w;
    };
    auto check = [&](QWidget *parent, const char *name, const char *caption) {
        auto *c = new QCheckBox(QString::fromUtf8(caption), parent);
        c->setObjectName(name);
        tagged(c);
        return c;
    };
    auto combo = [&](QWidget *parent, const char *name) {
        auto *c = new QComboBox(parent);
        c->setObjectName(name);
        tagged(c);
        return c;
    };
    auto label = [&](QWidget *parent, const char *name, const char *caption) {
        auto *l = new QLabel(QString::fromUtf8(caption), parent);
        l->setObjectName(name);
        return l;
    };

    settingsArea = new QWidget(central);
    settingsArea->setObjectName("settingsArea");

    frameReader = new QGroupBox(QStringLiteral("Read Settings"), settingsArea);
    frameReader->setObjectName("frameReader");
    cmbReaderDevice = combo(frameReader, "cmbReaderDevice");
    chkReadRaw = check(frameReader, "chkReadRaw", "Read Raw");
    chkSimpleTOC = check(frameReader, "chkSimpleTOC", "Simple TOC");
    chkSwapAudio = check(frameReader, "chkSwapAudio", "Swap Audio");
    chkReadCDText = check(frameReader, "chkReadCDText", "Read CD-Text");
    lblParanoia = label(frameReader, "lblParanoia", "Paranoia:");
    cmbParanoia = combo(frameReader, "cmbParanoia");
    lblSubs = label(frameReader, "lblSubs", "Subchannels:");
    cmbSubs = combo(frameReader, "cmbSubs");
    {
        auto *g = new QGridLayout(frameReader);
        g->setContentsMargins(6, 4, 6, 4);
        g->setVerticalSpacing(2);
        g->addWidget(cmbReaderDevice, 0, 0, 1, 2);
        g->addWidget(chkReadRaw, 1, 0);
        g->addWidget(chkSimpleTOC, 1, 1);
        g->addWidget(chkSwapAudio, 2, 0);
        g->addWidget(chkReadCDText, 2, 1);
        g->addWidget(lblParanoia, 3, 0);
        g->addWidget(cmbParanoia, 3, 1);
        g->addWidget(lblSubs, 4, 0);
        g->addWidget(cmbSubs, 4, 1);
        g->setRowStretch(5, 1);
    }

    frameWriter = new QGroupBox(QStringLiteral("Write Settings"), settingsArea);
    frameWriter->setObjectName("frameWriter");
    cmbWriterDevice = combo(frameWriter, "cmbWriterDevice");
    lblSpeed = label(frameWriter, "lblSpeed", "Speed:");
    cmbSpeed = combo(frameWriter, "cmbSpeed");
    lblBuffers = label(frameWriter, "lblBuffers", "Buffers:");
    cmbBuffers = combo(frameWriter, "cmbBuffers");
    ChkWriteDriverRaw = check(frameWriter, "ChkWriteDriverRaw", "Use Raw Driver");
    chkEject = check(frameWriter, "chkEject", "Eject Disc");
    chkBurnProof = check(frameWriter, "chkBurnProof", "Buffer Protection");
    chkOverburn = check(frameWriter, "chkOverburn", "Overburn");
    chkWriteCDText = check(frameWriter, "chkWriteCDText", "Write CD-Text");
    chkSimulate = check(frameWriter, "chkSimulate", "Simulate");
    chkMultiSession = check(frameWriter, "chkMultiSession", "MultiSession");
    chkForce = check(frameWriter, "chkForce", "Force Execution");
    {
        auto *g = new QGridLayout(frameWriter);
        g->setContentsMargins(6, 4, 6, 4);
        g->setVerticalSpacing(2);
        g->addWidget(cmbWriterDevice, 0, 0, 1, 4);
        g->addWidget(lblSpeed, 1, 0);
        g->addWidget(cmbSpeed, 1, 1);
        g->addWidget(lblBuffers, 1, 2);
        g->addWidget(cmbBuffers, 1, 3);
        g->addWidget(ChkWriteDriverRaw, 2, 0, 1, 2);
        g->addWidget(chkEject, 2, 2, 1, 2);
        g->addWidget(chkBurnProof, 3, 0, 1, 2);
        g->addWidget(chkOverburn, 3, 2, 1, 2);
        g->addWidget(chkWriteCDText, 4, 0, 1, 2);
        g->addWidget(chkSimulate, 4, 2, 1, 2);
        g->addWidget(chkMultiSession, 5, 0, 1, 2);
        g->addWidget(chkForce, 5, 2, 1, 2);
        g->setRowStretch(6, 1);
    }

    frameOther = new QGroupBox(QStringLiteral("Other Settings"), settingsArea);
    frameOther->setObjectName("frameOther");
    chkDelImage = check(frameOther, "chkDelImage", "Manage Images");
    chkAutoHide = check(frameOther, "chkAutoHide", "Autohide Settings");
    chkMinToTray = check(frameOther, "chkMinToTray", "Minimize to Tray");
    chkCheckCUE = check(frameOther, "chkCheckCUE", "Check Images");
    chkUseSPTI = check(frameOther, "chkUseSPTI", "SPTI Interface");
    {
        auto *v = new QVBoxLayout(frameOther);
        v->setContentsMargins(6, 4, 6, 4);
        v->setSpacing(2);
        for (QWidget *w : {chkDelImage, chkAutoHide, chkMinToTray, chkCheckCUE, chkUseSPTI}) v->addWidget(w);
        v->addStretch();
    }

    auto *settingsLayout = new QHBoxLayout(settingsArea);
    settingsLayout->setContentsMargins(0, 2, 0, 0);
    settingsLayout->addWidget(frameReader, 5);
    settingsLayout->addWidget(frameWriter, 7);
    settingsLayout->addWidget(frameOther, 4);

    auto *top = new QHBoxLayout;
    top->addWidget(ProgressBar1, 1);
    top->addWidget(cmdWrite);
    auto *layout = new QVBoxLayout(central);
    layout->setContentsMargins(6, 4, 6, 2);
    layout->setSpacing(4);
    layout->addWidget(txtStatus);
    layout->addLayout(top);
    layout->addWidget(settingsArea, 1);

    sbStatusBar = new QStatusBar(this);
    sbStatusBar->setObjectName("sbStatusBar");
    sbStatusBar->setSizeGripEnabled(false);
    const int stretch[5] = {4, 3, 1, 1, 1};
    for (int i = 0; i < 5; ++i) {
        sbPanel[i] = new QLabel(sbStatusBar);
        sbPanel[i]->setObjectName(QStringLiteral("sbStatusBar"));
        sbPanel[i]->setProperty("index", i + 1);
        sbPanel[i]->setFrameShape(QFrame::StyledPanel);
        sbPanel[i]->setFrameShadow(QFrame::Sunken);
        sbPanel[i]->installEventFilter(this);
        sbStatusBar->addPermanentWidget(sbPanel[i], stretch[i]);
    }
    setStatusBar(sbStatusBar);
    resize(700, height());
}

void frmMain::buildMenus() {
    QMenuBar *bar = menuBar();
    auto menu = [&](const char *name, const char *caption) {
        QMenu *m = bar->addMenu(QString::fromUtf8(caption));
        m->setObjectName(name);
        m->menuAction()->setObjectName(name);
        return m;
    };
    auto item = [&](QMenu *m, const char *name, const char *caption, bool checkable = false) {
        QAction *a = m->addAction(QString::fromUtf8(caption));
        a->setObjectName(name);
        a->setCheckable(checkable);
        return a;
    };
    mnuFile = menu("mnuFile", "&File");
    mnuLoad = item(mnuFile, "mnuLoad", "Load &New Image...");
    mnuLog = item(mnuFile, "mnuLog", "View Command &Log", true);
    mnuFile->addSeparator();
    mnuExit = item(mnuFile, "mnuExit", "E&xit");
    mnuSettings = menu("mnuSettings", "&Settings");
    mnuDeviceSettings = item(mnuSettings, "mnuDeviceSettings", "Device &Settings", true);
    mnuLanguages = item(mnuSettings, "mnuLanguages", "&Languages...");
    mnuSettings->addSeparator();
    mnuConfirmWrite = item(mnuSettings, "mnuConfirmWrite", "&Confirm Write", true);
    mnuMouseOver = item(mnuSettings, "mnuMouseOver", "Mouseover &Help", true);
    mnuOnTop = item(mnuSettings, "mnuOnTop", "Always on &Top", true);
    mnuTools = menu("mnuTools", "&Tools");
    mnuDeviceInfo = item(mnuTools, "mnuDeviceInfo", "&Device Info...");
    mnuResetWriter = item(mnuTools, "mnuResetWriter", "&Reset Writer");
    mnuErase = item(mnuTools, "mnuErase", "&Erase Disc...");
    mnuReadCopy = menu("mnuReadCopy", "&Read/Copy");
    mnuReadCD = item(mnuReadCopy, "mnuReadCD", "&Read to Image");
    mnuDDump = item(mnuReadCopy, "mnuDDump", "&DDump to Image");
    mnuExtractTracks = item(mnuReadCopy, "mnuExtractTracks", "E&xtract Tracks...");
    mnuCopyCD = item(mnuReadCopy, "mnuCopyCD", "&Copy on the fly");
    mnuMastering = menu("mnuMastering", "&Mastering");
    mnuAudioCD = item(mnuMastering, "mnuAudioCD", "&Audio CD...");
    mnuDataCD = item(mnuMastering, "mnuDataCD", "&Data CD...");
    mnuDataDVD = item(mnuMastering, "mnuDataDVD", "Da&ta DVD...");
    mnuDVDVideo = item(mnuMastering, "mnuDVDVideo", "DVD &Video...");
    mnuHelp = menu("mnuHelp", "&Help");
    mnuHelpContents = item(mnuHelp, "mnuHelpContents", "&Contents...");
    mnuExternal = item(mnuHelp, "mnuExternal", "&List External Tools");
    mnuDonate = item(mnuHelp, "mnuDonate", "Make a &Donation...");
    mnuHelp->addSeparator();
    mnuAbout = item(mnuHelp, "mnuAbout", "&About...");

    // The tray menu is not on the bar.
    mnuSysTray = new QMenu(QStringLiteral("SysTray[dis]"), this);
    mnuSysTray->setObjectName("mnuSysTray");
    mnuRestore = item(mnuSysTray, "mnuRestore", "&Restore");
    mnuSysTray->setDefaultAction(mnuRestore);
    mnuDonate2 = item(mnuSysTray, "mnuDonate2", "Make a &Donation...");
    mnuSysTrayAbout = item(mnuSysTray, "mnuSysTrayAbout", "&About");
    mnuSysTray->addSeparator();
    mnuSysTrayExit = item(mnuSysTray, "mnuSysTrayExit", "E&xit");
}

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
}

void frmMain::connectHandlers() {
    on(cmdWrite, "cmdWrite_Click", [this] { cmdWrite_Click(); });
    on(mnuLoad, "mnuLoad_Click", [this] { mnuLoad_Click(); });
    on(mnuLog, "mnuLog_Click", [this] { mnuLog_Click(); });
    on(mnuExit, "mnuExit_Click", [this] { close(); });
    on(mnuSysTrayExit, "mnuSysTrayExit_Click", [this] { close(); });
    on(mnuDeviceSettings, "mnuDeviceSettings_Click", [this] { mnuDeviceSettings_Click(); });
    on(mnuOnTop, "mnuOnTop_Click", [this] { mnuOnTop_Click(); });
    on(mnuMouseOver, "mnuMouseOver_Click", [this] { mnuMouseOver_Click(); });
    on(mnuHelpContents, "mnuHelpContents_Click", [this] { mnuHelpContents_Click(); });
    on(mnuAbout, "mnuAbout_Click", [this] { mnuAbout_Click(); });
    on(mnuExternal, "mnuExternal_Click", [this] { mnuExternal_Click(); });
    on(mnuDeviceInfo, "mnuDeviceInfo_Click", [this] { mnuDeviceInfo_Click(); });
    on(mnuErase, "mnuErase_Click", [this] { mnuErase_Click(); });
    on(mnuAudioCD, "mnuAudioCD_Click", [this] { showAudioCD(*this); });
    on(mnuExtractTracks, "mnuExtractTracks_Click", [this] { showExtractTracks(*this); });
    on(mnuLanguages, "mnuLanguages_Click", [this] { mnuLanguages_Click(); });
    on(mnuSysTrayAbout, "mnuSysTrayAbout_Click", [this] { mnuAbout_Click(); });
    on(mnuRestore, "mnuRestore_Click", [this] { mnuRestore_Click(); });
    on(chkSimulate, "chkSimulate_Click", [this] {
        if (cmdWrite->property("tag").toString() == "tagged") enableControls(std::nullopt, false);
        sbPanel[4]->setText(chkSimulate->isChecked() ? QStringLiteral("Simulate") : QString());
    });
    on(ChkWriteDriverRaw, "ChkWriteDriverRaw_Click",
       [this] { sbPanel[3]->setText(ChkWriteDriverRaw->isChecked() ? QStringLiteral("RAW") : QString()); });
    connect(cmbSpeed, &QComboBox::currentTextChanged, this,
            [this](const QString &t) { sbPanel[2]->setText(t); });
    connect(cmbWriterDevice, &QComboBox::activated, this,
            [this] { run("cmbWriterDevice_Click", [this] { cmbWriterDevice_Click(); }); });
    connect(cmbReaderDevice, &QComboBox::activated, this,
            [this] { run("cmbReaderDevice_Click", [this] { cmbReaderDevice_Click(); }); });
    on(chkUseSPTI, "chkUseSPTI_Click", [this] { chkUseSPTI_Click(); });
    // Every change of a panel is kept in its drive's option fields at once.
    for (QCheckBox *box : {ChkWriteDriverRaw, chkWriteCDText, chkBurnProof, chkEject, chkForce, chkOverburn,
                           chkMultiSession, chkSimulate})
        on(box, "writeOptions_Click", [this] { writeOptions_Click(); });
    for (QComboBox *box : {cmbSpeed, cmbBuffers})
        connect(box, &QComboBox::activated, this,
                [this] { run("writeOptions_Click", [this] { writeOptions_Click(); }); });
    for (QCheckBox *box : {chkReadRaw, chkReadCDText, chkSwapAudio, chkSimpleTOC})
        on(box, "readOptions_Click", [this] { readOptions_Click(); });
    for (QComboBox *box : {cmbParanoia, cmbSubs})
        connect(box, &QComboBox::activated, this,
                [this] { run("readOptions_Click", [this] { readOptions_Click(); }); });
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

void frmMain::splash(const std::string &text, int step) {
    if (!startUp_) return;
    startUp_->lblStatus->setText(q(text));
    if (step >= 0) startUp_->prgStatus->setValue(step);
    QCoreApplication::processEvents();
}

bool frmMain::Form_Load() {
    // A hand-over or a medium change that comes during start-up waits for its end.
    const auto job = runner.jobs.begin();
    // The tools run at a lower priority than the interface that watches them.
    langTemplate_ = vb::InStr(commandLine, "/langtemplate", vb::Compare::Text) > 0;

    if (env_.singleInstance) {
        instance_ = std::make_unique<platform::SingleInstance>(appDir);
        if (instance_->firstInstanceRunning()) {
            // With the marker file an instance without arguments may start
            // beside the first one; anything else goes to the first one.
            const bool mayStart = commandLine.empty() && QFileInfo::exists(q(appDir + "/multi.instance"));
            if (!mayStart && instance_->handOver(commandLine)) return false;
            secondInstance = true;
            runner.log.setAllowed(false);
            instance_.reset();
        } else {
            instance_->listen([this](const std::string &text) { receiveHandOver(text); });
        }
    }
    // Without an SPTI layer (Linux) the box stays off and out of reach, as
    // on a system that never had the layer.
    isNT = platform::driveLayer().hasSPTILayer();
    if (!isNT) {
        chkUseSPTI->setProperty("tag", QString());
        chkUseSPTI->setEnabled(false);
    }

    // The interface choice, the DVD writer and the language come first, so
    // that the splash already speaks the user's language.
    const std::string ini = settingsPath(appDir);
    run("preloadSettings", [&] { preloadSettings(ini, settings); });
    startLanguage(this, settings, messages, appDir);

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
        host.setLogText = [this](const std::string &text) {
            log->clearLog();
            log->appendLine(q(text));
        };
        run("scanbus", [&] { startupScanDevices(deviceState, host, !paths.strCdrdao.empty(), lists); });
    }
    chkUseSPTI->setChecked(deviceState.chkUseSPTI == 1);
    applyDeviceLists(lists);

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
    deviceState.chkUseSPTI = chkUseSPTI->isChecked() ? 1 : 0;
    if (auto i = entryOfDevice(deviceState.devices, settings.text("ReaderDevice"), lists.reader,
                               chkUseSPTI->isChecked()))
        lists.readerIndex = static_cast<int>(*i);
    if (!settings.text("CommandLog Font").empty() || settings.real("CommandLog Size") > 0)
        log->setLogFont(q(settings.text("CommandLog Font")), settings.real("CommandLog Size"));

    // Drivers and drive queries, then the writers among the drives.
    {
        DeviceHost host = deviceHost();
        run("getDrivers",
            [&] { startupConfigureDevices(deviceState, host, lists, settings.text("WriterDevice")); });
    }
    applyDeviceLists(lists);
    for (const auto &line : toolReportLines(paths, messages)) runner.log.writeLine(line);

    // Heights: the collapsed panel and the panel with the settings open.
    setHeightTwips(2120);
    const int chromeHeight = heightTwips() - scaleHeightTwips() - 725;
    collapsedHeight = chromeHeight + 2120;
    expandedHeight = chromeHeight + 5565;
    if (!chkAutoHide->isChecked()) {
        showSettings(mnuDeviceSettings->isChecked());
    } else {
        mnuDeviceSettings->setChecked(false);
        showSettings(false);
    }

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
            writeLanguageTemplate(appDir, "Template", {this, log}, messages, Version);
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

void frmMain::showEvent(QShowEvent *event) {
    QMainWindow::showEvent(event);
    if (!firstActivation_) return;
    firstActivation_ = false;
    placeLog();
    if (autoWritePending) {
        autoWritePending = false;
        QTimer::singleShot(0, this, [this] { run("Form_Activate", [this] { cmdWrite_Click(); }); });
    }
    applyOnTop();
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
        const std::string old = currentMode;
        ChangeCurrentMode("HIDE ME");
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

void frmMain::showSettings(bool shown) {
    mnuDeviceSettings->setChecked(shown);
    settingsArea->setVisible(shown);
    setHeightTwips(shown ? expandedHeight : collapsedHeight);
    QCoreApplication::processEvents();
    if (shown) placeLog();
    QCoreApplication::processEvents();
}

void frmMain::autoHideSettings() {
    if (mnuDeviceSettings->isChecked() && chkAutoHide->isChecked()) {
        mnuDeviceSettings->setChecked(false);
        showSettings(false);
    }
}

int frmMain::heightTwips() const {
    const int decoration = frameGeometry().height() - geometry().height();
    return (height() + std::max(decoration, 0)) * kTwipsPerPixel;
}

int frmMain::scaleHeightTwips() const {
    const int menu = menuBar() ? menuBar()->sizeHint().height() : 0;
    return (height() - menu) * kTwipsPerPixel;
}

void frmMain::setHeightTwips(int twips) {
    const int decoration = std::max(frameGeometry().height() - geometry().height(), 0);
    setFixedHeight(std::max(twips / kTwipsPerPixel - decoration, 1));
}

bool frmMain::commandExecute(const std::string &command) {
    return runner.commandExecute(command);
}

void frmMain::objDOS_ReceiveOutputs(const std::string &line) {
    // Whatever a line does wrong is reported here: it must not end the read
    // of a tool that is still running.
    run("objDOS_ReceiveOutputs", [&] { interpreter->objDOS_ReceiveOutputs(line); });
}

void frmMain::objDOS_nullOutputs() {
    run("objDOS_nullOutputs", [&] { interpreter->objDOS_nullOutputs(); });
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

    writeStartTime = QDateTime::currentDateTime();
    commandExecute(command);

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
    in.mode = currentMode;
    in.elapsedSeconds = writeStartTime.secsTo(QDateTime::currentDateTime());
    WriteOutcome out = decideWriteOutcome(in, {msg("msgTimeHrs"), msg("msgTimeMins"), msg("msgTimeSecs")});

    if (out.restoreFromTray) mnuRestore_Click();
    if (out.playAsterisk) env_.sounds->play("SystemAsterisk", true);
    if (out.setSpeedPanel) sbPanel[2]->setText(cmbSpeed->currentText());
    if (out.statusKey.empty()) return;
    std::string status = msg(out.statusKey);
    if (!out.elapsedText.empty()) status = vb::Replace(status, "%1", out.elapsedText);
    setStatus(status);
    if (out.showMessageBox) MsgBoxOverMe(status, 64);
    if (out.offerDelete) deleteImage();
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

bool frmMain::mediumFitsTask(const std::string &mediaType) {
    static constexpr std::string_view kDVDs[] = {"DVD-R", "DVD-RW", "DVD+R", "DVD+RW", "DVD-ROM"};
    static constexpr std::string_view kCDTasks[] = {"WRITE CD", "COPY CD", "DATA CD", "AUDIO CD"};
    for (auto dvd : kDVDs) {
        if (mediaType != dvd) continue;
        if (currentMode == "DATA DVD") return true;
        if (currentMode == "WRITE CD" && vb::UCase(vb::Right(slot.strFilename, 3)) == "ISO") {
            ChangeCurrentMode("WRITE DVD");
            return true;
        }
        return false;
    }
    if (mediaType == "CD-R" || mediaType == "CD-RW") {
        for (auto task : kCDTasks)
            if (currentMode == task) return true;
        return false;
    }
    return true;  // an unknown medium is given the benefit of the doubt
}

void frmMain::cmdWrite_Click() {
    if (cmdWrite->text() == q(msg("msgCancel"))) {
        runner.objDOS.killInstantly();
        writeCancelled = true;
        return;
    }
    writeCancelled = false;
    if (cmbWriterDevice->currentText().isEmpty()) {
        MsgBoxOverMe(msg("msgSelectWriter"), platform::mb::Exclamation);
        if (!mnuDeviceSettings->isChecked()) showSettings(true);
        enableControls(true, false);
        return;
    }
    if (currentMode.empty()) {
        mnuLoad_Click();
        return;
    }

    // Whatever happens below, the label, the controls and the image path are
    // put back as they were.
    struct Restore {
        frmMain &f;
        std::string mode, image;
        ~Restore() {
            f.ChangeCurrentMode(mode);
            f.enableControls(true, false);
            if (f.slot.tempISOSheet) {
                f.slot.strFilename = image;
                f.slot.tempISOSheet = false;
            }
        }
    } restore{*this, currentMode, slot.strFilename};

    enableControls(false, false);
    const short index =
        getDeviceIndex(deviceState, cmbWriterDevice->currentText().toStdString(), platform::driveLayer());
    if (index < 0 || static_cast<std::size_t>(index) >= deviceState.devices.Count()) return;
    {
        DeviceHost host = deviceHost();
        updateDriveInfo(deviceState, host, index, false, true);
    }
    const DeviceInfo &writer = deviceState.devices.item(static_cast<std::size_t>(index));
    if (!mediumFitsTask(writer.LastMediaType)) {
        MsgBoxOverMe(msg("msgWrongMediaType"), platform::mb::Exclamation);
        return;
    }
    autoHideSettings();

    const auto dispatch = [this](const std::function<void()> &job) {
        if (job)
            job();
        else
            setStatus(msg("msgWriteCancelled"));  // that form is not part of this build
    };
    if (currentMode == "COPY CD") return dispatch(copyDisc);
    if (currentMode == "DATA CD" || currentMode == "DATA DVD") return dispatch(writeDataCD);
    if (currentMode == "WRITE DVD") return dispatch(writeDVDImage);

    const discops::ImageContext ctx = imageContext();
    if (vb::UCase(vb::Right(slot.strFilename, 4)) == ".ISO") {
        const std::string sheet = appDir + "/external/TEMP/tempiso.toc";
        discops::writeSheet(sheet, discops::dataTrackSheet("MODE1", slot.strFilename));
        slot.tempISOSheet = true;
        slot.strFilename = sheet;
    }
    const std::int16_t blockSize =
        discops::checkTOC(slot.strFilename, "", slot.imageBlockSize, discops::currentFolder(slot, ctx));

    const DiscStatusResult disc = splitDiscStatus(discStatus());
    slot.discFreeBytes = static_cast<double>(disc.blocks) * blockSize;
    slot.discStatusText = std::string(1, disc.status);
    if (disc.status == 'X') return;
    if (disc.status != 'E') {
        MsgBoxOverMe(msg("msgNotBlank"), platform::mb::Exclamation);
        setStatus(msg("msgWriteCancelled"));
        return;
    }
    if (vb::UCase(vb::Right(slot.strFilename, 3)) == "TOC")
        slot.imageBytes = static_cast<double>(discops::imageSize(slot.strFilename, slot.imageBlockSize, ctx,
                                                                 discops::currentFolder(slot, ctx)));
    updateMediaInfo(false, false, false);

    if (mnuConfirmWrite->isChecked()) {
        const auto megabytes = [](double bytes) { return std::to_string(std::llround(bytes / 1024 / 1024)); };
        const std::string text =
            messages.format("msgConfirmWrite", megabytes(slot.imageBytes), megabytes(slot.discFreeBytes));
        if (MsgBoxOverMe(text, platform::mb::Information | platform::mb::OKCancel) == platform::mb::Cancel) {
            setStatus(msg("msgWriteCancelled"));
            return;
        }
    }

    WritePanel panel = writePanel();
    FragmentSettings fragments = fragmentSettings();
    bool useRaw = true;
    // A backslash is a character of a name here, not a separator to turn round.
    slot.writeCommand = platform::quoteArgument(paths.strCdrdao) + " write" +
                        writeDevice(panel, fragments, writer, useRaw, true, true, platform::driveLayer()) +
                        WriteOptions(panel, fragments) + platform::quoteArgument(slot.strFilename);
    std::error_code ec;
    std::filesystem::remove(mkisofsToc, ec);
    discops::writeSheet(commandFile, platform::batchFileText(slot.writeCommand));
    slot.deleteCandidate = slot.strFilename;
    // cdrdao reads the names in a sheet against the folder it starts in; a
    // name without a folder means the file beside the sheet.
    const std::string folder = std::filesystem::path(slot.strFilename).parent_path().string();
    runner.setExternalFolder(folder.empty() ? appDir + "/external" : folder);
    writeFrame(platform::quoteArgument(commandFile));
    runner.setExternalFolder(appDir + "/external");
}

void frmMain::placeLog() {
    if (!formLoaded) return;
    if (mnuLog->isChecked()) {
        const QRect frame = frameGeometry();
        log->move(frame.left(), frame.top() + frame.height());
        log->resize(frame.width(), log->height());
        log->show();
        activateWindow();
    } else {
        log->hide();
    }
}

void frmMain::mnuLog_Click() {
    placeLog();
}

void frmMain::mnuDeviceSettings_Click() {
    showSettings(mnuDeviceSettings->isChecked());
}

void frmMain::mnuOnTop_Click() {
    applyOnTop();
}

void frmMain::applyOnTop() {
    const bool top = mnuOnTop->isChecked();
    for (QWidget *w : {static_cast<QWidget *>(this), static_cast<QWidget *>(log)}) {
        if (w == log && (!mnuLog->isChecked() || isMinimized())) continue;
        if (w->windowFlags().testFlag(Qt::WindowStaysOnTopHint) == top) continue;
        const bool visible = w->isVisible();
        w->setWindowFlag(Qt::WindowStaysOnTopHint, top);
        if (visible) w->show();
    }
}

void frmMain::mnuMouseOver_Click() {
    enableTooltips(this, mnuMouseOver->isChecked(), messages);
}

void frmMain::mnuExternal_Click() {
    MsgBoxOverMe(externalToolsList(paths, messages), platform::mb::Information);
}

void frmMain::mnuLanguages_Click() {
    autoHideSettings();
    frmLanguage dialog(appDir, settings.text("Language"), messages, *env_.dialogs, this);
    if (auto language = dialog.choose(this)) {
        settings.setText("Language", *language);
        close();
    }
    raise();
    activateWindow();
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
    settings.setText("Version", Version);
    saltmarrow::saveSettings(settingsPath(appDir), formLoaded, settings, devices, encoderTable);
}

void frmMain::mnuHelpContents_Click() {
    if (env_.openDocument) env_.openDocument(appDir + "/help/index.html");
}

void frmMain::mnuAbout_Click() {
    auto *about = new frmAbout(q(Version), this);
    about->show();
}

void frmMain::mnuRestore_Click() {
    if (cSysTray1) cSysTray1->hide();
    if (isMinimized()) showNormal();
    if (!isVisible()) show();
    raise();
    activateWindow();
}

void frmMain::updateCaptionProgress() {
    if (!busy_ || !isWriteMode(currentMode)) return;
    const std::string caption = progressCaption(ProgressBar1->value(), ProgressBar1->maximum(), "saltmarrow");
    setWindowTitle(q(caption));
    if (cSysTray1) cSysTray1->setToolTip(q(caption));
}

void frmMain::logMoved() {
    if (!formLoaded || !log->isVisible()) return;
    const QRect f = frameGeometry();
    WindowRect main{f.left() * kTwipsPerPixel, f.top() * kTwipsPerPixel, f.width() * kTwipsPerPixel,
                    f.height() * kTwipsPerPixel};
    const QRect l = log->frameGeometry();
    DockMove m = logWindowMoved(main, l.top() * kTwipsPerPixel, l.left() * kTwipsPerPixel, logDocked);
    logDocked = m.docked;
    if (m.move) {
        log->move(m.left / kTwipsPerPixel, m.top / kTwipsPerPixel);
        if (m.endDrag) {
            log->setEnabled(false);
            log->setEnabled(true);
        }
    }
}

void frmMain::moveEvent(QMoveEvent *event) {
    QMainWindow::moveEvent(event);
    if (!formLoaded) return;
    const QRect f = frameGeometry();
    WindowRect main{f.left() * kTwipsPerPixel, f.top() * kTwipsPerPixel, f.width() * kTwipsPerPixel,
                    f.height() * kTwipsPerPixel};
    DockMove m = mainWindowMoved(main, logDocked);
    if (m.move) log->move(m.left / kTwipsPerPixel, m.top / kTwipsPerPixel);
}

void frmMain::resizeEvent(QResizeEvent *event) {
    QMainWindow::resizeEvent(event);
    if (!formLoaded || isMinimized()) return;
    if (!(chkAutoHide->isChecked() && mnuDeviceSettings->isChecked())) placeLog();
}

void frmMain::changeEvent(QEvent *event) {
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange) return;
    if (isMinimized()) {
        log->hide();
        if (chkMinToTray->isChecked() && cSysTray1) {
            cSysTray1->show();
            QTimer::singleShot(0, this, &QWidget::hide);
        }
    } else if (!(chkAutoHide->isChecked() && mnuDeviceSettings->isChecked())) {
        placeLog();
    }
}

bool frmMain::queryUnload() {
    const std::string temp = settings.text("TempFolder");
    if (!temp.empty() && QFileInfo(q(temp)).isDir()) {
        int answer = MsgBoxOverMe(msg("msgDeleteTemp") + temp + "?",
                                  platform::mb::YesNoCancel | platform::mb::Question);
        if (answer == platform::mb::Cancel) return false;
        if (answer == platform::mb::Yes) {
            std::error_code ec;
            std::filesystem::remove_all(temp, ec);
        }
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

namespace saltmarrow {

DeviceHost frmMain::deviceHost() {
    DeviceHost host;
    host.run = [this](const std::string &command) {
        ToolRun r;
        r.ok = commandExecute(command);
        r.output = runner.commandOutput;
        return r;
    };
    host.cdrdao = paths.strCdrdao;
    if (const std::string tool = appDir + "/external/dvd+rw-mediainfo"; QFileInfo::exists(q(tool)))
        host.mediaInfoTool = tool;
    host.dialogs = env_.dialogs;
    host.message = [this](std::string_view key) { return messages.text(key); };
    host.currentMode = [this] { return currentMode; };
    host.ChangeCurrentMode = [this](const std::string &mode) { ChangeCurrentMode(mode); };
    host.showStatus = [this](const std::string &text) { setStatus(text); };
    host.logText = [this] { return log->txtOutputs->toPlainText().toStdString(); };
    host.setLogText = [this](const std::string &text) {
        log->clearLog();
        log->appendLine(q(text));
    };
    host.letEventsRun = [] { QCoreApplication::processEvents(); };
    host.sleepMs = [](int ms) { QThread::msleep(static_cast<unsigned long>(ms)); };
    host.splashVisible = [this] { return startUp_ && startUp_->isVisible(); };
    host.splashStatus = [this](const std::string &text) { splash(text, -1); };
    host.splashProgress = [this](int max, int value) {
        if (!startUp_) return;
        startUp_->prgStatus->setMaximum(max);
        startUp_->prgStatus->setValue(value);
    };
    host.splashStep = [this] {
        if (startUp_ && startUp_->prgStatus->value() < startUp_->prgStatus->maximum())
            startUp_->prgStatus->setValue(startUp_->prgStatus->value() + 1);
    };
    host.fileMenuOpen = [this] { return mnuFile->isVisible(); };
    host.deviceSettingsShown = [this] { return mnuDeviceSettings->isChecked(); };
    host.deviceInfoShown = [this] { return deviceInfoShown && deviceInfoShown(); };
    host.refreshDeviceInfo = [this] {
        if (refreshDeviceInfo) refreshDeviceInfo();
    };
    deviceState.chkUseSPTI = chkUseSPTI->isChecked() ? 1 : 0;
    return host;
}

WritePanel frmMain::writePanel() const {
    WritePanel p;
    p.cmbWriterDeviceIndex = cmbWriterDevice->currentIndex();
    p.cmbWriterDevice = cmbWriterDevice->currentText().toStdString();
    for (int i = 0; i < cmbSpeed->count(); ++i)
        p.cmbSpeedItems.push_back(cmbSpeed->itemText(i).toStdString());
    p.cmbSpeedIndex = cmbSpeed->currentIndex();
    p.cmbSpeed = cmbSpeed->currentText().toStdString();
    p.cmbBuffersIndex = cmbBuffers->currentIndex();
    p.cmbBuffers = cmbBuffers->currentText().toStdString();
    p.ChkWriteDriverRaw = checkValue(ChkWriteDriverRaw);
    p.chkWriteCDText = checkValue(chkWriteCDText);
    p.chkBurnProof = checkValue(chkBurnProof);
    p.chkEject = checkValue(chkEject);
    p.chkForce = checkValue(chkForce);
    p.chkOverburn = checkValue(chkOverburn);
    p.chkMultiSession = checkValue(chkMultiSession);
    p.chkSimulate = checkValue(chkSimulate);
    return p;
}

void frmMain::applyWritePanel(const WritePanel &p) {
    // The panel's own click events must not store the options half set.
    const bool guard = optionsMemory.combiningOptions;
    optionsMemory.combiningOptions = true;
    QSignalBlocker speedBlock(cmbSpeed);
    cmbSpeed->clear();
    for (const auto &item : p.cmbSpeedItems) cmbSpeed->addItem(q(item));
    if (p.cmbSpeedIndex >= 0 && p.cmbSpeedIndex < cmbSpeed->count())
        cmbSpeed->setCurrentIndex(p.cmbSpeedIndex);
    else if (!p.cmbSpeed.empty())
        cmbSpeed->setEditText(q(p.cmbSpeed));
    sbPanel[2]->setText(cmbSpeed->currentText());
    if (p.cmbBuffersIndex >= 0 && p.cmbBuffersIndex < cmbBuffers->count())
        cmbBuffers->setCurrentIndex(p.cmbBuffersIndex);
    ChkWriteDriverRaw->setChecked(p.ChkWriteDriverRaw == 1);
    chkWriteCDText->setChecked(p.chkWriteCDText == 1);
    chkBurnProof->setChecked(p.chkBurnProof == 1);
    chkEject->setChecked(p.chkEject == 1);
    chkForce->setChecked(p.chkForce == 1);
    chkOverburn->setChecked(p.chkOverburn == 1);
    chkMultiSession->setChecked(p.chkMultiSession == 1);
    chkSimulate->setChecked(p.chkSimulate == 1);
    optionsMemory.combiningOptions = guard;
}

ReadPanel frmMain::readPanel() const {
    ReadPanel p;
    p.cmbReaderDeviceIndex = cmbReaderDevice->currentIndex();
    p.cmbReaderDevice = cmbReaderDevice->currentText().toStdString();
    p.cmbParanoiaIndex = std::max(cmbParanoia->currentIndex(), 0);
    p.cmbSubsIndex = std::max(cmbSubs->currentIndex(), 0);
    p.chkReadRaw = checkValue(chkReadRaw);
    p.chkReadCDText = checkValue(chkReadCDText);
    p.chkSwapAudio = checkValue(chkSwapAudio);
    p.chkSimpleTOC = checkValue(chkSimpleTOC);
    return p;
}

FragmentSettings frmMain::fragmentSettings() const {
    FragmentSettings f;
    f.chkUseSPTI = checkValue(chkUseSPTI);
    f.UseDriverTable = settings.boolean("UseDriverTable");
    f.verbosity = settings.integer("Cdrdao Verbose");
    f.UseProDVD = settings.boolean("UseProDVD");
    return f;
}

DeviceLists frmMain::deviceLists() const {
    DeviceLists lists;
    for (int i = 0; i < cmbReaderDevice->count(); ++i)
        lists.reader.push_back(cmbReaderDevice->itemText(i).toStdString());
    lists.readerIndex = cmbReaderDevice->currentIndex();
    for (int i = 0; i < cmbWriterDevice->count(); ++i)
        lists.writer.push_back(cmbWriterDevice->itemText(i).toStdString());
    lists.writerIndex = cmbWriterDevice->currentIndex();
    return lists;
}

void frmMain::applyDeviceLists(const DeviceLists &lists) {
    // Rebuilding the lists is no choice of the user's: no click events.
    QSignalBlocker readerBlock(cmbReaderDevice);
    QSignalBlocker writerBlock(cmbWriterDevice);
    cmbReaderDevice->clear();
    for (const auto &entry : lists.reader) cmbReaderDevice->addItem(q(entry));
    cmbReaderDevice->setCurrentIndex(lists.readerIndex < cmbReaderDevice->count() ? lists.readerIndex : -1);
    cmbWriterDevice->clear();
    for (const auto &entry : lists.writer) cmbWriterDevice->addItem(q(entry));
    cmbWriterDevice->setCurrentIndex(lists.writerIndex < cmbWriterDevice->count() ? lists.writerIndex : -1);
    sbPanel[1]->setText(cmbWriterDevice->currentText());
}

void frmMain::cmbWriterDevice_Click() {
    WritePanel panel = writePanel();
    std::string statusPanel2 = sbPanel[1]->text().toStdString();
    deviceState.chkUseSPTI = checkValue(chkUseSPTI);
    saltmarrow::cmbWriterDevice_Click(deviceState, panel, optionsMemory, platform::driveLayer(),
                                      statusPanel2);
    applyWritePanel(panel);
    sbPanel[1]->setText(q(statusPanel2));
}

void frmMain::cmbReaderDevice_Click() {
    ReadPanel panel = readPanel();
    const short index = getDeviceIndex(deviceState, panel.cmbReaderDevice, platform::driveLayer());
    DeviceInfo *reader = index >= 0 && static_cast<std::size_t>(index) < deviceState.devices.Count()
                             ? &deviceState.devices.item(static_cast<std::size_t>(index))
                             : nullptr;
    combineReadOptions(true, panel, reader, optionsMemory);
    const bool guard = optionsMemory.combiningOptions;
    optionsMemory.combiningOptions = true;
    cmbParanoia->setCurrentIndex(panel.cmbParanoiaIndex);
    cmbSubs->setCurrentIndex(panel.cmbSubsIndex);
    chkReadRaw->setChecked(panel.chkReadRaw == 1);
    chkReadCDText->setChecked(panel.chkReadCDText == 1);
    chkSwapAudio->setChecked(panel.chkSwapAudio == 1);
    chkSimpleTOC->setChecked(panel.chkSimpleTOC == 1);
    optionsMemory.combiningOptions = guard;
}

void frmMain::chkUseSPTI_Click() {
    DeviceLists lists = deviceLists();
    DeviceHost host = deviceHost();
    saltmarrow::chkUseSPTI_Click(deviceState, host, formLoaded, lists);
    chkUseSPTI->setChecked(deviceState.chkUseSPTI == 1);
    applyDeviceLists(lists);
}

void frmMain::writeOptions_Click() {
    if (!formLoaded || optionsMemory.combiningOptions) return;
    WritePanel panel = writePanel();
    const short index = getDeviceIndex(deviceState, panel.cmbWriterDevice, platform::driveLayer());
    if (index < 0 || static_cast<std::size_t>(index) >= deviceState.devices.Count()) return;
    combineWriteOptions(false, panel, &deviceState.devices.item(static_cast<std::size_t>(index)),
                        optionsMemory);
}

void frmMain::readOptions_Click() {
    if (!formLoaded || optionsMemory.combiningOptions) return;
    ReadPanel panel = readPanel();
    const short index = getDeviceIndex(deviceState, panel.cmbReaderDevice, platform::driveLayer());
    if (index < 0 || static_cast<std::size_t>(index) >= deviceState.devices.Count()) return;
    combineReadOptions(false, panel, &deviceState.devices.item(static_cast<std::size_t>(index)),
                       optionsMemory);
}

void frmMain::updateMediaInfo(bool autoRefresh, bool refreshList, bool showInfo) {
    if (!formLoaded || paths.strCdrdao.empty()) return;
    WritePanel panel = writePanel();
    std::string statusPanel2 = sbPanel[1]->text().toStdString();
    DeviceHost host = deviceHost();
    saltmarrow::updateMediaInfo(deviceState, host, panel, optionsMemory, statusPanel2, autoRefresh,
                                refreshList, showInfo);
    applyWritePanel(panel);
    sbPanel[1]->setText(q(statusPanel2));
}

std::string frmMain::discStatus(bool chkMulti) {
    WritePanel panel = writePanel();
    FragmentSettings fragments = fragmentSettings();
    DeviceHost host = deviceHost();
    DiscStatusContext context;
    context.panel = &panel;
    context.settings = &fragments;
    context.chkMulti = chkMulti;
    context.offerErase = offerErase ? offerErase : [] { return true; };
    return saltmarrow::discStatus(deviceState, host, context);
}

}  // namespace saltmarrow

namespace saltmarrow {

int frmMain::writerIndex() const {
    return getDeviceIndex(deviceState, cmbWriterDevice->currentText().toStdString(), platform::driveLayer());
}

void frmMain::mnuDeviceInfo_Click() {
    if (cmbWriterDevice->currentText().isEmpty()) {
        MsgBoxOverMe(msg("msgSelectWriter"), platform::mb::Exclamation);
        showSettings(true);
        return;
    }
    autoHideSettings();
    if (!deviceInfoForm_) {
        deviceInfoHost_ = std::make_unique<DeviceHost>(deviceHost());
        DeviceInfoSources sources;
        sources.writePanel = [this] { return writePanel(); };
        sources.fragmentSettings = [this] { return fragmentSettings(); };
        sources.discFreeBytes = [this] { return slot.discFreeBytes; };
        deviceInfoForm_ = new frmDeviceInfo(deviceState, *deviceInfoHost_, sources, this);
        applyLanguage(deviceInfoForm_, false, settings.text("Language"), messages, appDir);
        deviceInfoShown = [this] { return deviceInfoForm_ && deviceInfoForm_->isVisible(); };
        refreshDeviceInfo = [this] {
            if (deviceInfoForm_) deviceInfoForm_->MediaInfo(writerIndex());
        };
    }
    // Filled first, so that it is placed by the size its texts give it.
    deviceInfoForm_->ShowDeviceInfo(writerIndex());
    deviceInfoForm_->showBeside(this);
}

void frmMain::mnuErase_Click() {
    if (cmbWriterDevice->currentText().isEmpty()) {
        MsgBoxOverMe(msg("msgSelectWriter"), platform::mb::Exclamation);
        showSettings(true);
        return;
    }
    autoHideSettings();
    eraseForm_->exec();
}

void frmMain::discErase(const std::string &mode) {
    const std::string remembered = currentMode;
    ChangeCurrentMode("ERASE CD");
    eraseCancelled_ = false;
    const int index = writerIndex();
    if (index < 0 || static_cast<std::size_t>(index) >= deviceState.devices.Count()) {
        ChangeCurrentMode(remembered);
        return;
    }
    const DeviceInfo &writer = deviceState.devices.item(static_cast<std::size_t>(index));
    static constexpr std::string_view kDVDs[] = {"DVD-ROM", "DVD-R", "DVD-RW", "DVD+R", "DVD+RW"};
    bool dvd = false;
    for (auto type : kDVDs) dvd = dvd || writer.LastMediaType == type;
    const platform::DriveLayer &layer = platform::driveLayer();
    const bool spti = chkUseSPTI->isChecked();
    std::string command;
    if (dvd) {
        ChangeCurrentMode("WRITE DVD");
        command = platform::quoteArgument(paths.strdvdrecord) +
                  " blank=" + (mode == "minimal" ? "minimal " : "all ") +
                  platform::quoteArgument(
                      "dev=" + layer.dvdDevice(layer.addressOf(cmbWriterDevice->currentText().toStdString()),
                                               spti, false),
                      platform::Quoting::WhenNeeded) +
                  " gracetime=0";
    } else {
        WritePanel panel = writePanel();
        FragmentSettings fragments = fragmentSettings();
        bool useRaw = true;
        command = platform::quoteArgument(paths.strCdrdao) + " blank" +
                  writeDevice(panel, fragments, writer, useRaw, true, true, layer) +
                  " --reload --blank-mode " + mode;
    }
    if (cSysTray1) cSysTray1->setToolTip(q(msg("logBlankingDisc")));
    writeFrame(command);
    if (cSysTray1) cSysTray1->setToolTip(windowTitle());
    ChangeCurrentMode(remembered);
}

}  // namespace saltmarrow
