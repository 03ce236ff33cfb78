#ifndef SALTMARROW_SHELL_TEXTLINES_H
#define SALTMARROW_SHELL_TEXTLINES_H

#include <string_view>
#include <vector>

namespace saltmarrow {

// The lines of a text file, whether they end in CR LF, LF or a lone CR; a last
// line without an end counts too.
inline std::vector<std::string_view> splitLines(std::string_view bytes) {
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] != '\r' && bytes[i] != '\n') continue;
        lines.push_back(bytes.substr(start, i - start));
        if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') ++i;
        start = i + 1;
    }
    if (start < bytes.size()) lines.push_back(bytes.substr(start));
    return lines;
}

}  // namespace saltmarrow

#endif
