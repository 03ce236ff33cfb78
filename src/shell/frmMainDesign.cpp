#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QVBoxLayout>

#include "shell/frmMain.h"
#include "support/FormParts.h"

// The design of the main form: its controls, their names and captions, and
// the menus.
namespace saltmarrow {

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
    // Without the grip nothing keeps the last panel's frame off the right edge.
    sbStatusBar->setContentsMargins(0, 0, 3, 0);
    const int stretch[5] = {4, 3, 1, 1, 1};
    for (int i = 0; i < 5; ++i) {
        sbPanel[i] = new QLabel(sbStatusBar);
        sbPanel[i]->setObjectName(QStringLiteral("sbStatusBar"));
        sbPanel[i]->setProperty("index", i + 1);
        sbPanel[i]->setFrameShape(QFrame::StyledPanel);
        sbPanel[i]->setFrameShadow(QFrame::Sunken);
        // The panels share the bar by their stretch, whatever they hold; a
        // long text is cut, and its tool tip says it whole.
        sbPanel[i]->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        sbPanel[i]->setMinimumWidth(24);
        sbPanel[i]->installEventFilter(this);
        sbStatusBar->addPermanentWidget(sbPanel[i], stretch[i]);
    }
    setStatusBar(sbStatusBar);
}

void frmMain::buildMenus() {
    QMenuBar *bar = menuBar();
    auto menu = [&](const char *name, const char *caption) {
        QMenu *m = bar->addMenu(QString::fromUtf8(caption));
        // The menu alone bears the name: its entry on the bar follows its title.
        m->setObjectName(name);
        return m;
    };
    mnuFile = menu("mnuFile", "&File");
    mnuLoad = menuItem(mnuFile, "mnuLoad", "Load &New Image...");
    mnuLog = menuItem(mnuFile, "mnuLog", "View Command &Log", true);
    mnuFile->addSeparator();
    mnuExit = menuItem(mnuFile, "mnuExit", "E&xit");
    mnuSettings = menu("mnuSettings", "&Settings");
    mnuDeviceSettings = menuItem(mnuSettings, "mnuDeviceSettings", "Device &Settings", true);
    mnuLanguages = menuItem(mnuSettings, "mnuLanguages", "&Languages...");
    mnuSettings->addSeparator();
    mnuConfirmWrite = menuItem(mnuSettings, "mnuConfirmWrite", "&Confirm Write", true);
    mnuMouseOver = menuItem(mnuSettings, "mnuMouseOver", "Mouseover &Help", true);
    mnuOnTop = menuItem(mnuSettings, "mnuOnTop", "Always on &Top", true);
    mnuTools = menu("mnuTools", "&Tools");
    mnuDeviceInfo = menuItem(mnuTools, "mnuDeviceInfo", "&Device Info...");
    mnuResetWriter = menuItem(mnuTools, "mnuResetWriter", "&Reset Writer");
    mnuErase = menuItem(mnuTools, "mnuErase", "&Erase Disc...");
    mnuReadCopy = menu("mnuReadCopy", "&Read/Copy");
    mnuReadCD = menuItem(mnuReadCopy, "mnuReadCD", "&Read to Image");
    mnuDDump = menuItem(mnuReadCopy, "mnuDDump", "&DDump to Image");
    mnuExtractTracks = menuItem(mnuReadCopy, "mnuExtractTracks", "E&xtract Tracks...");
    mnuCopyCD = menuItem(mnuReadCopy, "mnuCopyCD", "&Copy on the fly");
    mnuMastering = menu("mnuMastering", "&Mastering");
    mnuAudioCD = menuItem(mnuMastering, "mnuAudioCD", "&Audio CD...");
    mnuDataCD = menuItem(mnuMastering, "mnuDataCD", "&Data CD...");
    mnuDataDVD = menuItem(mnuMastering, "mnuDataDVD", "Da&ta DVD...");
    mnuDVDVideo = menuItem(mnuMastering, "mnuDVDVideo", "DVD &Video...");
    mnuHelp = menu("mnuHelp", "&Help");
    mnuHelpContents = menuItem(mnuHelp, "mnuHelpContents", "&Contents...");
    mnuExternal = menuItem(mnuHelp, "mnuExternal", "&List External Tools");
    mnuDonate = menuItem(mnuHelp, "mnuDonate", "Make a &Donation...");
    mnuHelp->addSeparator();
    mnuAbout = menuItem(mnuHelp, "mnuAbout", "&About...");

    // The tray menu is not on the bar.
    mnuSysTray = new QMenu(QStringLiteral("SysTray[dis]"), this);
    mnuSysTray->setObjectName("mnuSysTray");
    mnuRestore = menuItem(mnuSysTray, "mnuRestore", "&Restore");
    mnuSysTray->setDefaultAction(mnuRestore);
    mnuDonate2 = menuItem(mnuSysTray, "mnuDonate2", "Make a &Donation...");
    mnuSysTrayAbout = menuItem(mnuSysTray, "mnuSysTrayAbout", "&About");
    mnuSysTray->addSeparator();
    mnuSysTrayExit = menuItem(mnuSysTray, "mnuSysTrayExit", "E&xit");
}

}  // namespace saltmarrow
