// The command-line fragments, as the examples of their definition give them,
// with the Windows tools' device forms and with Linux device paths.
#include "discops/Fragments.h"

#include <gtest/gtest.h>

#include <functional>

#include "platform/LinuxDriveLayer.h"
#include "platform/WindowsDeviceForms.h"

using namespace saltmarrow;

namespace {

enum class Piece { Write, Read, Source, WriteOpts, ReadOpts, DVD };

// The write and read panels, the settings and the drive's record.
struct Panels {
    WritePanel w;
    ReadPanel r;
    FragmentSettings s;
    FragmentDrive d{"generic-mmc", "0", "0,1,0"};
};

struct Row {
    const char *what;
    std::function<void(Panels &)> set;
    Piece piece;
    bool useRaw, dataDisc, lock;  // lock: locked device, or the DVD's plain address
    std::string expected;
};

std::string compose(Panels p, Piece piece, bool useRaw, bool dataDisc, bool lock,
                    const platform::DeviceForms &forms) {
    switch (piece) {
        case Piece::Write:
            return writeDevice(p.w, p.s, p.d, useRaw, dataDisc, lock, forms);
        case Piece::Read:
            return readDevice(p.r, p.s, p.d, false, lock, forms);
        case Piece::Source:
            return readDevice(p.r, p.s, p.d, true, lock, forms);
        case Piece::WriteOpts:
            return WriteOptions(p.w, p.s);
        case Piece::ReadOpts:
            return ReadOptions(p.r);
        case Piece::DVD:
            return writeDVDCommand(p.w, p.s, p.d, useRaw, dataDisc, lock, forms);
    }
    return {};
}

const auto none = [](Panels &) {};

// clang-format off
const Row kRows[] = {
    {"the example", [](Panels &p) { p.s.chkUseSPTI = p.w.chkWriteCDText = 1; },
     Piece::Write, true, false, true, " --device SPTILOCK:1,0,0 --driver generic-mmc:0x10 "},
    {"an unticked buffer protection sets its bit", [](Panels &p) { p.w.chkBurnProof = 0; },
     Piece::Write, true, false, false, " --device ASPI:1,0,0 --driver generic-mmc:0x40 "},
    {"OR, not addition", [](Panels &p) { p.w.chkWriteCDText = 1; p.d.DriverOptions = "10"; },
     Piece::Write, true, false, false, " --device ASPI:1,0,0 --driver generic-mmc:0x10 "},
    {"nothing to OR: the drive's word as it is", [](Panels &p) { p.d.DriverOptions = "0010"; },
     Piece::Write, true, false, false, " --device ASPI:1,0,0 --driver generic-mmc:0x0010 "},
    {"the raw driver takes no CD-Text bit", [](Panels &p) { p.w.ChkWriteDriverRaw = p.w.chkWriteCDText = 1; },
     Piece::Write, true, false, false, " --device ASPI:1,0,0 --driver generic-mmc-raw:0x0 "},
    {"a multi-session data disc is never written raw",
     [](Panels &p) { p.w.ChkWriteDriverRaw = p.w.chkWriteCDText = p.w.chkMultiSession = 1; },
     Piece::Write, true, true, false, " --device ASPI:1,0,0 --driver generic-mmc:0x10 "},
    {"a stored raw driver is not used", [](Panels &p) { p.d = {"generic-mmc-raw", "20", ""}; },
     Piece::Write, true, false, false, " --device ASPI:1,0,0 --driver generic-mmc:0x20 "},
    {"only generic-mmc takes CD-Text", [](Panels &p) { p.d = {"plextor", "20", ""}; p.w.chkWriteCDText = 1; },
     Piece::Write, true, false, false, " --device ASPI:1,0,0 --driver plextor:0x20 "},
    {"without the driver table", [](Panels &p) { p.s.UseDriverTable = false; p.d = {"plextor", "20", ""}; },
     Piece::Write, true, false, false, " --device ASPI:1,0,0 --driver generic-mmc:0x0 "},
    {"without the table, raw", [](Panels &p) { p.s.UseDriverTable = false; p.w.ChkWriteDriverRaw = 1; },
     Piece::Write, true, false, false, " --device ASPI:1,0,0 --driver generic-mmc-raw:0x0 "},
    {"reading: no CD-Text is a bit, a raw driver is none", [](Panels &p) { p.d.Driver = "generic-mmc-raw"; },
     Piece::Read, false, false, false, " --device ASPI:1,1,0 --driver generic-mmc:0x200000 "},
    {"reading as the source of a copy",
     [](Panels &p) { p.r.chkReadCDText = p.r.chkSimpleTOC = p.r.chkSwapAudio = p.s.chkUseSPTI = 1; },
     Piece::Source, false, false, true,
     " --source-device SPTILOCK:1,1,0 --source-driver generic-mmc:0x30000 "},
    {"reading without the table",
     [](Panels &p) { p.s.UseDriverTable = false; p.d.DriverOptions = "8"; p.r.chkReadCDText = 1; },
     Piece::Read, false, false, false, " --device ASPI:1,1,0 --driver generic-mmc:0x0 "},
    {"the options' example", none, Piece::WriteOpts, false, false, false,
     " --eject --reload --speed 16 -n --buffers 256 -v 2 "},
    {"every option, speed Max",
     [](Panels &p) {
         p.w.cmbSpeed = "Max"; p.w.chkEject = 0;
         p.w.chkOverburn = p.w.chkSimulate = p.w.chkForce = p.w.chkMultiSession = 1; p.w.cmbBuffers = "1024";
         p.s.verbosity = 3;
     }, Piece::WriteOpts, false, false, false,
     " --reload --overburn --simulate --force --multi -n --buffers 1024 -v 3 "},
    {"read options", none, Piece::ReadOpts, false, false, false, " --paranoia-mode 0 "},
    {"raw, paranoia 3, RW subs",
     [](Panels &p) { p.r.chkReadRaw = p.r.cmbSubsIndex = 1; p.r.cmbParanoiaIndex = 3; },
     Piece::ReadOpts, false, false, false, " --read-raw --paranoia-mode 3 --read-subchan rw "},
    {"raw RW subs", [](Panels &p) { p.r.cmbSubsIndex = 2; }, Piece::ReadOpts, false, false, false,
     " --paranoia-mode 0 --read-subchan rw_raw "},
    {"the DVD writer", [](Panels &p) { p.s.chkUseSPTI = 1; p.w.cmbSpeed = "8x"; },
     Piece::DVD, true, false, false,
     " dev=SPTILOCK:1,0,0 driveropts=burnfree -v speed=8 fs=75x256f -eject -dao -gracetime=0"},
    {"the DVD writer with every option",
     [](Panels &p) {
         p.w.chkBurnProof = p.w.chkEject = 0;
         p.w.chkSimulate = p.w.chkOverburn = p.w.chkMultiSession = p.w.chkForce = 1; p.w.cmbSpeed = "Max";
     }, Piece::DVD, true, false, false,
     " dev=ASPILOCK:1,0,0 driveropts=noburnfree -v -dummy -overburn fs=75x256f -multi -force -dao "
     "-gracetime=0"},
    {"a multi-session data DVD is never written raw",
     [](Panels &p) { p.w.ChkWriteDriverRaw = p.w.chkMultiSession = 1; }, Piece::DVD, true, true, false,
     " dev=ASPILOCK:1,0,0 driveropts=burnfree -v speed=16 fs=75x256f -multi -eject -dao -gracetime=0"},
    {"a raw DVD", [](Panels &p) { p.w.ChkWriteDriverRaw = 1; }, Piece::DVD, true, false, false,
     " dev=ASPILOCK:1,0,0 driveropts=burnfree -v speed=16 fs=75x256f -eject -raw -gracetime=0"},
    {"ProDVD takes the drive's bare ASPI address", [](Panels &p) { p.s.UseProDVD = true; },
     Piece::DVD, true, false, true,
     " dev=0,1,0 driveropts=burnfree -v speed=16 fs=75x256f -eject -dao -gracetime=0"},
};
// clang-format on

Panels windowsPanels() {
    Panels p;
    p.w.cmbWriterDeviceIndex = 0;
    p.w.cmbWriterDevice = "1,0,0: PLEXTOR, PX-W4012A";
    p.w.cmbSpeed = "16x";
    p.r.cmbReaderDeviceIndex = 0;
    p.r.cmbReaderDevice = "1,1,0: LITEON, DVD-ROM LTD163";
    return p;
}

TEST(Fragments, TheExamplesWithTheWindowsForms) {
    const platform::WindowsDeviceForms forms;
    for (const Row &row : kRows) {
        Panels p = windowsPanels();
        row.set(p);
        EXPECT_EQ(compose(p, row.piece, row.useRaw, row.dataDisc, row.lock, forms), row.expected) << row.what;
    }
    Panels p = windowsPanels();
    p.w.chkMultiSession = 1;
    bool useRaw = true;
    writeDevice(p.w, p.s, p.d, useRaw, true, false, forms);
    EXPECT_FALSE(useRaw) << "the caller learns that raw was refused";
}

// On Linux every tool takes the device path, whatever the SPTI and lock
// choices say; the rest of each fragment is the same.
TEST(Fragments, TheSameWithLinuxDevicePaths) {
    const platform::LinuxDriveLayer linux("/nonexistent");
    for (const Row &row : kRows) {
        if (row.what == std::string("ProDVD takes the drive's bare ASPI address")) continue;
        Panels p = windowsPanels();
        p.w.cmbWriterDevice = "/dev/sr1: HL-DT-ST, DVDRAM GH24NSB0";
        p.r.cmbReaderDevice = "/dev/sr0: ASUS, DRW: 24B1ST";
        row.set(p);
        std::string expected = row.expected;
        for (const char *form : {"SPTILOCK:1,0,0", "ASPILOCK:1,0,0", "SPTI:1,0,0", "ASPI:1,0,0"})
            if (auto at = expected.find(form); at != std::string::npos)
                expected.replace(at, std::string(form).size(), "/dev/sr1");
        for (const char *form : {"SPTILOCK:1,1,0", "ASPI:1,1,0"})
            if (auto at = expected.find(form); at != std::string::npos)
                expected.replace(at, std::string(form).size(), "/dev/sr0");
        EXPECT_EQ(compose(p, row.piece, row.useRaw, row.dataDisc, row.lock, linux), expected) << row.what;
    }
}

TEST(Fragments, HexOrWithoutPadding) {
    const std::pair<std::initializer_list<std::string_view>, const char *> rows[] = {
        {{"0", "00000040"}, "40"},
        {{"00000010", "00200000"}, "200010"},
        {{"10", "00000010"}, "10"},
        {{"ff", "100"}, "1FF"},
        {{"0"}, "0"},
    };
    for (const auto &[words, result] : rows) EXPECT_EQ(hexOr(words), result);
}

}  // namespace
