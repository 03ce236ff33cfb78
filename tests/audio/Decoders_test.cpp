// What each decoder's console line says of its progress, and the decoder's
// command line for names that hold quotes and markers.
#include "audio/Decoders.h"

#include <gtest/gtest.h>

#include "platform/CommandLine.h"

using namespace saltmarrow;

TEST(Decoders, EachToolsLineGivesItsProgress) {
    const struct {
        const char *kind, *line;
        int progress;  // -1: the line tells none
    } cases[] = {
        {"mp3", " 01:01:23 Layer III, 128 kbps, 44100 Hz, joint stereo", 3683},
        {"mp3", "output: resampling 48000 Hz to 44100 Hz", -1},
        {"ogg", "\t[ 45.3%]", 45},
        {"ogg", "\t[ 100%]", 10},  // the digit before "%" falls off
        {"flac", "f.flac: 67% complete", 67},
        {"mpc", "0:12 decoded (45.6%)", 45},
        {"aac", "45% decoding x.aac.", 45},
        {"ape", "Progress: 12.5% (1.0 seconds remaining)", 12},
        {"wav", "anything 50%", -1},
    };
    for (const auto &c : cases)
        EXPECT_EQ(decoderProgress(c.kind, c.line).value_or(-1), c.progress) << c.kind << ": " << c.line;
}

TEST(Decoders, SourceAndTargetAreQuotedInOnePass) {
    // A source holding a quote and a marker reaches the tool as one argument,
    // and the target is not spliced into it.
    const auto args = platform::splitCommandLine(
        decoderCommand(decoderPrefix("/x y/madplay", "-v %s --output=wave:%d"), "/m/a\" %d.mp3", "/t/a.wav"));
    EXPECT_EQ(args,
              (std::vector<std::string>{"/x y/madplay", "-v", "/m/a\" %d.mp3", "--output=wave:/t/a.wav"}));
}
