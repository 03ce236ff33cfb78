#ifndef SALTMARROW_SHELL_LANGUAGEFILE_H
#define SALTMARROW_SHELL_LANGUAGEFILE_H

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "shell/MessageTable.h"

namespace saltmarrow {

// Language files: <app>/languages/<name>.txt. "#" starts a comment line,
// "[Global Messages]" holds key=text for the message table ("<cr>" is a line
// break there), and "[formName]" holds control=caption or control(index)=caption
// for one form; a line named after the form itself sets the form's caption.

inline constexpr std::string_view kEnglish = "English";
inline constexpr std::string_view kMainFormName = "frmMain";

// One caption of a control, or of a member of a control array.
struct CaptionLine {
    std::string control;
    std::optional<int> index;
    std::string caption;
};

// What a language file holds for one form.
struct LanguageSection {
    std::vector<std::pair<std::string, std::string>> messages;  // in file order
    std::optional<std::string> formCaption;
    std::vector<CaptionLine> captions;  // in file order
};

std::string languagePath(std::string_view appDir, std::string_view language);

// Reads the section of formName (and, with messagesToo, the global messages)
// from the bytes of a language file. Reading stops at the first section header
// behind the form's own. Lines that match nothing are harmless.
LanguageSection readLanguage(std::string_view bytes, std::string_view formName, bool messagesToo);

// "name(3)" -> {"name", 3}; "name" -> {"name", none}.
std::pair<std::string, std::optional<int>> splitControlKey(std::string_view key);

// The languages to choose from: "English" first, then every language file's
// name without ".txt", sorted.
std::vector<std::string> availableLanguages(std::string_view appDir);

// Captions the template leaves out: never shown ("...[dis]"), separators, and
// the arrows and dots of small buttons.
bool isUntranslatedCaption(std::string_view caption);

// One form as the template lists it.
struct FormCaptions {
    std::string formName;
    std::string caption;
    std::vector<CaptionLine> controls;  // in the form's order
};

// The template for translators: the header box with the guidelines, all
// messages in table order, and one section per form (CR LF line ends).
std::string composeLanguageTemplate(std::string_view name, std::string_view date, std::string_view version,
                                    const MessageTable &messages, const std::vector<FormCaptions> &forms);

// The tool tips of the main form: control (with an index for the panels of
// sbStatusBar, 1 to 5) and message key.
struct TooltipRow {
    std::string_view control;
    int index;  // 0: not an array member
    std::string_view key;
};

inline constexpr TooltipRow kMainTooltips[] = {
    {"cmbWriterDevice", 0, "tipWriteDevice"},
    {"cmbSpeed", 0, "tipWriteSpeed"},
    {"cmbBuffers", 0, "tipWriteBuffer"},
    {"cmbReaderDevice", 0, "tipReadDevice"},
    {"chkReadRaw", 0, "tipReadRAW"},
    {"chkSimpleTOC", 0, "tipReadSimpleTOC"},
    {"chkSwapAudio", 0, "tipReadSwapAudio"},
    {"cmbParanoia", 0, "tipReadParanoia"},
    {"chkReadCDText", 0, "tipReadCDText"},
    {"ChkWriteDriverRaw", 0, "tipWriteRawDriver"},
    {"chkEject", 0, "tipWriteEjectCD"},
    {"chkOverburn", 0, "tipWriteOverburn"},
    {"chkWriteCDText", 0, "tipWriteCDText"},
    {"chkBurnProof", 0, "tipWriteBufferUnderrun"},
    {"chkSimulate", 0, "tipWriteSimulate"},
    {"chkMultiSession", 0, "tipWriteMultisession"},
    {"chkForce", 0, "tipWriteForce"},
    {"chkDelImage", 0, "tipSettingsManageImages"},
    {"chkUseSPTI", 0, "tipSettingsSPTI"},
    {"chkAutoHide", 0, "tipSettingsAutoHide"},
    {"chkMinToTray", 0, "tipSettingsSysTray"},
    {"chkCheckCUE", 0, "tipSettingsAutoCorrect"},
    {"sbStatusBar", 1, "tipStatusTask"},
    {"sbStatusBar", 2, "tipStatusWriteDevice"},
    {"sbStatusBar", 3, "tipStatusWriteSpeed"},
    {"sbStatusBar", 4, "tipStatusWriteRAW"},
    {"sbStatusBar", 5, "tipStatusWriteSimulate"},
};

}  // namespace saltmarrow

#endif
