#ifndef SALTMARROW_AUDIO_LISTIMPORT_H
#define SALTMARROW_AUDIO_LISTIMPORT_H

#include <string>

#include "audio/AudioHost.h"
#include "audio/AudioProject.h"

namespace saltmarrow {

// Foreign lists into the audio project. Each import appends to the project and
// only reads the list. Files it names that are missing where the list says but
// lie in the list's own folder are taken from there, and the user is told once,
// at the end, that paths were repaired. The row names follow mnuCDText
// (options.mnuCDText); the caller updates the totals afterwards.

// M3U (also extended and UTF-8 .m3u8), PLS and BPL play lists and lines of
// "file:" URLs. Every file is added as addTrack would add it; a line that
// names nothing that can be found is passed over without a word.
void importTrackList(AudioProject &project, const std::string &path, const AddOptions &options,
                     const AudioHost &host);

// A cue sheet: one track per AUDIO track, on one file or on many; the gaps
// come back as PREGAP, PRE_TRACK (INDEX 00 in front of the track's own audio)
// or POST_TRACK (the tail of the previous file), and the CD-Text if the user
// wants it.
void importCUEFile(AudioProject &project, const std::string &path, const AddOptions &options,
                   const AudioHost &host);

// A cdrdao TOC file, also one that the compile wrote: its FILE statements,
// PREGAP and START gaps, ISRC, CATALOG and CD-Text.
void importTOCFile(AudioProject &project, const std::string &path, const AddOptions &options,
                   const AudioHost &host);

// Routes a list by its kind ("CUE", "TOC", "M3U", "M3U8", "PLS", "BPL"). A
// list that is being read already (one that names itself, or one naming it
// back) is passed over.
void importList(AudioProject &project, const std::string &kind, const std::string &path,
                const AddOptions &options, const AudioHost &host);

}  // namespace saltmarrow

#endif
