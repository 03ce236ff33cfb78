#include "audio/frmAudioCD.h"

#include <QAction>
#include <QCheckBox>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QStyle>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>
#include <climits>
#include <filesystem>

#include "audio/frmTrackProperties.h"
#include "platform/Dialogs.h"
#include "support/FormParts.h"
#include "support/TimeText.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace fs = std::filesystem;
namespace mb = platform::mb;

namespace {

constexpr int kTwipsPerPixel = 15;
constexpr int kColumnPosition = 3;  // hidden: the place of each row

QString q(const std::string &text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string s(const QString &text) {
    return text.toUtf8().toStdString();
}

bool fileExists(const std::string &path) {
    std::error_code ec;
    return !path.empty() && fs::is_regular_file(path, ec);
}

std::string truth(bool value) {
    return value ? "True" : "False";
}

// The kinds of file a decoder is installed for, as a dialog filter.
struct ExtensionTool {
    std::string DecoderTools::*tool;
    const char *extensions;
};

constexpr ExtensionTool kToolExtensions[] = {
    {&DecoderTools::strLame, ";*.mp3;*.mp2"}, {&DecoderTools::strOGG, ";*.ogg"},
    {&DecoderTools::strFLAC, ";*.flac"},      {&DecoderTools::strMPC, ";*.mpc"},
    {&DecoderTools::strAAC, ";*.aac;*.mp4"},  {&DecoderTools::strMAC, ";*.ape"},
};

struct DecoderSetting {
    std::string DecoderCommands::*command;
    std::string DecoderTools::*tool;
    const char *key;
};

constexpr DecoderSetting kDecoderSettings[] = {
    {&DecoderCommands::decodeCmdMp3, &DecoderTools::strLame, "Decode MP3"},
    {&DecoderCommands::decodeCmdOgg, &DecoderTools::strOGG, "Decode OGG"},
    {&DecoderCommands::decodeCmdFlac, &DecoderTools::strFLAC, "Decode FLAC"},
    {&DecoderCommands::decodeCmdApe, &DecoderTools::strMAC, "Decode APE"},
    {&DecoderCommands::decodeCmdMpc, &DecoderTools::strMPC, "Decode MPC"},
    {&DecoderCommands::decodeCmdAac, &DecoderTools::strAAC, "Decode AAC"},
};

const char *const kFilterPrompt =
    "Please enter filter for filename(s).\r\n\r\n%0 = Discard\t%1 = Artist\t%2 = Title\r\n%3 = Album\t%4 = "
    "Track #";

}  // namespace

frmAudioCD::frmAudioCD(AudioHost host, QWidget *owner)
    : QMainWindow(owner, Qt::Window), host_(std::move(host)), compile_(project, host_, *this, objDOS2) {
    setObjectName("frmAudioCD");
    setWindowTitle(QStringLiteral("Audio CD"));
    buildControls();
    buildMenus();
    connectHandlers();
    resize(640, 420);
    showTrackProperties = [this](std::size_t row) {
        frmTrackProperties dialog(project, host_, this);
        dialog.loadTrack(row);
        dialog.exec();
    };
}

frmAudioCD::~frmAudioCD() = default;

void frmAudioCD::buildControls() {
    auto *central = new QWidget(this);
    setCentralWidget(central);
    auto button = [&](const char *name, const char *caption) { return namedButton(central, name, caption); };
    cmdAddFiles = button("cmdAddFiles", "Add &Files...");
    cmdAddFolder = button("cmdAddFolder", "Add F&older...");
    cmdUp = button("cmdUp", "&Up");
    cmdDown = button("cmdDown", "&Down");
    cmdFreedb = button("cmdFreedb", "&Freedb...");
    cmdCompile = button("cmdCompile", "Com&pile");
    chk2secgap = named(new QCheckBox(QStringLiteral("&2sec Pause"), central), "chk2secgap", true);

    listFiles = rowList(central, "listFiles");
    listFiles->setColumnCount(4);
    listFiles->setColumnHidden(kColumnPosition, true);
    listFiles->setContextMenuPolicy(Qt::CustomContextMenu);
    listViewport_ = listFiles->viewport();
    listFiles->viewport()->setAcceptDrops(true);
    listFiles->viewport()->installEventFilter(this);
    listFiles->installEventFilter(this);
    listFiles->header()->setSectionsClickable(true);
    listFiles->header()->setStretchLastSection(false);
    listFiles->header()->setSectionResizeMode(0, QHeaderView::Stretch);

    auto *buttons = new QHBoxLayout;
    for (QWidget *w : {static_cast<QWidget *>(cmdAddFiles), static_cast<QWidget *>(cmdAddFolder)})
        buttons->addWidget(w);
    buttons->addSpacing(12);
    buttons->addWidget(cmdUp);
    buttons->addWidget(cmdDown);
    buttons->addSpacing(12);
    buttons->addWidget(cmdFreedb);
    buttons->addWidget(chk2secgap);
    buttons->addStretch();
    buttons->addWidget(cmdCompile);
    auto *layout = new QVBoxLayout(central);
    layout->setContentsMargins(6, 6, 6, 2);
    layout->addLayout(buttons);
    layout->addWidget(listFiles, 1);

    sbPanel1 = new QLabel(statusBar());
    sbPanel1->setObjectName("sbStatusBar");
    sbPanel1->setProperty("index", 1);
    pbCopyProgress = new QProgressBar(statusBar());
    pbCopyProgress->setObjectName("pbCopyProgress");
    pbCopyProgress->setRange(0, kDiscSeconds);
    pbCopyProgress->setValue(0);
    pbCopyProgress->setTextVisible(false);
    pbCopyProgress->setMaximumHeight(14);
    statusBar()->addWidget(sbPanel1, 1);
    statusBar()->addPermanentWidget(pbCopyProgress, 1);
    statusBar()->setSizeGripEnabled(true);
}

void frmAudioCD::buildMenus() {
    auto menu = [&](const char *name, const char *caption) {
        QMenu *m = menuBar()->addMenu(QString::fromUtf8(caption));
        m->setObjectName(name);
        tagged(m->menuAction())->setObjectName(name);
        return m;
    };
    mnuFile = menu("mnuFile", "&File");
    mnuAddFiles = menuItem(mnuFile, "mnuAddFiles", "&Add Files...");
    mnuAddFolder = menuItem(mnuFile, "mnuAddFolder", "Add F&older...");
    mnuSaveTracklist = menuItem(mnuFile, "mnuSaveTracklist", "Sa&ve to Tracklist");
    mnuFile->addSeparator();
    mnuClear = menuItem(mnuFile, "mnuClear", "&Clear Project");
    mnuList = menu("mnuList", "&Tracks");
    mnuTrackUp = menuItem(mnuList, "mnuTrackUp", "Move &Up");
    mnuTrackDown = menuItem(mnuList, "mnuTrackDown", "Move &Down");
    mnuRemoveFile = menuItem(mnuList, "mnuRemoveFile", "&Remove");
    mnuList->addSeparator();
    mnuPause = menuItem(mnuList, "mnuPause", "&All to Current Pause");
    mnuFilterFilename = menuItem(mnuList, "mnuFilterFilename", "CD-Text from &Filename...");
    mnuSplit = menuItem(mnuList, "mnuSplit", "&Split Track...");
    mnuSplitLengths = menuItem(mnuList, "mnuSplitLengths", "Split by &Lengths...");
    mnuList->addSeparator();
    mnuProperties = menuItem(mnuList, "mnuProperties", "&Properties...");
    mnuOptions = menu("mnuOptions", "&Options");
    mnuCDText = menuItem(mnuOptions, "mnuCDText", "Enable &CD-Text", true);
    mnuWaveGain = menuItem(mnuOptions, "mnuWaveGain", "Apply &WaveGain", true);
    mnuAutoWrite = menuItem(mnuOptions, "mnuAutoWrite", "Automatic &Write", true);
    mnuOptions->addSeparator();
    mnuTempFolder = menuItem(mnuOptions, "mnuTempFolder", "Change &Temp Folder");
}

void frmAudioCD::run(const char *procedure, const std::function<void()> &handler) {
    if (host_.guard)
        host_.guard(procedure, handler);
    else
        handler();
}

void frmAudioCD::on(QObject *sender, const char *procedure, const std::function<void()> &handler) {
    if (auto *a = qobject_cast<QAction *>(sender))
        connect(a, &QAction::triggered, this, [this, procedure, handler] { run(procedure, handler); });
    else if (auto *b = qobject_cast<QAbstractButton *>(sender))
        connect(b, &QAbstractButton::clicked, this, [this, procedure, handler] { run(procedure, handler); });
}

void frmAudioCD::connectHandlers() {
    on(mnuAddFiles, "mnuAddFiles_Click", [this] { mnuAddFiles_Click(); });
    on(cmdAddFiles, "cmdAddFiles_Click", [this] { mnuAddFiles_Click(); });
    on(mnuAddFolder, "mnuAddFolder_Click", [this] { mnuAddFolder_Click(); });
    on(cmdAddFolder, "cmdAddFolder_Click", [this] { mnuAddFolder_Click(); });
    on(mnuTrackUp, "mnuTrackUp_Click", [this] { mnuTrackUp_Click(); });
    on(cmdUp, "cmdUp_Click", [this] { mnuTrackUp_Click(); });
    on(mnuTrackDown, "mnuTrackDown_Click", [this] { mnuTrackDown_Click(); });
    on(cmdDown, "cmdDown_Click", [this] { mnuTrackDown_Click(); });
    on(mnuRemoveFile, "mnuRemoveFile_Click", [this] { mnuRemoveFile_Click(); });
    on(mnuClear, "mnuClear_Click", [this] { mnuClear_Click(); });
    on(mnuPause, "mnuPause_Click", [this] { mnuPause_Click(); });
    on(mnuSaveTracklist, "mnuSaveTracklist_Click", [this] { mnuSaveTracklist_Click(); });
    on(mnuProperties, "mnuProperties_Click", [this] { mnuProperties_Click(); });
    on(mnuFilterFilename, "mnuFilterFilename_Click", [this] { mnuFilterFilename_Click(); });
    on(mnuSplit, "mnuSplit_Click", [this] { mnuSplit_Click(); });
    on(mnuSplitLengths, "mnuSplitLengths_Click", [this] { mnuSplitLengths_Click(); });
    on(mnuCDText, "mnuCDText_Click", [this] { mnuCDText_Click(); });
    on(mnuWaveGain, "mnuWaveGain_Click", [] {});
    on(mnuAutoWrite, "mnuAutoWrite_Click",
       [this] { host_.setValue("AutoWriteAudio", truth(mnuAutoWrite->isChecked())); });
    on(chk2secgap, "chk2secgap_Click", [this] { host_.setValue("2secGap", truth(chk2secgap->isChecked())); });
    on(mnuTempFolder, "mnuTempFolder_Click", [this] { mnuTempFolder_Click(); });
    on(cmdFreedb, "cmdFreedb_Click", [this] { cmdFreedb_Click(); });
    on(cmdCompile, "cmdCompile_Click", [this] { cmdCompile_Click(); });
    connect(listFiles->header(), &QHeaderView::sectionClicked, this, [this](int column) {
        run("listFiles_ColumnClick", [=, this] { listFiles_ColumnClick(column); });
    });
    connect(listFiles, &QTreeWidget::itemDoubleClicked, this,
            [this] { run("listFiles_DblClick", [this] { listFiles_DblClick(); }); });
    connect(listFiles, &QWidget::customContextMenuRequested, this,
            [this](const QPoint &at) { mnuList->popup(listFiles->viewport()->mapToGlobal(at)); });
}

void frmAudioCD::Form_Load() {
    const int width = static_cast<int>(vb::Val(host_.value("Audio Width"))) / kTwipsPerPixel;
    const int height = static_cast<int>(vb::Val(host_.value("Audio Height"))) / kTwipsPerPixel;
    if (width > 0 && height > 0) resize(width, height);

    mnuWaveGain->setChecked(false);  // the WaveGain state lasts as long as the window
    mnuWaveGain->setEnabled(!host_.tools.strWaveGain.empty());
    mnuCDText->setChecked(host_.flag("UseCDText"));
    mnuAutoWrite->setChecked(host_.flag("AutoWriteAudio"));
    chk2secgap->setChecked(host_.flag("2secGap"));

    audioExtensions = "*.wav";
    for (const auto &row : kToolExtensions)
        if (fileExists(host_.tools.*row.tool)) audioExtensions += row.extensions;
    for (const auto &row : kDecoderSettings)
        decoders.*row.command = decoderPrefix(host_.tools.*row.tool, host_.value(row.key));

    listFiles->setHeaderLabels(
        {q(host_.text("listTrack")), q(host_.text("listPause")), q(host_.text("listLength")), QString()});
    listFiles->setColumnHidden(kColumnPosition, true);
    savedCompileCaption = s(cmdCompile->text());
    cmdFreedb->setEnabled(static_cast<bool>(host_.QueryFreedb));
    mnuProperties->setEnabled(static_cast<bool>(showTrackProperties));
    // Without the database both entries would ask for typed lengths.
    mnuSplitLengths->setVisible(static_cast<bool>(host_.GetTrackLengths));
    enableTooltips(host_.tooltipsShown && host_.tooltipsShown());
    updateTotals();
}

void frmAudioCD::enableTooltips(bool shown) {
    chk2secgap->setToolTip(shown ? q(host_.text("tipStandardGap")) : QString());
    pbCopyProgress->setToolTip(shown ? q(host_.text("tipAudioProgress")) : QString());
}

void frmAudioCD::enableControls(bool enable) {
    for (QWidget *w : findChildren<QWidget *>())
        if (w->property("tag").toString() == QLatin1String("tagged")) w->setEnabled(enable);
    for (QAction *a : findChildren<QAction *>())
        if (a->property("tag").toString() == QLatin1String("tagged")) a->setEnabled(enable);
    if (enable) {
        cmdFreedb->setEnabled(static_cast<bool>(host_.QueryFreedb));
        mnuWaveGain->setEnabled(!host_.tools.strWaveGain.empty());
    }
    busy_ = !enable;  // the close button goes with the controls
}

void frmAudioCD::showRows() {
    listFiles->setUpdatesEnabled(false);
    listFiles->clear();
    QList<QTreeWidgetItem *> items;
    items.reserve(static_cast<qsizetype>(project.rows.size()));
    const QIcon music = style()->standardIcon(QStyle::SP_MediaVolume);
    for (const auto &row : project.rows) {
        auto *item = new QTreeWidgetItem({q(row.text), q(row.pause), q(row.length), q(row.position)});
        item->setIcon(0, music);
        item->setData(0, Qt::UserRole, q(row.Tag));
        items.push_back(item);
    }
    listFiles->addTopLevelItems(items);
    QTreeWidgetItem *first = nullptr;
    for (std::size_t i = 0; i < project.rows.size(); ++i) {
        if (!project.rows[i].selected) continue;
        items[static_cast<qsizetype>(i)]->setSelected(true);
        if (!first) first = items[static_cast<qsizetype>(i)];
    }
    if (first) {
        listFiles->setCurrentItem(first, 0, QItemSelectionModel::NoUpdate);
        listFiles->scrollToItem(first);
    }
    listFiles->setUpdatesEnabled(true);
}

void frmAudioCD::takeSelection() {
    for (int i = 0; i < listFiles->topLevelItemCount() && i < static_cast<int>(project.rows.size()); ++i)
        project.rows[static_cast<std::size_t>(i)].selected = listFiles->topLevelItem(i)->isSelected();
}

void frmAudioCD::updateTotals() {
    const Totals totals = project.updateTotals(host_);
    setBarMax(kDiscSeconds);
    setBarValue(totals.barValue);
    sbPanel1->setText(q(totals.panel));
}

AddOptions frmAudioCD::addOptions() const {
    return AddOptions{chk2secgap->isChecked(), mnuCDText->isChecked(), audioExtensions};
}

void frmAudioCD::batch(const std::function<void()> &adding) {
    enableControls(false);
    host_.events(true);
    listFiles->setUpdatesEnabled(false);
    // The window comes back whatever a file of the batch did.
    struct Done {
        frmAudioCD &f;
        ~Done() {
            f.showRows();
            f.updateTotals();
            f.enableControls(true);
        }
    } done{*this};
    adding();
}

void frmAudioCD::mnuAddFiles_Click() {
    platform::FileRequest request;
    request.folder = host_.value("MRUAudio");
    request.filter = "Music Files (" + audioExtensions + ")|" + audioExtensions +
                     "|Tracklist Files (*.cue;*.toc;*.m3u;*.pls;*.bpl)|*.cue;*.toc;*.m3u;*.pls;*.bpl";
    request.multiSelect = true;
    if (!host_.dialogs) return;
    std::optional<std::vector<std::string>> files = host_.dialogs->openFile(request);
    if (!files || files->empty()) return;
    host_.setValue("MRUAudio", fs::path(files->front()).parent_path().string());
    batch([&] { project.addFiles(*files, addOptions(), host_); });
}

void frmAudioCD::mnuAddFolder_Click() {
    if (!host_.dialogs) return;
    auto folder =
        host_.dialogs->browseFolder(host_.text("msgBrowseForFolder"), host_.value("MRUAudio"), "", false);
    if (!folder) return;
    host_.setValue("MRUAudio", folder->folder);
    batch([&] { project.addFolder(folder->folder, addOptions(), host_); });
}

void frmAudioCD::dropFiles(const std::vector<std::string> &paths) {
    batch([&] { project.addFiles(paths, addOptions(), host_); });
}

void frmAudioCD::moveSelected(bool up) {
    takeSelection();
    const std::optional<std::size_t> row = project.selectedRow();
    if (!row) return;
    const std::optional<std::size_t> moved = up ? project.moveUp(*row) : project.moveDown(*row);
    if (!moved) return;
    for (auto &r : project.rows) r.selected = false;
    project.rows[*moved].selected = true;
    showRows();
}

void frmAudioCD::mnuTrackUp_Click() {
    moveSelected(true);
}

void frmAudioCD::mnuTrackDown_Click() {
    moveSelected(false);
}

void frmAudioCD::mnuRemoveFile_Click() {
    takeSelection();
    project.removeSelected();
    showRows();
    updateTotals();
}

void frmAudioCD::mnuClear_Click() {
    project.clear();
    showRows();
    setBarMax(kDiscSeconds);
    setBarValue(0);
    sbPanel1->setText(q(host_.text("msgTotalTime") + secondsToText(0)));
}

void frmAudioCD::mnuPause_Click() {
    takeSelection();
    if (auto row = project.selectedRow()) project.allToCurrentPause(*row);
    showRows();
    updateTotals();
}

void frmAudioCD::mnuSaveTracklist_Click() {
    if (project.count() == 0 || !host_.dialogs) return;
    platform::FileRequest request;
    request.folder = host_.value("MRUAudio");
    request.filter = "m3u playlist (*.m3u)|*.m3u";
    std::optional<std::string> path = host_.dialogs->saveFile(request);
    if (!path || path->empty()) return;
    try {
        if (host_.replaceFile) host_.replaceFile(*path, project.tracklistText());
    } catch (const std::exception &) {
        host_.msgBox(host_.text("msgReadOnlyFile"), mb::Exclamation);  // the old list stands as it was
    }
}

void frmAudioCD::mnuProperties_Click() {
    takeSelection();
    const std::optional<std::size_t> row = project.selectedRow();
    if (!row || !showTrackProperties) return;
    const std::string &path = project.track(*row).FullPath;
    if (!fileExists(path)) {
        host_.msgBox(host_.format("msgNotFound", path), mb::Exclamation);
        return;
    }
    project.findAlbumNames();
    showTrackProperties(*row);
    project.refreshTrackNames(mnuCDText->isChecked());
    showRows();
    updateTotals();
}

void frmAudioCD::mnuFilterFilename_Click() {
    if (project.count() == 0 || !host_.dialogs) return;
    std::optional<std::string> filter =
        host_.dialogs->inputBox(kFilterPrompt, "", host_.value("CDTextFilter"));
    if (!filter || filter->empty()) return;
    const bool selectedOnly =
        host_.msgBox(host_.text("msgFilterTracks"), mb::YesNo | mb::Question) == mb::Yes;
    takeSelection();
    project.filterFilename(*filter, selectedOnly);
    host_.setValue("CDTextFilter", *filter);
    project.findAlbumNames();
    project.refreshTrackNames(mnuCDText->isChecked());
    showRows();
}

void frmAudioCD::split(SplitSource source) {
    if (!splitTrack(project, source, mnuCDText->isChecked(), host_)) return;
    showRows();
    updateTotals();
}

void frmAudioCD::mnuSplit_Click() {
    split(host_.GetTrackLengths ? SplitSource::Database : SplitSource::Typed);
}

void frmAudioCD::mnuSplitLengths_Click() {
    split(SplitSource::Typed);
}

void frmAudioCD::mnuCDText_Click() {
    host_.setValue("UseCDText", truth(mnuCDText->isChecked()));
    takeSelection();
    project.refreshTrackNames(mnuCDText->isChecked());
    showRows();
}

void frmAudioCD::mnuTempFolder_Click() {
    if (!host_.dialogs) return;
    auto folder =
        host_.dialogs->browseFolder(host_.text("msgBrowseForFolder"), host_.value("TempFolder"), "", false);
    if (!folder) return;
    const std::string tempName = host_.tempName ? host_.tempName() : std::string();
    std::error_code ec;
    if (!tempName.empty() && fs::is_directory(tempName, ec)) {
        const int answer =
            host_.msgBox(host_.text("msgDeleteTemp") + tempName + "?", mb::YesNoCancel | mb::Question);
        if (answer == mb::Cancel) return;
        if (answer == mb::Yes) fs::remove_all(tempName, ec);
    }
    host_.setValue("TempFolder", folder->folder);
    if (host_.setTempName) host_.setTempName({});
}

void frmAudioCD::cmdFreedb_Click() {
    if (project.count() == 0 || !host_.QueryFreedb) return;
    const std::optional<FreedbResult> result = host_.QueryFreedb(project.freedbLengths());
    if (!result) return;
    takeSelection();
    project.applyFreedb(*result);
    project.refreshTrackNames(mnuCDText->isChecked());
    showRows();
}

void frmAudioCD::cmdCompile_Click() {
    CompileSettings settings;
    settings.mnuCDText = mnuCDText->isChecked();
    settings.mnuWaveGain = mnuWaveGain->isChecked() && !host_.tools.strWaveGain.empty();
    settings.mnuAutoWrite = mnuAutoWrite->isChecked();
    settings.strTempFolder = host_.value("TempFolder");
    settings.decoders = decoders;
    settings.strWaveGain = host_.tools.strWaveGain;
    settings.strWaveGainCommand = host_.value("WaveGain");
    if (!compile_.running()) takeSelection();
    compile_.cmdCompile_Click(settings);
}

void frmAudioCD::listFiles_ColumnClick(int column) {
    takeSelection();
    project.columnClick(listFiles->headerItem()->text(column) == QLatin1String("Track"));
    showRows();
}

void frmAudioCD::listFiles_DblClick() {
    takeSelection();
    const std::optional<std::size_t> row = project.selectedRow();
    if (row && host_.openDocument) host_.openDocument(project.track(*row).FullPath);
}

void frmAudioCD::closeEvent(QCloseEvent *event) {
    event->ignore();
    if (!busy_) hide();
}

void frmAudioCD::resizeEvent(QResizeEvent *event) {
    QMainWindow::resizeEvent(event);
    if (!isVisible()) return;
    host_.setValue("Audio Width", std::to_string(std::min(width() * kTwipsPerPixel, 32767)));
    host_.setValue("Audio Height", std::to_string(std::min(height() * kTwipsPerPixel, 32767)));
}

bool frmAudioCD::eventFilter(QObject *watched, QEvent *event) {
    if (watched == listViewport_ &&
        (event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove)) {
        auto *drag = static_cast<QDropEvent *>(event);
        if (!drag->mimeData()->hasUrls() || busy_) return false;
        drag->acceptProposedAction();
        return true;
    }
    if (watched == listViewport_ && event->type() == QEvent::Drop) {
        auto *drop = static_cast<QDropEvent *>(event);
        std::vector<std::string> paths;
        for (const QUrl &url : drop->mimeData()->urls())
            if (url.isLocalFile()) paths.push_back(s(url.toLocalFile()));
        drop->acceptProposedAction();
        run("listFiles_OLEDragDrop", [&] { dropFiles(paths); });
        return true;
    }
    if (watched == listFiles && event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Delete) {
            run("listFiles_KeyDown", [this] { mnuRemoveFile_Click(); });
            return true;
        }
        if (key->key() == Qt::Key_Menu) {
            mnuList->popup(listFiles->viewport()->mapToGlobal(QPoint(0, 0)));
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

std::int64_t frmAudioCD::barValue() const {
    return static_cast<std::int64_t>(pbCopyProgress->value()) * barScale_;
}

std::int64_t frmAudioCD::barMax() const {
    return barMax_;
}

void frmAudioCD::setBarMax(std::int64_t max) {
    // The bar counts in int; the bytes of a large copy are counted in KiB.
    barMax_ = std::max<std::int64_t>(max, 1);
    barScale_ = barMax_ > INT_MAX / 2 ? 1024 : 1;
    pbCopyProgress->setMaximum(static_cast<int>(barMax_ / barScale_));
}

void frmAudioCD::setBarValue(std::int64_t value) {
    pbCopyProgress->setValue(static_cast<int>(std::clamp<std::int64_t>(value, 0, barMax_) / barScale_));
}

void frmAudioCD::setPanel(const std::string &text) {
    sbPanel1->setText(q(text));
}

void frmAudioCD::selectRow(std::size_t row, bool selected) {
    QTreeWidgetItem *item = listFiles->topLevelItem(static_cast<int>(row));
    if (!item) return;
    item->setSelected(selected);
    if (selected) listFiles->scrollToItem(item);
}

void frmAudioCD::compileRunning(bool running) {
    cmdCompile->setProperty("tag", running ? QString() : QStringLiteral("tagged"));
    cmdCompile->setText(running ? q(host_.text("msgCancel")) : q(savedCompileCaption));
    cmdCompile->setEnabled(true);
}

void frmAudioCD::hideForm() {
    hide();
    host_.events(true);
}

}  // namespace saltmarrow
