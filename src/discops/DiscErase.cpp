#include "discops/DiscErase.h"

#include "platform/CommandLine.h"
#include "platform/Dialogs.h"
#include "platform/DriveLayer.h"

namespace saltmarrow::discops {

namespace {
constexpr std::string_view kDVDMedia[] = {"DVD-ROM", "DVD-R", "DVD-RW", "DVD+R", "DVD+RW"};
}

std::optional<Refusal> writerRefusal(std::string_view writer) {
    if (!writer.empty()) return std::nullopt;
    return Refusal{"msgSelectWriter", platform::mb::Exclamation, "", true};
}

ErasePlan planErase(std::string_view eraseMode, const DeviceInfo &writer, const WritePanel &panel,
                    const FragmentSettings &settings, const EraseTools &tools,
                    const platform::DeviceForms &layer) {
    ErasePlan plan;
    for (std::string_view dvd : kDVDMedia) {
        if (writer.LastMediaType != dvd) continue;
        plan.mode = Mode::WriteDVD;
        plan.command =
            platform::quoteArgument(tools.dvdWriter) +
            " blank=" + (eraseMode == "minimal" ? "minimal " : "all ") +
            platform::quoteArgument("dev=" + layer.dvdDevice(layer.addressOf(panel.cmbWriterDevice),
                                                             settings.chkUseSPTI == 1, false),
                                    platform::Quoting::WhenNeeded) +
            " gracetime=0";
        return plan;
    }
    bool useRaw = true;
    plan.command = platform::quoteArgument(tools.cdrdao) + " blank" +
                   writeDevice(panel, settings, fragmentDrive(writer), useRaw, true, true, layer) +
                   " --reload --blank-mode " + std::string(eraseMode);
    return plan;
}

}  // namespace saltmarrow::discops
