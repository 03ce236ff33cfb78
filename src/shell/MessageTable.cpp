#include "shell/MessageTable.h"

#include <array>

namespace saltmarrow {

namespace {

struct DefaultMessage {
    std::string_view key;
    std::string_view text;
};

// The English texts, in the order the language template lists them. Spelling
// slips ("tempory", "Recieving", "Reparied") are part of the keys and texts
// that translators and older language files already know; keep them.
constexpr std::array<DefaultMessage, 270> kDefaultMessages{{
    {"msgWriteProgress", "Wrote %1 of %2 MB"},
    {"msgWriteBuffer", "Buffer"},
    {"msgNoImageLoaded", "NO IMAGE LOADED"},
    {"msgISOImage", "ISO IMAGE"},
    {"msgDataCD", "DATA CD"},
    {"msgAudioCD", "AUDIO CD"},
    {"msgWebsiteLink", "Please click here to visit the saltmarrow website"},
    {"msgDescription", "Integrated GUI for disc reading and writing tools"},
    {"msgVersion", "version"},
    {"msgCancel", "&Cancel"},
    {"msgSimulate", "&Simulate"},
    {"msgAbout", "About"},
    {"msgNotAppendable", "Inserted medium is not appendable!"},
    {"msgNotBlank", "Inserted medium is not blank!"},
    {"msgConfirmWrite", "%1 MB to be written to disc (%2 MB free)."},
    {"msgWriteCancelled", "Write Operation Cancelled."},
    {"msgNoData", "No data to write!"},
    {"msgCUEOneFile", "Only one file statement allowed in cue file."},
    {"msgCueSameFolder", "Cue/Bin must exist in the same folder and have the same name."},
    {"msgCueDoubleQuotes", "Double quotes found in bin filename."},
    {"msgCueIncorrectBin", "Incorrect bin filename found in cue sheet."},
    {"msgCueNoQuotes", "Bin filename should be enclosed with quotes."},
    {"msgCueError", "The following incompatibilities were found in cue file:"},
    {"msgCueFix", "Would you like saltmarrow to correct this cue file?"},
    {"msgNotFound", "%1 could not be found!"},
    {"msgTocDoubleQuotes", "Double quotes found in dat filename."},
    {"msgTocIncorrectDat", "Incorrect dat filename found in toc sheet."},
    {"msgTocError", "The following incompatibilities were found in toc file:"},
    {"msgTocFix", "Would you like saltmarrow to correct this toc file?"},
    {"msgSheetByteOrderMark", "The file begins with a byte order mark, which cdrdao cannot read."},
    {"msgSelectWriter", "Please select a Write Device."},
    {"msgSelectReader", "Please select a Read Device."},
    {"msgReadOnlyFile", "Could not open file for writing, maybe read only?"},
    {"msgSameDevice", "Selected Read and Write Device are the same!"},
    {"msgReader", "Reader:"},
    {"msgWriter", "Writer:"},
    {"msgConfirmCopy", "%1 MB to be copied on the fly (%2 MB free)."},
    {"msgDeleteTemp", "Delete tempory folder: "},
    {"msgCannotDelete", "Cannot remove tempory folder. Press OK to try again."},
    {"msgNoInfo", "Information could not be found for:"},
    {"msgNoExternalTools", "No external tools found!!!"},
    {"msgReadErrors", "Read errors were logged to "},
    {"msgLoadImage", "Load created image for writing?"},
    {"msgDeleteImage", "Delete partial image file?"},
    {"msgConfirmDelete", "Please confirm deletion of Image Files"},
    {"msgDeleteEmptyFolder", "Delete empty folder: %1"},
    {"msgRenameDeleteError", "There was an error while deleting/renaming!"},
    {"msgNoSPTI", "SPTI is only available on Windows NT/2k/XP"},
    {"msgReadComplete", "Read Operation Completed after"},
    {"msgReadCancelled", "Read Operation Cancelled"},
    {"msgWrongMediaType", "Current project does not match inserted media!"},
    {"msgReaderDeviceEmpty", "Reader Device is empty!"},
    {"msgWriterDeviceEmpty", "Writer Device is empty!"},
    {"msgNoDVDRead", "DVD Read currently unsupported!"},
    {"msgDumpNoData", "This disc holds no data track to dump. Read it to an image instead."},
    {"msgReplaceImage", "These files of the image will be replaced:"},
    {"msgTrayLocked", "- the tray may stay locked: Tools, Reset Writer frees it."},
    {"logMixedImage",
     "The disc holds data and audio tracks: the image stays a toc file, since a cue sheet would give "
     "its audio in the wrong byte order."},
    {"msgConfiguringDevices", "Configuring devices..."},
    {"msgScanningForDevices", "Scanning for devices..."},
    {"msgProDVDASPI", "An ASPI layer is required to use ProDVD"},
    {"msgConfirmQuit", "saltmarrow will now quit."},
    // Two-line texts: the line break is CR LF, as in every text of this table.
    {"msgSimulationReload",
     "If a simulation has been ran before you may need\r\nto reload the medium to get accurate information."},
    {"msgCheckDriveEmpty",
     "Please ensure the drive is empty and press OK.\r\nsaltmarrow will now test this drive's capabilities."},
    // The error report puts the product's name in front of this text itself.
    {"msgErrorReport",
     " has encountered an unexpected error.\r\nPlease include the details below in any report."},
    {"cmbNoChecking", "No Checking"},
    {"cmbOverlapRead", "Overlap Reading"},
    {"cmbAdditionalChecks", "Additional Checks"},
    {"cmbScratchDetect", "Scratch Detection"},
    {"cmbNoSubs", "No Subs"},
    {"cmbRWSubs", "RW Subs"},
    {"cmbRawRWSubs", "Raw RW Subs"},
    {"msgInitWrite", "Initialising Write Operation..."},
    {"msgWriteSuccess", "Writing finished successfully after %1"},
    {"msgErrorsLogged", "There were some errors, please consult the log."},
    {"msgScanningFiles", "Scanning source files..."},
    {"msgFileCheckPass", "File check completed successfully."},
    {"msgFileCheckFail", "File check failed - please see log."},
    {"msgWaitingInit", "Waiting for initiation..."},
    {"msgNoCdrdao", "No working cdrdao installation found"},
    {"msgCdrdaoFail", "Command returned nothing"},
    {"msgNoASPILayer", "Cannot load ASPI driver."},
    {"msgNoHostAdapters", "Could not find any host adapters."},
    {"msgNoDevicesFound", "Could not find any devices."},
    {"msgCheckingMedia", "Checking for writable media..."},
    {"msgOperationCancelled", "Operation Cancelled"},
    {"msgNoWritableMedia", "No writable media found!"},
    {"msgDeviceInfo", "Getting Device Info..."},
    {"msgDriveInfoLog", "Device Info written to log"},
    {"msgDiscInfo", "Getting Disc Info..."},
    {"msgDiscInfoLog", "Disc Info written to log"},
    {"msgTocSize", "Analysing TOC Size..."},
    {"msgUnlockDrive", "Trying to unlock drive..."},
    {"msgDone", "Done."},
    {"msgFail", "Fail."},
    {"msgNoRWRead", "This drive does not support RW sub-channel reading."},
    {"msgDriveNotReady", "WARNING: Drive not ready, still trying..."},
    {"msgNoRWRAWRead", "This drive does not support RW_RAW sub-channel reading."},
    {"msgInsertReadCD", "Please insert the disc to be read!"},
    {"msgReadCommand", "Detecting appropriate read subcommand..."},
    {"msgWritingISO", "Writing ISO Image, "},
    {"msgDupeFileName", "Duplicate file/folder name found"},
    {"msgFolderTooDeep", "Directories too deep!"},
    {"msgCannotReadAddress", "Cannot read first writable address"},
    {"msgNewDataJob", "Starting a new data project type will clear previous data project."},
    {"msgBrowseForFolder", "Browse for folder."},
    {"tipSelectedWriter", "Selected Write Device"},
    {"tipWriteSpeed", "Recording Speed"},
    {"tipWriteBuffer", "Recording Buffer"},
    {"tipReadDevice", "Selected Read Device"},
    {"tipReadRAW", "Read to 2352 byte image"},
    {"tipReadSimpleTOC", "Do not read the TOC of each session"},
    {"tipReadSwapAudio", "Swap byte order of audio samples"},
    {"tipReadParanoia", "Paranoia Checking Mode"},
    {"tipReadCDText", "Enable reading of CD-Text data"},
    {"tipWriteRawDriver", "Use generic-mmc-raw driver"},
    {"tipWriteEjectCD", "Eject disc after write operation"},
    {"tipWriteOverburn", "Enables writing past stated capacity"},
    {"tipWriteCDText", "Enable CD-Text for generic-mmc driver"},
    {"tipWriteBufferUnderrun", "Enables Buffer-Underrun Protection"},
    {"tipWriteSimulate", "Simulates a write operation"},
    {"tipWriteMultisession", "Leave disc open for additional sessions"},
    {"tipWriteForce", "Forces the execution of an operation"},
    {"tipSettingsManageImages", "Offer to delete images after successful write"},
    {"tipSettingsSPTI", "Use SPTI Interface on NT based systems"},
    {"tipSettingsAutoHide", "Hide settings on write operation etc."},
    {"tipSettingsSysTray", "Minimize to system tray"},
    {"tipSettingsAutoCorrect", "Auto correction of cue and toc files"},
    {"tipStatusTask", "Image File or Task"},
    {"tipStatusWriteDevice", "Write Device"},
    {"tipStatusWriteSpeed", "Recording Speed"},
    {"tipStatusWriteRAW", "Write Raw"},
    {"tipStatusWriteSimulate", "Simulation"},
    {"tipWriteDevice", "Selected Write Device"},
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
    {"msgTimeHrs", "hrs"},
    {"msgTimeMins", "mins"},
    {"msgTimeSecs", "secs"},
    {"extCdrdao", "for cd writing"},
    {"extDVDRecord", "for dvd writing"},
    {"extMkisofs", "for iso creation"},
    {"extWaveGain", "for ReplayGain"},
    {"extMadPlay", "for mp3 decoding"},
    {"msgSplitTrackHelp",
     "Enter track lengths as mm:ss:ff and separated with a space.  Erroneous data is ignored."},
    {"msgFilterTracks", "Filter selected tracks only?"},
    {"msgAddTracks", "Please add some tracks to write!"},
    {"msgOver80Mins", "CD Length exceeds 80 minutes, continue?"},
    {"msgProjectCompiled", "Project compiled after %1 secs. Load into Main?"},
    {"msgLengthUnknown", "WARNING:  Original track length is unknown!"},
    {"msgSampleRateOf", "Samplerate of %1 is unsupported."},
    {"msgNumberOfChannels", "Number of channels in %1 is unsupported."},
    {"msgCouldNotReadHeader", "Cannot read header of track %1."},
    {"msgIncorrectPathsReparied", "Incorrect Paths in Tracklist were repaired."},
    {"msgTOCImportCDText", "Import CD-Text from TOC file?"},
    {"msgCUEImportCDText", "Import CD-Text from CUE file?"},
    {"msgTotalTime", "Total Time: "},
    {"msgDecodingTrack", "Decoding Track: "},
    {"msgResamplingTrack", "Resampling Track: "},
    {"msgSplitTracks", "Only one track may exist in project to be split."},
    {"msgCalculateWaveGain", "Calculating WaveGain..."},
    {"msgSkippingTrack", "Skipping Track:"},
    {"msgAdjustingTrack", "Adjusting Track:"},
    {"msgNoFreeSpace", "Insufficient free space on drive %1"},
    {"msgTrackTooShort",
     "These tracks are shorter than 4 seconds:\r\n%1\r\n\r\n"
     "cdrdao refuses such a disc unless Force Execution is ticked in the write settings. "
     "Compile anyway?"},
    {"msgTracksLeftOut", "%1 track(s) could not be read and were left out; see the command log."},
    {"logTrackLeftOut", "Track %1 left out, it could not be read: "},
    {"listTrack", "Track"},
    {"listPause", "Pause"},
    {"listLength", "Length"},
    {"msgFolderExists", "ERROR: Folder already exists!"},
    {"msgAddData", "Please add some data to write!"},
    {"msgISOSize", "Estimated ISO size is "},
    {"msgDataLoadMain", " MB, load into main?"},
    {"msgLargeFileUDF", "Files of 4 GB or more are seen whole only by readers of UDF."},
    {"msgNodeNotFound", "Node not found."},
    {"msgTotalSize", "Total Size: "},
    {"msgIllegalFilename", "The following file could not be added:"},
    {"listName", "Name"},
    {"listSize", "Size"},
    {"listType", "Type"},
    {"msgDataDVD", "DATA DVD"},
    {"msgDVDVideo", "DVD VIDEO"},
    {"msgDVDVideoDisc", "Write this DVD Disc as DVD-Video?"},
    {"msgDataDVDMastering", "Data DVD Mastering"},
    {"msgDVDVideoMastering", "DVD Video Mastering"},
    {"msgToAddRootFolder", "To add a root folder please enable 'Folder Contents Only'"},
    {"msgFolderContentsOnly", "Folder &Contents Only"},
    {"msgFreedbTextSearch", "Please specify the artist and/or title of the disc."},
    {"msgSplitTrackNames", "Split Track Names by "},
    {"msgArtistTitle", "Artist / Title"},
    {"msgConnectionError", "Connection Error."},
    {"msgConnecting", "Connecting..."},
    {"msgConnectionClosed", "Connection Closed."},
    {"msgUserQuit", "User Quit."},
    {"msgServer", "Server: "},
    {"msgConnected", "Connected!"},
    {"msgRecieving", "Recieving "},
    {"msgBytes", " bytes..."},
    {"msgFreedbQuit", "&Quit"},
    {"msgFreedbGetTracks", "Get &Tracks"},
    {"msgExtractNoTemplate", "Please enter a file name template in the extraction settings."},
    {"msgExtractTemplateOutside",
     "The file name template \"%1\" has to name a file below the output folder."},
    {"msgExtractFolder", "The folder %1 cannot be written to."},
    {"msgEncoderMissing", "The encoder %1 was not found."},
    {"msgAddingFolders", "Adding Folders..."},
    {"msgCompilingFileList", "Compiling File List..."},
    {"msgCompliantPVD", "Setting Compliant PVD may change current values"},
    {"msgBootPathError", "Path to boot image is invalid!"},
    {"msgReadNoSize", "Could not determine disc size"},
    {"msgConfirmRead", "%1 MB will be read to an image file."},
    {"msgArtistFill", "Fill all tracks with this artist name?"},
    {"msgSaveChanges", "Do you want to save your changes?"},
    {"msgCouldNotOpen", "Could not open media for preview."},
    {"msgInstallCodec", "Please install a codec for this media type."},
    {"msgStatusError", "Error"},
    {"msgStatusPlaying", "Playing"},
    {"msgStatusStopped", "Stopped"},
    {"msgStatusPaused", "Paused"},
    {"msgStatusTrack", "Track"},
    {"msgStatusLoading", "Loading..."},
    {"tipStandardGap", "Add tracks with a standard two second gap"},
    {"tipAudioProgress", "Amount used of 80 minute disc / decoding progress"},
    {"tipCreateISOFile", "Create ISO image file instead of disc"},
    {"tipDataProgress", "Amount used of 80 minute disc"},
    {"tipISODiscLabel", "Disc label that will be shown in explorer"},
    {"tipISOSystemID", "System that disc is intended for"},
    {"tipISOVolumeName", "Volume set disc belongs to (if any)"},
    {"tipISOVolumeTotal", "Total number of discs in volume set"},
    {"tipISOVolumeNumber", "Number of this disc within volume set"},
    {"tipISOPublisher", "Publisher information such as name and contact details"},
    {"tipISOPreparer", "Information about the person who created this disc"},
    {"tipISOApplication", "Information about the application used to create this disc"},
    {"tipISOAbstract", "Information that describes the contents of this disc"},
    {"tipISOBibliographic", "Bibliographic information that applies to this disc"},
    {"tipISOCopyright", "Copyright information that applies to this disc"},
    {"tipISOLevel2", "Allow 31 character ISO filenames"},
    {"tipISOJoliet", "Generate Joliet directory records"},
    {"tipISOLongJoliet", "Allow 103 character Joliet filenames"},
    {"tipISORockRidge", "Generate Rock Ridge directory records"},
    {"tipISOUDF", "Generate UDF directory records"},
    {"tipISODontRelocate", "Do not use deep folder relocation for ISO9660"},
    {"tipISOCompliantPVD", "Enforce ISO9660 compliance in PVD"},
    {"tipISOVersionNumbers", "Omit version numbers from ISO9660 filenames"},
    {"tipISO1999", "207 characters and no folder level limit"},
    {"tipISORelaxISO", "Allow all characters for ISO9660"},
    {"tipISOBootable", "Make Bootable CD"},
    {"tipISOBootImage", "Browse for boot image file"},
    {"tipISONoEmulation", "Do not provide disk emulation"},
    {"tipISOLoadSize", "Number of virtual sectors to load"},
    {"tipISOBootInfoTable", "Patch boot image with information of CD layout"},
    {"tipISOMultiSession", "Add data as a new session"},
    {"tipISOImportSession", "Import data from previous session."},
    {"tabDeviceInfoTab", "Device"},
    {"tabMediaInfoTab", "Media"},
}};

}  // namespace

MessageTable::MessageTable() {
    fillDefaults();
}

void MessageTable::fillDefaults() {
    for (const auto &row : kDefaultMessages) set(std::string(row.key), std::string(row.text));
}

std::size_t MessageTable::defaultCount() {
    return kDefaultMessages.size();
}

const std::string &MessageTable::text(std::string_view key) const {
    static const std::string empty;
    auto it = texts_.find(key);
    return it == texts_.end() ? empty : it->second;
}

bool MessageTable::contains(std::string_view key) const {
    return texts_.find(key) != texts_.end();
}

void MessageTable::set(const std::string &key, std::string text) {
    auto [it, added] = texts_.insert_or_assign(key, std::move(text));
    (void)it;
    if (added) order_.push_back(key);
}

std::string MessageTable::format(std::string_view key, std::string_view first,
                                 std::string_view second) const {
    // One pass, so that a file name holding "%2" is not taken for a marker.
    const std::string &pattern = text(key);
    std::string out;
    out.reserve(pattern.size() + first.size() + second.size());
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == '%' && i + 1 < pattern.size() && (pattern[i + 1] == '1' || pattern[i + 1] == '2')) {
            out += pattern[i + 1] == '1' ? first : second;
            ++i;
        } else {
            out += pattern[i];
        }
    }
    return out;
}

}  // namespace saltmarrow
