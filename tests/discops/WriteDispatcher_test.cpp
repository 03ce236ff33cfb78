// The Write button's order of checks, without widgets: each row a state of
// the panel, the drive and the disc, and what the form is asked to do.
#include "discops/WriteDispatcher.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "../devices/ScriptedHost.h"
#include "platform/Dialogs.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::discops;
namespace mb = saltmarrow::platform::mb;

namespace {

struct Disc {
    std::string medium;
    bool blank = true, rewritable = false, readable = true;
};

struct Row {
    const char *what;
    Mode mode;
    Disc disc;
    std::string image = "disc.toc";  // in the images folder; "" for none
    bool confirm = false;
    int answer = mb::OK;  // to the confirmation
    std::vector<std::string> events;
    std::string writer = "/dev/fake0: PLEXTOR, PX-W4012A";
    bool cancelling = false;
};

// Every row past the first three starts with "enable 0" and ends with "enable 1".
const std::string kCheck = "status Checking for writable media...";
const std::string kMismatch = "box Current project does not match inserted media! 48";
const std::string kCancelled = "status Write Operation Cancelled.";
const std::string kFigures = "box 1 MB to be written to disc (703 MB free). 65";
const std::string kNotBlank = "box Inserted medium is not blank! 48";
// clang-format off
const Row kRows[] = {
    {"a second click cancels", Mode::WriteCD, {"CD-R"}, "disc.toc", false, mb::OK, {"kill"}, "", true},
    {"no writer", Mode::WriteCD, {"CD-R"}, "disc.toc", false, mb::OK,
     {"box Please select a Write Device. 48", "settings", "enable 1"}, ""},
    {"nothing loaded: the open dialog", Mode::None, {"CD-R"}, "", false, mb::OK, {"choose"}},
    {"a sheet onto a DVD", Mode::WriteCD, {"DVD+R"}, "disc.toc", false, mb::OK, {kMismatch}},
    {"an ISO onto a DVD is a DVD job", Mode::WriteCD, {"DVD-R"}, "disc.iso", false, mb::OK,
     {"autohide", "job dvd WriteDVD"}},
    {"a copy", Mode::CopyCD, {"CD-R"}, "", false, mb::OK, {"autohide", "job copy CopyCD"}},
    {"a data CD without its form in this build", Mode::DataCD, {"CD-R"}, "", false, mb::OK,
     {"autohide", kCancelled}},
    {"a disc that is not blank", Mode::WriteCD, {"CD-R", false}, "disc.toc", false, mb::OK,
     {"autohide", kCheck, kNotBlank, kCancelled}},
    {"a used rewritable is offered for erasing first", Mode::AudioCD, {"CD-RW", false, true}, "disc.toc", false,
     mb::OK, {"autohide", kCheck, "offer erase", kNotBlank, kCancelled}},
    {"a disc that cannot be read ends without a word", Mode::WriteCD, {"CD-R", true, false, false}, "disc.toc",
     false, mb::OK, {"autohide", kCheck, "status Operation Cancelled"}},
    {"cancelled at the figures", Mode::WriteCD, {"CD-R"}, "disc.toc", true, mb::Cancel,
     {"autohide", kCheck, "refresh", kFigures, kCancelled}},
    {"a sheet onto a blank CD", Mode::WriteCD, {"CD-R"}, "disc.toc", true, mb::OK,
     {"autohide", kCheck, "refresh", kFigures, "write disc.toc"}},
    {"an ISO onto a CD through a sheet around it", Mode::WriteCD, {"CD-R"}, "disc.iso", false, mb::OK,
     {"autohide", kCheck, "refresh", "write tempiso.toc"}},
};
// clang-format on

// The tools as far as the dispatcher asks them, for one disc.
std::string answer(const std::string &command, const Disc &disc) {
    if (command.find(" drive-info ") != std::string::npos) return "\r\nMaximum writing speed: 7056 kB/s";
    if (command.find("mediainfo") != std::string::npos)
        return disc.medium.rfind("DVD", 0) == 0 ? "\r\n Mounted Media:         11h, " + disc.medium
                                                : "\r\n:-( non-DVD media mounted, exiting...";
    if (command.find(" toc-info ") != std::string::npos)
        return "\r\ndisc.toc: 1 tracks, length 00:06:00, 450 blocks, 0.878906 MB";
    if (command.find(" disk-info ") == std::string::npos) return {};
    return test::asOutput(test::diskInfo(disc.rewritable, disc.blank, false));
}

TEST(WriteDispatcher, TheChecksInTheirOrder) {
    for (const Row &row : kRows) {
        SCOPED_TRACE(row.what);
        std::vector<std::string> expected = row.events;
        if (&row - kRows >= 3) {
            expected.insert(expected.begin(), "enable 0");
            expected.push_back("enable 1");
        }
        test::TempDir dir;
        std::filesystem::create_directories(dir.file("app/external/TEMP"));
        std::filesystem::create_directories(dir.file("images"));
        test::writeFile(dir.file("images/disc.bin"), std::string(450 * 2048, 'x'));
        test::writeFile(dir.file("images/disc.toc"),
                        "CD_ROM\r\n\r\nTRACK MODE1\r\nDATAFILE \"disc.bin\"\r\n");
        test::writeFile(dir.file("images/disc.iso"), std::string(450 * 2048, 'x'));

        test::ScriptedHost fake;
        fake.host.mediaInfoTool = "/app/external/dvd+rw-mediainfo";
        fake.host.run = [&](const std::string &command) {
            const std::string out = answer(command, row.disc);
            return ToolRun{row.disc.readable && !out.empty(), out};
        };
        fake.mode = row.mode;
        DeviceState devices;
        DeviceInfo writer;
        writer.ASPIDeviceID = "/dev/fake0";
        writer.Driver = "generic-mmc";
        writer.DriverOptions = "0";
        devices.devices.Add("1", writer);

        ImageSlot slot;
        slot.strFilename = row.image.empty() ? "" : dir.file("images/" + row.image);
        slot.imageBytes = 450 * 2048;
        ImageContext ctx;
        ctx.appDir = dir.file("app");
        ctx.msg = [](const std::string &key) { return test::englishText(key); };
        ctx.run = [&](const std::string &command) { return CommandResult{true, answer(command, row.disc)}; };

        std::vector<std::string> events;
        bool writeCancelled = false;
        WritePlan written;
        WriteHost host;
        host.box = [&](const std::string &text, int style) {
            events.push_back("box " + text + " " + std::to_string(style));
            return style == (mb::Information | mb::OKCancel) ? row.answer : mb::OK;
        };
        host.status = [&](const std::string &text) { events.push_back("status " + text); };
        fake.host.showStatus = host.status;
        host.killInstantly = [&] { events.push_back("kill"); };
        host.writeCancelled = &writeCancelled;
        host.openSettings = [&] { events.push_back("settings"); };
        host.chooseImage = [&] { events.push_back("choose"); };
        host.enableControls = [&](bool enable) {
            events.push_back(std::string("enable ") + (enable ? "1" : "0"));
        };
        host.autoHideSettings = [&] { events.push_back("autohide"); };
        WriteClick click;
        click.cancelling = row.cancelling;
        click.mode = row.mode;
        click.panel.cmbWriterDeviceIndex = row.writer.empty() ? -1 : 0;
        click.panel.cmbWriterDevice = row.writer;
        click.panel.cmbSpeed = "16x";
        click.confirmWrite = row.confirm;
        host.refreshMedia = [&] {
            events.push_back("refresh");
            return click.panel;
        };
        host.offerErase = [&] {
            events.push_back("offer erase");
            return true;
        };
        const auto job = [&](const char *name) {
            return [&events, &fake, name] {
                events.push_back(std::string("job ") + name +
                                 (fake.mode == Mode::WriteDVD ? " WriteDVD"
                                  : fake.mode == Mode::CopyCD ? " CopyCD"
                                                              : " other"));
            };
        };
        host.copyDisc = job("copy");
        host.writeDVDImage = job("dvd");
        host.write = [&](const WritePlan &plan) {
            events.push_back("write " + std::filesystem::path(plan.sheet).filename().string());
            written = plan;
        };

        cmdWrite_Click(click, devices, fake.host, slot, ctx, host);
        EXPECT_EQ(events, expected);
        EXPECT_EQ(writeCancelled, row.cancelling);
        if (&row - kRows >= 3) EXPECT_EQ(fake.mode, row.mode) << "the task is back";
        if (!row.image.empty()) {
            EXPECT_EQ(slot.strFilename, dir.file("images/" + row.image)) << "the image is back";
        }
        if (written.command.empty()) continue;
        EXPECT_EQ(written.command,
                  "\"" + dir.file("app/external/cdrdao") +
                      "\" write --device /dev/fake0 --driver "
                      "generic-mmc:0x0  --eject --reload --speed 16 -n --buffers 256 -v 2 \"" +
                      written.sheet + "\"");
        EXPECT_EQ(test::readFile(dir.file("app/external/TEMP/command.bat")),
                  "@ECHO OFF\r\n" + written.command + "\r\n");
        EXPECT_EQ(written.folder, std::filesystem::path(written.sheet).parent_path().string());
        EXPECT_EQ(slot.deleteCandidate, written.sheet);
    }
}

TEST(WriteDispatcher, TheMediumAgainstTheTask) {
    struct MediumRow {
        Mode mode;
        const char *medium;
        const char *image;
        bool allowed;
        Mode after;
    };
    // The rest is in the dispatcher's rows above.
    const MediumRow rows[] = {
        {Mode::DataDVD, "DVD+RW", "", true, Mode::DataDVD},
        {Mode::WriteCD, "DVD-ROM", "x.ISO", true, Mode::WriteDVD},
        {Mode::AudioCD, "DVD-RW", "", false, Mode::AudioCD},
        {Mode::WriteDVD, "CD-R", "x.iso", false, Mode::WriteDVD},
        {Mode::DataDVD, "CD-RW", "", false, Mode::DataDVD},
        {Mode::WriteCD, "DVD-RAM", "x.toc", true, Mode::WriteCD},  // a medium the program does not know
    };
    for (const MediumRow &row : rows) {
        const MediumDecision d = mediumFitsTask(row.mode, row.medium, row.image);
        EXPECT_EQ(!d.refusal, row.allowed) << row.medium << " " << row.image;
        EXPECT_EQ(d.mode, row.after) << row.medium << " " << row.image;
    }
}

}  // namespace
