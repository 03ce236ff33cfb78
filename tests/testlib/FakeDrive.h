#ifndef SALTMARROW_TESTS_FAKEDRIVE_H
#define SALTMARROW_TESTS_FAKEDRIVE_H

#include <string>
#include <vector>

namespace saltmarrow::platform {
class DriveLayer;
}

namespace saltmarrow::test {

// One drive of the fake (tests/fixtures/fakedrive): what the scan,
// drive-info and the kernel's CD-ROM table say of it, and the disc in it.
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
    std::string medium = "n/a";  // CD-R, DVD+R, ...; "a;b" changes per query
    std::string extra;           // further state lines of its section
};

// A CD writer with disc in it ("blank = yes\n...") and a DVD reader.
LinuxDrive cdWriter(const std::string &medium, const std::string &disc);
LinuxDrive dvdReader();
inline const std::string kBlankCDR = "blank = yes\nappendable = no\nrewritable = no\ncapacity = 359849\n";
inline const std::string kUsedCDRW = "blank = no\nappendable = no\nrewritable = yes\ncapacity = 359849\n";

// The state file and the kernel table of the drives; global lines go first.
std::string fakeState(const std::vector<LinuxDrive> &drives, const std::string &global = {});
std::string kernelCdromTable(const std::vector<LinuxDrive> &drives);

// Puts the fake under the tools' names into <appDir>/external (once), the
// real genisoimage as mkisofs and the real toc2cue, writes its state file and
// a kernel table beside it, and makes the program use a drive layer that
// reads that table.
const platform::DriveLayer &installFakeDrive(const std::string &appDir, const std::vector<LinuxDrive> &drives,
                                             const std::string &global = {});
// The command lines the fake was started with in appDir, oldest first; only
// those that start with prefix, if one is given.
std::vector<std::string> fakeCalls(const std::string &appDir, const std::string &prefix = {});

}  // namespace saltmarrow::test

#endif
