#ifndef SALTMARROW_AUDIO_TRACKSPLIT_H
#define SALTMARROW_AUDIO_TRACKSPLIT_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "audio/AudioHost.h"
#include "audio/AudioProject.h"

namespace saltmarrow {

// Cuts the project's one track into pieces of the given lengths ("mm:ss:ff"),
// one after the other from the start of its file. The first piece is the track
// itself; the others follow it as PRE_TRACK rows on the same file. A length
// that is not a time, or does not fit into what is left of the file, is
// dropped; what is left behind the last length is the last piece. Returns the
// number of pieces, 0 when nothing was cut.
std::size_t makePieces(AudioProject &project, const std::vector<std::string> &lengths);

// The words of a typed list of lengths: anything separated by blanks.
std::vector<std::string> lengthsFromText(std::string_view text);

// Where the lengths of a split come from: the disc database's entry for the
// album, with its names, or a list the user types.
enum class SplitSource { Database, Typed };

// mnuSplit: only a project of one track of known length is split. The names
// of a database entry go to the pieces, and the rows are named again with
// useCDText. True when the track was cut.
bool splitTrack(AudioProject &project, SplitSource source, bool useCDText, const AudioHost &host);

}  // namespace saltmarrow

#endif
