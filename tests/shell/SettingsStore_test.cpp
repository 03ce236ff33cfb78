#include "shell/SettingsStore.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/RuntimeError.h"
#include "support/mdlFunctions.h"
#include "testlib/TestSupport.h"

namespace saltmarrow {
namespace {

using test::readFile;
using test::TempDir;
using test::writeFile;

DeviceTable twoDrives() {
    DeviceTable t;
    for (const auto &[aspi, spti, name] : {std::tuple{"1,0,0", "0,0,0", "PLEXTOR, DVDR PX-716A"},
                                           std::tuple{"1,1,0", "0,1,0", "HL-DT-ST, DVD-ROM GDR8163B"}}) {
        DeviceInfo d;
        d.DeviceName = name;
        d.ASPIDeviceID = aspi;
        d.SPTIDeviceID = spti;
        d.ASPIFullName = std::string(aspi) + ": " + name;
        d.SPTIFullName = std::string(spti) + ": " + name;
        t.Add(std::to_string(t.Count() + 1), d);
    }
    t.item(0).Driver = "generic-mmc";
    t.item(0).DriverOptions = "0";
    t.item(0).isWriter = true;
    return t;
}

// The texts of keys as one: "key=text|...".
std::string texts(const Settings &s, std::initializer_list<const char *> keys) {
    std::string out;
    for (const char *key : keys) out += std::string(key) + "=" + s.text(key) + "|";
    return out;
}

// A file in a temporary folder, read into fresh settings.
struct Ini {
    TempDir dir;
    std::string path = settingsPath(dir.path());
    Settings s;
    std::optional<EncoderTable> encoders = defaultEncoderTable();
    LoadResult load(const std::string &text, LoadContext context = {}) {
        writeFile(path, text);
        return loadSettings(path, s, encoders, context);
    }
};

TEST(SettingsStore, EveryKeyTravelsThroughTheFileAndBack) {
    Ini ini;
    Settings out;
    std::size_t n = 0;
    for (const SettingRow &row : kSettingsTable) {
        ++n;
        if (row.form == SettingForm::Int) out.setText(row.key, std::to_string(100 + n));
        if (row.form == SettingForm::Bool)
            out.setText(row.key, row.defaultValue == "True" ? "False" : "True");
        if (row.form == SettingForm::Real) out.setText(row.key, "0.1");
        if (row.form == SettingForm::Text)  // a NUL and bytes of no encoding too
            out.setText(row.key, "value " + std::to_string(n) + std::string(" = with C:/x|y\xfe\0\xff", 17));
    }
    DeviceTable devices = twoDrives();
    devices.item(0).ReaderOptions = "1,0,1,0";
    devices.item(0).WriterOptions = "0,1,1,0,0,1,0";
    devices.item(1).Driver = "generic-mmc-raw";
    devices.item(1).DriverOptions = "20";
    std::optional<EncoderTable> encoders = defaultEncoderTable();
    encoders->rows.push_back({"Opus", "opusenc", "%in %out", "--title %4", "opus"});
    saveSettings(ini.path, true, out, devices, encoders);

    DeviceTable scanned = twoDrives();  // as a fresh scan finds them: no options yet
    scanned.item(0).isWriter = false;
    EXPECT_TRUE(loadSettings(ini.path, ini.s, ini.encoders, {&scanned, {}}).fileFound);
    for (const SettingRow &row : kSettingsTable) EXPECT_EQ(ini.s.text(row.key), out.text(row.key)) << row.key;
    // Writing what was read gives the same bytes again, the drives and encoders with them.
    EXPECT_EQ(composeSettings(ini.s, scanned, ini.encoders), readFile(ini.path));
    // Nothing is saved before the form has loaded.
    saveSettings(ini.path, false, Settings{}, DeviceTable{}, std::nullopt);
    EXPECT_EQ(composeSettings(ini.s, scanned, ini.encoders), readFile(ini.path));
}

TEST(SettingsStore, FileLayout) {
    Settings s;
    s.setText("WriterDevice", "1");
    s.setText("ReaderDevice", "2");
    s.setText("MRUData", "/home/u/odd\nLanguage=Klingon");
    std::string file = composeSettings(s, twoDrives(), defaultEncoderTable());
    EXPECT_EQ(file.find("Klingon"), std::string::npos) << "a line break cannot forge a key";
    EXPECT_NE(file.find("\r\nMRUData=/home/u/odd\r\n"), std::string::npos);
    EXPECT_EQ(vb::Replace(file, "\r\n", "").find('\n'), std::string::npos) << "never a bare LF";
    EXPECT_NE(file.find("Minimize To Tray=0\r\n\r\n[Device Settings]\r\nWriterDevice=1\r\nReaderDevice=2\r\n"
                        "Device=1|"),
              std::string::npos);

    // No encoder table, no section; no scan, no device lines and empty selections.
    file = composeSettings(Settings{}, DeviceTable{}, std::nullopt);
    EXPECT_EQ(file.find("[Encoder Settings]"), std::string::npos);
    EXPECT_EQ(file.find("\nDevice="), std::string::npos);
    EXPECT_NE(file.find("\r\nWriterDevice=\r\nReaderDevice=\r\n\r\n[Advanced Settings]"), std::string::npos);
}

TEST(SettingsStore, AFreshStart) {
    Ini ini;
    ini.s.setText("Language", "German");
    EXPECT_FALSE(loadSettings(ini.dir.file("absent.ini"), ini.s, ini.encoders, {}).fileFound);
    EXPECT_EQ(ini.s.text("Language"), "German") << "an absent file leaves everything as it was";
    preloadSettings(ini.dir.file("absent.ini"), ini.s);
    EXPECT_EQ(ini.s.text("Language"), "German");

    const std::string temp = Settings{}.text("TempFolder");
    EXPECT_TRUE(std::filesystem::path(temp).is_absolute());
    EXPECT_NE(temp, "/tmp");  // shutdown may delete it with all it holds
}

TEST(SettingsStore, LinesAreReadAsTheFileHasThem) {
    Ini ini;
    ini.load(
        "CDTextFilter=%4 = %2\r\n"  // only the first "=" splits
        "MRUData=/first\n"
        "MRUData=/second\r"    // the last value wins; LF and lone CR end lines too
        "language=German\r\n"  // keys are case-sensitive
        "Language=French\r\n"
        "MRURead=  padded  \r\n"  // no trimming
        "UseProDVD=true\r\nAlways on Top=-1\r\nUnknown Key=1\r\n[Main Settings]\r\nno equals sign here\r\n"
        "Simulate=1\r\nParanoia=2\r\nPurgeLog=0\r\nExtractEncoder=Lame\r\nDVDAutoWriteData=True\r\n"
        "Check Cue Files=1");  // no line end at the end
    const Settings &s = ini.s;
    // The keys of earlier versions (from Simulate on) are read for this run only.
    EXPECT_EQ(texts(s, {"CDTextFilter", "MRUData", "Language", "MRURead", "UseProDVD", "Always on Top",
                        "Check Cue Files", "Simulate", "Paranoia", "PurgeLog", "ExtractEncoder",
                        "DVDAutoWriteData"}),
              "CDTextFilter=%4 = %2|MRUData=/second|Language=French|MRURead=  padded  |UseProDVD=True|"
              "Always on Top=True|Check Cue Files=1|Simulate=1|Paranoia=2|PurgeLog=0|ExtractEncoder=Lame|"
              "DVDAutoWriteData=True|");
    EXPECT_EQ(ini.encoders->rowCount(), 4u);  // no encoder lines: the defaults stand
    EXPECT_FALSE(s.wasRead("Eject")) << "set their controls only if read (Simulate: frmMainSettings)";
    const std::string file = composeSettings(s, DeviceTable{}, std::nullopt);
    for (const LegacySettingRow &row : kLegacySettings)
        EXPECT_EQ(file.find("\n" + std::string(row.key) + "="), std::string::npos) << row.key;

    // The preload takes its three keys and leaves a malformed number to the full read.
    Settings early;
    writeFile(ini.path,
              "SPTI Interface=1\r\nUseProDVD=True\r\nLanguage=German\r\nMRUData=/x\r\nCdrdao Verbose=a\r\n");
    preloadSettings(ini.path, early);
    EXPECT_EQ(texts(early, {"SPTI Interface", "UseProDVD", "Language", "MRUData"}),
              "SPTI Interface=1|UseProDVD=True|Language=German|MRUData=|");
}

TEST(SettingsStore, DeviceLinesComeBackOnlyToTheSameDriveAndTheReaderFollowsTheInterface) {
    Ini ini;
    DeviceTable devices = twoDrives();
    devices.item(0).isWriter = false;
    const std::vector<std::string> aspi{devices.item(0).ASPIFullName, devices.item(1).ASPIFullName};
    const std::vector<std::string> spti{devices.item(0).SPTIFullName, devices.item(1).SPTIFullName};
    const LoadResult r = ini.load(
        "Device=1|PLEXTOR, DVDR PX-716A|generic-mmc-raw|10|True|1,1,0,0|0,0,1\r\n"
        "Device=2|SONY, CD-ROM CDU-701|generic-mmc|0|True|a|b\r\n"  // another drive took number 2
        "Device=3|GONE, DRIVE|generic-mmc|0|True|a|b\r\n"           // no longer present
        "SPTI Interface=1\r\nReaderDevice=2\r\nReaderDevice=9\r\n",
        {&devices, spti});
    EXPECT_EQ(r.readerIndex, 1u) << "a later line naming no device leaves the choice";
    EXPECT_EQ(ini.s.text("ReaderDevice"), "9");
    EXPECT_NE(composeSettings(ini.s, devices, std::nullopt)
                  .find("\r\nDevice=1|PLEXTOR, DVDR PX-716A|generic-mmc-raw|10|True|1,1,0,0|0,0,1\r\n"
                        "Device=2|HL-DT-ST, DVD-ROM GDR8163B|||False||\r\n\r\n"),
              std::string::npos);

    EXPECT_EQ(entryOfDevice(devices, "2", aspi, false), 1u);
    EXPECT_EQ(entryOfDevice(devices, "2", aspi, true), std::nullopt);
    EXPECT_EQ(deviceNumberOfEntry(devices, spti[1], true), "2");
    EXPECT_EQ(deviceNumberOfEntry(devices, aspi[0], false), "1");
    EXPECT_EQ(deviceNumberOfEntry(devices, "", false), "");
}

// Encoder lines replace the whole table (the defaults too: see the first
// test); without a table yet, the first line makes one.
TEST(SettingsStore, EncoderLinesMakeTheTable) {
    Ini ini;
    ini.encoders.reset();
    ini.load("EncoderSettings=A|a|-V2 %in %out||x\r\nUseEncoder=1\r\nEncoderSettings=B|b|||y\r\n");
    ASSERT_TRUE(ini.encoders);
    ASSERT_EQ(ini.encoders->rowCount(), 2u);
    EXPECT_EQ(ini.encoders->at(EncoderTable::Arguments, 0), "-V2 %in %out");
    EXPECT_EQ(ini.encoders->at(EncoderTable::Name, 1), "B");
    EXPECT_EQ(ini.s.integer("UseEncoder"), 1);
}

TEST(SettingsStore, MalformedValuesRaiseButTheRestStillLoadsAndNothingMalformedIsSaved) {
    Ini ini;
    // The first error is raised; reals are read leniently.
    const std::pair<std::string, int> rows[] = {
        {"MRURead=/before\r\nCdrdao Verbose=lots\r\nAudio Width=99999\r\nMRUWrite=/after\r\n",
         err::TypeMismatch},
        {"Audio Width=99999\r\n", err::Overflow},
        {"UseProDVD=maybe\r\n", err::TypeMismatch},
        {"CommandLog Size=large\r\n", 0},
    };
    for (const auto &[text, error] : rows) {
        int raised = 0;
        try {
            ini.load(text);
        } catch (const RuntimeError &e) {
            raised = e.number();
        }
        EXPECT_EQ(raised, error) << text;
    }
    EXPECT_EQ(ini.s.text("MRURead"), "/before");
    EXPECT_EQ(ini.s.text("MRUWrite"), "/after");
    EXPECT_EQ(ini.s.integer("Cdrdao Verbose"), 2) << "the malformed value left the old one";
    EXPECT_EQ(ini.s.real("CommandLog Size"), 0);

    Settings bad;
    bad.setText("Data Width", "wide");
    writeFile(ini.path, "Language=German\r\n");
    EXPECT_THROW(saveSettings(ini.path, true, bad, DeviceTable{}, std::nullopt), RuntimeError);
    EXPECT_EQ(readFile(ini.path), "Language=German\r\n");

    EXPECT_FALSE(textToBoolean("0"));
    for (const char *text : {"", "yes"}) EXPECT_THROW(textToBoolean(text), RuntimeError);
    EXPECT_THROW(Settings{}.text("No Such Key"), RuntimeError);
}

TEST(SettingsStore, BadBytesNeverCrashAndNothingIsLost) {
    Ini ini;
    const std::string nul("MRUData=/a\0b", 12);
    const std::string wild = std::string("\xef\xbb\xbf") + "[Encoder Settings]\r\n" + nul +
                             "\r\nMRUAudio=/M\xfcsik/\xff\xfe\r\nMRURead=" + std::string(1 << 20, 'x') +
                             "\r\n" + std::string(1 << 20, '=') +
                             "\r\nno separator\r\n=value without key\r\n[Main Settings]\r\n"
                             "[[[\r\n]\r\nDevice=\r\nDevice=|||\r\n"
                             "EncoderSettings=\r\n" +
                             std::string(3000, '\r') + "Server=3\r\n";
    DeviceTable devices = twoDrives();
    // The short encoder line raises; what stands around it still loads.
    EXPECT_THROW(ini.load(wild, {&devices, {}}), RuntimeError);
    EXPECT_EQ(ini.s.text("MRUData"), std::string("/a\0b", 4));
    EXPECT_EQ(ini.s.text("MRUAudio"), "/M\xfcsik/\xff\xfe");
    EXPECT_EQ(ini.s.text("MRURead").size(), 1u << 20);
    EXPECT_EQ(ini.s.integer("Server"), 3);
    EXPECT_EQ(ini.encoders->rowCount(), 4u);
}

}  // namespace
}  // namespace saltmarrow
