#ifndef SALTMARROW_DEVICES_DEVICEHOST_H
#define SALTMARROW_DEVICES_DEVICEHOST_H

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "devices/DeviceInfo.h"
#include "exec/Mode.h"

namespace saltmarrow {

namespace platform {
class Dialogs;
class DeviceForms;
class DriveLayer;
}  // namespace platform

// What one run of a tool gave: commandExecute's result and commandOutput.
struct ToolRun {
    bool ok = false;
    std::string output;
};
using RunCommand = std::function<ToolRun(const std::string &commandLine)>;

// The main form's device state.
struct DeviceState {
    DeviceTable devices;
    short availableInterfaces = 0;  // 1 ASPI, 2 SPTI: the layers whose scan gave devices
    std::string aspiScanOutput;     // last successful scan of each layer, without its first character
    std::string sptiScanOutput;
    int chkUseSPTI = 0;
    bool isNT = true;
    short driveRetries = 0;
    std::string lastSpeeds;
};

// cmbReaderDevice and cmbWriterDevice.
struct DeviceLists {
    std::vector<std::string> reader;
    int readerIndex = -1;
    std::vector<std::string> writer;
    int writerIndex = -1;

    std::string readerText() const { return readerIndex >= 0 ? reader.at(readerIndex) : std::string(); }
    std::string writerText() const { return writerIndex >= 0 ? writer.at(writerIndex) : std::string(); }
};

// The main form as the device procedures see it. Every hook may be left
// empty where a caller has nothing to offer (a test, a form not yet built).
struct DeviceHost {
    RunCommand run;             // commandExecute with its commandOutput
    std::string cdrdao;         // path of the tool
    std::string mediaInfoTool;  // dvd+rw-mediainfo, where the platform asks it which DVD is in a drive
    const platform::DriveLayer *layer = nullptr;               // null: the platform's own
    platform::Dialogs *dialogs = nullptr;                      // MsgBoxOverMe
    std::function<std::string(std::string_view key)> message;  // the message table
    std::function<Mode()> currentMode;
    std::function<void(Mode mode)> ChangeCurrentMode;
    std::function<void(const std::string &text)> showStatus;  // txtStatus
    std::function<std::string()> logText;                     // frmLog.txtOutputs
    std::function<void(const std::string &text)> setLogText;
    std::function<void()> letEventsRun;
    std::function<void(int ms)> sleepMs;  // asked only for a short slice: the window is frozen meanwhile
    // The start-up window, while it is on screen.
    std::function<bool()> splashVisible;
    std::function<void(const std::string &text)> splashStatus;
    std::function<void(int max, int value)> splashProgress;
    std::function<void()> splashStep;  // one more on its bar, while below the maximum
    // What the status refresh asks of the form.
    std::function<bool()> fileMenuOpen;         // the user is busy in the file menu
    std::function<bool()> deviceSettingsShown;  // the settings area is open
    std::function<bool()> deviceInfoShown;      // frmDeviceInfo is on screen
    std::function<void()> refreshDeviceInfo;    // frmDeviceInfo.MediaInfo for the writer

    const platform::DriveLayer &driveLayer() const;
    std::string text(std::string_view key) const;
    Mode mode() const;
    void setMode(Mode mode) const;
    void status(const std::string &text) const;
    void events() const;
    bool splash() const;
    ToolRun execute(const std::string &arguments) const;  // "<cdrdao>" + arguments
    ToolRun executeTool(const std::string &tool, const std::string &arguments) const;
};

}  // namespace saltmarrow

#endif
