#ifndef SALTMARROW_DATA_DATAHOST_H
#define SALTMARROW_DATA_DATAHOST_H

#include <functional>
#include <string>
#include <string_view>

#include "data/DataProject.h"
#include "exec/JobHost.h"

namespace saltmarrow::data {

// What the data project's procedures need around them. The main window fills
// what every job takes, the data form the rest; a hook left empty does nothing.
struct DataHost : JobHost {
    // The data form.
    std::function<void(const std::string &text)> showStatus;     // panel 1 of sbStatusBar
    std::function<void(double max, double value)> showProgress;  // pbCopyProgress
    std::function<void(bool enabled)> enableControls;            // the tagged controls
    std::function<void(const std::string &caption)> setBurnCaption;
    std::function<void(bool enabled)> enableImageList;
    std::function<void(NodeId folder)> showFolder;                   // listFiles shows it, its node selected
    std::function<void()> sortViews;                                 // updateSize's sorting of tree and list
    std::function<std::string(std::string_view extension)> iconKey;  // lower-case extension, "" for none
};

}  // namespace saltmarrow::data

#endif
