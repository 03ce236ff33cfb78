// What the sizing makes of cdrdao's summary line, and what it never hands to
// cdrdao; the sizes themselves come from the real tool (ImageSize_tools).
#include "discops/ImageSize.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "support/RuntimeError.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::discops;
using saltmarrow::test::writeFile;

namespace {

std::string summary(long long blocks, long long megabytes) {
    return "\r\nimage.toc: 1 tracks, length 00:04:00, " + std::to_string(blocks) + " blocks, " +
           std::to_string(megabytes) + " MB\r\n";
}

TEST(TocInfo, TheSummaryLineAndTheBlockSizeItTells) {
    struct Row {
        std::string output, blocks;
        std::int16_t size;  // the block size afterwards, from 2324
    };
    const Row rows[] = {
        {summary(300, 0), "300", 2324},  // 0 MB says nothing of the block size
        {"x: 2 tracks, length 74:00:00, 333000 blocks, 746 MB", "333000", 2324},  // 2349 bytes: no CD size
        {summary(512, 1), "512", 2048},
        {summary(262144, 581), "262144", 2324},
        {summary(32768, 73), "32768", 2336},
        {summary(65536, 147), "65536", 2352},
        {"ERROR: Cannot open toc file 'x.toc' for reading: No such file or directory", "0", 2324},
        {"x: 1 track, length 00:04:00, 300 blocks, 0 MB", "0", 2324},  // not the summary line
        {"x: 1 tracks, length 00:04:00, 300 sectors, 0 MB", "0", 2324},
        {"x: 1 tracks, length 00:04:00 300 blocks 0 MB", "0", 2324},
        {"x: 0 tracks, length 00:00:00, 0 blocks, 5 MB", "0", 2324},
    };
    for (const Row &row : rows) {
        std::int16_t size = 2324;
        EXPECT_EQ(tocInfoFromOutput(row.output, size), row.blocks) << row.output;
        EXPECT_EQ(size, row.size) << row.output;
    }
}

TEST(ImageSize, WhatIsNeverHandedToCdrdao) {
    test::TempDir dir;
    std::filesystem::create_directories(dir.file("app/external"));
    int runs = 0;
    ImageContext ctx;
    ctx.appDir = dir.file("app");
    ctx.run = [&](const std::string &) {
        ++runs;
        return CommandResult{true, summary(300, 0)};
    };
    // cdrdao would wait for ever for a writer on a pipe.
    ASSERT_EQ(mkfifo(dir.file("pipe.bin").c_str(), 0600), 0);
    for (const std::string &file :
         {dir.file("pipe.bin"), std::string("/dev/tty"), std::string("/dev/null")}) {
        writeFile(dir.file("odd.toc"), "CD_ROM\nTRACK MODE1\nDATAFILE \"" + file + "\"\n");
        std::int16_t size = 0;
        EXPECT_EQ(imageSize(dir.file("odd.toc"), size, ctx), 0) << file;
    }
    writeFile(dir.file("pipe.cue"), "FILE \"pipe.bin\" BINARY\nTRACK 01 MODE1/2048\n");
    writeFile(dir.file("notes.txt"), "TRACK MODE2\n");  // no image kind
    std::int16_t size = 0;
    EXPECT_EQ(imageSize(dir.file("pipe.cue"), size, ctx), 0);
    EXPECT_EQ(imageSize(dir.file("notes.txt"), size, ctx), 0);
    EXPECT_EQ(runs, 0);
    EXPECT_THROW(imageSize(dir.file("gone.toc"), size, ctx), RuntimeError);

    // The same sheet naming a plain file is measured; without a way to run
    // cdrdao nothing is.
    writeFile(dir.file("plain.bin"), "x");
    writeFile(dir.file("plain.toc"), "CD_ROM\nTRACK MODE1\nDATAFILE \"" + dir.file("plain.bin") + "\"\n");
    EXPECT_EQ(imageSize(dir.file("plain.toc"), size, ctx), 300 * 2048);
    EXPECT_EQ(runs, 1);
    ctx.run = nullptr;
    EXPECT_EQ(imageSize(dir.file("plain.toc"), size, ctx), 0);
}

}  // namespace
