#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QThread>

#include "devices/Discovery.h"
#include "devices/DriveQueries.h"
#include "devices/frmDeviceInfo.h"
#include "discops/frmEraseCD.h"
#include "exec/frmLog.h"
#include "platform/CurrentDriveLayer.h"
#include "shell/frmMain.h"
#include "shell/frmStartUp.h"

// The main form's drive panels: what they say as the drive procedures take
// it, and what those procedures leave in them.
namespace saltmarrow {

namespace {

QString q(const std::string &s) {
    return QString::fromStdString(s);
}

int checkValue(const QCheckBox *box) {
    return box->isChecked() ? 1 : 0;
}

}  // namespace

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
    host.ChangeCurrentMode = [this](Mode mode) { ChangeCurrentMode(mode); };
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
    host.deviceInfoShown = [this] { return deviceInfoForm && deviceInfoForm->isVisible(); };
    host.refreshDeviceInfo = [this] {
        if (deviceInfoForm) deviceInfoForm->MediaInfo(writerIndex());
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
    DeviceHost host = deviceHost();
    DiscStatusContext context;
    context.writer = cmbWriterDevice->currentText().toStdString();
    context.deviceFragment = writerDeviceFragment();
    context.chkMulti = chkMulti;
    context.offerErase = [this] { return eraseForm->offerErase(); };
    return saltmarrow::discStatus(host, context);
}

int frmMain::writerIndex() const {
    return getDeviceIndex(deviceState, cmbWriterDevice->currentText().toStdString(), platform::driveLayer());
}

// The writer's device and driver as a disc query gives them.
std::string frmMain::writerDeviceFragment() {
    const int index = writerIndex();
    if (index < 0 || static_cast<std::size_t>(index) >= deviceState.devices.Count()) return {};
    bool useRaw = false;
    return writeDevice(writePanel(), fragmentSettings(),
                       fragmentDrive(deviceState.devices.item(static_cast<std::size_t>(index))), useRaw,
                       false, false, platform::driveLayer());
}

}  // namespace saltmarrow
