#include "discops/Fragments.h"

#include <cstdint>
#include <cstdio>

#include "platform/CommandLine.h"
#include "platform/DriveLayer.h"
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

}  // namespace

std::string hexOr(std::initializer_list<std::string_view> words) {
    std::uint32_t value = 0;
    for (std::string_view word : words) value |= hexValue(word);
    char text[16];
    std::snprintf(text, sizeof text, "%X", static_cast<unsigned>(value));
    return text;
}

std::string writeDevice(const WritePanel &panel, const FragmentSettings &settings,
                        const FragmentDrive &writer, bool &useRaw, bool isDataDisc, bool lockDevice,
                        const platform::DeviceForms &layer) {
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

std::string readDevice(const ReadPanel &panel, const FragmentSettings &settings, const FragmentDrive &reader,
                       bool asSource, bool lockDevice, const platform::DeviceForms &layer) {
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
                            const FragmentDrive &writer, bool &useRaw, bool isDataDisc, bool plainAddress,
                            const platform::DeviceForms &layer) {
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

}  // namespace saltmarrow
