#include "shell/frmStartUp.h"

#include <QIcon>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace saltmarrow {

namespace {
QPixmap discPicture(int size) {
    QPixmap pm(size, size);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    QRadialGradient g(size / 2.0, size / 2.0, size / 2.0, size / 3.0, size / 3.0);
    g.setColorAt(0, QColor(235, 240, 250));
    g.setColorAt(0.6, QColor(170, 190, 220));
    g.setColorAt(1, QColor(120, 100, 160));
    p.setBrush(g);
    p.setPen(QPen(QColor(80, 80, 110), size / 40.0 + 0.5));
    p.drawEllipse(QRectF(1, 1, size - 2, size - 2));
    p.setBrush(QColor(250, 250, 250));
    p.drawEllipse(QRectF(size * 0.38, size * 0.38, size * 0.24, size * 0.24));
    p.setBrush(QColor(200, 90, 60));  // the salt-red centre
    p.drawEllipse(QRectF(size * 0.45, size * 0.45, size * 0.10, size * 0.10));
    return pm;
}
}  // namespace

QIcon productIcon() {
    QIcon icon;
    for (int s : {16, 24, 32, 48, 64}) icon.addPixmap(discPicture(s));
    return icon;
}

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

frmAbout::frmAbout(const QString &version, QWidget *parent) : QWidget(parent, Qt::Dialog) {
    setObjectName("frmAbout");
    setWindowTitle(tr("About saltmarrow"));
    setWindowModality(Qt::ApplicationModal);
    setAttribute(Qt::WA_DeleteOnClose);
    auto *picture = new QLabel(this);
    picture->setPixmap(discPicture(64));
    lblTitle = new QLabel(QStringLiteral("<b>saltmarrow</b>"), this);
    lblTitle->setObjectName("lblTitle");
    lblVersion = new QLabel(tr("Version %1").arg(version), this);
    lblVersion->setObjectName("lblVersion");
    lblPreRelease = new QLabel(this);
    lblPreRelease->setObjectName("lblPreRelease");
    lblPreRelease->hide();
    lblDescription = new QLabel(
        tr("Masters and writes CDs and DVDs with cdrdao, mkisofs, wodim and icedax.\n"
           "The tools do the writing; saltmarrow composes their command lines\n"
           "and reads what they print."),
        this);
    lblDescription->setObjectName("lblDescription");
    auto *ok = new QPushButton(tr("OK"), this);
    ok->setObjectName("cmdOK");
    connect(ok, &QPushButton::clicked, this, &QWidget::close);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(picture, 0, Qt::AlignCenter);
    layout->addWidget(lblTitle, 0, Qt::AlignCenter);
    layout->addWidget(lblVersion, 0, Qt::AlignCenter);
    layout->addWidget(lblPreRelease, 0, Qt::AlignCenter);
    layout->addWidget(lblDescription);
    layout->addWidget(ok, 0, Qt::AlignRight);
}

}  // namespace saltmarrow
