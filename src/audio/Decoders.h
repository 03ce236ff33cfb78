#ifndef SALTMARROW_AUDIO_DECODERS_H
#define SALTMARROW_AUDIO_DECODERS_H

#include <optional>
#include <string>
#include <string_view>

namespace saltmarrow {

// Decoder command prefixes: the tool's path, a blank and its option string,
// in which "%s" stands for the source and "%d" for the target. Empty where
// the tool is absent.
struct DecoderCommands {
    std::string decodeCmdMp3;
    std::string decodeCmdOgg;
    std::string decodeCmdFlac;
    std::string decodeCmdApe;
    std::string decodeCmdMpc;
    std::string decodeCmdAac;
};

// How a source of one extension becomes a WAV file, and how its decoder's
// output is read. A WAV has no decoder.
struct DecoderKind {
    std::string_view kind;  // "mp3", "ape", "ogg", "flac", "mpc", "aac", "wav"
    std::string DecoderCommands::*command;
    int chunkSize;  // bytes of one read of the tool's output
};

// The row of an upper-cased extension; nothing for a kind without decoder.
std::optional<DecoderKind> decoderForExtension(std::string_view extension);

// The progress a decoder's line tells, in the bar's units (seconds for mp3,
// percent for the others); nothing if the line tells none.
std::optional<int> decoderProgress(std::string_view kind, std::string_view line);

// "hh:mm:ss" to seconds; any text that is not 8 characters long gives 0.
long clockTextToSeconds(std::string_view text);

// path + " " + options, the path quoted for the command line; "" without a tool.
std::string decoderPrefix(const std::string &tool, const std::string &options);
// The prefix with "%s" and "%d" replaced by the quoted source and target, in
// one pass: a "%d" in a source name stays what it is.
std::string decoderCommand(const std::string &prefix, const std::string &source, const std::string &target);

}  // namespace saltmarrow

#endif
