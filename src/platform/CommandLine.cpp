#include "platform/CommandLine.h"

namespace saltmarrow::platform {

namespace {
bool isSeparator(char c) { return c == ' ' || c == '\t'; }
}  // namespace

std::vector<std::string> splitCommandLine(std::string_view line) {
    std::vector<std::string> args;
    std::size_t i = 0;
    const std::size_t n = line.size();
    while (i < n && isSeparator(line[i])) ++i;
    if (i >= n) return args;

    // The program name: quotes group, nothing else is special.
    {
        std::string arg;
        bool quoted = false;
        while (i < n && (quoted || !isSeparator(line[i]))) {
            if (line[i] == '"') quoted = !quoted;
            else arg += line[i];
            ++i;
        }
        args.push_back(arg);
    }

    for (;;) {
        while (i < n && isSeparator(line[i])) ++i;
        if (i >= n) break;
        std::string arg;
        bool quoted = false;
        while (i < n) {
            char c = line[i];
            if (c == '\\') {
                std::size_t slashes = 0;
                while (i < n && line[i] == '\\') {
                    ++slashes;
                    ++i;
                }
                if (i < n && line[i] == '"') {
                    arg.append(slashes / 2, '\\');
                    if (slashes % 2 == 1) {
                        arg += '"';
                        ++i;
                    }
                    // with an even count the quote is handled on the next turn
                } else {
                    arg.append(slashes, '\\');
                }
                continue;
            }
            if (c == '"') {
                if (quoted && i + 1 < n && line[i + 1] == '"') {
                    arg += '"';
                    i += 2;
                    continue;
                }
                quoted = !quoted;
                ++i;
                continue;
            }
            if (!quoted && isSeparator(c)) break;
            arg += c;
            ++i;
        }
        args.push_back(arg);
    }
    return args;
}

std::vector<std::string> splitPipeline(std::string_view command) {
    std::vector<std::string> stages;
    auto trimmed = [](std::string_view s) {
        std::size_t a = 0, b = s.size();
        while (a < b && isSeparator(s[a])) ++a;
        while (b > a && isSeparator(s[b - 1])) --b;
        return std::string(s.substr(a, b - a));
    };
    bool quoted = false;
    std::size_t from = 0;
    for (std::size_t i = 0; i < command.size(); ++i) {
        char c = command[i];
        if (c == '"') quoted = !quoted;
        else if (!quoted && c == '|' && i > 0 && command[i - 1] == ' ' && i + 1 < command.size() &&
                 command[i + 1] == ' ') {
            stages.push_back(trimmed(command.substr(from, i - from)));
            from = i + 1;
        }
    }
    stages.push_back(trimmed(command.substr(from)));
    return stages;
}

std::string quoteArgument(std::string_view argument) {
    if (!argument.empty() && argument.find_first_of(" \t\"") == std::string_view::npos)
        return std::string(argument);
    std::string out = "\"";
    std::size_t slashes = 0;
    for (char c : argument) {
        if (c == '\\') {
            ++slashes;
            continue;
        }
        if (c == '"') {
            out.append(slashes * 2 + 1, '\\');
            out += '"';
        } else {
            out.append(slashes, '\\');
            out += c;
        }
        slashes = 0;
    }
    out.append(slashes * 2, '\\');
    out += '"';
    return out;
}

}  // namespace saltmarrow::platform
