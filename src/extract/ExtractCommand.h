#ifndef SALTMARROW_EXTRACT_EXTRACTCOMMAND_H
#define SALTMARROW_EXTRACT_EXTRACTCOMMAND_H

#include <string>

#include "extract/ExtractHost.h"

namespace saltmarrow {

// The scan of the disc in the reader. icedax prints a track's start, its
// kind and its names only at the levels "sectors", "summary" and "titles";
// "toc" alone gives the length and nothing else.
std::string scanCommand(const std::string &cdda2wav, const std::string &device);

// What the tag arguments of an encoder row are given: %1 the disc's artist,
// %2 its album, %3 the row number (bare), %4 the title, %5 the track's artist.
struct TagValues {
    std::string artist, album, number, title, trackArtist;
};

// One run of cdda2wav for tracks first to last, by their numbers on the disc,
// into the encoder of the row, or into the target itself for "Wave".
struct ExtractCall {
    std::string cdda2wav;  // path of the tool
    std::string device;    // dev= of the reader
    int firstTrack = 1;
    int lastTrack = 1;
    bool image = false;          // the whole disc into one file
    std::string externalFolder;  // where the encoders stand
    EncoderRow encoder;
    std::string target;  // path, with the extension
    TagValues tags;
};

// The one line of extract.bat. Every path and every name goes through the
// platform's quoting, so that no title can become a stage or an option.
std::string extractCommand(const ExtractCall &call);

// The encoder that a row names: no program for "Wave".
bool isWave(const EncoderRow &encoder);

}  // namespace saltmarrow

#endif
