// checkImage and checkTOC on real sheets in temporary folders: what they find,
// what they refuse, what they ask, and that a sheet changes only on Yes.
#include "discops/SheetCheck.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "discops/ImageTestSupport.h"
#include "platform/Dialogs.h"
#include "support/RuntimeError.h"
#include "support/mdlFunctions.h"
#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::discops;
using saltmarrow::test::readFile;
using saltmarrow::test::ScriptedDialogs;
using saltmarrow::test::TempDir;
using saltmarrow::test::writeFile;
namespace fs = std::filesystem;
namespace mb = saltmarrow::platform::mb;

namespace {

const std::string kBom = "\xEF\xBB\xBF";

// An application folder and an image folder side by side.
struct Images {
    TempDir dir;
    std::string app = dir.file("app");
    std::string img = dir.file("img");
    Images() {
        fs::create_directories(app + "/external");
        fs::create_directories(img);
    }
    std::string put(const std::string &name, const std::string &bytes) {
        std::string path = img + "/" + name;
        writeFile(path, bytes);
        return path;
    }
    CheckImageResult check(const std::string &sheet, ScriptedDialogs &dialogs, bool ticked = true,
                           const std::string &workingFolder = {}) {
        return checkImage({sheet, ticked, app, workingFolder}, dialogs, test::imageMessage);
    }
};

std::string question(const std::string &header, const std::vector<std::string> &findings,
                     const std::string &fix) {
    std::string report;
    for (const auto &f : findings) report += "\r\n" + test::imageMessage(f);
    return test::imageMessage(header) + "\r\n" + report + "\r\n\r\n" + test::imageMessage(fix);
}

}  // namespace

// What the check finds, asks, refuses and repairs, sheet by sheet. The sheet
// stands in img/ beside "sheet.bin" and "data.bin"; "@" in a text is that
// folder. A Yes answers every question.
TEST(SheetCheck, WhatIsFoundAskedAndRepaired) {
    struct Row {
        const char *what;
        std::string sheet, text;
        std::vector<std::string> findings;  // the question's findings; "!key" is a refusal box
        std::string repaired;               // empty: the sheet stays as it was
        std::string dataFile;               // in img/; empty: none recorded
        std::string workingFolder;          // where names are read from now; "-" for unchanged
        std::string bin = "sheet.bin";      // the data file of the sheet's name, as it stands on disk
    };
    const std::string fix = "FILE \"sheet.bin\" BINARY\r\nTRACK 01 MODE1/2352\r\n";
    const std::string toc = "CD_ROM\nTRACK MODE1\n",
                      fixed = "CD_ROM\r\nTRACK MODE1\r\nDATAFILE \"@/data.bin\"\r\n";
    const std::string one = "FILE \"sheet.bin\" BINARY\nTRACK 01 MODE1/2352\n";
    // clang-format off
    const Row rows[] = {
        {"another bin beside the sheet's own", "sheet.cue", vb::Replace(one, "sheet", "other"),
         {"msgCueIncorrectBin"}, fix, "sheet.bin", "@"},
        {"a bin named in another case", "sheet.cue", one,
         {"msgCueIncorrectBin"}, vb::Replace(fix, "sheet.bin", "SHEET.BIN"), "SHEET.BIN", "@", "SHEET.BIN"},
        {"two files", "sheet.cue", one + "FILE \"sheet.bin\" BINARY\n", {"!msgCUEOneFile"}, "", "sheet.bin", "-"},
        {"no bin of the sheet's name", "lonely.cue", one, {"!msgCueSameFolder"}, "", "", "-"},
        {"a byte order mark and doubled quotes", "image.toc",
         kBom + "CD_ROM\r\n\r\nTRACK MODE1\r\nDATAFILE \"\"@/data.bin\"\"\r\n",
         {"msgSheetByteOrderMark", "msgTocDoubleQuotes"},
         "CD_ROM\r\n\r\nTRACK MODE1\r\nDATAFILE \"@/data.bin\"\r\n", "data.bin", "external"},
        {"a relative name misses its file from the tools folder", "image.toc", toc + "DATAFILE \"data.bin\"\n",
         {"msgTocIncorrectDat"}, fixed, "data.bin", "external"},
        {"a name without quotes", "image.toc", toc + "DATAFILE data.bin\n",
         {"msgTocIncorrectDat"}, fixed, "data.bin", "external"},
        {"an opening quote only", "image.toc", toc + "DATAFILE \"data.bin\n",
         {"msgTocIncorrectDat"}, fixed, "data.bin", "external"},
        {"a whole path without its closing quote", "image.toc", toc + "DATAFILE \"@/data.bin\n",
         {"msgTocIncorrectDat"}, fixed, "data.bin", "external"},
        {"a FILE with its start and length", "image.toc", toc + "  FILE data.bin 0 1000\n", {"msgTocIncorrectDat"},
         "CD_ROM\r\nTRACK MODE1\r\n  FILE \"@/data.bin\" 0 1000\r\n", "data.bin", "external"},
        {"a file found nowhere", "image.toc", toc + "DATAFILE \"/no/such/place/lost.bin\"\n",
         {"!lost.bin could not be found!"}, "", "", "-"},
        {"a device", "image.toc", toc + "DATAFILE \"/dev/null\"\n", {"!null could not be found!"}, "", "", "-"},
        {"a folder", "image.toc", toc + "DATAFILE \"/tmp\"\n", {"!tmp could not be found!"}, "", "", "-"},
        {"the root: the statement is named", "image.toc", toc + "DATAFILE \"/\"\n",
         {"!DATAFILE \"/\" could not be found!"}, "", "", "-"},
        {"no name at all", "image.toc", toc + "DATAFILE \"\"\n", {"!DATAFILE \" could not be found!"}, "", "", "-"},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        Images im;
        im.put(row.bin, "data");
        im.put("data.bin", "data");
        const auto here = [&](std::string text) { return vb::Replace(text, "@", im.img); };
        const std::string sheet = im.put(row.sheet, here(row.text));
        ScriptedDialogs d;
        d.answer(mb::Yes);
        const CheckImageResult r = im.check(sheet, d);
        ASSERT_EQ(d.prompts.size(), 1u);
        const bool refusal = row.findings[0][0] == '!';
        EXPECT_EQ(r.refused, refusal);
        EXPECT_EQ(d.prompts[0].style, refusal ? 48 : 36);
        if (refusal) {
            const std::string key = row.findings[0].substr(1);
            EXPECT_EQ(d.prompts[0].text, key.rfind("msg", 0) == 0 ? test::imageMessage(key) : here(key));
        } else {
            EXPECT_EQ(d.prompts[0].text,
                      question(row.sheet.find(".cue") != std::string::npos ? "msgCueError" : "msgTocError",
                               row.findings,
                               row.sheet.find(".cue") != std::string::npos ? "msgCueFix" : "msgTocFix"));
        }
        EXPECT_EQ(readFile(sheet), here(row.repaired.empty() ? row.text : row.repaired));
        EXPECT_EQ(r.imageDataFile.value_or(""), row.dataFile.empty() ? "" : im.img + "/" + row.dataFile);
        const std::string folder = row.workingFolder == "@" ? im.img : im.app + "/" + row.workingFolder;
        EXPECT_EQ(r.workingFolder.value_or("-"), row.workingFolder == "-" ? "-" : folder);
    }
}

TEST(SheetCheckCue, FindingsComeInTheirFixedOrder) {
    struct Case {
        std::string fileLine;
        std::vector<std::string> findings;
    };
    const Case cases[] = {
        {"FILE \"sheet.bin\" BINARY", {}},
        {"FILE sheet.bin BINARY", {"msgCueNoQuotes"}},
        {"FILE \"\"sheet.bin\"\" BINARY", {"msgCueDoubleQuotes"}},
        {"FILE \"\"\"\"\"sheet.bin\"\"\"\"\" BINARY", {"msgCueDoubleQuotes"}},
        {"FILE \"\"other.bin\"\" BINARY", {"msgCueDoubleQuotes", "msgCueIncorrectBin"}},
        {"FILE other.bin BINARY", {"msgCueIncorrectBin", "msgCueNoQuotes"}},
        {"FILE \"\"other.bin BINARY", {"msgCueDoubleQuotes", "msgCueIncorrectBin", "msgCueNoQuotes"}},
        {"FILE \"sheet.bin BINARY", {"msgCueNoQuotes"}},
        {"FILE \"C:\\images\\sheet.bin\" BINARY", {"msgCueIncorrectBin"}},
        {"file \"sheet.bin\" binary", {}},
        {kBom + "FILE sheet.bin BINARY", {"msgSheetByteOrderMark", "msgCueNoQuotes"}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.fileLine);
        Images im;
        im.put("sheet.bin", "data");
        // Any line end is read; the repair writes CR LF.
        const std::string eol = std::vector<std::string>{"\n", "\r", "\r\n"}[(&c - cases) % 3];
        std::string original = c.fileLine + eol + "REM made elsewhere" + eol + "TRACK 01 AUDIO" + eol;
        std::string cue = im.put("sheet.cue", original);
        ScriptedDialogs d;
        d.answer(mb::Yes);
        CheckImageResult r = im.check(cue, d);
        EXPECT_FALSE(r.refused);
        EXPECT_EQ(r.imageDataFile, im.img + "/sheet.bin");
        if (c.findings.empty()) {
            EXPECT_TRUE(d.prompts.empty());
            EXPECT_EQ(readFile(cue), original);
        } else {
            ASSERT_EQ(d.prompts.size(), 1u);
            EXPECT_EQ(d.prompts[0].text, question("msgCueError", c.findings, "msgCueFix"));
            EXPECT_EQ(readFile(cue), "FILE \"sheet.bin\" BINARY\r\nREM made elsewhere\r\nTRACK 01 AUDIO\r\n");
        }
    }
}

// The repair takes the sheet's place whole (a reader of the old sheet still
// reads the old bytes), through the link that names it, with its permissions;
// names that miss the files beside the sheet are pointed at them, not at a
// file of the same name elsewhere.
TEST(SheetCheckToc, TheRepairReplacesTheSheetThroughItsLink) {
    Images im;
    std::string one = im.put("track01.wav", "one");
    std::string two = im.put("track02.wav", "two");
    fs::create_directories(im.dir.file("elsewhere"));
    std::string decoy = im.dir.file("elsewhere/track02.wav");
    writeFile(decoy, "decoy");
    const std::string text =
        "CD_DA\n\nTRACK AUDIO\nFILE \"C:\\gone\\track01.wav\" 0\n\nTRACK AUDIO\nFILE \"" + decoy + "\" 0\n";
    std::string toc = im.put("audio.toc", text), link = im.img + "/link.toc";
    fs::permissions(toc, fs::perms(0640));
    fs::create_symlink(toc, link);
    std::ifstream before(toc, std::ios::binary);
    ScriptedDialogs d;
    d.answer(mb::Yes);
    CheckImageResult r = im.check(link, d);
    ASSERT_EQ(d.prompts.size(), 1u);
    EXPECT_EQ(d.prompts[0].text, question("msgTocError", {"msgTocIncorrectDat"}, "msgTocFix"));
    EXPECT_EQ(r.imageDataFile, two);
    EXPECT_EQ(readFile(toc), "CD_DA\r\n\r\nTRACK AUDIO\r\nFILE \"" + one +
                                 "\" 0\r\n\r\nTRACK AUDIO\r\nFILE \"" + two + "\" 0\r\n");
    EXPECT_EQ(readFile(decoy), "decoy");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(before), {}), text);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(fs::status(toc).permissions(), fs::perms(0640));
}

TEST(SheetCheckToc, NamesAreReadAgainstTheWorkingFolderAndAFileElsewhereStays) {
    Images im;
    std::string data = im.put("data.bin", "data");
    std::string toc = im.put("image.toc", "CD_ROM\r\nTRACK MODE1\r\nDATAFILE \"data.bin\"\r\n");
    ScriptedDialogs d;
    EXPECT_EQ(im.check(toc, d, true, im.img).imageDataFile, data);

    fs::create_directories(im.dir.file("elsewhere"));
    std::string away = im.dir.file("elsewhere/away.bin");
    writeFile(away, "data");
    const std::string elsewhere = "CD_ROM\nTRACK MODE1\nDATAFILE \"" + away + "\"\n";
    std::string toc2 = im.put("away.toc", elsewhere);
    CheckImageResult r2 = im.check(toc2, d);
    EXPECT_FALSE(r2.refused);
    EXPECT_FALSE(r2.imageDataFile.has_value());
    EXPECT_EQ(readFile(toc2), elsewhere);
    EXPECT_TRUE(d.prompts.empty());
}

// ---- what every check shares ---------------------------------------------

TEST(SheetCheck, NoToTheQuestionLeavesTheSheetByteForByte) {
    Images im;
    im.put("sheet.bin", "data");
    const std::string cueBytes = "FILE other.bin BINARY\n  TRACK 01 MODE1/2352\r  INDEX 01 00:00:00";
    std::string cue = im.put("sheet.cue", cueBytes);
    std::string data = im.put("data.bin", "data");
    const std::string tocBytes = "CD_ROM\n\nTRACK MODE1\nDATAFILE \"\"" + data + "\"\"";
    std::string toc = im.put("image.toc", tocBytes);

    for (const std::string &sheet : {cue, toc}) {
        ScriptedDialogs d;
        d.answer(mb::No);
        CheckImageResult r = im.check(sheet, d);
        EXPECT_TRUE(r.asked);
        EXPECT_FALSE(r.rewritten);
        EXPECT_FALSE(r.refused);
        EXPECT_TRUE(r.imageDataFile.has_value());  // the load goes on
    }
    EXPECT_EQ(readFile(cue), cueBytes);
    EXPECT_EQ(readFile(toc), tocBytes);
}

TEST(SheetCheck, UntickedCheckReadsNothingButAnIsoIsStillItsOwnDataFile) {
    Images im;
    im.put("sheet.bin", "data");
    const std::string bytes = "FILE other.bin BINARY\n";
    std::string cue = im.put("sheet.cue", bytes);
    ScriptedDialogs d;
    CheckImageResult r = im.check(cue, d, false);
    EXPECT_FALSE(r.read);
    EXPECT_TRUE(d.prompts.empty());
    EXPECT_FALSE(r.imageDataFile.has_value());
    EXPECT_FALSE(r.workingFolder.has_value());
    EXPECT_EQ(readFile(cue), bytes);

    for (bool ticked : {false, true}) {
        CheckImageResult iso = im.check(im.img + "/Disc.IsO", d, ticked);
        EXPECT_EQ(iso.imageDataFile, im.img + "/Disc.IsO");
        EXPECT_FALSE(iso.read);
    }
    CheckImageResult other = im.check(im.put("notes.txt", "FILE \"x\""), d, true);
    EXPECT_FALSE(other.read);
    EXPECT_FALSE(other.imageDataFile.has_value());
    EXPECT_TRUE(d.prompts.empty());
}

TEST(SheetCheck, BadSheetsGiveAMessageOrNothingAndAreNeverChangedWithoutYes) {
    Images im;
    im.put("sheet.bin", "data");
    std::mt19937 random(1234);
    std::string binary(64 * 1024, '\0');
    for (auto &c : binary) c = static_cast<char>(random() & 0xFF);

    std::string big = "FILE sheet.bin BINARY\r\n";
    while (big.size() < 50u * 1024 * 1024)
        big += "REM COMMENT padding the sheet out to a size no sheet should have\r\n";

    std::string tracks;
    for (int i = 1; i <= 10000; ++i) tracks += "TRACK " + std::to_string(i) + " MODE1/2048\n";

    const std::pair<std::string, std::string> sheets[] = {
        {"empty", ""},
        {"binary", binary},
        {"fifty megabytes", big},
        {"one line of fifty megabytes", std::string(50u * 1024 * 1024, 'F')},
        {"no quotes and no blanks", "FILE\r\n"},
        {"ten thousand tracks", "FILE \"sheet.bin\" BINARY\n" + tracks},
    };
    for (const auto &[what, bytes] : sheets) {
        SCOPED_TRACE(what);
        for (const std::string ext : {".cue", ".toc"}) {
            std::string sheet = im.put("sheet" + ext, bytes);
            ScriptedDialogs d;
            d.answer(mb::No);
            CheckImageResult r;
            ASSERT_NO_THROW(r = im.check(sheet, d));
            EXPECT_LE(d.prompts.size(), 1u);
            EXPECT_TRUE(readFile(sheet) == bytes);
        }
    }
}

TEST(SheetCheck, ASheetThatIsNoFileRaisesARunTimeError) {
    Images im;
    fs::create_directories(im.img + "/folder.cue");
    ScriptedDialogs d;
    EXPECT_THROW(im.check(im.img + "/folder.cue", d), RuntimeError);
    EXPECT_THROW(im.check(im.img + "/missing.toc", d), RuntimeError);
    EXPECT_TRUE(d.prompts.empty());
}

// ---- checkTOC ------------------------------------------------------------

TEST(CheckTOC, TheLastTrackLineDecidesAndSlashNumbersStandForThemselves) {
    Images im;
    struct Case {
        std::string name, text;
        std::int16_t before, expectField, expectResult;
    };
    const Case cases[] = {
        {"a.cue", "FILE \"a.bin\" BINARY\n  TRACK 01 MODE2/2048\n", 2352, 2048, 2048},
        {"a.cue", "FILE \"a.bin\" BINARY\n  track 01 mode1/2352\n", 2048, 2352, 2352},
        {"a.cue", "TRACK 01 MODE1/2048\nTRACK 02 AUDIO\n", 0, 2352, 2352},
        {"a.cue", "TRACK 01 AUDIO\nTRACK 02 CDI/2336\n", 0, 2336, 2336},
        {"a.toc", "CD_ROM\nTRACK MODE1_RAW RW_RAW\nDATAFILE \"x\"\n", 2048, 2352, 2352},
        {"a.toc", "CD_ROM_XA\nTRACK MODE2_FORM2\nTRACK MODE2_FORM_MIX\n", 0, 2336, 2336},
        {"a.toc", "CD_ROM\nTRACK MODE2_FORM2\nTRACK SOMETHING\n", 0, 2324, 2324},
        {"a.toc", "CD_ROM\n   TRACK   MODE1   \n", 2352, 2048, 2048},
        {"a.toc", "CD_ROM\nTRACK MODE2/2324\n", 0, 2324, 2324},
        // A "/" with no number behind it gives 0, and 0 is answered as 2048.
        {"a.toc", "CD_ROM\nTRACK ODD/\n", 2352, 0, 2048},
        // No TRACK line: the block size of the sheet before, or 2048 at first.
        {"a.toc", "CD_ROM\n", 2336, 2336, 2336},
        {"a.toc", "", 0, 0, 2048},
        {"a.cue", "FILE \"a.bin\" BINARY\nTRACK 01\n", 2324, 2324, 2324},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text);
        std::string sheet = im.put(c.name, c.text);
        std::int16_t field = c.before;
        EXPECT_EQ(checkTOC(sheet, "", field, im.img), c.expectResult);
        EXPECT_EQ(field, c.expectField);
        EXPECT_EQ(readFile(sheet), c.text);
    }
}

TEST(CheckTOC, TenThousandTrackLinesAndAnOverflowingNumber) {
    Images im;
    std::string text = "CD_ROM\n";
    for (int i = 0; i < 10000; ++i) text += (i % 2 ? "TRACK MODE1\n" : "TRACK AUDIO\n");
    text += "TRACK MODE2_FORM2\n";
    std::string sheet = im.put("many.toc", text);
    std::int16_t field = 0;
    EXPECT_EQ(checkTOC(sheet, "", field, im.img), 2324);

    std::string overflow = im.put("overflow.toc", "CD_ROM\nTRACK MODE1/70000\n");
    std::int16_t kept = 2048;
    try {
        checkTOC(overflow, "", kept, im.img);
        FAIL() << "no error";
    } catch (const RuntimeError &e) {
        EXPECT_EQ(e.number(), 6);
    }
    EXPECT_EQ(readFile(overflow), "CD_ROM\nTRACK MODE1/70000\n");
}

TEST(CheckTOC, DeleteRemovesTheFilesFoundAsNamedAndNothingElse) {
    Images im;
    std::string a = im.put("a.wav", "a");
    std::string b = im.put("b.wav", "b");
    std::string beside = im.put("c.wav", "c");
    std::string keep = im.put("keep.wav", "keep");
    fs::create_directories(im.img + "/folder");
    const std::string text = "CD_DA\nTRACK AUDIO\nFILE \"" + a + "\" 0\nTRACK AUDIO\nDATAFILE \"" + b +
                             "\"\nTRACK AUDIO\nFILE \"/gone/c.wav\" 0\nFILE \"" + im.img +
                             "/folder\" 0\nFILE \"/dev/null\" 0\n";
    std::string toc = im.put("audio.toc", text);
    std::int16_t field = 0;
    EXPECT_EQ(checkTOC(toc, kTocDelete, field, im.img), 2352);
    EXPECT_FALSE(fs::exists(a));
    EXPECT_FALSE(fs::exists(b));
    EXPECT_TRUE(fs::exists(beside));  // not as named: only pointed at, never deleted
    EXPECT_TRUE(fs::exists(keep));
    EXPECT_TRUE(fs::is_directory(im.img + "/folder"));
    EXPECT_TRUE(fs::exists("/dev/null"));
    EXPECT_EQ(readFile(toc), text);
}

TEST(CheckTOC, RepairPointsMissingFilesAtTheOnesBesideTheSheet) {
    Images im;
    std::string one = im.put("01.wav", "1");
    std::string two = im.put("02.wav", "2");
    std::string away = im.dir.file("away.wav");
    writeFile(away, "away");
    const std::string text =
        "CD_DA\n// old folder\nTRACK AUDIO\nFILE \"/old/project/01.wav\" 0\r\n"
        "TRACK AUDIO\r\nFILE \"C:\\old\\02.wav\" 0 00:04:00\rTRACK AUDIO\nFILE \"" +
        away + "\" 0\nTRACK AUDIO\nFILE \"/old/project/03.wav\" 0\n";
    std::string toc = im.put("project.toc", text);
    std::int16_t field = 0;

    checkTOC(toc, "", field, im.img);
    EXPECT_EQ(readFile(toc), text);  // only "REPAIR" writes

    checkTOC(toc, kTocRepair, field, im.img);
    EXPECT_EQ(readFile(toc), "CD_DA\r\n// old folder\r\nTRACK AUDIO\r\nFILE \"" + one +
                                 "\" 0\r\nTRACK AUDIO\r\nFILE \"" + two +
                                 "\" 0 00:04:00\r\nTRACK AUDIO\r\nFILE \"" + away +
                                 "\" 0\r\nTRACK AUDIO\r\nFILE \"/old/project/03.wav\" 0\r\n");
    EXPECT_EQ(readFile(one), "1");
}
