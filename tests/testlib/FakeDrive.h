#ifndef SALTMARROW_TESTS_FAKEDRIVE_H
#define SALTMARROW_TESTS_FAKEDRIVE_H

#include <string>
#include <vector>

namespace saltmarrow::platform {
class DriveLayer;
}

namespace saltmarrow::test {

// The state file of one fake CD writer (a Plextor on 0,1,0 / 1,0,0) whose
// inserted disc is medium; extra lines go into its section.
std::string fakeWriter(const std::string &medium, bool blank, const std::string &extra = {});
// A reader without a disc (a Lite-On DVD-ROM on 0,2,0 / 1,1,0).
std::string fakeReader();

// Makes the program address drives as the Windows tools do, for the fake's
// Windows personality, and returns that layer.
const platform::DriveLayer &useWindowsDriveLayer();

// Puts the fake drive under the tools' names into <appDir>/external (once),
// the real genisoimage as mkisofs, writes its state file and chooses the
// Windows drive layer.
void installFakeDrive(const std::string &appDir, const std::string &state);

// One drive of the fake's Linux personality: what the scan, drive-info and
// the kernel's CD-ROM table say of it, and the disc in it.
struct LinuxDrive {
    std::string path = "/dev/sr0";
    std::string vendor = "HL-DT-ST";
    std::string model = "DVDRAM GH24NSB0";
    std::string firmware = "LN01";
    bool writesCD = true;        // "Can write CD-R" and "Can write CD-RW"
    bool readsDVD = true;        // "Can read DVD"
    bool writesDVD = true;       // "Can write DVD-R"
    long maxWriteKbs = 7056;     // "Maximum writing speed: %d kB/s"
    bool burnProof = true;       // "BurnProof supported: yes"
    std::string medium = "n/a";  // as the Windows personality names it; "a;b" changes per call
    std::string extra;           // further state lines of its section
};

// The state file and the kernel table of the drives; global lines go first.
std::string linuxState(const std::vector<LinuxDrive> &drives, const std::string &global = {});
std::string kernelCdromTable(const std::vector<LinuxDrive> &drives);

// installFakeDrive for the Linux personality: also links the fake as
// dvd+rw-mediainfo, writes the kernel table to <appDir>/external/cdrom.info
// and makes the program use a Linux drive layer that reads it. Returns it.
const platform::DriveLayer &installLinuxFakeDrive(const std::string &appDir,
                                                  const std::vector<LinuxDrive> &drives,
                                                  const std::string &global = {});

}  // namespace saltmarrow::test

#endif
