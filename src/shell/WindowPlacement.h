#ifndef SALTMARROW_SHELL_WINDOWPLACEMENT_H
#define SALTMARROW_SHELL_WINDOWPLACEMENT_H

#include <optional>

namespace saltmarrow {

// Screen areas and window frames in pixels.
struct Area {
    int left = 0, top = 0, width = 0, height = 0;
};
struct Point {
    int x = 0, y = 0;
};

// Where the main form's frame goes so that it and the log docked below it
// (logHeight 0 when hidden) lie on the screen: at wanted, moved no more than
// needed; centred on the screen when nothing is wanted. A group taller or
// wider than the screen keeps the main form's top left corner on it.
Point placeMainForm(const Area &screen, int width, int height, int logHeight, std::optional<Point> wanted);

}  // namespace saltmarrow

#endif
