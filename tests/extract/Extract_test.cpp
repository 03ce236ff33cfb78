// Track extraction without a drive: the scan's lines into rows, the names
// from the database, the file name template and the command lines of a run.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "extract/ExtractCommand.h"
#include "extract/ExtractDisc.h"
#include "extract/ExtractNames.h"
#include "platform/CommandLine.h"
#include "support/mdlFunctions.h"

using namespace saltmarrow;
using platform::splitCommandLine;
using testing::ElementsAre;

namespace {

std::vector<std::string> rowsOf(const ExtractDisc &d) {
    std::vector<std::string> out{d.caption()};
    for (std::size_t i = 0; i < d.count(); ++i)
        out.push_back(d.rows[i].text + "|" + d.track(i).Length + "|" + d.track(i).Artist + "|" +
                      std::to_string(d.rows[i].discTrack));
    return out;
}

}  // namespace

TEST(ExtractScan, AudioTracksBecomeRowsNumberedByRows) {
    const std::vector<std::vector<std::string>> cases[] = {
        // A data track first: rows count from 1, the disc's numbers stay with them.
        {{"Album title: 'It\\'s \\\\Live' from 'AC/DC'",
          "T01:       0 10:00.00 data uninterrupted copydenied N/A",
          "T02:   45000  4:12.45 audio linear copydenied stereo title 'Back\\\\sl\\'ash' from 'Gu\001est'",
          "T03:   63945  0:05.70 audio linear copyallowed stereo title '' from ''", "Leadout:   64372"},
         {"AC/DC - It's Live", "01 - Backsl'ash|04:12:45|Gu est|2",
          "02 - Unknown Title|00:05:70|Unknown Artist|3"}},
        // An album with no artist; a prompt for a disc.
        {{"Album title: 'Album' from ''", "T01:       0 70:00.00 data uninterrupted copydenied N/A"},
         {"Unknown Artist - Album"}},
        {{"load cdrom please and press enter", "T01:"}, {"Unknown Artist - Unknown Album"}},
    };
    for (const auto &c : cases) {
        ExtractDisc disc;
        for (const auto &line : c[0]) disc.recieveCDDA2WAV_TOC(line);
        EXPECT_EQ(rowsOf(disc), c[1]) << c[0].front();
    }

    ExtractDisc disc;
    for (const char *line : {"T01:       0  1:00.00 audio linear copydenied stereo title 'A' from 'B'",
                             "T02:    4500  2:00.00 audio linear copydenied stereo title 'C' from 'D'"})
        disc.recieveCDDA2WAV_TOC(line);
    EXPECT_THAT(disc.freedbLengths(), ElementsAre(2000, 60000, 120000)) << "the lead-in of two seconds first";
    disc.applyFreedb({{"Album", "Band"}, {"", "Guest"}, {"Two", "Band"}});
    disc.renameRow(1, "02 - Second");
    EXPECT_THAT(rowsOf(disc), ElementsAre("Band - Album", "01 - Audio Track|01:00:00|Guest|1",
                                          "02 - Second|02:00:00|Band|2"));
}

TEST(ExtractNames, TemplateMarkersFoldersAndNamesThatClimb) {
    const std::pair<std::pair<const char *, NameValues>, const char *> cases[] = {
        {{"%1\\%2/%3 - %4 (%5) %6", {"AC/DC", "Back in \\Black", "01", "Hells Bells", "Album"}},
         "AC-DC/Back in Black/01 - Hells Bells (Album) %6"},
        {{"%4/%3", {"A", "B", "02", "..", "C"}}, "__/02"},
        {{"%1%2 %3", {"%2", "x%3", "03", "", ""}}, "%2x%3 03"},
        {{"%1//%4", {"", "", "04", "Title", ""}}, "Title"},
    };
    for (const auto &[in, path] : cases)
        EXPECT_EQ(vb::Join(fillTemplate(in.first, in.second), "/"), path) << in.first;
    for (const char *outside : {"/music/%4", "\\%4", "C:\\%4", "../%4", "%1\\..\\%4"})
        EXPECT_EQ(templateProblem(outside), "msgExtractTemplateOutside") << outside;
    for (const char *empty : {"", "  ", "%1/"}) EXPECT_EQ(templateProblem(empty), "msgExtractNoTemplate");
    EXPECT_EQ(templateProblem("%1\\%2\\%3 - %4"), std::nullopt);
}

TEST(ExtractCommand, EveryNameStaysOneArgument) {
    const EncoderRow lame{"Lame", "lame", "--alt-preset standard -Y %in %out",
                          "--tl %2 --tn %3 --tt %4 --ta %5 --add-id3v2", "mp3"};
    const std::string title = "\" | rm -rf ~ \"", target = "/m/O'Neil \"x\"\\/01.mp3";
    ExtractCall call{"/x/cdda2wav",
                     "/dev/sr0",
                     3,
                     3,
                     false,
                     "/x",
                     lame,
                     target,
                     {"Band", "Al %4 bum", "02", title, "O'Neil"}};
    auto stages = platform::splitPipeline(extractCommand(call));
    ASSERT_EQ(stages.size(), 2u);
    EXPECT_THAT(splitCommandLine(stages[0]),
                ElementsAre("/x/cdda2wav", "dev=/dev/sr0", "-gui", "-B", "-H", "-x", "-t3+3", "-"));
    EXPECT_THAT(splitCommandLine(stages[1]),
                ElementsAre("/x/lame", "--alt-preset", "standard", "-Y", "-", target, "--tl", "Al %4 bum",
                            "--tn", "02", "--tt", title, "--ta", "O'Neil", "--add-id3v2"));

    // The image run: no -B, the range of the disc, the old markers and the new.
    call.image = true;
    call.lastTrack = 5;
    call.encoder = {"Old", "enc", "-o %2 %1 %out", "", "x"};
    stages = platform::splitPipeline(extractCommand(call));
    EXPECT_THAT(splitCommandLine(stages[0]),
                ElementsAre(testing::_, "dev=/dev/sr0", "-gui", "-H", "-x", "-t3+5", "-"));
    EXPECT_THAT(splitCommandLine(stages[1]), ElementsAre("/x/enc", "-o", target, "-", target));

    call.encoder = {"Wave", "", "", "", "wav"};
    EXPECT_EQ(splitCommandLine(extractCommand(call)).back(), target) << "cdda2wav writes the file";
}
