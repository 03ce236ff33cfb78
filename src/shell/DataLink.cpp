#include "shell/DataLink.h"

#include <QAction>
#include <QCheckBox>
#include <QCoreApplication>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QTimer>

#include "data/NewDataJob.h"
#include "data/frmISOSettings.h"
#include "discops/frmEraseCD.h"
#include "exec/frmLog.h"
#include "platform/EventWait.h"
#include "platform/SystemInfo.h"
#include "shell/LanguageForms.h"
#include "shell/MainHooks.h"
#include "support/ErrorReport.h"
#include "support/TimeText.h"

namespace saltmarrow {

DataLink::DataLink(frmMain &main, const ShellEnvironment &env) : main_(main), env_(env) {
    const std::pair<QAction *, std::pair<bool, bool>> entries[] = {
        {main.mnuDataCD, {false, false}}, {main.mnuDataDVD, {true, false}}, {main.mnuDVDVideo, {true, true}}};
    for (const auto &[action, kind] : entries)
        QObject::connect(action, &QAction::triggered, &main,
                         [this, kind = kind, name = action->objectName()] {
                             const std::string procedure = name.toStdString() + "_Click";
                             guard(procedure.c_str(), [&] { newDataJob(kind.first, kind.second); });
                         });
    main.writeDataCD = [this] { writeData(false); };
    main.writeDVDImage = [this] { writeData(true); };
}

void DataLink::writeData(bool image) {
    frmMain &m = main_;
    discops::DataWriteClick click;
    click.dvd = image || m.currentMode == Mode::DataDVD;
    click.panel = m.writePanel();
    click.settings = m.fragmentSettings();
    click.availableInterfaces = m.deviceState.availableInterfaces;
    click.confirmWrite = m.mnuConfirmWrite->isChecked();
    if (form_) {
        click.chkMulti = form_->iso()->box(data::IsoBox::Multi)->isChecked();
        click.chkImport = form_->iso()->box(data::IsoBox::Import)->isChecked();
    }
    click.disc = m.dataDisc;
    click.mkisofs = m.paths.strMkisofs;
    click.dvdTool = m.paths.strdvdrecord;
    click.tempFolder = m.appDir + "/external/TEMP";
    discops::DataWriteHost host;
    host.enableControls = [&m](bool enable) { m.enableControls(enable, false); };
    host.refreshMedia = [&m] {
        m.updateMediaInfo(false, false, false);
        return m.writePanel();
    };
    host.offerErase = [&m] { return m.eraseForm->offerErase(); };
    host.clearLog = [&m] { m.log->clearLog(); };
    host.setProgressMax = [&m](int max) { m.ProgressBar1->setMaximum(std::max(max, 1)); };
    host.writeFrame = [&m](const std::string &command) { m.writeFrame(command); };
    const DeviceHost devices = m.deviceHost();
    if (image)
        discops::writeDVDImage(click, m.deviceState, devices, m.slot, host);
    else
        discops::writeDataCD(click, m.deviceState, devices, m.slot, host);
}

void DataLink::guard(const char *procedure, const std::function<void()> &handler) {
    if (env_.errors)
        saltmarrow::guard(*env_.errors, "frmDataCD", procedure, handler, [this] {
            if (env_.terminate) env_.terminate();
        });
    else
        handler();
}

DataFormHost DataLink::formHost() {
    frmMain *m = &main_;
    DataFormHost host;
    if (dynamic_cast<platform::QtDialogs *>(env_.dialogs))
        formDialogs_ = std::make_unique<platform::QtDialogs>();
    fillMainHooks(main_, host.data);
    if (formDialogs_) host.data.dialogs = formDialogs_.get();
    host.translate = [m](QWidget *form) {
        applyLanguage(form, false, m->settings.text("Language"), m->messages, m->appDir);
    };
    host.openDocument = env_.openDocument;
    host.tooltipsShown = [m] { return m->mnuMouseOver->isChecked(); };
    host.onTop = [m] { return m->mnuOnTop->isChecked(); };
    host.guard = [this](const char *procedure, const std::function<void()> &handler) {
        guard(procedure, handler);
    };
    data::IsoBuildHost &build = host.build;
    build.tempFolder = m->appDir + "/external/TEMP";
    build.mkisofs = m->paths.strMkisofs;
    build.charset = data::isoCharset(platform::localeCodeset());
    build.waitForEvents = platform::waitForEvents;
    build.writeCommandLog = [m](const std::string &line) { m->runner.log.writeLine(line); };
    build.ChangeCurrentMode = [m](Mode mode) { m->ChangeCurrentMode(mode); };
    build.setMainProgressMax = [m](int max) { m->ProgressBar1->setMaximum(max); };
    build.elapsedText = [m](long seconds) {
        return elapsedTimeText(seconds, m->msg("msgTimeHrs"), m->msg("msgTimeMins"), m->msg("msgTimeSecs"));
    };
    build.handOver = [this](const discops::DataDisc &disc, const std::string &label, bool autoWrite) {
        handOver(disc, label, autoWrite);
    };
    return host;
}

void DataLink::handOver(const discops::DataDisc &disc, const std::string &label, bool autoWrite) {
    form_->hide();
    while (form_->isVisible()) QCoreApplication::processEvents();
    // A job of the main window finishes with the task it began with.
    main_.runner.jobs.whenIdle([m = &main_, disc, label, autoWrite, dvd = form_->project.blnDVD] {
        m->dataDisc = disc;
        m->setStatus(label);
        m->sbPanel[0]->setText(QString::fromStdString(label));
        m->ChangeCurrentMode(dvd ? Mode::DataDVD : Mode::DataCD);
        m->slot.strFilename.clear();
        if (autoWrite) QTimer::singleShot(0, m->cmdWrite, [m] { m->cmdWrite->click(); });
    });
}

void DataLink::newDataJob(bool isDVD, bool isVideo) {
    data::DataJobHost host;
    host.dialogs = env_.dialogs;
    host.message = [this](std::string_view key) { return main_.messages.text(key); };
    host.project = [this] { return form_ ? &form_->project : nullptr; };
    host.loadForm = [this] {
        form_ = new frmDataCD(formHost(), &main_);
        if (formDialogs_) formDialogs_->setOwner(form_);
    };
    host.formBusy = [this] { return form_->busy(); };
    host.ClearList = [this] { form_->ClearList(); };
    host.autoHideSettings = [this] { main_.autoHideSettings(); };
    host.showForm = [this](bool firstShow) {
        form_->show();
        if (firstShow) {
            // Placed once it is shown: before that the window manager's frame
            // is unknown, and a window placed by a guess lands off the screen.
            QCoreApplication::processEvents();
            // Below the main window where there is room, else above it, else
            // in the middle of the screen.
            const QRect main = main_.frameGeometry();
            const QSize size = form_->frameGeometry().size();
            const QRect screen = main_.screen() ? main_.screen()->availableGeometry() : QRect();
            QPoint at(main.left(), main.bottom() + 1);
            if (screen.isValid() && at.y() + size.height() > screen.bottom())
                at.setY(main.top() - size.height());
            if (screen.isValid() && at.y() < screen.top())
                at = screen.center() - QPoint(size.width(), size.height()) / 2;
            if (screen.isValid())
                at.setX(std::clamp(at.x(), screen.left(),
                                   std::max(screen.left(), screen.right() - size.width())));
            form_->move(at);
        }
        form_->raise();
        form_->activateWindow();
    };
    data::newDataJob(host, isDVD, isVideo);
}

}  // namespace saltmarrow
