#include "devices/frmDeviceInfo.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QEvent>
#include <QFontMetrics>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <filesystem>

#include "devices/DeviceInfoText.h"
#include "platform/CommandLine.h"
#include "platform/EventWait.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace {

// Captions of the feature boxes, by index; the words they stand for are the
// drive's, matched in DeviceInfoText.
constexpr const char *kReadCaptions[] = {"CD-R",  "CD-RW",  "DVD-RAM", "DVD-R", "DVD-RW",
                                         "DVD+R", "DVD+RW", "DVD-ROM", "MRW"};
constexpr const char *kWriteCaptions[] = {
    "CD-R", "CD-RW", "DVD-RAM", "DVD-R", "DVD-RW", "DVD+R", "DVD+RW", "Underrun Protection", "MRW"};
constexpr const char *kMediaCaptions[] = {"Rewritable", "Blank", "Appendable"};

constexpr int kFeatureCount = 9;

QString q(const std::string &text) {
    QString s = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    // Values cut from the tool's output may run over several of its lines.
    s.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    s.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return s;
}

QLabel *captionLabel(QWidget *parent, const char *name, const char *text) {
    auto *label = new QLabel(QString::fromLatin1(text), parent);
    label->setObjectName(QString::fromLatin1(name));
    return label;
}

QLabel *valueLabel(QWidget *parent, const char *name) {
    auto *label = new QLabel(parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

// A page is one grid, captions left and values right, with no layout nested
// around the values: a value that grows while its page is behind the other
// can so tell the page's layout at once.
QGridLayout *pageGrid(QWidget *page) {
    auto *grid = new QGridLayout(page);
    grid->setColumnStretch(1, 1);
    return grid;
}

void addRow(QGridLayout *grid, QLabel *caption, QLabel *value) {
    const int row = grid->count() / 2;
    grid->addWidget(caption, row, 0, Qt::AlignLeft | Qt::AlignTop);
    grid->addWidget(value, row, 1, Qt::AlignTop);
}

// The rest of a page below its values, across both columns, then the free
// room.
void addBelow(QGridLayout *grid, QWidget *widget) {
    const int row = grid->count() / 2;
    grid->addWidget(widget, row, 0, 1, 2);
    grid->setRowStretch(row + 1, 1);
}

void addBelow(QGridLayout *grid, QLayout *layout) {
    const int row = grid->count() / 2;
    grid->addLayout(layout, row, 0, 1, 2);
    grid->setRowStretch(row + 1, 1);
}

// One member of a check box array that only shows: whatever the user does,
// the box goes back to what its tag says.
QCheckBox *showingBox(QWidget *parent, const char *array, int index, const char *text) {
    auto *box = new QCheckBox(QString::fromLatin1(text), parent);
    box->setObjectName(QString::fromLatin1(array));
    box->setProperty("index", index);
    box->setProperty("tag", QStringLiteral("False"));
    QObject::connect(box, &QCheckBox::clicked, box,
                     [box] { box->setChecked(box->property("tag").toString() == QLatin1String("True")); });
    return box;
}

void showTicked(QCheckBox *box, bool ticked) {
    box->setProperty("tag", ticked ? QStringLiteral("True") : QStringLiteral("False"));
    box->setChecked(ticked);
}

QGroupBox *boxFrame(QWidget *parent, const char *name, const char *title,
                    const std::vector<QCheckBox *> &boxes, Qt::Orientation orientation) {
    auto *frame = new QGroupBox(QString::fromLatin1(title), parent);
    frame->setObjectName(QString::fromLatin1(name));
    QBoxLayout *layout = orientation == Qt::Vertical ? static_cast<QBoxLayout *>(new QVBoxLayout(frame))
                                                     : static_cast<QBoxLayout *>(new QHBoxLayout(frame));
    for (QCheckBox *box : boxes) {
        box->setParent(frame);
        layout->addWidget(box);
    }
    if (orientation == Qt::Horizontal) layout->addStretch();
    return frame;
}

}  // namespace

QString cutToFit(const QString &list, const QFontMetrics &metrics, int width) {
    if (metrics.horizontalAdvance(list) <= width) return list;
    const QString more = QStringLiteral("...");
    QStringList items = list.split(QStringLiteral(", "));
    while (items.size() > 1) {
        items.removeLast();
        const QString head = items.join(QStringLiteral(", ")) + more;
        if (metrics.horizontalAdvance(head) <= width) return head;
    }
    // Not even the first item fits: cut it by characters.
    QString head = items.isEmpty() ? QString() : items.first();
    while (!head.isEmpty() && metrics.horizontalAdvance(head + more) > width) head.chop(1);
    return head + more;
}

frmDeviceInfo::frmDeviceInfo(DeviceState &state, const DeviceHost &host, DeviceInfoSources sources,
                             QWidget *owner)
    : QDialog(owner), state_(state), host_(host), sources_(std::move(sources)) {
    setObjectName(QStringLiteral("frmDeviceInfo"));
    setWindowTitle(QStringLiteral("Device Information"));

    TabStrip1 = new QTabWidget(this);
    TabStrip1->setObjectName(QStringLiteral("TabStrip1"));
    tabDeviceInfoTab = new QWidget;
    tabDeviceInfoTab->setObjectName(QStringLiteral("tabDeviceInfoTab"));
    tabMediaInfoTab = new QWidget;
    tabMediaInfoTab->setObjectName(QStringLiteral("tabMediaInfoTab"));
    TabStrip1->addTab(tabDeviceInfoTab, QStringLiteral("Device"));
    TabStrip1->addTab(tabMediaInfoTab, QStringLiteral("Media"));

    // The "Device" tab.
    QWidget *page = tabDeviceInfoTab;
    lblType = captionLabel(page, "lblType", "Type:");
    lblTypeValue = valueLabel(page, "lblTypeValue");
    lblFirmware = captionLabel(page, "lblFirmware", "Firmware:");
    lblFirmwareValue = valueLabel(page, "lblFirmwareValue");
    lblDriver = captionLabel(page, "lblDriver", "Driver:");
    lblDriverValue = valueLabel(page, "lblDriverValue");
    lblBuffer = captionLabel(page, "lblBuffer", "Buffer:");
    lblBufferValue = valueLabel(page, "lblBufferValue");
    auto *deviceGrid = pageGrid(page);
    addRow(deviceGrid, lblType, lblTypeValue);
    addRow(deviceGrid, lblFirmware, lblFirmwareValue);
    addRow(deviceGrid, lblDriver, lblDriverValue);
    addRow(deviceGrid, lblBuffer, lblBufferValue);
    for (int i = 0; i < kFeatureCount; ++i) {
        chkReadFeature.push_back(showingBox(page, "chkReadFeature", i, kReadCaptions[i]));
        chkWriteFeature.push_back(showingBox(page, "chkWriteFeature", i, kWriteCaptions[i]));
    }
    auto *features = new QHBoxLayout;
    features->addWidget(boxFrame(page, "fraReadFeatures", "Reads", chkReadFeature, Qt::Vertical));
    features->addWidget(boxFrame(page, "fraWriteFeatures", "Writes", chkWriteFeature, Qt::Vertical));
    addBelow(deviceGrid, features);

    // The "Media" tab.
    page = tabMediaInfoTab;
    lblManufacturer = captionLabel(page, "lblManufacturer", "Manufacturer:");
    lblManufacturerValue = valueLabel(page, "lblManufacturerValue");
    lblCapacity = captionLabel(page, "lblCapacity", "Capacity:");
    lblCapacityValue = valueLabel(page, "lblCapacityValue");
    lblTOCType = captionLabel(page, "lblTOCType", "TOC Type:");
    lblTOCTypeValue = valueLabel(page, "lblTOCTypeValue");
    lblSessions = captionLabel(page, "lblSessions", "Sessions:");
    lblSessionsValue = valueLabel(page, "lblSessionsValue");
    lblTracks = captionLabel(page, "lblTracks", "Tracks:");
    lblTracksValue = valueLabel(page, "lblTracksValue");
    lblWriteSpeed = captionLabel(page, "lblWriteSpeed", "Write Speeds:");
    lblWriteSpeedValue = valueLabel(page, "lblWriteSpeedValue");
    // The speed list takes the room the others leave and is cut to it; it
    // must not widen the dialog. Its minimum leaves the dialog's own minimum
    // to the layout, which so grows the dialog as the other values grow.
    lblWriteSpeedValue->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    lblWriteSpeedValue->setMinimumWidth(
        lblWriteSpeedValue->fontMetrics().horizontalAdvance(QStringLiteral("48x, 40x, 32x, 24x, 16x...")));
    lblWriteSpeedValue->installEventFilter(this);
    auto *mediaGrid = pageGrid(page);
    addRow(mediaGrid, lblManufacturer, lblManufacturerValue);
    addRow(mediaGrid, lblCapacity, lblCapacityValue);
    addRow(mediaGrid, lblTOCType, lblTOCTypeValue);
    addRow(mediaGrid, lblSessions, lblSessionsValue);
    addRow(mediaGrid, lblTracks, lblTracksValue);
    addRow(mediaGrid, lblWriteSpeed, lblWriteSpeedValue);
    for (int i = 0; i < 3; ++i) chkMedia.push_back(showingBox(page, "chkMedia", i, kMediaCaptions[i]));
    addBelow(mediaGrid, boxFrame(page, "fraMedia", "Disc", chkMedia, Qt::Horizontal));

    cmdClose = new QPushButton(QStringLiteral("&Close"), this);
    cmdClose->setObjectName(QStringLiteral("cmdClose"));
    cmdClose->setDefault(true);
    connect(cmdClose, &QPushButton::clicked, this, &QWidget::close);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdClose);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(TabStrip1);
    layout->addLayout(buttons);

    objDOS.ReceiveOutputs = [this](const std::string &line) { objDOS_ReceiveOutputs(line); };
    objDOS.waitForEvents = platform::waitForEvents;
    objDOS.pump = [this] {
        if (host_.letEventsRun)
            host_.letEventsRun();
        else
            QCoreApplication::processEvents();
    };
}

frmDeviceInfo::~frmDeviceInfo() {
    objDOS.killInstantly();
}

void frmDeviceInfo::ShowDeviceInfo(int index) {
    const DeviceTab tab = saltmarrow::ShowDeviceInfo(state_.devices.item(static_cast<std::size_t>(index)));
    setWindowTitle(q(tab.caption));
    lblBufferValue->setText(q(tab.lblBufferValue));
    lblFirmwareValue->setText(q(tab.lblFirmwareValue));
    lblDriverValue->setText(q(tab.lblDriverValue));
    lblTypeValue->setText(q(tab.lblTypeValue));
    for (int i = 0; i < kFeatureCount; ++i) {
        showTicked(chkReadFeature[static_cast<std::size_t>(i)],
                   tab.chkReadFeature[static_cast<std::size_t>(i)]);
        showTicked(chkWriteFeature[static_cast<std::size_t>(i)],
                   tab.chkWriteFeature[static_cast<std::size_t>(i)]);
    }
    MediaInfo(index);
}

void frmDeviceInfo::MediaInfo(int index) {
    // The disc changed while a query was still running: that query answers.
    if (objDOS.isRunning()) return;
    std::string output;
    if (!isDVDMediaType(state_.devices.item(static_cast<std::size_t>(index)).LastMediaType)) {
        // The tools run in their own folder, as every other command does.
        const std::string folder = std::filesystem::path(host_.cdrdao).parent_path().string();
        const std::string device = sources_.writerDevice ? sources_.writerDevice() : std::string();
        objDOS.ExecuteCommand(platform::quoteArgument(host_.cdrdao) + " disk-info" + device, 256, 1, folder);
        output = objDOS.totalOutput;
    }
    // The table may have changed while the query let events run.
    const DeviceInfo &device = state_.devices.item(static_cast<std::size_t>(index));
    const MediaTab tab =
        saltmarrow::MediaInfo(device, output, sources_.discFreeBytes ? sources_.discFreeBytes() : 0.0);
    for (std::size_t i = 0; i < chkMedia.size(); ++i) showTicked(chkMedia[i], tab.chkMedia[i]);
    lblCapacityValue->setText(q(tab.lblCapacityValue));
    // The value runs on over the tool's next lines to the next colon; the
    // maker is the first line, and the rest stays in the tool tip.
    const QString manufacturer = q(tab.lblManufacturerValue);
    lblManufacturerValue->setText(manufacturer.section(QLatin1Char('\n'), 0, 0).trimmed());
    lblManufacturerValue->setToolTip(manufacturer);
    lblTOCTypeValue->setText(q(tab.lblTOCTypeValue));
    lblSessionsValue->setText(q(tab.lblSessionsValue));
    lblTracksValue->setText(q(tab.lblTracksValue));
    writeSpeeds_ = q(tab.lblWriteSpeedValue);
    lblWriteSpeedValue->setToolTip(writeSpeeds_);
    fitWriteSpeeds();
    // A page behind the other does not pass on that its values grew; the
    // dialog would widen only when that page comes to the front.
    TabStrip1->updateGeometry();
}

void frmDeviceInfo::objDOS_ReceiveOutputs(const std::string &line) {
    // A drive without a disc would keep the tool waiting, and a disc query
    // must never go on into a write.
    if (mediaInfoStopsAt(line)) objDOS.killInstantly();
}

void frmDeviceInfo::fitWriteSpeeds() {
    lblWriteSpeedValue->setText(cutToFit(writeSpeeds_, lblWriteSpeedValue->fontMetrics(),
                                         lblWriteSpeedValue->contentsRect().width()));
}

bool frmDeviceInfo::eventFilter(QObject *watched, QEvent *event) {
    if (watched == lblWriteSpeedValue && event->type() == QEvent::Resize) fitWriteSpeeds();
    return QDialog::eventFilter(watched, event);
}

void frmDeviceInfo::showBeside(QWidget *mainForm) {
    const auto place = [this, mainForm] {
        const QRect main = mainForm->frameGeometry();
        // Before its first showing the dialog has no frame yet; it will get
        // one like the main form's. The gap keeps a border that the window
        // manager adds late from overlapping.
        const QRect inner = mainForm->geometry();
        const QSize frame(main.width() - inner.width(), main.height() - inner.height());
        const QSize size = isVisible() ? frameGeometry().size() : sizeHint().expandedTo(this->size()) + frame;
        constexpr int kGap = 4;
        QPoint at(main.right() + 1 + kGap, main.top());
        if (const QScreen *screen = mainForm->screen()) {
            const QRect room = screen->availableGeometry();
            if (at.x() + size.width() > room.right() + 1) at.setX(main.left() - kGap - size.width());
            // No room on either side: against the screen's right edge.
            if (at.x() < room.left()) at.setX(std::max(room.left(), room.right() + 1 - size.width()));
            at.setY(std::clamp(at.y(), room.top(), std::max(room.top(), room.bottom() + 1 - size.height())));
        }
        move(at);
    };
    if (mainForm) {
        if (!isVisible()) adjustSize();
        place();
    }
    show();
    raise();
    activateWindow();
    // The real size is known once the dialog is up: place it again by that.
    if (mainForm) place();
}

}  // namespace saltmarrow
