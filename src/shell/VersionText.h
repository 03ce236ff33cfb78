#ifndef SALTMARROW_SHELL_VERSIONTEXT_H
#define SALTMARROW_SHELL_VERSIONTEXT_H

#include <string>

namespace saltmarrow {

// Major.minor, a letter for a revision above 0 (1 gives "a"), then the
// pre-release label when there is one.
std::string versionText(int major, int minor, int revision, const std::string &preRelease = {});

}  // namespace saltmarrow

#endif
