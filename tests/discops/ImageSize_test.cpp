// The sizing of images against a stand-in for cdrdao: what toc-info is asked,
// the temporary sheet it reads, and how its summary line is understood.
#include "discops/ImageSize.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "discops/ImageTestSupport.h"
#include "discops/SheetCheck.h"
#include "support/RuntimeError.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::discops;
using saltmarrow::test::readFile;
using saltmarrow::test::TempDir;
using saltmarrow::test::writeFile;
namespace fs = std::filesystem;

namespace {

std::string summary(long long blocks, long long megabytes) {
    return "Cdrdao version 1.2.4 - (C) Andreas Mueller <andreas@daneb.de>\r\nimage.toc: 1 tracks, length "
           "00:04:00, " +
           std::to_string(blocks) + " blocks, " + std::to_string(megabytes) + " MB\r\n";
}

// cdrdao as far as toc-info goes: remembers each command and the sheet that
// it named as it stood then, and answers with the given output.
struct FakeCdrdao {
    TempDir dir;
    std::string app = dir.file("app");
    std::vector<std::string> commands;
    std::vector<std::string> sheets;
    CommandResult answer;

    FakeCdrdao() { fs::create_directories(app + "/external"); }
    ImageContext context() {
        ImageContext ctx;
        ctx.appDir = app;
        ctx.run = [this](const std::string &command) {
            commands.push_back(command);
            std::size_t open = command.find("toc-info \"");
            std::string sheet = command.substr(open + 10, command.size() - open - 11);
            sheets.push_back(readFile(sheet));
            return answer;
        };
        return ctx;
    }
    std::string toolCommand(const std::string &sheet) const {
        return "\"" + app + "/external/cdrdao\" toc-info \"" + sheet + "\"";
    }
};

}  // namespace

TEST(TocInfo, ReadsTheBlockCountOfTheSummaryLine) {
    std::int16_t size = 2336;
    EXPECT_EQ(tocInfoFromOutput(summary(300, 0), size), "300");
    EXPECT_EQ(size, 2336);  // 0 MB says nothing of the block size
    EXPECT_EQ(tocInfoFromOutput("x: 2 tracks, length 74:00:00, 333000 blocks, 746 MB", size), "333000");
    EXPECT_EQ(size, 2336);  // 746 MB of 333000 blocks is 2349 bytes a block: no CD size

    // A summary is all there is to go by; without one the answer is "0".
    const char *broken[] = {
        "",
        "ERROR: Cannot open toc file 'x.toc' for reading: No such file or directory",
        "x: 1 tracks, length 00:04:00",
        "x: 1 tracks, length 00:04:00, 300 sectors, 0 MB",
        "x: 1 tracks, length 00:04:00 300 blocks 0 MB",
    };
    for (const char *output : broken) {
        std::int16_t kept = 2324;
        EXPECT_EQ(tocInfoFromOutput(output, kept), "0") << output;
        EXPECT_EQ(kept, 2324);
    }
    std::int16_t zero = 2048;
    EXPECT_EQ(tocInfoFromOutput("x: 0 tracks, length 00:00:00, 0 blocks, 5 MB", zero), "0");
    EXPECT_EQ(zero, 2048);
}

TEST(TocInfo, ExactMegabytesTellEachOfTheFourBlockSizes) {
    // blocks * size is a whole number of megabytes for each pair here.
    const std::pair<long long, std::int16_t> exact[] = {
        {512, 2048}, {262144, 2324}, {32768, 2336}, {65536, 2352}};
    for (auto [blocks, size] : exact) {
        long long megabytes = blocks * size / (1024 * 1024);
        std::int16_t field = 0;
        EXPECT_EQ(tocInfoFromOutput(summary(blocks, megabytes), field), std::to_string(blocks));
        EXPECT_EQ(field, size) << blocks << " blocks";
    }
    // 2 MB in 1000 blocks is 2097 bytes a block: not a CD block size.
    std::int16_t field = 2352;
    tocInfoFromOutput(summary(1000, 2), field);
    EXPECT_EQ(field, 2352);
}

TEST(ImageSize, AnIsoIsMeasuredThroughTempTocWhichIsThenDeleted) {
    FakeCdrdao cdrdao;
    std::string iso = cdrdao.dir.file("My Disc.iso");
    writeFile(iso, "not read by the fake");
    cdrdao.answer = {true, summary(1234, 0)};
    std::int16_t size = 2352;
    const std::string temp = cdrdao.app + "/external/TEMP/temp.toc";

    EXPECT_EQ(imageSize(iso, size, cdrdao.context()), 1234LL * 2048);
    EXPECT_EQ(size, 2048);
    ASSERT_EQ(cdrdao.commands.size(), 1u);
    EXPECT_EQ(cdrdao.commands[0], cdrdao.toolCommand(temp));
    EXPECT_EQ(cdrdao.sheets[0], "CD_ROM\r\n\r\nTRACK MODE1\r\nDATAFILE \"" + iso + "\"\r\n");
    EXPECT_FALSE(fs::exists(temp));
}

TEST(ImageSize, ACueIsMeasuredAsItsBinWithTheTrackTypeOfItsBlockSize) {
    const std::pair<std::string, std::string> types[] = {
        {"MODE1/2048", "MODE1"}, {"MODE2/2324", "MODE2_FORM2"},
        {"MODE2/2336", "MODE2"}, {"MODE1/2352", "AUDIO"},
        {"AUDIO", "AUDIO"},      {"CDI/2336", "MODE2"},
    };
    for (const auto &[cueType, tocType] : types) {
        SCOPED_TRACE(cueType);
        FakeCdrdao cdrdao;
        std::string cue = cdrdao.dir.file("Image.cue");
        writeFile(cue, "FILE \"whatever.img\" BINARY\n  TRACK 01 " + cueType + "\n    INDEX 01 00:00:00\n");
        cdrdao.answer = {true, summary(300, 0)};
        std::int16_t size = 0;
        std::int64_t bytes = imageSize(cue, size, cdrdao.context());
        std::int16_t declared = 0;
        checkTOC(cue, "", declared);
        EXPECT_EQ(size, declared);
        EXPECT_EQ(bytes, 300LL * declared);
        ASSERT_EQ(cdrdao.sheets.size(), 1u);
        EXPECT_EQ(cdrdao.sheets[0], "CD_ROM\r\n\r\nTRACK " + tocType + "\r\nDATAFILE \"" + cdrdao.dir.path() +
                                        "/Image.bin\"\r\n");
        EXPECT_FALSE(fs::exists(cdrdao.app + "/external/TEMP/temp.toc"));
    }
}

TEST(ImageSize, ATocIsMeasuredAsItStandsAndAFailureGivesNothing) {
    FakeCdrdao cdrdao;
    std::string toc = cdrdao.dir.file("audio.toc");
    writeFile(toc, "CD_DA\nTRACK AUDIO\nFILE \"a.wav\" 0\n");
    cdrdao.answer = {true, summary(750, 0)};
    std::int16_t size = 2048;
    EXPECT_EQ(imageSize(toc, size, cdrdao.context()), 750LL * 2352);
    ASSERT_EQ(cdrdao.commands.size(), 1u);
    EXPECT_EQ(cdrdao.commands[0], cdrdao.toolCommand(toc));

    // A toc-info that fails leaves its output out: nothing to write.
    cdrdao.answer = {false, {}};
    EXPECT_EQ(imageSize(toc, size, cdrdao.context()), 0);

    // Any other kind of file is no image; a run that is missing sizes nothing.
    std::string text = cdrdao.dir.file("notes.txt");
    writeFile(text, "TRACK MODE2\n");
    cdrdao.answer = {true, summary(750, 0)};
    std::size_t before = cdrdao.commands.size();
    EXPECT_EQ(imageSize(text, size, cdrdao.context()), 0);
    EXPECT_EQ(cdrdao.commands.size(), before);
    ImageContext noRun;
    noRun.appDir = cdrdao.app;
    EXPECT_EQ(imageSize(toc, size, noRun), 0);
}

TEST(ImageSize, AMissingSheetRaisesAnError) {
    FakeCdrdao cdrdao;
    std::int16_t size = 0;
    EXPECT_THROW(imageSize(cdrdao.dir.file("gone.toc"), size, cdrdao.context()), RuntimeError);
    EXPECT_TRUE(cdrdao.commands.empty());
}

TEST(ImageSize, PipesAndTerminalsAreNeverHandedToCdrdao) {
    // cdrdao would wait for ever for a writer on the pipe.
    FakeCdrdao cdrdao;
    std::string pipe = cdrdao.dir.file("pipe.bin");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    cdrdao.answer = {true, summary(300, 0)};
    const std::string named[] = {pipe, "/dev/tty", "/dev/null"};
    for (const auto &file : named) {
        SCOPED_TRACE(file);
        std::string toc = cdrdao.dir.file("odd.toc");
        writeFile(toc, "CD_ROM\nTRACK MODE1\nDATAFILE \"" + file + "\"\n");
        std::int16_t size = 0;
        EXPECT_EQ(imageSize(toc, size, cdrdao.context()), 0);
    }
    std::string cue = cdrdao.dir.file("pipe.cue");
    writeFile(cue, "FILE \"pipe.bin\" BINARY\nTRACK 01 MODE1/2048\n");
    std::int16_t size = 0;
    EXPECT_EQ(imageSize(cue, size, cdrdao.context()), 0);
    EXPECT_TRUE(cdrdao.commands.empty());

    // The same sheet naming a plain file is measured.
    std::string toc = cdrdao.dir.file("plain.toc");
    writeFile(cdrdao.dir.file("plain.bin"), "x");
    writeFile(toc, "CD_ROM\nTRACK MODE1\nDATAFILE \"" + cdrdao.dir.file("plain.bin") + "\"\n");
    EXPECT_EQ(imageSize(toc, size, cdrdao.context()), 300 * 2048);
}
