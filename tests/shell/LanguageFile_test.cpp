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

// A form's section as one text: "caption|control(index)=caption;...|key=message;...".
std::string rendered(const LanguageSection &s) {
    std::string out = s.formCaption.value_or("-") + "|";
    for (const CaptionLine &c : s.captions)
        out += c.control + (c.index ? "(" + std::to_string(*c.index) + ")" : "") + "=" + c.caption + ";";
    out += "|";
    for (const auto &[key, text] : s.messages) out += key + "=" + text + ";";
    return out;
}

// What is read for a form: the global messages with "<cr>" as a line break,
// its own section up to the next, "<cr>" there as written, and never the main
// form's caption. Bytes no translator meant are read as they stand; a later
// "[frmMain]" is a section like any other and ends the reading.
TEST(LanguageFile, WhatIsReadForAForm) {
    const std::string file =
        "# comment=with equals\r\n\r\n"
        "[Global Messages]\r\n   # msgHidden=an indented "
        "comment\r\nmsgCancel=&Abbrechen\r\nmsgTwoLines=erste<cr>zweite\r\nmsgEquals=a=b\r\n"
        "[frmDataCD]\r\nfrmDataCD=Daten-CD\r\ncmdAdd=&Hinzufügen\r\n"
        "[frmAudioCD]\r\ncmdAdd=&Titel\r\n"
        "[frmMain]\r\nfrmMain=Something Else\r\nlblInfo=Zeile<cr>noch eine\r\noptMode(2)=Zwei\r\n"
        "optMode(x=Kaputt\r\ncmdGo=Los=jetzt\r\n";
    const std::string hostile =
        "[Global Messages]\r\nmsgX=1\r\nmsgX=2\r\n[frmMain]\r\ncmdWrite=A\0B\r\n"s + "lbl=\xff\xfe\xc3\r\n" +
        std::string(1 << 20, 'k') +
        "=v\r\nno equals\r\n[frmMain]\r\ncmdWrite=late\r\n[frmOther]\r\ncmdWrite=other\r\n";
    const struct {
        std::string file, form;
        bool messagesToo;
        std::string section;
    } rows[] = {
        {file, "frmDataCD", false, "Daten-CD|cmdAdd=&Hinzufügen;|"},
        {file, "frmAudioCD", false, "-|cmdAdd=&Titel;|"},
        {file, "frmMain", true,
         "-|lblInfo=Zeile<cr>noch eine;optMode(2)=Zwei;optMode(0)=Kaputt;cmdGo=Los=jetzt;|"
         "msgCancel=&Abbrechen;msgTwoLines=erste\r\nzweite;msgEquals=a=b;"},
        {file, "frmLog", true, "-||msgCancel=&Abbrechen;msgTwoLines=erste\r\nzweite;msgEquals=a=b;"},
        {hostile, "frmMain", true,
         "-|cmdWrite=A\0B;lbl=\xff\xfe\xc3;"s + std::string(1 << 20, 'k') + "=v;|msgX=1;msgX=2;"},
        {"", "frmMain", true, "-||"},
    };
    for (const auto &row : rows) {
        const std::string read = rendered(readLanguage(row.file, row.form, row.messagesToo));
        EXPECT_TRUE(read == row.section) << row.form << ": " << read.substr(0, 200);
    }
}

TEST(LanguageFile, TemplateLayout) {
    MessageTable m;
    FormCaptions main{"frmMain",
                      "saltmarrow",
                      {{"cmdWrite", std::nullopt, "&Write"}, {"lblHidden", std::nullopt, "x[dis]"}}};
    FormCaptions data{
        "frmDataCD",
        "Data CD Mastering",
        {{"cmdUp", std::nullopt, ".."}, {"cmdNext", std::nullopt, ">>"}, {"lblEmpty", std::nullopt, ""}}};
    FormCaptions about{"frmAbout", "About", {{"lblVersion", std::nullopt, "1.0"}}};
    std::string t = composeLanguageTemplate("Template", "23/11/2026", "0.1", m, {main, data, about});
    std::vector<std::string> lines = vb::Split(t, "\r\n");

    // The box: 71 characters a line, closed on the right, the guidelines'
    // title underlined, the rules run on; two blank lines, then the messages
    // in table order (with <cr>: read back in LanguageForms), then the forms.
    for (std::size_t i : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 20, 21})
        EXPECT_TRUE(lines[i].size() == 71 && lines[i].substr(0, 5) == "    #" && lines[i].back() == '#')
            << lines[i];
    EXPECT_EQ(lines[0], lines[21]);
    EXPECT_EQ(lines[0], "    " + std::string(67, '#'));
    EXPECT_NE(lines[3].find("    #   Language: Template "), std::string::npos);
    EXPECT_EQ(lines[4].substr(0, 28), "    #   Date:     23/11/2026");
    EXPECT_EQ(lines[4].substr(lines[4].size() - 16), "Version: 0.1   #");
    EXPECT_EQ(lines[8].find('-'), lines[7].find('G'));
    EXPECT_EQ(lines[8].rfind('-'), lines[7].rfind('d'));
    EXPECT_EQ(lines[22] + lines[23] + lines[24], "[Global Messages]");
    std::size_t last = 0;
    for (const std::string &key : m.keys()) {
        std::size_t at = t.find("\r\n" + key + "=");
        ASSERT_NE(at, std::string::npos) << key;
        EXPECT_GT(at, last) << key;
        last = at;
    }
    EXPECT_EQ(
        t.find("\r\n\r\n[frmMain]\r\ncmdWrite=&Write\r\n\r\n[frmDataCD]\r\nfrmDataCD=Data CD Mastering\r\n"),
        t.find("\r\n", last + 2));
    EXPECT_EQ(t.find("[frmAbout]"), std::string::npos);
    for (std::string_view skipped : {"lblHidden", "cmdUp", "cmdNext", "lblEmpty"})
        EXPECT_EQ(t.find(std::string(skipped) + "="), std::string::npos) << skipped;
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
