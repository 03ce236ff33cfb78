#include "cddb/WebSearch.h"

#include "cddb/CddbSession.h"
#include "cddb/ReplyFramer.h"
#include "support/mdlFunctions.h"

namespace saltmarrow::cddb {

using vb::Compare;

std::string searchSite(std::string_view setting) {
    std::string site = vb::Trim(setting);
    while (!site.empty() && site.back() == '/') site.pop_back();
    return site.empty() ? std::string(kDefaultSearchSite) : site;
}

Endpoint siteAddress(std::string_view site) {
    std::string_view rest = site;
    if (const std::size_t scheme = rest.find("://"); scheme != std::string_view::npos)
        rest.remove_prefix(scheme + 3);
    return hostAndPort(rest.substr(0, rest.find('/')), 80);
}

std::string webSearchUrl(std::string_view site, std::string_view words) {
    return std::string(site) + "/freedb_search.php?words=" + vb::Replace(words, " ", "+") +
           "&allfields=NO&fields=artist&fields=title&allcats=YES&grouping=none";
}

std::string webRequest(std::string_view url, std::string_view site) {
    return "GET " + std::string(url) +
           " HTTP/1.1\r\n"
           "Accept: image/gif, image/x-xbitmap, image/jpeg, image/pjpeg, application/vnd.ms-powerpoint, "
           "application/vnd.ms-excel, application/msword, application/x-comet, */*\r\n"
           "Accept-Language: en\r\n"
           "Accept-Encoding: gzip , deflate\r\n"
           "cache-Control: no -cache\r\n"
           "User-Agent: Mozilla/4.0 (compatible; MSIE 5.5; Windows NT 5.0)\r\n"
           "Host: " +
           std::string(site) + "\r\n\r\n";
}

bool webResponseComplete(std::string_view response) {
    const std::size_t end = response.find("\r\n\r\n");
    if (end == std::string_view::npos) return false;
    const std::string_view head = response.substr(0, end + 2);
    const std::size_t at = vb::InStr(head, "\r\nContent-Length:", Compare::Text);
    if (at == 0) return false;
    const double length = vb::Val(head.substr(at - 1 + 17));
    return length >= 0 && static_cast<double>(response.size() - end - 4) >= length;
}

std::vector<AlbumRow> parseSearchPage(std::string_view page, std::string_view site) {
    const std::string prefix = "<a href=" + std::string(site) + "/freedb_search_fmt.php?cat=";
    std::vector<AlbumRow> rows;
    std::string lastTitle;
    for (const std::string &line : vb::Split(wireText(page), "\n")) {
        const std::size_t at = line.find(prefix);
        if (at == std::string::npos) continue;
        const std::size_t cat = at + prefix.size();
        const std::size_t id = line.find("&id=", cat);
        const std::size_t close = id == std::string::npos ? id : line.find('>', id);
        const std::size_t end = close == std::string::npos ? close : line.find("</a>", close);
        if (end == std::string::npos) continue;
        AlbumRow row{line.substr(id + 4, close - id - 4), line.substr(cat, id - cat),
                     line.substr(close + 1, end - close - 1)};
        // A link in small type is a further entry of the disc of the row before.
        if (row.title.compare(0, 14, "<font size=-1>") == 0)
            row.title = lastTitle;
        else
            lastTitle = row.title;
        rows.push_back(std::move(row));
    }
    return rows;
}

}  // namespace saltmarrow::cddb
