#include "testlib/FakeDrive.h"

#include <filesystem>
#include <memory>

#include "platform/DriveLayer.h"
#include "testlib/TestSupport.h"

namespace saltmarrow::test {

std::string fakeWriter(const std::string &medium, bool blank, const std::string &extra) {
    return std::string(R"(
aspi = ok
spti = ok
[device]
address = 1,0,0
aspi_address = 0,1,0
vendor = PLEXTOR
model = PX-W4012A
firmware = 1.01
driver_table = generic-mmc:0x10
reads = CD-R CD-RW CD-ROM DVD-ROM
writes = CD-R CD-RW
features = BURN-Proof
buffer = 2048
underrun = yes
max_speed = 40
rewritable = no
appendable = no
capacity = 359849
remaining = 359849
)") +
           "medium = " + medium + "\nblank = " + (blank ? "yes" : "no") + "\n" + extra;
}

std::string fakeReader() {
    return R"(
[device]
address = 1,1,0
aspi_address = 0,2,0
vendor = LITEON
model = DVD-ROM LTD163
firmware = GHR3
reads = CD-R CD-RW CD-ROM DVD-ROM
buffer = 512
medium = n/a
)";
}

const platform::DriveLayer &useWindowsDriveLayer() {
    static const platform::WindowsDriveLayer layer;
    platform::setDriveLayer(&layer);
    return layer;
}

namespace {

void linkFakeTools(const std::string &appDir, const std::string &state) {
    namespace fs = std::filesystem;
    const std::string external = appDir + "/external";
    fs::create_directories(external + "/TEMP");
    if (!fs::exists(external + "/cdrdao")) {
        for (const char *name : {"cdrdao", "dvdrecord", "cdda2wav", "dvd+rw-mediainfo"})
            fs::create_symlink(fixture("fakedrive"), external + "/" + name);
        fs::create_symlink("/usr/bin/genisoimage", external + "/mkisofs");
    }
    writeFile(external + "/fakedrive.state", state);
}

}  // namespace

void installFakeDrive(const std::string &appDir, const std::string &state) {
    linkFakeTools(appDir, state);
    useWindowsDriveLayer();
}

std::string linuxState(const std::vector<LinuxDrive> &drives, const std::string &global) {
    std::string text = "personality = linux\n" + global;
    for (const LinuxDrive &d : drives) {
        text += "[device]\npath = " + d.path + "\nvendor = " + d.vendor + "\nmodel = " + d.model +
                "\nfirmware = " + d.firmware + "\nmax_write_kbs = " + std::to_string(d.maxWriteKbs) +
                "\nburnproof = " + (d.burnProof ? "yes" : "no") + "\nmedium = " + d.medium + "\n" + d.extra;
        if (!d.extra.empty() && d.extra.back() != '\n') text += "\n";
    }
    return text;
}

std::string kernelCdromTable(const std::vector<LinuxDrive> &drives) {
    // The kernel lists its drives newest first, one column each.
    const auto row = [&](const std::string &name, auto value) {
        std::string text = name + ":" + std::string(name.size() < 15 ? "\t\t" : "\t");
        for (auto it = drives.rbegin(); it != drives.rend(); ++it) text += "\t" + value(*it);
        return text + "\n";
    };
    const auto flag = [](bool on) { return std::string(on ? "1" : "0"); };
    std::string text = "CD-ROM information, Id: cdrom.c 3.20 2003/12/17\n\n";
    text += row("drive name",
                [](const LinuxDrive &d) { return std::filesystem::path(d.path).filename().string(); });
    text += row("drive speed", [](const LinuxDrive &) { return std::string("48"); });
    text += row("Can write CD-R", [&](const LinuxDrive &d) { return flag(d.writesCD); });
    text += row("Can write CD-RW", [&](const LinuxDrive &d) { return flag(d.writesCD); });
    text += row("Can read DVD", [&](const LinuxDrive &d) { return flag(d.readsDVD); });
    text += row("Can write DVD-R", [&](const LinuxDrive &d) { return flag(d.writesDVD); });
    text += row("Can write DVD-RAM", [&](const LinuxDrive &) { return flag(false); });
    text += row("Can read MRW", [&](const LinuxDrive &d) { return flag(d.writesCD); });
    text += row("Can write MRW", [&](const LinuxDrive &d) { return flag(d.writesCD); });
    return text + "\n";
}

const platform::DriveLayer &installLinuxFakeDrive(const std::string &appDir,
                                                  const std::vector<LinuxDrive> &drives,
                                                  const std::string &global) {
    static std::unique_ptr<platform::LinuxDriveLayer> layer;
    linkFakeTools(appDir, linuxState(drives, global));
    const std::string table = appDir + "/external/cdrom.info";
    writeFile(table, kernelCdromTable(drives));
    layer = std::make_unique<platform::LinuxDriveLayer>(table);
    platform::setDriveLayer(layer.get());
    return *layer;
}

}  // namespace saltmarrow::test
