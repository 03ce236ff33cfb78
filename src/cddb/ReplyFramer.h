#ifndef SALTMARROW_CDDB_REPLYFRAMER_H
#define SALTMARROW_CDDB_REPLYFRAMER_H

#include <cstddef>
#include <string>
#include <string_view>

namespace saltmarrow::cddb {

// Gathers what a disc database server sends and hands it on a whole reply at
// a time, however the network cut it: a status line, and for the replies
// whose code begins with "21" the lines up to the lone ".". Lines end in
// CR LF when they come out; bare LF ends are accepted.
class ReplyFramer {
public:
    // No reply of a real server comes near this; a server that sends more
    // without finishing a reply is not one.
    static constexpr std::size_t kLimit = std::size_t{1} << 20;

    // Adds bytes. The replies they complete are appended to complete, in
    // order. False once the unfinished reply passes kLimit; what was held is
    // then dropped.
    bool push(std::string_view bytes, std::string &complete);
    // At the close: a status line that lacks only its line end still counts;
    // a list without its "." does not.
    std::string finish();
    void clear();

private:
    std::string pending_;  // bytes of a line not yet ended
    std::string list_;     // lines of an unfinished list reply
    bool inList_ = false;
    void line(std::string_view text, std::string &complete);
};

// Text of the wire as UTF-8: valid UTF-8 stays as it is, anything else is
// read as Latin-1, which servers of the older protocol levels send.
std::string wireText(std::string_view bytes);

}  // namespace saltmarrow::cddb

#endif
