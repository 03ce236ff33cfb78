#ifndef SALTMARROW_EXTRACT_FRMEXTRACTSETTINGS_H
#define SALTMARROW_EXTRACT_FRMEXTRACTSETTINGS_H

#include <QDialog>

#include "extract/ExtractHost.h"

class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;

namespace saltmarrow {

// "Extract Settings": the output folder, the file name template and the
// command of each encoder. OK keeps the texts; Cancel keeps nothing but the
// choice of encoder, which each click on the list makes at once.
class frmExtractSettings : public QDialog {
    Q_OBJECT
public:
    explicit frmExtractSettings(const ExtractHost &host, QWidget *owner = nullptr);

    // The settings into the fields; run each time the dialog opens.
    void Form_Load();
    void cmbEncoder_Click();
    void cmdBrowse_Click();
    void cmdOK_Click();
    void cmdCancel_Click();

    QGroupBox *frameFilename, *frameEncoder, *frameTitles;
    QLineEdit *txtFolder, *txtPath, *txtCommand, *txtTagging, *txtExtension;
    QComboBox *cmbEncoder;
    QPushButton *cmdBrowse, *cmdOK, *cmdCancel;

private:
    const ExtractHost &host_;
};

}  // namespace saltmarrow

#endif
