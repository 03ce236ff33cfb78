#ifndef SALTMARROW_AUDIO_AUDIOOBJECTS_H
#define SALTMARROW_AUDIO_AUDIOOBJECTS_H

#include <cstdint>
#include <string>

namespace saltmarrow {

// One track of an audio project. Times are "mm:ss:ff" texts.
struct AudioObjects {
    std::string Text;        // name shown in the list row when added
    std::string Track;       // row name while a sheet is imported
    std::string Pause;       // pause or gap
    std::string Start;       // mark in, within the source
    std::string Finish;      // mark out as the header gave it: the file's whole length
    std::string OrigLength;  // the file's whole length
    std::string Index;       // position when added, "01" onward
    std::string FullPath;
    std::string Length;  // length on disc
    std::int32_t Millisecs = 0;
    std::string ID3merged;  // track number, " - " and title, or the title alone
    std::string Album;
    std::string Artist;
    std::string Comments;
    std::string Genre;
    std::string Title;
    std::string TrackNumber;  // two digits, or empty
    std::string Year;
    std::string PregapType;  // "PREGAP", "PRE_TRACK" or "POST_TRACK"
    std::string ISRC;
    float Frequency = 0;
    float DataLength = 0;
    std::int16_t Channels = 0;
    double Bitrate = 0;
    std::int32_t Samples = 0;
    bool IsSplit = false;
};

}  // namespace saltmarrow

#endif
