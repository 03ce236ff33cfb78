#include "devices/DriveOptions.h"

#include <optional>

#include "support/RuntimeError.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

using vb::Mid;

namespace {

// The digit at place of an option string, if it reads as a number.
std::optional<int> placeValue(const std::string &options, std::size_t place) {
    try {
        return vb::CInt(Mid(options, place, 1));
    } catch (const RuntimeError &) {
        return std::nullopt;
    }
}

// A control takes a loaded value only if it is one the control accepts;
// anything else is ignored, as each statement's error would be.
void loadInto(int &control, std::optional<int> value, int highest) {
    if (value && *value >= 0 && *value <= highest) control = *value;
}

}  // namespace

void combineWriteOptions(bool load, WritePanel &panel, DeviceInfo *writer, OptionsMemory &memory) {
    if (panel.cmbWriterDeviceIndex < 0 || memory.combiningOptions || writer == nullptr) return;
    memory.combiningOptions = true;
    if (load) {
        const std::string options =
            writer->WriterOptions.empty() ? std::string(kDefaultWriterOptions) : writer->WriterOptions;
        if (auto buffers = placeValue(options, 1); buffers && *buffers >= 0 && *buffers <= 5) {
            panel.cmbBuffersIndex = *buffers;
            panel.cmbBuffers = std::string(kBufferSizes[*buffers]);
        }
        if (auto speed = placeValue(options, 2)) memory.savedSpeedIndex = *speed;
        loadInto(panel.ChkWriteDriverRaw, placeValue(options, 3), 2);
        loadInto(panel.chkWriteCDText, placeValue(options, 4), 2);
        loadInto(panel.chkBurnProof, placeValue(options, 5), 2);
        loadInto(panel.chkEject, placeValue(options, 6), 2);
        loadInto(panel.chkForce, placeValue(options, 7), 2);
        loadInto(panel.chkOverburn, placeValue(options, 8), 2);
        loadInto(panel.chkMultiSession, placeValue(options, 9), 2);
        loadInto(panel.chkSimulate, placeValue(options, 10), 2);
        memory.savedSpeedText = Mid(options, 11);
    } else {
        // A speed index of 10 or more takes two places and shifts the rest;
        // loads read such a string shifted. The format is kept as it is.
        std::string options = std::to_string(panel.cmbBuffersIndex) + std::to_string(panel.cmbSpeedIndex);
        for (int box : {panel.ChkWriteDriverRaw, panel.chkWriteCDText, panel.chkBurnProof, panel.chkEject,
                        panel.chkForce, panel.chkOverburn, panel.chkMultiSession, panel.chkSimulate})
            options += std::to_string(box);
        writer->WriterOptions = options + panel.cmbSpeed;
    }
    memory.combiningOptions = false;
}

void combineReadOptions(bool load, ReadPanel &panel, DeviceInfo *reader, OptionsMemory &memory) {
    if (panel.cmbReaderDeviceIndex < 0 || memory.combiningOptions || reader == nullptr) return;
    memory.combiningOptions = true;
    if (load) {
        const std::string options =
            reader->ReaderOptions.empty() ? std::string(kDefaultReaderOptions) : reader->ReaderOptions;
        loadInto(panel.cmbParanoiaIndex, placeValue(options, 1), 3);
        loadInto(panel.cmbSubsIndex, placeValue(options, 2), 2);
        loadInto(panel.chkReadRaw, placeValue(options, 3), 2);
        loadInto(panel.chkReadCDText, placeValue(options, 4), 2);
        loadInto(panel.chkSwapAudio, placeValue(options, 5), 2);
        loadInto(panel.chkSimpleTOC, placeValue(options, 6), 2);
    } else {
        std::string options;
        for (int value : {panel.cmbParanoiaIndex, panel.cmbSubsIndex, panel.chkReadRaw, panel.chkReadCDText,
                          panel.chkSwapAudio, panel.chkSimpleTOC})
            options += std::to_string(value);
        reader->ReaderOptions = options;
    }
    memory.combiningOptions = false;
}

}  // namespace saltmarrow
