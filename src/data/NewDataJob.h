#ifndef SALTMARROW_DATA_NEWDATAJOB_H
#define SALTMARROW_DATA_NEWDATAJOB_H

#include <functional>
#include <string>
#include <string_view>

namespace saltmarrow::platform {
class Dialogs;
}

namespace saltmarrow::data {

class DataProject;

// What opening the data form needs of the main window and of the form.
struct DataJobHost {
    platform::Dialogs *dialogs = nullptr;
    std::function<std::string(std::string_view key)> message;
    std::function<DataProject *()> project;  // null until the form has been loaded
    std::function<void()> loadForm;          // loads it; project() is there afterwards
    std::function<bool()> formBusy;          // an add is running in it
    std::function<void()> ClearList;         // for the kind the project's flags now name
    std::function<void()> autoHideSettings;
    std::function<void(bool firstShow)> showForm;
};

// mnuDataCD (false, false), mnuDataDVD (true, false), mnuDVDVideo (true, true).
// A change of kind clears the project, after msgNewDataJob when something was
// added; Cancel puts the old kind back and shows nothing. The same kind again
// shows the project as it was left.
void newDataJob(DataJobHost &host, bool isDVD, bool isVideo);

}  // namespace saltmarrow::data

#endif
