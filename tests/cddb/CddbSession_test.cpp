#include "cddb/CddbSession.h"

#include <gtest/gtest.h>

#include "cddb/CddbResult.h"

using namespace saltmarrow::cddb;

namespace {

const std::string kQuery = "cddb query 0d01a402 2 150 13650 422 ";
const std::string kList = "211 Found inexact matches, list follows (until terminating `.')\r\n";

// What a session leaves: the album rows after the first and whether they are
// listed, the servers (the selected one starred) and the list of them kept.
std::vector<std::string> rows(const FreedbState &s) {
    std::vector<std::string> out;
    for (std::size_t i = 1; i < s.listAlbums.size(); ++i)
        out.push_back(s.listAlbums[i].discId + "|" + s.listAlbums[i].category + "|" + s.listAlbums[i].title);
    if (s.albumsListed) out.push_back("listed");
    for (std::size_t i = 0; i < s.listServers.size(); ++i)
        out.push_back(s.listServers[i] + (static_cast<int>(i) == s.selectedServer ? "*" : ""));
    if (!s.strServerList.empty()) out.push_back(s.strServerList);
    return out;
}

// What one session sends for the bytes, given whole or a byte at a time, and
// "?" where it asks the split question.
std::pair<std::vector<std::string>, FreedbState> feed(FreedbState s, const std::string &bytes, bool byByte) {
    std::vector<std::string> sent;
    const auto take = [&](const Reaction &r) {
        sent.insert(sent.end(), r.send.begin(), r.send.end());
        if (r.askSplit) sent.push_back("?");
    };
    for (std::size_t i = 0; i < bytes.size(); i += byByte ? 1 : bytes.size())
        take(dataArrival(s, bytes.substr(i, byByte ? 1 : bytes.size())));
    take(connectionClosed(s));
    return {sent, s};
}

}  // namespace

TEST(CddbSession, ReplyTable) {
    enum Kind { Query, Read, Sites };  // what the session is about
    struct Case {
        Kind kind;
        std::string reply;
        std::vector<std::string> sent, rows;
    };
    const std::string q = "quit\r\n",
                      exact = "210 Found exact matches, list follows (until terminating `.')\r\n";
    const Case cases[] = {
        {Query, "201 srv CDDBP server ready\r\n200 Hello and welcome me@here\r\n", {kQuery + "\r\n"}, {}},
        {Read, "200 hello AND welcome x@y\r\n", {"cddb read rock 0d01a402\r\n"}, {}},
        {Query, "200 rock 0d01a402 Artist / Title\r\n", {q}, {"0d01a402|rock|Artist / Title", "listed"}},
        {Query, "200 rock 0d01a402 Title\r\n", {}, {}},  // an exact match is known by its "/"
        {Query,
         kList + "rock 7 M\xc3\xb6 / A\r\njazz 8 C / D\r\n.\r\n",
         {q},
         {"7|rock|M\xc3\xb6 / A", "8|jazz|C / D", "listed"}},
        {Query, exact + "rock 1 A / B\r\nblues 2 C\r\n.\r\n", {q}, {"1|rock|A / B", "2|blues|C", "listed"}},
        {Read, kList + "rock 1 A / B\r\n.\r\n", {}, {}},
        {Query, "202 No match for disc ID 0d01a402.\r\n", {q}, {"||NO MATCH FOUND!!!"}},
        {Query, "401 No such CD entry in database.\r\n", {q}, {"||NO MATCH FOUND!!!"}},
        {Query, "500 Unrecognized command.\r\n", {q}, {"||UNRECOGNISED COMMAND!!!"}},
        {Query, "500 Command syntax error.\r\n", {q}, {"||SYNTAX ERROR!!!"}},
        {Query, "501 Invalid disc ID.\r\n", {q}, {"||INVALID CD ID!!!"}},
        {Query, "202 No match for disc ID 0d01a402.", {q}, {"||NO MATCH FOUND!!!"}},  // cut off by the close
        {Query, kList + "rock 1 A / B\n", {}, {}},  // a list that never ends is dropped at the close
        // The sites replace the server list; the selection stays in its row.
        {Sites,
         "200 Hello and welcome x@y running saltmarrow 0.1.\r\n"
         "210 OK, site information follows (until terminating `.')\r\nx.org cddbp 8880 N0 W0 X\r\n"
         "x.org http 80 /~cddb/cddb.cgi N0 W0 X\r\na.org cddbp 8880 - A\r\n.\r\n",
         {"sites\r\n"},
         {"x.org", "a.org*", "x.org|a.org|"}},
    };
    for (const Case &c : cases) {
        FreedbState s;
        s.cddbQuery = kQuery;
        s.cddbReading = c.kind == Read;
        s.listAlbums = {{"0d01a402", "rock", "A / T"}};
        s.selectedAlbum = 0;
        if (c.kind == Sites) {
            s.cddbSites = true;
            s.listServers = serverEntries("b.org| a.org |");
            s.selectedServer = 1;
        }
        for (bool byByte : {false, true}) {
            const auto [sent, after] = feed(s, c.reply, byByte);
            EXPECT_EQ(sent, c.sent) << c.reply << byByte;
            EXPECT_EQ(rows(after), c.rows) << c.reply << byByte;
        }
    }
    EXPECT_EQ(serverEntries(""), (std::vector<std::string>{"gnudb.gnudb.org"}));
}

TEST(CddbSession, FloodsEndTheSession) {
    const std::string row = "200 rock 0d01a402 " + std::string(100, 'x') + " / y\r\n";
    // A list that never ends, a line that never ends, replies that never end.
    for (const std::string &flood : {kList + std::string(1000, '\n'), std::string(1000, 'x'), row}) {
        FreedbState s;
        Reaction r;
        for (int i = 0; i < 50000 && !r.overflow; ++i) r = dataArrival(s, flood);
        EXPECT_TRUE(r.overflow);
    }
}

TEST(CddbSession, EntryNamesSplitQuestionAndLengths) {
    FreedbState s;
    s.cddbReading = true;
    const std::string head =
        "210 rock 0d01a402 CD database entry follows (until terminating `.')\r\n# Track frame offsets:\r\n"
        "#\t150\r\n#       13650\r\n#\r\n# Disc length: 422 seconds\r\nDTITLE=Mot\xf6rhead / Ace of "
        "Spades\r\n";
    auto [sent, split] = feed(s, head + "TTITLE0=Lemmy / Ace \r\nTTITLE1= Eddie/Love Me\r\n.\r\n", false);
    EXPECT_EQ(sent, (std::vector<std::string>{"quit\r\n", "quit\r\n", "?"}));
    EXPECT_EQ(split.listTracks, (std::vector<std::string>{"Lemmy / Ace ", " Eddie/Love Me"}));
    EXPECT_TRUE(split.cddbSplit && split.entryRead);
    EXPECT_EQ(entryTrackLengths(split.cddbEntry), (std::vector<std::string>{"03:00:00", "52:33:00"}));
    const ResultTable names{{"Ace of Spades", "Mot\xc3\xb6rhead"}, {"Ace", "Lemmy"}, {"Love Me", "Eddie"}};
    EXPECT_EQ(tracklist(split), names);

    std::string many =
        "210 misc 1 CD database entry follows (until terminating `.')\r\nDTITLE=Whole Name\r\n";
    for (int i = 0; i < 100; ++i) many += "TTITLE" + std::to_string(i) + "=A / B\r\n";
    auto [quits, whole] = feed(s, many + "TTITLE100=No Slash\r\n.\r\n", true);
    EXPECT_EQ(quits.size(), 101u);
    EXPECT_FALSE(whole.cddbSplit);
    ResultTable three(4, {"A / B", "Whole Name"});
    three[0].first = "";
    EXPECT_EQ(tracklist(whole, 3), three);
}
