#include "devices/DeviceInfoText.h"

#include <cmath>

#include "support/mdlFunctions.h"

namespace saltmarrow {

using namespace vb;

namespace {

// The feature words behind the check boxes, by index. Row 7 of the write
// side is the buffer protection flag, not a word.
constexpr std::string_view kReadWords[] = {"CD-R ",  "CD-RW ",  "DVD-RAM ", "DVD-R ",   "DVD-RW ",
                                           "DVD+R ", "DVD+RW ", "DVD-ROM ", "MRW-READ "};
constexpr std::string_view kWriteWords[] = {"CD-R ",  "CD-RW ",  "DVD-RAM ", "DVD-R ",    "DVD-RW ",
                                            "DVD+R ", "DVD+RW ", "",         "MRW-WRITE "};
constexpr std::size_t kBufferProtectionRow = 7;

constexpr std::string_view kDVDTypes[] = {"DVD-ROM", "DVD-R", "DVD-RW", "DVD+R", "DVD+RW"};

// Whether a ticked box's word holds the text.
template <std::size_t N>
bool tickedWordHolds(const std::array<bool, 9> &boxes, const std::string_view (&words)[N],
                     std::string_view text) {
    for (std::size_t i = 0; i < N; ++i)
        if (boxes[i] && InStr(words[i], text) != 0) return true;
    return false;
}

// The trimmed text behind key up to the line end, if the key is there.
std::string valueOf(std::string_view output, std::string_view key, std::string_view until = "\r\n") {
    const std::size_t at = InStr(output, key);
    if (at == 0) return {};
    const std::size_t from = at + key.size();
    const std::size_t to = InStr(from, output, until);
    return Trim(to == 0 ? Mid(output, from) : Mid(output, from, to - from));
}

}  // namespace

DeviceTab ShowDeviceInfo(const DeviceInfo &device) {
    DeviceTab tab;
    tab.caption = device.DeviceName;
    // Drives whose drive report names no buffer (Linux) show "n/a" as the
    // media labels do, not a bare unit.
    tab.lblBufferValue = device.BufferSize.empty() ? "n/a" : device.BufferSize + "kb";
    tab.lblFirmwareValue = device.Firmware;
    tab.lblDriverValue = device.Driver;
    bool anyWrite = false;
    for (std::size_t i = 0; i < tab.chkReadFeature.size(); ++i) {
        tab.chkReadFeature[i] = InStr(device.ReadFeatures, kReadWords[i]) != 0;
        tab.chkWriteFeature[i] = i == kBufferProtectionRow ? device.BufferProtection
                                                           : InStr(device.WriteFeatures, kWriteWords[i]) != 0;
        anyWrite = anyWrite || tab.chkWriteFeature[i];
    }
    if (anyWrite) {
        if (tickedWordHolds(tab.chkWriteFeature, kWriteWords, "DVD"))
            tab.lblTypeValue = "DVD\\CD Writer";
        else if (tickedWordHolds(tab.chkWriteFeature, kWriteWords, "CD"))
            tab.lblTypeValue = "CD Writer";
    } else {
        if (tickedWordHolds(tab.chkReadFeature, kReadWords, "DVD"))
            tab.lblTypeValue = "DVD\\CD Reader";
        else if (tickedWordHolds(tab.chkReadFeature, kReadWords, "CD"))
            tab.lblTypeValue = "CD Reader";
    }
    return tab;
}

bool isDVDMediaType(std::string_view mediaType) {
    for (std::string_view type : kDVDTypes)
        if (mediaType == type) return true;
    return false;
}

bool mediaInfoStopsAt(std::string_view line) {
    return line == "WARNING: Unit not ready, still trying..." || InStr(line, "Starting to write") != 0;
}

MediaTab MediaInfo(const DeviceInfo &device, std::string_view diskInfoOutput, double discFreeBytes) {
    MediaTab tab;
    const std::string_view output =
        isDVDMediaType(device.LastMediaType) ? std::string_view() : diskInfoOutput;
    tab.chkMedia[0] = valueOf(output, "CD-RW                :") == "yes";
    tab.chkMedia[1] = valueOf(output, "CD-R empty           :") == "yes";
    // The key has no padding, unlike the tool's line; the box is kept so.
    tab.chkMedia[2] = valueOf(output, "Appendable:") == "yes";
    auto orNA = [](std::string text) { return text.empty() ? std::string("n/a") : text; };
    tab.lblCapacityValue = orNA(Replace(valueOf(output, "Total Capacity       :"), " blocks, ", "s, "));
    tab.lblManufacturerValue = orNA(Trim(Replace(valueOf(output, "CD-R medium          :", ":"), "  ", "")));
    tab.lblTOCTypeValue = orNA(valueOf(output, "Toc Type             :"));
    tab.lblSessionsValue = orNA(valueOf(output, "Sessions             :"));
    tab.lblTracksValue = orNA(valueOf(output, "Last Track           :"));
    if (tab.lblCapacityValue == "n/a" && isDVDMediaType(device.LastMediaType) && device.MediaInserted)
        tab.lblCapacityValue = std::to_string(std::lround(discFreeBytes / 1048576.0)) + " MB";
    tab.lblWriteSpeedValue = device.WriteSpeeds.empty() ? "n/a" : Replace(device.WriteSpeeds, ",", ", ");
    return tab;
}

}  // namespace saltmarrow
