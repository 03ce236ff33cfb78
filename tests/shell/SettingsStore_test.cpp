#include "shell/SettingsStore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "support/RuntimeError.h"
#include "support/mdlFunctions.h"
#include "testlib/TestSupport.h"

namespace saltmarrow {
namespace {

using test::readFile;
using test::TempDir;
using test::writeFile;
namespace fs = std::filesystem;

DeviceTable twoDrives() {
    DeviceTable t;
    DeviceInfo a;
    a.DeviceName = "PLEXTOR, DVDR PX-716A";
    a.ASPIDeviceID = "1,0,0";
    a.SPTIDeviceID = "0,0,0";
    a.ASPIFullName = "1,0,0: PLEXTOR, DVDR PX-716A";
    a.SPTIFullName = "0,0,0: PLEXTOR, DVDR PX-716A";
    a.Driver = "generic-mmc";
    a.DriverOptions = "0";
    a.isWriter = true;
    t.Add("1", a);
    DeviceInfo b;
    b.DeviceName = "HL-DT-ST, DVD-ROM GDR8163B";
    b.ASPIDeviceID = "1,1,0";
    b.SPTIDeviceID = "0,1,0";
    b.ASPIFullName = "1,1,0: HL-DT-ST, DVD-ROM GDR8163B";
    b.SPTIFullName = "0,1,0: HL-DT-ST, DVD-ROM GDR8163B";
    t.Add("2", b);
    return t;
}

// A value of the key's form that differs from the default.
std::string otherValue(const SettingRow &row, std::size_t n) {
    switch (row.form) {
        case SettingForm::Int:
            return std::to_string(100 + n);
        case SettingForm::Bool:
            return row.defaultValue == "True" ? "False" : "True";
        case SettingForm::Real:
            return "11.5";
        default:
            return "value " + std::to_string(n) + " of " + std::string(row.key) + " = with C:/x|y";
    }
}

TEST(SettingsStore, EveryKeyTravelsThroughTheFileAndBack) {
    TempDir dir;
    const std::string path = settingsPath(dir.path());
    Settings out;
    std::size_t n = 0;
    for (const SettingRow &row : kSettingsTable)
        if (row.form != SettingForm::Fields) out.setText(row.key, otherValue(row, n++));
    DeviceTable devices = twoDrives();
    devices.item(0).ReaderOptions = "1,0,1,0";
    devices.item(0).WriterOptions = "0,1,1,0,0,1,0";
    devices.item(1).Driver = "generic-mmc-raw";
    devices.item(1).DriverOptions = "20";
    std::optional<EncoderTable> encoders = defaultEncoderTable();
    encoders->rows.push_back({"Opus", "opusenc", "%in %out", "--title %4", "opus"});

    saveSettings(path, true, out, devices, encoders);

    Settings in;
    DeviceTable scanned = twoDrives();  // as a fresh scan finds them: no options yet
    std::optional<EncoderTable> loadedEncoders = defaultEncoderTable();
    LoadContext context{&scanned, {}};
    LoadResult r = loadSettings(path, in, loadedEncoders, context);
    EXPECT_TRUE(r.fileFound);
    for (const SettingRow &row : kSettingsTable) {
        if (row.form == SettingForm::Fields) continue;
        EXPECT_EQ(in.text(row.key), out.text(row.key)) << row.key;
    }
    for (std::size_t i = 0; i < devices.Count(); ++i) {
        EXPECT_EQ(scanned.item(i).Driver, devices.item(i).Driver);
        EXPECT_EQ(scanned.item(i).DriverOptions, devices.item(i).DriverOptions);
        EXPECT_EQ(scanned.item(i).isWriter, devices.item(i).isWriter);
        EXPECT_EQ(scanned.item(i).ReaderOptions, devices.item(i).ReaderOptions);
        EXPECT_EQ(scanned.item(i).WriterOptions, devices.item(i).WriterOptions);
    }
    ASSERT_TRUE(loadedEncoders);
    EXPECT_EQ(loadedEncoders->rows, encoders->rows);

    // Writing what was read gives the same bytes again.
    EXPECT_EQ(composeSettings(in, scanned, loadedEncoders), readFile(path));
}

TEST(SettingsStore, FileLayoutFollowsTheTable) {
    Settings s;
    s.setText("WriterDevice", "1");
    s.setText("ReaderDevice", "2");
    std::string file = composeSettings(s, twoDrives(), defaultEncoderTable());

    EXPECT_EQ(vb::Replace(file, "\r\n", ""), vb::Replace(vb::Replace(file, "\r\n", ""), "\n", ""))
        << "CR LF everywhere, never a bare LF";

    EXPECT_EQ(file.substr(0, 36), "[Main Settings]\r\nCheck Cue Files=0\r\n");
    EXPECT_NE(file.find("\r\nCommandLog Size=9\r\n"), std::string::npos);
    EXPECT_NE(file.find("\r\nUseDriverTable=True\r\nCommandLog Font="), std::string::npos);
    EXPECT_NE(file.find("Minimize To Tray=0\r\n\r\n[Device Settings]\r\nWriterDevice=1\r\nReaderDevice=2\r\n"
                        "Device=1|PLEXTOR, DVDR PX-716A|generic-mmc|0|True||\r\n"
                        "Device=2|HL-DT-ST, DVD-ROM GDR8163B|||False||\r\n\r\n[Advanced Settings]\r\n"),
              std::string::npos);
    EXPECT_NE(
        file.find("\r\nEncoderSettings=Wave||||wav\r\nEncoderSettings=Lame|lame|--alt-preset standard -Y "
                  "%in %out|--tl %2 --tn %3 --tt %4 --ta %5 --add-id3v2|mp3\r\n"),
        std::string::npos);
    EXPECT_EQ(file.substr(file.size() - 14), "UseEncoder=0\r\n");

    // A blank line before each section but the first.
    for (const char *header : {"[Device Settings]", "[Advanced Settings]", "[Audio CD]", "[Data CD]",
                               "[Data DVD]", "[Freedb Settings]", "[Encoder Settings]"})
        EXPECT_NE(file.find("\r\n\r\n" + std::string(header) + "\r\n"), std::string::npos) << header;

    // No encoder table, no section; no scan, no device lines and empty selections.
    file = composeSettings(Settings{}, DeviceTable{}, std::nullopt);
    EXPECT_EQ(file.find("[Encoder Settings]"), std::string::npos);
    EXPECT_EQ(file.find("\nDevice="), std::string::npos);
    EXPECT_NE(file.find("\r\nWriterDevice=\r\nReaderDevice=\r\n\r\n[Advanced Settings]"), std::string::npos);
}

TEST(SettingsStore, DefaultsOfAFreshStart) {
    TempDir dir;
    Settings s;
    s.setText("Language", "German");
    std::optional<EncoderTable> encoders = defaultEncoderTable();
    LoadResult r = loadSettings(dir.file("saltmarrow.ini"), s, encoders, {});
    EXPECT_FALSE(r.fileFound);
    EXPECT_EQ(s.text("Language"), "German");  // an absent file leaves everything as it was

    Settings d;
    EXPECT_EQ(d.text("Language"), "");  // empty: the system's language
    EXPECT_EQ(d.real("CommandLog Size"), 9);
    EXPECT_TRUE(d.boolean("UseDriverTable"));
    EXPECT_EQ(d.integer("PurgeLog"), 1);
    EXPECT_TRUE(fs::path(d.text("TempFolder")).is_absolute());
    EXPECT_NE(d.text("TempFolder"), "/tmp");  // shutdown may delete it with all it holds

    EXPECT_EQ(defaultEncoderTable().at(EncoderTable::Program, 2), "oggenc");
}

TEST(SettingsStore, LinesAreReadAsTheFileHasThem) {
    TempDir dir;
    const std::string path = dir.file("saltmarrow.ini");
    writeFile(path,
              "CDTextFilter=%4 = %2\r\n"  // only the first "=" splits
              "MRUData=/first\n"
              "MRUData=/second\r"    // the last value wins; LF and lone CR end lines too
              "language=German\r\n"  // keys are case-sensitive
              "Language=French\r\n"
              "MRURead=  padded  \r\n"  // no trimming
              "UseProDVD=true\r\n"
              "Always on Top=-1\r\n"
              "Unknown Key=1\r\n"
              "[Main Settings]\r\n"
              "no equals sign here\r\n"
              "Check Cue Files=1");  // no line end at the end
    Settings s;
    std::optional<EncoderTable> encoders = defaultEncoderTable();
    loadSettings(path, s, encoders, {});
    EXPECT_EQ(s.text("CDTextFilter"), "%4 = %2");
    EXPECT_EQ(s.text("MRUData"), "/second");
    EXPECT_EQ(s.text("Language"), "French");
    EXPECT_EQ(s.text("MRURead"), "  padded  ");
    EXPECT_TRUE(s.boolean("UseProDVD"));
    EXPECT_TRUE(s.boolean("Always on Top"));
    EXPECT_TRUE(s.ticked("Check Cue Files"));
    EXPECT_EQ(encoders->rowCount(), 4u);  // no encoder lines: the defaults stand
}

TEST(SettingsStore, PreloadReadsOnlyItsThreeKeys) {
    TempDir dir;
    const std::string path = dir.file("saltmarrow.ini");
    writeFile(
        path,
        "SPTI Interface=1\r\nUseProDVD=True\r\nLanguage=German\r\nMRUData=/x\r\nCdrdao Verbose=abc\r\n");
    Settings s;
    preloadSettings(path, s);  // the malformed number is not its business
    EXPECT_TRUE(s.ticked("SPTI Interface"));
    EXPECT_TRUE(s.boolean("UseProDVD"));
    EXPECT_EQ(s.text("Language"), "German");
    EXPECT_EQ(s.text("MRUData"), "");
    Settings none;
    preloadSettings(dir.file("absent.ini"), none);
    EXPECT_EQ(none.text("Language"), "");
}

TEST(SettingsStore, DeviceLinesComeBackOnlyToTheSameDrive) {
    TempDir dir;
    const std::string path = dir.file("saltmarrow.ini");
    writeFile(path,
              "Device=1|PLEXTOR, DVDR PX-716A|generic-mmc-raw|10|True|1,1,0,0|0,0,1\r\n"
              "Device=2|SONY, CD-ROM CDU-701|generic-mmc|0|True|a|b\r\n"  // another drive took number 2
              "Device=3|GONE, DRIVE|generic-mmc|0|True|a|b\r\n");         // no longer present
    DeviceTable devices = twoDrives();
    devices.item(0).isWriter = false;
    Settings s;
    std::optional<EncoderTable> encoders;
    loadSettings(path, s, encoders, {&devices, {}});
    EXPECT_EQ(devices.item(0).Driver, "generic-mmc-raw");
    EXPECT_EQ(devices.item(0).DriverOptions, "10");
    EXPECT_TRUE(devices.item(0).isWriter);
    EXPECT_EQ(devices.item(0).ReaderOptions, "1,1,0,0");
    EXPECT_EQ(devices.item(0).WriterOptions, "0,0,1");
    EXPECT_EQ(devices.item(1).Driver, "");
    EXPECT_FALSE(devices.item(1).isWriter);
    EXPECT_EQ(devices.Count(), 2u);

    std::string file = composeSettings(s, devices, encoders);
    EXPECT_EQ(file.find("GONE"), std::string::npos);
    EXPECT_EQ(file.find("Device=3"), std::string::npos);
    EXPECT_NE(file.find("Device=2|HL-DT-ST, DVD-ROM GDR8163B|"), std::string::npos);
}

TEST(SettingsStore, EncoderLinesReplaceTheWholeTable) {
    TempDir dir;
    const std::string path = dir.file("saltmarrow.ini");
    writeFile(path, "EncoderSettings=Lame|lame|-V2 %in %out|--tt %4|mp3\r\n");
    Settings s;
    std::optional<EncoderTable> encoders = defaultEncoderTable();
    loadSettings(path, s, encoders, {});
    ASSERT_EQ(encoders->rowCount(), 1u);
    EXPECT_EQ(encoders->at(EncoderTable::Arguments, 0), "-V2 %in %out");

    // A second read starts a fresh table again rather than adding to it.
    writeFile(path, "EncoderSettings=A|a|||x\r\nUseEncoder=1\r\nEncoderSettings=B|b|||y\r\n");
    loadSettings(path, s, encoders, {});
    ASSERT_EQ(encoders->rowCount(), 2u);
    EXPECT_EQ(encoders->at(EncoderTable::Name, 1), "B");
    EXPECT_EQ(s.integer("UseEncoder"), 1);

    // Without a table yet, the first line makes one.
    std::optional<EncoderTable> none;
    loadSettings(path, s, none, {});
    ASSERT_TRUE(none);
    EXPECT_EQ(none->rowCount(), 2u);
}

TEST(SettingsStore, KeysOfEarlierVersionsAreReadForThisRunOnly) {
    TempDir dir;
    const std::string path = dir.file("saltmarrow.ini");
    writeFile(path,
              "Simulate=1\r\nParanoia=2\r\nPurgeLog=0\r\nExtractEncoder=Lame\r\nDVDAutoWriteData=True\r\n");
    Settings s;
    std::optional<EncoderTable> encoders;
    loadSettings(path, s, encoders, {});
    EXPECT_TRUE(s.wasRead("Simulate"));
    EXPECT_EQ(s.integer("Simulate"), 1);
    EXPECT_EQ(s.integer("Paranoia"), 2);
    EXPECT_EQ(s.integer("PurgeLog"), 0);
    EXPECT_EQ(s.text("ExtractEncoder"), "Lame");
    EXPECT_TRUE(s.boolean("DVDAutoWriteData"));
    EXPECT_FALSE(s.wasRead("Eject"));

    std::string file = composeSettings(s, DeviceTable{}, encoders);
    for (const LegacySettingRow &row : kLegacySettings)
        EXPECT_EQ(file.find("\n" + std::string(row.key) + "="), std::string::npos) << row.key;
}

TEST(SettingsStore, ReaderSelectionFollowsTheActiveInterface) {
    DeviceTable devices = twoDrives();
    const std::vector<std::string> aspi{devices.item(0).ASPIFullName, devices.item(1).ASPIFullName};
    const std::vector<std::string> spti{devices.item(0).SPTIFullName, devices.item(1).SPTIFullName};
    EXPECT_EQ(entryOfDevice(devices, "2", aspi, false), 1u);
    EXPECT_EQ(entryOfDevice(devices, "2", spti, true), 1u);
    EXPECT_EQ(entryOfDevice(devices, "2", aspi, true), std::nullopt);
    EXPECT_EQ(entryOfDevice(devices, "7", aspi, false), std::nullopt);
    EXPECT_EQ(deviceNumberOfEntry(devices, spti[1], true), "2");
    EXPECT_EQ(deviceNumberOfEntry(devices, aspi[0], false), "1");
    EXPECT_EQ(deviceNumberOfEntry(devices, "", false), "");

    TempDir dir;
    const std::string path = dir.file("saltmarrow.ini");
    writeFile(path, "SPTI Interface=1\r\nReaderDevice=2\r\nReaderDevice=9\r\n");
    Settings s;
    std::optional<EncoderTable> encoders;
    LoadResult r = loadSettings(path, s, encoders, {&devices, spti});
    EXPECT_EQ(r.readerIndex, 1u);  // a later line naming no device leaves the choice
    EXPECT_EQ(s.text("ReaderDevice"), "9");
}

TEST(SettingsStore, MalformedValuesRaiseButTheRestStillLoads) {
    TempDir dir;
    const std::string path = dir.file("saltmarrow.ini");
    // The first error is raised; reals are read leniently.
    const std::pair<std::string, int> rows[] = {
        {"MRURead=/before\r\nCdrdao Verbose=lots\r\nAudio Width=99999\r\nMRUWrite=/after\r\n",
         err::TypeMismatch},
        {"Audio Width=99999\r\n", err::Overflow},
        {"UseProDVD=maybe\r\n", err::TypeMismatch},
        {"CommandLog Size=large\r\n", 0},
    };
    Settings s;
    std::optional<EncoderTable> encoders;
    for (const auto &[text, error] : rows) {
        writeFile(path, text);
        int raised = 0;
        try {
            loadSettings(path, s, encoders, {});
        } catch (const RuntimeError &e) {
            raised = e.number();
        }
        EXPECT_EQ(raised, error) << text;
    }
    EXPECT_EQ(s.text("MRURead"), "/before");
    EXPECT_EQ(s.text("MRUWrite"), "/after");
    EXPECT_EQ(s.integer("Cdrdao Verbose"), 2) << "the malformed value left the old one";
    EXPECT_EQ(s.real("CommandLog Size"), 0);
}

std::vector<std::string> filesIn(const std::string &folder) {
    std::vector<std::string> names;
    for (const auto &e : fs::directory_iterator(folder)) names.push_back(e.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

TEST(SettingsStore, MalformedValueToSaveLeavesTheOldFileIntact) {
    TempDir dir;
    const std::string path = settingsPath(dir.path());
    writeFile(path, "Language=German\r\n");
    Settings s;
    s.setText("Data Width", "wide");
    try {
        saveSettings(path, true, s, DeviceTable{}, defaultEncoderTable());
        FAIL() << "no error raised";
    } catch (const RuntimeError &e) {
        EXPECT_EQ(e.number(), err::TypeMismatch);
    }
    EXPECT_EQ(readFile(path), "Language=German\r\n");
    EXPECT_EQ(filesIn(dir.path()), std::vector<std::string>{"saltmarrow.ini"});
    // Nothing is saved before the form has loaded.
    saveSettings(path, false, Settings{}, DeviceTable{}, defaultEncoderTable());
    EXPECT_EQ(readFile(path), "Language=German\r\n");
}

TEST(SettingsStore, BadBytesNeverCrashAndNothingIsLost) {
    TempDir dir;
    const std::string path = settingsPath(dir.path());
    const std::string nul("MRUData=/a\0b", 12);
    const std::string latin1 = "MRUAudio=/M\xfcsik/\xff\xfe";
    const std::string huge = "MRURead=" + std::string(1 << 20, 'x');
    const std::string wild = std::string("\xef\xbb\xbf") + "[Encoder Settings]\r\n" + nul + "\r\n" + latin1 +
                             "\r\n" + huge + "\r\n" + std::string(1 << 20, '=') + "\r\n" +
                             "no separator\r\n=value without key\r\n[Main Settings]\r\n" +
                             "Email=a@b\r\nEmail=c@d\r\n[[[\r\n]\r\nDevice=\r\nDevice=|||\r\n" +
                             "EncoderSettings=\r\n" + std::string(3000, '\r') + "Server=3\r\n";
    writeFile(path, wild);
    Settings s;
    DeviceTable devices = twoDrives();
    std::optional<EncoderTable> encoders = defaultEncoderTable();
    try {
        loadSettings(path, s, encoders, {&devices, {}});
    } catch (const RuntimeError &) {
        // The short encoder line raises; what stands around it still loads.
    }
    EXPECT_EQ(s.text("MRUData"), std::string("/a\0b", 4));
    EXPECT_EQ(s.text("MRUAudio"), "/M\xfcsik/\xff\xfe");
    EXPECT_EQ(s.text("MRURead").size(), 1u << 20);
    EXPECT_EQ(s.text("Email"), "c@d");
    EXPECT_EQ(s.integer("Server"), 3);
    EXPECT_EQ(encoders->rowCount(), 4u);

    saveSettings(path, true, s, devices, encoders);
    Settings again;
    std::optional<EncoderTable> e2;
    loadSettings(path, again, e2, {});
    EXPECT_EQ(again.text("MRUData"), s.text("MRUData"));
    EXPECT_EQ(again.text("MRUAudio"), s.text("MRUAudio"));
    EXPECT_EQ(again.text("MRURead"), s.text("MRURead"));
}

TEST(SettingsStore, LineBreakInAValueCannotForgeAnotherKey) {
    Settings s;
    s.setText("MRUData", "/home/u/odd\nLanguage=Klingon");
    std::string file = composeSettings(s, DeviceTable{}, std::nullopt);
    EXPECT_EQ(file.find("Klingon"), std::string::npos);
    EXPECT_NE(file.find("\r\nMRUData=/home/u/odd\r\n"), std::string::npos);
}

TEST(SettingsStore, ConversionsOfTheFileNotation) {
    for (const char *yes : {"True", "TRUE", "-1"}) EXPECT_TRUE(textToBoolean(yes));
    for (const char *no : {"false", "0"}) EXPECT_FALSE(textToBoolean(no));
    for (const char *bad : {"", "yes"}) EXPECT_THROW(textToBoolean(bad), RuntimeError);
    for (double v : {9.0, 10.5, 0.1}) EXPECT_EQ(vb::Val(singleText(v)), v);
    EXPECT_THROW(Settings{}.text("No Such Key"), RuntimeError);
}

}  // namespace
}  // namespace saltmarrow
