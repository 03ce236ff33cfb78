#ifndef SALTMARROW_SHELL_LANGUAGEFORMS_H
#define SALTMARROW_SHELL_LANGUAGEFORMS_H

#include <span>
#include <string>
#include <vector>

#include "shell/LanguageFile.h"
#include "shell/MessageTable.h"
#include "shell/SettingsStore.h"

class QObject;
class QString;
class QWidget;

namespace saltmarrow {

// Language files applied to real forms. Controls are found by objectName; the
// members of a control array carry an int property "index". A caption is the
// text of a button or check box, of a label or menu entry, the title of a group
// box or menu; other controls have none and are passed over.

// Reads <appDir>/languages/<language>.txt and sets the captions of form (named
// by its objectName), and with messagesToo the messages of the table. False if
// there is no such file.
bool applyLanguage(QWidget *form, bool messagesToo, const std::string &language, MessageTable &messages,
                   const std::string &appDir);

// The English name of the system's language ("German", "French", ...).
std::string systemLanguageName();

// Start-up: the English texts first, then the language of the settings (the
// system's when none is set) applied to the main form with its messages. A
// language without a file falls back to English without a word. The language
// in effect is stored back into "Language" and returned.
std::string startLanguage(QWidget *mainForm, Settings &settings, MessageTable &messages,
                          const std::string &appDir,
                          const std::string &systemLanguage = systemLanguageName());

// The tool tips of form's controls from the table, or none at all.
void enableTooltips(QWidget *form, bool shown, const MessageTable &messages,
                    std::span<const TooltipRow> rows = kMainTooltips);

// Caption access for one control; false if it has no caption.
bool controlCaption(const QObject *control, QString &caption);
bool setControlCaption(QObject *control, const QString &caption);

// The form's caption and its controls' captions, in the form's order.
FormCaptions collectCaptions(const QWidget *form);

// Writes <appDir>/languages/<name>.txt for the forms given (the loaded ones),
// dated today. Raises a RuntimeError if the file cannot be written.
void writeLanguageTemplate(const std::string &appDir, const std::string &name,
                           const std::vector<QWidget *> &forms, const MessageTable &messages,
                           const std::string &version);

}  // namespace saltmarrow

#endif
