#include "platform/DriveLayer.h"

namespace saltmarrow::platform {

namespace {

const DriveLayer *g_chosen = nullptr;

}  // namespace

const DriveLayer &driveLayer() {
    if (g_chosen != nullptr) return *g_chosen;
#ifdef _WIN32
    static const WindowsDriveLayer layer;
#else
    static const LinuxDriveLayer layer;
#endif
    return layer;
}

void setDriveLayer(const DriveLayer *layer) {
    g_chosen = layer;
}

}  // namespace saltmarrow::platform
