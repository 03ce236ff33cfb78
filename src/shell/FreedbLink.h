#ifndef SALTMARROW_SHELL_FREEDBLINK_H
#define SALTMARROW_SHELL_FREEDBLINK_H

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cddb/FreedbHost.h"
#include "cddb/frmFreeDB.h"

namespace saltmarrow {

class frmMain;

// The database dialog's view of the main form: its texts, its Freedb
// settings, its dialogs and error report, its always-on-top state.
FreedbHost freedbHost(frmMain &main);

// The two ways into the dialog, as the audio and extraction forms hold them.
// The dialog opens over the window that is active at the call.
using QueryFreedbHook =
    std::function<std::optional<std::vector<std::pair<std::string, std::string>>>(const std::vector<long> &)>;
using GetTrackLengthsHook = std::function<std::optional<FreedbLengths>()>;
QueryFreedbHook queryFreedbHook(frmMain &main);
GetTrackLengthsHook getTrackLengthsHook(frmMain &main);

}  // namespace saltmarrow

#endif
