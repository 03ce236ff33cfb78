#ifndef SALTMARROW_TESTS_EXEC_ENGLISHTEXTS_H
#define SALTMARROW_TESTS_EXEC_ENGLISHTEXTS_H

#include <map>
#include <string>
#include <string_view>

namespace saltmarrow::test {

// The English texts of the message keys the device and interpreter code
// looks up, as the message table holds them.
inline std::map<std::string, std::string, std::less<>> englishTexts() {
    return {
        {"logStartWrite", "Starting write at speed "},
        {"logWritingTrack", "Writing track "},
        {"logStartSimulation", "Starting write simulation at speed "},
        {"logDeviceNotReady", "WARNING: Device not ready, still trying..."},
        {"logSimulationSuccess", "Simulation finished successfully."},
        {"logReloadingDisc", "Reloading disc..."},
        {"logBlankingDisc", "Blanking disc..."},
        {"logCannotErase", "Cannot erase disc"},
        {"logBlankingFailed", "Blanking failed"},
        {"logCalibrationStart", "Executing power calibration..."},
        {"logCalibrationSuccess", "Power calibration successful."},
        {"logWritingLeadIn", "Writing lead-in and gap..."},
        {"logCannotSetupDevice", "Could not setup device"},
        {"logDiscNotEmpty", "Inserted medium is not blank"},
        {"logSyntaxError", "Syntax error, check cue/toc file"},
        {"logBadFile", "Bad file referenced in toc/cue file - see log for more details."},
        {"logWriteFailed", "Write failed, please consult the log."},
        {"msgScanningFiles", "Scanning source files..."},
        {"msgDupeFileName", "Duplicate file/folder name found"},
        {"msgFolderTooDeep", "Directories too deep!"},
        {"msgCannotReadAddress", "Cannot read first writable address"},
        {"msgWriteProgress", "Wrote %1 of %2 MB"},
        {"msgWriteBuffer", "Buffer"},
        {"msgDriveNotReady", "WARNING: Drive not ready, still trying..."},
        {"msgNoRWRead", "This drive does not support RW sub-channel reading."},
        {"msgNoRWRAWRead", "This drive does not support RW_RAW sub-channel reading."},
        {"msgReadComplete", "Read Operation Completed after"},
        {"msgReadCancelled", "Read Operation Cancelled"},
        {"msgNoSPTI", "SPTI is only available on Windows NT/2k/XP"},
        {"msgSelectWriter", "Please select a Write Device."},
        {"msgConfiguringDevices", "Configuring devices..."},
        {"msgScanningForDevices", "Scanning for devices..."},
        {"msgNoCdrdao", "No working cdrdao installation found"},
        {"msgCdrdaoFail", "Command returned nothing"},
        {"msgNoASPILayer", "Cannot load ASPI driver."},
        {"msgNoHostAdapters", "Could not find any host adapters."},
        {"msgNoDevicesFound", "Could not find any devices."},
        {"msgCheckingMedia", "Checking for writable media..."},
        {"msgOperationCancelled", "Operation Cancelled"},
        {"msgNoWritableMedia", "No writable media found!"},
    };
}

inline std::string englishText(std::string_view key) {
    static const auto texts = englishTexts();
    auto it = texts.find(key);
    return it == texts.end() ? "<" + std::string(key) + ">" : it->second;
}

}  // namespace saltmarrow::test

#endif
