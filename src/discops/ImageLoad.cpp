#include "discops/ImageLoad.h"

#include <cmath>
#include <filesystem>

#include "discops/ImageSize.h"
#include "discops/SheetFile.h"
#include "support/mdlFunctions.h"

namespace saltmarrow::discops {

namespace fs = std::filesystem;
using vb::Left;
using vb::UCase;

namespace {

bool isContinuationByte(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

bool namesImage(const std::string &startCommand) {
    return Left(startCommand, 3) == "-i " || Left(startCommand, 3) == "-w ";
}

// An image is a file: a folder or a device named on the command line loads
// nothing.
std::string imageFileOf(std::string_view path) {
    std::string name = longName(path, {});
    return isRegularFile(name) ? name : std::string();
}

std::string wholeMegabytes(double bytes) {
    return std::to_string(static_cast<long long>(std::nearbyint(bytes / 1024 / 1024)));
}

}  // namespace

std::string leftChars(std::string_view text, std::size_t count) {
    std::size_t i = 0;
    for (std::size_t seen = 0; i < text.size(); ++i) {
        if (isContinuationByte(text[i])) continue;
        if (seen++ == count) break;
    }
    return std::string(text.substr(0, i));
}

std::size_t charCount(std::string_view text) {
    std::size_t n = 0;
    for (char c : text)
        if (!isContinuationByte(c)) ++n;
    return n;
}

std::string currentFolder(const ImageSlot &slot, const ImageContext &ctx) {
    return slot.workingFolder.empty() ? ctx.externalFolder() : slot.workingFolder;
}

ParseCommandResult parseCommand(ImageSlot &slot, const ParseCommandInput &input, const ImageContext &ctx) {
    ParseCommandResult result;
    if (!input.cmdWriteEnabled) return result;
    result.ran = true;

    if (!slot.startCommand.empty() && Left(slot.startCommand, 1) != "-")
        slot.startCommand = "-i " + slot.startCommand;
    // Quotes are characters of a name here: only a pair around the whole path
    // is taken off, as a user types it. No image name ends in a quote.
    std::string path = vb::Trim(vb::Mid(slot.startCommand, vb::InStr(slot.startCommand, "-") + 3));
    if (path.size() >= 2 && path.front() == '"' && path.back() == '"') path = path.substr(1, path.size() - 2);
    if (!slot.startCommand.empty() && namesImage(slot.startCommand)) slot.strFilename = imageFileOf(path);
    slot.lastFolder = parentFolder(slot.strFilename);

    if (!slot.strFilename.empty()) {
        CheckImageInput check{slot.strFilename, input.chkCheckCUE, ctx.appDir, currentFolder(slot, ctx)};
        result.check = checkImage(check, *ctx.dialogs, ctx.msg);
        if (result.check.imageDataFile) slot.imageDataFile = *result.check.imageDataFile;
        if (result.check.workingFolder) slot.workingFolder = *result.check.workingFolder;

        const std::string kind = UCase(vb::Right(slot.strFilename, 3));
        if (kind != "ISO") checkTOC(slot.strFilename, "", slot.imageBlockSize, currentFolder(slot, ctx));
        if (kind == "TOC") {
            slot.imageBytes = static_cast<double>(
                imageSize(slot.strFilename, slot.imageBlockSize, ctx, currentFolder(slot, ctx)));
        } else {
            // A cue sheet shows its own size until the write measures its data.
            std::error_code ec;
            auto bytes = fs::file_size(slot.strFilename, ec);
            slot.imageBytes = ec ? 0 : static_cast<double>(bytes);
        }
    } else {
        // A load that found nothing leaves nothing loaded.
        slot.imageBytes = 0;
    }
    if (namesImage(slot.startCommand) && !slot.strFilename.empty())
        slot.strFilename = imageFileOf(slot.strFilename);

    if (slot.imageBytes == 0) {
        result.panel1 = UCase(ctx.text("msgNoImageLoaded"));
        result.txtStatus = result.panel1;
        result.mode = Mode::None;
        slot.strFilename.clear();
    } else {
        const std::string name = UCase(baseName(slot.strFilename));
        const std::size_t length = charCount(name);
        result.loaded = true;
        result.panel1 = leftChars(name, 20) + (length > 20 ? "..." : "");
        result.mode = Mode::WriteCD;
        result.txtStatus = leftChars(name, 30) + (length >= 31 ? "..." : "") + " (" +
                           wholeMegabytes(slot.imageBytes) + "MB / " + input.discSizeText + ")";
    }

    result.startWrite = !input.commandLine.empty() && Left(input.commandLine, 3) == "-w " && input.formLoaded;
    return result;
}

platform::FileRequest imageOpenRequest(const std::string &lastFolder) {
    platform::FileRequest request;
    request.folder = lastFolder;
    request.filter = "Image Files (*.cue;*.toc;*.iso)|*.cue;*.toc;*.iso";
    request.flags = 528388;  // hide read-only, file must exist, long names
    return request;
}

bool chooseImage(ImageSlot &slot, platform::Dialogs &dialogs) {
    auto chosen = dialogs.openFile(imageOpenRequest(slot.lastFolder));
    if (!chosen || chosen->empty()) return false;
    slot.startCommand = chosen->front();
    return true;
}

}  // namespace saltmarrow::discops
