#include "platform/CommandLine.h"

#include "support/mdlFunctions.h"

namespace saltmarrow::platform {

namespace {

bool isSeparator(char c) {
    return c == ' ' || c == '\t';
}
bool isLineEnd(char c) {
    return c == '\r' || c == '\n';
}

struct Word {
    std::string value;
    std::size_t begin = 0;  // where its text stands in the line
    std::size_t end = 0;
};

// The words of one line from at, by the runtime's rules. With lineEnds a CR or
// LF outside quotes ends the line. Returns where the line ended.
std::size_t scanLine(std::string_view line, std::size_t at, bool lineEnds, std::vector<Word> &words) {
    const std::size_t n = line.size();
    for (;;) {
        while (at < n && isSeparator(line[at])) ++at;
        if (at >= n || (lineEnds && isLineEnd(line[at]))) return at;
        Word word;
        word.begin = at;
        bool quoted = false;
        while (at < n) {
            const char c = line[at];
            if (c == '\\') {
                std::size_t slashes = 0;
                for (; at < n && line[at] == '\\'; ++at) ++slashes;
                const bool quoteFollows = at < n && line[at] == '"';
                word.value.append(quoteFollows ? slashes / 2 : slashes, '\\');
                if (quoteFollows && slashes % 2 == 1) {
                    word.value += '"';
                    ++at;
                }
                // with an even count the quote is handled on the next turn
                continue;
            }
            if (c == '"') {
                if (quoted && at + 1 < n && line[at + 1] == '"') {
                    word.value += '"';
                    at += 2;
                } else {
                    quoted = !quoted;
                    ++at;
                }
                continue;
            }
            if (!quoted && (isSeparator(c) || (lineEnds && isLineEnd(c)))) break;
            word.value += c;
            ++at;
        }
        word.end = at;
        words.push_back(std::move(word));
    }
}

std::string trimmed(std::string_view s) {
    std::size_t a = 0, b = s.size();
    while (a < b && isSeparator(s[a])) ++a;
    while (b > a && isSeparator(s[b - 1])) --b;
    return std::string(s.substr(a, b - a));
}

}  // namespace

std::vector<std::string> splitCommandLine(std::string_view line) {
    std::vector<Word> words;
    scanLine(line, 0, false, words);
    std::vector<std::string> args;
    for (auto &w : words) args.push_back(std::move(w.value));
    return args;
}

std::vector<std::string> splitPipeline(std::string_view command) {
    std::vector<Word> words;
    scanLine(command, 0, false, words);
    std::vector<std::string> stages;
    std::size_t from = 0;
    for (const Word &w : words)
        if (command.substr(w.begin, w.end - w.begin) == "|") {
            stages.push_back(trimmed(command.substr(from, w.begin - from)));
            from = w.end;
        }
    stages.push_back(trimmed(command.substr(from)));
    return stages;
}

std::string quoteArgument(std::string_view argument, Quoting quoting) {
    if (quoting == Quoting::WhenNeeded && !argument.empty() &&
        argument.find_first_of(" \t\r\n\"|") == std::string_view::npos)
        return std::string(argument);
    std::string out = "\"";
    std::size_t slashes = 0;
    for (char c : argument) {
        if (c == '\\') {
            ++slashes;
            continue;
        }
        out.append(c == '"' ? slashes * 2 + 1 : slashes, '\\');
        out += c;
        slashes = 0;
    }
    out.append(slashes * 2, '\\');
    out += '"';
    return out;
}

std::string batchFileText(std::string_view command) {
    return "@ECHO OFF\r\n" + std::string(command) + "\r\n";
}

std::string batchCommand(std::string_view fileText) {
    std::string command;
    std::size_t at = 0;
    while (at < fileText.size()) {
        std::vector<Word> words;
        const std::size_t end = scanLine(fileText, at, true, words);
        const std::string line = trimmed(fileText.substr(at, end - at));
        if (!line.empty() && !vb::equalsText(line, "@ECHO OFF")) {
            if (!command.empty()) command += ' ';
            command += line;
        }
        at = end + 1;
    }
    return command;
}

}  // namespace saltmarrow::platform
