#ifndef SALTMARROW_SHELL_FRMLANGUAGE_H
#define SALTMARROW_SHELL_FRMLANGUAGE_H

#include <QDialog>
#include <optional>
#include <string>

#include "platform/Dialogs.h"
#include "shell/MessageTable.h"

class QListWidget;
class QPushButton;

namespace saltmarrow {

// The choice of language. A new language needs a fresh start: OK asks whether
// the program may quit, and on OK the choice is handed back so that the main
// form stores it and unloads. Nothing is applied here.
class frmLanguage : public QDialog {
    Q_OBJECT
public:
    frmLanguage(std::string appDir, const std::string &currentLanguage, MessageTable &messages,
                platform::Dialogs &dialogs, QWidget *parent = nullptr);

    // Shows the dialog modally, 400 twips below the top of mainForm and
    // centred on it; the chosen language if the user agreed to quit.
    std::optional<std::string> choose(QWidget *mainForm);

    // The language the user agreed to quit for.
    const std::optional<std::string> &chosenLanguage() const { return chosen_; }

    QListWidget *listLanguage;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;

public slots:
    void cmdOK_Click();
    void cmdCancel_Click();

private:
    std::string appDir_;
    MessageTable &messages_;
    platform::Dialogs &dialogs_;
    std::optional<std::string> chosen_;
};

}  // namespace saltmarrow

#endif
