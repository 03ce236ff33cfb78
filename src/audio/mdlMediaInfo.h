#ifndef SALTMARROW_AUDIO_MDLMEDIAINFO_H
#define SALTMARROW_AUDIO_MDLMEDIAINFO_H

#include <cstdint>
#include <string>
#include <string_view>

namespace saltmarrow {

// Stream and tag data of one audio file, read from its headers.
struct MediaFileInfo {
    std::int32_t Millisecs = 0;
    std::int32_t Frequency = 0;  // Hz; 0 when unknown
    std::string FileName;        // the path given; empty when there was no such file
    std::int16_t Channels = 0;
    double Bitrate = 0;  // kbit/s; twice the average for mono Ogg Vorbis
    std::string Artist;
    std::string Album;
    std::string Year;
    std::string Comments;
    std::string Genre;  // a name, after the genre table
    std::int16_t TrackNumber = 0;
    std::string Title;
    bool IsVBR = false;
    std::int32_t Samples = 0;  // per channel
    double DataLength = 0;     // bytes, the file less the tags that were found
};

// Reads the headers of the file at path, choosing the readers by extension
// (MP3, MP2, OGG, FLAC, AAC, WAV). Nothing is decoded and only the bytes the
// readers need are read. A missing file gives an empty record; a damaged one
// gives whatever could be read before the damage. Never throws.
MediaFileInfo readMediaInfo(const std::string &path);

// Display names of the four MPEG channel modes, by the mode's two bits.
std::string_view channelModeName(int mode);

}  // namespace saltmarrow

#endif
