#include "shell/MainInterpreterView.h"

#include <QCoreApplication>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QSystemTrayIcon>

#include "exec/frmLog.h"
#include "shell/frmMain.h"
#include "support/TimeText.h"

namespace saltmarrow {

namespace {
QString q(const std::string &s) {
    return QString::fromStdString(s);
}
}  // namespace

int MainInterpreterView::progressValue() const {
    return f_.ProgressBar1->value();
}

void MainInterpreterView::setProgressValue(int value) {
    // The write progress sets the value before the maximum.
    if (value > f_.ProgressBar1->maximum()) f_.ProgressBar1->setMaximum(value);
    f_.ProgressBar1->setValue(value);
}

void MainInterpreterView::setProgressMax(int max) {
    f_.ProgressBar1->setMaximum(std::max(max, 1));
}

void MainInterpreterView::setStatus(const std::string &text) {
    f_.setStatus(text);
}

bool MainInterpreterView::logEmpty() const {
    return f_.log->txtOutputs->document()->isEmpty();
}

void MainInterpreterView::appendLog(const std::string &line) {
    f_.log->appendLine(q(line));
}

void MainInterpreterView::clearLog() {
    f_.log->clearLog();
}

void MainInterpreterView::setCaption(const std::string &caption) {
    f_.setWindowTitle(q(caption));
}

void MainInterpreterView::setTrayTip(const std::string &tip) {
    if (f_.cSysTray1) f_.cSysTray1->setToolTip(q(tip));
}

void MainInterpreterView::setWriteSucceeded() {
    f_.writeSucceeded = true;
}

void MainInterpreterView::setWriteFailed() {
    f_.writeFailed = true;
}

bool MainInterpreterView::killInstantly() {
    return f_.runner.objDOS.killInstantly();
}

void MainInterpreterView::letEventsRun() {
    events_();
}

std::string MainInterpreterView::message(std::string_view key) const {
    return f_.messages.text(key);
}

void MainInterpreterView::writeCommandLog(const std::string &line) {
    f_.runner.log.writeLine(line);
}

Mode MainInterpreterView::currentMode() const {
    return f_.currentMode;
}

void MainInterpreterView::ChangeCurrentMode(Mode mode) {
    f_.ChangeCurrentMode(mode);
}

bool MainInterpreterView::commandExecute(const std::string &command) {
    return f_.commandExecute(command);
}

void MainInterpreterView::autoHideSettings() {
    f_.autoHideSettings();
}

void MainInterpreterView::enableControls(bool enable, bool cancellable) {
    f_.enableControls(enable, cancellable);
}

void MainInterpreterView::restoreWindow() {
    f_.mnuRestore_Click();
}

std::string MainInterpreterView::elapsedTimeText(long seconds) const {
    return saltmarrow::elapsedTimeText(seconds, f_.msg("msgTimeHrs"), f_.msg("msgTimeMins"),
                                       f_.msg("msgTimeSecs"));
}

}  // namespace saltmarrow
