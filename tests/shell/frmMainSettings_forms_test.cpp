// The main window with its settings file, its language files and the tools
// folder: what one run leaves, the next run finds.
#include <gtest/gtest.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <filesystem>

#include "exec/frmLog.h"
#include "testlib/ShellHarness.h"

using namespace saltmarrow;
using namespace saltmarrow::test;

namespace {
// Closes the form as the user would, with no temporary folder to ask about.
void closeForm(frmMain &f) {
    f.settings.setText("TempFolder", "");
    f.close();
}
}  // namespace

TEST(MainSettings, WhatOneRunLeavesTheNextFinds) {
    TempDir app;
    {
        auto first = ShellHarness::inFolder(app.path(), "", false);
        frmMain &f = first->form();
        ASSERT_TRUE(f.Form_Load());
        EXPECT_FALSE(f.mnuConfirmWrite->isChecked());
        f.mnuConfirmWrite->setChecked(true);
        f.chkAutoHide->setChecked(true);
        f.chkCheckCUE->setChecked(true);
        f.mnuLog->setChecked(true);
        f.Version = "0.1";
        closeForm(f);
        EXPECT_FALSE(f.formLoaded);
    }
    std::string ini = readFile(app.path() + "/saltmarrow.ini");
    EXPECT_EQ(ini.substr(0, 17), "[Main Settings]\r\n");
    EXPECT_NE(ini.find("\r\nConfirm Write=True\r\n"), std::string::npos);
    EXPECT_NE(ini.find("\r\nAutohide Settings=1\r\n"), std::string::npos);
    EXPECT_NE(ini.find("\r\nVersion=0.1\r\n"), std::string::npos);

    auto second = ShellHarness::inFolder(app.path(), "", false);
    frmMain &g = second->form();
    ASSERT_TRUE(g.Form_Load());
    EXPECT_TRUE(g.mnuConfirmWrite->isChecked());
    EXPECT_TRUE(g.chkAutoHide->isChecked());
    EXPECT_TRUE(g.chkCheckCUE->isChecked());
    EXPECT_TRUE(g.mnuLog->isChecked());
    EXPECT_TRUE(second->errors.reports.empty());
}

TEST(MainSettings, AMalformedValueIsReportedAndTheRestStillLoads) {
    TempDir app;
    const std::string bad = "[Main Settings]\r\nConfirm Write=True\r\nAutohide Settings=yes please\r\n"
                            "Check Cue Files=1\r\n";
    writeFile(app.path() + "/saltmarrow.ini", bad);
    auto h = ShellHarness::inFolder(app.path(), "", false);
    ASSERT_TRUE(h->form().Form_Load());
    ASSERT_EQ(h->errors.reports.size(), 1u);
    EXPECT_EQ(h->errors.reports[0], "13 Type mismatch in frmMain:loadSettings");
    EXPECT_TRUE(h->form().mnuConfirmWrite->isChecked());
    EXPECT_TRUE(h->form().chkCheckCUE->isChecked());
    EXPECT_FALSE(h->form().chkAutoHide->isChecked());
    EXPECT_EQ(readFile(app.path() + "/saltmarrow.ini"), bad) << "reading never writes";
}

TEST(MainSettings, ASettingsFileThatCannotBeWrittenIsReportedNotFatal) {
    TempDir app;
    auto h = ShellHarness::inFolder(app.path(), "", false);
    ASSERT_TRUE(h->form().Form_Load());
    // A folder where the file belongs: no rename can replace it.
    std::filesystem::create_directory(app.path() + "/saltmarrow.ini");
    closeForm(h->form());
    ASSERT_EQ(h->errors.reports.size(), 1u);
    EXPECT_NE(h->errors.reports[0].find("in frmMain:saveSettings"), std::string::npos);
    EXPECT_EQ(h->terminated, 0);
    EXPECT_FALSE(h->form().formLoaded) << "the program still ends";
}

TEST(MainLanguage, GermanCaptionsAndMessages) {
    TempDir app;
    std::filesystem::create_directory(app.path() + "/languages");
    std::filesystem::copy_file(sourcePath("resources/languages/German.txt"), app.path() + "/languages/German.txt");
    writeFile(app.path() + "/saltmarrow.ini", "[Advanced Settings]\r\nLanguage=German\r\n");
    auto h = ShellHarness::inFolder(app.path(), "", false);
    frmMain &f = h->form();
    ASSERT_TRUE(f.Form_Load());
    EXPECT_EQ(f.mnuFile->title(), "&Datei");
    EXPECT_EQ(f.mnuLoad->text(), "&Neues Abbild laden...");
    EXPECT_NE(f.frameWriter->title(), "Write Settings");
    EXPECT_NE(f.chkSimulate->text(), "Simulate");
    EXPECT_EQ(f.msg("msgCancel"), "&Abbrechen");
    f.enableControls(false, true);
    EXPECT_EQ(f.cmdWrite->text(), "&Abbrechen");
    f.enableControls(true, false);
    EXPECT_EQ(f.cmdWrite->text().toStdString(), f.writeCaption) << "the translated design caption comes back";
    EXPECT_NE(f.writeCaption, "&Write");
}

TEST(MainLanguage, UnknownLanguageFallsBackToEnglishQuietly) {
    TempDir app;
    writeFile(app.path() + "/saltmarrow.ini", "[Advanced Settings]\r\nLanguage=Klingon\r\n");
    auto h = ShellHarness::inFolder(app.path(), "", false);
    ASSERT_TRUE(h->form().Form_Load());
    EXPECT_EQ(h->form().mnuFile->title(), "&File");
    EXPECT_TRUE(h->errors.reports.empty());
}

TEST(MainLanguage, TemplateOnRequestHoldsTheMessagesAndTheLoadedForms) {
    TempDir app;
    auto h = ShellHarness::inFolder(app.path(), "/langtemplate", false);
    ASSERT_TRUE(h->form().Form_Load());
    std::string text = readFile(app.path() + "/languages/Template.txt");
    ASSERT_FALSE(text.empty());
    EXPECT_NE(text.find("\r\n[Global Messages]\r\nmsgWriteProgress=Wrote %1 of %2 MB\r\n"), std::string::npos);
    EXPECT_NE(text.find("\r\n[frmMain]\r\n"), std::string::npos);
    EXPECT_NE(text.find("\r\nmnuLoad=Load &New Image...\r\n"), std::string::npos);
    EXPECT_NE(text.find("\r\n[frmLog]\r\nfrmLog=  Command Log\r\n"), std::string::npos);
    EXPECT_EQ(text.find("[dis]"), std::string::npos);
}

TEST(MainTools, TheReportGoesToTheLogAndTheListToTheMenu) {
    TempDir app;
    std::filesystem::create_directories(app.path() + "/external");
    for (const char *tool : {"cdrdao", "mkisofs"}) {
        writeFile(app.path() + "/external/" + tool, "#!/bin/sh\n");
        std::filesystem::permissions(app.path() + "/external/" + tool, std::filesystem::perms::owner_all);
    }
    auto h = ShellHarness::inFolder(app.path(), "", false);
    frmMain &f = h->form();
    ASSERT_TRUE(f.Form_Load());
    EXPECT_TRUE(h->dialogs.prompts.empty()) << "nothing that must be there is missing";
    EXPECT_NE(f.txtStatus->text(), "No working cdrdao installation found");
    f.runner.log.close();
    std::string log = readFile(app.path() + "/external/TEMP/commandlog.txt");
    EXPECT_EQ(log.substr(0, 62), std::string(62, '-'));
    EXPECT_NE(log.find("Cdrdao"), std::string::npos);
    EXPECT_NE(log.find("Mkisofs"), std::string::npos);

    f.mnuExternal->trigger();
    ASSERT_EQ(h->dialogs.prompts.size(), 1u);
    EXPECT_NE(h->dialogs.prompts[0].text.find("Cdrdao"), std::string::npos);
    EXPECT_EQ(h->dialogs.prompts[0].text.find("MadPlay"), std::string::npos);
}
