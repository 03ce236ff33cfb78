#include "devices/Discovery.h"

#include "devices/DriveQueries.h"
#include "platform/CommandLine.h"
#include "platform/Dialogs.h"
#include "platform/DriveLayer.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

using namespace vb;

namespace {

constexpr std::string_view kDriverPhrase = "Driver found in driver table: ";
constexpr std::string_view kRawMark = " (Raw Driver Recommended)";

bool useSPTI(const DeviceState &state) {
    return state.chkUseSPTI == 1;
}

}  // namespace

bool scanbus(DeviceState &state, const DeviceHost &host) {
    const platform::DriveLayer &layer = host.driveLayer();
    const Mode previousMode = host.mode();
    host.setMode(Mode::HideMe);
    if (host.splash() && host.splashStatus) host.splashStatus(host.text("msgScanningForDevices"));

    const ToolRun run = host.execute(layer.scanArguments());
    state.aspiScanOutput = Mid(run.output, 2);

    // A scan that cannot list drives ends here without restoring the mode:
    // callers rely on the status text alone.
    if (auto key = layer.scanProblem(run.output)) {
        host.status(host.text(*key));
        return false;
    }
    // One scan lists every drive; its records take the first layer's fields.
    state.availableInterfaces = 1;
    for (const std::string &line : layer.deviceLines(run.output)) {
        const platform::ScannedDrive drive = layer.parseScanLine(line);
        DeviceInfo info;
        info.DeviceName = drive.deviceName;
        info.Firmware = drive.firmware;
        info.ASPIDeviceID = drive.address;
        info.ASPIFullName = drive.fullName;
        state.devices.Add(std::to_string(state.devices.Count() + 1), std::move(info));
    }
    if (host.splash() && host.splashProgress)
        host.splashProgress(static_cast<int>(state.devices.Count()) + 1, 1);
    host.setMode(previousMode);
    return !state.devices.empty();
}

DriverEntry parseDriverLookup(std::string_view output) {
    const std::size_t at = InStr(output, kDriverPhrase);
    if (at != 0) {
        const std::string entry = Replace(Mid(output, at + kDriverPhrase.size()), "\r\n", "");
        if (InStr(entry, ":") != 0) {
            const std::vector<std::string> pieces = Split(entry, ":");
            return {pieces[0], Mid(pieces[1], 3)};
        }
    }
    return {"generic-mmc", "0"};
}

std::string markRawDriver(std::string logText, std::string_view deviceName) {
    std::string text = std::move(logText) + "\r\n";
    const std::size_t name = InStr(text, deviceName);
    const std::size_t lineEnd = name != 0 ? InStr(name, text, "\r") : 0;
    // A bitwise AND of the two positions, not a logical one: some drives go
    // unmarked by it, and that is how the log has always looked.
    if ((name & lineEnd) != 0) {
        const std::string stretch = Mid(text, name, lineEnd - name);
        text = Replace(text, stretch + "\r", stretch + std::string(kRawMark) + "\r");
    }
    return Left(text, text.size() - 2);
}

void getDrivers(DeviceState &state, const DeviceHost &host) {
    const platform::DriveLayer &layer = host.driveLayer();
    const Mode previousMode = host.mode();
    host.setMode(Mode::HideMe);
    if (host.splash() && host.splashStatus) host.splashStatus(host.text("msgConfiguringDevices"));
    for (std::size_t i = 0; i < state.devices.Count(); ++i) {
        DeviceInfo &device = state.devices.item(i);
        if (device.Driver.empty()) {
            const ToolRun run = host.execute(
                " dt-lookup --device " +
                platform::quoteArgument(layer.cdrdaoDevice(deviceID(state, device), useSPTI(state), false),
                                        platform::Quoting::WhenNeeded));
            const DriverEntry entry = parseDriverLookup(run.output);
            device.Driver = entry.Driver;
            device.DriverOptions = entry.DriverOptions;
        }
        if (device.Driver == "generic-mmc-raw" && host.logText && host.setLogText)
            host.setLogText(markRawDriver(host.logText(), device.DeviceName));
        updateDriveInfo(state, host, static_cast<short>(i), false, false);
    }
    host.setMode(previousMode);
}

short getDeviceIndex(const DeviceState &state, std::string_view address, const platform::DeviceForms &layer) {
    short index = 0;
    const std::optional<std::string> wanted = layer.wellFormedAddress(address);
    if (!wanted) return index;
    for (std::size_t i = 0; i < state.devices.Count(); ++i)  // the last match wins
        if (deviceID(state, state.devices.item(i)) == *wanted) index = static_cast<short>(i);
    return index;
}

const std::string &fullName(const DeviceState &state, const DeviceInfo &device) {
    return useSPTI(state) ? device.SPTIFullName : device.ASPIFullName;
}

const std::string &deviceID(const DeviceState &state, const DeviceInfo &device) {
    return useSPTI(state) ? device.SPTIDeviceID : device.ASPIDeviceID;
}

void fillDeviceLists(const DeviceState &state, DeviceLists &lists) {
    const int readerIndex = lists.readerIndex;
    const int writerIndex = lists.writerIndex;
    lists.reader.clear();
    lists.writer.clear();
    lists.readerIndex = lists.writerIndex = -1;
    for (const DeviceInfo &device : state.devices.Items())
        if (!fullName(state, device).empty()) lists.reader.push_back(fullName(state, device));
    if (!lists.reader.empty())
        for (const DeviceInfo &device : state.devices.Items())
            if (device.isWriter) lists.writer.push_back(fullName(state, device));
    // An index the new list cannot hold is dropped, as its error would be.
    if (readerIndex >= 0 && readerIndex < static_cast<int>(lists.reader.size()))
        lists.readerIndex = readerIndex;
    if (writerIndex >= 0 && writerIndex < static_cast<int>(lists.writer.size()))
        lists.writerIndex = writerIndex;
    if (!lists.reader.empty() && lists.readerIndex < 0) lists.readerIndex = 0;
    if (!lists.writer.empty() && lists.writerIndex < 0) lists.writerIndex = 0;
}

void chkUseSPTI_Click(DeviceState &state, const DeviceHost &host, bool formLoaded, DeviceLists &lists) {
    if (!formLoaded) return;
    if (state.chkUseSPTI == 1 && !state.isNT) {
        if (host.dialogs) host.dialogs->MsgBoxOverMe(host.text("msgNoSPTI"), platform::mb::Information, "");
        state.chkUseSPTI = 0;
        return;
    }
    if (!state.isNT) return;
    if (host.setLogText)
        host.setLogText(Mid(useSPTI(state) ? state.sptiScanOutput : state.aspiScanOutput, 2));
    fillDeviceLists(state, lists);
}

void cmbWriterDevice_Click(DeviceState &state, WritePanel &panel, OptionsMemory &memory,
                           const platform::DeviceForms &layer, std::string &statusPanel2) {
    if (panel.cmbWriterDevice.empty()) return;
    const short index = getDeviceIndex(state, panel.cmbWriterDevice, layer);
    DeviceInfo *writer = state.devices.empty() ? nullptr : &state.devices.item(index);
    combineWriteOptions(true, panel, writer, memory);
    statusPanel2 = Left(panel.cmbWriterDevice, 35);
    panel.cmbSpeedItems.clear();
    panel.cmbSpeedIndex = -1;
    panel.cmbSpeed.clear();
    if (writer == nullptr) return;
    panel.cmbSpeedItems = Split(writer->WriteSpeeds, ",");
    // From here errors are ignored: an empty list takes no index, and the
    // saved text is taken only if the list holds it.
    if (panel.cmbSpeedItems.empty()) return;
    panel.cmbSpeedIndex = 0;
    panel.cmbSpeed = panel.cmbSpeedItems[0];
    for (std::size_t i = 0; i < panel.cmbSpeedItems.size(); ++i)
        if (panel.cmbSpeedItems[i] == memory.savedSpeedText) {
            panel.cmbSpeedIndex = static_cast<int>(i);
            panel.cmbSpeed = panel.cmbSpeedItems[i];
            break;
        }
}

void startupScanDevices(DeviceState &state, const DeviceHost &host, bool cdrdaoExists, DeviceLists &lists) {
    if (!state.isNT) state.chkUseSPTI = 0;
    if (cdrdaoExists) {
        if (scanbus(state, host)) {
            state.chkUseSPTI = 0;  // one scan, one layer
            lists.reader.clear();
            for (const DeviceInfo &device : state.devices.Items())
                lists.reader.push_back(fullName(state, device));
        }
    } else {
        host.status(host.text("msgNoCdrdao"));
    }
    if (host.setLogText) host.setLogText(Mid(state.aspiScanOutput, 2));
    if (!lists.reader.empty()) lists.readerIndex = 0;
}

void startupConfigureDevices(DeviceState &state, const DeviceHost &host, DeviceLists &lists,
                             const std::string &writerKey) {
    if (lists.reader.empty()) return;
    getDrivers(state, host);
    lists.writer.clear();
    lists.writerIndex = -1;
    for (const DeviceInfo &device : state.devices.Items())
        if (device.isWriter) lists.writer.push_back(fullName(state, device));
    if (!lists.writer.empty()) lists.writerIndex = 0;
    if (const DeviceInfo *chosen = state.devices.find(writerKey)) {
        const platform::DriveLayer &layer = host.driveLayer();
        for (std::size_t i = 0; i < lists.writer.size(); ++i)
            if (layer.addressOf(lists.writer[i]) == deviceID(state, *chosen))
                lists.writerIndex = static_cast<int>(i);
    }
}

}  // namespace saltmarrow
