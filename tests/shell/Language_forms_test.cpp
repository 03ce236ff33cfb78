// Language files applied to forms and templates written from them, on small
// forms made for each case; the main form itself is in frmMainSettings.
#include <gtest/gtest.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <filesystem>

#include "shell/LanguageForms.h"
#include "shell/frmLanguage.h"
#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

namespace saltmarrow {
namespace {

using namespace std::string_literals;
using test::TempDir;
using test::writeFile;
namespace fs = std::filesystem;

template <typename W>
W *add(QWidget *parent, const char *name, const QString &caption = {}, std::optional<int> index = {}) {
    auto *w = new W(parent);
    w->setObjectName(name);
    if constexpr (std::is_base_of_v<QAbstractButton, W> || std::is_same_v<W, QLabel>) w->setText(caption);
    if (index) w->setProperty("index", *index);
    return w;
}

// A form with a button, a check box, an option array, a data label, a menu
// and a window of its own inside it.
struct Form {
    QDialog form;
    QPushButton *cmdWrite = add<QPushButton>(&form, "cmdWrite", "&Write");
    QCheckBox *chkSimulate = add<QCheckBox>(&form, "chkSimulate", "Simulate");
    QRadioButton *opt0 = add<QRadioButton>(&form, "optLevel", "Level 1", 0);
    QRadioButton *opt1 = add<QRadioButton>(&form, "optLevel", "Level 2", 1);
    QLabel *txtStatus = add<QLabel>(&form, "txtStatus", "NO IMAGE LOADED");
    QLabel *panel = add<QLabel>(&form, "sbStatusBar", "", 3);
    QComboBox *cmbSpeed = add<QComboBox>(&form, "cmbSpeed");
    QMenu *mnuFile = new QMenu("&File", &form);
    QAction *mnuLoad = mnuFile->addAction("Load...");
    QDialog *child = new QDialog(&form);
    QPushButton *childButton = add<QPushButton>(child, "cmdWrite", "&Cancel");
    Form() {
        form.setObjectName("frmMain");
        form.setWindowTitle("saltmarrow");
        mnuFile->setObjectName("mnuFile");
        mnuLoad->setObjectName("mnuLoad");
        child->setObjectName("frmChild");
    }
};

TEST(LanguageForms, ApplyingAFile) {
    TempDir app;
    fs::create_directories(app.file("languages"));
    writeFile(app.file("languages/Test.txt"),
              "[Global Messages]\r\nmsgCancel=&Abbrechen\r\nmsgDone=1\r\nmsgDone=2\r\n"
              "[frmMain]\r\n"
              "cmbSpeed=no caption to set\r\n"  // passed over, the next line still counts
              "cmdWrite=Line<cr>two\r\n"
              "=\r\n[\r\n]\r\n"  // bytes no translator meant: the lines after them still count
              "optLevel(1)=Stufe 2\r\n"
              "mnuFile=&Datei\r\n"
              "mnuLoad=La\0den\r\n"
              "noSuchControl=x\r\n"
              "sbStatusBar(3)=panel\r\n"  // panels and text boxes show data, not captions
              "txtStatus=Status\r\n"
              "[frmChild]\r\ncmdWrite=&Abbruch\r\n"s);
    Form f;
    MessageTable messages;
    // The window inside the form, without messagesToo: the table is left alone.
    ASSERT_TRUE(applyLanguage(f.child, false, "Test", messages, app.path()));
    EXPECT_EQ(f.childButton->text(), "&Abbruch");
    EXPECT_EQ(messages["msgCancel"], "&Cancel");

    ASSERT_TRUE(applyLanguage(&f.form, true, "Test", messages, app.path()));
    EXPECT_EQ(f.cmdWrite->text(), "Line<cr>two") << "<cr> holds in the global messages only";
    EXPECT_EQ(f.opt0->text(), "Level 1");
    EXPECT_EQ(f.opt1->text(), "Stufe 2");
    EXPECT_EQ(f.mnuFile->title(), "&Datei");
    EXPECT_EQ(f.mnuLoad->text(), QString::fromUtf8("La\0den", 6));
    EXPECT_EQ(f.panel->text(), "");
    EXPECT_EQ(f.txtStatus->text(), "NO IMAGE LOADED");
    EXPECT_EQ(f.childButton->text(), "&Abbruch") << "a window inside the form has a section of its own";
    EXPECT_EQ(messages["msgCancel"], "&Abbrechen");
    EXPECT_EQ(messages["msgDone"], "2");
}

TEST(LanguageForms, TheTemplateReadsBackToTheSameCaptions) {
    TempDir app;
    Form f;
    MessageTable messages;
    writeLanguageTemplate(app.path(), "Template", {&f.form, f.child}, messages, "0.1");
    const std::string file = test::readFile(app.file("languages/Template.txt"));
    EXPECT_NE(file.find("\r\n[frmMain]\r\ncmdWrite=&Write\r\nchkSimulate=Simulate\r\noptLevel(0)=Level 1\r\n"
                        "optLevel(1)=Level 2\r\nmnuFile=&File\r\nmnuLoad=Load...\r\n\r\n[frmChild]\r\n"
                        "frmChild=\r\ncmdWrite=&Cancel\r\n"),
              std::string::npos)
        << file.substr(file.find("[frmMain]"));  // no txtStatus nor sbStatusBar: they show data

    Form scrambled;
    for (QObject *o : scrambled.form.findChildren<QObject *>()) setControlCaption(o, "scrambled");
    MessageTable table;
    for (const std::string &key : table.keys()) table.set(key, "scrambled");
    ASSERT_TRUE(applyLanguage(&scrambled.form, true, "Template", table, app.path()));
    for (const std::string &key : messages.keys()) EXPECT_EQ(table[key], messages[key]) << key;
    EXPECT_EQ(scrambled.opt1->text(), "Level 2");
    EXPECT_EQ(scrambled.mnuFile->title(), "&File");
}

TEST(LanguageForms, StartUpLanguageAndTooltips) {
    TempDir app;
    fs::create_directories(app.file("languages"));
    fs::copy_file(test::sourcePath("resources/languages/German.txt"), app.file("languages/German.txt"));
    Settings settings;  // no language set: the system's
    MessageTable messages;
    Form f;
    EXPECT_EQ(startLanguage(&f.form, settings, messages, app.path(), "German"), "German");
    EXPECT_EQ(f.cmdWrite->text(), "&Schreiben");
    EXPECT_EQ(messages["msgSimulate"], "&Simulieren");
    // A language without a file: English, silently, and the texts are English again.
    settings.setText("Language", "Klingon");
    Form second;
    EXPECT_EQ(startLanguage(&second.form, settings, messages, app.path(), "German"), "English");
    EXPECT_EQ(settings.text("Language"), "English");
    EXPECT_EQ(messages["msgSimulate"], "&Simulate");
    EXPECT_EQ(second.cmdWrite->text(), "&Write");

    messages.set("tipWriteSimulate", "Simuliert");
    enableTooltips(&f.form, true, messages);
    EXPECT_EQ(f.chkSimulate->toolTip(), "Simuliert");
    EXPECT_EQ(f.cmbSpeed->toolTip(), "Recording Speed");
    EXPECT_EQ(f.panel->toolTip(), "Recording Speed") << "the third panel";
    enableTooltips(&f.form, false, messages);
    EXPECT_TRUE(f.chkSimulate->toolTip().isEmpty());
    EXPECT_TRUE(f.panel->toolTip().isEmpty());
}

TEST(LanguageForms, ANewLanguageWaitsForTheNextStart) {
    TempDir app;
    fs::create_directories(app.file("languages"));
    writeFile(app.file("languages/German.txt"),
              "[frmLanguage]\r\nfrmLanguage=Sprache\r\ncmdCancel=&Abbrechen\r\n");
    MessageTable messages;
    test::ScriptedDialogs dialogs;
    {
        frmLanguage dialog(app.path(), "English", messages, dialogs);
        dialog.listLanguage->setCurrentRow(1);
        dialogs.answer(platform::mb::Cancel);
        dialog.cmdOK_Click();
        EXPECT_FALSE(dialog.chosenLanguage());
    }
    frmLanguage dialog(app.path(), "English", messages, dialogs);
    dialog.listLanguage->setCurrentRow(1);
    dialogs.answer(platform::mb::OK);
    dialog.cmdOK_Click();
    EXPECT_EQ(dialogs.prompts.back().text, "saltmarrow will now quit.");
    EXPECT_EQ(dialogs.prompts.back().style, platform::mb::Information | platform::mb::OKCancel);
    EXPECT_EQ(dialog.chosenLanguage(), "German");
    // The dialog itself speaks the language in use.
    frmLanguage german(app.path(), "German", messages, dialogs);
    EXPECT_EQ(german.windowTitle(), "Sprache");
    EXPECT_EQ(german.cmdCancel->text(), "&Abbrechen");
    EXPECT_EQ(german.listLanguage->currentItem()->text(), "German");
}

}  // namespace
}  // namespace saltmarrow
