#ifndef SALTMARROW_TESTS_FAKEDRIVE_H
#define SALTMARROW_TESTS_FAKEDRIVE_H

#include <string>

namespace saltmarrow::test {

// The state file of one fake CD writer (a Plextor on 0,1,0 / 1,0,0) whose
// inserted disc is medium; extra lines go into its section.
std::string fakeWriter(const std::string &medium, bool blank, const std::string &extra = {});
// A reader without a disc (a Lite-On DVD-ROM on 0,2,0 / 1,1,0).
std::string fakeReader();

// Puts the fake drive under the tools' names into <appDir>/external (once),
// the real genisoimage as mkisofs, and writes its state file.
void installFakeDrive(const std::string &appDir, const std::string &state);

}  // namespace saltmarrow::test

#endif
