// Replays the fuzzing corpus (tests/fuzz/corpus/<ext>/) through readMediaInfo
// once: every input that ever found a fault, and the seeds, must read without
// a crash or an escaping exception and keep their name.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "audio/mdlMediaInfo.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
namespace fs = std::filesystem;

namespace {

class FuzzCorpus : public ::testing::TestWithParam<std::string> {};

TEST_P(FuzzCorpus, ReadsEveryInput) {
    const std::string ext = GetParam();
    const fs::path folder = saltmarrow::test::sourcePath("tests/fuzz/corpus/" + ext);
    ASSERT_TRUE(fs::is_directory(folder)) << folder;
    saltmarrow::test::TempDir dir;
    // The readers choose by extension; the corpus files carry hashes as names.
    const std::string path = dir.file("input." + ext);
    int count = 0;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder)) {
        if (!entry.is_regular_file()) continue;
        SCOPED_TRACE(entry.path().filename().string());
        fs::copy_file(entry.path(), path, fs::copy_options::overwrite_existing);
        const MediaFileInfo info = readMediaInfo(path);
        EXPECT_EQ(info.FileName, path);
        ++count;
    }
    EXPECT_GT(count, 0) << "an empty corpus tests nothing";
}

INSTANTIATE_TEST_SUITE_P(Extensions, FuzzCorpus, ::testing::Values("mp3", "ogg", "flac", "wav", "aac"));

}  // namespace
