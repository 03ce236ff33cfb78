#ifndef SALTMARROW_DISCOPS_FRMERASECD_H
#define SALTMARROW_DISCOPS_FRMERASECD_H

#include <QDialog>
#include <functional>
#include <string>

class QCheckBox;
class QLabel;
class QPushButton;

namespace saltmarrow {

// Asks how to erase the rewritable disc in the writer. The erase itself is
// the owner's: Erase closes the dialog and hands the mode to discErase.
class frmEraseCD : public QDialog {
    Q_OBJECT
public:
    using EraseCall = std::function<void(const std::string &mode)>;

    // eraseCancelled is the owner's flag: set here by Cancel, cleared by the
    // owner's discErase.
    frmEraseCD(bool &eraseCancelled, EraseCall discErase, QWidget *owner = nullptr);

    // Shows the dialog modally and returns eraseCancelled, as the erase
    // offer of a disc check wants it.
    bool offerErase();

    QLabel *lblErase;
    QCheckBox *chkMinimal;
    QPushButton *cmdErase;
    QPushButton *cmdCancel;

public slots:
    void cmdErase_Click();
    void cmdCancel_Click();
    // Escape and the window's close button count as Cancel: otherwise the
    // offer of a disc check would come straight back.
    void reject() override;

private:
    bool &eraseCancelled_;
    EraseCall discErase_;
};

}  // namespace saltmarrow

#endif
