#include "shell/frmLanguage.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "shell/LanguageFile.h"
#include "shell/LanguageForms.h"

namespace saltmarrow {

namespace {
constexpr int kTwipsPerPixel = 15;
constexpr int kBelowMainTop = 400 / kTwipsPerPixel;
}  // namespace

frmLanguage::frmLanguage(std::string appDir, const std::string &currentLanguage, MessageTable &messages,
                         platform::Dialogs &dialogs, QWidget *parent)
    : QDialog(parent), appDir_(std::move(appDir)), messages_(messages), dialogs_(dialogs) {
    setObjectName(QStringLiteral("frmLanguage"));
    setWindowTitle(QStringLiteral("Language"));

    listLanguage = new QListWidget(this);
    listLanguage->setObjectName(QStringLiteral("listLanguage"));
    cmdOK = new QPushButton(QStringLiteral("&OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("&Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(listLanguage);
    layout->addLayout(buttons);

    int current = 0;
    for (const std::string &name : availableLanguages(appDir_)) {
        if (name == currentLanguage) current = listLanguage->count();
        listLanguage->addItem(QString::fromStdString(name));
    }
    listLanguage->setCurrentRow(current);

    connect(cmdOK, &QPushButton::clicked, this, &frmLanguage::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmLanguage::cmdCancel_Click);
    connect(listLanguage, &QListWidget::itemDoubleClicked, this, &frmLanguage::cmdOK_Click);

    if (currentLanguage != kEnglish) applyLanguage(this, false, currentLanguage, messages_, appDir_);
}

void frmLanguage::cmdOK_Click() {
    QListWidgetItem *item = listLanguage->currentItem();
    if (!item) return;
    if (dialogs_.MsgBoxOverMe(messages_.text("msgConfirmQuit"),
                              platform::mb::Information | platform::mb::OKCancel, "") != platform::mb::OK) {
        reject();
        return;
    }
    chosen_ = item->text().toStdString();
    accept();
}

void frmLanguage::cmdCancel_Click() {
    reject();
}

std::optional<std::string> frmLanguage::choose(QWidget *mainForm) {
    if (mainForm) {
        adjustSize();
        const QRect main = mainForm->frameGeometry();
        move(main.x() + (main.width() - frameGeometry().width()) / 2, main.y() + kBelowMainTop);
    }
    exec();
    if (mainForm) {
        mainForm->raise();
        mainForm->activateWindow();
    }
    return chosen_;
}

}  // namespace saltmarrow
