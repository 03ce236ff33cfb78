#include "discops/frmEraseCD.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace saltmarrow {

frmEraseCD::frmEraseCD(bool &eraseCancelled, EraseCall discErase, QWidget *owner)
    : QDialog(owner), eraseCancelled_(eraseCancelled), discErase_(std::move(discErase)) {
    setObjectName(QStringLiteral("frmEraseCD"));
    setWindowTitle(QStringLiteral("Erase Disc"));

    lblErase =
        new QLabel(QStringLiteral("Everything on the rewritable disc in the writer will be lost."), this);
    lblErase->setObjectName(QStringLiteral("lblErase"));
    lblErase->setWordWrap(true);
    chkMinimal = new QCheckBox(QStringLiteral("&Minimal (fast, erases the table of contents only)"), this);
    chkMinimal->setObjectName(QStringLiteral("chkMinimal"));
    chkMinimal->setChecked(true);
    cmdErase = new QPushButton(QStringLiteral("&Erase"), this);
    cmdErase->setObjectName(QStringLiteral("cmdErase"));
    cmdErase->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("&Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdErase);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lblErase);
    layout->addWidget(chkMinimal);
    layout->addSpacing(6);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(cmdErase, &QPushButton::clicked, this, &frmEraseCD::cmdErase_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmEraseCD::cmdCancel_Click);
}

bool frmEraseCD::offerErase() {
    exec();
    return eraseCancelled_;
}

void frmEraseCD::cmdErase_Click() {
    const std::string mode = chkMinimal->isChecked() ? "minimal" : "full";
    // The dialog is gone before the erase starts; a modal caller goes on
    // once the erase has ended.
    QDialog::done(Accepted);
    if (discErase_) discErase_(mode);
}

void frmEraseCD::cmdCancel_Click() {
    eraseCancelled_ = true;
    QDialog::done(Rejected);
}

void frmEraseCD::reject() {
    cmdCancel_Click();
}

}  // namespace saltmarrow
