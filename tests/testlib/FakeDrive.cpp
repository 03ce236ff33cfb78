#include "testlib/FakeDrive.h"

#include <filesystem>
#include <memory>
#include <sstream>

#include "platform/CurrentDriveLayer.h"
#include "platform/LinuxDriveLayer.h"
#include "testlib/TestSupport.h"

namespace saltmarrow::test {

namespace fs = std::filesystem;

LinuxDrive cdWriter(const std::string &medium, const std::string &disc) {
    LinuxDrive d;
    d.vendor = "PLEXTOR";
    d.model = "CD-R   PX-W4012A";
    d.firmware = "1.01";
    d.readsDVD = d.writesDVD = false;
    d.medium = medium;
    d.extra = disc + "manufacturer = Taiyo Yuden\n";
    return d;
}

LinuxDrive dvdReader() {
    LinuxDrive d;
    d.path = "/dev/sr2";
    d.vendor = "ASUS";
    d.model = "DVD: E818A9T";
    d.firmware = "1.00";
    d.writesCD = d.writesDVD = d.burnProof = false;
    d.maxWriteKbs = 0;
    return d;
}

std::string fakeState(const std::vector<LinuxDrive> &drives, const std::string &global) {
    std::string text = global;
    for (const LinuxDrive &d : drives)
        text += "[device]\npath = " + d.path + "\nvendor = " + d.vendor + "\nmodel = " + d.model +
                "\nfirmware = " + d.firmware + "\nmax_write_kbs = " + std::to_string(d.maxWriteKbs) +
                "\nburnproof = " + (d.burnProof ? "yes" : "no") + "\nmedium = " + d.medium + "\n" + d.extra +
                "\n";
    return text;
}

std::string kernelCdromTable(const std::vector<LinuxDrive> &drives) {
    // The kernel lists its drives newest first, one column each; no drive here writes DVD-RAM.
    const std::pair<std::string, bool LinuxDrive::*> rows[] = {{"Can write CD-R", &LinuxDrive::writesCD},
                                                               {"Can write CD-RW", &LinuxDrive::writesCD},
                                                               {"Can read DVD", &LinuxDrive::readsDVD},
                                                               {"Can write DVD-R", &LinuxDrive::writesDVD},
                                                               {"Can write DVD-RAM", nullptr},
                                                               {"Can read MRW", &LinuxDrive::writesCD},
                                                               {"Can write MRW", &LinuxDrive::writesCD}};
    std::string text = "CD-ROM information, Id: cdrom.c 3.20 2003/12/17\n\ndrive name:\t\t";
    for (auto d = drives.rbegin(); d != drives.rend(); ++d)
        text += "\t" + fs::path(d->path).filename().string();
    for (const auto &[name, field] : rows) {
        text += "\n" + name + ":" + (name.size() < 15 ? "\t\t" : "\t");
        for (auto d = drives.rbegin(); d != drives.rend(); ++d) text += field && (*d).*field ? "\t1" : "\t0";
    }
    return text + "\n\n";
}

const platform::DriveLayer &installFakeDrive(const std::string &appDir, const std::vector<LinuxDrive> &drives,
                                             const std::string &global) {
    static std::unique_ptr<platform::LinuxDriveLayer> layer;
    const std::string external = appDir + "/external";
    fs::create_directories(external + "/TEMP");
    if (!fs::exists(external + "/cdrdao")) {
        for (const char *name : {"cdrdao", "dvdrecord", "dvd+rw-mediainfo", "readom", "cdda2wav"})
            fs::create_symlink(fixture("fakedrive"), external + "/" + name);
        fs::create_symlink("/usr/bin/genisoimage", external + "/mkisofs");
        fs::create_symlink("/usr/bin/toc2cue", external + "/toc2cue");
    }
    writeFile(external + "/fakedrive.state", fakeState(drives, global));
    writeFile(external + "/cdrom.info", kernelCdromTable(drives));
    layer = std::make_unique<platform::LinuxDriveLayer>(external + "/cdrom.info");
    platform::setDriveLayer(layer.get());
    return *layer;
}

std::vector<std::string> fakeCalls(const std::string &appDir, const std::string &prefix) {
    std::vector<std::string> calls;
    std::istringstream in(readFile(appDir + "/external/fakedrive.log"));
    for (std::string line; std::getline(in, line);)
        if (!line.empty() && line.rfind(prefix, 0) == 0) calls.push_back(line);
    return calls;
}

}  // namespace saltmarrow::test
