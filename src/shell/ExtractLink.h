#ifndef SALTMARROW_SHELL_EXTRACTLINK_H
#define SALTMARROW_SHELL_EXTRACTLINK_H

#include "extract/ExtractHost.h"

namespace saltmarrow {

class frmMain;

// mnuExtractTracks: without a reader device the user is asked to choose one;
// otherwise the extraction window, made (in the user's language) the first
// time, comes up and scans the disc.
void showExtractTracks(frmMain &main);

// The main form as the extraction windows see it.
ExtractHost extractHost(frmMain &main);

}  // namespace saltmarrow

#endif
