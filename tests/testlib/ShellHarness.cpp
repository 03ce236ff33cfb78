#include "testlib/ShellHarness.h"

namespace saltmarrow::test {

bool RecordingErrorReporter::ErrorReport(int number, const std::string &description, const std::string &module,
                                         const std::string &procedure, int) {
    reports.push_back(std::to_string(number) + " " + description + " in " + module + ":" + procedure);
    return answer;
}

ShellHarness::ShellHarness(const std::string &commandLine, bool singleInstance)
    : ShellHarness(std::string(), commandLine, singleInstance, true) {}

ShellHarness::ShellHarness(const std::string &appDir, const std::string &commandLine, bool singleInstance, bool)
    : appDir_(appDir) {
    if (appDir_.empty()) {
        dir_ = std::make_unique<TempDir>();
        appDir_ = dir_->path();
    }
    ShellEnvironment env;
    env.appDir = appDir_;
    env.commandLine = commandLine;
    env.dialogs = &dialogs;
    env.sounds = &sounds;
    env.errors = &errors;
    env.openDocument = [this](const std::string &p) { opened.push_back(p); };
    env.terminate = [this] { ++terminated; };
    env.showSplash = false;
    env.singleInstance = singleInstance;
    form_ = std::make_unique<frmMain>(env);
}

std::unique_ptr<ShellHarness> ShellHarness::inFolder(const std::string &appDir, const std::string &commandLine,
                                                     bool singleInstance) {
    return std::unique_ptr<ShellHarness>(new ShellHarness(appDir, commandLine, singleInstance, true));
}

ShellHarness::~ShellHarness() {
    if (form_) form_->runner.log.close();
    form_.reset();
}

}  // namespace saltmarrow::test
