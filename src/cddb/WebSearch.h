#ifndef SALTMARROW_CDDB_WEBSEARCH_H
#define SALTMARROW_CDDB_WEBSEARCH_H

#include <string>
#include <string_view>
#include <vector>

namespace saltmarrow::cddb {

struct AlbumRow;
struct Endpoint;

// The disc database's web site, for a search by words, when the settings
// name none. The public site may no longer serve the search page.
inline constexpr std::string_view kDefaultSearchSite = "http://www.gnudb.org";

// The site of the setting as the request and the parser use it: scheme and
// host (and port), without a trailing "/"; the default when empty.
std::string searchSite(std::string_view setting);
// Host and port to connect to; the port is 80 unless the site names one.
Endpoint siteAddress(std::string_view site);

// The search URL: the words with "+" for each blank, nothing else escaped.
std::string webSearchUrl(std::string_view site, std::string_view words);
// The request sent for it, header lines ended by an empty line.
std::string webRequest(std::string_view url, std::string_view site);
// True once the whole body that the response's Content-Length announces is in.
bool webResponseComplete(std::string_view response);
// One row for each line of the page that links to an entry of the site.
std::vector<AlbumRow> parseSearchPage(std::string_view page, std::string_view site);

}  // namespace saltmarrow::cddb

#endif
