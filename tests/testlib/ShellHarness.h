#ifndef SALTMARROW_TESTS_SHELLHARNESS_H
#define SALTMARROW_TESTS_SHELLHARNESS_H

#include <memory>
#include <string>
#include <vector>

#include "shell/frmMain.h"
#include "support/ErrorReport.h"
#include "testlib/RecordingSounds.h"
#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

namespace saltmarrow::test {

struct RecordingErrorReporter : ErrorReporter {
    bool answer = true;  // Ignore
    std::vector<std::string> reports;
    bool ErrorReport(int number, const std::string &description, const std::string &module,
                     const std::string &procedure, int line) override;
};

// A main form in a temporary program folder, with scripted dialogs, recorded
// sounds and recorded error reports.
class ShellHarness {
public:
    explicit ShellHarness(const std::string &commandLine = {}, bool singleInstance = false);
    ~ShellHarness();

    // A program folder of its own (for several instances sharing one, pass it).
    static std::unique_ptr<ShellHarness> inFolder(const std::string &appDir, const std::string &commandLine,
                                                  bool singleInstance);

    frmMain &form() { return *form_; }
    const std::string &appDir() const { return appDir_; }

    ScriptedDialogs dialogs;
    RecordingSounds sounds;
    RecordingErrorReporter errors;
    int terminated = 0;
    std::vector<std::string> opened;

private:
    ShellHarness(const std::string &appDir, const std::string &commandLine, bool singleInstance, bool);
    std::unique_ptr<TempDir> dir_;
    std::string appDir_;
    std::unique_ptr<frmMain> form_;
};

}  // namespace saltmarrow::test

#endif
