#ifndef SALTMARROW_CDDB_CDDBSESSION_H
#define SALTMARROW_CDDB_CDDBSESSION_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cddb/ReplyFramer.h"

namespace saltmarrow::cddb {

// The server offered when the settings name none.
inline constexpr std::string_view kDefaultServer = "gnudb.gnudb.org";
inline constexpr int kCddbPort = 8880;

// One row of listAlbums.
struct AlbumRow {
    std::string discId;    // the row's text
    std::string category;  // sub-item 1
    std::string title;     // sub-item 2
};

// What the database dialog knows, as plain values; the dialog shows the lists.
struct FreedbState {
    std::vector<long> cddbTrackLengths;  // [0] lead-in, [1..n] tracks, in ms
    bool cddbLengthMode = false;
    std::string cddbQuery;
    bool cddbDone = true;
    bool cddbReading = false;
    bool cddbSites = false;
    bool cddbBusy = false;
    bool cddbWeb = false;
    std::int64_t cddbBytes = 0;
    std::string cddbEntry;  // the "#" lines of the entry, each ended by CR LF
    std::string cddbArtist;
    std::string cddbTitle;
    bool cddbSplit = false;
    bool entryRead = false;  // an entry came in since the last read began
    std::string webBuffer;
    ReplyFramer replies;

    std::vector<AlbumRow> listAlbums;
    int selectedAlbum = -1;
    bool albumsListed = false;  // cmdGetTracks reads "msgFreedbGetTracks"
    std::vector<std::string> listTracks;
    std::vector<std::string> listServers;
    int selectedServer = -1;
    std::string strServerList;  // host names, each followed by "|"
};

// What the dialog has to do after a reply.
struct Reaction {
    std::vector<std::string> send;  // texts for the server, line ends included
    bool askSplit = false;          // ask whether track names split into artist and title
    bool sitesIn = false;           // the server list is new: the session is over
    bool overflow = false;          // the server sent more than any reply can hold
    bool webComplete = false;       // the page has come in as its header announced
};

// The words that name the user to the server, "user host": strFreedbEmail
// with its at sign turned into a blank, or, while it is the literal
// "LocalHostName@LocalIP" (which an empty address becomes), the machine's name
// and address.
std::string helloWords(std::string &strFreedbEmail, std::string_view localHostName, std::string_view localIP);
// "cddb hello <user> <host> saltmarrow <major>.<minor>" and CR LF.
std::string greeting(std::string_view helloWords);
std::string programVersion();

// A chunk from the socket: counted, then handled as the session's kind asks.
Reaction dataArrival(FreedbState &s, std::string_view bytes);
// The server closed: a last status line without its line end is handled.
Reaction connectionClosed(FreedbState &s);

// The command that the session is about: the query, the read of the selected
// row, or the list of sites; without its line end.
std::string sessionCommand(const FreedbState &s);

void getmatches(FreedbState &s, std::string_view reply, Reaction &r);
void getSites(FreedbState &s, std::string_view reply, Reaction &r);
void parseEntry(FreedbState &s, std::string_view reply, Reaction &r);

// The entries of strServerList; the default server alone when it names none.
std::vector<std::string> serverEntries(std::string_view strServerList);

// Where one entry of the server list is reached: a host name, with ":port"
// where it is not the usual one, is spoken to directly; an http or https URL
// through its CGI.
struct Endpoint {
    bool http = false;
    std::string host;
    int port = kCddbPort;
    std::string url;
};
Endpoint serverEndpoint(std::string_view entry);
// "host" or "host:port"; port where the text names none.
Endpoint hostAndPort(std::string_view text, int port);
// The CGI request of one command: "?cmd=...&hello=...&proto=6", blanks as "+".
std::string cgiUrl(std::string_view base, std::string_view command, std::string_view helloWords);

}  // namespace saltmarrow::cddb

#endif
