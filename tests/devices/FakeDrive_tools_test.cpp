// Discovery, drive queries and the write interpreter driven through the real
// command runner against the fake drive of tests/fixtures, which answers as
// cdrdao and dvdrecord from <app>/external.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "../exec/RecordingView.h"
#include "FakeDriveRig.h"
#include "ScriptedHost.h"
#include "devices/DeviceInfoText.h"
#include "devices/Discovery.h"
#include "devices/DriveQueries.h"
#include "discops/Fragments.h"
#include "exec/CommandRunner.h"
#include "exec/OutputInterpreter.h"
#include "platform/DriveLayer.h"
#include "support/mdlFunctions.h"
#include "testlib/FakeDrive.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using saltmarrow::test::RecordingView;
using saltmarrow::test::ScriptedHost;

namespace {

constexpr std::string_view kWriter = R"(
aspi = ok
spti = ok
[device]
address = 1,0,0
aspi_address = 0,1,0
vendor = PLEXTOR
model = PX-W4012A
firmware = 1.01
driver_table = generic-mmc:0x10
reads = CD-R CD-RW CD-ROM
writes = CD-R CD-RW
features = BURN-Proof
buffer = 2048
underrun = yes
max_speed = 40
speeds = 40x 32x 24x
rewritable = yes
blank = yes
appendable = no
capacity = 359849
)";

struct FakeDrive : ::testing::Test, test::FakeDriveRig {};

TEST_F(FakeDrive, StartupFindsAWriterAndAReader) {
    drives(std::string(kWriter) + "medium = CD-R\n" + test::fakeReader());
    discover();
    EXPECT_EQ(state.availableInterfaces, 3);
    EXPECT_EQ(lists.reader,
              (std::vector<std::string>{"0,1,0: PLEXTOR, PX-W4012A", "0,2,0: LITEON, DVD-ROM LTD163"}));
    EXPECT_EQ(lists.writer, std::vector<std::string>{"0,1,0: PLEXTOR, PX-W4012A"});
    const DeviceInfo &writer = state.devices.item(0);
    EXPECT_EQ(writer.SPTIDeviceID, "1,0,0");
    EXPECT_EQ(writer.Driver, "generic-mmc");
    EXPECT_EQ(writer.DriverOptions, "10");
    EXPECT_EQ(writer.Firmware, "1.01");
    EXPECT_EQ(writer.WriteFeatures, "CD-R CD-RW ");
    EXPECT_EQ(writer.BufferSize, "2048");
    EXPECT_EQ(writer.WriteSpeeds, "40x") << "the drive's own list, read as text";
    EXPECT_EQ(writer.LastMediaType, "CD-R");
    const DeviceInfo &reader = state.devices.item(1);
    EXPECT_EQ(reader.Driver, "generic-mmc");
    EXPECT_EQ(reader.DriverOptions, "0");
    EXPECT_FALSE(reader.isWriter);
    EXPECT_FALSE(reader.MediaInserted);
    EXPECT_EQ(calls(), (std::vector<std::string>{
                           "cdrdao scanbus", "cdrdao scanbus --spti", "cdrdao dt-lookup --device ASPI:0,1,0",
                           "cdrdao drive-info --device ASPI:0,1,0 --driver generic-mmc",
                           "cdrdao dt-lookup --device ASPI:0,2,0",
                           "cdrdao drive-info --device ASPI:0,2,0 --driver generic-mmc"}));
    EXPECT_EQ(fake.log.substr(0, 6), "Cdrdao") << "the log window shows the scan";
    EXPECT_NE(test::readFile(external + "/TEMP/commandlog.txt").find("0,2,0: LITEON, DVD-ROM LTD163, GHR3"),
              std::string::npos);
}

TEST_F(FakeDrive, LayersThatDoNotLoad) {
    drives(std::string("aspi = missing\n") + std::string(kWriter.substr(kWriter.find("[device]"))));
    discover();
    EXPECT_EQ(fake.statuses, std::vector<std::string>{"Cannot load ASPI driver."});
    EXPECT_EQ(calls(), std::vector<std::string>{"cdrdao scanbus"}) << "no SPTI scan after a failed ASPI scan";
    EXPECT_TRUE(lists.reader.empty());

    drives(std::string("aspi = noadapters\nspti = missing\n") +
           std::string(kWriter.substr(kWriter.find("[device]"))));
    state = DeviceState{};
    fake.statuses.clear();
    discover();
    EXPECT_EQ(fake.statuses, std::vector<std::string>{"Could not find any host adapters."});
}

TEST_F(FakeDrive, WriterThatOnlySaysMax) {
    std::string text(kWriter);
    text.replace(text.find("speeds = 40x 32x 24x"), 20, "speeds = MAX");
    drives(text + "medium = CD-R\n");
    discover();
    ASSERT_EQ(lists.writer.size(), 1u);
    EXPECT_EQ(state.devices.item(0).WriteSpeeds, "Max");
    EXPECT_EQ(writerPanel().cmbSpeedItems, std::vector<std::string>{"Max"});
}

TEST_F(FakeDrive, MediumChangesBetweenCalls) {
    drives(std::string(kWriter) + "medium = n/a; CD-R; n/a\n");
    state.chkUseSPTI = 1;
    discover();
    DeviceInfo &writer = state.devices.item(0);
    EXPECT_FALSE(writer.MediaInserted);
    EXPECT_EQ(writer.LastMediaType, "");
    updateDriveInfo(state, fake.host, 0, false, false);
    EXPECT_TRUE(writer.MediaInserted);
    EXPECT_EQ(writer.LastMediaType, "CD-R");
    updateDriveInfo(state, fake.host, 0, true, false);
    EXPECT_TRUE(writer.MediaInserted) << "a removal is skipped when asked";
    EXPECT_EQ(calls().back(), "cdrdao drive-info --device SPTI:1,0,0 --driver generic-mmc");
}

TEST_F(FakeDrive, DriveThatIsSlowToAnswer) {
    drives(std::string(kWriter) + "medium = CD-RW\nsilent_drive_info = 2\n");
    discover();
    EXPECT_EQ(std::count(fake.sleeps.begin(), fake.sleeps.end(), 10), 50) << "two pauses of 250 ms";
    EXPECT_EQ(state.devices.item(0).LastMediaType, "CD-RW");
    EXPECT_EQ(state.driveRetries, 0);
}

TEST_F(FakeDrive, UsedRewritableIsErasedAndReadAgain) {
    std::string text(kWriter);
    text.replace(text.find("blank = yes"), 11, "blank = no");
    drives(text + "medium = CD-RW\n");
    discover();
    const WritePanel panel = writerPanel();
    FragmentSettings settings;
    DiscStatusContext context;
    context.panel = &panel;
    context.settings = &settings;
    int offers = 0;
    context.offerErase = [&] {
        ++offers;
        bool useRaw = false;
        fake.host.run(vb::quoteString(fake.host.cdrdao) + " blank" +
                      writeDevice(panel, settings, state.devices.item(0), useRaw, false, false, layer) +
                      "--blank-mode minimal");
        return false;
    };
    const auto result = splitDiscStatus(discStatus(state, fake.host, context));
    EXPECT_EQ(offers, 1);
    EXPECT_EQ(result.status, 'E');
    EXPECT_EQ(result.blocks, 359849);
    EXPECT_EQ(result.rewritable, 1);
    const auto log = calls();
    ASSERT_GE(log.size(), 3u);
    EXPECT_EQ(std::vector<std::string>(log.end() - 3, log.end()),
              (std::vector<std::string>{
                  "cdrdao disk-info --device ASPI:0,1,0 --driver generic-mmc:0x10",
                  "cdrdao blank --device ASPI:0,1,0 --driver generic-mmc:0x10 --blank-mode minimal",
                  "cdrdao disk-info --device ASPI:0,1,0 --driver generic-mmc:0x10"}));
}

TEST_F(FakeDrive, DeviceDialogOfABlankAppendableRewritable) {
    std::string text(kWriter);
    text.replace(text.find("appendable = no"), 15, "appendable = yes");
    drives(text + "medium = CD-RW\nmanufacturer = Ritek Co.\n" + test::fakeReader());
    discover();
    const DeviceTab writer = ShowDeviceInfo(state.devices.item(0));
    EXPECT_EQ(writer.caption, "PLEXTOR, PX-W4012A");
    EXPECT_EQ(writer.lblTypeValue, "CD Writer");
    EXPECT_EQ(writer.lblBufferValue, "2048kb");
    EXPECT_TRUE(writer.chkWriteFeature[1]);
    EXPECT_TRUE(writer.chkWriteFeature[7]) << "buffer protection";
    EXPECT_FALSE(writer.chkWriteFeature[3]);
    EXPECT_EQ(ShowDeviceInfo(state.devices.item(1)).lblTypeValue, "DVD\\CD Reader");

    const WritePanel panel = writerPanel();
    bool useRaw = false;
    const std::string command =
        vb::quoteString(fake.host.cdrdao) + " disk-info" +
        writeDevice(panel, FragmentSettings{}, state.devices.item(0), useRaw, false, false, layer);
    ASSERT_TRUE(runner.commandExecute(command));
    const MediaTab media = MediaInfo(state.devices.item(0), runner.objDOS.totalOutput, 0);
    EXPECT_TRUE(media.chkMedia[0]);
    EXPECT_TRUE(media.chkMedia[1]);
    EXPECT_FALSE(media.chkMedia[2]) << "the appendable key never matches the tool's padded line";
    EXPECT_EQ(media.lblCapacityValue, "79:57:74 (359849s, 702/807 MB)");
    EXPECT_EQ(media.lblManufacturerValue.substr(0, 9), "Ritek Co.");
    EXPECT_EQ(media.lblSessionsValue, "n/a") << "a blank disc has no sessions line";
    EXPECT_EQ(media.lblWriteSpeedValue, "40x");

    state.devices.item(1).LastMediaType = "DVD-ROM";
    state.devices.item(1).MediaInserted = true;
    EXPECT_EQ(MediaInfo(state.devices.item(1), runner.objDOS.totalOutput, 4.7e9).lblCapacityValue, "4482 MB");
    EXPECT_TRUE(mediaInfoStopsAt("WARNING: Unit not ready, still trying..."));
    EXPECT_FALSE(mediaInfoStopsAt("ERROR: Unit not ready, giving up."));
}

TEST_F(FakeDrive, WrongArgumentsAreRefusedLoudly) {
    drives(std::string(kWriter));
    const std::string cdrdao = vb::quoteString(external + "/cdrdao");
    EXPECT_FALSE(runner.commandExecute(cdrdao + " drive-info --device ASPI:0,1,0 --driver fastest"));
    EXPECT_NE(runner.objDOS.totalOutput.find("unknown driver 'fastest'"), std::string::npos);
    EXPECT_FALSE(runner.commandExecute(cdrdao + " disk-info --device ASPI:01,0 --driver generic-mmc"));
    EXPECT_FALSE(
        runner.commandExecute(cdrdao + " write --device ASPI:0,1,0 --driver generic-mmc --fast x.toc"));
    EXPECT_NE(runner.objDOS.totalOutput.find("option --fast is not one of write"), std::string::npos);
    EXPECT_FALSE(runner.commandExecute(vb::quoteString(external + "/dvdrecord") + " dev=SPTI-1,0,0 -v"));
}

// The write of a data track: the fake reads the sheet's file and reports each
// megabyte; the runner hands the output over in 256-byte reads.
struct WriteRun : FakeDrive {
    RecordingView view;
    InterpreterState interpreterState;
    OutputInterpreter interpreter{view, interpreterState, view.clock()};
    std::string sheet = app.file("image.toc");

    void SetUp() override {
        FakeDrive::SetUp();
        runner.objDOS.ReceiveOutputs = [this](const std::string &line) {
            interpreter.objDOS_ReceiveOutputs(line);
        };
        runner.objDOS.nullOutputs = [this] { interpreter.objDOS_nullOutputs(); };
        fake.host.currentMode = [this] { return view.mode; };
        fake.host.ChangeCurrentMode = [this](const std::string &mode) { view.mode = mode; };
        // Each progress line comes 0.3 s after the one before.
        view.onLine = [this](const std::string &line) {
            if (line.rfind("Wrote ", 0) == 0) view.now += 0.3;
        };
    }
    void image(long long bytes) {
        test::writeFile(app.file("image.bin"), std::string(static_cast<std::size_t>(bytes), '\x5a'));
        test::writeFile(sheet,
                        "CD_ROM\n\nTRACK MODE1\nDATAFILE " + vb::quoteString(app.file("image.bin")) + "\n");
    }
    bool write() {
        const WritePanel panel = writerPanel();
        FragmentSettings settings;
        bool useRaw = true;
        view.mode = "WRITE CD";
        return runner.commandExecute(
            vb::quoteString(fake.host.cdrdao) + " write" +
            writeDevice(panel, settings, state.devices.item(0), useRaw, true, false, layer) +
            WriteOptions(panel, settings) + vb::quoteString(sheet));
    }
    std::vector<std::string> statuses() const {
        std::vector<std::string> out;
        for (const auto &e : view.events)
            if (e.rfind("status ", 0) == 0) out.push_back(e.substr(7));
        return out;
    }
};

TEST_F(WriteRun, ProgressAndStatusFollowTheBytesRead) {
    drives(std::string(kWriter) + "medium = CD-R\n");
    discover();
    image(11LL * 1048576 - 2048);
    // The real cdrdao, reached through the fake, accepts the sheet.
    ASSERT_TRUE(
        runner.commandExecute(vb::quoteString(fake.host.cdrdao) + " toc-info " + vb::quoteString(sheet)))
        << runner.objDOS.totalOutput;
    EXPECT_NE(runner.commandOutput.find("image.toc: 1 tracks"), std::string::npos);

    EXPECT_TRUE(write());
    EXPECT_TRUE(view.writeSucceeded);
    EXPECT_FALSE(view.writeFailed);
    // Megabytes 1 and 2 are never shown; 3 is, then one update each 0.5 s
    // (every second line), and the last always.
    EXPECT_EQ(view.progressEvents(),
              (std::vector<std::string>{"value 3", "max 11", "value 5", "max 11", "value 7", "max 11",
                                        "value 9", "max 11", "value 11", "max 11"}));
    EXPECT_EQ(statuses(),
              (std::vector<std::string>{"Starting write at speed 40...", "Executing power calibration...",
                                        "Power calibration successful.", "Writing lead-in and gap...",
                                        "Writing Track 01...", "Wrote 3 of 11 MB (Buffer 99%)",
                                        "Wrote 5 of 11 MB (Buffer 99%)", "Wrote 7 of 11 MB (Buffer 99%)",
                                        "Wrote 9 of 11 MB (Buffer 99%)", "Wrote 11 of 11 MB (Buffer 99%)"}));
    EXPECT_EQ(view.log.find("Wrote "), std::string::npos);
    EXPECT_EQ(view.log.find("QUIT signal"), std::string::npos);
    EXPECT_EQ(view.log.find("Using driver"), std::string::npos);
    EXPECT_NE(view.log.find("Writing finished successfully."), std::string::npos);
    EXPECT_EQ(std::count(view.commandLog.begin(), view.commandLog.end(), "Wrote 4 of 11 MB (Buffer 100%)."),
              1);
    EXPECT_EQ(calls().back(),
              "cdrdao write --device ASPI:0,1,0 --driver generic-mmc:0x10 --eject --reload --speed 40 -n "
              "--buffers 256 -v 2 " +
                  sheet);
}

TEST_F(WriteRun, WriteErrorFailsTheRun) {
    drives(std::string(kWriter) + "medium = CD-R\nwrite_error_mb = 4\n");
    discover();
    image(8LL * 1048576);
    EXPECT_FALSE(write());
    EXPECT_TRUE(view.writeFailed);
    EXPECT_FALSE(view.writeSucceeded);
    EXPECT_EQ(view.status, "ERROR: Write failed, please consult the log.");
    EXPECT_EQ(view.max, 8);
}

TEST_F(WriteRun, DvdImageFromGenisoimage) {
    if (!test::haveProgram("genisoimage")) GTEST_SKIP() << "genisoimage is not installed";
    drives(std::string(kWriter) + "medium = DVD-R\n");
    discover();
    EXPECT_TRUE(view.log.empty()) << "discovery runs hidden";
    std::filesystem::create_directories(app.file("tree"));
    test::writeFile(app.file("tree/big.dat"), std::string(5 * 1048576, 'q'));
    ASSERT_TRUE(runner.commandExecute("genisoimage -quiet -o " + vb::quoteString(app.file("disc.iso")) + " " +
                                      vb::quoteString(app.file("tree"))));

    // The size run: no file named, the writer fails after telling its room.
    view.mode = "DVD_SIZE";
    const std::string dvdrecord = vb::quoteString(external + "/dvdrecord");
    EXPECT_FALSE(runner.commandExecute(dvdrecord + " dev=ASPI:0,1,0 -v -dao "));
    EXPECT_NE(runner.objDOS.totalOutput.find("Blocks total: 2295104 Blocks current:"), std::string::npos);
    EXPECT_TRUE(view.log.empty());

    WritePanel panel = writerPanel();
    FragmentSettings settings;
    bool useRaw = false;
    view.mode = "WRITE DVD";
    EXPECT_TRUE(runner.commandExecute(
        dvdrecord + writeDVDCommand(panel, settings, state.devices.item(0), useRaw, true, false, layer) +
        " " + vb::quoteString(app.file("disc.iso"))));
    EXPECT_TRUE(view.writeSucceeded);
    const auto events = view.progressEvents();
    ASSERT_GE(events.size(), 2u);
    EXPECT_EQ(events[0].substr(0, 4), "max ") << "the DVD display sets Max first";
    EXPECT_EQ(view.status.substr(0, 6), "Wrote ");
    EXPECT_EQ(view.log.find("scsidev"), std::string::npos);
    EXPECT_EQ(view.log.find("MB written"), std::string::npos);
}

}  // namespace

namespace {

TEST_F(WriteRun, DataPipedFromGenisoimageIsCountedAsItArrives) {
    if (!test::haveProgram("genisoimage")) GTEST_SKIP() << "genisoimage is not installed";
    drives(std::string(kWriter) + "medium = CD-R\n");
    discover();
    std::filesystem::create_directories(app.file("tree"));
    test::writeFile(app.file("tree/big.dat"), std::string(6 * 1048576 + 123, 'p'));
    ASSERT_TRUE(runner.commandExecute("genisoimage -quiet -print-size " + vb::quoteString(app.file("tree"))));
    const long blocks = static_cast<long>(vb::Val(runner.commandOutput));
    ASSERT_GT(blocks, 3072);
    test::writeFile(sheet, "CD_ROM\n\nTRACK MODE1\nDATAFILE \"-\" " + std::to_string(blocks * 2048L) + "\n");
    const std::string batch = external + "/TEMP/command.bat";
    test::writeFile(batch, "@ECHO OFF\r\ngenisoimage -quiet " + vb::quoteString(app.file("tree")) + " | " +
                               vb::quoteString(fake.host.cdrdao) +
                               " write --device ASPI:0,1,0 --driver generic-mmc " + vb::quoteString(sheet) +
                               "\r\n");
    view.mode = "DATA CD";
    EXPECT_TRUE(runner.commandExecute(vb::quoteString(batch)));
    EXPECT_TRUE(view.writeSucceeded);
    const std::string total = std::to_string((blocks * 2048L + 1048575) / 1048576);
    EXPECT_EQ(view.status, "Wrote " + total + " of " + total + " MB (Buffer 99%)");
}

TEST_F(WriteRun, DriveNotReadyWhileCheckingTheDisc) {
    drives(std::string(kWriter) + "medium = CD-R\nnot_ready = 2\n");
    discover();
    view.recordedSounds.played.clear();
    const WritePanel panel = writerPanel();
    FragmentSettings settings;
    DiscStatusContext context;
    context.panel = &panel;
    context.settings = &settings;
    fake.host.showStatus = [this](const std::string &text) { view.setStatus(text); };
    fake.host.message = [this](std::string_view key) { return view.message(key); };
    const auto result = splitDiscStatus(discStatus(state, fake.host, context));
    EXPECT_EQ(result.status, 'E');
    EXPECT_EQ(view.recordedSounds.played, (std::vector<std::string>{"DeviceFail", "DeviceFail"}));
    EXPECT_EQ(std::count(view.events.begin(), view.events.end(),
                         "status WARNING: Drive not ready, still trying..."),
              2);
    EXPECT_NE(view.log.find("WARNING: Unit not ready, still trying..."), std::string::npos);
    EXPECT_EQ(view.mode, "") << "the mode before the check is back";
}

TEST_F(FakeDrive, AudioExtractionAsCdda2wav) {
    drives(std::string(kWriter) + "medium = CD-R\ntracks = 750 1500\n");
    const std::string cdda2wav = vb::quoteString(external + "/cdda2wav");
    ASSERT_TRUE(runner.commandExecute(cdda2wav + " dev=ASPI:0,1,0 -J -gui -H -B -v toc"));
    EXPECT_NE(runner.commandOutput.find("T02:     750  0:20.00 audio"), std::string::npos);
    const std::string wav = app.file("track2.wav");
    ASSERT_TRUE(
        runner.commandExecute(cdda2wav + " dev=ASPI:0,1,0 -gui -B -H -x -t2+2 " + vb::quoteString(wav)));
    if (!test::haveProgram("soxi")) GTEST_SKIP() << "sox is not installed";
    ASSERT_TRUE(runner.commandExecute("soxi -s " + vb::quoteString(wav)));
    EXPECT_EQ(vb::Val(runner.commandOutput), 1500.0 * 588) << "20 seconds of CD audio";
}

}  // namespace

namespace {

TEST_F(WriteRun, HangingWriteEndsOnlyByCancel) {
    drives(std::string(kWriter) + "medium = CD-R\nhang = write\n");
    discover();
    image(4LL * 1048576);
    int idle = 0;
    runner.objDOS.nullOutputs = [&] {
        // The user's Cancel, once the tool has gone quiet for a while.
        if (++idle == 200) runner.objDOS.killInstantly();
    };
    EXPECT_FALSE(write());
    EXPECT_GE(idle, 200);
    EXPECT_FALSE(view.writeSucceeded);
    EXPECT_TRUE(view.progressEvents().empty());
    EXPECT_NE(std::find(view.commandLog.begin(), view.commandLog.end(),
                        "ASPI:0,1,0: PLEXTOR  PX-W4012A  Rev: 1.01"),
              view.commandLog.end());
}

}  // namespace
