#include "cddb/WebSearch.h"

#include <gtest/gtest.h>

#include "cddb/CddbSession.h"

using namespace saltmarrow::cddb;

TEST(WebSearch, RequestAndPage) {
    const std::string site = searchSite(" http://db.example:8080/ ");
    const std::string url = webSearchUrl(site, "Ace of&Spades");
    EXPECT_EQ(url, site +
                       "/freedb_search.php?words=Ace+of&Spades&allfields=NO&fields=artist&fields=title"
                       "&allcats=YES&grouping=none");
    // The headers between are fixed text; the request line and the host are not.
    const std::string request = webRequest(url, site);
    EXPECT_TRUE(request.starts_with("GET " + url + " HTTP/1.1\r\nAccept: ")) << request;
    EXPECT_TRUE(request.ends_with("\r\nHost: http://db.example:8080\r\n\r\n")) << request;

    const std::string link = "<a href=http://s/freedb_search_fmt.php?cat=";
    const std::string page = "<tr><td>" + link + "rock&id=0d01a402>Mot\xf6rhead / Ace</a>\r\n" + link +
                             "misc&id=1a2b3c4d><font size=-1>misc</font></a><br>\n" + link +
                             "jazz&id=77>Broken\n" +
                             "<a href=http://other/freedb_search_fmt.php?cat=rock&id=1>Elsewhere</a>\n" +
                             link + "data&id=9>X</a>\n";
    std::vector<std::string> got;
    for (const AlbumRow &r : parseSearchPage(page, "http://s"))
        got.push_back(r.discId + "|" + r.category + "|" + r.title);
    EXPECT_EQ(got, (std::vector<std::string>{"0d01a402|rock|Mot\xc3\xb6rhead / Ace",
                                             "1a2b3c4d|misc|Mot\xc3\xb6rhead / Ace", "9|data|X"}));
}
