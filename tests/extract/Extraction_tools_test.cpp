// A disc ripped through the main window into files that play: Debian's
// encoders behind the fake reader, each file read back by the program's own
// header readers; the whole disc into one file; a run cancelled midway.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QProgressBar>
#include <cstring>

#include "ExtractRig.h"
#include "audio/mdlMediaInfo.h"

using namespace saltmarrow;
using namespace saltmarrow::test;
using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

TEST(Extraction, ThreeTracksIntoMp3OggFlacAndWave) {
    ExtractRig r(kThreeTracks, {"lame", "oggenc", "flac"});
    ASSERT_EQ(r.rows(), (std::vector<std::string>{"01 - Hells Bells", "02 - ..", "03 - \" | rm -rf ~ \""}));
    EXPECT_EQ(r.x->windowTitle(), "AC/DC - Live");
    EXPECT_EQ(r.x->sbPanel1->text(), "3 Tracks Available");
    r.x->listFiles->topLevelItem(0)->setText(0, "01 - Bells");  // the row's label edited
    const std::tuple<const char *, const char *, int> tracks[] = {{"Bells", "Unknown Artist", 5000},
                                                                  {"..", "Unknown Artist", 4000},
                                                                  {"\" | rm -rf ~ \"", "Guest", 6000}};
    for (const char *extension : {"wav", "mp3", "ogg", "flac"}) {
        const bool wave = *extension == 'w';
        r.extract(wave ? 0 : *extension == 'm' ? 1 : *extension == 'o' ? 2 : 3);
        EXPECT_THAT(r.lastBox(), StartsWith("3 tracks extracted after ")) << extension;
        for (int i = 0; i < 3; ++i) {
            const auto [title, artist, ms] = tracks[i];
            const std::string path =
                r.music + "/AC-DC/Live/0" + std::to_string(i + 1) + " - " + title + "." + extension;
            const MediaFileInfo m = readMediaInfo(path);
            EXPECT_NEAR(m.Millisecs, ms, 60) << path;
            // The reader takes the bytes of the block after the last comment into
            // its value (the ARTIST of the FLAC rows): the artist starts it.
            const std::string tags = m.Title + "|" + m.Artist.substr(0, std::strlen(artist)) + "|" + m.Album +
                                     "|" + std::to_string(m.TrackNumber);
            const std::string want = std::string(title) + "|" + artist + "|Live|" + std::to_string(i + 1);
            EXPECT_EQ(std::to_string(m.Frequency) + " " + std::to_string(m.Channels) + " " + tags,
                      "44100 2 " + (wave ? "|||0" : want))
                << path;
        }
    }
    EXPECT_EQ(r.x->sbPanel2->text(), "Total Time: 0mins 15secs");
}

TEST(Extraction, TheWholeDiscIntoOneFileAndARunCancelledMidway) {
    ExtractRig r(kThreeTracks + "extract_delay_ms = 3\n", {"flac"});
    std::vector<std::string> panels;
    bool cancel = false;
    auto original = r.x->objDOS.ReceiveOutputs;
    r.x->objDOS.ReceiveOutputs = [&](const std::string &line) {
        original(line);
        const std::string panel = r.x->sbPanel1->text().toStdString();
        if (panels.empty() || panels.back() != panel) panels.push_back(panel);
        if (!cancel || line != " 20%") return;
        EXPECT_EQ(r.x->pbCopyProgress->value(), 20);
        r.x->cmdExtract->click();
    };
    r.extract(3, true);
    EXPECT_THAT(r.lastBox(), StartsWith("3 tracks extracted after "));
    EXPECT_THAT(panels, testing::ElementsAre("Extracting Track: 1 / 3", "Extracting Track: 2 / 3",
                                             "Extracting Track: 3 / 3"));
    EXPECT_THAT(fakeCalls(r.app, "cdda2wav").back(), HasSubstr(" -gui -H -x -t1+3 -"));
    const MediaFileInfo image = readMediaInfo(r.music + "/AC-DC - Live.flac");
    EXPECT_NEAR(image.Millisecs, 15000, 60);
    EXPECT_EQ(image.Title + "|" + image.Artist.substr(0, 5) + "|" + image.Album, "Live|AC/DC|Live");

    r.h->dialogs.prompts.clear();
    cancel = true;
    r.extract(3);
    EXPECT_TRUE(r.h->dialogs.prompts.empty()) << "no closing message: " << r.lastBox();
    EXPECT_TRUE(livingProcessesNaming(r.app).empty()) << "cdda2wav and flac end together";
    // The part written stays; flac puts the checksum of the sound in only when it ends.
    const std::string part = readFile(r.music + "/AC-DC/Live/01 - Hells Bells.flac");
    EXPECT_EQ(part.substr(0, 4) + part.substr(26, 16), "fLaC" + std::string(16, '\0'));
    EXPECT_FALSE(fs::exists(r.music + "/AC-DC/Live/02 - ...flac"));
    EXPECT_EQ(r.x->cmdExtract->text().toStdString() + " " + r.x->sbPanel1->text().toStdString(),
              "E&xtract 3 Tracks Available");
    EXPECT_TRUE(r.x->listFiles->isEnabled());
}
