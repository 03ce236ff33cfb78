// saltmarrow: start-up only.
#include <QApplication>
#include <QDesktopServices>
#include <QUrl>

#include "platform/QtDialogs.h"
#include "platform/Sounds.h"
#include "platform/SystemInfo.h"
#include "shell/VersionText.h"
#include "shell/frmMain.h"
#include "support/frmErrorReport.h"

int main(int argc, char **argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("saltmarrow"));
    QApplication::setQuitOnLastWindowClosed(false);

    QStringList args = QApplication::arguments();
    args.removeFirst();
    std::string commandLine = args.join(' ').toStdString();
    const std::string version =
        saltmarrow::versionText(SALTMARROW_VERSION_MAJOR, SALTMARROW_VERSION_MINOR, SALTMARROW_VERSION_PATCH);

    saltmarrow::platform::QtDialogs dialogs;
    saltmarrow::platform::BeepSounds sounds;
    saltmarrow::frmMain *mainForm = nullptr;
    saltmarrow::QtErrorReporter errors(
        [&sounds] { sounds.play("SystemHand", true); },
        [&mainForm] { return "saltmarrow" + (mainForm ? mainForm->msg("msgErrorReport") : std::string()); },
        version, saltmarrow::platform::platformVersion());

    saltmarrow::ShellEnvironment env;
    env.appDir = QCoreApplication::applicationDirPath().toStdString();
    env.commandLine = commandLine;
    env.dialogs = &dialogs;
    env.sounds = &sounds;
    env.errors = &errors;
    env.openDocument = [](const std::string &path) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(path)));
    };
    env.terminate = [] { std::exit(1); };

    saltmarrow::frmMain form(env);
    mainForm = &form;
    dialogs.setOwner(&form);
    errors.setOwner(&form);
    form.Version = version;
    bool started = false;
    saltmarrow::guard(
        errors, "frmMain", "Form_Load", [&] { started = form.Form_Load(); }, env.terminate);
    if (!started) return 0;
    form.show();
    return QApplication::exec();
}
