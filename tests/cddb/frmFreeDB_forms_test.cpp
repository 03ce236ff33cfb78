// The database dialog against servers on the loopback: the ends of a session,
// the CGI of a server written as a URL, the search by words, and the query
// that the audio window runs until the names are taken.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDeadlineTimer>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QTreeWidget>
#include <map>

#include "cddb/frmFreeDB.h"
#include "exec/EnglishTexts.h"
#include "testlib/ScriptedDialogs.h"

using namespace saltmarrow;

namespace {

// A server on the loopback that answers from a transcript: each line it gets
// (a CDDB command, or the request line of an HTTP GET) is looked up by its
// beginning, and the reply goes out in its chunks, 30 ms apart, so that they
// reach the client apart. A chunk "<close>" closes the connection.
class TranscriptServer {
public:
    std::vector<std::string> greeting;                        // sent on connect
    std::map<std::string, std::vector<std::string>> replies;  // line beginning -> chunks
    std::vector<std::string> received;                        // every line, without its end

    TranscriptServer() {
        server_.listen(QHostAddress::LocalHost);
        QObject::connect(&server_, &QTcpServer::newConnection, [this] {
            QTcpSocket *client = server_.nextPendingConnection();
            QObject::connect(client, &QTcpSocket::readyRead, client, [this, client] {
                while (client->canReadLine()) {
                    const std::string line = client->readLine().trimmed().toStdString();
                    received.push_back(line);
                    for (const auto &[start, chunks] : replies)
                        if (line.rfind(start, 0) == 0) send(client, chunks);
                }
            });
            send(client, greeting);
        });
    }
    std::string address() const { return "127.0.0.1:" + std::to_string(server_.serverPort()); }

private:
    static void send(QTcpSocket *client, const std::vector<std::string> &chunks) {
        int delay = 0;
        for (const std::string &chunk : chunks)
            QTimer::singleShot(delay += 30, client, [client, chunk] {
                if (chunk == "<close>")
                    client->disconnectFromHost();
                else
                    client->write(chunk.data(), qint64(chunk.size()));
            });
    }
    QTcpServer server_;
};

std::string httpOk(const std::string &body) {
    return "HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\n\r\n" + body;
}

// Lets events run until done() holds, for at most half a minute; what it returns
// is done() at the end.
bool waitFor(const std::function<bool()> &done) {
    QDeadlineTimer limit(30000);
    while (!done() && !limit.hasExpired()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    return done();
}

const std::string kHello = "200 Hello and welcome x@y running saltmarrow 0.1.\r\n";

struct FreeDB : ::testing::Test {
    TranscriptServer server;
    test::ScriptedDialogs dialogs;
    FreedbSettings settings{"", 0, "me@example.org", ""};
    std::unique_ptr<frmFreeDB> form;

    // The dialog's host: answered by dialogs, in English, its settings in settings.
    FreedbHost host() {
        FreedbHost host;
        host.dialogs = &dialogs;
        host.message = [](std::string_view key) { return test::englishText(key); };
        host.loadSettings = [this] { return settings; };
        host.saveSettings = [this](const FreedbSettings &s) { settings = s; };
        return host;
    }
    void open(const std::vector<long> &lengths, bool byWords = false) {
        form = std::make_unique<frmFreeDB>(host());
        form->state.cddbTrackLengths = lengths;
        form->state.cddbLengthMode = byWords;
        form->show();
    }
    // In the dialog that comes up modal next: the entry of the album in row
    // 1 of two, and its names taken once it is read.
    void takeSecondAlbum() {
        QTimer::singleShot(0, [this] {
            frmFreeDB *modal = nullptr;
            EXPECT_TRUE(waitFor([&] {
                modal = qobject_cast<frmFreeDB *>(QApplication::activeModalWidget());
                return modal && modal->listAlbums->topLevelItemCount() == 2 &&
                       modal->cmdGetTracks->isEnabled();
            }));
            modal->listAlbums->setCurrentItem(modal->listAlbums->topLevelItem(1));
            modal->cmdGetTracks->click();
            EXPECT_TRUE(waitFor([&] { return modal->state.cddbDone && modal->cmdTracklist->isEnabled(); }));
            modal->cmdTracklist->click();
            if (modal->isVisible()) modal->reject();  // a walk gone wrong must not leave the dialog open
        });
    }
    std::string word() const { return form->sbPanel[2]->text().toStdString(); }
    // Until a session has ended: cddbDone, and a word of its end.
    void waitEnd() {
        ASSERT_TRUE(
            waitFor([this] { return form->state.cddbDone && !word().empty() && word() != "Connecting..."; }));
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
            ASSERT_TRUE(waitFor([this] { return word() == "Connected!"; }));
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

TEST_F(FreeDB, TheModalDialogHandsBackTheNamesOfTheAlbumTaken) {
    const std::string site = "http://" + server.address();
    const std::string link = "<a href=" + site + "/freedb_search_fmt.php?cat=";
    server.replies = {
        {"cddb hello", {kHello}},
        {"quit", {"230 test Closing connection.  Goodbye.\r\n", "<close>"}},
        // By lengths: an inexact match that comes in pieces, an entry of "/" names.
        {"cddb query 10000b03 3 150 375 713 13",
         {"211 Found inexact matches, list follows (until terminating `.')\r\nrock 0a000702 Some",
          "one / Else\r\n", "jazz 0a000703 Mot\xf6rhead / Ace of Spades\r\n.\r\n"}},
        {"cddb read jazz 0a000703",
         {"210 jazz 0a000703 CD database entry follows (until terminating `.')\r\n",
          "DTITLE=Mot\xf6rhead / Ace\r\nTTITLE0=Lemmy / Ace\r\nTTITLE1=Phil / Go\r\nTTITLE2=Eddie / "
          "Run\r\n.\r\n"}},
        // By words: the page comes with its length and the connection stays open.
        {"GET " + site + "/freedb_search.php?words=Two+Songs&",
         {httpOk("<p>\n" + link + "misc&id=1>Them / Two</a>\n" + link +
                 "rock&id=0d01a402><font size=-1>rock</font></a>\n")}},
        {"cddb read rock 0d01a402",
         {"210 rock 0d01a402 CD database entry follows (until terminating `.')\r\n# Track frame offsets:\r\n"
          "#   150\r\n#   13650\r\n#\r\n# Disc length: 422 seconds\r\nDTITLE=Them / Two\r\nTTITLE0=One\r\n"
          "TTITLE1=Two\r\n.\r\n"}}};
    settings.strServerList = server.address() + "|";
    dialogs.answer(platform::mb::Yes);  // split into artist and title
    takeSecondAlbum();
    // The lengths of tracks of 1.0, 2.5 and 3.2 seconds with the two-second gap.
    const auto names = QueryFreedb(host(), {2000, 3000, 4507, 3200});
    ASSERT_TRUE(names);
    EXPECT_EQ(*names, (cddb::ResultTable{
                          {"Ace", "Mot\xc3\xb6rhead"}, {"Ace", "Lemmy"}, {"Go", "Phil"}, {"Run", "Eddie"}}));
    EXPECT_EQ(dialogs.prompts.at(0).text, "Split Track Names by \"Artist / Title\"");
    EXPECT_EQ(dialogs.prompts[0].style, 36);
    EXPECT_EQ(server.received.at(0), "cddb hello me example.org saltmarrow " + cddb::programVersion());
    EXPECT_EQ(server.received.at(4), "cddb read jazz 0a000703");

    settings = {server.address() + "|", 0, "", site};
    dialogs.prompts.clear();
    dialogs.answer(std::string("Two Songs"));
    takeSecondAlbum();
    const auto found = GetTrackLengths(host());
    ASSERT_TRUE(found);
    EXPECT_EQ(settings.strFreedbEmail, "LocalHostName@LocalIP");
    EXPECT_EQ(dialogs.prompts.size(), 1u) << "no split question: the titles hold no \"/\"";
    EXPECT_EQ(found->lengths, (std::vector<std::string>{"03:00:00", "52:33:00"}));
    EXPECT_EQ(found->names, (cddb::ResultTable{{"Two", "Them"}, {"One", "Them"}, {"Two", "Them"}}));
}
