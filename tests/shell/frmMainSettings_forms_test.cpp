// The main window with its settings file and its language files: what one
// run leaves, the next run finds.
#include <gtest/gtest.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <filesystem>

#include "discops/frmEraseCD.h"
#include "exec/frmLog.h"
#include "shell/LanguageForms.h"
#include "testlib/FakeDrive.h"
#include "testlib/ShellHarness.h"

using namespace saltmarrow;
using namespace saltmarrow::test;

namespace {

void closeForm(frmMain &f) {
    f.settings.setText("TempFolder", "");  // nothing to ask about
    f.close();
}

std::unique_ptr<ShellHarness> started(const std::string &app, const std::string &commandLine = {}) {
    auto h = ShellHarness::inFolder(app, commandLine, false);
    EXPECT_TRUE(h->form().Form_Load());
    return h;
}

}  // namespace

TEST(MainSettings, WhatOneRunLeavesTheNextFinds) {
    TempDir app;
    installFakeDrive(app.path(), {cdWriter("CD-R", kBlankCDR)});
    {
        auto first = started(app.path());
        frmMain &f = first->form();
        f.mnuConfirmWrite->setChecked(true);
        f.chkAutoHide->setChecked(true);
        f.mnuLog->setChecked(true);
        f.chkOverburn->click();  // kept in the drive's options
        f.chkReadRaw->click();
        f.Version = "0.1";
        closeForm(f);
    }
    EXPECT_NE(readFile(app.file("saltmarrow.ini")).find("\r\nVersion=0.1\r\n"), std::string::npos);

    auto second = started(app.path());
    frmMain &g = second->form();
    EXPECT_TRUE(g.mnuConfirmWrite->isChecked());
    EXPECT_TRUE(g.chkAutoHide->isChecked());
    EXPECT_TRUE(g.mnuLog->isChecked());
    EXPECT_TRUE(g.chkOverburn->isChecked());
    EXPECT_TRUE(g.chkReadRaw->isChecked());
    EXPECT_TRUE(second->errors.reports.empty());
}

TEST(MainSettings, AFileThatCannotBeReadOrWrittenIsReportedNotFatal) {
    TempDir app;
    const std::string bad =
        "[Main Settings]\r\nConfirm Write=True\r\nAutohide Settings=yes please\r\n"
        "Simulate=1\r\nParanoia=2\r\n";
    writeFile(app.file("saltmarrow.ini"), bad);
    auto h = started(app.path());
    ASSERT_EQ(h->errors.reports.size(), 1u);
    EXPECT_EQ(h->errors.reports[0], "13 Type mismatch in frmMain:loadSettings");
    EXPECT_TRUE(h->form().mnuConfirmWrite->isChecked()) << "the rest of the file still sets its controls";
    // Keys of earlier versions set their controls for this run.
    EXPECT_TRUE(h->form().chkSimulate->isChecked());
    EXPECT_EQ(h->form().cmbParanoia->currentIndex(), 2);
    EXPECT_EQ(readFile(app.file("saltmarrow.ini")), bad) << "reading never writes";

    // A folder where the file belongs: no rename can replace it.
    std::filesystem::remove(app.file("saltmarrow.ini"));
    std::filesystem::create_directory(app.file("saltmarrow.ini"));
    closeForm(h->form());
    ASSERT_EQ(h->errors.reports.size(), 2u);
    EXPECT_NE(h->errors.reports[1].find("in frmMain:saveSettings"), std::string::npos);
    EXPECT_EQ(h->terminated, 0);
    EXPECT_FALSE(h->form().formLoaded) << "the program still ends";
}

// Every caption of every form the main window has loaded is German: its
// menus, labels and frames, the log window and the erase dialog.
TEST(MainLanguage, GermanCaptionsAndMessagesEverywhere) {
    TempDir app;
    std::filesystem::create_directory(app.file("languages"));
    std::filesystem::copy_file(sourcePath("resources/languages/German.txt"),
                               app.file("languages/German.txt"));
    const auto english = started(app.path());
    writeFile(app.file("saltmarrow.ini"), "[Advanced Settings]\r\nLanguage=German\r\n");
    const auto german = started(app.path());
    frmMain &e = english->form(), &g = german->form();
    std::size_t compared = 0;
    for (const auto &[englishForm, germanForm] :
         {std::pair<QWidget *, QWidget *>{&e, &g}, {e.log, g.log}, {e.eraseForm, g.eraseForm}}) {
        const FormCaptions before = collectCaptions(englishForm), after = collectCaptions(germanForm);
        ASSERT_EQ(before.controls.size(), after.controls.size());
        for (std::size_t i = 0; i < before.controls.size(); ++i, ++compared) {
            if (isUntranslatedCaption(before.controls[i].caption)) continue;
            EXPECT_NE(after.controls[i].caption, before.controls[i].caption)
                << before.formName << ":" << before.controls[i].control;
        }
    }
    EXPECT_GT(compared, 60u);
    // The messages too: the button's caption while a job runs.
    g.enableControls(false, true);
    EXPECT_EQ(g.cmdWrite->text(), "&Abbrechen");
    g.enableControls(true, false);
    EXPECT_EQ(g.cmdWrite->text().toStdString(), g.writeCaption) << "the translated design caption comes back";
}

TEST(MainLanguage, TheTemplateHasASectionForEachForm) {
    TempDir app;
    started(app.path(), "/langtemplate");
    const std::string text = readFile(app.file("languages/Template.txt"));
    // How a section is written and which controls it holds: LanguageForms.
    for (const char *part :
         {"\r\n[frmMain]\r\ncmdWrite=&Write\r\n", "\r\n[frmLog]\r\nfrmLog=  Command Log\r\n",
          "\r\n[frmEraseCD]\r\nfrmEraseCD=Erase Disc\r\n"})
        EXPECT_NE(text.find(part), std::string::npos) << part;
    EXPECT_EQ(text.find("\r\nmnuFile=", text.find("mnuFile=") + 1), std::string::npos) << "each menu once";
    const std::size_t main = text.find("[frmMain]"), log = text.find("[frmLog]");
    for (const char *other : {"mnuCopyAll=", "cmdErase="}) {
        const std::size_t at = text.find(other);
        EXPECT_FALSE(at > main && at < log) << other << " stands in the main form's section";
    }
}
