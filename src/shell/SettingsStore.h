#ifndef SALTMARROW_SHELL_SETTINGSSTORE_H
#define SALTMARROW_SHELL_SETTINGSSTORE_H

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "devices/DeviceInfo.h"
#include "shell/EncoderTable.h"

namespace saltmarrow {

// saltmarrow.ini: one flat list of key=value lines, written anew as a whole in
// a fixed order with section headers for the reader's eyes only. Keys are
// unique across sections; reading ignores the sections.

enum class SettingForm {
    Int,     // 16-bit decimal; check boxes are 0 or 1
    Bool,    // "True" / "False"
    Real,    // a single-precision number, read leniently
    Text,    // as it stands
    Fields,  // texts joined by "|", one line per record
};

struct SettingRow {
    std::string_view section;
    std::string_view key;
    SettingForm form;
    std::string_view defaultValue;  // as the file holds it; "" is unchecked, empty or 0
    // The control of the main form the value belongs to, if it is one:
    // check boxes (chk...), checked menu entries (mnu...), the log's font.
    std::string_view control;
};

// mpcdec, the Musepack decoder of Linux, refuses "--wav" and writes a WAV file
// anyway; the other decoder of Windows wanted the switch.
#ifdef _WIN32
inline constexpr std::string_view kDecodeMPCDefault = "--wav %s %d";
#else
inline constexpr std::string_view kDecodeMPCDefault = "%s %d";
#endif

// Rows in the order of the file. TempFolder and MRUExtract depend on where the
// program stands and get their defaults from Settings::setDefaults.
// clang-format off
inline constexpr SettingRow kSettingsTable[] = {
    {"[Main Settings]", "Check Cue Files", SettingForm::Int, "", "chkCheckCUE"},
    {"[Main Settings]", "SPTI Interface", SettingForm::Int, "", "chkUseSPTI"},
    {"[Main Settings]", "MRURead", SettingForm::Text, "", ""},
    {"[Main Settings]", "MRUWrite", SettingForm::Text, "", ""},
    {"[Main Settings]", "UseDriverTable", SettingForm::Bool, "True", ""},
    {"[Main Settings]", "CommandLog Font", SettingForm::Text, "", "txtOutputs"},
    {"[Main Settings]", "CommandLog Size", SettingForm::Real, "9", "txtOutputs"},
    {"[Main Settings]", "Version", SettingForm::Text, "", ""},
    {"[Main Settings]", "ShowSettings", SettingForm::Bool, "", "mnuDeviceSettings"},
    {"[Main Settings]", "ShowCommandLog", SettingForm::Bool, "", "mnuLog"},
    {"[Main Settings]", "MouseOver Help", SettingForm::Bool, "", "mnuMouseOver"},
    {"[Main Settings]", "Confirm Write", SettingForm::Bool, "", "mnuConfirmWrite"},
    {"[Main Settings]", "Always on Top", SettingForm::Bool, "", "mnuOnTop"},
    {"[Main Settings]", "Autohide Settings", SettingForm::Int, "", "chkAutoHide"},
    {"[Main Settings]", "Minimize To Tray", SettingForm::Int, "", "chkMinToTray"},
    // The two selections are device keys; they are kept as text (an empty
    // selection is written empty) and matched against the device table.
    {"[Device Settings]", "WriterDevice", SettingForm::Int, "", ""},
    {"[Device Settings]", "ReaderDevice", SettingForm::Int, "", ""},
    {"[Device Settings]", "Device", SettingForm::Fields, "", ""},
    {"[Advanced Settings]", "Cdrdao Verbose", SettingForm::Int, "2", ""},
    {"[Advanced Settings]", "UseProDVD", SettingForm::Bool, "", ""},
    {"[Advanced Settings]", "Language", SettingForm::Text, "", ""},
    {"[Audio CD]", "TempFolder", SettingForm::Text, "", ""},
    {"[Audio CD]", "CDTextFilter", SettingForm::Text, "%4 - %2", ""},
    {"[Audio CD]", "2secGap", SettingForm::Bool, "True", ""},
    {"[Audio CD]", "UseCDText", SettingForm::Bool, "True", ""},
    {"[Audio CD]", "Audio Width", SettingForm::Int, "", ""},
    {"[Audio CD]", "Audio Height", SettingForm::Int, "", ""},
    {"[Audio CD]", "MRUAudio", SettingForm::Text, "", ""},
    {"[Audio CD]", "MRUExtract", SettingForm::Text, "", ""},
    {"[Audio CD]", "ExtractPath", SettingForm::Text, "%1/%2/%3 - %4", ""},
    {"[Audio CD]", "AutoWriteAudio", SettingForm::Bool, "", ""},
    {"[Audio CD]", "Decode MP3", SettingForm::Text, "-v %s --output=wave:%d -S --sample-rate=44100", ""},
    {"[Audio CD]", "Decode APE", SettingForm::Text, "%s %d -d", ""},
    {"[Audio CD]", "Decode OGG", SettingForm::Text, "%s -o %d", ""},
    {"[Audio CD]", "Decode FLAC", SettingForm::Text, "-d %s -o %d", ""},
    {"[Audio CD]", "Decode MPC", SettingForm::Text, kDecodeMPCDefault, ""},
    {"[Audio CD]", "Decode AAC", SettingForm::Text, "%s -o %d", ""},
    {"[Audio CD]", "WaveGain", SettingForm::Text, "--radio --gain 3 --apply", ""},
    {"[Data CD]", "Data Width", SettingForm::Int, "", ""},
    {"[Data CD]", "Data Height", SettingForm::Int, "", ""},
    {"[Data CD]", "Confirm ISO Settings", SettingForm::Bool, "", ""},
    {"[Data CD]", "AutoWriteData", SettingForm::Bool, "", ""},
    {"[Data CD]", "MRUData", SettingForm::Text, "", ""},
    {"[Data CD]", "ISOLevel2", SettingForm::Bool, "", ""},
    {"[Data CD]", "Joliet", SettingForm::Bool, "True", ""},
    {"[Data CD]", "LongJoliet", SettingForm::Bool, "", ""},
    {"[Data CD]", "RockRidge", SettingForm::Bool, "True", ""},
    {"[Data CD]", "UDF", SettingForm::Bool, "", ""},
    {"[Data CD]", "DontRelocate", SettingForm::Bool, "", ""},
    {"[Data CD]", "CheckPVD", SettingForm::Bool, "True", ""},
    {"[Data CD]", "VersionNo", SettingForm::Bool, "", ""},
    {"[Data CD]", "ISOLevel4", SettingForm::Bool, "", ""},
    {"[Data CD]", "RelaxISO", SettingForm::Bool, "", ""},
    {"[Data CD]", "SortableDate", SettingForm::Bool, "", ""},
    {"[Data CD]", "FolderContentsOnly", SettingForm::Int, "1", ""},
    {"[Data DVD]", "DVDFolderContentsOnly", SettingForm::Int, "1", ""},
    {"[Data DVD]", "DVDVideoFolderContentsOnly", SettingForm::Int, "1", ""},
    {"[Data DVD]", "DVDMRUData", SettingForm::Text, "", ""},
    {"[Data DVD]", "DVDMRUVideo", SettingForm::Text, "", ""},
    {"[Data DVD]", "DVDISOLevel2", SettingForm::Bool, "", ""},
    {"[Data DVD]", "DVDJoliet", SettingForm::Bool, "", ""},
    {"[Data DVD]", "DVDLongJoliet", SettingForm::Bool, "", ""},
    {"[Data DVD]", "DVDRockRidge", SettingForm::Bool, "", ""},
    {"[Data DVD]", "DVDUDF", SettingForm::Bool, "True", ""},
    {"[Data DVD]", "DVDDontRelocate", SettingForm::Bool, "", ""},
    {"[Data DVD]", "DVDCheckPVD", SettingForm::Bool, "True", ""},
    {"[Data DVD]", "DVDVersionNo", SettingForm::Bool, "", ""},
    {"[Data DVD]", "DVDISOLevel4", SettingForm::Bool, "", ""},
    {"[Data DVD]", "DVDRelaxISO", SettingForm::Bool, "", ""},
    {"[Data DVD]", "DVDSortableDate", SettingForm::Bool, "", ""},
    {"[Freedb Settings]", "Server", SettingForm::Int, "", ""},
    {"[Freedb Settings]", "ServerList", SettingForm::Text, "gnudb.gnudb.org|", ""},
    // The web site of the search by words.
    {"[Freedb Settings]", "SearchSite", SettingForm::Text, "http://www.gnudb.org", ""},
    {"[Freedb Settings]", "Email", SettingForm::Text, "", ""},
    {"[Encoder Settings]", "EncoderSettings", SettingForm::Fields, "", ""},
    {"[Encoder Settings]", "UseEncoder", SettingForm::Int, "", ""},
};

// Keys of earlier versions: read so that an old file still carries over, never
// written. Most now live in the option fields of each device.
struct LegacySettingRow {
    std::string_view key;
    SettingForm form;
    std::string_view defaultValue;
    // What the value sets: a check box (its state), a combo box (its index), or
    // nothing but the value itself.
    std::string_view control;
};

inline constexpr LegacySettingRow kLegacySettings[] = {
    {"ReadRaw", SettingForm::Int, "", "chkReadRaw"},
    {"Simple TOC", SettingForm::Int, "", "chkSimpleTOC"},
    {"SwapAudio", SettingForm::Int, "", "chkSwapAudio"},
    {"Subchannel", SettingForm::Int, "", "cmbSubs"},
    {"Paranoia", SettingForm::Int, "", "cmbParanoia"},
    {"Jitter", SettingForm::Int, "0", ""},
    {"PurgeLog", SettingForm::Int, "1", ""},
    {"ReadCDTEXT", SettingForm::Int, "", "chkReadCDText"},
    {"BurnProof", SettingForm::Int, "", "chkBurnProof"},
    {"WriteRaw", SettingForm::Int, "", "ChkWriteDriverRaw"},
    {"Eject", SettingForm::Int, "", "chkEject"},
    {"Overburn", SettingForm::Int, "", "chkOverburn"},
    {"WriteCDText", SettingForm::Int, "", "chkWriteCDText"},
    {"Simulate", SettingForm::Int, "", "chkSimulate"},
    {"MultiSession", SettingForm::Int, "", "chkMultiSession"},
    {"Force Execution", SettingForm::Int, "", "chkForce"},
    {"ExtractEncoder", SettingForm::Text, "", ""},
    {"DVDData Width", SettingForm::Int, "", ""},
    {"DVDData Height", SettingForm::Int, "", ""},
    {"DVDConfirm ISO Settings", SettingForm::Bool, "", ""},
    {"DVDAutoWriteData", SettingForm::Bool, "", ""},
};
// clang-format on

// The values of every key of both tables, as text in the file's notation.
// Typed access converts as the file is read: a malformed number or boolean
// raises run-time error 13 (or 6 out of range).
class Settings {
public:
    // All defaults.
    Settings();

    // Puts every key back to its default.
    void setDefaults();

    const std::string &text(std::string_view key) const;
    bool boolean(std::string_view key) const;
    std::int16_t integer(std::string_view key) const;
    double real(std::string_view key) const;
    // A check box state: ticked at 1 only.
    bool ticked(std::string_view key) const { return integer(key) == 1; }

    void setText(std::string_view key, std::string value);
    void setBoolean(std::string_view key, bool value);
    void setInteger(std::string_view key, int value);
    void setReal(std::string_view key, double value);

    // True once a legacy key was read from a file (its value then overrides
    // the control it names for this run).
    bool wasRead(std::string_view legacyKey) const;

    static bool isKnown(std::string_view key);
    static const SettingRow *row(std::string_view key);
    static const LegacySettingRow *legacyRow(std::string_view key);

    // The checked store of one line read from the file; unknown keys are
    // ignored. Raises error 13/6 for a malformed number or boolean, leaving
    // the old value.
    void store(std::string_view key, std::string_view value);

private:
    std::string &slot(std::string_view key);
    std::map<std::string, std::string, std::less<>> values_;
    std::map<std::string, bool, std::less<>> legacyRead_;
};

// The defaults that depend on the machine rather than on the table.
std::string defaultTempFolder();
std::string defaultExtractFolder();

// Conversions of the file's notation.
bool textToBoolean(std::string_view text);  // "True"/"False" any case, or a number; else error 13
std::string booleanText(bool value);        // "True" / "False"
std::string singleText(double value);       // shortest text of a single-precision number

// What loading needs from the main form.
struct LoadContext {
    DeviceTable *devices = nullptr;          // "Device" lines update it; may be null
    std::vector<std::string> readerEntries;  // the entries of cmbReaderDevice, in order
};

struct LoadResult {
    bool fileFound = false;
    // The entry of cmbReaderDevice that "ReaderDevice" asks for, if any.
    std::optional<std::size_t> readerIndex;
};

// The file's path below the program folder.
std::string settingsPath(std::string_view appDir);

// Reads the three keys needed before the language is known: "SPTI Interface",
// "UseProDVD", "Language". An absent file changes nothing. Raises the first
// malformed value's error once the whole file has been read.
void preloadSettings(const std::string &path, Settings &settings);

// Reads every line: the first "=" splits, keys are case-sensitive, the last
// value of a key wins. "Device" lines update the matching drives of the table,
// "EncoderSettings" lines replace the encoder rows (the first line of a read
// starts a new table). An absent file leaves all as it was. A malformed value
// does not stop the read: the other lines still load, and the first error is
// raised at the end, so the error report shows it and the rest carries over.
LoadResult loadSettings(const std::string &path, Settings &settings, std::optional<EncoderTable> &encoders,
                        const LoadContext &context);

// The whole file as saveSettings writes it (CR LF line ends). Raises error 13
// or 6 for a value that is not of its key's form, before anything is written.
// Without an encoder table there is no "[Encoder Settings]" section.
std::string composeSettings(const Settings &settings, const DeviceTable &devices,
                            const std::optional<EncoderTable> &encoders);

// Writes the file anew: nothing happens until the main form has finished
// loading. The text goes to a temporary file beside the old one, which is then
// renamed over it, so a full disk or a crash never leaves half a file. A file
// or folder that cannot be written raises a RuntimeError and the old file is
// left untouched.
void saveSettings(const std::string &path, bool formLoaded, const Settings &settings,
                  const DeviceTable &devices, const std::optional<EncoderTable> &encoders);

// The selection helpers of the two device lists: the key of the device whose
// id the entry starts with, and the entry that starts with the id of the
// device of a key. The id is the SPTI or ASPI one, as useSPTI says.
std::string deviceNumberOfEntry(const DeviceTable &devices, std::string_view entry, bool useSPTI);
std::optional<std::size_t> entryOfDevice(const DeviceTable &devices, std::string_view deviceNumber,
                                         std::span<const std::string> entries, bool useSPTI);

}  // namespace saltmarrow

#endif
