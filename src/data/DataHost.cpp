#include "data/DataHost.h"

#include "data/IsoSettings.h"
#include "platform/Dialogs.h"

namespace saltmarrow::data {

bool DataHost::settingTrue(std::string_view key) const {
    return settingIsTrue(settingText(key));
}

int DataHost::ask(const std::string &text, int style, const std::string &title) const {
    return dialogs ? dialogs->MsgBoxOverMe(text, style, title) : platform::mb::OK;
}

}  // namespace saltmarrow::data
