#ifndef SALTMARROW_DISCOPS_IMAGEDELETE_H
#define SALTMARROW_DISCOPS_IMAGEDELETE_H

#include <optional>
#include <string>
#include <vector>

#include "discops/ImageSlot.h"
#include "exec/Mode.h"

namespace saltmarrow::discops {

struct DeleteImageResult {
    std::optional<std::string> panel1;  // new text of the first status-bar panel
    bool reload = false;                // slot.startCommand names the renamed sheet: run parseCommand
    std::vector<std::string> deleted;   // files and folders removed, in order
};

// The offer after a good write. "WRITE CD" removes the loaded image (a cue
// sheet with its .bin, a toc sheet with its data files) and an emptied folder;
// "AUDIO CD" removes or renames the temporary folder of the compiled project
// (tempFolder, emptied either way) and loads the renamed sheet. Every step is
// asked first through ctx.dialogs.
DeleteImageResult deleteImage(ImageSlot &slot, std::string &tempFolder, Mode mode, const ImageContext &ctx);

}  // namespace saltmarrow::discops

#endif
