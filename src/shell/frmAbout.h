#ifndef SALTMARROW_SHELL_FRMABOUT_H
#define SALTMARROW_SHELL_FRMABOUT_H

#include <QDialog>

class QLabel;
class QPushButton;

namespace saltmarrow {

// The About box. Enter and Escape close it, as OK does.
class frmAbout : public QDialog {
    Q_OBJECT
public:
    explicit frmAbout(const QString &version, QWidget *parent = nullptr);
    QLabel *lblTitle;
    QLabel *lblVersion;
    QLabel *lblPreRelease;
    QLabel *lblDescription;
    QPushButton *cmdOK;
};

}  // namespace saltmarrow

#endif
