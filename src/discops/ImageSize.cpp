#include "discops/ImageSize.h"

#include <cmath>
#include <filesystem>

#include "discops/SheetCheck.h"
#include "discops/SheetFile.h"
#include "platform/CommandLine.h"
#include "support/mdlFunctions.h"

namespace saltmarrow::discops {

namespace fs = std::filesystem;
using vb::InStr;
using vb::Mid;

namespace {

constexpr std::int16_t kKnownBlockSizes[] = {2048, 2324, 2336, 2352};

struct BlockType {
    std::int16_t blockSize;
    std::string_view trackType;
};

// The track type that makes cdrdao count a bare data file in blocks of the
// size the cue sheet declared.
constexpr BlockType kCueTrackTypes[] = {
    {2048, "MODE1"},
    {2324, "MODE2_FORM2"},
    {2336, "MODE2"},
    {2352, "AUDIO"},
};

std::string_view trackTypeFor(std::int16_t blockSize) {
    for (const auto &row : kCueTrackTypes)
        if (row.blockSize == blockSize) return row.trackType;
    return {};
}

// cdrdao opens every data file to measure it, and waits for ever on a pipe
// that nobody writes to; such names are not handed to it.
bool blocksReader(const std::string &path) {
    std::error_code ec;
    auto status = fs::status(path, ec);
    return !ec && (fs::is_fifo(status) || fs::is_socket(status) || fs::is_character_file(status));
}

bool sheetNamesBlockingFile(const std::string &sheet, const std::string &toolFolder) {
    SheetReader reader(sheet);
    std::string line;
    while (reader.next(line)) {
        std::size_t quote = InStr(line, "\"");
        if (quote == 0 || InStr(line, "FILE ", vb::Compare::Text) == 0) continue;
        std::string name = Mid(line, quote + 1);
        if (std::size_t close = InStr(name, "\""); close > 0) name = vb::Left(name, close - 1);
        if (!name.empty() && blocksReader(resolvePath(name, toolFolder))) return true;
    }
    return false;
}

// Writes temp.toc around dataFile, measures it and deletes it again.
double blocksOfDataFile(std::string_view trackType, const std::string &dataFile, std::int16_t &imageBlockSize,
                        const ImageContext &ctx) {
    if (blocksReader(dataFile)) return 0;
    std::error_code ec;
    fs::create_directories(ctx.tempFolder(), ec);
    const std::string tempToc = ctx.tempFolder() + "/temp.toc";
    writeSheet(tempToc, dataTrackSheet(trackType, dataFile));
    double blocks = vb::Val(tocInfo(tempToc, imageBlockSize, ctx));
    fs::remove(tempToc, ec);
    return blocks;
}

}  // namespace

std::string dataTrackSheet(std::string_view trackType, std::string_view dataFile) {
    std::string sheet = "CD_ROM\r\n\r\nTRACK ";
    sheet += trackType;
    sheet += "\r\nDATAFILE \"";
    sheet += dataFile;
    sheet += "\"\r\n";
    return sheet;
}

std::string tocInfoFromOutput(std::string_view output, std::int16_t &imageBlockSize) {
    // "<sheet>: N tracks, length MM:SS:FF, B blocks, M MB"
    std::size_t summary = InStr(output, " tracks, length ");
    if (summary == 0) return "0";
    std::size_t comma = InStr(summary + 15, output, ", ");
    if (comma == 0) return "0";
    std::size_t blocksAt = InStr(comma, output, " blocks, ");
    if (blocksAt == 0) return "0";
    double blocks = std::trunc(vb::Val(Mid(output, comma + 2, blocksAt - comma - 2)));
    double megabytes = vb::Val(Mid(output, blocksAt + 9));
    if (blocks > 0) {
        // cdrdao works the megabytes out from 2352 bytes a block whatever the
        // track type, so only a sheet of exact megabytes tells its size here;
        // any other figure leaves the block size of the last sheet in place.
        double perBlock = std::nearbyint(megabytes / blocks * 1024 * 1024);
        for (std::int16_t known : kKnownBlockSizes)
            if (perBlock == known) imageBlockSize = known;
    }
    return std::to_string(static_cast<long long>(blocks));
}

std::string tocInfo(const std::string &path, std::int16_t &imageBlockSize, const ImageContext &ctx) {
    if (!ctx.run) return "0";
    CommandResult r =
        ctx.run(platform::quoteArgument(ctx.cdrdaoPath()) + " toc-info " + platform::quoteArgument(path));
    return tocInfoFromOutput(r.ok ? r.output : std::string(), imageBlockSize);
}

std::int64_t imageSize(const std::string &path, std::int16_t &imageBlockSize, const ImageContext &ctx,
                       const std::string &workingFolder) {
    const std::string full = resolvePath(path, workingFolder.empty() ? ctx.externalFolder() : workingFolder);
    const std::string kind = vb::UCase(vb::Right(full, 3));
    if (kind != "ISO") checkTOC(full, "", imageBlockSize, workingFolder);

    if (kind == "ISO") {
        imageBlockSize = 2048;
        double blocks = blocksOfDataFile("MODE1", full, imageBlockSize, ctx);
        return static_cast<std::int64_t>(blocks) * 2048;
    }
    double blocks = 0;
    if (kind == "CUE") {
        const std::string folder = parentFolder(full);
        const std::string bin = baseName(full) + ".bin";
        const std::string dataFile = findInFolder(folder, bin).value_or(folder + "/" + bin);
        blocks = blocksOfDataFile(trackTypeFor(imageBlockSize), dataFile, imageBlockSize, ctx);
    } else if (kind == "TOC") {
        // cdrdao reads the sheet's relative names from its own start folder.
        if (sheetNamesBlockingFile(full, ctx.externalFolder())) return 0;
        blocks = vb::Val(tocInfo(full, imageBlockSize, ctx));
    }
    // The block size as toc-info left it: a sheet of exact megabytes counts in
    // the size that its figures imply.
    return static_cast<std::int64_t>(blocks) * imageBlockSize;
}

}  // namespace saltmarrow::discops
