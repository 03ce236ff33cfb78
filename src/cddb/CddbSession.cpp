#include "cddb/CddbSession.h"

#include <algorithm>
#include <cstdio>

#include "cddb/WebSearch.h"
#include "support/mdlFunctions.h"

namespace saltmarrow::cddb {

namespace {

using vb::Compare;

constexpr std::string_view kCrLf = "\r\n";
constexpr std::string_view kQuit = "quit\r\n";
constexpr std::string_view kLocalLiteral = "LocalHostName@LocalIP";
constexpr std::size_t kPageLimit = std::size_t{4} << 20;
// A session is a greeting, a command and its reply; a server that goes on
// sending past this is stopped, whatever its replies look like.
constexpr std::int64_t kSessionLimit = std::int64_t{4} << 20;

bool holds(std::string_view text, std::string_view phrase) {
    return vb::InStr(text, phrase, Compare::Text) != 0;
}

enum class Act { Hello, ExactMatch, Matches, NoEntry, Entry };

struct ReplyRow {
    std::string_view phrase;
    Act act;
    std::string_view row;  // sub-item 2 of the row that tells the user
};

// Tested in this order, each on the whole of what came in, so one chunk may
// answer to several rows.
constexpr ReplyRow kReplyTable[] = {
    {"200 Hello and welcome ", Act::Hello, ""},
    {"200 ", Act::ExactMatch, ""},  // with a "/" too: one exact match, without a list head
    {"211 Found inexact matches, list follows (until terminating `.')", Act::Matches, ""},
    {"210 Found exact matches, list follows", Act::Matches, ""},
    {"401 No such CD entry in database", Act::NoEntry, "NO MATCH FOUND!!!"},
    {"202 No match for disc ID", Act::NoEntry, "NO MATCH FOUND!!!"},
    {"500 Unrecognized command", Act::NoEntry, "UNRECOGNISED COMMAND!!!"},
    {"500 Command syntax error", Act::NoEntry, "SYNTAX ERROR!!!"},
    {"501 Invalid disc ID", Act::NoEntry, "INVALID CD ID!!!"},
    {" CD database entry follows (until terminating `.')", Act::Entry, ""},
};

void handleReplies(FreedbState &s, const std::string &text, Reaction &r) {
    for (const ReplyRow &row : kReplyTable) {
        if (!holds(text, row.phrase)) continue;
        switch (row.act) {
            case Act::Hello:
                r.send.push_back(sessionCommand(s) + "\r\n");
                break;
            case Act::ExactMatch:
                if (holds(text, "/")) getmatches(s, vb::Replace(text, "200 ", kCrLf), r);
                break;
            case Act::Matches:
                getmatches(s, text, r);
                break;
            case Act::NoEntry:
                r.send.emplace_back(kQuit);
                s.listAlbums.push_back({"", "", std::string(row.row)});
                break;
            case Act::Entry:
                parseEntry(s, text, r);
                break;
        }
    }
}

void handle(FreedbState &s, const std::string &complete, Reaction &r) {
    if (complete.empty()) return;
    const std::string text = wireText(complete);
    if (s.cddbSites)
        getSites(s, text, r);
    else
        handleReplies(s, text, r);
}

}  // namespace

std::string programVersion() {
    return std::to_string(SALTMARROW_VERSION_MAJOR) + "." + std::to_string(SALTMARROW_VERSION_MINOR);
}

std::string helloWords(std::string &strFreedbEmail, std::string_view localHostName,
                       std::string_view localIP) {
    if (strFreedbEmail.empty()) strFreedbEmail = kLocalLiteral;
    if (strFreedbEmail == kLocalLiteral) return std::string(localHostName) + " " + std::string(localIP);
    return vb::Replace(strFreedbEmail, "@", " ");
}

std::string greeting(std::string_view helloWords) {
    return "cddb hello " + std::string(helloWords) + " saltmarrow " + programVersion() + "\r\n";
}

std::string sessionCommand(const FreedbState &s) {
    if (s.cddbSites) return "sites";
    if (!s.cddbReading) return s.cddbQuery;
    const bool picked = s.selectedAlbum >= 0 && s.selectedAlbum < int(s.listAlbums.size());
    const AlbumRow chosen = picked ? s.listAlbums[std::size_t(s.selectedAlbum)] : AlbumRow{};
    return "cddb read " + chosen.category + " " + chosen.discId;
}

Reaction dataArrival(FreedbState &s, std::string_view bytes) {
    Reaction r;
    s.cddbBytes += static_cast<std::int64_t>(bytes.size());
    r.overflow = s.cddbBytes > kSessionLimit;
    if (r.overflow) return r;
    if (s.cddbWeb) {
        r.overflow = s.webBuffer.size() + bytes.size() > kPageLimit;
        if (r.overflow) return r;
        s.webBuffer.append(bytes);
        r.webComplete = webResponseComplete(s.webBuffer);
        return r;
    }
    std::string complete;
    r.overflow = !s.replies.push(bytes, complete);
    handle(s, complete, r);
    return r;
}

Reaction connectionClosed(FreedbState &s) {
    Reaction r;
    if (!s.cddbWeb) handle(s, s.replies.finish(), r);
    return r;
}

void getmatches(FreedbState &s, std::string_view reply, Reaction &r) {
    if (s.cddbReading) return;
    const auto lines = vb::Split(reply, kCrLf);
    for (std::size_t i = 1; i < lines.size() && !lines[i].empty() && lines[i] != "."; ++i) {
        const std::string &line = lines[i];
        AlbumRow row;
        const std::size_t blank1 = line.find(' ');
        row.category = line.substr(0, blank1);
        if (blank1 != std::string::npos) {
            const std::size_t blank2 = line.find(' ', blank1 + 1);
            row.discId = line.substr(blank1 + 1, blank2 - blank1 - 1);
            if (blank2 != std::string::npos) row.title = line.substr(blank2 + 1);
        }
        s.listAlbums.push_back(std::move(row));
    }
    if (!s.listAlbums.empty()) {
        s.albumsListed = true;
        s.selectedAlbum = 0;
    }
    r.send.emplace_back(kQuit);
}

void getSites(FreedbState &s, std::string_view reply, Reaction &r) {
    if (holds(reply, "200 Hello and welcome ")) r.send.emplace_back("sites\r\n");
    if (!holds(reply, "210 OK, site information follows")) return;
    const std::string previous = s.selectedServer >= 0 && s.selectedServer < int(s.listServers.size())
                                     ? s.listServers[std::size_t(s.selectedServer)]
                                     : "";
    s.listServers.clear();
    s.strServerList.clear();
    for (const std::string &line : vb::Split(reply, kCrLf)) {
        if (line.find("8880") == std::string::npos) continue;
        const std::string host = line.substr(0, line.find(' '));
        s.listServers.push_back(host);
        s.strServerList += host + "|";
    }
    const auto kept = std::find(s.listServers.begin(), s.listServers.end(), previous);
    s.selectedServer = kept != s.listServers.end() ? int(kept - s.listServers.begin()) : 0;
    if (s.listServers.empty()) {
        s.listServers.emplace_back(kDefaultServer);
        s.selectedServer = 0;
    }
    r.sitesIn = true;
}

void parseEntry(FreedbState &s, std::string_view reply, Reaction &r) {
    s.cddbSplit = true;
    s.entryRead = true;
    for (const std::string &line : vb::Split(reply, kCrLf)) {
        if (const std::size_t at = line.find("DTITLE="); at != std::string::npos) {
            std::string text = line.substr(at + 7);
            if (text.find('/') == std::string::npos) text += " / ";
            const auto parts = vb::Split(text, " / ");
            s.cddbArtist = parts.empty() ? "" : parts[0];
            s.cddbTitle = parts.size() > 1 ? parts[1] : "";
        }
        if (line.find("TTITLE") != std::string::npos) {
            if (const std::size_t eq = line.find('='); eq != std::string::npos) {
                // Sent for every title: the server closes on the first.
                r.send.emplace_back(kQuit);
                std::string text = line.substr(eq + 1);
                if (text.find('/') == std::string::npos) s.cddbSplit = false;
                s.listTracks.push_back(std::move(text));
            }
        }
        if (!line.empty() && line[0] == '#') s.cddbEntry += line + "\r\n";
    }
    r.askSplit = s.cddbSplit && !s.listTracks.empty();
    if (!r.askSplit) s.cddbSplit = false;
}

std::vector<std::string> serverEntries(std::string_view strServerList) {
    std::vector<std::string> entries;
    for (const std::string &entry : vb::Split(strServerList, "|"))
        if (!vb::Trim(entry).empty()) entries.push_back(vb::Trim(entry));
    if (entries.empty()) entries.emplace_back(kDefaultServer);
    return entries;
}

Endpoint hostAndPort(std::string_view text, int port) {
    Endpoint e{false, vb::Trim(text), port, ""};
    const std::size_t colon = e.host.rfind(':');
    if (colon == std::string::npos || e.host.find(':') != colon || colon + 1 == e.host.size() ||
        !std::all_of(e.host.begin() + long(colon) + 1, e.host.end(),
                     [](char c) { return c >= '0' && c <= '9'; }))
        return e;
    const double given = vb::Val(e.host.substr(colon + 1));
    if (given >= 1 && given <= 65535) e.port = static_cast<int>(given);
    e.host.erase(colon);
    return e;
}

Endpoint serverEndpoint(std::string_view entry) {
    const std::string text = vb::Trim(entry);
    if (vb::InStr(text, "http://", Compare::Text) == 1 || vb::InStr(text, "https://", Compare::Text) == 1)
        return Endpoint{true, "", 0, text};
    return hostAndPort(text, kCddbPort);
}

std::string cgiUrl(std::string_view base, std::string_view command, std::string_view helloWords) {
    const auto encode = [](std::string_view text) {
        std::string out;
        for (unsigned char c : vb::Trim(text)) {
            const bool plain = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
            if (plain || c == '-' || c == '_' || c == '.' || c == '~') {
                out += static_cast<char>(c);
            } else if (c == ' ') {
                out += '+';
            } else {
                char hex[4];
                std::snprintf(hex, sizeof hex, "%%%02X", c);
                out += hex;
            }
        }
        return out;
    };
    return std::string(base) + "?cmd=" + encode(command) + "&hello=" + encode(helloWords) + "+saltmarrow+" +
           programVersion() + "&proto=6";
}

}  // namespace saltmarrow::cddb
