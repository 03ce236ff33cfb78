#ifndef SALTMARROW_SHELL_FRMSTARTUP_H
#define SALTMARROW_SHELL_FRMSTARTUP_H

#include <QWidget>

class QLabel;
class QProgressBar;

namespace saltmarrow {

// The splash window while the program comes up.
class frmStartUp : public QWidget {
    Q_OBJECT
public:
    explicit frmStartUp(QWidget *parent = nullptr);
    QLabel *imgProduct;
    QLabel *lblStatus;
    QProgressBar *prgStatus;
};

}  // namespace saltmarrow

#endif
