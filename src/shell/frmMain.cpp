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
#include <QTimer>
#include <QVBoxLayout>
#include <filesystem>
#include <map>

#include "exec/LogDocking.h"
#include "exec/frmLog.h"
#include "platform/Dialogs.h"
#include "platform/MediumWatcher.h"
#include "platform/SingleInstance.h"
#include "platform/Sounds.h"
#include "shell/LanguageForms.h"
#include "shell/SettingsControls.h"
#include "shell/WriteFrame.h"
#include "shell/frmLanguage.h"
#include "shell/frmStartUp.h"
#include "support/ErrorReport.h"
#include "support/RuntimeError.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace {

constexpr int kTwipsPerPixel = 15;
const char *const kModule = "frmMain";

QString q(const std::string &s) { return QString::fromStdString(s); }

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
    on(mnuLanguages, "mnuLanguages_Click", [this] { mnuLanguages_Click(); });
    on(mnuSysTrayAbout, "mnuSysTrayAbout_Click", [this] { mnuAbout_Click(); });
    on(mnuRestore, "mnuRestore_Click", [this] { mnuRestore_Click(); });
    on(chkSimulate, "chkSimulate_Click", [this] {
        if (cmdWrite->property("tag").toString() == "tagged") enableControls(std::nullopt, false);
        sbPanel[4]->setText(chkSimulate->isChecked() ? QStringLiteral("Simulate") : QString());
    });
    on(ChkWriteDriverRaw, "ChkWriteDriverRaw_Click",
       [this] { sbPanel[3]->setText(ChkWriteDriverRaw->isChecked() ? QStringLiteral("RAW") : QString()); });
    connect(cmbSpeed, &QComboBox::currentTextChanged, this, [this](const QString &t) { sbPanel[2]->setText(t); });
    connect(txtStatus, &QLineEdit::textChanged, this, [this] { updateCaptionProgress(); });
}

std::string frmMain::msg(const std::string &key) const { return messages.text(key); }

void frmMain::setStatus(const std::string &text) { txtStatus->setText(q(text)); }

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
    isNT = true;  // every layer this platform has is there

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
    chkUseSPTI->setChecked(settings.ticked("SPTI Interface"));

    splash("Scanning devices...", 2);
    if (paths.strCdrdao.empty()) setStatus(msg("msgNoCdrdao"));
    log->clearLog();

    cmbBuffers->clear();
    for (const char *b : {"32", "64", "128", "256", "512", "1024"}) cmbBuffers->addItem(b);
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
    std::vector<std::string> readerEntries;
    for (int i = 0; i < cmbReaderDevice->count(); ++i) readerEntries.push_back(cmbReaderDevice->itemText(i).toStdString());
    run("loadSettings", [&] { loadSettings(ini, settings, encoderTable, {&devices, readerEntries}); });
    // Whatever the read reached stands, a malformed line or not.
    controlsFromSettings(this, settings);
    applyLegacySettings(this, settings);
    if (auto i = entryOfDevice(devices, settings.text("ReaderDevice"), readerEntries, chkUseSPTI->isChecked()))
        cmbReaderDevice->setCurrentIndex(static_cast<int>(*i));
    if (!settings.text("CommandLog Font").empty() || settings.real("CommandLog Size") > 0)
        log->setLogFont(q(settings.text("CommandLog Font")), settings.real("CommandLog Size"));

    std::vector<std::string> writerEntries;
    for (int i = 0; i < cmbWriterDevice->count(); ++i) writerEntries.push_back(cmbWriterDevice->itemText(i).toStdString());
    if (auto i = entryOfDevice(devices, settings.text("WriterDevice"), writerEntries, chkUseSPTI->isChecked()))
        cmbWriterDevice->setCurrentIndex(static_cast<int>(*i));
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
    new platform::MediumWatcher(
        [this](bool removed) {
            run("WindowProc", [&] {
                if (updateMediaInfo) updateMediaInfo(removed);
            });
        },
        this);

    formLoaded = true;
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
    if (autoWritePending) {
        autoWritePending = false;
        QTimer::singleShot(0, this, [this] { run("Form_Activate", [this] { cmdWrite_Click(); }); });
    }
    applyOnTop();
}

void frmMain::receiveHandOver(const std::string &text) {
    run("WindowProc", [&] {
        commandLine = text.substr(0, platform::SingleInstance::kMaxText);
        parseCommand();
        mnuRestore_Click();
    });
}

void frmMain::parseCommand() {
    // The image slot is filled from the command line by the write dispatcher;
    // until an image is named there is nothing to take.
    std::string line = vb::Trim(commandLine);
    if (line.empty() || vb::equalsText(line, "/langtemplate")) return;
    if (vb::Left(line, 3) == "-w ") autoWritePending = true;
}

void frmMain::enableControls(std::optional<bool> enable, bool cancellable) {
    if (enable && *enable) {
        cancellable = false;
        if (updateMediaInfo) updateMediaInfo(false);
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

bool frmMain::commandExecute(const std::string &command) { return runner.commandExecute(command); }

void frmMain::objDOS_ReceiveOutputs(const std::string &line) {
    runner.log.writeLine(line);
    log->appendLine(q(line));
}

void frmMain::objDOS_nullOutputs() {}

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
    // Offering to remove a written image belongs to the image slot of the
    // write dispatcher; with no image slot there is nothing to offer.
}

void frmMain::cmdWrite_Click() {
    if (cmdWrite->text() == q(msg("msgCancel"))) {
        runner.objDOS.killInstantly();
        writeCancelled = true;
        return;
    }
    writeCancelled = false;
    autoHideSettings();
}

void frmMain::mnuLoad_Click() {
    platform::FileRequest request;
    request.title = "Load Image";
    request.filter = "Image Files (*.cue;*.toc;*.iso)|*.cue;*.toc;*.iso";
    request.flags = 528388;
    auto files = env_.dialogs->openFile(request);
    if (!files || files->empty()) return;
    commandLine = files->front();
    parseCommand();
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

void frmMain::mnuLog_Click() { placeLog(); }

void frmMain::mnuDeviceSettings_Click() { showSettings(mnuDeviceSettings->isChecked()); }

void frmMain::mnuOnTop_Click() { applyOnTop(); }

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

void frmMain::mnuMouseOver_Click() { enableTooltips(this, mnuMouseOver->isChecked(), messages); }

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
    settings.setText("WriterDevice", deviceNumberOfEntry(devices, cmbWriterDevice->currentText().toStdString(), spti));
    settings.setText("ReaderDevice", deviceNumberOfEntry(devices, cmbReaderDevice->currentText().toStdString(), spti));
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
        int answer = MsgBoxOverMe(msg("msgDeleteTemp") + temp + "?", platform::mb::YesNoCancel | platform::mb::Question);
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
