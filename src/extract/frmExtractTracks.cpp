#include "extract/frmExtractTracks.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "extract/ExtractNames.h"
#include "extract/frmExtractSettings.h"
#include "platform/EventWait.h"
#include "support/FormParts.h"

namespace saltmarrow {

namespace {

QString q(const std::string &text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

frmExtractTracks::frmExtractTracks(ExtractHost host, QWidget *owner)
    : QMainWindow(owner, Qt::Window), host_(std::move(host)), extraction_(disc, host_, *this, objDOS) {
    setObjectName("frmExtractTracks");
    setWindowTitle(QStringLiteral("Extract Tracks"));
    objDOS.waitForEvents = platform::waitForEvents;
    buildControls();
    resize(560, 420);
}

frmExtractTracks::~frmExtractTracks() = default;

void frmExtractTracks::buildControls() {
    auto *central = new QWidget(this);
    setCentralWidget(central);
    auto button = [&](const char *name, const char *caption) { return namedButton(central, name, caption); };
    cmdRescan = button("cmdRescan", "&Rescan");
    cmdFreedb = button("cmdFreedb", "Freedb..");
    cmdEncoder = button("cmdEncoder", "Settings..");
    cmdOpenFolder = button("cmdOpenFolder", "Open Folder");
    cmdExtract = button("cmdExtract", "E&xtract");
    chkImageFile = named(new QCheckBox(QStringLiteral(" Image &File"), central), "chkImageFile", true);

    listFiles = rowList(central, "listFiles");
    listFiles->setColumnCount(2);
    listFiles->setHeaderLabels({QStringLiteral("Track"), QStringLiteral("Length")});
    listFiles->setEditTriggers(QAbstractItemView::NoEditTriggers);
    listFiles->header()->setStretchLastSection(false);
    listFiles->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    listFiles->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    listFiles->installEventFilter(this);
    lblTarget = new QLabel(central);
    lblTarget->setObjectName("lblTarget");
    lblTarget->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto *top = new QHBoxLayout;
    top->addWidget(cmdRescan);
    top->addWidget(cmdFreedb);
    top->addStretch();
    top->addWidget(chkImageFile);
    top->addWidget(cmdExtract);
    auto *bottom = new QHBoxLayout;
    bottom->addWidget(lblTarget, 1);
    bottom->addWidget(cmdEncoder);
    bottom->addWidget(cmdOpenFolder);
    auto *layout = new QVBoxLayout(central);
    layout->setContentsMargins(6, 6, 6, 2);
    layout->addLayout(top);
    layout->addWidget(listFiles, 1);
    layout->addLayout(bottom);

    sbPanel1 = new QLabel(statusBar());
    sbPanel2 = new QLabel(statusBar());
    for (QLabel *panel : {sbPanel1, sbPanel2}) panel->setObjectName("sbStatusBar");
    sbPanel1->setProperty("index", 1);
    sbPanel2->setProperty("index", 2);
    pbCopyProgress = new QProgressBar(statusBar());
    pbCopyProgress->setObjectName("pbCopyProgress");
    pbCopyProgress->setRange(0, kDiscSecondsShown);
    pbCopyProgress->setTextVisible(false);
    pbCopyProgress->setMaximumHeight(14);
    statusBar()->addWidget(sbPanel1, 2);
    statusBar()->addWidget(sbPanel2, 2);
    statusBar()->addPermanentWidget(pbCopyProgress, 1);

    on(cmdRescan, "cmdRescan_Click", &frmExtractTracks::cmdRescan_Click);
    on(cmdExtract, "cmdExtract_Click", &frmExtractTracks::cmdExtract_Click);
    on(cmdFreedb, "cmdFreedb_Click", &frmExtractTracks::cmdFreedb_Click);
    on(cmdEncoder, "cmdEncoder_Click", &frmExtractTracks::cmdEncoder_Click);
    on(cmdOpenFolder, "cmdOpenFolder_Click", &frmExtractTracks::cmdOpenFolder_Click);
    connect(chkImageFile, &QCheckBox::toggled, this, [this] { showTarget(); });
    connect(listFiles, &QTreeWidget::itemSelectionChanged, this, [this] {
        if (filling_ || extraction_.running()) return;
        takeSelection();
        extraction_.updateTotals();
    });
    connect(listFiles, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem *item) {
        if (filling_) return;
        const int row = listFiles->indexOfTopLevelItem(item);
        if (row < 0) return;
        host_.run("listFiles_AfterLabelEdit", [&] {
            disc.renameRow(static_cast<std::size_t>(row), item->text(0).toStdString());
            showRows();
        });
    });
}

void frmExtractTracks::on(QPushButton *button, const char *procedure, void (frmExtractTracks::*handler)()) {
    connect(button, &QPushButton::clicked, this,
            [=, this] { host_.run(procedure, [=, this] { (this->*handler)(); }); });
}

void frmExtractTracks::Form_Load() {
    extractCaption_ = cmdExtract->text();
    cmdFreedb->setEnabled(static_cast<bool>(host_.QueryFreedb));
    showTarget();
    extraction_.updateTotals();
    cmdRescan_Click();
}

void frmExtractTracks::showTarget() {
    const std::vector<EncoderRow> rows = host_.encoderRows();
    const auto index = host_.encoderIndex();
    const std::string extension = index ? "." + pathValue(rows[*index][EncExtension]) : std::string();
    std::string name = host_.value("ExtractPath");
    if (chkImageFile->isChecked())
        name = pathValue(disc.extractArtist) + " - " + pathValue(disc.extractAlbum);
    std::string folder = host_.value("MRUExtract");
    if (!folder.empty() && folder.back() != '/') folder += '/';
    lblTarget->setText(q(folder + name + extension));
    lblTarget->setToolTip(lblTarget->text());
}

void frmExtractTracks::takeSelection() {
    for (int i = 0; i < listFiles->topLevelItemCount() && i < static_cast<int>(disc.count()); ++i)
        disc.rows[static_cast<std::size_t>(i)].selected = listFiles->topLevelItem(i)->isSelected();
}

void frmExtractTracks::cmdRescan_Click() {
    extraction_.cmdRescan_Click();
    showTarget();
}

void frmExtractTracks::cmdExtract_Click() {
    if (!extraction_.running()) takeSelection();
    ExtractChoice choice;
    choice.chkImageFile = chkImageFile->isChecked();
    choice.folder = host_.value("MRUExtract");
    choice.pattern = host_.value("ExtractPath");
    if (const auto index = host_.encoderIndex()) choice.encoder = host_.encoderRows()[*index];
    extraction_.cmdExtract_Click(choice);
}

void frmExtractTracks::cmdFreedb_Click() {
    if (disc.count() == 0 || !host_.QueryFreedb) return;
    const std::optional<FreedbResult> result = host_.QueryFreedb(disc.freedbLengths());
    if (!result) return;
    takeSelection();
    disc.applyFreedb(*result);
    showRows();
    setCaption(disc.caption());
    showTarget();
}

frmExtractSettings *frmExtractTracks::settingsForm() {
    if (!settings_) {
        settings_ = new frmExtractSettings(host_, this);
        if (host_.translateForm) host_.translateForm(settings_);
    }
    return settings_;
}

void frmExtractTracks::cmdEncoder_Click() {
    settingsForm()->Form_Load();
    settings_->exec();
    showTarget();
}

void frmExtractTracks::cmdOpenFolder_Click() {
    if (host_.openFolder) host_.openFolder(host_.value("MRUExtract"));
}

void frmExtractTracks::setPanel(int panel, const std::string &text) {
    (panel == 2 ? sbPanel2 : sbPanel1)->setText(q(text));
}

void frmExtractTracks::setBar(int max, int value) {
    pbCopyProgress->setMaximum(max);
    pbCopyProgress->setValue(std::clamp(value, 0, max));
}

void frmExtractTracks::setCaption(const std::string &text) {
    setWindowTitle(q(text));
}

void frmExtractTracks::enableControls(bool enable) {
    for (QWidget *w : findChildren<QWidget *>())
        if (w->property("tag").toString() == QLatin1String("tagged")) w->setEnabled(enable);
    if (enable) cmdFreedb->setEnabled(static_cast<bool>(host_.QueryFreedb));
    busy_ = !enable;
}

void frmExtractTracks::extractRunning(bool running) {
    cmdExtract->setProperty("tag", running ? QString() : QStringLiteral("tagged"));
    cmdExtract->setText(running ? q(host_.text("msgCancel")) : extractCaption_);
    cmdExtract->setEnabled(true);
}

void frmExtractTracks::showRows() {
    filling_ = true;
    listFiles->setUpdatesEnabled(false);
    listFiles->clear();
    const QIcon music = style()->standardIcon(QStyle::SP_MediaVolume);
    QTreeWidgetItem *first = nullptr;
    for (std::size_t i = 0; i < disc.count(); ++i) {
        auto *item = new QTreeWidgetItem(listFiles, {q(disc.rows[i].text), q(disc.track(i).Length)});
        item->setIcon(0, music);
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        item->setData(0, Qt::UserRole, q(disc.rows[i].Tag));
        item->setSelected(disc.rows[i].selected);
        if (!first) first = item;
    }
    if (first) listFiles->scrollToItem(first);
    listFiles->setUpdatesEnabled(true);
    filling_ = false;
}

void frmExtractTracks::closeEvent(QCloseEvent *event) {
    event->ignore();
    if (!busy_) hide();
}

bool frmExtractTracks::eventFilter(QObject *watched, QEvent *event) {
    if (watched == listFiles && event->type() == QEvent::KeyPress && !busy_) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_F2 && listFiles->currentItem()) {
            listFiles->editItem(listFiles->currentItem(), 0);
            return true;
        }
        if (key->key() == Qt::Key_A && key->modifiers() == Qt::ControlModifier) {
            listFiles->selectAll();
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

}  // namespace saltmarrow
