#include "devices/DriveQueries.h"

#include <algorithm>

#include "devices/Discovery.h"
#include "devices/KernelDriveInfo.h"
#include "platform/CommandLine.h"
#include "platform/Dialogs.h"
#include "platform/DriveLayer.h"
#include "support/RuntimeError.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

using namespace vb;

namespace {

constexpr std::string_view kCrLf = "\r\n";

// Speeds a drive below its top speed is offered, fastest first.
constexpr int kSpeedSteps[] = {52, 48, 40, 32, 24, 20, 16, 12, 10, 8, 6, 4, 2, 1};

// The text from length characters behind the key found at at, up to the next
// until. A key that is missing (at = 0) cuts wherever the text leads; a
// length that comes out negative is the run-time error the cut would raise.
std::string cutBehind(std::string_view output, std::size_t at, std::size_t length, std::string_view until) {
    const std::size_t from = at + length;
    const std::size_t to = InStr(from, output, until);
    if (to < from) raiseError(err::InvalidProcedureCall);
    return Mid(output, from, to - from);
}

// The text between the positions open and close (exclusive).
std::string between(std::string_view output, std::size_t open, std::size_t close) {
    if (close < open + 1) raiseError(err::InvalidProcedureCall);
    return Mid(output, open + 1, close - open - 1);
}

// The block count of a capacity line: "... (359849 blocks, 702/...)".
long capacityBlocks(std::string_view output, std::string_view label) {
    const std::size_t line = InStr(output, label);
    const std::size_t open = InStr(line, output, "(");
    const std::size_t close = InStr(open, output, " blocks, ");
    return CLng(between(output, open, close));
}

// The pause before a drive is asked again: the window is pumped at least every
// kPumpInterval milliseconds while it lasts, so it never freezes for longer.
constexpr int kPumpInterval = 10;
void pauseWithEvents(const DeviceHost &host, int ms) {
    for (int left = ms; left > 0; left -= kPumpInterval) {
        host.events();
        if (host.sleepMs) host.sleepMs(std::min(left, kPumpInterval));
    }
    host.events();
}

// The drive query where the system tells the features and cdrdao only the
// speeds: no retries, since no line is awaited.
void updateKernelDriveInfo(DeviceState &state, const DeviceHost &host, DeviceInfo &device, bool skipNoMedia) {
    const platform::DriveLayer &layer = host.driveLayer();
    const std::string address = deviceID(state, device);
    const ToolRun run = host.execute(
        " drive-info --device " +
        platform::quoteArgument(layer.cdrdaoDevice(address, false, false), platform::Quoting::WhenNeeded) +
        " --driver " + device.Driver);
    const platform::DriveCapabilities caps =
        layer.capabilities(address).value_or(guessedCapabilities(run.output));
    const std::string media = queryMedium(host, device, address, caps);
    state.driveRetries = 0;
    if ((media == "n/a" || media.empty()) && skipNoMedia) return;
    readKernelDriveInfo(device, caps, run.output, media);
}

}  // namespace

std::string speedLadder(std::string_view topSpeed) {
    if (topSpeed == "0") return {};
    const double top = CDbl(topSpeed);
    std::string list = std::string(topSpeed) + "x";
    for (int step : kSpeedSteps)
        if (top > step) list += "," + std::to_string(step) + "x";
    return list;
}

std::string reportedSpeeds(std::string_view speedsText) {
    std::string list;
    for (const std::string &item : Split(Replace(speedsText, "x", ""), " ")) {
        if (InStr(item, "-") != 0) list.clear();  // a range: the drive does not say its steps
        // A comparison of texts, not of numbers: "10" sorts below "4x,".
        // Drives that list their speeds in rising order keep the slower part
        // of the list only; kept as it is, the speed menus of saved settings
        // depend on it.
        if (!(item < list)) list += item + "x,";
    }
    if (!list.empty() && list.back() == ',') list.pop_back();
    if (list == "0x") list.clear();
    return list;
}

void readDriveInfo(DeviceInfo &device, std::string_view output, const std::string &media) {
    device.MediaInserted = media != "n/a" && !media.empty();
    if (device.MediaInserted) device.LastMediaType = media;  // an emptied drive keeps its last type
    device.Firmware = Trim(cutBehind(output, InStr(output, "Rev: "), 5, kCrLf));
    device.ReadFeatures = Trim(cutBehind(output, InStr(output, "Reads   : "), 10, kCrLf)) + " ";
    device.WriteFeatures = Trim(cutBehind(output, InStr(output, "Writes  : "), 10, kCrLf)) + " ";
    device.OtherFeatures = Trim(cutBehind(output, InStr(output, "Features: "), 10, kCrLf)) + " ";
    device.BufferSize = Trim(cutBehind(output, InStr(output, "Buffer Size: "), 13, " kB"));
    device.BufferProtection = InStr(output, "Buffer Underrun Protection: yes") != 0;
    const bool maxOnly = InStr(output, "Available Write Speeds: MAX") != 0;

    std::string ladder;
    if (const std::size_t at = InStr(output, "Maximum Writing Speed : "); at != 0 && !maxOnly) {
        const std::size_t open = InStr(at, output, "(");
        const std::size_t close = InStr(open, output, "x)");
        ladder = speedLadder(Trim(between(output, open, close)));
    }
    std::string reported;
    if (const std::size_t at = InStr(output, "Available Write Speeds: "); at != 0 && !maxOnly) {
        const std::size_t end = InStr(at, output, kCrLf);
        const std::string text = end != 0 ? cutBehind(output, at, 24, kCrLf) : Mid(output, at + 24);
        reported = reportedSpeeds(Trim(text));
    }
    device.WriteSpeeds = maxOnly ? "Max" : (!reported.empty() ? reported : ladder);
    device.isWriter = !device.WriteSpeeds.empty();
    device.isWriterKnown = true;
}

void updateDriveInfo(DeviceState &state, const DeviceHost &host, short index, bool skipNoMedia, bool force) {
    host.events();
    const Mode previousMode = host.mode();
    host.setMode(Mode::HideMe);
    DeviceInfo &device = state.devices.item(static_cast<std::size_t>(index));
    const bool ask = force || !(device.isWriterKnown && !device.isWriter);
    if (ask && !host.driveLayer().driveInfoReportsAll()) {
        updateKernelDriveInfo(state, host, device, skipNoMedia);
    } else if (ask) {
        const platform::DriveLayer &layer = host.driveLayer();
        const ToolRun run = host.execute(
            " drive-info --device " +
            platform::quoteArgument(layer.cdrdaoDevice(deviceID(state, device), state.chkUseSPTI == 1, false),
                                    platform::Quoting::WhenNeeded) +
            " --driver " + device.Driver);
        const std::size_t at = InStr(run.output, "Inserted Media:");
        if (at == 0 && state.driveRetries < 3) {
            ++state.driveRetries;
            pauseWithEvents(host, 250);
            updateDriveInfo(state, host, index, skipNoMedia, force);
            host.setMode(previousMode);
            return;
        }
        state.driveRetries = 0;
        const std::string media = at != 0 ? cutBehind(run.output, at, 16, kCrLf) : std::string();
        if (!((media == "n/a" || media.empty()) && skipNoMedia)) readDriveInfo(device, run.output, media);
    }
    if (host.splash() && host.splashStep) host.splashStep();
    host.setMode(previousMode);
}

void updateMediaInfo(DeviceState &state, const DeviceHost &host, WritePanel &panel, OptionsMemory &memory,
                     std::string &statusPanel2, bool autoRefresh, bool refreshList, bool showInfo) {
    (void)refreshList;  // callers pass it; the refresh is the same either way
    if (!showInfo) {
        if (host.fileMenuOpen && host.fileMenuOpen()) return;
        if (!autoRefresh && host.deviceSettingsShown && !host.deviceSettingsShown()) return;
    }
    const platform::DriveLayer &layer = host.driveLayer();
    const short writer = getDeviceIndex(state, panel.cmbWriterDevice, layer);
    if (!state.devices.empty()) state.lastSpeeds = state.devices.item(writer).WriteSpeeds;
    for (std::size_t i = 0; i < state.devices.Count(); ++i) {
        host.events();
        if (state.devices.item(i).isWriter) updateDriveInfo(state, host, static_cast<short>(i), false, false);
    }
    const std::string keptSpeed = panel.cmbSpeed;
    cmbWriterDevice_Click(state, panel, memory, layer, statusPanel2);
    if (!state.devices.empty() && !panel.cmbSpeedItems.empty()) {
        const std::string &speeds = state.devices.item(writer).WriteSpeeds;
        if (state.lastSpeeds.empty() || state.lastSpeeds == speeds) {
            // The kept text goes back if the list still holds it.
            for (std::size_t i = 0; i < panel.cmbSpeedItems.size(); ++i)
                if (panel.cmbSpeedItems[i] == keptSpeed) {
                    panel.cmbSpeedIndex = static_cast<int>(i);
                    panel.cmbSpeed = keptSpeed;
                }
        } else {
            panel.cmbSpeedIndex = 0;
            panel.cmbSpeed = panel.cmbSpeedItems[0];
        }
    }
    if (host.deviceInfoShown && host.deviceInfoShown() && host.refreshDeviceInfo) host.refreshDeviceInfo();
}

std::string discStatus(const DeviceHost &host, const DiscStatusContext &context) {
    const Mode previousMode = host.mode();
    host.setMode(Mode::DiscInfo);
    for (;;) {
        host.status(host.text("msgCheckingMedia"));
        char status = 'C';
        if (context.writer.empty()) {
            if (host.dialogs)
                host.dialogs->MsgBoxOverMe(host.text("msgSelectWriter"), platform::mb::Exclamation, "");
            return {};
        }
        const ToolRun run = host.execute(" disk-info" + context.deviceFragment);
        if (!run.ok) {
            host.status(host.text("msgOperationCancelled"));
            return std::string("X") + '\0' + "0";
        }
        const std::string &output = run.output;
        // The tool prints this once it has read a disc at all.
        if (InStr(output, "That data below may not reflect") == 0) {
            host.status(host.text("msgNoWritableMedia"));
            return std::string("0") + '\0' + "0";
        }
        long blocks = 0;
        if (InStr(output, "CD-R empty           : yes") != 0) {
            status = 'E';
            blocks = capacityBlocks(output, "Total Capacity       :");
        }
        if (InStr(output, "Appendable           : yes") != 0) {
            status = 'A';
            blocks = capacityBlocks(output, "Remaining Capacity   :");
        }
        const int rewritable = InStr(output, "CD-RW                : yes") != 0 ? 1 : 0;
        if (rewritable == 1 && status != 'E' && !(previousMode == Mode::DataCD && context.chkMulti)) {
            const bool eraseCancelled = context.offerErase ? context.offerErase() : true;
            if (!eraseCancelled) continue;  // read the erased disc again
        }
        host.setMode(previousMode);
        return std::string(1, status) + '\0' + std::to_string(blocks) + '\0' + std::to_string(rewritable);
    }
}

DiscStatusResult splitDiscStatus(std::string_view result) {
    DiscStatusResult fields;
    const std::vector<std::string> parts = Split(result, std::string_view("\0", 1));
    if (!parts.empty() && !parts[0].empty()) fields.status = parts[0][0];
    if (parts.size() > 1) fields.blocks = static_cast<long>(Val(parts[1]));
    if (parts.size() > 2) fields.rewritable = static_cast<int>(Val(parts[2]));
    return fields;
}

}  // namespace saltmarrow
