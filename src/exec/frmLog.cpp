#include "exec/frmLog.h"

#include <QAction>
#include <QClipboard>
#include <QCloseEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QShortcut>
#include <QVBoxLayout>

#include "platform/Dialogs.h"

namespace saltmarrow {

frmLog::frmLog(platform::Dialogs &dialogs, QWidget *owner) : QWidget(owner, Qt::Tool), dialogs_(dialogs) {
    setObjectName("frmLog");
    setWindowTitle(QStringLiteral("  Command Log"));
    txtOutputs = new QPlainTextEdit(this);
    txtOutputs->setObjectName("txtOutputs");
    txtOutputs->setReadOnly(true);
    txtOutputs->setLineWrapMode(QPlainTextEdit::NoWrap);
    setLogFont(QStringLiteral("Courier New"), 9);
    txtOutputs->setContextMenuPolicy(Qt::CustomContextMenu);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(txtOutputs);

    mnuCommandLog = new QMenu(QStringLiteral("CommandLog[dis]"), this);
    mnuCommandLog->setObjectName("mnuCommandLog");
    mnuFont = mnuCommandLog->addAction(QStringLiteral("Change &Font"));
    mnuFont->setObjectName("mnuFont");
    mnuFont->setShortcut(QKeySequence(QStringLiteral("Ctrl+F")));
    mnuSep01 = mnuCommandLog->addSeparator();
    mnuSep01->setObjectName("mnuSep01");
    mnuCopyAll = mnuCommandLog->addAction(QStringLiteral("Copy &Log"));
    mnuCopyAll->setObjectName("mnuCopyAll");
    mnuCopyAll->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+C")));
    mnuCopy = mnuCommandLog->addAction(QStringLiteral("&Copy Selection"));
    mnuCopy->setObjectName("mnuCopy");
    mnuCopy->setShortcut(QKeySequence(QStringLiteral("Ctrl+C")));
    for (QAction *a : {mnuFont, mnuCopyAll, mnuCopy}) {
        a->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        addAction(a);
    }
    connect(mnuFont, &QAction::triggered, this, &frmLog::mnuFont_Click);
    connect(mnuCopyAll, &QAction::triggered, this, &frmLog::mnuCopyAll_Click);
    connect(mnuCopy, &QAction::triggered, this, &frmLog::mnuCopy_Click);
    connect(txtOutputs, &QWidget::customContextMenuRequested, this,
            [this](const QPoint &at) { mnuCommandLog->popup(txtOutputs->mapToGlobal(at)); });
    resize(520, 200);
}

void frmLog::appendLine(const QString &line) {
    // Appending keeps the view at the end without rebuilding the whole text.
    txtOutputs->appendPlainText(line);
    txtOutputs->moveCursor(QTextCursor::End);
}

void frmLog::clearLog() {
    txtOutputs->clear();
}

void frmLog::setLogFont(const QString &name, double size) {
    QFont f = txtOutputs->font();
    if (!name.isEmpty()) f.setFamily(name);
    if (size > 0) f.setPointSizeF(size);
    // The tools line up their columns with blanks: a font that is missing
    // must not fall back to a proportional one.
    if (!QFontInfo(f).fixedPitch()) {
        const double points = f.pointSizeF();
        f = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        // Some systems name a font for the purpose that does not keep to it.
        if (!QFontInfo(f).fixedPitch())
            for (const QString &family : QFontDatabase::families())
                if (QFontDatabase::isFixedPitch(family)) {
                    f = QFont(family);
                    break;
                }
        if (points > 0) f.setPointSizeF(points);
    }
    txtOutputs->setFont(f);
}

void frmLog::mnuFont_Click() {
    auto choice =
        dialogs_.chooseFont({txtOutputs->font().family().toStdString(), txtOutputs->font().pointSize()});
    if (!choice) return;
    QFont f(QString::fromStdString(choice->name), choice->size);
    f.setBold(false);
    f.setItalic(false);
    f.setUnderline(false);
    f.setStrikeOut(false);
    txtOutputs->setFont(f);
}

void frmLog::mnuCopyAll_Click() {
    QClipboard *clip = QGuiApplication::clipboard();
    clip->clear();
    clip->setText(txtOutputs->toPlainText());
}

void frmLog::mnuCopy_Click() {
    QClipboard *clip = QGuiApplication::clipboard();
    clip->clear();
    clip->setText(txtOutputs->textCursor().selectedText().replace(QChar::ParagraphSeparator, '\n'));
}

void frmLog::closeEvent(QCloseEvent *event) {
    if (closing_) {
        event->accept();
        return;
    }
    event->ignore();
    hide();
    if (onUserHide) onUserHide();
}

void frmLog::moveEvent(QMoveEvent *event) {
    QWidget::moveEvent(event);
    if (onMoved) onMoved();
}

}  // namespace saltmarrow
