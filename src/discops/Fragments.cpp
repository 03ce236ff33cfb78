#include "discops/Fragments.h"

#include <cstdint>
#include <cstdio>
#include <optional>

#include "platform/CommandLine.h"
#include "platform/DriveLayer.h"
#include "support/RuntimeError.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

using namespace vb;

namespace {

// Drive addresses stand bare on a command line unless they hold what would split them.
constexpr auto kBare = platform::Quoting::WhenNeeded;

bool ticked(int checkBox) {
    return checkBox == 1;
}

std::uint32_t hexValue(std::string_view word) {
    std::uint32_t value = 0;
    for (char c : word) {
        int digit;
        if (c >= '0' && c <= '9')
            digit = c - '0';
        else if (c >= 'a' && c <= 'f')
            digit = c - 'a' + 10;
        else if (c >= 'A' && c <= 'F')
            digit = c - 'A' + 10;
        else
            break;
        value = value * 16 + static_cast<std::uint32_t>(digit);
    }
    return value;
}

// The layer word of a device argument: the SPTI box decides for the program.
bool useSPTI(const FragmentSettings &settings) {
    return ticked(settings.chkUseSPTI);
}

// A speed text such as "16x" loses its unit; "Max" means no speed argument.
std::string speedValue(const std::string &speedText) {
    return speedText.empty() ? std::string() : Left(speedText, speedText.size() - 1);
}

// The digit at place of an option string, if it reads as a number.
std::optional<int> placeValue(const std::string &options, std::size_t place) {
    try {
        return CInt(Mid(options, place, 1));
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

std::string hexOr(std::initializer_list<std::string_view> words) {
    std::uint32_t value = 0;
    for (std::string_view word : words) value |= hexValue(word);
    char text[16];
    std::snprintf(text, sizeof text, "%X", static_cast<unsigned>(value));
    return text;
}

std::string writeDevice(const WritePanel &panel, const FragmentSettings &settings, const DeviceInfo &writer,
                        bool &useRaw, bool isDataDisc, bool lockDevice, const platform::DriveLayer &layer) {
    if (ticked(panel.chkMultiSession) && isDataDisc) useRaw = false;
    const bool raw = ticked(panel.ChkWriteDriverRaw) && useRaw;
    std::string driver;
    std::string options;
    if (settings.UseDriverTable) {
        driver =
            raw ? "generic-mmc-raw" : (writer.Driver == "generic-mmc-raw" ? "generic-mmc" : writer.Driver);
        options = writer.DriverOptions;
    } else {
        driver = raw ? "generic-mmc-raw" : "generic-mmc";
        options = "0";
    }
    const std::string device =
        layer.cdrdaoDevice(layer.addressOf(panel.cmbWriterDevice), useSPTI(settings), lockDevice);
    std::string fragment = " --device ";
    fragment += platform::quoteArgument(device, kBare) + " --driver " + driver;
    // The bit switches buffer protection off, so an unticked box sets it.
    if (!ticked(panel.chkBurnProof)) options = hexOr({options, "00000040"});
    // Only a driver name ending in "generic-mmc" takes the CD-Text bit; the raw driver does not.
    if (ticked(panel.chkWriteCDText) && Right(fragment, 11) == "generic-mmc")
        options = hexOr({options, "00000010"});
    return fragment + ":0x" + options + " ";
}

std::string readDevice(const ReadPanel &panel, const FragmentSettings &settings, const DeviceInfo &reader,
                       bool asSource, bool lockDevice, const platform::DriveLayer &layer) {
    std::string driver = "generic-mmc";
    std::string options = "0";
    if (settings.UseDriverTable) {
        driver = reader.Driver == "generic-mmc-raw" ? "generic-mmc" : reader.Driver;
        options = reader.DriverOptions;
    }
    std::string fragment = asSource ? " --source-device " : " --device ";
    fragment += platform::quoteArgument(
        layer.cdrdaoDevice(layer.addressOf(panel.cmbReaderDevice), useSPTI(settings), lockDevice), kBare);
    fragment += asSource ? " --source-driver " : " --driver ";
    fragment += driver;
    if (!ticked(panel.chkReadCDText)) options = hexOr({options, "00200000"});
    if (ticked(panel.chkSimpleTOC)) options = hexOr({options, "00010000"});
    if (ticked(panel.chkSwapAudio)) options = hexOr({options, "00020000"});
    return fragment + ":0x" + options + " ";
}

std::string WriteOptions(const WritePanel &panel, const FragmentSettings &settings) {
    std::string options;
    if (ticked(panel.chkEject)) options += " --eject";
    options += " --reload";
    if (ticked(panel.chkOverburn)) options += " --overburn";
    if (ticked(panel.chkSimulate)) options += " --simulate";
    if (panel.cmbSpeed != "Max") options += " --speed " + speedValue(panel.cmbSpeed);
    if (ticked(panel.chkForce)) options += " --force";
    if (ticked(panel.chkMultiSession)) options += " --multi";
    options += " -n --buffers " + panel.cmbBuffers + " ";
    options += "-v " + std::to_string(settings.verbosity) + " ";
    return options;
}

std::string ReadOptions(const ReadPanel &panel) {
    std::string options;
    if (ticked(panel.chkReadRaw)) options += " --read-raw";
    options += " --paranoia-mode " + std::to_string(panel.cmbParanoiaIndex);
    if (panel.cmbSubsIndex == 1) options += " --read-subchan rw";
    if (panel.cmbSubsIndex == 2) options += " --read-subchan rw_raw";
    options += " ";
    return options;
}

std::string writeDVDCommand(const WritePanel &panel, const FragmentSettings &settings,
                            const DeviceInfo &writer, bool &useRaw, bool isDataDisc, bool plainAddress,
                            const platform::DriveLayer &layer) {
    if (ticked(panel.chkMultiSession) && isDataDisc) useRaw = false;
    const std::string address =
        settings.UseProDVD ? writer.ASPIDeviceID : layer.addressOf(panel.cmbWriterDevice);
    const std::string device = layer.dvdDevice(address, useSPTI(settings), plainAddress);
    std::string command = " ";
    command += platform::quoteArgument("dev=" + device, kBare);
    command += ticked(panel.chkBurnProof) ? " driveropts=burnfree" : " driveropts=noburnfree";
    command += " -v";
    if (ticked(panel.chkSimulate)) command += " -dummy";
    if (panel.cmbSpeed != "Max") command += " speed=" + speedValue(panel.cmbSpeed);
    if (ticked(panel.chkOverburn)) command += " -overburn";
    command += " fs=75x" + panel.cmbBuffers + "f";
    if (ticked(panel.chkMultiSession)) command += " -multi";
    if (ticked(panel.chkForce)) command += " -force";
    if (ticked(panel.chkEject)) command += " -eject";
    command += (ticked(panel.ChkWriteDriverRaw) && useRaw) ? " -raw" : " -dao";
    command += " -gracetime=0";
    return command;
}

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
