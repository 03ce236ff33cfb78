// checkImage and checkTOC on real sheets in temporary folders: what they find,
// what they refuse, what they ask, and that a sheet changes only on Yes.
#include "discops/SheetCheck.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "exec/EnglishTexts.h"
#include "platform/Dialogs.h"
#include "support/RuntimeError.h"
#include "support/mdlFunctions.h"
#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::discops;
using namespace saltmarrow::test;
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
        return checkImage({sheet, ticked, app, workingFolder}, dialogs, test::englishText);
    }
};

std::string question(const std::string &header, const std::vector<std::string> &findings,
                     const std::string &fix) {
    std::string report;
    for (const auto &f : findings) report += "\r\n" + test::englishText(f);
    return test::englishText(header) + "\r\n" + report + "\r\n\r\n" + test::englishText(fix);
}

}  // namespace

// What the check finds, asks, refuses and repairs, sheet by sheet. The sheet
// stands in img/ beside "sheet.bin" and "data.bin", and elsewhere/away.bin
// beside img/; "@" in a text is img/.
TEST(SheetCheck, WhatIsFoundAskedAndRepaired) {
    struct Row {
        const char *what;
        std::string sheet, text = {};
        std::vector<std::string> findings = {};  // of the question; "!text" is a refusal box; none: no box
        std::string repaired = {};               // empty: the sheet stays as it was
        std::string dataFile = {};               // in img/; empty: none recorded
        std::string workingFolder = "-";  // where names are read from now: "@", below app/; "-" unchanged
        std::string bin = "sheet.bin";    // the data file of the sheet's name, as it stands on disk
        int answer = mb::Yes;
        bool ticked = true;
        bool fromImageFolder = false;  // names are read against img/, not the tools' folder
    };
    const std::string fix = "FILE \"sheet.bin\" BINARY\r\nTRACK 01 MODE1/2352\r\n";
    const std::string toc = "CD_ROM\nTRACK MODE1\n",
                      fixed = "CD_ROM\r\nTRACK MODE1\r\nDATAFILE \"@/data.bin\"\r\n";
    const std::string one = "FILE \"sheet.bin\" BINARY\nTRACK 01 MODE1/2352\n";
    // Any line end is read; the repair writes CR LF.
    const auto cue = [](const std::string &file, const char *eol) {
        return file + eol + "REM made elsewhere" + eol + "TRACK 01 AUDIO" + eol;
    };
    const std::string cueFixed = cue("FILE \"sheet.bin\" BINARY", "\r\n");
    // clang-format off
    const Row rows[] = {
        {"another bin beside the sheet's own", "sheet.cue", vb::Replace(one, "sheet", "other"),
         {"msgCueIncorrectBin"}, fix, "sheet.bin", "@"},
        {"a bin named in another case", "sheet.cue", one,
         {"msgCueIncorrectBin"}, vb::Replace(fix, "sheet.bin", "SHEET.BIN"), "SHEET.BIN", "@", "SHEET.BIN"},
        {"two files", "sheet.cue", one + "FILE \"sheet.bin\" BINARY\n", {"!msgCUEOneFile"}, "", "sheet.bin"},
        {"no bin of the sheet's name", "lonely.cue", one, {"!msgCueSameFolder"}, "", ""},
        // The findings of a cue sheet come in their fixed order.
        {"a good cue", "sheet.cue", cue("FILE \"sheet.bin\" BINARY", "\n"), {}, "", "sheet.bin", "@"},
        {"no quotes", "sheet.cue", cue("FILE sheet.bin BINARY", "\r"), {"msgCueNoQuotes"}, cueFixed,
         "sheet.bin", "@"},
        {"quotes doubled twice", "sheet.cue", cue("FILE \"\"\"\"\"sheet.bin\"\"\"\"\" BINARY", "\n"),
         {"msgCueDoubleQuotes"}, cueFixed, "sheet.bin", "@"},
        {"all three, another bin without its quotes", "sheet.cue", cue("FILE \"\"other.bin BINARY", "\n"),
         {"msgCueDoubleQuotes", "msgCueIncorrectBin", "msgCueNoQuotes"}, cueFixed, "sheet.bin", "@"},
        {"a cue with an opening quote only", "sheet.cue", cue("FILE \"sheet.bin BINARY", "\r"),
         {"msgCueNoQuotes"}, cueFixed, "sheet.bin", "@"},
        {"a Windows path", "sheet.cue", cue("FILE \"C:\\images\\sheet.bin\" BINARY", "\r\n"),
         {"msgCueIncorrectBin"}, cueFixed, "sheet.bin", "@"},
        {"keywords in lower case", "sheet.cue", cue("file \"sheet.bin\" binary", "\n"), {}, "", "sheet.bin",
         "@"},
        {"a byte order mark", "sheet.cue", cue(kBom + "FILE sheet.bin BINARY", "\r"),
         {"msgSheetByteOrderMark", "msgCueNoQuotes"}, cueFixed, "sheet.bin", "@"},
        // Toc sheets.
        {"a byte order mark and doubled quotes", "image.toc",
         kBom + "CD_ROM\r\n\r\nTRACK MODE1\r\nDATAFILE \"\"@/data.bin\"\"\r\n",
         {"msgSheetByteOrderMark", "msgTocDoubleQuotes"},
         "CD_ROM\r\n\r\nTRACK MODE1\r\nDATAFILE \"@/data.bin\"\r\n", "data.bin", "external"},
        {"a relative name misses its file from the tools folder", "image.toc",
         toc + "DATAFILE \"data.bin\"\n", {"msgTocIncorrectDat"}, fixed, "data.bin", "external"},
        {.what = "a relative name read against the image folder", .sheet = "image.toc",
         .text = toc + "DATAFILE \"data.bin\"\n", .dataFile = "data.bin", .workingFolder = "external",
         .fromImageFolder = true},
        {"a whole path without its closing quote", "image.toc", toc + "DATAFILE \"@/data.bin\n",
         {"msgTocIncorrectDat"}, fixed, "data.bin", "external"},
        {"a FILE without quotes, with its start and length", "image.toc", toc + "  FILE data.bin 0 1000\n",
         {"msgTocIncorrectDat"}, "CD_ROM\r\nTRACK MODE1\r\n  FILE \"@/data.bin\" 0 1000\r\n", "data.bin",
         "external"},
        {"a file elsewhere stays", "away.toc", toc + "DATAFILE \"@/../elsewhere/away.bin\"\n", {}, "", "",
         "external"},
        {"a file found nowhere", "image.toc", toc + "DATAFILE \"/no/such/place/lost.bin\"\n",
         {"!lost.bin could not be found!"}, "", ""},
        {"a device", "image.toc", toc + "DATAFILE \"/dev/null\"\n", {"!null could not be found!"}, "", ""},
        {"a folder", "image.toc", toc + "DATAFILE \"/tmp\"\n", {"!tmp could not be found!"}, "", ""},
        // A name with no file part: the statement is named.
        {"no name at all", "image.toc", toc + "DATAFILE \"\"\n", {"!DATAFILE \" could not be found!"}, "",
         ""},
        // No leaves the sheet byte for byte, and the load goes on.
        {"No to a cue", "sheet.cue", "FILE other.bin BINARY\n  TRACK 01 MODE1/2352\r  INDEX 01 00:00:00",
         {"msgCueIncorrectBin", "msgCueNoQuotes"}, "", "sheet.bin", "@", "sheet.bin", mb::No},
        {"No to a toc", "image.toc", "CD_ROM\n\nTRACK MODE1\nDATAFILE \"\"@/data.bin\"\"",
         {"msgTocDoubleQuotes"}, "", "data.bin", "external", "sheet.bin", mb::No},
        // Unticked, nothing is read; an ISO is its own data file all the same.
        {.what = "unticked", .sheet = "sheet.cue", .text = "FILE other.bin BINARY\n", .ticked = false},
        {"an ISO", "Disc.IsO", "", {}, "", "Disc.IsO"},
        {.what = "an ISO, unticked", .sheet = "Disc.IsO", .dataFile = "Disc.IsO", .ticked = false},
        {"no image kind", "notes.txt", "FILE \"x\"", {}, "", ""},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        Images im;
        im.put(row.bin, "data");
        im.put("data.bin", "data");
        fs::create_directories(im.dir.file("elsewhere"));
        writeFile(im.dir.file("elsewhere/away.bin"), "data");
        const auto here = [&](std::string text) { return vb::Replace(text, "@", im.img); };
        const std::string sheet = im.put(row.sheet, here(row.text));
        ScriptedDialogs d;
        d.answer(row.answer);
        const CheckImageResult r = im.check(sheet, d, row.ticked, row.fromImageFolder ? im.img : "");
        ASSERT_EQ(d.prompts.size(), row.findings.empty() ? 0u : 1u);
        const bool refusal = !row.findings.empty() && row.findings[0][0] == '!';
        const bool isCue = row.sheet.find(".cue") != std::string::npos;
        EXPECT_EQ(r.refused, refusal);
        if (refusal) {
            const std::string key = row.findings[0].substr(1);
            EXPECT_EQ(d.prompts[0].text, key.rfind("msg", 0) == 0 ? test::englishText(key) : here(key));
            EXPECT_EQ(d.prompts[0].style, mb::Exclamation);
        } else if (!row.findings.empty()) {
            EXPECT_EQ(d.prompts[0].text, question(isCue ? "msgCueError" : "msgTocError", row.findings,
                                                  isCue ? "msgCueFix" : "msgTocFix"));
            EXPECT_EQ(d.prompts[0].style, mb::Question | mb::YesNo);
        }
        EXPECT_EQ(readFile(sheet), here(row.repaired.empty() ? row.text : row.repaired));
        EXPECT_EQ(r.imageDataFile.value_or(""), row.dataFile.empty() ? "" : im.img + "/" + row.dataFile);
        const std::string folder = row.workingFolder == "@" ? im.img : im.app + "/" + row.workingFolder;
        EXPECT_EQ(r.workingFolder.value_or("-"), row.workingFolder == "-" ? "-" : folder);
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

TEST(CheckTOC, ABlockSizeBeyondSixteenBitsOverflows) {
    Images im;
    std::int16_t field = 2048;
    try {
        checkTOC(im.put("overflow.toc", "CD_ROM\nTRACK MODE1/70000\n"), "", field, im.img);
        ADD_FAILURE() << "no error";
    } catch (const RuntimeError &e) {
        EXPECT_EQ(e.number(), err::Overflow);
    }
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
