#include "data/frmDataCD.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDateTime>
#include <QDropEvent>
#include <QFile>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QMimeDatabase>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QStatusBar>
#include <QStyle>
#include <QTimer>
#include <QTreeView>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>

#include "data/DataListModel.h"
#include "data/VolumeLabel.h"
#include "data/frmISOSettings.h"
#include "support/FormParts.h"

namespace saltmarrow {

using data::NodeId;

namespace {

constexpr int kTwipsPerPixel = 15;
constexpr int kDesignWidth = 640, kDesignHeight = 460;
constexpr int kNodeRole = Qt::UserRole;
constexpr int kOpenRole = Qt::UserRole + 1;  // the item shows "folder_open"

QString q(std::string_view s) {
    return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
}

// treeFolders sorts its folders as listFiles sorts names.
class FolderItem : public QTreeWidgetItem {
public:
    using QTreeWidgetItem::QTreeWidgetItem;
    bool operator<(const QTreeWidgetItem &other) const override {
        return data::listsBefore(true, text(0).toStdString(), true, other.text(0).toStdString());
    }
};

NodeId nodeOf(const QTreeWidgetItem *item) {
    return item ? item->data(0, kNodeRole).value<NodeId>() : data::kNoNode;
}

}  // namespace

frmDataCD::frmDataCD(DataFormHost host, QWidget *owner) : QMainWindow(owner), host_(std::move(host)) {
    setObjectName("frmDataCD");
    setWindowTitle(QStringLiteral("Data CD Mastering"));
    // A bare window manager names no icon theme; the desktop's default one
    // still knows the file types.
    if (QIcon::fallbackThemeName().isEmpty() || QIcon::fallbackThemeName() == QLatin1String("hicolor"))
        QIcon::setFallbackThemeName(QStringLiteral("Adwaita"));
    buildControls();
    job_ = std::make_unique<data::DataJob>(project, jobHost());
    build_ = std::make_unique<data::IsoBuild>(*job_, host_.build);
    iso_ = new frmISOSettings(job_->host(), this);
    iso_->onLabel = [this](const std::string &label) {
        if (!project.renameNode(project.root(), label) || project.root() >= items_.size()) return;
        syncing_ = true;
        items_[project.root()]->setText(0, q(label));
        syncing_ = false;
    };
    connectHandlers();
    // Load: the captions of the language, then what a language cannot change.
    if (host_.translate) {
        host_.translate(this);
        host_.translate(iso_);
    }
    formCaption_ = windowTitle().toStdString();
    burnCaption_ = cmdBurn->text().toStdString();
    listModel->setTitles({q(job_->host().text("listName")), q(job_->host().text("listSize")),
                          q(job_->host().text("listType"))});
    resize(kDesignWidth, kDesignHeight);
}

// The views read the project and the job's host: they go before those do.
frmDataCD::~frmDataCD() {
    delete iso_;
    delete listFiles;
    delete listModel;
}

void frmDataCD::buildControls() {
    auto *central = new QWidget(this);
    setCentralWidget(central);
    auto button = [&](const char *name, const char *caption, bool tagged = true) {
        return namedButton(central, name, caption, tagged);
    };
    cmdAddFiles = button("cmdAddFiles", "Add &Files...");
    cmdBrowse = button("cmdBrowse", "Add F&older...");
    cmdRemoveFile = button("cmdRemoveFile", "&Remove");
    cmdISOSettings = button("cmdISOSettings", "&ISO Settings...");
    // Not tagged: while an add runs it is the way to stop it.
    cmdBurn = button("cmdBurn", "&Burn", false);
    chkCreateISO = new QCheckBox(QStringLiteral("Create ISO Image &File"), central);
    chkCreateISO->setObjectName("chkCreateISO");
    chkCreateISO->setProperty("tag", "tagged");

    treeFolders = new QTreeWidget;
    treeFolders->setObjectName("treeFolders");
    treeFolders->setProperty("tag", "tagged");
    treeFolders->setHeaderHidden(true);
    treeFolders->setEditTriggers(QAbstractItemView::EditKeyPressed);
    listModel = new DataListModel(project, this);
    listModel->iconOf = [this](const std::string &key) { return iconOf(key); };
    listModel->rename = [this](const std::string &origName, const QString &text) {
        bool ok = false;
        run("listFiles_AfterLabelEdit", [&] {
            ok = project.renameItem(project.selected, origName, text.toStdString());
            if (!ok) return;
            const auto node = project.findNode(project.Key(project.selected) + "\\" + origName);
            if (node != data::kNoNode && node < items_.size() && items_[node])
                items_[node]->setText(0, q(project.Text(node)));
        });
        if (ok) QTimer::singleShot(0, this, [this] { job_->updateSize(); });
        return ok;
    };
    listFiles = new QTreeView;
    listFiles->setObjectName("listFiles");
    listFiles->setProperty("tag", "tagged");
    listFiles->setModel(listModel);
    listFiles->setRootIsDecorated(false);
    listFiles->setUniformRowHeights(true);
    listFiles->setAllColumnsShowFocus(true);
    listFiles->setSelectionBehavior(QAbstractItemView::SelectRows);
    listFiles->setSelectionMode(QAbstractItemView::ExtendedSelection);
    listFiles->setEditTriggers(QAbstractItemView::NoEditTriggers);
    listFiles->setContextMenuPolicy(Qt::CustomContextMenu);
    listFiles->setColumnHidden(2, true);
    listFiles->header()->setStretchLastSection(false);
    listFiles->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    listViewport_ = listFiles->viewport();
    listFiles->viewport()->setAcceptDrops(true);
    imgSplitter = new QSplitter(Qt::Horizontal, central);
    imgSplitter->setObjectName("imgSplitter");
    imgSplitter->addWidget(treeFolders);
    imgSplitter->addWidget(listFiles);
    imgSplitter->setStretchFactor(0, 1);
    imgSplitter->setStretchFactor(1, 2);
    imgSplitter->setChildrenCollapsible(false);

    pbCopyProgress = new QProgressBar(central);
    pbCopyProgress->setObjectName("pbCopyProgress");
    pbCopyProgress->setTextVisible(false);
    sbPanel1 = new QLabel;
    sbPanel1->setObjectName("sbStatusBar");
    sbPanel1->setProperty("index", 1);
    statusBar()->setObjectName("sbStatusBar");
    statusBar()->addPermanentWidget(sbPanel1, 1);

    auto *buttons = new QHBoxLayout;
    for (QWidget *w : std::initializer_list<QWidget *>{cmdAddFiles, cmdBrowse, cmdRemoveFile, cmdISOSettings})
        buttons->addWidget(w);
    buttons->addStretch();
    buttons->addWidget(chkCreateISO);
    buttons->addWidget(cmdBurn);
    auto *layout = new QVBoxLayout(central);
    layout->addLayout(buttons);
    layout->addWidget(imgSplitter, 1);
    layout->addWidget(pbCopyProgress);

    mnuDataCD = menuBar()->addMenu(QStringLiteral("&Edit"));
    mnuDataCD->setObjectName("mnuDataCD");
    mnuDataCD->menuAction()->setObjectName("mnuDataCD");
    auto item = [&](const char *name, const char *caption, bool checkable = false) {
        QAction *a = mnuDataCD->addAction(QString::fromUtf8(caption));
        a->setObjectName(name);
        a->setCheckable(checkable);
        if (!checkable) a->setProperty("tag", "tagged");
        return a;
    };
    mnuAddFiles = item("mnuAddFiles", "Add &Files...");
    mnuAddFolder = item("mnuAddFolder", "Add F&older...");
    mnuNewFolder = item("mnuNewFolder", "&New Folder");
    mnuEditDest = item("mnuEditDest", "Re&name");
    mnuRemoveFile = item("mnuRemoveFile", "Re&move");
    mnuDataCD->addSeparator();
    mnuSortableLabel = item("mnuSortableLabel", "&Sortable Date Label", true);
    mnuAutoWrite = item("mnuAutoWrite", "&Auto Write", true);
    mnuISOSettings = item("mnuISOSettings", "Show ISO &Settings before Writing", true);
    for (QObject *watched : {static_cast<QObject *>(treeFolders), static_cast<QObject *>(listFiles),
                             static_cast<QObject *>(listFiles->viewport())})
        watched->installEventFilter(this);
}

void frmDataCD::run(const char *procedure, const std::function<void()> &handler) {
    if (host_.guard)
        host_.guard(procedure, handler);
    else
        handler();
}

void frmDataCD::on(QObject *sender, const char *procedure, const std::function<void()> &handler) {
    if (auto *a = qobject_cast<QAction *>(sender))
        connect(a, &QAction::triggered, this, [this, procedure, handler] { run(procedure, handler); });
    else if (auto *b = qobject_cast<QAbstractButton *>(sender))
        connect(b, &QAbstractButton::clicked, this, [this, procedure, handler] { run(procedure, handler); });
}

void frmDataCD::connectHandlers() {
    for (QObject *o : {static_cast<QObject *>(cmdAddFiles), static_cast<QObject *>(mnuAddFiles)})
        on(o, "cmdAddFiles_Click", [this] { job_->cmdAddFiles_Click(); });
    for (QObject *o : {static_cast<QObject *>(cmdBrowse), static_cast<QObject *>(mnuAddFolder)})
        on(o, "cmdBrowse_Click", [this] { job_->cmdBrowse_Click(); });
    for (QObject *o : {static_cast<QObject *>(cmdRemoveFile), static_cast<QObject *>(mnuRemoveFile)})
        on(o, "cmdRemoveFile_Click", [this] { removeSelectedRows(); });
    on(mnuNewFolder, "mnuNewFolder_Click", [this] {
        job_->mnuNewFolder_Click();
        if (project.selected < items_.size() && items_[project.selected])
            items_[project.selected]->setExpanded(true);
    });
    on(mnuEditDest, "mnuEditDest_Click", [this] { renameSelectedRow(); });
    on(cmdISOSettings, "cmdISOSettings_Click", [this] { iso_->exec(); });
    on(cmdBurn, "cmdBurn_Click", [this] { cmdBurn_Click(); });
    const std::pair<QAction *, std::string_view data::ModeKeys::*> marks[] = {
        {mnuSortableLabel, &data::ModeKeys::sortableDate},
        {mnuAutoWrite, &data::ModeKeys::autoWrite},
        {mnuISOSettings, &data::ModeKeys::confirmIso}};
    for (const auto &[action, key] : marks)
        on(action, "mnuCheck_Click", [this, action, key] {
            job_->host().setValue(job_->keys().*key, action->isChecked() ? "True" : "False");
        });
    connect(treeFolders, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem *item) {
        if (syncing_ || !item) return;
        run("treeFolders_NodeClick", [&] { loadFolderObjects(project.Key(nodeOf(item))); });
    });
    connect(treeFolders, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem *item) {
        if (!syncing_) run("treeFolders_AfterLabelEdit", [&] { nodeRenamed(item); });
    });
    connect(listFiles, &QTreeView::doubleClicked, this,
            [this](const QModelIndex &index) { run("listFiles_DblClick", [&] { openRow(index); }); });
    connect(listFiles, &QWidget::customContextMenuRequested, this,
            [this](const QPoint &at) { mnuDataCD->popup(listFiles->viewport()->mapToGlobal(at)); });
}

data::DataHost frmDataCD::jobHost() {
    data::DataHost h = host_.data;
    h.showStatus = [this](const std::string &text) { sbPanel1->setText(q(text)); };
    h.showProgress = [this](double max, double value) { showProgress(max, value); };
    h.enableControls = [this](bool enabled) { enableControls(enabled); };
    h.setBurnCaption = [this](const std::string &caption) { cmdBurn->setText(q(caption)); };
    h.enableImageList = [this](bool enabled) { enableImageList(enabled); };
    h.showFolder = [this](NodeId folder) { showFolder(folder); };
    h.sortViews = [this] {
        treeFolders->sortItems(0, Qt::AscendingOrder);
        listModel->showFolder(listModel->folder());
    };
    h.iconKey = [this](std::string_view extension) { return iconKeyOf(extension); };
    return h;
}

// Sizes up to a DVD's do not fit the bar's integers: it counts in KiB then.
void frmDataCD::showProgress(double max, double value) {
    const double unit = max > 2e9 ? 1024.0 : 1.0;
    pbCopyProgress->setMaximum(std::max(1, static_cast<int>(max / unit)));
    pbCopyProgress->setValue(static_cast<int>(std::min(value, max) / unit));
}

std::string frmDataCD::iconKeyOf(std::string_view extension) const {
    const QMimeDatabase mimes;
    const QList<QMimeType> types = extension.empty()
                                       ? QList<QMimeType>()
                                       : mimes.mimeTypesForFileName(QStringLiteral("x.") + q(extension));
    return types.isEmpty() ? std::string("application/octet-stream") : types.first().name().toStdString();
}

QIcon frmDataCD::iconOf(const std::string &key) {
    const QString name = q(key);
    if (const auto it = icons_.constFind(name); it != icons_.constEnd()) return *it;
    QIcon icon;
    if (key == "folder") {
        icon = QIcon::fromTheme(QStringLiteral("folder"), style()->standardIcon(QStyle::SP_DirIcon));
    } else if (key == "folder_open") {
        icon = QIcon::fromTheme(QStringLiteral("folder-open"), style()->standardIcon(QStyle::SP_DirOpenIcon));
    } else {
        const QMimeType mime = QMimeDatabase().mimeTypeForName(name);
        icon = QIcon::fromTheme(
            mime.iconName(),
            QIcon::fromTheme(mime.genericIconName(), style()->standardIcon(QStyle::SP_FileIcon)));
    }
    icons_.insert(name, icon);
    return icon;
}

void frmDataCD::applyCaption() {
    const std::string_view key = job_->keys().caption;
    setWindowTitle(q(key.empty() ? formCaption_ : job_->host().text(key)));
}

void frmDataCD::applyMode() {
    const data::ModeKeys &k = job_->keys();
    const data::DataHost &h = job_->host();
    mnuSortableLabel->setChecked(h.flag(k.sortableDate));
    mnuAutoWrite->setChecked(h.flag(k.autoWrite));
    mnuISOSettings->setChecked(h.flag(k.confirmIso));
    iso_->loadSettings(project.blnDVD, project.blnDVDVideo);
    applyCaption();
    const int width = std::atoi(h.value(k.width).c_str()) / kTwipsPerPixel;
    const int height = std::atoi(h.value(k.height).c_str()) / kTwipsPerPixel;
    resize(std::max(kDesignWidth, width), std::max(kDesignHeight, height));
}

void frmDataCD::ClearList() {
    applyMode();
    syncing_ = true;
    treeFolders->clear();
    items_.clear();
    syncing_ = false;
    const QDateTime now = QDateTime::currentDateTime();
    const QLocale locale = QLocale::system();
    data::LabelTime t{now.date().year(),
                      now.date().month(),
                      now.date().day(),
                      now.time().hour(),
                      now.time().minute(),
                      locale.toString(now.date(), QLocale::ShortFormat).toStdString(),
                      locale.toString(now.time(), QLocale::ShortFormat).toStdString()};
    iso_->setLabel(data::defaultVolumeLabel(mnuSortableLabel->isChecked(), t));
    job_->ClearList(iso_->label());
    if (project.blnDVDVideo && !items_.empty()) items_[project.root()]->setExpanded(true);
}

void frmDataCD::syncTree() {
    syncing_ = true;
    for (std::size_t id = items_.size(); id-- > 0;) {
        if (items_[id] && !project.alive(static_cast<NodeId>(id))) {
            delete items_[id];
            items_[id] = nullptr;
        }
    }
    for (NodeId id = static_cast<NodeId>(items_.size()); id < project.nodeSlots(); ++id) {
        items_.push_back(nullptr);
        if (!project.alive(id)) continue;
        const NodeId parent = project.parentOf(id);
        QTreeWidgetItem *item =
            parent == data::kNoNode ? new FolderItem(treeFolders) : new FolderItem(items_[parent]);
        item->setText(0, q(project.Text(id)));
        item->setData(0, kNodeRole, QVariant::fromValue(id));
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        items_.back() = item;
    }
    for (NodeId id = 0; id < items_.size(); ++id) {
        if (!items_[id]) continue;
        const bool open = project.image(id) == data::NodeImage::FolderOpen;
        const QVariant shown = items_[id]->data(0, kOpenRole);
        if (shown.isValid() && shown.toBool() == open) continue;
        items_[id]->setData(0, kOpenRole, open);
        items_[id]->setIcon(0, iconOf(open ? "folder_open" : "folder"));
    }
    syncing_ = false;
}

void frmDataCD::showFolder(NodeId folder) {
    syncTree();
    if (folder < items_.size() && items_[folder]) {
        syncing_ = true;
        treeFolders->setCurrentItem(items_[folder]);
        items_[folder]->setExpanded(true);
        treeFolders->scrollToItem(items_[folder]);
        syncing_ = false;
    }
    listModel->showFolder(folder);
}

void frmDataCD::loadFolderObjects(const std::string &key) {
    job_->loadFolderObjects(key);
}

void frmDataCD::enableControls(bool enabled) {
    for (QWidget *w : findChildren<QWidget *>())
        if (w->property("tag").toString() == QLatin1String("tagged")) w->setEnabled(enabled);
    for (QAction *a : findChildren<QAction *>())
        if (a->property("tag").toString() == QLatin1String("tagged")) a->setEnabled(enabled);
    busy_ = !enabled;
    if (enabled) cmdBurn->setText(q(burnCaption_));
}

void frmDataCD::enableImageList(bool enabled) {
    if (enabled == imageListEnabled_) return;
    imageListEnabled_ = enabled;
    listModel->setIcons(enabled);
}

void frmDataCD::cmdBurn_Click() {
    if (build_->cancelClick(cmdBurn->text().toStdString())) return;
    data::BurnClick click;
    click.chkCreateISO = chkCreateISO->isChecked();
    click.mnuAutoWrite = mnuAutoWrite->isChecked();
    click.mnuISOSettings = mnuISOSettings->isChecked();
    click.showIsoSettings = [this] { iso_->exec(); };
    click.isoSettings = [this] { return iso_->snapshot(); };
    build_->cmdBurn_Click(click);
}

void frmDataCD::removeSelectedRows() {
    const QModelIndexList rows = listFiles->selectionModel()->selectedRows(0);
    if (rows.isEmpty()) return;
    std::vector<std::string> names;
    for (const QModelIndex &row : rows)
        names.push_back(row.data(DataListModel::kTagRole).toString().toStdString());
    const int current = listFiles->currentIndex().isValid() ? listFiles->currentIndex().row() : 0;
    job_->removeListItems(names);
    if (const int count = listModel->rowCount(); count > 0) {
        const QModelIndex next = listModel->index(std::min(current, count - 1), 0);
        listFiles->setCurrentIndex(next);
        listFiles->selectionModel()->select(next,
                                            QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
}

void frmDataCD::renameSelectedRow() {
    const QModelIndex current = listFiles->currentIndex();
    if (!current.isValid()) return;
    listFiles->edit(listModel->index(current.row(), 0));
}

void frmDataCD::openRow(const QModelIndex &index) {
    if (!index.isValid()) return;
    const auto path =
        job_->openRow(index.sibling(index.row(), 0).data(DataListModel::kTagRole).toString().toStdString());
    if (path && host_.openDocument) host_.openDocument(*path);
}

void frmDataCD::removeSelectedNode() {
    const NodeId node = nodeOf(treeFolders->currentItem());
    if (node != data::kNoNode) job_->removeNode(node);
}

void frmDataCD::nodeRenamed(QTreeWidgetItem *item) {
    const NodeId node = nodeOf(item);
    if (!project.alive(node)) return;
    const std::string text = item->text(0).toStdString();
    if (node == project.root()) {
        if (const auto label = job_->rootLabel(text, iso_->compliantPVD())) {
            iso_->setLabel(*label);
            project.renameNode(node, iso_->label());
        }
    } else if (project.renameNode(node, text)) {
        job_->updateSize();
    }
    syncing_ = true;
    item->setText(0, q(project.Text(node)));
    syncing_ = false;
    if (listModel->folder() == project.parentOf(node)) listModel->showFolder(listModel->folder());
}

void frmDataCD::drop(const std::vector<std::string> &paths) {
    run("listFiles_OLEDragDrop", [&] { job_->dropFiles(paths); });
}

bool frmDataCD::eventFilter(QObject *watched, QEvent *event) {
    if (watched == listViewport_) {
        if (event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove ||
            event->type() == QEvent::Drop) {
            auto *e = static_cast<QDropEvent *>(event);
            std::vector<std::string> paths;
            for (const QUrl &url : e->mimeData()->urls())
                if (url.isLocalFile()) paths.push_back(QFile::encodeName(url.toLocalFile()).toStdString());
            if (paths.empty() || busy_) {
                e->ignore();
                return true;
            }
            e->setDropAction(Qt::CopyAction);
            e->accept();
            // The add runs once the drag has ended, so the file manager is not held.
            if (event->type() == QEvent::Drop) QTimer::singleShot(0, this, [this, paths] { drop(paths); });
            return true;
        }
        return false;
    }
    if (event->type() != QEvent::KeyPress) return QMainWindow::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    // An editor's Enter comes up here too, before the edit is committed.
    if (QWidget *focus = QApplication::focusWidget();
        focus && focus != watched && static_cast<QWidget *>(watched)->isAncestorOf(focus))
        return false;
    if (watched == listFiles) {
        switch (key->key()) {
            case Qt::Key_Delete:
                run("listFiles_KeyDown", [this] { removeSelectedRows(); });
                return true;
            case Qt::Key_F2:
                run("listFiles_KeyDown", [this] { renameSelectedRow(); });
                return true;
            case Qt::Key_Return:
            case Qt::Key_Enter:
                run("listFiles_KeyDown", [this] { openRow(listFiles->currentIndex()); });
                return true;
            default:
                return false;
        }
    }
    if (watched == treeFolders && key->key() == Qt::Key_Delete) {
        run("treeFolders_KeyDown", [this] { removeSelectedNode(); });
        return true;
    }
    return false;
}

void frmDataCD::changeEvent(QEvent *event) {
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::ActivationChange || !isActiveWindow()) return;
    const bool onTop = host_.onTop && host_.onTop();
    if (onTop != onTopApplied_) {
        onTopApplied_ = onTop;
        setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
        show();
    }
    const bool tips = host_.tooltipsShown && host_.tooltipsShown();
    chkCreateISO->setToolTip(tips ? q(job_->host().text("tipCreateISOFile")) : QString());
    pbCopyProgress->setToolTip(tips ? q(job_->host().text("tipDataProgress")) : QString());
    iso_->enableTooltips(tips);
    applyCaption();
}

void frmDataCD::resizeEvent(QResizeEvent *event) {
    QMainWindow::resizeEvent(event);
    if (isVisible()) storeSize();
}

void frmDataCD::showEvent(QShowEvent *event) {
    QMainWindow::showEvent(event);
    storeSize();
}

void frmDataCD::storeSize() {
    const data::ModeKeys &k = job_->keys();
    job_->host().setValue(k.width, std::to_string(std::min(width() * kTwipsPerPixel, 32767)));
    job_->host().setValue(k.height, std::to_string(std::min(height() * kTwipsPerPixel, 32767)));
}

}  // namespace saltmarrow
