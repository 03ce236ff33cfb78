#include "discops/DiscCopy.h"

#include <cmath>
#include <fstream>

#include "devices/Discovery.h"
#include "devices/DriveQueries.h"
#include "discops/SheetFile.h"
#include "platform/CommandLine.h"
#include "platform/Dialogs.h"
#include "platform/DriveLayer.h"
#include "platform/Files.h"
#include "platform/Volume.h"
#include "support/mdlFunctions.h"

namespace saltmarrow::discops {

namespace mb = platform::mb;
using platform::exists;
using platform::quoteArgument;
using platform::removeFile;
using vb::InStr;
using vb::Replace;

namespace {

constexpr std::string_view kDVDMedia[] = {"DVD-R", "DVD-RW", "DVD+R", "DVD+RW", "DVD-RAM", "DVD-ROM"};
constexpr std::string_view kCrLf = "\r\n";

// Runs what it holds when the scope ends, however the job ends.
template <typename F>
struct Finally {
    F f;
    ~Finally() { f(); }
};
template <typename F>
Finally(F) -> Finally<F>;

bool isDVD(std::string_view medium) {
    for (std::string_view dvd : kDVDMedia)
        if (medium == dvd) return true;
    return false;
}

std::string wholeMegabytes(double bytes) {
    return std::to_string(std::llround(bytes / 1024 / 1024));
}

// Whether a file can be made at path: a folder that is read-only, or a file
// system that is, refuses even the administrator here.
bool canCreate(const std::string &path) {
    const bool existed = exists(path);
    const bool made = std::ofstream(path, std::ios::binary | std::ios::app).good();
    if (made && !existed) removeFile(path);
    return made;
}

struct Job {
    const DiscJobHost &host;
    const DiscJobPanels &panels;
    const DeviceHost &device = *host.device;

    std::string text(std::string_view key) const { return device.text(key); }
    int box(std::string_view key, int style, const std::string &title = {}) const {
        return host.box(text(key), style, title);
    }
    void openSettingsIfClosed() const {
        if (!host.settingsShown()) host.openSettings();
    }
    const platform::DriveLayer &layer() const { return device.driveLayer(); }
    short indexOf(const std::string &entry) const { return getDeviceIndex(*host.devices, entry, layer()); }
    const DeviceInfo *drive(short index) const {
        if (index < 0 || static_cast<std::size_t>(index) >= host.devices->devices.Count()) return nullptr;
        return &host.devices->devices.item(static_cast<std::size_t>(index));
    }
    FragmentDrive fragmentOf(const std::string &entry) const {
        const DeviceInfo *d = drive(indexOf(entry));
        return d ? fragmentDrive(*d) : FragmentDrive{"generic-mmc", "0", ""};
    }
    std::string readFragment(bool asSource) const {
        return readDevice(panels.read, panels.settings, fragmentOf(panels.read.cmbReaderDevice), asSource,
                          false, layer());
    }
    // The writer as the copy writes with it, or as a query addresses it.
    std::string writerFragment(bool copying) const {
        bool useRaw = copying;
        return writeDevice(panels.write, panels.settings, fragmentOf(panels.write.cmbWriterDevice), useRaw,
                           copying, copying, layer());
    }
    // The reader as it is now: its record, after asking the drive what is in it.
    const DeviceInfo *askReader() const {
        const short index = indexOf(panels.read.cmbReaderDevice);
        if (!drive(index)) return nullptr;
        updateDriveInfo(*host.devices, device, index, false, true);
        return drive(index);
    }
    // A cancelled job may leave the tray locked: the status line says how to free it.
    void trayNote(const std::string &status) const {
        if (*host.writeCancelled) device.status(status + " " + text("msgTrayLocked"));
    }
    // The user may keep a partial image, or have it deleted.
    void offerPartial(std::initializer_list<std::string> files) const {
        bool any = false;
        for (const auto &f : files) any = any || exists(f);
        if (any && box("msgDeleteImage", mb::YesNo | mb::Question) == mb::Yes)
            for (const auto &f : files) removeFile(f);
    }
    // The target folder takes the image: it can be written and has room.
    bool roomFor(const std::string &file, double bytes) const {
        if (!canCreate(file)) {
            box("msgReadOnlyFile", mb::Exclamation);
            return false;
        }
        const auto space = platform::volumeSpace(parentFolder(file));
        if (space && bytes > static_cast<double>(space->availableBytes)) {
            host.box(Replace(text("msgNoFreeSpace"), "%1", space->mountPoint), mb::Exclamation, {});
            return false;
        }
        return true;
    }
};

}  // namespace

TocSize tocSizeOf(double discBytes, std::string_view totalOutput) {
    TocSize size;
    size.known = discBytes > 0;
    size.readBytes = discBytes;
    // The track table of read-toc: "Mode" is "DATA " or "AUDIO" padded to the flags.
    size.discHasData = size.known && InStr(totalOutput, " DATA    ") != 0;
    size.discHasAudio = size.known && InStr(totalOutput, " AUDIO   ") != 0;
    return size;
}

ReadTargets readTargets(std::string_view chosen, bool discHasData) {
    const std::string folder = parentFolder(chosen);
    const std::string base = (folder.empty() ? "" : folder + "/") + baseName(chosen);
    ReadTargets t;
    t.toc = base + ".toc";
    t.sheet = discHasData ? base + ".cue" : t.toc;
    t.data = base + (discHasData ? ".bin" : ".dat");
    return t;
}

bool tocConverted(const ToolRun &run) {
    return InStr(run.output, "Copied toc file to cue file format - please use for data only.") != 0 ||
           (run.ok && InStr(run.output, "Converted toc-file ") != 0);
}

TocSize ReadTOC(const DiscJobHost &host, const DiscJobPanels &panels) {
    const Job job{host, panels};
    host.reading->discBytes = 0;
    host.reading->readSectors = 0;
    const std::string infoToc = host.tempFolder + "/info.toc";
    removeFile(infoToc);
    const Mode previous = job.device.mode();
    job.device.setMode(Mode::ReadTOC);
    job.device.status(job.text("msgTocSize"));
    // The reading of its lines stops the tool once the length of the disc is out.
    job.device.run(quoteArgument(host.tools.cdrdao) + " read-toc --fast-toc" + job.readFragment(false) +
                   quoteArgument(infoToc));
    removeFile(infoToc);
    const TocSize size = tocSizeOf(host.reading->discBytes, host.totalOutput());
    job.device.setMode(previous);
    if (!size.known) job.box("msgReadNoSize", mb::Exclamation);
    return size;
}

void copyDisc(const DiscJobHost &host, const DiscJobPanels &panels) {
    const Job job{host, panels};
    const std::string &reader = panels.read.cmbReaderDevice, &writer = panels.write.cmbWriterDevice;
    if (reader.empty()) {
        // The writer's message for the missing reader, as the program has always said it.
        job.box("msgSelectWriter", mb::Exclamation);
        return job.openSettingsIfClosed();
    }
    if (job.indexOf(reader) == job.indexOf(writer)) {
        job.box("msgSameDevice", mb::Exclamation);
        return host.openSettings();
    }
    host.autoHideSettings();
    host.enableControls(false);
    job.device.setLogText("");

    const TocSize size = ReadTOC(host, panels);
    if (!size.known) return job.device.status("Copy Operation Cancelled");
    const DiscStatusResult disc = splitDiscStatus(host.discStatus());
    const double discFreeBytes = static_cast<double>(disc.blocks) * 2352;
    if (disc.status == 'X') return;
    if (disc.status != 'E') {
        job.box("msgNotBlank", mb::Exclamation);
        job.device.status(job.text("msgWriteCancelled"));
        return host.enableControls(true);
    }
    if (panels.confirmWrite) {
        std::string confirm = Replace(job.text("msgConfirmCopy"), "%1", wholeMegabytes(size.readBytes));
        confirm = Replace(confirm, "%2", wholeMegabytes(discFreeBytes));
        const std::string figures = job.text("msgReader") + "\t" + reader + std::string(kCrLf) +
                                    job.text("msgWriter") + "\t" + writer + std::string(kCrLf) +
                                    std::string(kCrLf) + confirm;
        if (host.box(figures, mb::Information | mb::OKCancel, {}) == mb::Cancel) return;
    }
    const std::string command = quoteArgument(host.tools.cdrdao) + " copy --on-the-fly --fast-toc" +
                                job.readFragment(true) + ReadOptions(panels.read) + job.writerFragment(true) +
                                WriteOptions(panels.write, panels.settings);
    host.writeFrame(command);
    job.trayNote(job.text("msgWriteCancelled"));
}

// setupReadCd: the disc in the reader, read to the image the user names.
static void setupReadCd(const Job &job) {
    const DiscJobHost &host = job.host;
    const DeviceHost &device = job.device;
    device.setLogText("");
    host.enableControls(false);
    bool started = false;
    const Finally last{[&] {
        if (!started) device.status(job.text("msgReadCancelled"));
        host.enableControls(true);
    }};
    if (job.panels.read.cmbReaderDevice.empty()) {
        job.box("msgSelectReader", mb::Exclamation);
        return job.openSettingsIfClosed();
    }
    host.autoHideSettings();
    const TocSize size = ReadTOC(host, job.panels);
    if (!size.known) return;
    const std::string confirm = Replace(job.text("msgConfirmRead"), "%1", wholeMegabytes(size.readBytes));
    if (host.box(job.panels.read.cmbReaderDevice + std::string(kCrLf) + std::string(kCrLf) + confirm,
                 mb::Information | mb::OKCancel, "Confirm Read") == mb::Cancel)
        return;

    platform::FileRequest request;
    request.folder = host.lastReadFolder();
    request.filter = "Cdrdao Image File (*.toc)|*.toc";
    if (size.discHasData) request.filter += "|Cue Sheet (*.cue)|*.cue";
    const std::optional<std::string> chosen = device.dialogs->saveFile(request);
    if (!chosen) return;
    host.setLastReadFolder(parentFolder(*chosen));
    const Mode previous = device.mode();
    device.setMode(Mode::ReadCD);
    bool loaded = false;
    const Finally label{[&] {
        if (!loaded) device.setMode(previous);
    }};

    const ReadTargets t = readTargets(*chosen, size.discHasData);
    // The dialog asked about the name chosen; the other files of the image are the user's too.
    std::string others;
    for (const std::string &f : {t.toc, t.sheet, t.data})
        if (exists(f) && !sameFile(f, *chosen) && InStr(others, f) == 0) others += std::string(kCrLf) + f;
    if (!others.empty() &&
        host.box(job.text("msgReplaceImage") + others, mb::YesNo | mb::Question, {}) != mb::Yes)
        return;
    if (!job.roomFor(t.data, size.readBytes)) return;
    for (const std::string &f : {t.toc, t.sheet, t.data}) removeFile(f);

    const std::string command = quoteArgument(host.tools.cdrdao) + " read-cd --fast-toc " +
                                job.readFragment(false) + ReadOptions(job.panels.read) + " --datafile " +
                                quoteArgument(t.data) + " " + quoteArgument(t.toc);
    started = true;
    *host.writeCancelled = false;
    if (!host.readcd(command) || !exists(t.data)) {
        job.trayNote(job.text("msgReadCancelled"));
        return job.offerPartial({t.toc, t.sheet, t.data});
    }

    std::string image = t.toc;
    if (size.discHasData && size.discHasAudio) {
        // toc2cue warns that the audio of a cue sheet it makes is in the wrong byte order.
        host.appendLog(job.text("logMixedImage"));
    } else if (size.discHasData) {
        device.setMode(Mode::HideMe);
        const ToolRun run = device.run(quoteArgument(host.tools.toc2cue) + " " + quoteArgument(t.toc) + " " +
                                       quoteArgument(t.sheet));
        if (tocConverted(run)) {
            removeFile(t.toc);
            image = t.sheet;
        }
    }
    if (job.box("msgLoadImage", mb::YesNo | mb::Question) == mb::Yes) {
        loaded = true;
        host.loadImage(image);
    }
}

void mnuReadCD_Click(const DiscJobHost &host, const DiscJobPanels &panels) {
    const Job job{host, panels};
    host.enableControls(false);
    if (const DeviceInfo *reader = job.askReader()) {
        const char *refusal = isDVD(reader->LastMediaType) ? "msgNoDVDRead"
                              : !reader->MediaInserted     ? "msgInsertReadCD"
                                                           : nullptr;
        if (refusal) {
            job.box(refusal, mb::Exclamation);
            return host.enableControls(true);
        }
    }
    setupReadCd(job);
}

void mnuDDump_Click(const DiscJobHost &host, const DiscJobPanels &panels) {
    const Job job{host, panels};
    const DeviceHost &device = job.device;
    host.enableControls(false);
    bool started = false;
    const Finally last{[&] {
        if (!started) device.status(job.text("msgReadCancelled"));
        host.enableControls(true);
    }};
    if (panels.read.cmbReaderDevice.empty()) {
        job.box("msgSelectReader", mb::Exclamation);
        return job.openSettingsIfClosed();
    }
    if (host.tools.readom.empty())
        return (void)host.box(Replace(job.text("msgNotFound"), "%1", "readom"), mb::Exclamation, {});
    host.autoHideSettings();
    const DeviceInfo *reader = job.askReader();
    if (reader && !reader->MediaInserted) return (void)job.box("msgInsertReadCD", mb::Exclamation);
    // A CD without a data track has no sectors to dump; a DVD holds data always.
    if (!reader || !isDVD(reader->LastMediaType)) {
        const TocSize size = ReadTOC(host, panels);
        if (!size.known) return;
        if (!size.discHasData) return (void)job.box("msgDumpNoData", mb::Exclamation);
    }

    platform::FileRequest request;
    request.folder = host.lastReadFolder();
    request.filter = "ISO Image (*.iso)|*.iso";
    std::optional<std::string> chosen = device.dialogs->saveFile(request);
    if (!chosen) return;
    std::string image = *chosen;
    if (baseName(image) == fileNamePart(image)) image += ".iso";
    host.setLastReadFolder(parentFolder(image));
    // The size is known once the tool has said it: a disc larger than the room stops it then.
    if (!job.roomFor(image, 0)) return;
    removeFile(image);  // the dialog asked before it named a file that is there: what is left is the dump's
    const auto space = platform::volumeSpace(parentFolder(image));
    InterpreterState &reading = *host.reading;
    reading.readRoom = space ? static_cast<double>(space->availableBytes) : -1;
    reading.readTooLarge = false;

    const Mode previous = device.mode();
    device.setMode(Mode::DiscDump);
    const std::string address =
        job.layer().dvdDevice(job.layer().addressOf(panels.read.cmbReaderDevice), false, true);
    const std::string command = quoteArgument(host.tools.readom) + " " +
                                quoteArgument("dev=" + address, platform::Quoting::WhenNeeded) + " " +
                                quoteArgument("f=" + image);
    started = true;
    *host.writeCancelled = false;
    *host.writeFailed = false;
    const bool ok = host.readcd(command) && !*host.writeFailed && exists(image);
    reading.readRoom = -1;
    device.setMode(previous);
    if (ok) {
        if (job.box("msgLoadImage", mb::YesNo | mb::Question) == mb::Yes) host.loadImage(image);
        return;
    }
    if (reading.readTooLarge && space)
        host.box(Replace(job.text("msgNoFreeSpace"), "%1", space->mountPoint), mb::Exclamation, {});
    job.trayNote(job.text("msgReadCancelled"));
    job.offerPartial({image});
}

void mnuResetWriter_Click(const DiscJobHost &host, const DiscJobPanels &panels) {
    const Job job{host, panels};
    const DeviceHost &device = job.device;
    host.enableControls(false);
    const Mode previous = device.mode();
    const Finally last{[&] {
        device.setMode(previous);
        host.enableControls(true);
    }};
    if (panels.write.cmbWriterDevice.empty()) {
        job.box("msgSelectWriter", mb::Exclamation);
        return job.openSettingsIfClosed();
    }
    host.autoHideSettings();
    device.setLogText("");
    device.setMode(Mode::Reset);
    const std::string unlocking = job.text("msgUnlockDrive");
    device.status(unlocking);
    // The exit status alone tells whether the drive let go.
    if (device.run(quoteArgument(host.tools.cdrdao) + " unlock" + job.writerFragment(false)).ok) {
        device.setLogText(device.logText() + " Done.");
        device.status(unlocking + " " + job.text("msgDone"));
    } else {
        device.status(unlocking + " " + job.text("msgFail"));
    }
}

}  // namespace saltmarrow::discops
