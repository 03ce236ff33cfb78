#include "shell/frmStartUp.h"

#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include "shell/ProductPicture.h"

namespace saltmarrow {

frmStartUp::frmStartUp(QWidget *parent) : QWidget(parent, Qt::SplashScreen) {
    setObjectName("frmStartUp");
    imgProduct = new QLabel(this);
    imgProduct->setObjectName("imgProduct");
    imgProduct->setPixmap(discPicture(64));
    imgProduct->setAlignment(Qt::AlignCenter);
    auto *title = new QLabel(QStringLiteral("<b>saltmarrow</b>"), this);
    title->setAlignment(Qt::AlignCenter);
    lblStatus = new QLabel(this);
    lblStatus->setObjectName("lblStatus");
    lblStatus->setAlignment(Qt::AlignCenter);
    prgStatus = new QProgressBar(this);
    prgStatus->setObjectName("prgStatus");
    prgStatus->setRange(0, 4);
    prgStatus->setTextVisible(false);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(imgProduct);
    layout->addWidget(title);
    layout->addWidget(lblStatus);
    layout->addWidget(prgStatus);
    setFixedSize(300, 170);
}

}  // namespace saltmarrow
