#ifndef SALTMARROW_DATA_FRMDATACD_H
#define SALTMARROW_DATA_FRMDATACD_H

#include <QHash>
#include <QIcon>
#include <QMainWindow>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "data/DataHost.h"
#include "data/DataJob.h"
#include "data/DataProject.h"
#include "data/IsoBuild.h"

class QAction;
class QCheckBox;
class QLabel;
class QMenu;
class QModelIndex;
class QProgressBar;
class QPushButton;
class QSplitter;
class QTreeView;
class QTreeWidget;
class QTreeWidgetItem;

namespace saltmarrow {

class DataListModel;
class frmDataCD;
class frmISOSettings;

// What the data form needs of the main window.
struct DataFormHost {
    data::DataHost data;                           // dialogs, messages, settings and the event pump
    std::function<void(QWidget *form)> translate;  // the language's captions
    std::function<void(const std::string &path)> openDocument;  // the desktop's application
    std::function<bool()> tooltipsShown;
    std::function<bool()> onTop;
    // Runs an event handler under the error report.
    std::function<void(const char *procedure, const std::function<void()> &handler)> guard;
    // cmdBurn: the image build, or the hand-over for the write.
    data::IsoBuildHost build;
};

// The data mastering form: one project, a folder tree on the left and the
// selected folder's items on the right. It shows the project and forwards
// its events to the project's procedures (DataJob).
class frmDataCD : public QMainWindow {
    Q_OBJECT
public:
    explicit frmDataCD(DataFormHost host, QWidget *owner = nullptr);
    ~frmDataCD() override;

    data::DataProject project;
    data::DataJob &job() { return *job_; }
    data::IsoBuild &build() { return *build_; }
    frmISOSettings *iso() const { return iso_; }
    // An add is running.
    bool busy() const { return busy_; }

    // A new project of the kind project.blnDVD and blnDVDVideo name.
    void ClearList();
    void enableControls(bool enabled);
    void enableImageList(bool enabled);
    void loadFolderObjects(const std::string &key);

    QPushButton *cmdAddFiles = nullptr, *cmdBrowse = nullptr, *cmdRemoveFile = nullptr,
                *cmdISOSettings = nullptr, *cmdBurn = nullptr;
    QCheckBox *chkCreateISO = nullptr;
    QSplitter *imgSplitter = nullptr;
    QTreeWidget *treeFolders = nullptr;
    QTreeView *listFiles = nullptr;
    DataListModel *listModel = nullptr;
    QProgressBar *pbCopyProgress = nullptr;
    QLabel *sbPanel1 = nullptr;
    QMenu *mnuDataCD = nullptr;
    QAction *mnuAddFiles = nullptr, *mnuAddFolder = nullptr, *mnuNewFolder = nullptr, *mnuEditDest = nullptr,
            *mnuRemoveFile = nullptr, *mnuSortableLabel = nullptr, *mnuAutoWrite = nullptr,
            *mnuISOSettings = nullptr;

    void cmdBurn_Click();
    void removeSelectedRows();
    void renameSelectedRow();
    void openRow(const QModelIndex &index);
    void removeSelectedNode();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    // Taken once: the filter still sees events while the list is torn down,
    // when asking the list for its viewport is no longer safe.
    QObject *listViewport_ = nullptr;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void buildControls();
    void connectHandlers();
    void on(QObject *sender, const char *procedure, const std::function<void()> &handler);
    void run(const char *procedure, const std::function<void()> &handler);
    data::DataHost jobHost();
    void applyMode();
    void applyCaption();
    void syncTree();
    void showFolder(data::NodeId folder);
    void nodeRenamed(QTreeWidgetItem *item);
    void showProgress(double max, double value);
    QIcon iconOf(const std::string &key);
    std::string iconKeyOf(std::string_view extension) const;
    void drop(const std::vector<std::string> &paths);
    void storeSize();

    DataFormHost host_;
    std::unique_ptr<data::DataJob> job_;
    std::unique_ptr<data::IsoBuild> build_;
    frmISOSettings *iso_ = nullptr;
    std::vector<QTreeWidgetItem *> items_;  // by node id
    QHash<QString, QIcon> icons_;
    std::string formCaption_, burnCaption_;
    bool imageListEnabled_ = true;
    bool busy_ = false;
    bool syncing_ = false;
    bool onTopApplied_ = false;
};

}  // namespace saltmarrow

#endif
