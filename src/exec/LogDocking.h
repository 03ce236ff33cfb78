#ifndef SALTMARROW_EXEC_LOGDOCKING_H
#define SALTMARROW_EXEC_LOGDOCKING_H

namespace saltmarrow {

// Window positions in twips (15 to a pixel).
struct WindowRect {
    int left = 0, top = 0, width = 0, height = 0;
};

struct DockMove {
    bool move = false;      // put the log window at top/left
    int top = 0, left = 0;
    bool docked = false;    // the new state of logDocked
    bool endDrag = false;   // disable and enable the log window at once
};

// The main form moved: a docked log follows its lower edge.
DockMove mainWindowMoved(const WindowRect &main, bool logDocked);

// The log window moved: within 300 twips of the main form's lower edge and
// 500 of its left edge it snaps to it; farther away it is free.
DockMove logWindowMoved(const WindowRect &main, int logTop, int logLeft, bool logDocked);

}  // namespace saltmarrow

#endif
