#ifndef SALTMARROW_AUDIO_FRMTRACKPROPERTIES_H
#define SALTMARROW_AUDIO_FRMTRACKPROPERTIES_H

#include <QDialog>
#include <cstddef>
#include <functional>

#include "audio/AudioHost.h"
#include "audio/AudioProject.h"
#include "audio/TrackProperties.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace saltmarrow {

// The modal dialog that edits the tracks of the project one at a time, with
// the album fields beside them. It reads and writes the project's records
// through the functions of TrackProperties.h.
class frmTrackProperties : public QDialog {
    Q_OBJECT
public:
    frmTrackProperties(AudioProject &project, const AudioHost &host, QWidget *owner = nullptr);

    void loadTrack(std::size_t row);
    bool checkChanges() const;
    std::size_t row() const { return row_; }

    void cmdNext_Click();
    void cmdPrevious_Click();
    void cmdOK_Click();
    void cmdReset_Click();
    void cmdFill_Click();
    void cmdGetAlbum_Click();

    QLineEdit *txtPause, *txtStartMS, *txtFinishMS, *txtTrackTitle, *txtTrackArtist, *txtTrackISRC;
    QLineEdit *txtAlbumTitle, *txtAlbumArtist, *txtAlbumCatalog;
    QRadioButton *optSilence, *optPostgap, *optPregap;
    QLabel *lblFreqVal, *lblChannelVal, *lblBitrateVal, *lblSamplesVal;
    QLabel *sbPanel[4];
    QPushButton *cmdPrevious, *cmdNext, *cmdReset, *cmdFill, *cmdGetAlbum, *cmdOK, *cmdCancel;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildControls();
    TrackFields fields() const;
    AlbumFields albumFields() const;
    void showFields(const TrackFields &f);
    void step(bool next);
    void run(const char *procedure, const std::function<void()> &handler);

    AudioProject &project_;
    const AudioHost &host_;
    std::size_t row_ = 0;
};

}  // namespace saltmarrow

#endif
