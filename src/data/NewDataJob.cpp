#include "data/NewDataJob.h"

#include "data/DataProject.h"
#include "platform/Dialogs.h"

namespace saltmarrow::data {

void newDataJob(DataJobHost &host, bool isDVD, bool isVideo) {
    const bool firstShow = !host.project();
    if (firstShow && host.loadForm) host.loadForm();
    DataProject *project = host.project();
    if (!project) return;
    // The tree must not change under an add that is still walking it.
    const bool changed = firstShow || project->blnDVD != isDVD || project->blnDVDVideo != isVideo;
    if (changed && !(host.formBusy && host.formBusy())) {
        const bool oldDVD = project->blnDVD, oldVideo = project->blnDVDVideo;
        project->blnDVD = isDVD;
        project->blnDVDVideo = isVideo;
        if (!firstShow && project->blnDirty && host.dialogs) {
            const std::string text = host.message ? host.message("msgNewDataJob") : std::string();
            if (host.dialogs->MsgBoxOverMe(text, platform::mb::OKCancel | platform::mb::Information, {}) !=
                platform::mb::OK) {
                project->blnDVD = oldDVD;
                project->blnDVDVideo = oldVideo;
                return;
            }
        }
        if (host.ClearList) host.ClearList();
    }
    if (host.autoHideSettings) host.autoHideSettings();
    if (host.showForm) host.showForm(firstShow);
}

}  // namespace saltmarrow::data
