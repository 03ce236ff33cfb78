#ifndef SALTMARROW_SHELL_MAININTERPRETERVIEW_H
#define SALTMARROW_SHELL_MAININTERPRETERVIEW_H

#include <QCoreApplication>

#include "exec/EventPump.h"
#include "exec/OutputInterpreter.h"

namespace saltmarrow {

class frmMain;

// The main form as the output interpreter sees it.
class MainInterpreterView : public InterpreterView {
public:
    MainInterpreterView(frmMain &form, platform::Sounds &sounds) : f_(form), sounds_(sounds) {}

    int progressValue() const override;
    void setProgressValue(int value) override;
    void setProgressMax(int max) override;
    void setStatus(const std::string &text) override;
    bool logEmpty() const override;
    void appendLog(const std::string &line) override;
    void clearLog() override;
    void setCaption(const std::string &caption) override;
    void setTrayTip(const std::string &tip) override;
    void setWriteSucceeded() override;
    void setWriteFailed() override;
    bool killInstantly() override;
    void letEventsRun() override;
    std::string message(std::string_view key) const override;
    platform::Sounds &sounds() override { return sounds_; }
    void writeCommandLog(const std::string &line) override;
    Mode currentMode() const override;
    void ChangeCurrentMode(Mode mode) override;
    bool commandExecute(const std::string &command) override;
    void autoHideSettings() override;
    void enableControls(bool enable, bool cancellable) override;
    void restoreWindow() override;
    std::string elapsedTimeText(long seconds) const override;

private:
    frmMain &f_;
    platform::Sounds &sounds_;
    // The interpreters let events run several times a line.
    EventPump events_{[] { QCoreApplication::processEvents(); }};
};

}  // namespace saltmarrow

#endif
