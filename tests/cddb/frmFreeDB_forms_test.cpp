// The database dialog against servers on the loopback: the ends of a session,
// the CGI of a server written as a URL, and the search by words.
#include <gtest/gtest.h>

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTreeWidget>

#include "cddb/CddbServers.h"
#include "cddb/frmFreeDB.h"

using namespace saltmarrow;
using test::httpOk;

namespace {

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
    const std::string hello = "200 Hello and welcome x@y running saltmarrow 0.1.\r\n";
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
        {server.address(), {hello}, {flood}, "Connection Error."},
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
                      {"cddb hello", {"200 Hello and welcome x@y running saltmarrow 0.1.\r\n"}},
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
