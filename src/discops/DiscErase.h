#ifndef SALTMARROW_DISCOPS_DISCERASE_H
#define SALTMARROW_DISCOPS_DISCERASE_H

#include <optional>
#include <string>
#include <string_view>

#include "devices/DeviceInfo.h"
#include "discops/Fragments.h"
#include "discops/WriteDispatcher.h"
#include "exec/Mode.h"

namespace saltmarrow::platform {
class DeviceForms;
}

namespace saltmarrow::discops {

// Erase and device info work on the chosen writer; without one the settings
// open so that one can be chosen.
std::optional<Refusal> writerRefusal(std::string_view writer);

// The blank of the disc in writer: a DVD by the DVD writer, anything else
// by cdrdao, and the task it runs under.
struct ErasePlan {
    Mode mode = Mode::EraseCD;
    std::string command;
};
struct EraseTools {
    std::string cdrdao;
    std::string dvdWriter;
};
ErasePlan planErase(std::string_view eraseMode, const DeviceInfo &writer, const WritePanel &panel,
                    const FragmentSettings &settings, const EraseTools &tools,
                    const platform::DeviceForms &layer);

}  // namespace saltmarrow::discops

#endif
