#ifndef SALTMARROW_EXTRACT_FRMEXTRACTTRACKS_H
#define SALTMARROW_EXTRACT_FRMEXTRACTTRACKS_H

#include <QMainWindow>
#include <QPointer>
#include <string>

#include "exec/DOSOutputs.h"
#include "extract/ExtractDisc.h"
#include "extract/ExtractHost.h"
#include "extract/TrackExtraction.h"

class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QTreeWidget;

namespace saltmarrow {

class frmExtractSettings;

// The extraction window: the audio tracks of the disc in the reader, the
// selection's share of 80 minutes, the progress of the track in work and
// where the files go. It shows what the extraction decides and forwards the
// user's commands; it is hidden, not destroyed, when closed.
class frmExtractTracks : public QMainWindow, private ExtractView {
    Q_OBJECT
public:
    explicit frmExtractTracks(ExtractHost host, QWidget *owner = nullptr);
    ~frmExtractTracks() override;

    // Shows where the files go and scans the disc.
    void Form_Load();

    void cmdRescan_Click();
    void cmdExtract_Click();
    void cmdFreedb_Click();
    void cmdEncoder_Click();
    void cmdOpenFolder_Click();

    ExtractDisc disc;
    DOSOutputs objDOS;
    TrackExtraction &extraction() { return extraction_; }
    // frmExtractSettings, made on first use and kept.
    frmExtractSettings *settingsForm();

    QTreeWidget *listFiles;
    QPushButton *cmdRescan, *cmdExtract, *cmdEncoder, *cmdOpenFolder, *cmdFreedb;
    QCheckBox *chkImageFile;
    QLabel *lblTarget, *sbPanel1, *sbPanel2;
    QProgressBar *pbCopyProgress;

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildControls();
    void on(QPushButton *button, const char *procedure, void (frmExtractTracks::*handler)());
    void takeSelection();
    void showTarget();

    // ExtractView
    void setPanel(int panel, const std::string &text) override;
    void setBar(int max, int value) override;
    void setCaption(const std::string &text) override;
    void enableControls(bool enable) override;
    void extractRunning(bool running) override;
    void showRows() override;

    ExtractHost host_;
    TrackExtraction extraction_;
    QPointer<frmExtractSettings> settings_;
    QString extractCaption_;
    bool busy_ = false;
    bool filling_ = false;  // the list is being filled: no user edits to take
};

}  // namespace saltmarrow

#endif
