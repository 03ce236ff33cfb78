#ifndef SALTMARROW_SHELL_SETTINGSCONTROLS_H
#define SALTMARROW_SHELL_SETTINGSCONTROLS_H

#include "shell/SettingsStore.h"

class QWidget;

namespace saltmarrow {

// The settings that are states of the main form's controls, found by the
// objectName in the control column of the settings tables: check boxes hold
// 0 or 1, checked menu entries True or False, txtOutputs the log's font.

// Sets the controls from the settings.
void controlsFromSettings(QWidget *form, const Settings &settings);
// Takes the controls' states into the settings.
void settingsFromControls(const QWidget *form, Settings &settings);
// The keys of earlier versions that the last read found: their check boxes
// and list indexes for this run.
void applyLegacySettings(QWidget *form, const Settings &settings);

}  // namespace saltmarrow

#endif
