#include "devices/DeviceHost.h"

#include "platform/CommandLine.h"
#include "platform/CurrentDriveLayer.h"

namespace saltmarrow {

const platform::DriveLayer &DeviceHost::driveLayer() const {
    return layer != nullptr ? *layer : platform::driveLayer();
}

std::string DeviceHost::text(std::string_view key) const {
    return message ? message(key) : std::string(key);
}

Mode DeviceHost::mode() const {
    return currentMode ? currentMode() : Mode::None;
}

void DeviceHost::setMode(Mode mode) const {
    if (ChangeCurrentMode) ChangeCurrentMode(mode);
}

void DeviceHost::status(const std::string &text) const {
    if (showStatus) showStatus(text);
}

void DeviceHost::events() const {
    if (letEventsRun) letEventsRun();
}

bool DeviceHost::splash() const {
    return splashVisible && splashVisible();
}

ToolRun DeviceHost::execute(const std::string &arguments) const {
    return executeTool(cdrdao, arguments);
}

ToolRun DeviceHost::executeTool(const std::string &tool, const std::string &arguments) const {
    if (!run) return {};
    return run(platform::quoteArgument(tool) + arguments);
}

}  // namespace saltmarrow
