// The main window offscreen: start-up, the interface lock, the write frame
// around real child processes, shutdown and the hand-over between instances.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>
#include <algorithm>
#include <filesystem>

#include "exec/frmLog.h"
#include "platform/CommandLine.h"
#include "platform/DriveLayer.h"
#include "testlib/ShellHarness.h"

using namespace saltmarrow;
using namespace saltmarrow::test;
namespace mb = saltmarrow::platform::mb;

namespace {

std::string scripted(const std::vector<std::string> &steps) {
    std::string cmd = platform::quoteArgument(fixture("scripted_output"));
    for (const auto &s : steps) cmd += " " + platform::quoteArgument(s);
    return cmd;
}

// Stands in for the output interpreter: the flags follow the words.
void interpretFinishedLines(frmMain &f) {
    auto original = f.runner.objDOS.ReceiveOutputs;
    f.runner.objDOS.ReceiveOutputs = [&f, original](const std::string &line) {
        original(line);
        if (line.find("finished successfully") != std::string::npos) f.writeSucceeded = true;
        if (line.find("ERROR") != std::string::npos) f.writeFailed = true;
    };
}

std::vector<QWidget *> taggedControls(frmMain &f) {
    std::vector<QWidget *> tagged;
    for (QWidget *w : f.findChildren<QWidget *>())
        if (w->property("tag").toString() == "tagged") tagged.push_back(w);
    return tagged;
}

bool waitFor(const std::function<bool()> &condition, int ms = 5000) {
    QElapsedTimer t;
    t.start();
    while (!condition() && t.elapsed() < ms) QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return condition();
}

}  // namespace

TEST(MainStartUp, LeavesAReadyPanel) {
    ShellHarness h;
    frmMain &f = h.form();
    ASSERT_TRUE(f.Form_Load());
    EXPECT_TRUE(f.formLoaded);
    EXPECT_TRUE(std::filesystem::is_directory(h.appDir() + "/external/TEMP"));
    EXPECT_EQ(f.commandFile, h.appDir() + "/external/TEMP/command.bat");
    EXPECT_EQ(f.mkisofsToc, h.appDir() + "/external/TEMP/mkisofs.toc");
    EXPECT_EQ(f.txtStatus->text().toStdString(), "No working cdrdao installation found");
    // The tools that must be there are missed aloud, cdrdao first.
    ASSERT_EQ(h.dialogs.prompts.size(), 2u);
    EXPECT_NE(h.dialogs.prompts[0].text.find("/external/cdrdao"), std::string::npos);
    EXPECT_NE(h.dialogs.prompts[1].text.find("/external/mkisofs"), std::string::npos);
    EXPECT_EQ(f.writeCaption, "&Write");
    EXPECT_EQ(f.cmbBuffers->count(), 6);
    EXPECT_EQ(f.cmbBuffers->currentText(), "256");
    EXPECT_EQ(f.cmbParanoia->count(), 4);
    EXPECT_EQ(f.cmbParanoia->currentIndex(), 0);
    EXPECT_EQ(f.cmbSubs->count(), 3);
    EXPECT_EQ(f.collapsedHeight + 5565 - 2120, f.expandedHeight);
    EXPECT_FALSE(f.settingsArea->isVisible());
    EXPECT_EQ(f.findChildren<QLabel *>("sbStatusBar").size(), 5);
    EXPECT_TRUE(h.errors.reports.empty());
}

TEST(MainStartUp, AFolderThatCannotBeMadeIsReportedAndStartUpGoesOn) {
    ShellHarness h;
    writeFile(h.appDir() + "/external", "a file where the tools folder belongs");
    ASSERT_TRUE(h.form().Form_Load());
    ASSERT_EQ(h.errors.reports.size(), 1u);
    EXPECT_EQ(h.errors.reports[0].substr(0, 17), "76 Path not found");
    EXPECT_NE(h.errors.reports[0].find("in frmMain:Form_Load"), std::string::npos);
    EXPECT_TRUE(h.form().formLoaded);
    EXPECT_EQ(h.form().cmbBuffers->count(), 6);
}

TEST(MainStartUp, AutoHideStartsCollapsedWhateverTheMenuSays) {
    ShellHarness h;
    frmMain &f = h.form();
    f.mnuDeviceSettings->setChecked(true);
    f.chkAutoHide->setChecked(true);
    ASSERT_TRUE(f.Form_Load());
    EXPECT_FALSE(f.mnuDeviceSettings->isChecked());
    EXPECT_FALSE(f.settingsArea->isVisibleTo(&f));

    ShellHarness open;
    open.form().mnuDeviceSettings->setChecked(true);
    ASSERT_TRUE(open.form().Form_Load());
    EXPECT_TRUE(open.form().settingsArea->isVisibleTo(&open.form()));
    EXPECT_GT(open.form().height(), f.height());
    open.form().showSettings(false);
    EXPECT_EQ(open.form().height(), f.height());
}

TEST(MainInterfaceLock, BusyAndIdleRoundTrip) {
    ShellHarness h;
    frmMain &f = h.form();
    ASSERT_TRUE(f.Form_Load());
    auto tagged = taggedControls(f);
    // Every control of the three frames, and the button; the SPTI box only
    // where the platform has that layer, else it stays off for good.
    const bool spti = platform::driveLayer().hasSPTILayer();
    ASSERT_EQ(tagged.size(), spti ? 24u : 23u);
    EXPECT_EQ(std::find(tagged.begin(), tagged.end(), f.chkUseSPTI) != tagged.end(), spti);
    QList<QMenu *> menus{f.mnuFile, f.mnuSettings, f.mnuHelp, f.mnuTools, f.mnuMastering, f.mnuReadCopy};

    f.enableControls(false, true);
    EXPECT_EQ(f.cmdWrite->text(), "&Cancel");
    EXPECT_TRUE(f.cmdWrite->isEnabled());
    EXPECT_TRUE(f.cmdWrite->property("tag").toString().isEmpty());
    for (QWidget *w : tagged) {
        if (w == f.cmdWrite) continue;
        EXPECT_FALSE(w->isEnabled()) << w->objectName().toStdString();
    }
    for (QMenu *m : menus) EXPECT_FALSE(m->menuAction()->isEnabled());

    f.enableControls(true, false);
    EXPECT_EQ(f.cmdWrite->text(), "&Write");
    EXPECT_EQ(f.cmdWrite->property("tag").toString(), "tagged");
    for (QWidget *w : tagged) EXPECT_TRUE(w->isEnabled()) << w->objectName().toStdString();
    for (QMenu *m : menus) EXPECT_TRUE(m->menuAction()->isEnabled());

    f.chkSimulate->setChecked(true);
    f.enableControls(std::nullopt, false);
    EXPECT_EQ(f.cmdWrite->text(), "&Simulate");
}

TEST(MainWriteFrame, SuccessWithElapsedTimeMessageBoxAndSound) {
    ShellHarness h;
    frmMain &f = h.form();
    ASSERT_TRUE(f.Form_Load());
    h.dialogs.prompts.clear();  // the missing tools were reported at start
    interpretFinishedLines(f);
    f.ChangeCurrentMode("WRITE CD");
    f.mnuConfirmWrite->setChecked(true);
    f.cmbSpeed->addItem("16x");
    f.writeFrame(scripted({"out", "Writing track 01\\r\\nWriting finished successfully\\r\\n"}));
    EXPECT_EQ(f.txtStatus->text().toStdString(), "Writing finished successfully after 00mins 00secs");
    ASSERT_EQ(h.dialogs.prompts.size(), 1u);
    EXPECT_EQ(h.dialogs.prompts[0].style, 64);
    EXPECT_EQ(h.dialogs.prompts[0].text, "Writing finished successfully after 00mins 00secs");
    EXPECT_TRUE(h.sounds.played.empty());
    EXPECT_EQ(f.sbPanel[2]->text(), "16x");
    EXPECT_EQ(f.cmdWrite->text(), "&Write");
    EXPECT_EQ(f.log->txtOutputs->toPlainText().toStdString(),
              "Writing track 01\nWriting finished successfully");
    EXPECT_EQ(f.windowTitle(), "saltmarrow");
}

TEST(MainWriteFrame, FlagsDecideNotTheExitCode) {
    ShellHarness h;
    frmMain &f = h.form();
    ASSERT_TRUE(f.Form_Load());
    h.dialogs.prompts.clear();  // the missing tools were reported at start
    interpretFinishedLines(f);
    f.ChangeCurrentMode("WRITE CD");
    // Success printed, then an error exit: the flags say success.
    f.writeFrame(scripted({"out", "Writing finished successfully\\n", "exit", "1"}));
    EXPECT_EQ(f.txtStatus->text().left(29).toStdString(), "Writing finished successfully");
    EXPECT_EQ(h.sounds.played, std::vector<std::string>{"SystemAsterisk"});

    // Exit code 0 and no word of success: errors logged.
    f.writeFrame(scripted({"out", "something else\\n"}));
    EXPECT_EQ(f.txtStatus->text().toStdString(), "There were some errors, please consult the log.");
    EXPECT_TRUE(h.dialogs.prompts.empty()) << "no box without Confirm Write";
}

TEST(MainWriteFrame, EraseAndCancel) {
    ShellHarness h;
    frmMain &f = h.form();
    ASSERT_TRUE(f.Form_Load());
    h.dialogs.prompts.clear();  // the missing tools were reported at start
    interpretFinishedLines(f);
    f.ChangeCurrentMode("ERASE CD");
    f.mnuConfirmWrite->setChecked(true);
    f.writeFrame(scripted({"out", "Blanking finished successfully\\n"}));
    EXPECT_TRUE(h.dialogs.prompts.empty()) << "erasing has no result box";
    f.mnuConfirmWrite->setChecked(false);
    f.writeFrame(scripted({"out", "Blanking finished successfully\\n"}));
    EXPECT_TRUE(h.sounds.played.empty()) << "nor a sound";

    // Cancel: the second click on the button while the tool runs.
    f.ChangeCurrentMode("WRITE CD");
    bool clicked = false;
    f.runner.objDOS.nullOutputs = [&] {
        if (!clicked && f.cmdWrite->text() == "&Cancel") {
            clicked = true;
            f.cmdWrite->click();
        }
    };
    f.writeFrame(scripted({"out", "Writing track 01\\n", "hang"}));
    EXPECT_TRUE(clicked);
    EXPECT_TRUE(f.writeCancelled);
    EXPECT_EQ(f.txtStatus->text().toStdString(), "Write Operation Cancelled.");
    EXPECT_EQ(f.cmdWrite->text(), "&Write");
}

TEST(MainWriteFrame, CaptionCarriesProgressInWriteModesOnly) {
    ShellHarness h;
    frmMain &f = h.form();
    ASSERT_TRUE(f.Form_Load());
    h.dialogs.prompts.clear();  // the missing tools were reported at start
    f.ProgressBar1->setRange(0, 200);
    f.ProgressBar1->setValue(84);
    f.ChangeCurrentMode("READ CD");
    f.setStatus("Reading");
    EXPECT_EQ(f.windowTitle(), "saltmarrow");
    f.ChangeCurrentMode("AUDIO CD");
    f.setStatus("Idle in a write mode");
    EXPECT_EQ(f.windowTitle(), "saltmarrow") << "only while the job runs";
    f.enableControls(false, true);
    f.setStatus("Wrote 84 of 200 MB");
    EXPECT_EQ(f.windowTitle(), "42% saltmarrow");
    f.enableControls(true, false);
}

TEST(MainShutdown, TempFolderQuestion) {
    ShellHarness h;
    frmMain &f = h.form();
    ASSERT_TRUE(f.Form_Load());
    TempDir temp;
    const std::string project = temp.file("project");
    f.settings.setText("TempFolder", project);
    std::filesystem::create_directories(project + "/sub");
    writeFile(project + "/sub/track01.wav", "RIFF");

    h.dialogs.answer(mb::Cancel);
    EXPECT_FALSE(f.queryUnload());
    EXPECT_TRUE(std::filesystem::exists(project + "/sub/track01.wav"));
    EXPECT_EQ(h.dialogs.prompts.back().text, "Delete tempory folder: " + project + "?");
    EXPECT_EQ(h.dialogs.prompts.back().style, 35);

    h.dialogs.answer(mb::No);
    EXPECT_TRUE(f.queryUnload());
    EXPECT_TRUE(std::filesystem::exists(project));

    h.dialogs.answer(mb::Yes);
    EXPECT_TRUE(f.queryUnload());
    EXPECT_FALSE(std::filesystem::exists(project));

    // A close cancelled at the question leaves the program running.
    std::filesystem::create_directories(project);
    f.show();
    h.dialogs.answer(mb::Cancel);
    f.close();
    EXPECT_TRUE(f.isVisible());
    EXPECT_TRUE(f.formLoaded);
    h.dialogs.answer(mb::No);
    f.close();
    EXPECT_FALSE(f.isVisible());
    EXPECT_FALSE(f.formLoaded);
}

TEST(MainLogWindow, UserCloseOnlyHidesAndAppendsStayAtTheEnd) {
    ShellHarness h;
    frmMain &f = h.form();
    ASSERT_TRUE(f.Form_Load());
    f.show();
    f.mnuLog->trigger();
    ASSERT_TRUE(f.log->isVisible());
    EXPECT_EQ(f.log->windowTitle(), "  Command Log");
    EXPECT_EQ(f.log->frameGeometry().top(), f.frameGeometry().top() + f.frameGeometry().height());
    f.log->close();
    EXPECT_FALSE(f.log->isVisible());
    EXPECT_FALSE(f.mnuLog->isChecked());

    for (int i = 0; i < 100000; ++i) f.log->appendLine(QString("line %1").arg(i));
    EXPECT_EQ(f.log->txtOutputs->blockCount(), 100000);
    EXPECT_TRUE(f.log->txtOutputs->textCursor().atEnd());
    EXPECT_EQ(f.log->mnuCopyAll->shortcut().toString(), "Ctrl+Shift+C");
    EXPECT_EQ(f.log->mnuFont->shortcut().toString(), "Ctrl+F");
}

TEST(MainInstances, SecondStartHandsItsArgumentOver) {
    TempDir app;
    auto first = ShellHarness::inFolder(app.path(), "", true);
    ASSERT_TRUE(first->form().Form_Load());
    EXPECT_FALSE(first->form().secondInstance);

    std::vector<std::string> received;
    // parseCommand runs on the first instance with what the second sent.
    auto second = ShellHarness::inFolder(app.path(), "-i \"/tmp/my disc.cue\"", true);
    EXPECT_FALSE(second->form().Form_Load());
    EXPECT_TRUE(waitFor([&] { return first->form().commandLine == "-i \"/tmp/my disc.cue\""; }));

    // Without an argument and without the marker file: the empty text goes over.
    auto third = ShellHarness::inFolder(app.path(), "", true);
    EXPECT_FALSE(third->form().Form_Load());
    EXPECT_TRUE(waitFor([&] { return first->form().commandLine.empty(); }));

    // With the marker file it starts beside the first, without a command log.
    writeFile(app.path() + "/multi.instance", "");
    auto fourth = ShellHarness::inFolder(app.path(), "", true);
    ASSERT_TRUE(fourth->form().Form_Load());
    EXPECT_TRUE(fourth->form().secondInstance);
    EXPECT_TRUE(fourth->form().commandExecute(scripted({"out", "from the second\\n"})));
    EXPECT_FALSE(fourth->form().runner.log.isOpen());
    EXPECT_TRUE(first->errors.reports.empty());
}

TEST(MainInstances, ANamedFileGoesOverEvenWithTheMarker) {
    TempDir app;
    writeFile(app.path() + "/multi.instance", "");
    auto first = ShellHarness::inFolder(app.path(), "", true);
    ASSERT_TRUE(first->form().Form_Load());
    auto second = ShellHarness::inFolder(app.path(), "/tmp/x.iso", true);
    EXPECT_FALSE(second->form().Form_Load());
    EXPECT_TRUE(waitFor([&] { return first->form().commandLine == "/tmp/x.iso"; }));
}

TEST(MainHandlers, ErrorsOfAHandlerGoToTheReport) {
    ShellHarness h;
    frmMain &f = h.form();
    ASSERT_TRUE(f.Form_Load());
    f.mnuHelpContents->trigger();
    EXPECT_EQ(h.opened, std::vector<std::string>{h.appDir() + "/help/index.html"});
    h.dialogs.cancelNext();
    f.mnuLoad->trigger();
    EXPECT_EQ(h.dialogs.prompts.back().kind, "open");
    EXPECT_EQ(h.dialogs.prompts.back().request.filter, "Image Files (*.cue;*.toc;*.iso)|*.cue;*.toc;*.iso");
    EXPECT_TRUE(h.errors.reports.empty());
}
