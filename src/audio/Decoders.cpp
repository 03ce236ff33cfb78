#include "audio/Decoders.h"

#include "platform/CommandLine.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace {

struct ExtensionRow {
    std::string_view extension;
    DecoderKind decoder;
};

// The Musepack decoder writes far more than the others, Monkey's Audio far less.
constexpr ExtensionRow kDecoders[] = {
    {"MP3", {"mp3", &DecoderCommands::decodeCmdMp3, 512}},
    {"MP2", {"mp3", &DecoderCommands::decodeCmdMp3, 512}},
    {"APE", {"ape", &DecoderCommands::decodeCmdApe, 256}},
    {"OGG", {"ogg", &DecoderCommands::decodeCmdOgg, 512}},
    {"FLAC", {"flac", &DecoderCommands::decodeCmdFlac, 512}},
    {"MPC", {"mpc", &DecoderCommands::decodeCmdMpc, 8192}},
    {"AAC", {"aac", &DecoderCommands::decodeCmdAac, 512}},
    {"MP4", {"aac", &DecoderCommands::decodeCmdAac, 512}},
    {"WAV", {"wav", nullptr, 512}},
};

int integerValue(std::string_view text) {
    return static_cast<int>(vb::Val(text));
}

// madplay: " 00:01:23 Layer III, ..." - the clock in front of "Layer".
std::optional<int> mp3Progress(std::string_view line) {
    const std::size_t p = vb::InStrRev(line, ":");
    if (p <= 5 || vb::Mid(line, p + 4, 1) != "L") return std::nullopt;
    return static_cast<int>(clockTextToSeconds(vb::Mid(line, p - 5, 8)));
}

std::optional<int> apeProgress(std::string_view line) {
    const std::size_t p = vb::InStrRev(line, "Progress: ");
    const std::size_t q = p ? vb::InStr(p, line, "%") : 0;
    if (q < p + 10) return std::nullopt;
    return integerValue(vb::Mid(line, p + 10, q - p - 10));
}

// oggdec: "[ 45.3%]". Deliberately read from the blank itself: the last digit
// before "%" falls off, and with it the fraction.
std::optional<int> oggProgress(std::string_view line) {
    const std::size_t q = vb::InStrRev(line, "%");
    const std::size_t s = q ? vb::InStrRev(line, " ", q) : 0;
    if (s == 0 || q < s + 2) return std::nullopt;
    return integerValue(vb::Mid(line, s, q - s - 1));
}

std::optional<int> flacProgress(std::string_view line) {
    const std::size_t q = vb::InStrRev(line, "%");
    const std::size_t s = q ? vb::InStrRev(line, " ", q) : 0;
    if (s == 0) return std::nullopt;
    return integerValue(vb::Mid(line, s + 1, q - s - 1));
}

std::optional<int> mpcProgress(std::string_view line) {
    const std::size_t q = vb::InStrRev(line, "%");
    const std::size_t d = q ? vb::InStrRev(line, "decoded (", q) : 0;
    if (d == 0) return std::nullopt;
    return integerValue(vb::Mid(line, d + 9, q - d - 9));
}

std::optional<int> aacProgress(std::string_view line) {
    const std::size_t q = vb::InStrRev(line, "%");
    if (q == 0) return std::nullopt;
    return integerValue(vb::Left(line, q - 1));
}

struct ProgressRow {
    std::string_view kind;
    std::optional<int> (*parse)(std::string_view line);
};

constexpr ProgressRow kProgress[] = {
    {"mp3", mp3Progress},   {"ape", apeProgress}, {"ogg", oggProgress},
    {"flac", flacProgress}, {"mpc", mpcProgress}, {"aac", aacProgress},
};

}  // namespace

std::optional<DecoderKind> decoderForExtension(std::string_view extension) {
    for (const auto &row : kDecoders)
        if (row.extension == extension) return row.decoder;
    return std::nullopt;
}

std::optional<int> decoderProgress(std::string_view kind, std::string_view line) {
    for (const auto &row : kProgress)
        if (row.kind == kind) return row.parse(line);
    return std::nullopt;
}

long clockTextToSeconds(std::string_view text) {
    if (text.size() != 8) return 0;
    return static_cast<long>(vb::Val(text.substr(0, 2)) * 3600 + vb::Val(text.substr(3, 2)) * 60 +
                             vb::Val(text.substr(6, 2)));
}

std::string decoderPrefix(const std::string &tool, const std::string &options) {
    return tool.empty() ? std::string() : platform::quoteArgument(tool) + " " + options;
}

std::string decoderCommand(const std::string &prefix, const std::string &source, const std::string &target) {
    std::string command;
    for (std::size_t i = 0; i < prefix.size(); ++i) {
        if (prefix[i] == '%' && i + 1 < prefix.size() && (prefix[i + 1] == 's' || prefix[i + 1] == 'd')) {
            command += platform::quoteArgument(prefix[i + 1] == 's' ? source : target);
            ++i;
        } else {
            command += prefix[i];
        }
    }
    return command;
}

}  // namespace saltmarrow
