#include "discops/WriteDispatcher.h"

#include <cmath>
#include <filesystem>

#include "devices/Discovery.h"
#include "discops/ImageLoad.h"
#include "discops/ImageSize.h"
#include "discops/SheetCheck.h"
#include "discops/SheetFile.h"
#include "platform/CommandLine.h"
#include "platform/Dialogs.h"
#include "platform/DriveLayer.h"
#include "support/mdlFunctions.h"

namespace saltmarrow::discops {

using vb::Right;
using vb::UCase;

namespace {

constexpr std::string_view kDVDMedia[] = {"DVD-R", "DVD-RW", "DVD+R", "DVD+RW", "DVD-ROM"};
constexpr Mode kCDTasks[] = {Mode::WriteCD, Mode::CopyCD, Mode::DataCD, Mode::AudioCD};

bool isISO(std::string_view image) {
    return UCase(Right(image, 4)) == ".ISO";
}

std::string wholeMegabytes(double bytes) {
    return std::to_string(std::llround(bytes / 1024 / 1024));
}

}  // namespace

MediumDecision mediumFitsTask(Mode mode, std::string_view mediaType, std::string_view image) {
    const Refusal wrongMedium{"msgWrongMediaType", platform::mb::Exclamation, "", false};
    for (std::string_view dvd : kDVDMedia) {
        if (mediaType != dvd) continue;
        if (mode == Mode::DataDVD) return {std::nullopt, mode};
        if (mode == Mode::WriteCD && isISO(image)) return {std::nullopt, Mode::WriteDVD};
        return {wrongMedium, mode};
    }
    if (mediaType == "CD-R" || mediaType == "CD-RW") {
        for (Mode task : kCDTasks)
            if (mode == task) return {std::nullopt, mode};
        return {wrongMedium, mode};
    }
    return {std::nullopt, mode};
}

std::optional<Refusal> discRefusal(const DiscStatusResult &disc) {
    if (disc.status == 'X') return Refusal{};
    if (disc.status != 'E')
        return Refusal{"msgNotBlank", platform::mb::Exclamation, "msgWriteCancelled", false};
    return std::nullopt;
}

std::string confirmationText(const MessageText &msg, double imageBytes, double discFreeBytes) {
    std::string text = msg ? msg("msgConfirmWrite") : std::string();
    text = vb::Replace(text, "%1", wholeMegabytes(imageBytes));
    return vb::Replace(text, "%2", wholeMegabytes(discFreeBytes));
}

WritePlan planImageWrite(const std::string &cdrdao, const std::string &deviceAndOptions,
                         const std::string &sheet, const std::string &externalFolder) {
    WritePlan plan;
    plan.sheet = sheet;
    // A backslash is a character of a name here, not a separator to turn round.
    plan.command =
        platform::quoteArgument(cdrdao) + " write" + deviceAndOptions + platform::quoteArgument(sheet);
    plan.commandFile = platform::batchFileText(plan.command);
    // cdrdao reads the names in a sheet against the folder it starts in; a
    // name without a folder means the file beside the sheet.
    plan.folder = parentFolder(sheet);
    if (plan.folder.empty()) plan.folder = externalFolder;
    return plan;
}

void cmdWrite_Click(const WriteClick &click, DeviceState &devices, const DeviceHost &deviceHost,
                    ImageSlot &slot, const ImageContext &ctx, WriteHost &host) {
    const auto show = [&](const Refusal &r) {
        if (!r.key.empty()) host.box(ctx.text(r.key), r.style);
        if (!r.statusKey.empty()) host.status(ctx.text(r.statusKey));
        if (r.openSettings) host.openSettings();
    };
    if (click.cancelling) {
        host.killInstantly();
        *host.writeCancelled = true;
        return;
    }
    *host.writeCancelled = false;
    if (click.panel.cmbWriterDevice.empty()) {
        show({"msgSelectWriter", platform::mb::Exclamation, "", true});
        host.enableControls(true);
        return;
    }
    if (click.mode == Mode::None) {
        host.chooseImage();
        return;
    }

    // Whatever happens below, the task, the controls and the image are put
    // back as they were.
    struct Restore {
        const DeviceHost &devices;
        WriteHost &host;
        ImageSlot &slot;
        Mode mode;
        std::string image;
        ~Restore() {
            devices.setMode(mode);
            host.enableControls(true);
            if (slot.tempISOSheet) {
                slot.strFilename = image;
                slot.tempISOSheet = false;
            }
        }
    } restore{deviceHost, host, slot, click.mode, slot.strFilename};

    host.enableControls(false);
    const short index = getDeviceIndex(devices, click.panel.cmbWriterDevice, deviceHost.driveLayer());
    if (index < 0 || static_cast<std::size_t>(index) >= devices.devices.Count()) return;
    updateDriveInfo(devices, deviceHost, index, false, true);
    const DeviceInfo &writer = devices.devices.item(static_cast<std::size_t>(index));
    const MediumDecision medium = mediumFitsTask(deviceHost.mode(), writer.LastMediaType, slot.strFilename);
    if (medium.refusal) return show(*medium.refusal);
    deviceHost.setMode(medium.mode);
    host.autoHideSettings();

    const auto job = [&](const std::function<void()> &run) {
        if (run)
            run();
        else
            host.status(ctx.text("msgWriteCancelled"));  // that job is not part of this build
    };
    if (medium.mode == Mode::CopyCD) return job(host.copyDisc);
    if (medium.mode == Mode::DataCD || medium.mode == Mode::DataDVD) return job(host.writeDataCD);
    if (medium.mode == Mode::WriteDVD) return job(host.writeDVDImage);

    if (isISO(slot.strFilename)) {
        const std::string sheet = ctx.tempFolder() + "/tempiso.toc";
        writeSheet(sheet, dataTrackSheet("MODE1", slot.strFilename));
        slot.tempISOSheet = true;
        slot.strFilename = sheet;
    }
    const std::int16_t blockSize =
        checkTOC(slot.strFilename, "", slot.imageBlockSize, currentFolder(slot, ctx));

    bool useRaw = false;
    DiscStatusContext disc;
    disc.writer = click.panel.cmbWriterDevice;
    disc.deviceFragment = writeDevice(click.panel, click.settings, fragmentDrive(writer), useRaw, false,
                                      false, deviceHost.driveLayer());
    disc.offerErase = host.offerErase ? host.offerErase : [] { return true; };
    const DiscStatusResult status = splitDiscStatus(discStatus(deviceHost, disc));
    slot.discFreeBytes = static_cast<double>(status.blocks) * blockSize;
    slot.discStatusText = std::string(1, status.status);
    if (auto refusal = discRefusal(status)) return show(*refusal);
    if (UCase(Right(slot.strFilename, 3)) == "TOC")
        slot.imageBytes = static_cast<double>(
            imageSize(slot.strFilename, slot.imageBlockSize, ctx, currentFolder(slot, ctx)));
    // The speed list is the one for this disc now.
    const WritePanel panel = host.refreshMedia ? host.refreshMedia() : click.panel;

    if (click.confirmWrite &&
        host.box(confirmationText(ctx.msg, slot.imageBytes, slot.discFreeBytes),
                 platform::mb::Information | platform::mb::OKCancel) == platform::mb::Cancel)
        return host.status(ctx.text("msgWriteCancelled"));

    useRaw = true;
    const std::string fragments = writeDevice(panel, click.settings, fragmentDrive(writer), useRaw, true,
                                              true, deviceHost.driveLayer()) +
                                  WriteOptions(panel, click.settings);
    const std::string commandFile = ctx.tempFolder() + "/command.bat";
    const WritePlan plan =
        planImageWrite(ctx.cdrdaoPath(), fragments, slot.strFilename, ctx.externalFolder());
    slot.writeCommand = plan.command;
    std::error_code ec;
    std::filesystem::remove(ctx.tempFolder() + "/mkisofs.toc", ec);
    writeSheet(commandFile, plan.commandFile);
    slot.deleteCandidate = slot.strFilename;
    host.write(plan);
}

}  // namespace saltmarrow::discops
