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

namespace platform {
class Sounds;
}

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
class QtErrorReporter : public ErrorReporter {
public:
    QtErrorReporter(platform::Sounds &sounds, std::function<std::string()> heading, std::string appVersion,
                    QWidget *owner = nullptr);
    bool ErrorReport(int number, const std::string &description, const std::string &module,
                     const std::string &procedure, int line) override;
    void setOwner(QWidget *owner) { owner_ = owner; }

private:
    platform::Sounds &sounds_;
    std::function<std::string()> heading_;
    std::string appVersion_;
    QWidget *owner_;
    bool showing_ = false;
};

}  // namespace saltmarrow

#endif
