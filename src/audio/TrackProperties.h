#ifndef SALTMARROW_AUDIO_TRACKPROPERTIES_H
#define SALTMARROW_AUDIO_TRACKPROPERTIES_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "audio/AudioHost.h"
#include "audio/AudioProject.h"

namespace saltmarrow {

// The fields of the track properties dialog as they stand.
struct TrackFields {
    std::string txtPause, txtStartMS, txtFinishMS;
    std::string txtTrackTitle, txtTrackArtist, txtTrackISRC;
    std::string PregapType;  // of the chosen option: optSilence, optPostgap, optPregap
    bool operator==(const TrackFields &) const = default;
};

struct AlbumFields {
    std::string txtAlbumTitle, txtAlbumArtist, txtAlbumCatalog;
};

// The option buttons and the gap kind each stands for.
struct GapOption {
    std::string_view control;
    std::string_view PregapType;
};
inline constexpr GapOption kGapOptions[] = {
    {"optSilence", "PREGAP"}, {"optPostgap", "POST_TRACK"}, {"optPregap", "PRE_TRACK"}};

// The fields of one track. A Finish of "00:00:00" is shown empty: unknown.
TrackFields loadTrack(const AudioObjects &track);
// Whether any field differs from the track.
bool checkChanges(const TrackFields &fields, const AudioObjects &track);
// cmdOK: the fields into the track and its row, then the album fields into
// the project.
void saveTrack(AudioProject &project, std::size_t row, const TrackFields &fields, const AlbumFields &album);

// A time field made whole: the digits padded with zeros on the right and
// ":" after every two, so that "0312" is "03:12:00". Nothing when a character
// other than ":" is not a digit.
std::optional<std::string> checkTime(std::string_view text);

// A digit typed into a time field at caret: the field's new text and caret,
// or nothing when the key is refused (not a digit, the field full, a first
// digit of the seconds above 5). ":" is stepped over, and put in where it is
// missing.
struct TimeEdit {
    std::string text;
    std::size_t caret = 0;
};
std::optional<TimeEdit> timeKey(std::string_view text, std::size_t caret, char key);
// The caret moved by the arrow keys (step -1 or +1): it never rests in front
// of a ":".
std::size_t timeCaret(std::size_t caret, int step, std::size_t size);

// Leaving a time field: it is made whole (or gets the track's value back when
// it holds other characters); a mark beyond the file's end snaps back to it,
// and a start later than the finish is pulled to the finish.
void leaveTimeField(TrackFields &fields, std::string TrackFields::*field, const AudioObjects &track);

// The dialog's status panels: the row, the file, its size, the length.
std::vector<std::string> statusPanels(const AudioObjects &track, std::size_t row, const AudioHost &host);

}  // namespace saltmarrow

#endif
