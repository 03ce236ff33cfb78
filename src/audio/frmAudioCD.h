#ifndef SALTMARROW_AUDIO_FRMAUDIOCD_H
#define SALTMARROW_AUDIO_FRMAUDIOCD_H

#include <QMainWindow>
#include <functional>
#include <string>
#include <vector>

#include "audio/AudioCompile.h"
#include "audio/AudioHost.h"
#include "audio/AudioProject.h"
#include "audio/TrackSplit.h"
#include "exec/DOSOutputs.h"

class QAction;
class QCheckBox;
class QLabel;
class QMenu;
class QProgressBar;
class QPushButton;
class QTreeWidget;

namespace saltmarrow {

// The audio project window: the track list, its menus and buttons, and the
// compile. It shows the project's rows and forwards every command to the
// project or the compile; it is hidden, not destroyed, when closed.
class frmAudioCD : public QMainWindow, private CompileView {
    Q_OBJECT
public:
    explicit frmAudioCD(AudioHost host, QWidget *owner = nullptr);
    ~frmAudioCD() override;

    // Size, menu states, the kinds that can be read and the decoder commands.
    void Form_Load();

    void mnuAddFiles_Click();
    void mnuAddFolder_Click();
    void mnuTrackUp_Click();
    void mnuTrackDown_Click();
    void mnuRemoveFile_Click();
    void mnuClear_Click();
    void mnuPause_Click();
    void mnuSaveTracklist_Click();
    void mnuProperties_Click();
    void mnuFilterFilename_Click();
    // The disc database's lengths where there is a database, else typed ones;
    // mnuSplitLengths always asks for typed ones.
    void mnuSplit_Click();
    void mnuSplitLengths_Click();
    void mnuCDText_Click();
    void mnuTempFolder_Click();
    void cmdFreedb_Click();
    void cmdCompile_Click();
    void listFiles_ColumnClick(int column);
    void listFiles_DblClick();
    // Files and folders dropped on the list.
    void dropFiles(const std::vector<std::string> &paths);

    void enableControls(bool enable) override;
    void enableTooltips(bool shown);
    // The rows of the project into the list, with their selection.
    void showRows();
    void updateTotals();

    AudioProject project;
    DOSOutputs objDOS2;
    std::string audioExtensions;
    DecoderCommands decoders;
    std::string savedCompileCaption;
    // The track properties dialog on a row, modal.
    std::function<void(std::size_t row)> showTrackProperties;

    QTreeWidget *listFiles;
    QPushButton *cmdAddFiles, *cmdAddFolder, *cmdUp, *cmdDown, *cmdFreedb, *cmdCompile;
    QCheckBox *chk2secgap;
    QLabel *sbPanel1;
    QProgressBar *pbCopyProgress;
    QMenu *mnuFile, *mnuList, *mnuOptions;
    QAction *mnuAddFiles, *mnuAddFolder, *mnuSaveTracklist, *mnuClear;
    QAction *mnuTrackUp, *mnuTrackDown, *mnuRemoveFile, *mnuPause, *mnuFilterFilename, *mnuSplit,
        *mnuSplitLengths, *mnuProperties;
    QAction *mnuCDText, *mnuWaveGain, *mnuAutoWrite, *mnuTempFolder;

    AudioCompile &compiler() { return compile_; }

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    // Taken once: the filter still sees events while the list is torn down,
    // when asking the list for its viewport is no longer safe.
    QObject *listViewport_ = nullptr;

private:
    void buildControls();
    void buildMenus();
    void connectHandlers();
    void on(QObject *sender, const char *procedure, const std::function<void()> &handler);
    void run(const char *procedure, const std::function<void()> &handler);
    void takeSelection();
    AddOptions addOptions() const;
    void batch(const std::function<void()> &adding);
    void moveSelected(bool up);
    void split(SplitSource source);

    // CompileView
    std::int64_t barValue() const override;
    std::int64_t barMax() const override;
    void setBarMax(std::int64_t max) override;
    void setBarValue(std::int64_t value) override;
    void setPanel(const std::string &text) override;
    void selectRow(std::size_t row, bool selected) override;
    void compileRunning(bool running) override;
    void hideForm() override;

    AudioHost host_;
    AudioCompile compile_;
    bool busy_ = false;
    std::int64_t barMax_ = kDiscSeconds;
    std::int64_t barScale_ = 1;
};

}  // namespace saltmarrow

#endif
