#ifndef SALTMARROW_SHELL_PRODUCTPICTURE_H
#define SALTMARROW_SHELL_PRODUCTPICTURE_H

#include <QIcon>
#include <QPixmap>

namespace saltmarrow {

// The product's picture, drawn: a disc, size pixels square.
QPixmap discPicture(int size);
// The program's icon in the usual sizes.
QIcon productIcon();

}  // namespace saltmarrow

#endif
