#include "shell/SettingsControls.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QWidget>

namespace saltmarrow {

namespace {

QString nameOf(std::string_view control) {
    return QString::fromUtf8(control.data(), static_cast<qsizetype>(control.size()));
}

}  // namespace

void controlsFromSettings(QWidget *form, const Settings &settings) {
    for (const SettingRow &row : kSettingsTable) {
        if (row.control.empty()) continue;
        const QString name = nameOf(row.control);
        if (auto *check = form->findChild<QCheckBox *>(name)) {
            check->setChecked(settings.ticked(row.key));
        } else if (auto *action = form->findChild<QAction *>(name)) {
            action->setChecked(settings.boolean(row.key));
        } else if (auto *log = form->findChild<QWidget *>(name)) {
            QFont font = log->font();
            if (row.key == "CommandLog Font" && !settings.text(row.key).empty())
                font.setFamily(QString::fromStdString(settings.text(row.key)));
            if (row.key == "CommandLog Size" && settings.real(row.key) > 0)
                font.setPointSizeF(settings.real(row.key));
            log->setFont(font);
        }
    }
}

void settingsFromControls(const QWidget *form, Settings &settings) {
    for (const SettingRow &row : kSettingsTable) {
        if (row.control.empty()) continue;
        const QString name = nameOf(row.control);
        if (auto *check = form->findChild<QCheckBox *>(name)) {
            settings.setInteger(row.key, check->isChecked() ? 1 : 0);
        } else if (auto *action = form->findChild<QAction *>(name)) {
            settings.setBoolean(row.key, action->isChecked());
        } else if (auto *log = form->findChild<QWidget *>(name)) {
            if (row.key == "CommandLog Font") settings.setText(row.key, log->font().family().toStdString());
            if (row.key == "CommandLog Size") settings.setReal(row.key, log->font().pointSizeF());
        }
    }
}

void applyLegacySettings(QWidget *form, const Settings &settings) {
    for (const LegacySettingRow &row : kLegacySettings) {
        if (row.control.empty() || !settings.wasRead(row.key)) continue;
        const QString name = nameOf(row.control);
        if (auto *check = form->findChild<QCheckBox *>(name)) {
            check->setChecked(settings.integer(row.key) == 1);
        } else if (auto *combo = form->findChild<QComboBox *>(name)) {
            int index = settings.integer(row.key);
            if (index >= 0 && index < combo->count()) combo->setCurrentIndex(index);
        }
    }
}

}  // namespace saltmarrow
