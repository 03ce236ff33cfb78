#include "audio/frmTrackProperties.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QVBoxLayout>
#include <cmath>

#include "platform/Dialogs.h"

namespace saltmarrow {

namespace mb = platform::mb;

namespace {

QString q(const std::string &text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string s(const QString &text) {
    return text.toUtf8().toStdString();
}

template <typename W>
W *named(W *w, const char *name) {
    w->setObjectName(name);
    return w;
}

// The numbers of the stream as whole figures: 26460000 samples, not 2.646e+07.
std::string figure(double value) {
    return std::to_string(std::llround(value));
}

}  // namespace

frmTrackProperties::frmTrackProperties(AudioProject &project, const AudioHost &host, QWidget *owner)
    : QDialog(owner), project_(project), host_(host) {
    setObjectName("frmTrackProperties");
    setWindowTitle(QStringLiteral("Track Properties"));
    setModal(true);
    buildControls();
    if (host_.translateForm) host_.translateForm(this);
}

void frmTrackProperties::buildControls() {
    auto label = [this](const char *name, const char *caption) {
        return named(new QLabel(QString::fromUtf8(caption), this), name);
    };
    auto edit = [this](const char *name) { return named(new QLineEdit(this), name); };
    auto button = [this](const char *name, const char *caption) {
        return named(new QPushButton(QString::fromUtf8(caption), this), name);
    };
    txtTrackTitle = edit("txtTrackTitle");
    txtTrackArtist = edit("txtTrackArtist");
    txtTrackISRC = edit("txtTrackISRC");
    txtPause = edit("txtPause");
    txtStartMS = edit("txtStartMS");
    txtFinishMS = edit("txtFinishMS");
    txtAlbumTitle = edit("txtAlbumTitle");
    txtAlbumArtist = edit("txtAlbumArtist");
    txtAlbumCatalog = edit("txtAlbumCatalog");
    txtTrackISRC->setMaxLength(12);
    txtAlbumCatalog->setMaxLength(13);
    for (QLineEdit *time : {txtPause, txtStartMS, txtFinishMS}) {
        time->setMaxLength(8);
        time->setFixedWidth(fontMetrics().horizontalAdvance(QStringLiteral("000:00:000")));
        time->installEventFilter(this);
    }
    optSilence = named(new QRadioButton(QStringLiteral("&Silence"), this), "optSilence");
    optPostgap = named(new QRadioButton(QStringLiteral("End of the &previous track"), this), "optPostgap");
    optPregap = named(new QRadioButton(QStringLiteral("Start of &this track"), this), "optPregap");
    lblFreqVal = label("lblFreqVal", "");
    lblChannelVal = label("lblChannelVal", "");
    lblBitrateVal = label("lblBitrateVal", "");
    lblSamplesVal = label("lblSamplesVal", "");
    cmdFill = button("cmdFill", "&Fill");
    cmdGetAlbum = button("cmdGetAlbum", "&Get Album");
    cmdReset = button("cmdReset", "&Reset");
    cmdPrevious = button("cmdPrevious", "<< P&revious");
    cmdNext = button("cmdNext", "&Next >>");
    cmdOK = button("cmdOK", "OK");
    cmdCancel = button("cmdCancel", "Cancel");
    cmdOK->setDefault(true);

    auto *track = named(new QGroupBox(QStringLiteral("Track"), this), "fraTrack");
    auto *trackGrid = new QGridLayout(track);
    trackGrid->addWidget(label("lblTrackTitle", "Title:"), 0, 0);
    trackGrid->addWidget(txtTrackTitle, 0, 1, 1, 2);
    trackGrid->addWidget(label("lblTrackArtist", "Artist:"), 1, 0);
    trackGrid->addWidget(txtTrackArtist, 1, 1);
    trackGrid->addWidget(cmdFill, 1, 2);
    trackGrid->addWidget(label("lblTrackISRC", "ISRC:"), 2, 0);
    trackGrid->addWidget(txtTrackISRC, 2, 1);
    trackGrid->addWidget(label("lblStartMS", "Start:"), 3, 0);
    trackGrid->addWidget(txtStartMS, 3, 1, Qt::AlignLeft);
    trackGrid->addWidget(label("lblFinishMS", "Finish:"), 4, 0);
    trackGrid->addWidget(txtFinishMS, 4, 1, Qt::AlignLeft);
    trackGrid->addWidget(cmdReset, 4, 2);

    auto *gap = named(new QGroupBox(QStringLiteral("Pause"), this), "fraGap");
    auto *gapGrid = new QGridLayout(gap);
    gapGrid->addWidget(label("lblPause", "Length:"), 0, 0);
    gapGrid->addWidget(txtPause, 0, 1, Qt::AlignLeft);
    gapGrid->addWidget(optSilence, 1, 0, 1, 2);
    gapGrid->addWidget(optPostgap, 2, 0, 1, 2);
    gapGrid->addWidget(optPregap, 3, 0, 1, 2);

    auto *stream = named(new QGroupBox(QStringLiteral("File"), this), "fraInfo");
    auto *streamGrid = new QGridLayout(stream);
    streamGrid->addWidget(label("lblFreq", "Frequency:"), 0, 0);
    streamGrid->addWidget(lblFreqVal, 0, 1);
    streamGrid->addWidget(label("lblChannel", "Channels:"), 1, 0);
    streamGrid->addWidget(lblChannelVal, 1, 1);
    streamGrid->addWidget(label("lblBitrate", "Bitrate:"), 2, 0);
    streamGrid->addWidget(lblBitrateVal, 2, 1);
    streamGrid->addWidget(label("lblSamples", "Samples:"), 3, 0);
    streamGrid->addWidget(lblSamplesVal, 3, 1);

    auto *album = named(new QGroupBox(QStringLiteral("Album"), this), "fraAlbum");
    auto *albumGrid = new QGridLayout(album);
    albumGrid->addWidget(label("lblAlbumTitle", "Title:"), 0, 0);
    albumGrid->addWidget(txtAlbumTitle, 0, 1, 1, 2);
    albumGrid->addWidget(label("lblAlbumArtist", "Artist:"), 1, 0);
    albumGrid->addWidget(txtAlbumArtist, 1, 1, 1, 2);
    albumGrid->addWidget(label("lblAlbumCatalog", "Catalog:"), 2, 0);
    albumGrid->addWidget(txtAlbumCatalog, 2, 1);
    albumGrid->addWidget(cmdGetAlbum, 2, 2);

    auto *statusBar = named(new QStatusBar(this), "sbStatusBar");
    statusBar->setSizeGripEnabled(false);
    for (int i = 0; i < 4; ++i) {
        sbPanel[i] = new QLabel(statusBar);
        sbPanel[i]->setObjectName("sbStatusBar");
        sbPanel[i]->setProperty("index", i + 1);
        statusBar->addWidget(sbPanel[i], i == 1 ? 1 : 0);
    }

    auto *side = new QVBoxLayout;
    side->addWidget(gap);
    side->addWidget(stream);
    auto *top = new QHBoxLayout;
    top->addWidget(track, 1);
    top->addLayout(side);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdPrevious);
    buttons->addWidget(cmdNext);
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 0);
    layout->addLayout(top);
    layout->addWidget(album);
    layout->addLayout(buttons);
    layout->addWidget(statusBar);

    const auto on = [this](QPushButton *b, const char *procedure, void (frmTrackProperties::*handler)()) {
        connect(b, &QPushButton::clicked, this,
                [=, this] { run(procedure, [=, this] { (this->*handler)(); }); });
    };
    on(cmdNext, "cmdNext_Click", &frmTrackProperties::cmdNext_Click);
    on(cmdPrevious, "cmdPrevious_Click", &frmTrackProperties::cmdPrevious_Click);
    on(cmdOK, "cmdOK_Click", &frmTrackProperties::cmdOK_Click);
    on(cmdReset, "cmdReset_Click", &frmTrackProperties::cmdReset_Click);
    on(cmdFill, "cmdFill_Click", &frmTrackProperties::cmdFill_Click);
    on(cmdGetAlbum, "cmdGetAlbum_Click", &frmTrackProperties::cmdGetAlbum_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void frmTrackProperties::run(const char *procedure, const std::function<void()> &handler) {
    if (host_.guard)
        host_.guard(procedure, handler);
    else
        handler();
}

TrackFields frmTrackProperties::fields() const {
    TrackFields f{s(txtPause->text()),
                  s(txtStartMS->text()),
                  s(txtFinishMS->text()),
                  s(txtTrackTitle->text()),
                  s(txtTrackArtist->text()),
                  s(txtTrackISRC->text()),
                  {}};
    const QRadioButton *options[] = {optSilence, optPostgap, optPregap};
    for (std::size_t i = 0; i < std::size(options); ++i)
        if (options[i]->isChecked()) f.PregapType = kGapOptions[i].PregapType;
    return f;
}

AlbumFields frmTrackProperties::albumFields() const {
    return {s(txtAlbumTitle->text()), s(txtAlbumArtist->text()), s(txtAlbumCatalog->text())};
}

void frmTrackProperties::showFields(const TrackFields &f) {
    txtPause->setText(q(f.txtPause));
    txtStartMS->setText(q(f.txtStartMS));
    txtFinishMS->setText(q(f.txtFinishMS));
    txtTrackTitle->setText(q(f.txtTrackTitle));
    txtTrackArtist->setText(q(f.txtTrackArtist));
    txtTrackISRC->setText(q(f.txtTrackISRC));
    QRadioButton *options[] = {optSilence, optPostgap, optPregap};
    // None is chosen for a kind the options do not know.
    for (QRadioButton *o : options) o->setAutoExclusive(false);
    for (std::size_t i = 0; i < std::size(options); ++i)
        options[i]->setChecked(f.PregapType == kGapOptions[i].PregapType);
    for (QRadioButton *o : options) o->setAutoExclusive(true);
}

void frmTrackProperties::loadTrack(std::size_t row) {
    row_ = row;
    const AudioObjects &t = project_.track(row);
    showFields(saltmarrow::loadTrack(t));
    txtAlbumTitle->setText(q(project_.strAlbumTitle));
    txtAlbumArtist->setText(q(project_.strAlbumArtist));
    txtAlbumCatalog->setText(q(project_.strAlbumCatalog));
    lblFreqVal->setText(q(figure(t.Frequency)));
    lblChannelVal->setText(q(figure(t.Channels)));
    lblBitrateVal->setText(q(figure(t.Bitrate)));
    lblSamplesVal->setText(q(figure(t.Samples)));
    const std::vector<std::string> panels = statusPanels(t, row, host_);
    for (std::size_t i = 0; i < panels.size(); ++i) sbPanel[i]->setText(q(panels[i]));
    cmdPrevious->setEnabled(row > 0);
    cmdNext->setEnabled(row + 1 < project_.count());
}

bool frmTrackProperties::checkChanges() const {
    return saltmarrow::checkChanges(fields(), project_.track(row_));
}

void frmTrackProperties::step(bool next) {
    if (next ? row_ + 1 >= project_.count() : row_ == 0) return;
    if (checkChanges() && host_.msgBox(host_.text("msgSaveChanges"), mb::YesNo | mb::Question) == mb::Yes)
        saveTrack(project_, row_, fields(), albumFields());
    loadTrack(next ? row_ + 1 : row_ - 1);
}

void frmTrackProperties::cmdNext_Click() {
    step(true);
}

void frmTrackProperties::cmdPrevious_Click() {
    step(false);
}

void frmTrackProperties::cmdOK_Click() {
    saveTrack(project_, row_, fields(), albumFields());
    accept();
}

void frmTrackProperties::cmdReset_Click() {
    txtStartMS->setText(QStringLiteral("00:00:00"));
    txtFinishMS->setText(q(project_.track(row_).OrigLength));
}

void frmTrackProperties::cmdFill_Click() {
    if (host_.msgBox(host_.text("msgArtistFill"), mb::YesNo | mb::Question) != mb::Yes) return;
    const std::string artist = s(txtTrackArtist->text());
    for (auto &[key, track] : project_.colAllTracks) track.Artist = artist;
}

void frmTrackProperties::cmdGetAlbum_Click() {
    const AudioObjects &t = project_.track(row_);
    txtAlbumTitle->setText(q(t.Album));
    txtAlbumArtist->setText(q(t.Artist));
}

bool frmTrackProperties::eventFilter(QObject *watched, QEvent *event) {
    auto *edit = qobject_cast<QLineEdit *>(watched);
    if (!edit) return QDialog::eventFilter(watched, event);
    if (event->type() == QEvent::FocusOut) {
        std::string TrackFields::*field = edit == txtPause     ? &TrackFields::txtPause
                                          : edit == txtStartMS ? &TrackFields::txtStartMS
                                                               : &TrackFields::txtFinishMS;
        TrackFields f = fields();
        leaveTimeField(f, field, project_.track(row_));
        txtPause->setText(q(f.txtPause));
        txtStartMS->setText(q(f.txtStartMS));
        txtFinishMS->setText(q(f.txtFinishMS));
        return false;
    }
    if (event->type() != QEvent::KeyPress) return false;
    auto *key = static_cast<QKeyEvent *>(event);
    const auto caret =
        static_cast<std::size_t>(edit->hasSelectedText() ? edit->selectionStart() : edit->cursorPosition());
    const std::size_t size = static_cast<std::size_t>(edit->text().size());
    if (key->key() == Qt::Key_Left || key->key() == Qt::Key_Right) {
        edit->setCursorPosition(
            static_cast<int>(timeCaret(caret, key->key() == Qt::Key_Left ? -1 : 1, size)));
        return true;
    }
    if (key->key() == Qt::Key_Home) {
        edit->setCursorPosition(0);
        return true;
    }
    // Keys without text (Tab, Enter, the function keys) and the editing keys
    // (copy, paste, backspace) are the field's own.
    const QString text = key->text();
    if (text.size() != 1 || key->modifiers() & Qt::ControlModifier) return false;
    const char c = static_cast<char>(text.at(0).unicode() < 128 ? text.at(0).unicode() : 0);
    if (c == 3 || c == 22 || c == 8) return false;
    if (const std::optional<TimeEdit> typed = timeKey(s(edit->text()), caret, c)) {
        edit->setText(q(typed->text));
        edit->setCursorPosition(static_cast<int>(typed->caret));
    }
    return true;
}

}  // namespace saltmarrow
