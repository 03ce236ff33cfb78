#include "platform/CurrentDriveLayer.h"

#include "platform/LinuxDriveLayer.h"

namespace saltmarrow::platform {

namespace {
const DriveLayer *g_chosen = nullptr;
}  // namespace

const DriveLayer &driveLayer() {
    if (g_chosen != nullptr) return *g_chosen;
    static const LinuxDriveLayer layer;
    return layer;
}

void setDriveLayer(const DriveLayer *layer) {
    g_chosen = layer;
}

}  // namespace saltmarrow::platform
