// One user job end to end: an audio project of three WAVs that sox makes asks
// the database for names; the dialog picks the inexact match, reads it, is
// told to split the names, and the project's rows carry them.
#include <gtest/gtest.h>

#include <QApplication>
#include <QProcess>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>

#include "audio/AudioTestHost.h"
#include "audio/frmAudioCD.h"
#include "cddb/CddbServers.h"
#include "cddb/frmFreeDB.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;

TEST(QueryFreedb, ThreeWavesGetTheirNames) {
    if (!test::haveProgram("sox")) GTEST_SKIP() << "sox is not installed (scripts/setup installs it)";
    test::TempDir dir;
    std::vector<std::string> waves;
    for (const char *seconds : {"1.0", "2.5", "3.2"}) {
        waves.push_back(dir.file(std::string(seconds) + ".wav"));
        ASSERT_EQ(QProcess::execute("sox", {"-n", "-r", "44100", "-c", "2", "-b", "16",
                                            QString::fromStdString(waves.back()), "trim", "0", seconds}),
                  0);
    }
    test::TranscriptServer server;
    server.greeting = {"201 test CDDBP server v1.5.2PL0 ready at Sat Jan  1 00:00:00 2000\r\n"};
    server.replies = {
        {"cddb hello", {"200 Hello and welcome me@example.org running saltmarrow 0.1.\r\n"}},
        {"cddb query 10000b03 3 150 375 713 13",
         {"211 Found inexact matches, list follows (until terminating `.')\r\nrock 0a000702 Some",
          "one / Else\r\n", "jazz 0a000703 Mot\xf6rhead / Ace of Spades\r\n.\r\n"}},
        {"cddb read jazz 0a000703",
         {"210 jazz 0a000703 CD database entry follows (until terminating `.')\r\n",
          "DTITLE=Mot\xf6rhead / Ace\r\nTTITLE0=Lemmy / Ace\r\nTTITLE1=Phil / Go\r\nTTITLE2=Eddie / "
          "Run\r\n.\r\n"}},
        {"quit", {"230 test Closing connection.  Goodbye.\r\n", "<close>"}}};
    test::AudioTestHost audio;  // tracks added with the two-second gap, names from CD-Text
    audio.settings["UseCDText"] = audio.settings["2secGap"] = "True";
    test::ScriptedDialogs &dialogs = audio.dialogs;
    dialogs.answer(platform::mb::Yes);  // split into artist and title
    FreedbSettings settings{server.address() + "|", 0, "me@example.org", ""};
    std::optional<cddb::ResultTable> names;
    audio.host.QueryFreedb = [&](const std::vector<long> &lengths) {
        return names = QueryFreedb(test::scriptedHost(dialogs, settings), lengths);
    };
    frmAudioCD project(audio.host);
    project.Form_Load();
    project.dropFiles(waves);
    QTimer::singleShot(0, [&] {
        frmFreeDB *form = nullptr;
        EXPECT_TRUE(test::waitFor([&] {
            form = qobject_cast<frmFreeDB *>(QApplication::activeModalWidget());
            return form && form->listAlbums->topLevelItemCount() == 2 && form->cmdGetTracks->isEnabled();
        }));
        form->listAlbums->setCurrentItem(form->listAlbums->topLevelItem(1));
        form->cmdGetTracks->click();
        EXPECT_TRUE(
            test::waitFor([&] { return dialogs.prompts.size() == 1 && form->cmdTracklist->isEnabled(); }));
        form->cmdTracklist->click();
        if (form->isVisible()) form->reject();  // a walk gone wrong must not leave the dialog open
    });
    project.cmdFreedb->click();
    ASSERT_TRUE(names);
    EXPECT_EQ(*names, (cddb::ResultTable{
                          {"Ace", "Mot\xc3\xb6rhead"}, {"Ace", "Lemmy"}, {"Go", "Phil"}, {"Run", "Eddie"}}));
    std::vector<std::string> rows;
    for (int i = 0; i < project.listFiles->topLevelItemCount(); ++i)
        rows.push_back(project.listFiles->topLevelItem(i)->text(0).toStdString());
    EXPECT_EQ(rows, (std::vector<std::string>{"Ace", "Go", "Run"}));
    EXPECT_EQ(dialogs.prompts[0].text, "Split Track Names by \"Artist / Title\"");
    EXPECT_EQ(dialogs.prompts[0].style, 36);
    EXPECT_EQ(server.received.at(0), "cddb hello me example.org saltmarrow " + cddb::programVersion());
    EXPECT_EQ(server.received.at(4), "cddb read jazz 0a000703");
}
