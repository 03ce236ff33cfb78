#include "discops/DataWrite.h"

#include <cmath>
#include <cstdio>
#include <ctime>
#include <filesystem>

#include "devices/Discovery.h"
#include "devices/DriveQueries.h"
#include "devices/KernelDriveInfo.h"
#include "discops/SheetFile.h"
#include "platform/CommandLine.h"
#include "platform/Dialogs.h"
#include "platform/DriveLayer.h"
#include "support/mdlFunctions.h"

namespace saltmarrow::discops {

namespace mb = platform::mb;

namespace {

constexpr std::string_view kTotalExtents = "Total extents scheduled to be written = ";
// cdrdao refuses a track shorter than 4 seconds.
constexpr double kShortestTrack = 300;

// A single-precision number as the program has always printed one.
std::string singleText(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.7g", static_cast<double>(static_cast<float>(value)));
    return text;
}

std::string msf(long blocks) {
    char text[32];
    std::snprintf(text, sizeof text, "%02ld:%02ld:%02ld", blocks / 4500, blocks / 75 % 60, blocks % 75);
    return text;
}

std::string wholeMegabytes(double bytes) {
    return std::to_string(std::llround(bytes / 1024 / 1024));
}

// The job runs between a lock of the controls and their release, whichever
// way it ends.
struct Locked {
    const DataWriteHost &host;
    explicit Locked(const DataWriteHost &h) : host(h) {
        if (host.enableControls) host.enableControls(false);
    }
    ~Locked() {
        if (host.enableControls) host.enableControls(true);
    }
};

struct Job {
    const DataWriteClick &click;
    DeviceState &devices;
    const DeviceHost &deviceHost;
    ImageSlot &slot;
    const DataWriteHost &host;

    const DeviceInfo &writer() const {
        return devices.devices.item(static_cast<std::size_t>(
            getDeviceIndex(devices, click.panel.cmbWriterDevice, deviceHost.driveLayer())));
    }
    void box(const std::string &key, int style) const {
        if (deviceHost.dialogs) deviceHost.dialogs->MsgBoxOverMe(deviceHost.text(key), style, "");
    }
    void refuse(const std::string &key) const {
        box(key, mb::Exclamation);
        deviceHost.status(deviceHost.text("msgWriteCancelled"));
    }
    bool confirmed(double imageBytes, bool largeFile) const {
        if (!click.confirmWrite || !deviceHost.dialogs) return true;
        std::string text = vb::Replace(deviceHost.text("msgConfirmWrite"), "%1", wholeMegabytes(imageBytes));
        text = vb::Replace(text, "%2", wholeMegabytes(slot.discFreeBytes));
        if (largeFile) text += "\r\n\r\n" + deviceHost.text("msgLargeFileUDF");
        if (deviceHost.dialogs->MsgBoxOverMe(text, mb::Information | mb::OKCancel, "") != mb::Cancel)
            return true;
        deviceHost.status(deviceHost.text("msgWriteCancelled"));
        return false;
    }
    WritePanel refreshedPanel() const { return host.refreshMedia ? host.refreshMedia() : click.panel; }
    void write(const std::string &command) const {
        deviceHost.status(deviceHost.text("msgWaitingInit"));
        if (host.writeFrame) host.writeFrame(command);
    }
};

}  // namespace

double dvdRoom(const DataWriteClick &click, const DeviceHost &deviceHost) {
    const Mode mode = deviceHost.mode();
    deviceHost.setMode(Mode::DVDSize);
    double room = 0;
    // Debian's wodim stops at its arguments before it opens the drive; the
    // drive layer's dvd+rw-mediainfo tells the room instead.
    if (!deviceHost.mediaInfoTool.empty()) {
        const platform::DriveLayer &layer = deviceHost.driveLayer();
        const std::string device = layer.dvdDevice(layer.addressOf(click.panel.cmbWriterDevice),
                                                   click.settings.chkUseSPTI == 1, true);
        std::string arguments = " ";
        arguments += platform::quoteArgument(device);
        const ToolRun run = deviceHost.executeTool(deviceHost.mediaInfoTool, arguments);
        room = static_cast<double>(dvdFreeBlocks(run.output)) * 2048;
    }
    deviceHost.setMode(mode);
    return room;
}

std::optional<double> totalExtents(std::string_view output) {
    const std::size_t at = vb::InStr(output, kTotalExtents);
    if (at == 0) return std::nullopt;
    const std::size_t from = at + kTotalExtents.size();
    const std::size_t end = vb::InStr(from, output, "\r\n");
    if (end == 0) return std::nullopt;
    return static_cast<float>(vb::Val(vb::Mid(output, from, end - from)));
}

std::string mkisofsToc(double extents, bool multiSession) {
    const long blocks = std::lround(extents);
    std::string toc = multiSession ? "CD_ROM_XA\r\n" : "CD_ROM\r\n";
    toc += "TRACK MODE1\r\nDATAFILE \"-\" " + msf(blocks) + "\r\n";
    // The stream stays as long as it is; cdrdao adds the rest as zeros.
    if (blocks < kShortestTrack)
        toc += "ZERO MODE1 " + msf(static_cast<long>(kShortestTrack) - blocks) + "\r\n";
    return toc;
}

void writeDataCD(const DataWriteClick &click, DeviceState &devices, const DeviceHost &deviceHost,
                 ImageSlot &slot, const DataWriteHost &host) {
    const Job job{click, devices, deviceHost, slot, host};
    // The ProDVD tool works over ASPI only.
    if (click.dvd && click.settings.UseProDVD && click.availableInterfaces == 2)
        return job.box("msgProDVDASPI", mb::Exclamation);
    const Locked locked(host);
    if (click.dvd) {
        slot.discFreeBytes = dvdRoom(click, deviceHost);
    } else {
        bool useRaw = false;
        DiscStatusContext context;
        context.writer = click.panel.cmbWriterDevice;
        context.deviceFragment = writeDevice(click.panel, click.settings, fragmentDrive(job.writer()), useRaw,
                                             false, false, deviceHost.driveLayer());
        context.chkMulti = click.chkMulti;
        context.offerErase = host.offerErase ? host.offerErase : [] { return true; };
        const DiscStatusResult disc = splitDiscStatus(discStatus(deviceHost, context));
        slot.discFreeBytes = static_cast<double>(disc.blocks) * 2048;
        slot.discStatusText = std::string(1, disc.status);
        if (disc.status == 'X') return;
        // A further session goes onto an appendable disc only, a first one onto a blank one.
        if (!click.chkMulti && disc.status != 'E') return job.refuse("msgNotBlank");
        if (click.chkMulti && disc.status != 'A') return job.refuse("msgNotAppendable");
    }
    deviceHost.status(deviceHost.text("msgScanningFiles"));
    const WritePanel panel = job.refreshedPanel();
    const platform::DriveLayer &layer = deviceHost.driveLayer();
    const FragmentDrive writer = fragmentDrive(job.writer());

    std::string multiSessionArgs;
    if (!click.dvd && click.chkMulti) {
        if (host.clearLog) host.clearLog();
        bool useRaw = true;
        const ToolRun run = deviceHost.execute(
            " msinfo" + writeDevice(panel, click.settings, writer, useRaw, true, true, layer));
        const std::vector<std::string> pieces = vb::Split(run.output, "\r\n");
        const std::string last = pieces.empty() ? std::string() : pieces.back();
        multiSessionArgs = " -C " + platform::quoteArgument(last, platform::Quoting::WhenNeeded);
        if (click.chkImport)
            multiSessionArgs +=
                " -M " + platform::quoteArgument(layer.cdrdaoDevice(layer.addressOf(panel.cmbWriterDevice),
                                                                    click.settings.chkUseSPTI == 1, false),
                                                 platform::Quoting::WhenNeeded);
    }
    const Mode mode = deviceHost.mode();
    deviceHost.setMode(Mode::HideMe);
    const std::string mkisofs = platform::quoteArgument(click.mkisofs);
    // genisoimage names itself "genisoimage: " whatever its link is
    // called: there is no tool path to take out of its messages.
    const ToolRun dryRun =
        deviceHost.run ? deviceHost.run(mkisofs + " -print-size" + multiSessionArgs + click.disc.isoCommand)
                       : ToolRun{};
    deviceHost.setMode(mode);
    const std::optional<double> extents = totalExtents(dryRun.output);
    if (!extents) return deviceHost.status(deviceHost.text("msgFileCheckFail"));
    slot.imageBytes = *extents * 2048;
    deviceHost.status(deviceHost.text("msgFileCheckPass"));

    bool useRaw = true;
    const std::string toc = click.tempFolder + "/mkisofs.toc";
    std::string writeCommand;
    if (click.dvd) {
        writeCommand =
            platform::quoteArgument(click.dvdTool) +
            writeDVDCommand(panel, click.settings, writer, useRaw, true, click.settings.UseProDVD, layer) +
            // The blank before the size is deliberate; an image takes "-tsize=".
            " -tsize " + singleText(*extents) + "s -";
    } else {
        writeCommand = platform::quoteArgument(deviceHost.cdrdao) + " write" +
                       writeDevice(panel, click.settings, writer, useRaw, true, true, layer) +
                       WriteOptions(panel, click.settings) + platform::quoteArgument(toc);
    }
    if (!job.confirmed(slot.imageBytes, click.disc.largeFile)) return;
    if (host.setProgressMax) host.setProgressMax(static_cast<int>(std::lround(slot.imageBytes / 1048576)));
    if (!click.dvd) writeSheet(toc, mkisofsToc(*extents, click.chkMulti || panel.chkMultiSession == 1));
    const std::string commandFile = click.tempFolder + "/command.bat";
    writeSheet(commandFile, platform::batchFileText(mkisofs + " " + multiSessionArgs + " -quiet " +
                                                    click.disc.isoCommand + " | " + writeCommand));
    slot.writeCommand = platform::quoteArgument(commandFile);
    job.write(slot.writeCommand);
}

void writeDVDImage(const DataWriteClick &click, DeviceState &devices, const DeviceHost &deviceHost,
                   ImageSlot &slot, const DataWriteHost &host) {
    const Job job{click, devices, deviceHost, slot, host};
    const Locked locked(host);
    slot.discFreeBytes = dvdRoom(click, deviceHost);
    const WritePanel panel = job.refreshedPanel();
    std::error_code ec;
    const auto size = std::filesystem::file_size(slot.strFilename, ec);
    const double imageBlocks = ec ? 0 : static_cast<float>(static_cast<double>(size) / 2048);
    if (click.settings.UseProDVD && click.availableInterfaces == 2)
        return job.box("msgProDVDASPI", mb::Exclamation);
    bool useRaw = true;
    slot.writeCommand = platform::quoteArgument(click.dvdTool) +
                        writeDVDCommand(panel, click.settings, fragmentDrive(job.writer()), useRaw, false,
                                        click.settings.UseProDVD, deviceHost.driveLayer()) +
                        " -tsize=" + singleText(imageBlocks) + "s " +
                        platform::quoteArgument(slot.strFilename);
    if (!job.confirmed(slot.imageBytes, false)) return;
    job.write(slot.writeCommand);
}

}  // namespace saltmarrow::discops
