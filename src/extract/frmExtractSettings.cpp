#include "extract/frmExtractSettings.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/Dialogs.h"

namespace saltmarrow {

namespace {

QString q(const std::string &text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string s(const QString &text) {
    return text.toUtf8().toStdString();
}

struct Legend {
    const char *marker;
    const char *name;
    const char *text;
};

// The markers of the template; the form explains them and no more.
constexpr Legend kLegend[] = {
    {"%1", "lblMarker1", "Album Artist"}, {"%2", "lblMarker2", "Album Title"},
    {"%3", "lblMarker3", "Track Number"}, {"%4", "lblMarker4", "Track Title"},
    {"%5", "lblMarker5", "Track Artist"}, {"%6, %7", "lblMarker6", "Undefined"},
};

}  // namespace

frmExtractSettings::frmExtractSettings(const ExtractHost &host, QWidget *owner)
    : QDialog(owner), host_(host) {
    setObjectName("frmExtractSettings");
    setWindowTitle(QStringLiteral("Extract Settings"));
    auto edit = [this](const char *name) {
        auto *e = new QLineEdit(this);
        e->setObjectName(name);
        return e;
    };
    auto label = [this](const char *name, const char *caption, QWidget *buddy) {
        auto *l = new QLabel(QString::fromUtf8(caption), this);
        l->setObjectName(name);
        l->setBuddy(buddy);
        return l;
    };
    auto button = [this](const char *name, const char *caption) {
        auto *b = new QPushButton(QString::fromUtf8(caption), this);
        b->setObjectName(name);
        b->setAutoDefault(false);
        return b;
    };

    frameFilename = new QGroupBox(QStringLiteral("Filename Settings"), this);
    frameFilename->setObjectName("frameFilename");
    txtFolder = edit("txtFolder");
    cmdBrowse = button("cmdBrowse", "..");
    cmdBrowse->setMaximumWidth(32);
    txtPath = edit("txtPath");
    txtPath->setText(QStringLiteral("%1\\%2\\%3 - %4"));
    auto *folderRow = new QHBoxLayout;
    folderRow->addWidget(txtFolder, 1);
    folderRow->addWidget(cmdBrowse);
    auto *files = new QFormLayout(frameFilename);
    files->addRow(label("lblFolder", "Folder:", txtFolder), folderRow);
    files->addRow(label("lblPath", "Path:", txtPath), txtPath);

    frameEncoder = new QGroupBox(QStringLiteral("Encoder Settings"), this);
    frameEncoder->setObjectName("frameEncoder");
    cmbEncoder = new QComboBox(this);
    cmbEncoder->setObjectName("cmbEncoder");
    txtCommand = edit("txtCommand");
    txtTagging = edit("txtTagging");
    txtExtension = edit("txtExtension");
    txtExtension->setMaximumWidth(80);
    auto *encoder = new QFormLayout(frameEncoder);
    encoder->addRow(label("lblEncoder", "Encoder:", cmbEncoder), cmbEncoder);
    encoder->addRow(label("lblCommand", "Command:", txtCommand), txtCommand);
    encoder->addRow(label("lblTagging", "Tagging:", txtTagging), txtTagging);
    encoder->addRow(label("lblExtension", "Extension:", txtExtension), txtExtension);

    frameTitles = new QGroupBox(QStringLiteral("Title Strings"), this);
    frameTitles->setObjectName("frameTitles");
    auto *legend = new QGridLayout(frameTitles);
    int at = 0;
    for (const Legend &row : kLegend) {
        auto *text = new QLabel(QString::fromUtf8(row.text), frameTitles);
        text->setObjectName(row.name);
        legend->addWidget(new QLabel(QString::fromUtf8(row.marker), frameTitles), at % 3, at / 3 * 2);
        legend->addWidget(text, at % 3, at / 3 * 2 + 1);
        ++at;
    }
    legend->setColumnStretch(1, 1);
    legend->setColumnStretch(3, 1);

    cmdOK = button("cmdOK", "&OK");
    cmdOK->setDefault(true);
    cmdCancel = button("cmdCancel", "&Cancel");
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(frameFilename);
    layout->addWidget(frameEncoder);
    layout->addWidget(frameTitles);
    layout->addLayout(buttons);
    resize(460, sizeHint().height());

    auto on = [this](QPushButton *b, const char *procedure, void (frmExtractSettings::*handler)()) {
        connect(b, &QPushButton::clicked, this,
                [=, this] { host_.run(procedure, [=, this] { (this->*handler)(); }); });
    };
    on(cmdBrowse, "cmdBrowse_Click", &frmExtractSettings::cmdBrowse_Click);
    on(cmdOK, "cmdOK_Click", &frmExtractSettings::cmdOK_Click);
    on(cmdCancel, "cmdCancel_Click", &frmExtractSettings::cmdCancel_Click);
    connect(cmbEncoder, &QComboBox::activated, this,
            [this] { host_.run("cmbEncoder_Click", [this] { cmbEncoder_Click(); }); });
}

void frmExtractSettings::Form_Load() {
    txtFolder->setText(q(host_.value("MRUExtract")));
    txtPath->setText(q(host_.value("ExtractPath")));
    cmbEncoder->clear();
    for (const EncoderRow &row : host_.encoderRows()) cmbEncoder->addItem(q(row[EncName]));
    if (const auto index = host_.encoderIndex()) {
        cmbEncoder->setCurrentIndex(static_cast<int>(*index));
        cmbEncoder_Click();
    }
}

void frmExtractSettings::cmbEncoder_Click() {
    const std::vector<EncoderRow> rows = host_.encoderRows();
    const int index = cmbEncoder->currentIndex();
    if (index < 0 || static_cast<std::size_t>(index) >= rows.size()) return;
    const EncoderRow &row = rows[static_cast<std::size_t>(index)];
    txtCommand->setText(q(row[EncArguments]));
    txtTagging->setText(q(row[EncTags]));
    txtExtension->setText(q(row[EncExtension]));
    host_.setValue("UseEncoder", std::to_string(index));
    // cdda2wav writes a WAV file itself: that row has no program to command.
    const bool program = cmbEncoder->currentText() != QLatin1String("Wave");
    txtCommand->setEnabled(program);
    txtTagging->setEnabled(program);
}

void frmExtractSettings::cmdBrowse_Click() {
    if (!host_.dialogs) return;
    const auto chosen =
        host_.dialogs->browseFolder(host_.text("msgBrowseForFolder"), s(txtFolder->text()), "", false);
    if (chosen && !chosen->folder.empty()) txtFolder->setText(q(chosen->folder));
}

void frmExtractSettings::cmdOK_Click() {
    const std::vector<EncoderRow> rows = host_.encoderRows();
    const int index = cmbEncoder->currentIndex();
    if (index >= 0 && static_cast<std::size_t>(index) < rows.size() && host_.setEncoder) {
        EncoderRow row = rows[static_cast<std::size_t>(index)];
        row[EncArguments] = s(txtCommand->text());
        row[EncTags] = s(txtTagging->text());
        row[EncExtension] = s(txtExtension->text());
        host_.setEncoder(static_cast<std::size_t>(index), row);
    }
    host_.setValue("MRUExtract", s(txtFolder->text()));
    host_.setValue("ExtractPath", s(txtPath->text()));
    accept();
}

void frmExtractSettings::cmdCancel_Click() {
    reject();
}

}  // namespace saltmarrow
