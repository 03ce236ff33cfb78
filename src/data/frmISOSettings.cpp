#include "data/frmISOSettings.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "platform/Dialogs.h"

namespace saltmarrow {

using data::IsoBox;
using data::IsoField;
using data::kIsoBoxes;
using data::kIsoFields;

namespace {

QString q(std::string_view s) {
    return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
}

constexpr std::size_t at(auto e) {
    return static_cast<std::size_t>(e);
}

// The boxes of each frame, in the order they stand.
constexpr IsoBox kFileSystemBoxes[] = {
    IsoBox::ISOLevel2, IsoBox::ISO1999,  IsoBox::Joliet,       IsoBox::LongJoliet, IsoBox::RockRidge,
    IsoBox::UDF,       IsoBox::RelaxISO, IsoBox::DontRelocate, IsoBox::VersionNo,  IsoBox::CompliantPVD};

}  // namespace

frmISOSettings::frmISOSettings(const data::DataHost &host, QWidget *owner) : QDialog(owner), host_(host) {
    setObjectName("frmISOSettings");
    setWindowTitle(QStringLiteral("ISO Settings"));
    for (const data::IsoFieldRow &row : kIsoFields) {
        auto *edit = new QLineEdit(q(row.designText), this);
        edit->setObjectName(q(row.control));
        edit->setMaxLength(row.maxLength);
        edit->installEventFilter(this);
        fields_[at(row.field)] = edit;
        if (!row.label.empty()) {
            labels_[at(row.field)] = new QLabel(q(row.labelText), this);
            labels_[at(row.field)]->setObjectName(q(row.label));
            labels_[at(row.field)]->setBuddy(edit);
        }
    }
    for (const data::IsoBoxRow &row : kIsoBoxes) {
        auto *b = new QCheckBox(q(row.caption), this);
        b->setObjectName(q(row.control));
        boxes_[at(row.box)] = b;
        const IsoBox which = row.box;
        connect(b, &QCheckBox::clicked, this, [this, which] { box_Click(which); });
    }
    txtLabel = field(IsoField::Label);
    chkCompliantPVD = box(IsoBox::CompliantPVD);
    txtBootImage = new QLineEdit(this);
    txtBootImage->setObjectName("txtBootImage");
    txtBootImage->setReadOnly(true);
    cmdBootImage = new QPushButton(QStringLiteral("..."), this);
    cmdBootImage->setObjectName("cmdBootImage");
    cmdClear = new QPushButton(QStringLiteral("Clear fields"), this);
    cmdClear->setObjectName("cmdClear");
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName("cmdOK");
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &frmISOSettings::cmdOK_Click);
    connect(cmdClear, &QPushButton::clicked, this, &frmISOSettings::cmdClear_Click);
    connect(cmdBootImage, &QPushButton::clicked, this, &frmISOSettings::cmdBootImage_Click);

    auto *texts = new QGroupBox(QStringLiteral("Volume Descriptor"), this);
    texts->setObjectName("frameDescriptor");
    auto *grid = new QGridLayout(texts);
    int row = 0;
    for (const data::IsoFieldRow &r : kIsoFields) {
        if (r.field == IsoField::VolSize || r.field == IsoField::LoadSize) continue;
        grid->addWidget(labels_[at(r.field)], row, 0);
        if (r.field == IsoField::VolNo) {
            auto *pair = new QHBoxLayout;
            field(IsoField::VolNo)->setMaximumWidth(48);
            field(IsoField::VolSize)->setMaximumWidth(48);
            pair->addWidget(field(IsoField::VolNo));
            pair->addWidget(labels_[at(IsoField::VolSize)]);
            pair->addWidget(field(IsoField::VolSize));
            pair->addStretch();
            grid->addLayout(pair, row++, 1);
            continue;
        }
        field(r.field)->setMinimumWidth(240);
        grid->addWidget(field(r.field), row++, 1);
    }
    grid->setColumnStretch(1, 1);

    auto *fileSystem = new QGroupBox(QStringLiteral("File System"), this);
    fileSystem->setObjectName("frameFileSystem");
    auto *fsGrid = new QGridLayout(fileSystem);
    for (std::size_t i = 0; i < std::size(kFileSystemBoxes); ++i)
        fsGrid->addWidget(box(kFileSystemBoxes[i]), static_cast<int>(i / 2), static_cast<int>(i % 2));

    auto *session = new QGroupBox(QStringLiteral("Multisession"), this);
    session->setObjectName("frameSession");
    auto *sessionRow = new QHBoxLayout(session);
    sessionRow->addWidget(box(IsoBox::Multi));
    sessionRow->addWidget(box(IsoBox::Import));
    sessionRow->addStretch();

    auto *boot = new QGroupBox(QStringLiteral("Boot"), this);
    boot->setObjectName("frameBoot");
    auto *bootGrid = new QGridLayout(boot);
    bootGrid->addWidget(box(IsoBox::BootImage), 0, 0, 1, 2);
    auto *imageRow = new QHBoxLayout;
    imageRow->addWidget(txtBootImage, 1);
    imageRow->addWidget(cmdBootImage);
    cmdBootImage->setMaximumWidth(40);
    bootGrid->addLayout(imageRow, 1, 0, 1, 2);
    bootGrid->addWidget(box(IsoBox::NoEmulation), 2, 0);
    bootGrid->addWidget(box(IsoBox::BootInfoTable), 2, 1);
    auto *loadRow = new QHBoxLayout;
    loadRow->addWidget(box(IsoBox::LoadSize));
    loadRow->addWidget(field(IsoField::LoadSize));
    field(IsoField::LoadSize)->setMaximumWidth(80);
    loadRow->addStretch();
    bootGrid->addLayout(loadRow, 3, 0, 1, 2);

    auto *right = new QVBoxLayout;
    right->addWidget(fileSystem);
    right->addWidget(session);
    right->addWidget(boot);
    right->addStretch();
    auto *columns = new QHBoxLayout;
    columns->addWidget(texts, 1);
    columns->addLayout(right, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdClear);
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    auto *all = new QVBoxLayout(this);
    all->addLayout(columns);
    all->addLayout(buttons);
    showControls();
}

void frmISOSettings::showControls() {
    const data::IsoSettings &v = controls_.values;
    for (const data::IsoBoxRow &row : kIsoBoxes) {
        box(row.box)->setChecked(v.checked(row.box));
        box(row.box)->setEnabled(controls_.enabledBox(row.box));
    }
    cmdBootImage->setEnabled(controls_.bootImageEnabled);
    txtBootImage->setEnabled(controls_.bootImageEnabled);
    field(IsoField::LoadSize)->setEnabled(controls_.loadSizeEnabled);
    const bool image = v.checked(IsoBox::BootImage) && !v.strBootImage.empty();
    txtBootImage->setText(image ? q(v.strBootImage) : QStringLiteral("No Boot Image"));
}

void frmISOSettings::loadSettings(bool blnDVD, bool blnDVDVideo) {
    blnDVD_ = blnDVD;
    blnDVDVideo_ = blnDVDVideo;
    data::loadIsoSettings(
        controls_, [this](std::string_view key) { return host_.value(key); }, blnDVD, blnDVDVideo);
    showControls();
}

void frmISOSettings::saveSettings() {
    data::saveIsoSettings(
        controls_, [this](std::string_view key, const std::string &v) { host_.setValue(key, v); }, blnDVD_,
        blnDVDVideo_);
}

data::IsoSettings frmISOSettings::snapshot() const {
    data::IsoSettings s = controls_.values;
    for (const data::IsoFieldRow &row : kIsoFields)
        s.text(row.field) = field(row.field)->text().toStdString();
    return s;
}

std::string frmISOSettings::label() const {
    return txtLabel->text().toStdString();
}

void frmISOSettings::setLabel(const std::string &label) {
    txtLabel->setText(q(label));
}

bool frmISOSettings::compliantPVD() const {
    return controls_.values.checked(IsoBox::CompliantPVD);
}

void frmISOSettings::enableTooltips(bool shown) {
    for (const data::IsoFieldRow &row : kIsoFields)
        field(row.field)->setToolTip(shown ? q(host_.text(row.tip)) : QString());
    for (const data::IsoBoxRow &row : kIsoBoxes)
        box(row.box)->setToolTip(shown ? q(host_.text(row.tip)) : QString());
    cmdBootImage->setToolTip(shown ? q(host_.text("tipISOBootImage")) : QString());
}

void frmISOSettings::leave(IsoField f) {
    QLineEdit *edit = field(f);
    const QString filtered = q(data::leaveField(f, edit->text().toStdString(), compliantPVD()));
    if (filtered != edit->text()) edit->setText(filtered);
}

void frmISOSettings::box_Click(IsoBox b) {
    const bool ticked = box(b)->isChecked();
    controls_.values.boxes[at(b)] = ticked;
    if (b == IsoBox::CompliantPVD && ticked) {
        if (host_.msgBox(host_.text("msgCompliantPVD"), platform::mb::OKCancel | platform::mb::Information) ==
            platform::mb::OK) {
            for (const data::IsoFieldRow &row : kIsoFields)
                if (row.filteredOnLeave) leave(row.field);
        } else {
            controls_.values.boxes[at(b)] = false;
        }
    }
    data::boxRules(controls_, b);
    showControls();
}

void frmISOSettings::cmdBootImage_Click() {
    platform::FileRequest request;
    request.filter = "Boot Image File (*.bin;*.img;*.ima)|*.bin;*.img;*.ima";
    const auto chosen = host_.dialogs ? host_.dialogs->openFile(request) : std::nullopt;
    if (!chosen || chosen->empty()) return;
    controls_.values.strBootImage = chosen->front();
    showControls();
}

void frmISOSettings::cmdClear_Click() {
    data::IsoSettings s = snapshot();
    data::clearFields(s);
    for (const data::IsoFieldRow &row : kIsoFields) field(row.field)->setText(q(s.text(row.field)));
}

void frmISOSettings::cmdOK_Click() {
    if (!data::bootImageValid(snapshot())) {
        host_.msgBox(host_.text("msgBootPathError"), platform::mb::Exclamation);
        return;
    }
    if (onLabel) onLabel(label());
    saveSettings();
    accept();
}

bool frmISOSettings::eventFilter(QObject *watched, QEvent *event) {
    const auto it = std::find(fields_.begin(), fields_.end(), watched);
    if (it == fields_.end()) return QDialog::eventFilter(watched, event);
    const data::IsoFieldRow &row = kIsoFields[static_cast<std::size_t>(it - fields_.begin())];
    if (event->type() == QEvent::FocusIn) {
        // After the click that gave the focus, which would place the cursor.
        QTimer::singleShot(0, *it, &QLineEdit::selectAll);
        return false;
    }
    if (event->type() == QEvent::FocusOut) {
        leave(row.field);
        return false;
    }
    if (event->type() != QEvent::KeyPress || row.filter == data::TextFilter::None) return false;
    auto *key = static_cast<QKeyEvent *>(event);
    switch (key->key()) {
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Escape:
        case Qt::Key_Delete:
            return false;
        default:
            break;
    }
    const QString text = key->text();
    if (text.size() != 1) return false;
    const char16_t c = text.at(0).unicode();
    const char typed = c < 128 ? static_cast<char>(c) : '\x80';
    std::optional<char> out;
    if (row.filter == data::TextFilter::Digits)
        out = data::checkDigit(typed);
    else if (!compliantPVD())
        return false;
    else
        out = data::checkASCII(typed, row.filter == data::TextFilter::Wide, true);
    if (!out) return true;
    if (*out == typed && c < 128) return false;
    (*it)->insert(QString(QChar(*out)));
    return true;
}

}  // namespace saltmarrow
