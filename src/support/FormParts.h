#ifndef SALTMARROW_SUPPORT_FORMPARTS_H
#define SALTMARROW_SUPPORT_FORMPARTS_H

#include <QAbstractItemView>
#include <QAction>
#include <QMenu>
#include <QPushButton>
#include <QString>
#include <QTreeWidget>

namespace saltmarrow {

// Marks a control for enableControls, which greys the tagged ones while a
// job runs.
template <typename W>
W *tagged(W *widget) {
    widget->setProperty("tag", QStringLiteral("tagged"));
    return widget;
}

// A control bears its name in the forms (language files find it by name).
template <typename W>
W *named(W *widget, const char *name, bool isTagged) {
    widget->setObjectName(QString::fromLatin1(name));
    return isTagged ? tagged(widget) : widget;
}

inline QPushButton *namedButton(QWidget *parent, const char *name, const char *caption,
                                bool isTagged = true) {
    return named(new QPushButton(QString::fromUtf8(caption), parent), name, isTagged);
}

inline QAction *menuItem(QMenu *menu, const char *name, const char *caption, bool checkable = false) {
    QAction *action = menu->addAction(QString::fromUtf8(caption));
    action->setObjectName(QString::fromLatin1(name));
    action->setCheckable(checkable);
    return action;
}

// A list of tracks or files: flat rows, several of them selectable at once.
inline QTreeWidget *rowList(QWidget *parent, const char *name) {
    auto *list = named(new QTreeWidget(parent), name, true);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list->setSelectionBehavior(QAbstractItemView::SelectRows);
    return list;
}

}  // namespace saltmarrow

#endif
