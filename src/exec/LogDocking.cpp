#include "exec/LogDocking.h"

namespace saltmarrow {

DockMove mainWindowMoved(const WindowRect &main, bool logDocked) {
    DockMove m;
    m.docked = logDocked;
    if (!logDocked) return m;
    m.move = true;
    m.top = main.top + main.height;
    m.left = main.left;
    return m;
}

DockMove logWindowMoved(const WindowRect &main, int logTop, int logLeft, bool logDocked) {
    DockMove m;
    const int edge = main.top + main.height;
    const bool near = logTop > edge - 300 && logTop < edge + 300 && logLeft > main.left - 500 &&
                      logLeft < main.left + 500;
    if (!near) {
        m.docked = false;
        return m;
    }
    m.docked = true;
    if (!logDocked) {
        m.move = true;
        m.top = edge;
        m.left = main.left;
        m.endDrag = true;
    }
    return m;
}

}  // namespace saltmarrow
