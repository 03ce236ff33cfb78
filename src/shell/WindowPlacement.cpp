#include "shell/WindowPlacement.h"

#include <algorithm>

namespace saltmarrow {

namespace {

// The start of a span of length inside [from, from + room), as near want as
// it can be; the span's start stays inside when it cannot fit.
int clampSpan(int want, int length, int from, int room) {
    return std::max(from, std::min(want, from + room - length));
}

}  // namespace

Point placeMainForm(const Area &screen, int width, int height, int logHeight, std::optional<Point> wanted) {
    const int groupHeight = height + logHeight;
    const Point want = wanted.value_or(
        Point{screen.left + (screen.width - width) / 2, screen.top + (screen.height - groupHeight) / 2});
    return {clampSpan(want.x, width, screen.left, screen.width),
            clampSpan(want.y, groupHeight, screen.top, screen.height)};
}

}  // namespace saltmarrow
