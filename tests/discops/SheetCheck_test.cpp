// checkImage and checkTOC on real sheets in temporary folders: what they find,
// what they refuse, what they ask, and that a sheet changes only on Yes.
#include "discops/SheetCheck.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "discops/ImageTestSupport.h"
#include "platform/Dialogs.h"
#include "support/RuntimeError.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::discops;
using saltmarrow::platform::ScriptedDialogs;
using saltmarrow::test::readFile;
using saltmarrow::test::TempDir;
using saltmarrow::test::writeFile;
namespace fs = std::filesystem;
namespace mb = saltmarrow::platform::mb;

namespace {

const std::string CRLF = "\r\n";
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
    for (const auto &f : findings) report += CRLF + test::imageMessage(f);
    return test::imageMessage(header) + CRLF + report + CRLF + CRLF + test::imageMessage(fix);
}

std::string cueQuestion(const std::vector<std::string> &findings) {
    return question("msgCueError", findings, "msgCueFix");
}
std::string tocQuestion(const std::vector<std::string> &findings) {
    return question("msgTocError", findings, "msgTocFix");
}

}  // namespace

// ---- cue sheets ----------------------------------------------------------

TEST(SheetCheckCue, OtherBinBesideSheetBinIsIncorrectAndRepairNamesTheSheetsOwnBin) {
    Images im;
    im.put("sheet.bin", std::string(2352, 'x'));
    im.put("other.bin", std::string(2352, 'y'));
    std::string cue = im.put(
        "sheet.cue", "FILE \"other.bin\" BINARY\r\n  TRACK 01 MODE1/2352\r\n    INDEX 01 00:00:00\r\n");

    ScriptedDialogs d;
    d.answer(mb::Yes);
    CheckImageResult r = im.check(cue, d);

    ASSERT_EQ(d.prompts.size(), 1u);
    EXPECT_EQ(d.prompts[0].style, 36);
    EXPECT_EQ(d.prompts[0].text, cueQuestion({"msgCueIncorrectBin"}));
    EXPECT_TRUE(r.rewritten);
    EXPECT_EQ(r.imageDataFile, im.img + "/sheet.bin");
    EXPECT_EQ(r.workingFolder, im.img);
    EXPECT_EQ(readFile(cue),
              "FILE \"sheet.bin\" BINARY\r\n  TRACK 01 MODE1/2352\r\n    INDEX 01 00:00:00\r\n");
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
        {"file \"" + std::string("sheet.bin") + "\" binary", {}},
        {kBom + "FILE sheet.bin BINARY", {"msgSheetByteOrderMark", "msgCueNoQuotes"}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.fileLine);
        Images im;
        im.put("sheet.bin", "data");
        std::string original = c.fileLine + "\r\nTRACK 01 AUDIO\r\nINDEX 01 00:00:00\r\n";
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
            EXPECT_EQ(d.prompts[0].text, cueQuestion(c.findings));
            EXPECT_EQ(readFile(cue), "FILE \"sheet.bin\" BINARY\r\nTRACK 01 AUDIO\r\nINDEX 01 00:00:00\r\n");
        }
    }
}

TEST(SheetCheckCue, RefusalsStopTheCheckAndLeaveTheSheetAlone) {
    Images im;
    im.put("sheet.bin", "data");
    const std::string twoFiles =
        "FILE \"sheet.bin\" BINARY\r\nTRACK 01 MODE1/2352\r\nFILE \"sheet.bin\" BINARY\r\nTRACK 02 AUDIO\r\n";
    std::string cue = im.put("sheet.cue", twoFiles);
    ScriptedDialogs d;
    d.answer(mb::Yes);
    CheckImageResult r = im.check(cue, d);
    EXPECT_TRUE(r.refused);
    ASSERT_EQ(d.prompts.size(), 1u);
    EXPECT_EQ(d.prompts[0].text, test::imageMessage("msgCUEOneFile"));
    EXPECT_EQ(d.prompts[0].style, 48);
    EXPECT_FALSE(r.workingFolder.has_value());
    EXPECT_EQ(readFile(cue), twoFiles);

    // The data file must bear the sheet's own name, whatever the sheet names.
    Images other;
    other.put("other.bin", "data");
    const std::string namesOther = "FILE \"other.bin\" BINARY\nTRACK 01 MODE1/2352\n";
    std::string lonely = other.put("lonely.cue", namesOther);
    ScriptedDialogs d2;
    d2.answer(mb::Yes);
    CheckImageResult r2 = other.check(lonely, d2);
    EXPECT_TRUE(r2.refused);
    EXPECT_FALSE(r2.imageDataFile.has_value());
    ASSERT_EQ(d2.prompts.size(), 1u);
    EXPECT_EQ(d2.prompts[0].text, test::imageMessage("msgCueSameFolder"));
    EXPECT_EQ(d2.prompts[0].style, 48);
    EXPECT_EQ(readFile(lonely), namesOther);
}

TEST(SheetCheckCue, BinNamedInAnotherCaseIsTakenAsItStandsOnDisk) {
    Images im;
    im.put("SHEET.BIN", "data");
    std::string cue = im.put("sheet.cue", "FILE \"sheet.bin\" BINARY\r\nTRACK 01 MODE1/2352\r\n");
    ScriptedDialogs d;
    d.answer(mb::Yes);
    CheckImageResult r = im.check(cue, d);
    EXPECT_EQ(r.imageDataFile, im.img + "/SHEET.BIN");
    ASSERT_EQ(d.prompts.size(), 1u);
    EXPECT_EQ(d.prompts[0].text, cueQuestion({"msgCueIncorrectBin"}));
    EXPECT_EQ(readFile(cue), "FILE \"SHEET.BIN\" BINARY\r\nTRACK 01 MODE1/2352\r\n");
}

TEST(SheetCheckCue, AnyLineEndIsReadAndTheRepairWritesCrLf) {
    for (const std::string eol : {"\n", "\r", "\r\n"}) {
        SCOPED_TRACE(eol == "\n" ? "LF" : eol == "\r" ? "CR" : "CRLF");
        Images im;
        im.put("sheet.bin", "data");
        std::string cue =
            im.put("sheet.cue", "REM made elsewhere" + eol + "FILE sheet.bin BINARY" + eol +
                                    "  TRACK 01 MODE1/2352" + eol + "    INDEX 01 00:00:00" + eol);
        ScriptedDialogs d;
        d.answer(mb::Yes);
        CheckImageResult r = im.check(cue, d);
        ASSERT_EQ(d.prompts.size(), 1u);
        EXPECT_EQ(d.prompts[0].text, cueQuestion({"msgCueNoQuotes"}));
        EXPECT_EQ(readFile(cue),
                  "REM made elsewhere\r\nFILE \"sheet.bin\" BINARY\r\n  TRACK 01 MODE1/2352\r\n    INDEX 01 "
                  "00:00:00\r\n");
    }
}

// ---- toc sheets ----------------------------------------------------------

// The repair takes the sheet's place whole (a reader of the old sheet still
// reads the old bytes), through the link that names it, with its permissions.
TEST(SheetCheckToc, AByteOrderMarkAndDoubledQuotesAreFlaggedAndTheRepairHasNeither) {
    Images im;
    std::string data = im.put("data.bin", "data");
    const std::string text = kBom + "CD_ROM\r\n\r\nTRACK MODE1\r\nDATAFILE \"\"" + data + "\"\"\r\n";
    std::string toc = im.put("image.toc", text), link = im.img + "/link.toc";
    fs::permissions(toc, fs::perms(0640));
    fs::create_symlink(toc, link);
    std::ifstream before(toc, std::ios::binary);
    ScriptedDialogs d;
    d.answer(mb::Yes);
    CheckImageResult r = im.check(link, d);
    ASSERT_EQ(d.prompts.size(), 1u);
    EXPECT_EQ(d.prompts[0].style, 36);
    EXPECT_EQ(d.prompts[0].text, tocQuestion({"msgSheetByteOrderMark", "msgTocDoubleQuotes"}));
    EXPECT_EQ(r.imageDataFile, data);
    EXPECT_EQ(r.workingFolder, im.app + "/external");
    EXPECT_EQ(readFile(toc), "CD_ROM\r\n\r\nTRACK MODE1\r\nDATAFILE \"" + data + "\"\r\n");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(before), {}), text);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(fs::status(toc).permissions(), fs::perms(0640));
}

TEST(SheetCheckToc, NamesThatMissTheFilesBesideTheSheetArePointedAtThem) {
    Images im;
    std::string one = im.put("track01.wav", "one");
    std::string two = im.put("track02.wav", "two");
    fs::create_directories(im.dir.file("elsewhere"));
    std::string decoy = im.dir.file("elsewhere/track02.wav");
    writeFile(decoy, "decoy");
    // A bare LF sheet, written on Windows with a folder that is gone, and one
    // name that exists elsewhere: the file beside the sheet wins.
    std::string toc =
        im.put("audio.toc", "CD_DA\n\nTRACK AUDIO\nFILE \"C:\\gone\\track01.wav\" 0\n\nTRACK AUDIO\nFILE \"" +
                                decoy + "\" 0\n");
    ScriptedDialogs d;
    d.answer(mb::Yes);
    CheckImageResult r = im.check(toc, d);
    ASSERT_EQ(d.prompts.size(), 1u);
    EXPECT_EQ(d.prompts[0].text, tocQuestion({"msgTocIncorrectDat"}));
    EXPECT_EQ(r.imageDataFile, two);
    EXPECT_EQ(readFile(toc), "CD_DA\r\n\r\nTRACK AUDIO\r\nFILE \"" + one +
                                 "\" 0\r\n\r\nTRACK AUDIO\r\nFILE \"" + two + "\" 0\r\n");
    EXPECT_EQ(readFile(decoy), "decoy");
}

TEST(SheetCheckToc, RelativeNamesAreReadAgainstTheWorkingFolder) {
    Images im;
    std::string data = im.put("data.bin", "data");
    const std::string original = "CD_ROM\r\nTRACK MODE1\r\nDATAFILE \"data.bin\"\r\n";
    std::string toc = im.put("image.toc", original);

    ScriptedDialogs fromSheetFolder;
    CheckImageResult same = im.check(toc, fromSheetFolder, true, im.img);
    EXPECT_TRUE(fromSheetFolder.prompts.empty());
    EXPECT_EQ(same.imageDataFile, data);

    // From <app>/external, where cdrdao runs, the name misses its file.
    ScriptedDialogs fromExternal;
    fromExternal.answer(mb::Yes);
    im.check(toc, fromExternal);
    ASSERT_EQ(fromExternal.prompts.size(), 1u);
    EXPECT_EQ(fromExternal.prompts[0].text, tocQuestion({"msgTocIncorrectDat"}));
    EXPECT_EQ(readFile(toc), "CD_ROM\r\nTRACK MODE1\r\nDATAFILE \"" + data + "\"\r\n");
}

TEST(SheetCheckToc, AFileFoundNowhereIsRefusedAndAFileElsewhereStays) {
    Images im;
    const std::string missing = "CD_ROM\r\nTRACK MODE1\r\nDATAFILE \"/no/such/place/lost.bin\"\r\n";
    std::string toc = im.put("image.toc", missing);
    ScriptedDialogs d;
    d.answer(mb::Yes);
    CheckImageResult r = im.check(toc, d);
    EXPECT_TRUE(r.refused);
    ASSERT_EQ(d.prompts.size(), 1u);
    EXPECT_EQ(d.prompts[0].text, "lost.bin could not be found!");
    EXPECT_EQ(d.prompts[0].style, 48);
    EXPECT_FALSE(r.workingFolder.has_value());
    EXPECT_EQ(readFile(toc), missing);

    fs::create_directories(im.dir.file("elsewhere"));
    std::string away = im.dir.file("elsewhere/away.bin");
    writeFile(away, "data");
    const std::string elsewhere = "CD_ROM\nTRACK MODE1\nDATAFILE \"" + away + "\"\n";
    std::string toc2 = im.put("away.toc", elsewhere);
    ScriptedDialogs d2;
    CheckImageResult r2 = im.check(toc2, d2);
    EXPECT_FALSE(r2.refused);
    EXPECT_TRUE(d2.prompts.empty());
    EXPECT_FALSE(r2.imageDataFile.has_value());
    EXPECT_EQ(readFile(toc2), elsewhere);
}

TEST(SheetCheckToc, FoldersAndDevicesAreNoDataFiles) {
    // The box names the file, or the whole statement where there is no file name.
    const std::pair<std::string, std::string> cases[] = {
        {"/dev/null", "null"}, {"/tmp", "tmp"}, {"/", "DATAFILE \"/\""}, {"", "DATAFILE \""}};
    for (const auto &[named, shown] : cases) {
        SCOPED_TRACE(named);
        Images im;
        const std::string sheet = "CD_ROM\nTRACK MODE1\nDATAFILE \"" + named + "\"\n";
        std::string toc = im.put("image.toc", sheet);
        ScriptedDialogs d;
        d.answer(mb::Yes);
        CheckImageResult r = im.check(toc, d);
        EXPECT_TRUE(r.refused);
        ASSERT_EQ(d.prompts.size(), 1u);
        EXPECT_EQ(d.prompts[0].style, 48);
        EXPECT_EQ(d.prompts[0].text, shown + " could not be found!");
        EXPECT_EQ(readFile(toc), sheet);
    }
}

TEST(SheetCheckToc, NamesWithoutTheirQuotesAreQuotedByTheRepair) {
    struct Case {
        std::string line, repaired;
    };
    Images im;
    std::string data = im.put("data.bin", "data");
    const Case cases[] = {
        {"DATAFILE data.bin", "DATAFILE \"" + data + "\""},
        {"  FILE data.bin 0 1000", "  FILE \"" + data + "\" 0 1000"},
        {"DATAFILE \"data.bin", "DATAFILE \"" + data + "\""},
        {"DATAFILE \"" + data, "DATAFILE \"" + data + "\""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.line);
        std::string toc = im.put("image.toc", "CD_ROM\nTRACK MODE1\n" + c.line + "\n");
        ScriptedDialogs d;
        d.answer(mb::Yes);
        CheckImageResult r = im.check(toc, d);
        EXPECT_EQ(r.imageDataFile, data);
        ASSERT_EQ(d.prompts.size(), 1u);
        EXPECT_EQ(d.prompts[0].text, tocQuestion({"msgTocIncorrectDat"}));
        EXPECT_EQ(readFile(toc), "CD_ROM\r\nTRACK MODE1\r\n" + c.repaired + "\r\n");
    }
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
