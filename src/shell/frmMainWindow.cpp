#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QEvent>
#include <QLabel>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QStyle>
#include <QSystemTrayIcon>
#include <QTimer>

#include "exec/LogDocking.h"
#include "exec/frmLog.h"
#include "shell/WindowPlacement.h"
#include "shell/frmMain.h"

// The main window as a window: its sizes and its place on the screen, the
// settings area folding away, the log docked below it, the tray.
namespace saltmarrow {

namespace {

constexpr int kTwipsPerPixel = 15;
// Never narrower than this, whatever the language makes of the captions.
constexpr int kMinimumWidth = 700;

WindowRect twips(const QRect &r) {
    return {r.left() * kTwipsPerPixel, r.top() * kTwipsPerPixel, r.width() * kTwipsPerPixel,
            r.height() * kTwipsPerPixel};
}

}  // namespace

// One width for both states, wide enough for the settings in the language
// in use, and the two heights the layout needs: the same however the state
// was reached, and whether the window is on screen yet or not.
void frmMain::fixSizes() {
    const bool open = settingsArea->isVisibleTo(this);
    const auto measure = [this](bool settingsShown) {
        settingsArea->setVisible(settingsShown);
        centralWidget()->layout()->invalidate();
        const QSize inside = centralWidget()->minimumSizeHint();
        return QSize(inside.width(),
                     menuBar()->sizeHint().height() + inside.height() + sbStatusBar->sizeHint().height());
    };
    const QSize expanded = measure(true);
    const QSize collapsed = measure(false);
    settingsArea->setVisible(open);
    setFixedWidth(std::max(kMinimumWidth, expanded.width()));
    collapsedHeight = collapsed.height() * kTwipsPerPixel;
    expandedHeight = expanded.height() * kTwipsPerPixel;
}

void frmMain::showEvent(QShowEvent *event) {
    QMainWindow::showEvent(event);
    if (!firstActivation_) return;
    firstActivation_ = false;
    keepOnScreen();
    placeLog();
    if (autoWritePending) {
        autoWritePending = false;
        QTimer::singleShot(0, this, [this] { run("Form_Activate", [this] { cmdWrite_Click(); }); });
    }
    applyOnTop();
}

// The window and the log below it on the screen: centred when first shown,
// otherwise where they are, moved only as far as the screen needs.
void frmMain::keepOnScreen() {
    const QScreen *screen = this->screen() ? this->screen() : QGuiApplication::primaryScreen();
    if (!screen) return;
    const QRect room = screen->availableGeometry();
    // Before the window manager has framed the window its frame is only known
    // by the style's title bar.
    const QRect frame = frameGeometry();
    const int titleBar = frame.height() > height() ? 0 : style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const int logHeight = mnuLog->isChecked() ? log->frameGeometry().height() + titleBar : 0;
    std::optional<Point> wanted;
    if (!firstActivation_ && isVisible()) wanted = Point{frame.left(), frame.top()};
    const Point at = placeMainForm({room.left(), room.top(), room.width(), room.height()}, frame.width(),
                                   frame.height() + titleBar, logHeight, wanted);
    if (at.x != frame.left() || at.y != frame.top()) move(at.x, at.y);
}

void frmMain::showSettings(bool shown) {
    mnuDeviceSettings->setChecked(shown);
    settingsArea->setVisible(shown);
    setFixedHeight((shown ? expandedHeight : collapsedHeight) / kTwipsPerPixel);
    QCoreApplication::processEvents();
    if (shown) {
        keepOnScreen();
        placeLog();
    }
    QCoreApplication::processEvents();
}

void frmMain::autoHideSettings() {
    if (mnuDeviceSettings->isChecked() && chkAutoHide->isChecked()) showSettings(false);
}

void frmMain::placeLog() {
    if (!formLoaded) return;
    if (mnuLog->isChecked()) {
        const QRect frame = frameGeometry();
        log->move(frame.left(), frame.top() + frame.height());
        log->resize(frame.width(), log->height());
        log->show();
        activateWindow();
    } else {
        log->hide();
    }
}

void frmMain::applyOnTop() {
    const bool top = mnuOnTop->isChecked();
    for (QWidget *w : {static_cast<QWidget *>(this), static_cast<QWidget *>(log)}) {
        if (w == log && (!mnuLog->isChecked() || isMinimized())) continue;
        if (w->windowFlags().testFlag(Qt::WindowStaysOnTopHint) == top) continue;
        const bool visible = w->isVisible();
        w->setWindowFlag(Qt::WindowStaysOnTopHint, top);
        if (visible) w->show();
    }
}

void frmMain::mnuRestore_Click() {
    if (cSysTray1) cSysTray1->hide();
    if (isMinimized()) showNormal();
    if (!isVisible()) show();
    keepOnScreen();
    raise();
    activateWindow();
}

bool frmMain::eventFilter(QObject *watched, QEvent *event) {
    // A click on the status bar opens or folds the settings, as the menu does.
    if (event->type() == QEvent::MouseButtonRelease && qobject_cast<QLabel *>(watched) &&
        watched->parent() == sbStatusBar && mnuSettings->menuAction()->isEnabled()) {
        mnuDeviceSettings->trigger();
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

void frmMain::logMoved() {
    if (!formLoaded || !log->isVisible()) return;
    const QRect l = log->frameGeometry();
    DockMove m = logWindowMoved(twips(frameGeometry()), l.top() * kTwipsPerPixel, l.left() * kTwipsPerPixel,
                                logDocked_);
    logDocked_ = m.docked;
    if (!m.move) return;
    log->move(m.left / kTwipsPerPixel, m.top / kTwipsPerPixel);
    if (m.endDrag) {
        log->setEnabled(false);
        log->setEnabled(true);
    }
}

void frmMain::moveEvent(QMoveEvent *event) {
    QMainWindow::moveEvent(event);
    if (!formLoaded) return;
    DockMove m = mainWindowMoved(twips(frameGeometry()), logDocked_);
    if (m.move) log->move(m.left / kTwipsPerPixel, m.top / kTwipsPerPixel);
}

void frmMain::resizeEvent(QResizeEvent *event) {
    QMainWindow::resizeEvent(event);
    if (!formLoaded || isMinimized()) return;
    if (!(chkAutoHide->isChecked() && mnuDeviceSettings->isChecked())) placeLog();
}

void frmMain::changeEvent(QEvent *event) {
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange) return;
    if (isMinimized()) {
        log->hide();
        if (chkMinToTray->isChecked() && cSysTray1) {
            cSysTray1->show();
            QTimer::singleShot(0, this, &QWidget::hide);
        }
    } else if (!(chkAutoHide->isChecked() && mnuDeviceSettings->isChecked())) {
        placeLog();
    }
}

}  // namespace saltmarrow
