// libFuzzer target: the input becomes a file with the extension this target
// was built for, and goes through readMediaInfo as a file the user added.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "audio/mdlMediaInfo.h"

namespace {

const std::string &inputPath() {
    static const std::string path = [] {
        const auto folder =
            std::filesystem::temp_directory_path() / ("saltmarrow-fuzz-" + std::to_string(::getpid()));
        std::filesystem::create_directories(folder);
        return (folder / ("input." FUZZ_EXTENSION)).string();
    }();
    return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string &path = inputPath();
    std::FILE *f = std::fopen(path.c_str(), "wb");
    if (f == nullptr) std::abort();
    if (size > 0 && std::fwrite(data, 1, size, f) != size) std::abort();
    std::fclose(f);

    const saltmarrow::MediaFileInfo info = saltmarrow::readMediaInfo(path);
    // The file is there, so the record must name it whatever the bytes say.
    if (info.FileName != path) std::abort();
    return 0;
}
