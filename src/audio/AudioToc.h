#ifndef SALTMARROW_AUDIO_AUDIOTOC_H
#define SALTMARROW_AUDIO_AUDIOTOC_H

#include <cstddef>
#include <string>

#include "audio/AudioProject.h"

namespace saltmarrow {

// authored.toc and CDText.txt, as the compile writes them: CR LF line ends,
// strings in double quotes with the quotes of titles and artists removed.

// "AUDIO" for the audio kinds, "MODE1" for ISO, DAT and BIN, else "".
std::string modeType(const std::string &path);

// One CD_TEXT line, the language map only with languageMap (the album's);
// empty when title and artist are. Double quotes are removed from both
// arguments in place, so the project loses them too.
std::string cdText(bool languageMap, std::string &title, std::string &artist);

// From the catalog to the blank lines in front of the first track.
std::string tocHead(AudioProject &project, bool useCDText);

// The block of one row: TRACK AUDIO, ISRC, CD-Text, the pause and FILE
// statements of its PregapType. path is the file the TOC names (empty: the
// source itself). lastTocFile is the path of the previous block's FILE
// statement, and becomes this one's.
std::string tocTrack(AudioProject &project, std::size_t row, const std::string &path, bool useCDText,
                     std::string &lastTocFile);

// CDText.txt: the album line and an empty line, then one line per track.
std::string cdTextHead(const AudioProject &project);
std::string cdTextLine(const AudioObjects &track, const std::string &albumArtist);

}  // namespace saltmarrow

#endif
