// The database dialog against servers on the loopback: the ends of a session,
// the CGI of a server written as a URL, the search by words, and the query
// that the audio window runs until the names are taken.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>

#include "cddb/CddbServers.h"
#include "cddb/frmFreeDB.h"

using namespace saltmarrow;
using test::httpOk;

namespace {

const std::string kHello = "200 Hello and welcome x@y running saltmarrow 0.1.\r\n";

struct FreeDB : ::testing::Test {
    test::TranscriptServer server;
    test::ScriptedDialogs dialogs;
    FreedbSettings settings{"", 0, "me@example.org", ""};
    std::unique_ptr<frmFreeDB> form;

    void open(const std::vector<long> &lengths, bool byWords = false) {
        form = std::make_unique<frmFreeDB>(test::scriptedHost(dialogs, settings));
        form->state.cddbTrackLengths = lengths;
        form->state.cddbLengthMode = byWords;
        form->show();
    }
    std::string word() const { return form->sbPanel[2]->text().toStdString(); }
    // Until a session has ended: cddbDone, and a word of its end.
    void waitEnd() {
        ASSERT_TRUE(test::waitFor(
            [this] { return form->state.cddbDone && !word().empty() && word() != "Connecting..."; }));
    }
};

}  // namespace

TEST_F(FreeDB, EveryEndOfASessionGivesTheControlsBack) {
    QTcpServer nobody;
    nobody.listen(QHostAddress::LocalHost);
    const std::string refused = "127.0.0.1:" + std::to_string(nobody.serverPort());
    nobody.close();
    std::string flood = "211 Found inexact matches, list follows (until terminating `.')\r\n";
    while (flood.size() < (10u << 20)) flood += "rock 0d01a402 Artist / Title\r\n";
    struct Case {
        std::string server;
        std::vector<std::string> greeting, hello;
        const char *word;
    } const cases[] = {
        {"bad..host", {}, {}, "Connection Error."},
        {refused, {}, {}, "Connection Error."},
        {server.address(), {"<close>"}, {}, "Connection Closed."},
        {server.address(), {kHello}, {flood}, "Connection Error."},
        {server.address(), {}, {}, "User Quit."},  // a server that never answers
    };
    for (const Case &c : cases) {
        server.greeting = c.greeting;
        server.replies = {{"cddb hello", c.hello}};
        settings.strServerList = c.server + "|";
        open({2000, 180000, 240000});
        if (std::string(c.word) == "User Quit.") {
            ASSERT_TRUE(test::waitFor([this] { return word() == "Connected!"; }));
            EXPECT_FALSE(form->cmdGetTracks->isEnabled());
            form->cmdQuit->click();
        }
        waitEnd();
        EXPECT_EQ(word(), c.word) << c.server;
        EXPECT_EQ(form->listAlbums->topLevelItemCount() + form->listTracks->count(), 0) << c.server;
        EXPECT_TRUE(form->cmdGetTracks->isEnabled());
        EXPECT_FALSE(form->cmdTracklist->isEnabled()) << "no entry, no names";
    }
}

TEST_F(FreeDB, ServerWrittenAsAUrlIsAskedThroughItsCgi) {
    const std::string cgi = "/~cddb/cddb.cgi";
    server.replies = {
        {"GET " + cgi + "?cmd=cddb+query",
         {httpOk("210 Found exact matches, list follows (until terminating `.')\r\nrock 0d01a402 A / B\r\n"
                 "blues 0d01a402 A / C\r\n.\r\n")}},
        {"GET " + cgi + "?cmd=sites",
         {httpOk("210 OK, site information follows (until terminating `.')\r\nx.org cddbp 8880 N0 W0 X\r\n"
                 "x.org http 80 /~cddb/cddb.cgi N000.00 W000.00 X\r\n.\r\n")}}};
    settings.strServerList = "http://" + server.address() + cgi + "|";
    open({2000, 180000, 240000});
    waitEnd();
    EXPECT_EQ(server.received.at(0),
              "GET " + cgi + "?cmd=cddb+query+0d01a402+2+150+13650+422&hello=me+example.org+saltmarrow+" +
                  cddb::programVersion() + "&proto=6 HTTP/1.1");
    EXPECT_EQ(form->listAlbums->topLevelItemCount(), 2);
    EXPECT_EQ(form->cmdGetTracks->text(), "Get &Tracks");
    form->cmdServerList->click();
    waitEnd();
    EXPECT_EQ(settings.strServerList, "x.org|");
    EXPECT_EQ(form->sbPanel[0]->text(), "Server: x.org");
}

TEST_F(FreeDB, LengthsOfAnEntryFoundByWords) {
    const std::string site = "http://" + server.address();
    const std::string link = "<a href=" + site + "/freedb_search_fmt.php?cat=";
    const std::string entry =
        "210 rock 0d01a402 CD database entry follows (until terminating `.')\r\n# Track frame offsets:\r\n"
        "#   150\r\n#   13650\r\n#\r\n# Disc length: 422 seconds\r\nDTITLE=Them / Two\r\nTTITLE0=One\r\n"
        "TTITLE1=Two\r\n.\r\n";
    // The page comes with its length and the connection stays open.
    server.replies = {{"GET " + site + "/freedb_search.php?words=Two+Songs&",
                       {httpOk("<p>\n" + link + "misc&id=1>Them / Two</a>\n" + link +
                               "rock&id=0d01a402><font size=-1>rock</font></a>\n")}},
                      {"cddb hello", {kHello}},
                      {"cddb read rock 0d01a402", {entry}},
                      {"quit", {"230 Bye.\r\n", "<close>"}}};
    settings = {server.address() + "|", 0, "", site};
    dialogs.answer(std::string("Two Songs"));
    open({}, true);
    waitEnd();
    ASSERT_EQ(form->listAlbums->topLevelItemCount(), 2);
    form->listAlbums->setCurrentItem(form->listAlbums->topLevelItem(1));
    form->cmdGetTracks->click();
    waitEnd();
    EXPECT_EQ(settings.strFreedbEmail, "LocalHostName@LocalIP");
    EXPECT_EQ(dialogs.prompts.size(), 1u) << "no split question: the titles hold no \"/\"";
    form->cmdTracklist->click();
    EXPECT_EQ(form->trackLengths, (std::vector<std::string>{"03:00:00", "52:33:00"}));
    EXPECT_EQ(*form->cddbResult, (cddb::ResultTable{{"Two", "Them"}, {"One", "Them"}, {"Two", "Them"}}));
}

TEST_F(FreeDB, TheQueryPicksAnInexactMatchAndSplitsItsNames) {
    server.greeting = {"201 test CDDBP server v1.5.2PL0 ready at Sat Jan  1 00:00:00 2000\r\n"};
    server.replies = {
        {"cddb hello", {kHello}},
        {"cddb query 10000b03 3 150 375 713 13",
         {"211 Found inexact matches, list follows (until terminating `.')\r\nrock 0a000702 Some",
          "one / Else\r\n", "jazz 0a000703 Mot\xf6rhead / Ace of Spades\r\n.\r\n"}},
        {"cddb read jazz 0a000703",
         {"210 jazz 0a000703 CD database entry follows (until terminating `.')\r\n",
          "DTITLE=Mot\xf6rhead / Ace\r\nTTITLE0=Lemmy / Ace\r\nTTITLE1=Phil / Go\r\nTTITLE2=Eddie / "
          "Run\r\n.\r\n"}},
        {"quit", {"230 test Closing connection.  Goodbye.\r\n", "<close>"}}};
    settings.strServerList = server.address() + "|";
    dialogs.answer(platform::mb::Yes);  // split into artist and title
    QTimer::singleShot(0, [&] {
        frmFreeDB *modal = nullptr;
        EXPECT_TRUE(test::waitFor([&] {
            modal = qobject_cast<frmFreeDB *>(QApplication::activeModalWidget());
            return modal && modal->listAlbums->topLevelItemCount() == 2 && modal->cmdGetTracks->isEnabled();
        }));
        modal->listAlbums->setCurrentItem(modal->listAlbums->topLevelItem(1));
        modal->cmdGetTracks->click();
        EXPECT_TRUE(
            test::waitFor([&] { return dialogs.prompts.size() == 1 && modal->cmdTracklist->isEnabled(); }));
        modal->cmdTracklist->click();
        if (modal->isVisible()) modal->reject();  // a walk gone wrong must not leave the dialog open
    });
    // The lengths of tracks of 1.0, 2.5 and 3.2 seconds with the two-second gap.
    const auto names = QueryFreedb(test::scriptedHost(dialogs, settings), {2000, 3000, 4507, 3200});
    ASSERT_TRUE(names);
    EXPECT_EQ(*names, (cddb::ResultTable{
                          {"Ace", "Mot\xc3\xb6rhead"}, {"Ace", "Lemmy"}, {"Go", "Phil"}, {"Run", "Eddie"}}));
    EXPECT_EQ(dialogs.prompts[0].text, "Split Track Names by \"Artist / Title\"");
    EXPECT_EQ(dialogs.prompts[0].style, 36);
    EXPECT_EQ(server.received.at(0), "cddb hello me example.org saltmarrow " + cddb::programVersion());
    EXPECT_EQ(server.received.at(4), "cddb read jazz 0a000703");
}
