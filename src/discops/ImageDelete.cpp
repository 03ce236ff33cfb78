#include "discops/ImageDelete.h"

#include <filesystem>

#include "discops/ImageLoad.h"
#include "discops/SheetCheck.h"
#include "discops/SheetFile.h"
#include "platform/Dialogs.h"
#include "support/RuntimeError.h"
#include "support/mdlFunctions.h"

namespace saltmarrow::discops {

namespace fs = std::filesystem;
namespace mb = platform::mb;

namespace {

constexpr int kFileAlreadyExists = 58;

// Removes one regular file; one that is gone already is no fault.
void removeFile(const std::string &path, DeleteImageResult &result) {
    if (!isRegularFile(path)) return;
    std::error_code ec;
    if (!fs::remove(path, ec) || ec) raiseError(err::PermissionDenied);
    result.deleted.push_back(path);
}

bool isPlainFolderName(const std::string &name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos &&
           name.find('\0') == std::string::npos;
}

void deleteWrittenImage(ImageSlot &slot, const ImageContext &ctx, DeleteImageResult &result) {
    int answer = ctx.dialogs->MsgBoxOverMe(ctx.text("msgConfirmDelete"), mb::Question | mb::YesNoCancel, {});
    if (answer != mb::Yes) return;

    const std::string sheet = resolvePath(slot.strFilename, currentFolder(slot, ctx));
    const std::string ending = vb::UCase(vb::Right(sheet, 4));
    const std::string folder = parentFolder(sheet);
    if (ending == ".CUE") {
        removeFile(sheet, result);
        if (auto bin = findInFolder(folder, baseName(sheet) + ".bin")) removeFile(*bin, result);
    } else if (ending == ".TOC") {
        checkTOC(sheet, kTocDelete, slot.imageBlockSize, currentFolder(slot, ctx));
        removeFile(sheet, result);
    }

    std::error_code ec;
    if (!folder.empty() && fs::is_directory(folder, ec) && fs::is_empty(folder, ec) && !ec) {
        std::string text = vb::Replace(ctx.text("msgDeleteEmptyFolder"), "%1", fileNamePart(folder));
        if (ctx.dialogs->MsgBoxOverMe(text, mb::Question | mb::YesNo, {}) == mb::Yes) {
            if (!fs::remove(folder, ec) || ec) raiseError(err::PermissionDenied);
            result.deleted.push_back(folder);
        }
    }
    slot.strFilename.clear();
    slot.deleteCandidate.clear();
    result.panel1 = vb::UCase(ctx.text("msgNoImageLoaded"));
}

void deleteAudioFolder(ImageSlot &slot, std::string &tempFolder, const ImageContext &ctx,
                       DeleteImageResult &result) {
    if (tempFolder.empty()) return;
    const std::string folder = resolvePath(tempFolder, {});
    int answer =
        ctx.dialogs->MsgBoxOverMe(ctx.text("msgDeleteTemp") + tempFolder + "?", mb::Question | mb::YesNo, {});
    if (answer == mb::Yes) {
        std::error_code ec;
        fs::remove_all(folder, ec);
        if (ec) raiseError(err::PermissionDenied);
        result.deleted.push_back(folder);
        tempFolder.clear();
        slot.strFilename.clear();
        result.panel1 = vb::UCase(ctx.text("msgNoImageLoaded"));
        return;
    }

    const std::string oldName = fileNamePart(folder);
    std::string newName =
        ctx.dialogs->inputBox("Please enter a new name for the folder.", "Rename tempory folder", oldName)
            .value_or(std::string());
    if (newName.empty()) newName = oldName;
    tempFolder.clear();
    if (newName == oldName) return;
    if (!isPlainFolderName(newName)) raiseError(52);  // bad file name

    const std::string renamed = parentFolder(folder) + "/" + newName;
    std::error_code ec;
    if (fs::exists(renamed, ec)) throw RuntimeError(kFileAlreadyExists, "File already exists");
    fs::rename(folder, renamed, ec);
    if (ec) raiseError(err::PathNotFound);
    const std::string sheet = renamed + "/" + newName + ".toc";
    fs::rename(renamed + "/authored.toc", sheet, ec);
    if (ec) raiseError(err::FileNotFound);
    // The tracks moved with the folder; the sheet follows them.
    checkTOC(sheet, kTocRepair, slot.imageBlockSize, renamed);
    slot.startCommand = sheet;
    result.reload = true;
}

}  // namespace

DeleteImageResult deleteImage(ImageSlot &slot, std::string &tempFolder, Mode mode, const ImageContext &ctx) {
    DeleteImageResult result;
    if (mode == Mode::AudioCD)
        deleteAudioFolder(slot, tempFolder, ctx, result);
    else if (mode == Mode::WriteCD)
        deleteWrittenImage(slot, ctx, result);
    return result;
}

}  // namespace saltmarrow::discops
