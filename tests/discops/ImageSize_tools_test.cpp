// Image sizes from the real cdrdao toc-info, run through the program's own
// command runner, on images that real tools made: the bytes reported are the
// bytes the data files hold.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "discops/ImageSize.h"
#include "discops/ImageTestSupport.h"
#include "discops/SheetCheck.h"
#include "exec/CommandRunner.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::discops;
using saltmarrow::test::readFile;
using saltmarrow::test::TempDir;
using saltmarrow::test::writeFile;
namespace fs = std::filesystem;

namespace {

std::string cdrdaoProgram() {
    std::string linked = std::string(SALTMARROW_APP_DIR) + "/external/cdrdao";
    if (fs::exists(linked)) return linked;
    return "cdrdao";
}

// A program folder whose external/ is the start folder of every tool, as in
// the application.
struct RealTools {
    TempDir dir;
    std::string app = dir.file("app");
    CommandRunner runner{app + "/external"};
    ImageContext ctx;

    RealTools() {
        fs::create_directories(app + "/external");
        ctx.appDir = app;
        ctx.cdrdao = cdrdaoProgram();
        ctx.run = [this](const std::string &command) {
            bool ok = runner.commandExecute(command);
            return CommandResult{ok, runner.commandOutput};
        };
    }
    // Runs a tool to make test material; fails the test if it fails.
    void make(const std::vector<std::string> &arguments) {
        ASSERT_EQ(test::runTool(arguments).exitCode, 0) << arguments.front();
    }
    std::string randomFile(const std::string &name, std::size_t bytes) {
        std::mt19937 random(static_cast<unsigned>(bytes));
        std::string data(bytes, '\0');
        for (auto &c : data) c = static_cast<char>(random());
        std::string path = dir.file(name);
        writeFile(path, data);
        return path;
    }
};

bool haveTools() {
    return test::haveProgram("cdrdao") || fs::exists(cdrdaoProgram());
}

}  // namespace

TEST(ImageSizeTools, AnIsoMadeByGenisoimageIsAsLargeAsItsFile) {
    if (!haveTools() || !test::haveProgram("genisoimage")) GTEST_SKIP() << "cdrdao or genisoimage missing";
    RealTools t;
    fs::create_directories(t.dir.file("tree/sub"));
    t.randomFile("tree/a.dat", 700000);
    t.randomFile("tree/sub/b.dat", 123457);
    std::string iso = t.dir.file("disc image.iso");
    t.make({"genisoimage", "-quiet", "-r", "-J", "-o", iso, t.dir.file("tree")});

    std::int16_t size = 2352;
    EXPECT_EQ(imageSize(iso, size, t.ctx), static_cast<std::int64_t>(fs::file_size(iso)));
    EXPECT_EQ(size, 2048);
    EXPECT_FALSE(fs::exists(t.app + "/external/TEMP/temp.toc"));
}

TEST(ImageSizeTools, CueAndBinPairsAreAsLargeAsTheirBin) {
    if (!haveTools()) GTEST_SKIP() << "cdrdao missing";
    RealTools t;
    // Each track type a cue sheet may give, measured as the sheet's bin.
    std::int16_t size = 0;
    for (const auto &[type, bytes] : {std::pair{"MODE1/2352", 2352},
                                      {"MODE1/2048", 2048},
                                      {"MODE2/2324", 2324},
                                      {"MODE2/2336", 2336},
                                      {"CDI/2336", 2336},
                                      {"AUDIO", 2352}}) {
        std::string bin = t.randomFile("data.bin", bytes * 450u);
        writeFile(t.dir.file("data.cue"), "FILE \"data.bin\" BINARY\r\n  TRACK 01 " + std::string(type) +
                                              "\r\n    INDEX 01 00:00:00\r\n");
        EXPECT_EQ(imageSize(t.dir.file("data.cue"), size, t.ctx),
                  static_cast<std::int64_t>(fs::file_size(bin)))
            << type;
        EXPECT_EQ(size, bytes) << type;
    }

    // An audio track of sound made by sox, named in another case than the bin.
    if (!test::haveProgram("sox")) GTEST_SKIP() << "sox missing";
    std::string sound = t.dir.file("Concert.BIN");
    t.make({"sox", "-n", "-r", "44100", "-c", "2", "-b", "16", "-e", "signed-integer", "-t", "raw", sound,
            "synth", "6", "sine", "440"});
    writeFile(t.dir.file("Concert.cue"),
              "FILE \"Concert.bin\" BINARY\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n");
    size = 2048;
    EXPECT_EQ(imageSize(t.dir.file("Concert.cue"), size, t.ctx),
              static_cast<std::int64_t>(fs::file_size(sound)));
    EXPECT_EQ(size, 2352);
}

TEST(ImageSizeTools, ATocOfWaveFilesIsAsLargeAsTheirSound) {
    if (!haveTools() || !test::haveProgram("sox")) GTEST_SKIP() << "cdrdao or sox missing";
    RealTools t;
    std::string one = t.dir.file("one.wav");
    std::string two = t.dir.file("two.wav");
    for (const auto &[file, seconds] : {std::pair{one, "4"}, {two, "7.2"}})
        t.make({"sox", "-n", "-r", "44100", "-c", "2", "-b", "16", file, "synth", seconds, "sine", "300"});
    std::string toc = t.dir.file("audio.toc");
    writeFile(toc, "CD_DA\r\n\r\nTRACK AUDIO\r\nFILE \"" + one + "\" 0\r\n\r\nTRACK AUDIO\r\nFILE \"" + two +
                       "\" 0\r\n");

    std::int16_t size = 2048;
    EXPECT_EQ(imageSize(toc, size, t.ctx), 1975680) << "(4 + 7.2) s of sound, not the headers";
    EXPECT_EQ(size, 2352);
}

TEST(ImageSizeTools, TheTrackTypeTableCountsAsCdrdaoDoes) {
    if (!haveTools()) GTEST_SKIP() << "cdrdao missing";
    RealTools t;
    // cdrdao reads a data file of 300 blocks of the size we think the type has
    // as exactly 300 blocks.
    for (const char *type : {"MODE1", "MODE2_FORM1", "MODE2_FORM2", "MODE2", "MODE2_FORM_MIX", "AUDIO",
                             "MODE1_RAW", "MODE2_RAW"}) {
        SCOPED_TRACE(type);
        auto blockSize = blockSizeOfTrackType(type);
        ASSERT_TRUE(blockSize.has_value());
        std::string data = t.randomFile(std::string(type) + ".bin", 300u * *blockSize);
        std::string toc = t.dir.file(std::string(type) + ".toc");
        writeFile(toc, dataTrackSheet(type, data));
        std::int16_t field = 0;
        EXPECT_EQ(tocInfo(toc, field, t.ctx), "300");
    }
}

TEST(ImageSizeTools, WhatCdrdaoCannotReadHasNoSize) {
    if (!haveTools()) GTEST_SKIP() << "cdrdao missing";
    RealTools t;
    const std::pair<std::string, std::string> sheets[] = {
        {"missing.toc", "CD_ROM\r\n\r\nTRACK MODE1\r\nDATAFILE \"/no/such/file.bin\"\r\n"},
        {"garbage.toc", "this is no sheet at all\r\n"},
        {"empty.toc", ""},
        // Relative names are read from the tools' folder, where there is none.
        {"relative.toc", "CD_ROM\r\nTRACK MODE1\r\nDATAFILE \"rel.bin\"\r\n"},
    };
    t.randomFile("rel.bin", 2048 * 300);
    for (const auto &[name, text] : sheets) {
        SCOPED_TRACE(name);
        writeFile(t.dir.file(name), text);
        std::int16_t size = 2336;
        EXPECT_EQ(imageSize(t.dir.file(name), size, t.ctx), 0);
        EXPECT_EQ(readFile(t.dir.file(name)), text);
    }
    // A cue sheet whose bin is missing measures nothing either.
    writeFile(t.dir.file("alone.cue"), "FILE \"alone.bin\" BINARY\nTRACK 01 MODE1/2048\n");
    std::int16_t size = 0;
    EXPECT_EQ(imageSize(t.dir.file("alone.cue"), size, t.ctx), 0);
}
