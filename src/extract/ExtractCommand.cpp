#include "extract/ExtractCommand.h"

#include "extract/ExtractNames.h"
#include "platform/CommandLine.h"

namespace saltmarrow {

namespace {

std::string quoted(std::string_view text) {
    return platform::quoteArgument(text);
}

std::string deviceArgument(const std::string &device) {
    return platform::quoteArgument("dev=" + device, platform::Quoting::WhenNeeded);
}

}  // namespace

bool isWave(const EncoderRow &encoder) {
    return encoder[EncName] == "Wave";
}

std::string scanCommand(const std::string &cdda2wav, const std::string &device) {
    return quoted(cdda2wav) + " " + deviceArgument(device) + " -J -gui -H -B -v toc,summary,sectors,titles";
}

std::string extractCommand(const ExtractCall &c) {
    std::string line = quoted(c.cdda2wav) + " " + deviceArgument(c.device);
    line += c.image ? " -gui -H -x -t" : " -gui -B -H -x -t";
    line += std::to_string(c.firstTrack) + "+" + std::to_string(c.lastTrack);
    const std::string target = quoted(c.target);
    if (isWave(c.encoder)) return line + " " + target;

    // The image run also takes the older markers %1 and %2 for source and
    // target; a row written with them works as it always did.
    const Marker files[] = {{"%in", "-"}, {"%out", target}, {"%1", "-"}, {"%2", target}};
    const std::span<const Marker> fileMarkers(files, c.image ? 4 : 2);
    const Marker tags[] = {{"%1", quoted(c.tags.artist)},
                           {"%2", quoted(c.tags.album)},
                           {"%3", c.tags.number},
                           {"%4", quoted(c.tags.title)},
                           {"%5", quoted(c.tags.trackArtist)}};
    return line + " - | " + quoted(c.externalFolder + "/" + c.encoder[EncProgram]) + " " +
           replaceMarkers(c.encoder[EncArguments], fileMarkers) + " " +
           replaceMarkers(c.encoder[EncTags], tags);
}

}  // namespace saltmarrow
