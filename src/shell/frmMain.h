#ifndef SALTMARROW_SHELL_FRMMAIN_H
#define SALTMARROW_SHELL_FRMMAIN_H

#include <QDateTime>
#include <QMainWindow>
#include <QPointer>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "devices/DeviceHost.h"
#include "discops/DataWrite.h"
#include "discops/Fragments.h"
#include "discops/ImageSlot.h"
#include "exec/CommandRunner.h"
#include "exec/Mode.h"
#include "exec/OutputInterpreter.h"
#include "shell/EncoderTable.h"
#include "shell/MessageTable.h"
#include "shell/SettingsStore.h"
#include "shell/ToolRegistry.h"

class QAction;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMenu;
class QProgressBar;
class QPushButton;
class QStatusBar;
class QSystemTrayIcon;

namespace saltmarrow {

class DataLink;
class ErrorReporter;
class frmAudioCD;
class frmDeviceInfo;
class frmEraseCD;
class frmExtractTracks;
class frmLog;
class frmStartUp;
namespace discops {
struct Refusal;
struct DiscJobHost;
struct DiscJobPanels;
}  // namespace discops
namespace platform {
class Dialogs;
class Sounds;
class SingleInstance;
}  // namespace platform

// What the main form gets from the program around it; tests hand in their
// own dialogs, sounds and error reporter.
struct ShellEnvironment {
    std::string appDir;       // the program's folder
    std::string commandLine;  // the arguments, as one line
    platform::Dialogs *dialogs = nullptr;
    platform::Sounds *sounds = nullptr;
    ErrorReporter *errors = nullptr;
    std::function<void(const std::string &)> openDocument;  // the desktop's handler
    std::function<void()> terminate;                        // the error report's Terminate
    bool showSplash = true;
    bool singleInstance = true;  // tests of other things may run several forms at once
};

// The main window: it owns the program's state, gathers what its controls
// say, hands it to the jobs and shows what they decide.
class frmMain : public QMainWindow {
    Q_OBJECT
public:
    explicit frmMain(ShellEnvironment env);
    ~frmMain() override;

    // Start-up. False when a first instance took the command line over: then
    // this instance ends at once.
    bool Form_Load();

    void ChangeCurrentMode(Mode mode) { currentMode = mode; }
    // enable left out: only the button changes, the tagged controls stay.
    void enableControls(std::optional<bool> enable, bool cancellable = false);
    void showSettings(bool shown);
    void autoHideSettings();
    bool commandExecute(const std::string &command);
    // The frame around one writing command: lock, run, read the flags, report.
    void writeFrame(const std::string &command);
    int MsgBoxOverMe(const std::string &text, int style, const std::string &title = {});
    std::string msg(const std::string &key) const;
    void setStatus(const std::string &text);
    void parseCommand();
    // Closing as the user would: false when the user stopped it.
    bool queryUnload();
    void Form_Unload();
    // Receives what a second instance handed over.
    void receiveHandOver(const std::string &text);
    // What the program around it gave the form: dialogs, error reporter, ...
    const ShellEnvironment &environment() const { return env_; }

    // Handlers of the button and the menus.
    void cmdWrite_Click();
    void mnuLoad_Click();
    void mnuLog_Click();
    void mnuDeviceSettings_Click();
    void mnuDeviceInfo_Click();
    void mnuErase_Click();
    void mnuCopyCD_Click();
    void mnuReadCD_Click();
    void mnuDDump_Click();
    void mnuResetWriter_Click();
    void mnuDonate_Click();
    void mnuAbout_Click();
    void mnuRestore_Click();
    void discErase(const std::string &eraseMode);
    void deleteImage();
    void saveSettings();

    // The panels and the drive procedures around them.
    DeviceHost deviceHost();
    WritePanel writePanel() const;
    ReadPanel readPanel() const;
    FragmentSettings fragmentSettings() const;
    void cmbWriterDevice_Click();
    void cmbReaderDevice_Click();
    void chkUseSPTI_Click();
    // The drive status refresh.
    void updateMediaInfo(bool autoRefresh, bool refreshList, bool showInfo);
    // The disc in the writer, for the jobs of other forms (see DriveQueries).
    std::string discStatus(bool chkMulti = false);

    // State the rest of the program reads and sets.
    Mode currentMode = Mode::None;
    std::string commandLine;
    bool formLoaded = false;
    bool isNT = false;
    bool secondInstance = false;
    int collapsedHeight = 0;  // twips of the window's inside, without the frame
    int expandedHeight = 0;
    std::string writeCaption;
    std::string commandFile;
    std::string mkisofsToc;
    bool writeSucceeded = false;
    bool writeFailed = false;
    bool writeCancelled = false;
    bool autoWritePending = false;
    std::string Version;
    std::string appDir;
    MessageTable messages;
    Settings settings;
    ToolPaths paths;
    DeviceState deviceState;  // the device table and what the scan left
    OptionsMemory optionsMemory;
    std::optional<EncoderTable> encoderTable;
    InterpreterState interpreterState;
    std::unique_ptr<OutputInterpreter> interpreter;
    discops::ImageSlot slot;
    std::string strTempName;     // the temporary folder of a compiled audio project
    discops::DataDisc dataDisc;  // what the data form handed over for writeDataCD
    // The jobs of the mastering and copy forms, where they exist.
    std::function<void()> copyDisc;
    std::function<void()> writeDataCD;
    std::function<void()> writeDVDImage;
    QPointer<frmAudioCD> audioCD;  // once mnuAudioCD has opened it
    QPointer<frmExtractTracks> extractTracks;  // once mnuExtractTracks has opened it
    CommandRunner runner;

    // Controls, named as the language files know them.
    QLineEdit *txtStatus;
    QProgressBar *ProgressBar1;
    QPushButton *cmdWrite;
    QStatusBar *sbStatusBar;
    QLabel *sbPanel[5];
    QWidget *settingsArea;
    QGroupBox *frameReader, *frameWriter, *frameOther;
    QComboBox *cmbReaderDevice, *cmbParanoia, *cmbSubs;
    QCheckBox *chkReadRaw, *chkSimpleTOC, *chkSwapAudio, *chkReadCDText;
    QComboBox *cmbWriterDevice, *cmbSpeed, *cmbBuffers;
    QLabel *lblSpeed, *lblBuffers, *lblParanoia, *lblSubs;
    QCheckBox *ChkWriteDriverRaw, *chkEject, *chkBurnProof, *chkOverburn, *chkWriteCDText, *chkSimulate,
        *chkMultiSession, *chkForce;
    QCheckBox *chkDelImage, *chkAutoHide, *chkMinToTray, *chkCheckCUE, *chkUseSPTI;
    QMenu *mnuFile, *mnuSettings, *mnuTools, *mnuReadCopy, *mnuMastering, *mnuHelp, *mnuSysTray;
    QAction *mnuLoad, *mnuLog, *mnuExit;
    QAction *mnuDeviceSettings, *mnuLanguages, *mnuConfirmWrite, *mnuMouseOver, *mnuOnTop;
    QAction *mnuDeviceInfo, *mnuResetWriter, *mnuErase;
    QAction *mnuReadCD, *mnuDDump, *mnuExtractTracks, *mnuCopyCD;
    QAction *mnuAudioCD, *mnuDataCD, *mnuDataDVD, *mnuDVDVideo;
    QAction *mnuHelpContents, *mnuExternal, *mnuDonate, *mnuAbout;
    QAction *mnuRestore, *mnuDonate2, *mnuSysTrayAbout, *mnuSysTrayExit;
    frmLog *log;
    frmEraseCD *eraseForm;
    QPointer<frmDeviceInfo> deviceInfoForm;
    QSystemTrayIcon *cSysTray1 = nullptr;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    // The design of the form (frmMainDesign.cpp).
    void buildControls();
    void buildMenus();
    // The device lists and the write panel as the drive procedures leave them.
    DeviceLists deviceLists() const;
    void applyDeviceLists(const DeviceLists &lists);
    void applyWritePanel(const WritePanel &panel);
    void writeOptions_Click();
    void readOptions_Click();
    int writerIndex() const;
    std::string writerDeviceFragment();

    void connectHandlers();
    void connectDiscJobs();  // the copy, read, dump and unlock jobs (frmMainDiscJobs.cpp)
    void runDiscJob(void (*job)(const discops::DiscJobHost &, const discops::DiscJobPanels &));
    void on(QObject *sender, const char *procedure, const std::function<void()> &handler);
    void run(const char *procedure, const std::function<void()> &handler);
    void showRefusal(const discops::Refusal &refusal);
    void splash(const std::string &text, int step);
    bool startAsSecondInstance();
    void fillFixedLists();
    void fixSizes();
    void keepOnScreen();
    void placeLog();
    void logMoved();
    void applyOnTop();
    void updateCaptionProgress();
    discops::ImageContext imageContext();

    ShellEnvironment env_;
    bool langTemplate_ = false;
    bool firstActivation_ = true;
    bool busy_ = false;
    bool framing_ = false;  // a write frame runs: the caption carries its progress
    bool logDocked_ = true;
    bool eraseCancelled_ = false;
    std::unique_ptr<platform::SingleInstance> instance_;
    std::unique_ptr<InterpreterView> interpreterView_;
    std::unique_ptr<DeviceHost> deviceInfoHost_;  // outlives the dialog that keeps it
    QPointer<frmStartUp> startUp_;
    std::unique_ptr<DataLink> dataLink_;  // the data form behind the mastering menu
};

}  // namespace saltmarrow

#endif
