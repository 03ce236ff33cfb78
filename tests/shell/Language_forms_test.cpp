#include <gtest/gtest.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QVBoxLayout>
#include <filesystem>
#include <map>
#include <memory>

#include "shell/LanguageForms.h"
#include "shell/SettingsControls.h"
#include "shell/frmLanguage.h"
#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

namespace saltmarrow {
namespace {

using namespace std::string_literals;
using test::ScriptedDialogs;
using test::readFile;
using test::TempDir;
using test::writeFile;
namespace fs = std::filesystem;

QString q(std::string_view s) {
    return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
}

struct MenuEntry {
    const char *name;
    const char *caption;
};
struct Menu {
    const char *name;
    const char *caption;
    std::vector<MenuEntry> entries;
};
struct Frame {
    const char *name;
    const char *caption;
    std::vector<MenuEntry> checks;
    std::vector<const char *> combos;
};

// A window built like the main form: its menus, frames, check boxes and
// button carry the main form's names and English captions.
std::unique_ptr<QMainWindow> mainFormLike() {
    static const std::vector<Menu> menus{
        {"mnuFile",
         "&File",
         {{"mnuLoad", "Load &New Image..."}, {"mnuLog", "View Command &Log"}, {"mnuExit", "E&xit"}}},
        {"mnuSettings",
         "&Settings",
         {{"mnuDeviceSettings", "Device &Settings"},
          {"mnuLanguages", "&Languages..."},
          {"mnuConfirmWrite", "&Confirm Write"},
          {"mnuMouseOver", "Mouseover &Help"},
          {"mnuOnTop", "Always on &Top"}}},
        {"mnuTools",
         "&Tools",
         {{"mnuDeviceInfo", "&Device Info..."},
          {"mnuResetWriter", "&Reset Writer"},
          {"mnuErase", "&Erase Disc..."}}},
        {"mnuReadCopy",
         "&Read/Copy",
         {{"mnuReadCD", "&Read to Image"},
          {"mnuDDump", "&DDump to Image"},
          {"mnuExtractTracks", "E&xtract Tracks..."},
          {"mnuCopyCD", "&Copy on the fly"}}},
        {"mnuMastering",
         "&Mastering",
         {{"mnuAudioCD", "&Audio CD..."},
          {"mnuDataCD", "&Data CD..."},
          {"mnuDataDVD", "Da&ta DVD..."},
          {"mnuDVDVideo", "DVD &Video..."}}},
        {"mnuHelp",
         "&Help",
         {{"mnuHelpContents", "&Contents..."},
          {"mnuExternal", "&List External Tools"},
          {"mnuDonate", "Make a &Donation..."},
          {"mnuAbout", "&About..."}}},
        {"mnuSysTray",
         "",
         {{"mnuRestore", "&Restore"},
          {"mnuDonate2", "Make a &Donation..."},
          {"mnuSysTrayAbout", "&About"},
          {"mnuSysTrayExit", "E&xit"}}},
    };
    static const std::vector<Frame> frames{
        {"frameReader",
         "Read Settings",
         {{"chkReadRaw", "Read Raw"},
          {"chkSimpleTOC", "Simple TOC"},
          {"chkSwapAudio", "Swap Audio"},
          {"chkReadCDText", "Read CD-Text"}},
         {"cmbReaderDevice", "cmbParanoia", "cmbSubs"}},
        {"frameWriter",
         "Write Settings",
         {{"ChkWriteDriverRaw", "Use Raw Driver"},
          {"chkEject", "Eject Disc"},
          {"chkBurnProof", "Buffer Protection"},
          {"chkOverburn", "Overburn"},
          {"chkWriteCDText", "Write CD-Text"},
          {"chkSimulate", "Simulate"},
          {"chkMultiSession", "MultiSession"},
          {"chkForce", "Force Execution"}},
         {"cmbWriterDevice", "cmbSpeed", "cmbBuffers"}},
        {"frameOther",
         "Other Settings",
         {{"chkDelImage", "Manage Images"},
          {"chkAutoHide", "Autohide Settings"},
          {"chkMinToTray", "Minimize to Tray"},
          {"chkCheckCUE", "Check Images"},
          {"chkUseSPTI", "SPTI Interface"}},
         {}},
    };

    auto form = std::make_unique<QMainWindow>();
    form->setObjectName("frmMain");
    form->setWindowTitle("saltmarrow");
    for (const Menu &m : menus) {
        auto *menu = m.name == std::string_view("mnuSysTray") ? new QMenu(form.get())
                                                              : form->menuBar()->addMenu(m.caption);
        menu->setObjectName(m.name);
        for (const MenuEntry &e : m.entries) {
            QAction *a = menu->addAction(e.caption);
            a->setObjectName(e.name);
            a->setCheckable(true);
        }
    }
    auto *central = new QWidget(form.get());
    auto *layout = new QVBoxLayout(central);
    auto *status = new QLabel("NO IMAGE LOADED", central);
    status->setObjectName("txtStatus");  // a status text, not a caption the file sets
    layout->addWidget(status);
    for (const Frame &f : frames) {
        auto *box = new QGroupBox(f.caption, central);
        box->setObjectName(f.name);
        auto *inner = new QVBoxLayout(box);
        for (const char *c : f.combos) {
            auto *combo = new QComboBox(box);
            combo->setObjectName(c);
            inner->addWidget(combo);
        }
        for (const MenuEntry &c : f.checks) {
            auto *check = new QCheckBox(c.caption, box);
            check->setObjectName(c.name);
            inner->addWidget(check);
        }
        layout->addWidget(box);
    }
    auto *write = new QPushButton("&Write", central);
    write->setObjectName("cmdWrite");
    layout->addWidget(write);
    auto *log = new QPlainTextEdit(central);
    log->setObjectName("txtOutputs");
    layout->addWidget(log);
    form->setCentralWidget(central);
    auto *bar = new QStatusBar(form.get());
    bar->setObjectName("sbStatusBar");
    for (int i = 1; i <= 5; ++i) {
        auto *panel = new QLabel(bar);
        panel->setObjectName("sbStatusBar");
        panel->setProperty("index", i);
        bar->addWidget(panel);
    }
    form->setStatusBar(bar);
    auto *paranoia = form->findChild<QComboBox *>("cmbParanoia");
    paranoia->addItems({"No Checking", "Overlap Reading", "Additional Checks", "Scratch Detection"});
    return form;
}

// Every caption of a form by control name (and index).
std::map<std::string, std::string> captionsOf(const QWidget *form) {
    std::map<std::string, std::string> out;
    for (const CaptionLine &c : collectCaptions(form).controls)
        out[c.index ? c.control + "(" + std::to_string(*c.index) + ")" : c.control] = c.caption;
    return out;
}

// A program folder with the shipped German file in its languages/.
struct AppWithGerman {
    TempDir dir;
    AppWithGerman() {
        fs::create_directories(dir.file("languages"));
        fs::copy_file(std::string(SALTMARROW_APP_DIR) + "/languages/German.txt",
                      dir.file("languages/German.txt"));
    }
    std::string path() const { return dir.path(); }
};

TEST(LanguageForms, GermanSwitchesTheMainForm) {
    AppWithGerman app;
    auto form = mainFormLike();
    const auto english = captionsOf(form.get());
    MessageTable messages;
    ASSERT_TRUE(applyLanguage(form.get(), true, "German", messages, app.path()));

    LanguageSection german = readLanguage(readFile(app.dir.file("languages/German.txt")), "frmMain", true);
    std::map<std::string, std::string> expected;
    for (const CaptionLine &c : german.captions) expected[c.control] = c.caption;
    const auto now = captionsOf(form.get());
    std::size_t switched = 0;
    for (const auto &[name, caption] : english) {
        if (caption.empty()) continue;
        ASSERT_TRUE(expected.count(name)) << name << " has no German caption";
        EXPECT_EQ(now.at(name), expected.at(name)) << name;
        EXPECT_NE(now.at(name), caption) << name;
        ++switched;
    }
    EXPECT_EQ(switched, 54u);
    EXPECT_EQ(form->windowTitle(), "saltmarrow");
    EXPECT_EQ(form->findChild<QLabel *>("txtStatus")->text(), "NO IMAGE LOADED");
    EXPECT_EQ(messages["msgCancel"], "&Abbrechen");
    EXPECT_NE(messages["msgCheckDriveEmpty"].find(".\r\nsaltmarrow prüft"), std::string::npos);
    EXPECT_EQ(messages.size(), MessageTable::defaultCount());

    // Without messagesToo the table is left alone.
    MessageTable untouched;
    auto second = mainFormLike();
    applyLanguage(second.get(), false, "German", untouched, app.path());
    EXPECT_EQ(untouched["msgCancel"], "&Cancel");
    EXPECT_EQ(captionsOf(second.get()), now);
}

TEST(LanguageForms, TemplateWrittenAndReadBackGivesTheCaptionsAgain) {
    TempDir app;
    auto main = mainFormLike();
    QDialog data;
    data.setObjectName("frmDataCD");
    data.setWindowTitle("Data CD Mastering");
    for (int i = 0; i < 3; ++i) {
        auto *opt = new QRadioButton(QString("Level %1").arg(i + 1), &data);
        opt->setObjectName("optLevel");
        opt->setProperty("index", i);
    }
    (new QLabel("never shown [dis]", &data))->setObjectName("lblHidden");
    (new QPushButton(">>", &data))->setObjectName("cmdNext");
    (new QPushButton("&Add", &data))->setObjectName("cmdAdd");
    (new QComboBox(&data))->setObjectName("cmbKind");
    QDialog about;
    about.setObjectName("frmAbout");
    (new QLabel("about text", &about))->setObjectName("lblAbout");

    MessageTable messages;
    writeLanguageTemplate(app.path(), "Template", {main.get(), &data, &about}, messages, "0.1");
    const std::string file = readFile(app.file("languages/Template.txt"));
    ASSERT_FALSE(file.empty());
    EXPECT_EQ(file.find("[frmAbout]"), std::string::npos);
    EXPECT_NE(file.find("\r\noptLevel(2)=Level 3\r\n"), std::string::npos);
    EXPECT_EQ(file.find("txtStatus="), std::string::npos);

    const auto mainBefore = captionsOf(main.get());
    const auto dataBefore = captionsOf(&data);
    for (QWidget *form : std::initializer_list<QWidget *>{main.get(), &data}) {
        for (QObject *o : form->findChildren<QObject *>()) setControlCaption(o, "scrambled");
        form->setWindowTitle("scrambled");
    }
    MessageTable scrambled;
    for (const std::string &key : scrambled.keys()) scrambled.set(key, "scrambled");

    ASSERT_TRUE(applyLanguage(main.get(), true, "Template", scrambled, app.path()));
    ASSERT_TRUE(applyLanguage(&data, false, "Template", scrambled, app.path()));
    for (const auto &[name, caption] : mainBefore)
        if (!isUntranslatedCaption(caption)) {
            EXPECT_EQ(captionsOf(main.get()).at(name), caption) << name;
        }
    auto dataAfter = captionsOf(&data);
    EXPECT_EQ(dataAfter.at("optLevel(0)"), "Level 1");
    EXPECT_EQ(dataAfter.at("optLevel(2)"), "Level 3");
    EXPECT_EQ(dataAfter.at("cmdAdd"), "&Add");
    EXPECT_EQ(dataAfter.at("cmdNext"), "scrambled");  // left out of the template
    EXPECT_EQ(dataAfter.at("lblHidden"), "scrambled");
    EXPECT_EQ(data.windowTitle(), "Data CD Mastering");
    EXPECT_EQ(main->windowTitle(), "scrambled");  // the main form's caption is not in the file
    for (const std::string &key : messages.keys()) EXPECT_EQ(scrambled[key], messages[key]) << key;
    EXPECT_EQ(dataBefore.size(), dataAfter.size());
}

TEST(LanguageForms, EdgeCasesOfApplying) {
    TempDir app;
    fs::create_directories(app.file("languages"));
    writeFile(app.file("languages/Test.txt"),
              "[frmMain]\r\n"
              "cmbSpeed=no caption to set\r\n"  // passed over, the next line still counts
              "cmdWrite=Line<cr>two\r\n"
              "chkSimulate=Sim = on\r\n"
              "noSuchControl=x\r\n"
              "sbStatusBar(2)=panel two\r\n"  // panels and text boxes show data, not captions
              "txtStatus=Status\r\n"
              "[frmDataCD]\r\n"
              "cmdWrite=wrong form\r\n");
    MessageTable messages;
    auto form = mainFormLike();
    EXPECT_FALSE(applyLanguage(form.get(), true, "Missing", messages, app.path()));
    ASSERT_TRUE(applyLanguage(form.get(), true, "Test", messages, app.path()));
    EXPECT_EQ(form->findChild<QPushButton *>("cmdWrite")->text(), "Line<cr>two");
    EXPECT_EQ(form->findChild<QCheckBox *>("chkSimulate")->text(), "Sim = on");
    for (QLabel *panel : form->findChildren<QLabel *>("sbStatusBar")) EXPECT_EQ(panel->text(), "");
    EXPECT_EQ(form->findChild<QLabel *>("txtStatus")->text(), "NO IMAGE LOADED");

    QDialog other;
    other.setObjectName("frmAudioCD");
    auto *add = new QPushButton("&Add", &other);
    add->setObjectName("cmdWrite");
    ASSERT_TRUE(applyLanguage(&other, false, "Test", messages, app.path()));
    EXPECT_EQ(add->text(), "&Add");  // no section of its own: stays English

    // Bytes no translator meant: still a start, with what could be read.
    std::string hostile = "[frmMain]\r\ncmdWrite=A\0B\r\nchkEject=\xff\xfe\r\n"s;
    hostile += "chkForce=" + std::string(1 << 20, 'f') +
               "\r\n=\r\n[\r\n]\r\n[Global Messages]\r\nmsgDone=1\r\nmsgDone=2\r\n";
    writeFile(app.file("languages/Hostile.txt"), hostile);
    ASSERT_TRUE(applyLanguage(form.get(), true, "Hostile", messages, app.path()));
    EXPECT_EQ(form->findChild<QPushButton *>("cmdWrite")->text(), QString::fromUtf8("A\0B", 3));
    EXPECT_EQ(form->findChild<QCheckBox *>("chkForce")->text().size(), 1 << 20);
    EXPECT_EQ(messages["msgDone"], "2");
}

TEST(LanguageForms, StartUpLanguage) {
    AppWithGerman app;
    MessageTable messages;
    Settings settings;  // no language set: the system's
    auto form = mainFormLike();
    EXPECT_EQ(startLanguage(form.get(), settings, messages, app.path(), "German"), "German");
    EXPECT_EQ(form->findChild<QPushButton *>("cmdWrite")->text(), "&Schreiben");
    EXPECT_EQ(messages["msgSimulate"], "&Simulieren");

    // A language without a file: English, silently, and the texts are English again.
    settings.setText("Language", "Klingon");
    auto second = mainFormLike();
    EXPECT_EQ(startLanguage(second.get(), settings, messages, app.path(), "German"), "English");
    EXPECT_EQ(settings.text("Language"), "English");
    EXPECT_EQ(messages["msgSimulate"], "&Simulate");
    EXPECT_EQ(second->findChild<QPushButton *>("cmdWrite")->text(), "&Write");
    EXPECT_FALSE(systemLanguageName().empty());
}

TEST(LanguageForms, TooltipsOnAndOff) {
    auto form = mainFormLike();
    MessageTable messages;
    messages.set("tipWriteSimulate", "Simuliert");
    enableTooltips(form.get(), true, messages);
    EXPECT_EQ(form->findChild<QCheckBox *>("chkSimulate")->toolTip(), "Simuliert");
    EXPECT_EQ(form->findChild<QComboBox *>("cmbWriterDevice")->toolTip(), "Selected Write Device");
    for (QLabel *panel : form->findChildren<QLabel *>("sbStatusBar")) {
        const TooltipRow &row =
            kMainTooltips[std::size(kMainTooltips) - 6 + panel->property("index").toInt()];
        EXPECT_EQ(panel->toolTip(), q(messages[row.key]));
    }
    EXPECT_EQ(form->findChildren<QLabel *>("sbStatusBar")[2]->toolTip(), "Recording Speed");
    EXPECT_TRUE(form->findChild<QStatusBar *>("sbStatusBar")->toolTip().isEmpty());
    enableTooltips(form.get(), false, messages);
    for (const TooltipRow &row : kMainTooltips)
        for (QWidget *w : form->findChildren<QWidget *>(q(row.control))) EXPECT_TRUE(w->toolTip().isEmpty());
}

TEST(LanguageForms, NewLanguageWaitsForTheNextStart) {
    AppWithGerman app;
    writeFile(app.dir.file("languages/Template.txt"), "");
    MessageTable messages;
    ScriptedDialogs dialogs;
    auto main = mainFormLike();
    const auto english = captionsOf(main.get());

    {
        frmLanguage dialog(app.path(), "English", messages, dialogs);
        ASSERT_EQ(dialog.listLanguage->count(), 3);
        EXPECT_EQ(dialog.listLanguage->item(0)->text(), "English");
        EXPECT_EQ(dialog.listLanguage->item(1)->text(), "German");
        EXPECT_EQ(dialog.listLanguage->currentRow(), 0);
        dialog.listLanguage->setCurrentRow(1);
        dialogs.answer(platform::mb::Cancel);
        dialog.cmdOK_Click();
        EXPECT_FALSE(dialog.chosenLanguage());
    }
    frmLanguage dialog(app.path(), "English", messages, dialogs);
    dialog.listLanguage->setCurrentRow(1);
    dialogs.answer(platform::mb::OK);
    dialog.cmdOK_Click();
    ASSERT_EQ(dialogs.prompts.size(), 2u);
    EXPECT_EQ(dialogs.prompts[1].text, "saltmarrow will now quit.");
    EXPECT_EQ(dialogs.prompts[1].style, platform::mb::Information | platform::mb::OKCancel);
    ASSERT_EQ(dialog.chosenLanguage(), "German");
    EXPECT_EQ(captionsOf(main.get()), english);  // nothing changes in this run

    // The main form stores the choice and unloads; the next start reads it.
    Settings settings;
    settings.setText("Language", *dialog.chosenLanguage());
    const std::string ini = settingsPath(app.path());
    saveSettings(ini, true, settings, DeviceTable{}, defaultEncoderTable());
    Settings nextStart;
    preloadSettings(ini, nextStart);
    auto restarted = mainFormLike();
    MessageTable fresh;
    ASSERT_TRUE(applyLanguage(restarted.get(), true, nextStart.text("Language"), fresh, app.path()));
    EXPECT_EQ(restarted->findChild<QMenu *>("mnuFile")->title(), "&Datei");

    // The dialog itself speaks the language in use.
    frmLanguage german(app.path(), "German", fresh, dialogs, restarted.get());
    EXPECT_EQ(german.windowTitle(), "Sprache");
    EXPECT_EQ(german.cmdCancel->text(), "&Abbrechen");
    EXPECT_EQ(german.listLanguage->currentItem()->text(), "German");
}

TEST(LanguageForms, SettingsOfTheMainFormsControls) {
    auto form = mainFormLike();
    Settings settings;
    settings.setInteger("Check Cue Files", 1);
    settings.setInteger("Minimize To Tray", 1);
    settings.setBoolean("Always on Top", true);
    settings.setBoolean("ShowCommandLog", true);
    settings.setText("CommandLog Font", "Monospace");
    settings.setReal("CommandLog Size", 11);
    controlsFromSettings(form.get(), settings);
    EXPECT_TRUE(form->findChild<QCheckBox *>("chkCheckCUE")->isChecked());
    EXPECT_FALSE(form->findChild<QCheckBox *>("chkAutoHide")->isChecked());
    EXPECT_TRUE(form->findChild<QAction *>("mnuOnTop")->isChecked());
    EXPECT_FALSE(form->findChild<QAction *>("mnuConfirmWrite")->isChecked());
    EXPECT_EQ(form->findChild<QWidget *>("txtOutputs")->font().pointSizeF(), 11);

    Settings back;
    settingsFromControls(form.get(), back);
    for (const SettingRow &row : kSettingsTable)
        if (!row.control.empty()) {
            EXPECT_EQ(back.text(row.key), settings.text(row.key)) << row.key;
        }

    // "Simulate=1" and "Paranoia=2" from an old file set their controls for this run.
    TempDir dir;
    writeFile(dir.file("saltmarrow.ini"), "Simulate=1\r\nParanoia=2\r\nSubchannel=7\r\n");
    std::optional<EncoderTable> encoders;
    loadSettings(dir.file("saltmarrow.ini"), back, encoders, {});
    applyLegacySettings(form.get(), back);
    EXPECT_TRUE(form->findChild<QCheckBox *>("chkSimulate")->isChecked());
    EXPECT_FALSE(form->findChild<QCheckBox *>("chkEject")->isChecked());
    EXPECT_EQ(form->findChild<QComboBox *>("cmbParanoia")->currentIndex(), 2);
    EXPECT_EQ(form->findChild<QComboBox *>("cmbSubs")->currentIndex(), -1);  // no such entry: left alone
}

}  // namespace
}  // namespace saltmarrow
