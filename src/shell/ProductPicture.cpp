#include "shell/ProductPicture.h"

#include <QPainter>
#include <QRadialGradient>

namespace saltmarrow {

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

QIcon productIcon() {
    QIcon icon;
    for (int s : {16, 24, 32, 48, 64}) icon.addPixmap(discPicture(s));
    return icon;
}

}  // namespace saltmarrow
