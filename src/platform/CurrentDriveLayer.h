#ifndef SALTMARROW_PLATFORM_CURRENTDRIVELAYER_H
#define SALTMARROW_PLATFORM_CURRENTDRIVELAYER_H

#include "platform/DriveLayer.h"

namespace saltmarrow::platform {

// The layer the program runs on: the system's own unless another was chosen
// (tests choose one that reads their own table of drives).
const DriveLayer &driveLayer();
// Chooses the layer; null goes back to the system's own.
void setDriveLayer(const DriveLayer *layer);

}  // namespace saltmarrow::platform

#endif
