// The main window offscreen: start-up, its sizes and place, the interface
// lock, the write frame around real child processes, shutdown and the
// hand-over between instances.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <algorithm>
#include <filesystem>

#include "exec/frmLog.h"
#include "platform/CommandLine.h"
#include "shell/frmAbout.h"
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

// A form that has started, with the missing tools' complaints cleared; its
// interpreter's flags follow the words of the scripted output.
struct Main : ::testing::Test {
    ShellHarness h;
    frmMain &f = h.form();
    void SetUp() override {
        ASSERT_TRUE(f.Form_Load());
        h.dialogs.prompts.clear();
        auto original = f.runner.objDOS.ReceiveOutputs;
        f.runner.objDOS.ReceiveOutputs = [this, original](const std::string &line) {
            original(line);
            if (line.find("finished successfully") != std::string::npos) f.writeSucceeded = true;
            if (line.find("ERROR") != std::string::npos) f.writeFailed = true;
        };
    }
};

bool waitFor(const std::function<bool()> &condition) {
    QElapsedTimer t;
    t.start();
    while (!condition() && t.elapsed() < 5000) QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return condition();
}

void settle() {
    for (int i = 0; i < 5; ++i) QApplication::processEvents();
}

}  // namespace

TEST(MainStartUp, LeavesAReadyPanel) {
    ShellHarness h;
    frmMain &f = h.form();
    ASSERT_TRUE(f.Form_Load());
    EXPECT_TRUE(f.formLoaded);
    EXPECT_EQ(f.txtStatus->text().toStdString(), "No working cdrdao installation found");
    // The tools that must be there are missed aloud, the report goes to the
    // log and the list to the menu (their words: ToolRegistry).
    EXPECT_EQ(h.dialogs.prompts.size(), 2u);
    f.runner.log.close();
    EXPECT_NE(readFile(h.appDir() + "/external/TEMP/commandlog.txt").find("No external tools found!!!"),
              std::string::npos);
    f.mnuExternal->trigger();
    EXPECT_EQ(h.dialogs.prompts.back().text, "No external tools found!!!");
    EXPECT_FALSE(f.settingsArea->isVisibleTo(&f));
    EXPECT_FALSE(f.chkUseSPTI->isEnabled()) << "no SPTI layer here";
    EXPECT_TRUE(h.errors.reports.empty());

    // A folder that cannot be made is reported, and start-up goes on.
    ShellHarness blocked;
    writeFile(blocked.appDir() + "/external", "a file where the tools folder belongs");
    ASSERT_TRUE(blocked.form().Form_Load());
    ASSERT_EQ(blocked.errors.reports.size(), 1u);
    EXPECT_EQ(blocked.errors.reports[0].substr(0, 17), "76 Path not found");
    EXPECT_TRUE(blocked.form().formLoaded);
}

TEST(MainStartUp, OneWidthAndTwoHeightsHoweverTheStateIsReached) {
    ShellHarness collapsed, open, hidden;
    open.form().mnuDeviceSettings->setChecked(true);
    hidden.form().mnuDeviceSettings->setChecked(true);
    hidden.form().chkAutoHide->setChecked(true);  // starts collapsed whatever the menu says
    for (ShellHarness *h : {&collapsed, &open, &hidden}) ASSERT_TRUE(h->form().Form_Load());
    EXPECT_FALSE(hidden.form().mnuDeviceSettings->isChecked());
    EXPECT_TRUE(open.form().settingsArea->isVisibleTo(&open.form()));
    EXPECT_GT(open.form().height(), collapsed.form().height());
    EXPECT_EQ(hidden.form().size(), collapsed.form().size());

    collapsed.form().show();
    settle();
    const QSize small = collapsed.form().size();
    collapsed.form().mnuDeviceSettings->trigger();
    settle();
    EXPECT_EQ(collapsed.form().size(), open.form().size()) << "opened on screen as it opens at start";
    collapsed.form().mnuDeviceSettings->trigger();
    settle();
    EXPECT_EQ(collapsed.form().size(), small);
    EXPECT_GE(collapsed.form().width(), collapsed.form().settingsArea->minimumSizeHint().width());

    // Every panel of the status bar lies inside the window.
    for (QLabel *panel : collapsed.form().findChildren<QLabel *>("sbStatusBar")) {
        const QRect inWindow(panel->mapTo(&collapsed.form(), QPoint(0, 0)), panel->size());
        EXPECT_TRUE(collapsed.form().rect().contains(inWindow)) << panel->property("index").toInt();
    }
}

TEST(MainStartUp, TheWindowAndItsLogStartOnTheScreen) {
    TempDir app;
    writeFile(app.file("saltmarrow.ini"), "[Main Settings]\r\nShowSettings=True\r\nShowCommandLog=True\r\n");
    auto h = ShellHarness::inFolder(app.path(), "", false);
    frmMain &f = h->form();
    ASSERT_TRUE(f.Form_Load());
    f.move(0, 5000);  // where a window manager might have put it
    f.show();
    settle();
    const QRect room = f.screen()->availableGeometry();
    EXPECT_TRUE(f.log->isVisible());
    EXPECT_TRUE(room.contains(f.frameGeometry())) << "the main window";
    EXPECT_LE(f.log->frameGeometry().bottom(), room.bottom()) << "and the log below it";
    EXPECT_EQ(f.log->frameGeometry().top(), f.frameGeometry().bottom() + 1);
}

TEST_F(Main, TheInterfaceLockRoundTrip) {
    std::vector<QWidget *> tagged;
    for (QWidget *w : f.findChildren<QWidget *>())
        if (w->property("tag").toString() == "tagged") tagged.push_back(w);
    ASSERT_EQ(tagged.size(), 23u) << "the frames' controls and the button; the SPTI box is out of reach";
    QList<QMenu *> menus{f.mnuFile, f.mnuSettings, f.mnuHelp, f.mnuTools, f.mnuMastering, f.mnuReadCopy};

    f.enableControls(false, true);
    EXPECT_EQ(f.cmdWrite->text(), "&Cancel");
    EXPECT_TRUE(f.cmdWrite->isEnabled());
    for (QWidget *w : tagged) {
        if (w != f.cmdWrite) {
            EXPECT_FALSE(w->isEnabled()) << w->objectName().toStdString();
        }
    }
    for (QMenu *m : menus) EXPECT_FALSE(m->menuAction()->isEnabled());

    f.enableControls(true, false);
    EXPECT_EQ(f.cmdWrite->text(), "&Write");
    for (QWidget *w : tagged) EXPECT_TRUE(w->isEnabled()) << w->objectName().toStdString();
    for (QMenu *m : menus) EXPECT_TRUE(m->menuAction()->isEnabled());

    f.chkSimulate->click();
    EXPECT_EQ(f.cmdWrite->text(), "&Simulate");
    EXPECT_EQ(f.sbPanel[4]->text(), "Simulate");
    f.ChkWriteDriverRaw->setChecked(true);
    EXPECT_EQ(f.sbPanel[3]->text(), "RAW") << "the panels follow their boxes however they change";
}

TEST_F(Main, TheFrameReportsFromTheFlagsNotTheExitCode) {
    // What each outcome shows is decided in WriteFrame; here, that the form
    // shows it, from the flags of a real run that exits with 1. The box of a
    // confirmed write: MainJobs.
    f.cmbSpeed->addItem("16x");
    h.sounds.played.clear();
    f.ChangeCurrentMode(Mode::AudioCD);
    f.writeFrame(scripted({"out", "Writing finished successfully\\n", "exit", "1"}));
    EXPECT_EQ(f.txtStatus->text().toStdString(), "Writing finished successfully after 00mins 00secs");
    EXPECT_EQ(h.sounds.played, std::vector<std::string>{"SystemAsterisk"});
    EXPECT_EQ(f.cmdWrite->text(), "&Write");
    EXPECT_EQ(f.windowTitle(), "saltmarrow");
    EXPECT_TRUE(h.dialogs.prompts.empty());
    EXPECT_EQ(f.sbPanel[2]->text(), "16x");
    EXPECT_EQ(f.log->txtOutputs->toPlainText().toStdString(), "Writing finished successfully");
}

TEST_F(Main, TheCaptionCarriesTheProgressOfARunningWriteOnly) {
    f.ProgressBar1->setRange(0, 200);
    f.ProgressBar1->setValue(84);
    f.ChangeCurrentMode(Mode::AudioCD);
    f.enableControls(false, false);
    f.setStatus("Checking for writable media...");
    f.enableControls(true, false);
    EXPECT_EQ(f.windowTitle(), "saltmarrow") << "a check before the write is no write";

    std::vector<QString> captions;
    QObject::connect(f.txtStatus, &QLineEdit::textChanged, [&] { captions.push_back(f.windowTitle()); });
    f.ChangeCurrentMode(Mode::WriteCD);
    f.writeFrame(scripted({"out", "Wrote 84 of 200 MB\\n"}));
    EXPECT_NE(std::find(captions.begin(), captions.end(), "42% saltmarrow"), captions.end());
    EXPECT_EQ(f.windowTitle(), "saltmarrow");
    f.ChangeCurrentMode(Mode::ReadCD);
    captions.clear();
    // A read names its sector in the status and shows its own "N% - saltmarrow".
    f.writeFrame(scripted({"out", "00:01:00\\n"}));
    ASSERT_FALSE(captions.empty());
    EXPECT_TRUE(std::none_of(captions.begin(), captions.end(),
                             [](const QString &c) { return c.contains(QStringLiteral("% saltmarrow")); }));
}

TEST_F(Main, AClickOnTheStatusBarFoldsTheSettings) {
    f.show();
    for (bool open : {true, false}) {
        QMouseEvent press(QEvent::MouseButtonRelease, QPointF(3, 3), QPointF(3, 3), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(f.sbPanel[open ? 1 : 4], &press);
        EXPECT_EQ(f.mnuDeviceSettings->isChecked(), open);
        EXPECT_EQ(f.settingsArea->isVisible(), open);
    }
    f.enableControls(false, true);
    QMouseEvent busy(QEvent::MouseButtonRelease, QPointF(3, 3), QPointF(3, 3), Qt::LeftButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(f.sbPanel[0], &busy);
    EXPECT_FALSE(f.mnuDeviceSettings->isChecked()) << "not while a job runs";
    f.enableControls(true, false);
    // A write without a writer opens them to choose one (what is said: WriteDispatcher).
    f.cmdWrite->click();
    EXPECT_TRUE(f.mnuDeviceSettings->isChecked());
}

TEST_F(Main, ShutdownAsksAboutTheTemporaryFolder) {
    TempDir temp;
    const std::string project = temp.file("project");
    f.settings.setText("TempFolder", project);
    std::filesystem::create_directories(project + "/sub");

    h.dialogs.answer(mb::No);
    EXPECT_TRUE(f.queryUnload());
    EXPECT_TRUE(std::filesystem::exists(project));
    EXPECT_EQ(h.dialogs.prompts.back().text, "Delete tempory folder: " + project + "?");
    EXPECT_EQ(h.dialogs.prompts.back().style, 35);
    h.dialogs.answer(mb::Yes);
    EXPECT_TRUE(f.queryUnload());
    EXPECT_FALSE(std::filesystem::exists(project));

    // A close cancelled at the question leaves the program running.
    std::filesystem::create_directories(project);
    f.show();
    h.dialogs.answer(mb::Cancel);
    f.close();
    EXPECT_TRUE(f.isVisible());
    EXPECT_TRUE(std::filesystem::exists(project));
    h.dialogs.answer(mb::No);
    f.close();
    EXPECT_FALSE(f.isVisible());
    EXPECT_FALSE(f.formLoaded);
}

TEST_F(Main, TheLogWindow) {
    f.show();
    f.mnuLog->trigger();
    ASSERT_TRUE(f.log->isVisible());
    EXPECT_TRUE(QFontInfo(f.log->txtOutputs->font()).fixedPitch()) << "the tools' columns line up";
    f.log->setLogFont("No Such Font Family", 11);
    EXPECT_TRUE(QFontInfo(f.log->txtOutputs->font()).fixedPitch());
    EXPECT_EQ(f.log->txtOutputs->font().pointSizeF(), 11);
    f.log->close();
    EXPECT_FALSE(f.log->isVisible());
    EXPECT_FALSE(f.mnuLog->isChecked());

    for (int i = 0; i < 1000; ++i) f.log->appendLine(QString("line %1").arg(i));
    EXPECT_TRUE(f.log->txtOutputs->textCursor().atEnd());
}

TEST_F(Main, HelpDonationAboutAndTheOpenDialog) {
    f.mnuHelpContents->trigger();
    f.mnuDonate->trigger();
    f.mnuDonate2->trigger();
    EXPECT_EQ(h.opened,
              (std::vector<std::string>{h.appDir() + "/help/index.html", h.appDir() + "/help/donate.html",
                                        h.appDir() + "/help/donate.html"}));
    EXPECT_TRUE(std::filesystem::exists(sourcePath("resources/help/donate.html")));

    for (Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
        f.mnuAbout->trigger();
        auto *about = f.findChild<frmAbout *>("frmAbout");
        ASSERT_NE(about, nullptr);
        QPointer<frmAbout> alive(about);
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(about->cmdOK, &press);
        settle();
        EXPECT_TRUE(alive.isNull() || !alive->isVisible()) << "the About box closes on " << key;
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    // The folder of the last image is kept for the open dialog of the next run.
    TempDir images;
    writeFile(images.file("disc.iso"), std::string(2048 * 20, '\0'));
    h.dialogs.answer(images.file("disc.iso"));
    f.mnuLoad->trigger();
    f.settings.setText("TempFolder", "");
    f.close();
    EXPECT_NE(readFile(h.appDir() + "/saltmarrow.ini").find("\r\nMRUWrite=" + images.path() + "\r\n"),
              std::string::npos);
    EXPECT_TRUE(h.errors.reports.empty());
}

TEST(MainInstances, ASecondStartHandsItsArgumentOver) {
    TempDir app;
    auto first = ShellHarness::inFolder(app.path(), "", true);
    ASSERT_TRUE(first->form().Form_Load());
    EXPECT_FALSE(first->form().secondInstance);

    auto second = ShellHarness::inFolder(app.path(), "-i \"/tmp/my disc.cue\"", true);
    EXPECT_FALSE(second->form().Form_Load());
    EXPECT_TRUE(waitFor([&] { return first->form().commandLine == "-i \"/tmp/my disc.cue\""; }));

    // Without an argument and without the marker file: the empty text goes over.
    auto third = ShellHarness::inFolder(app.path(), "", true);
    EXPECT_FALSE(third->form().Form_Load());
    EXPECT_TRUE(waitFor([&] { return first->form().commandLine.empty(); }));

    // With the marker file it starts beside the first, without a command log;
    // a named file still goes over.
    writeFile(app.path() + "/multi.instance", "");
    auto fourth = ShellHarness::inFolder(app.path(), "", true);
    ASSERT_TRUE(fourth->form().Form_Load());
    EXPECT_TRUE(fourth->form().secondInstance);
    EXPECT_TRUE(fourth->form().commandExecute(scripted({"out", "from the second\\n"})));
    EXPECT_FALSE(fourth->form().runner.log.isOpen());
    auto fifth = ShellHarness::inFolder(app.path(), "/tmp/x.iso", true);
    EXPECT_FALSE(fifth->form().Form_Load());
    EXPECT_TRUE(waitFor([&] { return first->form().commandLine == "/tmp/x.iso"; }));
    EXPECT_TRUE(first->errors.reports.empty());
}
