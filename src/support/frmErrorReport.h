#ifndef SALTMARROW_SUPPORT_FRMERRORREPORT_H
#define SALTMARROW_SUPPORT_FRMERRORREPORT_H

#include <QDialog>
#include <functional>
#include <string>

#include "support/ErrorReport.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace saltmarrow {

class frmErrorReport : public QDialog {
    Q_OBJECT
public:
    frmErrorReport(const std::string &heading, const std::string &details, QWidget *parent = nullptr);
    bool goOn() const { return goOn_; }

    QLabel *lblErrorReport;
    QPlainTextEdit *txtErrorDetails;
    QPushButton *cmdCopy;
    QPushButton *cmdIgnore;
    QPushButton *cmdTerminate;

private:
    bool goOn_ = false;
};

// The reporter of the running program: the modal dialog, never nested.
// playHand plays the system's "SystemHand"; platformVersion names the system.
class QtErrorReporter : public ErrorReporter {
public:
    QtErrorReporter(std::function<void()> playHand, std::function<std::string()> heading,
                    std::string appVersion, std::string platformVersion, QWidget *owner = nullptr);
    bool ErrorReport(int number, const std::string &description, const std::string &module,
                     const std::string &procedure, int line) override;
    void setOwner(QWidget *owner) { owner_ = owner; }

private:
    std::function<void()> playHand_;
    std::function<std::string()> heading_;
    std::string appVersion_;
    std::string platformVersion_;
    QWidget *owner_;
    bool showing_ = false;
};

}  // namespace saltmarrow

#endif
