#include "testlib/FakeDrive.h"

#include <filesystem>

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
)") + "medium = " + medium + "\nblank = " + (blank ? "yes" : "no") + "\n" + extra;
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

void installFakeDrive(const std::string &appDir, const std::string &state) {
    namespace fs = std::filesystem;
    const std::string external = appDir + "/external";
    fs::create_directories(external + "/TEMP");
    if (!fs::exists(external + "/cdrdao")) {
        for (const char *name : {"cdrdao", "dvdrecord", "cdda2wav"}) fs::create_symlink(fixture("fakedrive"), external + "/" + name);
        fs::create_symlink("/usr/bin/genisoimage", external + "/mkisofs");
    }
    writeFile(external + "/fakedrive.state", state);
}

}  // namespace saltmarrow::test
