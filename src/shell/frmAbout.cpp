#include "shell/frmAbout.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "shell/ProductPicture.h"

namespace saltmarrow {

frmAbout::frmAbout(const QString &version, QWidget *parent) : QDialog(parent) {
    setObjectName("frmAbout");
    setWindowTitle(tr("About saltmarrow"));
    setModal(true);
    auto *picture = new QLabel(this);
    picture->setPixmap(discPicture(64));
    lblTitle = new QLabel(QStringLiteral("<b>saltmarrow</b>"), this);
    lblTitle->setObjectName("lblTitle");
    lblVersion = new QLabel(tr("Version %1").arg(version), this);
    lblVersion->setObjectName("lblVersion");
    lblPreRelease = new QLabel(this);
    lblPreRelease->setObjectName("lblPreRelease");
    lblPreRelease->hide();
    lblDescription = new QLabel(tr("Masters and writes CDs and DVDs with cdrdao, mkisofs, wodim and icedax.\n"
                                   "The tools do the writing; saltmarrow composes their command lines\n"
                                   "and reads what they print."),
                                this);
    lblDescription->setObjectName("lblDescription");
    cmdOK = new QPushButton(tr("OK"), this);
    cmdOK->setObjectName("cmdOK");
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(picture, 0, Qt::AlignCenter);
    layout->addWidget(lblTitle, 0, Qt::AlignCenter);
    layout->addWidget(lblVersion, 0, Qt::AlignCenter);
    layout->addWidget(lblPreRelease, 0, Qt::AlignCenter);
    layout->addWidget(lblDescription);
    layout->addWidget(cmdOK, 0, Qt::AlignRight);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

}  // namespace saltmarrow
