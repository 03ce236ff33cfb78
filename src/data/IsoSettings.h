#ifndef SALTMARROW_DATA_ISOSETTINGS_H
#define SALTMARROW_DATA_ISOSETTINGS_H

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace saltmarrow::data {

// The options of the image a data project becomes, as frmISOSettings holds
// them: the descriptor texts, the switches, the boot image and the session.

enum class IsoBox {
    ISOLevel2,
    Joliet,
    LongJoliet,
    RockRidge,
    UDF,
    DontRelocate,
    CompliantPVD,
    VersionNo,
    ISO1999,
    RelaxISO,
    Multi,
    Import,
    BootImage,
    NoEmulation,
    LoadSize,
    BootInfoTable,
};
enum class IsoField {
    Label,
    SysID,
    VolSet,
    VolNo,
    VolSize,
    Publisher,
    Preparer,
    Application,
    Abstract,
    Bibliographic,
    Copyright,
    LoadSize,
};

// Which keys a text field lets through (see checkASCII).
enum class TextFilter { Strict, Wide, Digits, None };

struct IsoBoxRow {
    IsoBox box;
    std::string_view control;
    std::string_view caption;
    std::string_view cdKey, dvdKey;  // settings; empty: not kept
    bool fixedByVideo;               // a DVD-Video image decides this one
    std::string_view tip;
};

struct IsoFieldRow {
    IsoField field;
    std::string_view control;
    std::string_view label;  // its caption label, and that label's text
    std::string_view labelText;
    std::string_view designText;
    int maxLength;
    TextFilter filter;
    bool filteredOnLeave;  // the text is filtered again when the field is left
    std::string_view tip;
};

// clang-format off
inline constexpr IsoBoxRow kIsoBoxes[] = {
    {IsoBox::ISOLevel2,     "chkISOLevel2",     "ISO Level 2",       "ISOLevel2",    "DVDISOLevel2",    true,  "tipISOLevel2"},
    {IsoBox::Joliet,        "chkJoliet",        "Joliet Names",      "Joliet",       "DVDJoliet",       true,  "tipISOJoliet"},
    {IsoBox::LongJoliet,    "chkLongJoliet",    "Long Joliet Names", "LongJoliet",   "DVDLongJoliet",   true,  "tipISOLongJoliet"},
    {IsoBox::RockRidge,     "chkRockRidge",     "Rock Ridge",        "RockRidge",    "DVDRockRidge",    true,  "tipISORockRidge"},
    {IsoBox::UDF,           "chkUDF",           "UDF v1.02",         "UDF",          "DVDUDF",          true,  "tipISOUDF"},
    {IsoBox::DontRelocate,  "chkDontRelocate",  "No Folder Limit",   "DontRelocate", "DVDDontRelocate", true,  "tipISODontRelocate"},
    {IsoBox::CompliantPVD,  "chkCompliantPVD",  "Compliant PVD",     "CheckPVD",     "DVDCheckPVD",     false, "tipISOCompliantPVD"},
    {IsoBox::VersionNo,     "chkVersionNo",     "Omit Version No.",  "VersionNo",    "DVDVersionNo",    true,  "tipISOVersionNumbers"},
    {IsoBox::ISO1999,       "chkISO1999",       "ISO9660:1999",      "ISOLevel4",    "DVDISOLevel4",    true,  "tipISO1999"},
    {IsoBox::RelaxISO,      "chkRelaxISO",      "Relax ISO9660",     "RelaxISO",     "DVDRelaxISO",     true,  "tipISORelaxISO"},
    {IsoBox::Multi,         "chkMulti",         "Add New Session",   "",             "",                true,  "tipISOMultiSession"},
    {IsoBox::Import,        "chkImport",        "Import Session",    "",             "",                true,  "tipISOImportSession"},
    {IsoBox::BootImage,     "chkBootImage",     "Bootable Image",    "",             "",                true,  "tipISOBootable"},
    {IsoBox::NoEmulation,   "chkNoEmulation",   "No Emulation",      "",             "",                false, "tipISONoEmulation"},
    {IsoBox::LoadSize,      "chkLoadSize",      "Load Size",         "",             "",                false, "tipISOLoadSize"},
    {IsoBox::BootInfoTable, "chkBootInfoTable", "Boot Info Table",   "",             "",                false, "tipISOBootInfoTable"},
};

inline constexpr IsoFieldRow kIsoFields[] = {
    {IsoField::Label,         "txtLabel",         "lblLabel",         "Volume Label:",      "UNTITLED",   31,  TextFilter::Strict, true,  "tipISODiscLabel"},
    {IsoField::SysID,         "txtSysID",         "lblSysID",         "System Identifier:", "",           31,  TextFilter::Wide,   true,  "tipISOSystemID"},
    {IsoField::VolSet,        "txtVolSet",        "lblVolSet",        "Volume Set:",        "",           31,  TextFilter::Wide,   true,  "tipISOVolumeName"},
    {IsoField::VolNo,         "txtVolNo",         "lblVolNo",         "Volume Number:",     "1",          2,   TextFilter::Digits, false, "tipISOVolumeNumber"},
    {IsoField::VolSize,       "txtVolSize",       "lblVolSize",       "Of: ",               "1",          2,   TextFilter::Digits, false, "tipISOVolumeTotal"},
    {IsoField::Publisher,     "txtPublisher",     "lblPublisher",     "Publisher:",         "",           128, TextFilter::Wide,   true,  "tipISOPublisher"},
    {IsoField::Preparer,      "txtPreparer",      "lblPreparer",      "Data Preparer:",     "",           128, TextFilter::Wide,   true,  "tipISOPreparer"},
    {IsoField::Application,   "txtApplication",   "lblApplication",   "Application:",       "SALTMARROW", 128, TextFilter::Wide,   true,  "tipISOApplication"},
    {IsoField::Abstract,      "txtAbstract",      "lblAbstract",      "Abstract:",          "",           128, TextFilter::Strict, false, "tipISOAbstract"},
    {IsoField::Bibliographic, "txtBibliographic", "lblBibliographic", "Bibliographic:",     "",           128, TextFilter::Strict, false, "tipISOBibliographic"},
    {IsoField::Copyright,     "txtCopyright",     "lblCopyright",     "Copyright:",         "",           128, TextFilter::Strict, false, "tipISOCopyright"},
    {IsoField::LoadSize,      "txtLoadSize",      "",                 "",                   "",           128, TextFilter::None,   false, "tipISOLoadSize"},
};
// clang-format on

constexpr std::size_t kIsoBoxCount = std::size(kIsoBoxes);
constexpr std::size_t kIsoFieldCount = std::size(kIsoFields);

// What the image is made with: the snapshot the ISO command is composed from.
struct IsoSettings {
    std::array<std::string, kIsoFieldCount> texts;
    std::array<bool, kIsoBoxCount> boxes{};
    std::string strBootImage;  // empty: no boot image

    IsoSettings();  // the design state
    const std::string &text(IsoField f) const { return texts[static_cast<std::size_t>(f)]; }
    std::string &text(IsoField f) { return texts[static_cast<std::size_t>(f)]; }
    bool checked(IsoBox b) const { return boxes[static_cast<std::size_t>(b)]; }
};

// The dialog's state: the values and which controls can be used.
struct IsoControls {
    IsoSettings values;
    std::array<bool, kIsoBoxCount> enabled{};
    bool bootImageEnabled = false;  // cmdBootImage and txtBootImage
    bool loadSizeEnabled = false;   // txtLoadSize

    IsoControls();  // the design state: nothing ticked, the dependants disabled
    bool enabledBox(IsoBox b) const { return enabled[static_cast<std::size_t>(b)]; }
};

// A box takes a value, by the user's click or by the program: when the value
// changes, the box's rules run, and so do those of the boxes they change.
void setBox(IsoControls &controls, IsoBox box, bool ticked);
// The rules of one box for the value it has.
void boxRules(IsoControls &controls, IsoBox box);

// The boxes of a project kind: the DVD column of the settings with blnDVD,
// else the CD one; DVD-Video fixes twelve of them, which stay disabled.
using SettingRead = std::function<std::string(std::string_view key)>;
using SettingWrite = std::function<void(std::string_view key, const std::string &value)>;
void loadIsoSettings(IsoControls &controls, const SettingRead &read, bool blnDVD, bool blnDVDVideo);
void saveIsoSettings(const IsoControls &controls, const SettingWrite &write, bool blnDVD, bool blnDVDVideo);

// The key filter. key is the typed character; wide is the class of the field.
// Nothing is dropped or changed unless compliantPVD is ticked. An empty
// result drops the key.
std::optional<char> checkASCII(char key, bool wide, bool compliantPVD);
// txtVolNo and txtVolSize: digits and backspace only, always.
std::optional<char> checkDigit(char key);
// The same table over a whole text, each permission standing for `wide`.
std::string filterText(std::string_view text, bool allowPunctuation, bool allowSpace, bool allowLowerCase,
                       bool allowAll);
// A field being left while compliantPVD is ticked: what it then holds.
std::string leaveField(IsoField field, std::string_view text, bool compliantPVD);
// "Clear fields": the descriptor texts back to their start, the label kept.
void clearFields(IsoSettings &settings);
// OK is refused while a bootable image names no existing file.
bool bootImageValid(const IsoSettings &settings);

}  // namespace saltmarrow::data

#endif
