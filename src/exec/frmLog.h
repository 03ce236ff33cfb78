#ifndef SALTMARROW_EXEC_FRMLOG_H
#define SALTMARROW_EXEC_FRMLOG_H

#include <QWidget>
#include <functional>

class QPlainTextEdit;
class QMenu;
class QAction;

namespace saltmarrow {

namespace platform {
class Dialogs;
}

// The command log window. The user's close only hides it.
class frmLog : public QWidget {
    Q_OBJECT
public:
    frmLog(platform::Dialogs &dialogs, QWidget *owner);

    void appendLine(const QString &line);
    void clearLog();
    void setLogFont(const QString &name, double size);

    void mnuFont_Click();
    void mnuCopyAll_Click();
    void mnuCopy_Click();

    // Program end: the close goes through.
    void allowClose() { closing_ = true; }
    std::function<void()> onUserHide;  // the main form unchecks mnuLog
    std::function<void()> onMoved;     // docking

    QPlainTextEdit *txtOutputs;
    QMenu *mnuCommandLog;
    QAction *mnuFont;
    QAction *mnuSep01;
    QAction *mnuCopyAll;
    QAction *mnuCopy;

protected:
    void closeEvent(QCloseEvent *event) override;
    void moveEvent(QMoveEvent *event) override;

private:
    platform::Dialogs &dialogs_;
    bool closing_ = false;
};

}  // namespace saltmarrow

#endif
