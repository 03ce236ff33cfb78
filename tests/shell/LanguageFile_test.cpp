#include "shell/LanguageFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "shell/MessageTable.h"
#include "support/mdlFunctions.h"
#include "testlib/TestSupport.h"

namespace saltmarrow {
namespace {

using namespace std::string_literals;
using test::readFile;
using test::TempDir;
using test::writeFile;

std::size_t count(std::string_view text, std::string_view what) {
    std::size_t n = 0;
    for (std::size_t p = text.find(what); p != std::string_view::npos; p = text.find(what, p + what.size()))
        ++n;
    return n;
}

TEST(MessageTable, KeysOnceLineBreaksCrLfMarkersAndAdditions) {
    MessageTable m;
    ASSERT_EQ(m.size(), MessageTable::defaultCount());
    EXPECT_EQ(std::set<std::string>(m.keys().begin(), m.keys().end()).size(), m.size());
    for (const std::string &key : m.keys()) EXPECT_EQ(count(m[key], "\n"), count(m[key], "\r\n")) << key;
    EXPECT_EQ(m["no such key"], "");
    EXPECT_EQ(m.format("msgConfirmWrite", "650", "700"), "650 MB to be written to disc (700 MB free).");
    EXPECT_EQ(m.format("msgNotFound", "/external/%2"), "/external/%2 could not be found!");
    const std::string cancel = m["msgCancel"];
    m.set("msgCancel", "&Abbrechen");
    m.set("msgFromALanguageFile", "x");
    EXPECT_EQ(m.size(), MessageTable::defaultCount() + 1);
    EXPECT_EQ(m.keys().back(), "msgFromALanguageFile");
    EXPECT_EQ(m.keys()[9], "msgCancel");  // an overwritten key keeps its place
    m.fillDefaults();
    EXPECT_EQ(m["msgCancel"], cancel);
}

TEST(LanguageFile, SectionsOfTheFile) {
    const std::string file =
        "# comment=with equals\r\n"
        "   # indented comment\r\n"
        "\r\n"
        "[Global Messages]\r\n"
        "msgCancel=&Abbrechen\r\n"
        "msgTwoLines=erste<cr>zweite\r\n"
        "msgEquals=a=b\r\n"
        "msgNew=neu\r\n"
        "[frmDataCD]\r\n"
        "frmDataCD=Daten-CD\r\n"
        "cmdAdd=&Hinzufügen\r\n"
        "[frmAudioCD]\r\n"
        "cmdAdd=&Titel\r\n";
    LanguageSection main = readLanguage(file, "frmMain", true);
    ASSERT_EQ(main.messages.size(), 4u);
    EXPECT_EQ(main.messages[1], (std::pair<std::string, std::string>{"msgTwoLines", "erste\r\nzweite"}));
    EXPECT_EQ(main.messages[2].second, "a=b");
    EXPECT_TRUE(main.captions.empty());  // no section: the form stays in English

    LanguageSection data = readLanguage(file, "frmDataCD", false);
    EXPECT_TRUE(data.messages.empty());
    EXPECT_EQ(data.formCaption, "Daten-CD");
    ASSERT_EQ(data.captions.size(), 1u);  // stops at the next section
    EXPECT_EQ(data.captions[0].control, "cmdAdd");
    EXPECT_EQ(data.captions[0].caption, "&Hinzufügen");

    LanguageSection audio = readLanguage(file, "frmAudioCD", false);
    ASSERT_EQ(audio.captions.size(), 1u);
    EXPECT_EQ(audio.captions[0].caption, "&Titel");
}

TEST(LanguageFile, FormSectionsKeepTheirTextAsWritten) {
    const std::string file =
        "[frmMain]\r\n"
        "frmMain=Something Else\r\n"      // the main form keeps its caption
        "lblInfo=Zeile<cr>noch eine\r\n"  // "<cr>" holds in global messages only
        "optMode(2)=Zwei\r\n"
        "optMode(x=Kaputt\r\n"
        "cmdGo=Los=jetzt\r\n"
        "unknownControl=nichts\r\n";
    LanguageSection s = readLanguage(file, "frmMain", true);
    EXPECT_FALSE(s.formCaption);
    EXPECT_TRUE(s.messages.empty());
    ASSERT_EQ(s.captions.size(), 5u);
    EXPECT_EQ(s.captions[0].caption, "Zeile<cr>noch eine");
    EXPECT_EQ(s.captions[1].control, "optMode");
    EXPECT_EQ(s.captions[1].index, 2);
    EXPECT_EQ(s.captions[2].index, 0);
    EXPECT_EQ(s.captions[3].caption, "Los=jetzt");
    EXPECT_EQ(splitControlKey("cmd(12)"), (std::pair<std::string, std::optional<int>>{"cmd", 12}));
    EXPECT_EQ(splitControlKey("cmd"), (std::pair<std::string, std::optional<int>>{"cmd", std::nullopt}));
}

TEST(LanguageFile, HostileFilesAreHarmless) {
    std::string nul = "[frmMain]\r\ncmdWrite=A\0B\r\n"s;
    LanguageSection s =
        readLanguage(nul + "lbl=\xff\xfe\xc3\r\n" + std::string(1 << 20, 'k') + "=v\r\n" +
                         "no equals\r\n[Global Messages]\r\nmsgX=1\r\nmsgX=2\r\n[frmMain]\r\n" +
                         "cmdWrite=late\r\n[frmOther]\r\ncmdWrite=other\r\n",
                     "frmMain", true);
    ASSERT_GE(s.captions.size(), 3u);
    EXPECT_EQ(s.captions[0].caption, std::string("A\0B", 3));
    EXPECT_EQ(s.captions[1].caption, "\xff\xfe\xc3");
    EXPECT_EQ(s.captions[2].control.size(), 1u << 20);
    // Duplicates: both are there, in order, so the last one wins when applied.
    ASSERT_EQ(s.messages.size(), 2u);
    EXPECT_EQ(s.messages[1].second, "2");
    // The second "[frmMain]" is a section header behind the form's own: reading stops.
    for (const CaptionLine &c : s.captions) EXPECT_TRUE(c.caption != "late" && c.caption != "other");
    EXPECT_TRUE(readLanguage("", "frmMain", true).captions.empty());
    EXPECT_TRUE(readLanguage("[", "frmMain", true).captions.empty());
    EXPECT_TRUE(readLanguage("=", "frmMain", true).messages.empty());
}

TEST(LanguageFile, TemplateLayout) {
    MessageTable m;
    FormCaptions main{"frmMain",
                      "saltmarrow",
                      {{"cmdWrite", std::nullopt, "&Write"}, {"lblHidden", std::nullopt, "x[dis]"}}};
    FormCaptions data{"frmDataCD",
                      "Data CD Mastering",
                      {{"cmdUp", std::nullopt, ".."},
                       {"cmdNext", std::nullopt, ">>"},
                       {"lblEmpty", std::nullopt, ""},
                       {"optLevel", 1, "Level 1"},
                       {"optLevel", 2, "Level 2"}}};
    FormCaptions about{"frmAbout", "About", {{"lblVersion", std::nullopt, "1.0"}}};
    std::string t = composeLanguageTemplate("Template", "23/11/2026", "0.1", m, {main, data, about});
    std::vector<std::string> lines = vb::Split(t, "\r\n");

    // The box: 71 characters a line, closed on the right, rules 01 to 10 below.
    for (std::size_t i = 0; i < 10; ++i)
        EXPECT_TRUE(lines[i].size() == 71 && lines[i].substr(0, 5) == "    #" && lines[i].back() == '#')
            << lines[i];
    EXPECT_EQ(lines[0], "    " + std::string(67, '#'));
    EXPECT_NE(lines[3].find("    #   Language: Template "), std::string::npos);
    EXPECT_EQ(lines[4].substr(0, 28), "    #   Date:     23/11/2026");
    EXPECT_EQ(lines[4].substr(lines[4].size() - 16), "Version: 0.1   #");
    EXPECT_EQ(lines[5], "    #   Author:   saltmarrow generated template - please translate.   #");
    EXPECT_EQ(lines[7], "    #       Guidelines for translating saltmarrow - Please Read       #");
    EXPECT_EQ(lines[8].find('-'), lines[7].find('G'));
    EXPECT_EQ(lines[8].rfind('-'), lines[7].rfind('d'));
    for (const char *rule : {"01", "02", "03", "04", "05", "06", "07", "08", "09", "10"})
        EXPECT_NE(t.find("    #   " + std::string(rule) + ". "), std::string::npos) << rule;
    EXPECT_NE(t.find("03. Start a line with # if you wish to add commments\r\n"), std::string::npos);

    // Two blank lines, then the messages in table order with <cr>.
    std::size_t global = t.find("\r\n\r\n\r\n[Global Messages]\r\nmsgWriteProgress=Wrote %1 of %2 MB\r\n");
    ASSERT_NE(global, std::string::npos);
    EXPECT_NE(
        t.find("\r\nmsgCheckDriveEmpty=Please ensure the drive is empty and press OK.<cr>saltmarrow will"),
        std::string::npos);
    std::size_t last = 0;
    for (const std::string &key : m.keys()) {
        std::size_t at = t.find("\r\n" + key + "=");
        ASSERT_NE(at, std::string::npos) << key;
        EXPECT_GT(at, last) << key;
        last = at;
    }

    EXPECT_NE(t.find("tabMediaInfoTab=Media\r\n\r\n[frmMain]\r\ncmdWrite=&Write\r\n\r\n[frmDataCD]\r\n"
                     "frmDataCD=Data CD Mastering\r\noptLevel(1)=Level 1\r\noptLevel(2)=Level 2\r\n"),
              std::string::npos);
    EXPECT_EQ(t.find("frmMain=saltmarrow"), std::string::npos);
    EXPECT_EQ(t.find("[frmAbout]"), std::string::npos);
    for (std::string_view skipped : {"lblHidden", "cmdUp", "cmdNext", "lblEmpty"})
        EXPECT_EQ(t.find(std::string(skipped) + "="), std::string::npos) << skipped;

    // Read back, the template gives the messages exactly.
    LanguageSection back = readLanguage(t, "frmDataCD", true);
    ASSERT_EQ(back.messages.size(), m.size());
    for (const auto &[key, text] : back.messages) EXPECT_EQ(text, m[key]) << key;
    EXPECT_EQ(back.formCaption, "Data CD Mastering");
    EXPECT_EQ(back.captions.size(), 2u);
}

TEST(LanguageFile, ChoiceOfLanguages) {
    TempDir dir;
    std::filesystem::create_directories(dir.file("languages/sub.txt"));
    writeFile(dir.file("languages/German.txt"), "");
    writeFile(dir.file("languages/Danish.txt"), "");
    writeFile(dir.file("languages/English.txt"), "");
    writeFile(dir.file("languages/notes.doc"), "");
    EXPECT_EQ(availableLanguages(dir.path()), (std::vector<std::string>{"English", "Danish", "German"}));
    EXPECT_EQ(availableLanguages(dir.file("nowhere")), std::vector<std::string>{"English"});
    EXPECT_EQ(languagePath("/opt/app", "German"), "/opt/app/languages/German.txt");
}

// The shipped German file's messages: complete, and every text keeps what
// the program puts into it (markers, line breaks, the blanks it is joined
// with). Its captions are held against the forms themselves in
// frmMainSettings.
TEST(LanguageFile, GermanTranslationIsComplete) {
    const std::string file = readFile(test::sourcePath("resources/languages/German.txt"));
    ASSERT_FALSE(file.empty());
    MessageTable english;
    LanguageSection german = readLanguage(file, "frmMain", true);
    std::map<std::string, std::string> texts(german.messages.begin(), german.messages.end());
    EXPECT_EQ(german.messages.size(), texts.size()) << "a key stands twice";
    for (const std::string &key : english.keys()) {
        auto it = texts.find(key);
        ASSERT_NE(it, texts.end()) << key;
        const std::string &de = it->second;
        const std::string &en = english[key];
        EXPECT_FALSE(de.empty()) << key;
        for (std::string_view marker : {"%1", "%2", "\r\n", "&"})
            EXPECT_EQ(count(de, marker), count(en, marker)) << key << " " << marker;
        EXPECT_EQ(en.front() == ' ', de.front() == ' ') << key;
        EXPECT_EQ(en.back() == ' ', de.back() == ' ') << key;
    }
    EXPECT_EQ(texts.size(), english.size());
}

}  // namespace
}  // namespace saltmarrow
