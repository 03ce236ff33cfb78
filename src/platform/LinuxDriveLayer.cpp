#include "platform/LinuxDriveLayer.h"

#include <fcntl.h>
#include <linux/cdrom.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "support/mdlFunctions.h"

namespace saltmarrow::platform {

using namespace vb;

namespace {

constexpr std::string_view kScanSeparator = " : ";  // "%s : %s, %s, %s"

// Scan outputs that cannot list drives, in the order they are tested.
struct ScanProblem {
    std::string_view phrase;  // empty: the output is empty
    std::string_view key;
};
constexpr ScanProblem kScanProblems[] = {
    {"", "msgCdrdaoFail"},
    {"Unable to access sysfs filesystem", "msgNoHostAdapters"},
    {"Unable to glob through sysfs filesystem", "msgNoHostAdapters"},
};

// Rows of the kernel's CD-ROM table and the feature words they stand for.
enum class Side { Reads, Writes };
struct KernelFeature {
    std::string_view row;
    Side side;
    std::string_view word;
};
constexpr KernelFeature kKernelFeatures[] = {
    {"Can write CD-R", Side::Writes, "CD-R"},      {"Can write CD-RW", Side::Writes, "CD-RW"},
    {"Can read DVD", Side::Reads, "DVD-ROM"},      {"Can write DVD-R", Side::Writes, "DVD-R"},
    {"Can write DVD-RAM", Side::Reads, "DVD-RAM"}, {"Can write DVD-RAM", Side::Writes, "DVD-RAM"},
    {"Can read MRW", Side::Reads, "MRW-READ"},     {"Can write MRW", Side::Writes, "MRW-WRITE"},
};
// Every drive the kernel lists reads CDs.
constexpr std::string_view kCDReads = "CD-R CD-RW CD-ROM ";

std::vector<std::string> outputLines(std::string_view output) {
    std::vector<std::string> lines;
    std::string line;
    std::istringstream in{std::string(output)};
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

// "/dev/sr0", "0,6,0" or "ATA:0,0,0": what cdrdao's --device takes.
bool isAddress(std::string_view text) {
    if (text.empty()) return false;
    if (text.front() == '/') return text.find_first_of(" \t") == std::string_view::npos;
    const std::size_t colon = text.find(':');
    const std::string_view numbers = colon == std::string_view::npos ? text : text.substr(colon + 1);
    int commas = 0;
    bool digit = false;
    for (char c : numbers) {
        if (c == ',') {
            if (!digit) return false;
            ++commas;
            digit = false;
        } else if (c >= '0' && c <= '9') {
            digit = true;
        } else {
            return false;
        }
    }
    return commas == 2 && digit;
}

bool isDeviceLine(std::string_view line) {
    const std::size_t at = line.find(kScanSeparator);
    if (at == std::string_view::npos || !isAddress(line.substr(0, at))) return false;
    const std::string_view rest = line.substr(at + kScanSeparator.size());
    const std::size_t first = rest.find(", ");
    return first != std::string_view::npos && rest.rfind(", ") > first;
}

// The kernel's name of the drive behind a device path ("/dev/cdrom" is
// usually a link to "/dev/sr0").
std::string kernelName(std::string_view address) {
    std::error_code ec;
    std::filesystem::path path{std::string(address)};
    const std::filesystem::path real = std::filesystem::canonical(path, ec);
    return (ec ? path : real).filename().string();
}

}  // namespace

LinuxDriveLayer::LinuxDriveLayer(std::string kernelInfo) : kernelInfo_(std::move(kernelInfo)) {}

std::vector<std::string> LinuxDriveLayer::deviceLines(std::string_view scanOutput) const {
    std::vector<std::string> lines;
    for (std::string &line : outputLines(scanOutput))
        if (isDeviceLine(line)) lines.push_back(std::move(line));
    return lines;
}

std::optional<std::string_view> LinuxDriveLayer::scanProblem(std::string_view scanOutput) const {
    for (const ScanProblem &row : kScanProblems) {
        const bool hit =
            row.phrase.empty() ? scanOutput.empty() : InStr(scanOutput, row.phrase, Compare::Text) != 0;
        if (hit) return row.key;
    }
    if (deviceLines(scanOutput).empty()) return "msgNoDevicesFound";
    return std::nullopt;
}

ScannedDrive LinuxDriveLayer::parseScanLine(std::string_view line) const {
    // "/dev/sr0 : HL-DT-ST, DVDRAM GH24NSB0, LN01". The path comes first and
    // holds no " : ", so a model name with ": " in it stays whole.
    ScannedDrive drive;
    const std::size_t at = line.find(kScanSeparator);
    if (at == std::string_view::npos) return drive;
    drive.address = std::string(line.substr(0, at));
    std::string_view rest = line.substr(at + kScanSeparator.size());
    const std::size_t firstComma = rest.find(", ");
    const std::size_t lastComma = rest.rfind(", ");
    std::string vendor = Trim(rest.substr(0, firstComma));
    std::string model = firstComma == lastComma
                            ? std::string()
                            : Trim(rest.substr(firstComma + 2, lastComma - firstComma - 2));
    drive.firmware =
        Trim(lastComma == std::string_view::npos ? std::string_view() : rest.substr(lastComma + 2));
    drive.deviceName = vendor + ", " + model;
    drive.fullName = drive.address + ": " + drive.deviceName;
    return drive;
}

std::string LinuxDriveLayer::addressOf(std::string_view listText) const {
    const std::size_t at = listText.find(": ");
    return std::string(at == std::string_view::npos ? listText : listText.substr(0, at));
}

std::optional<std::string> LinuxDriveLayer::wellFormedAddress(std::string_view text) const {
    std::string address = addressOf(text);
    if (isAddress(address)) return address;
    return std::nullopt;
}

std::string LinuxDriveLayer::cdrdaoDevice(std::string_view address, bool, bool) const {
    return std::string(address);  // no layers, and cdrdao here has no locked form
}

std::string LinuxDriveLayer::dvdDevice(std::string_view address, bool, bool) const {
    return std::string(address);
}

std::optional<DriveCapabilities> LinuxDriveLayer::capabilities(std::string_view address) const {
    std::ifstream in(kernelInfo_);
    if (!in) return std::nullopt;
    const std::string table{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    return parseKernelCdromInfo(table, kernelName(address));
}

std::optional<bool> LinuxDriveLayer::discPresent(std::string_view address) const {
    const std::string path(address);
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0 || !S_ISBLK(info.st_mode)) return std::nullopt;
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) return std::nullopt;
    const int status = ::ioctl(fd, CDROM_DRIVE_STATUS, CDSL_CURRENT);
    ::close(fd);
    switch (status) {
        case CDS_DISC_OK:
            return true;
        case CDS_NO_DISC:
        case CDS_TRAY_OPEN:
            return false;
        default:
            return std::nullopt;  // the drive cannot tell, or is still busy: the tools ask
    }
}

std::optional<DriveCapabilities> parseKernelCdromInfo(std::string_view table, std::string_view driveName) {
    // "drive name:\t\tsr1\tsr0" names the columns; every row below has one
    // value per column: "Can write CD-R:\t\t1\t0".
    std::vector<std::pair<std::string, std::vector<std::string>>> rows;
    for (const std::string &line : outputLines(table)) {
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos) continue;
        std::istringstream values(line.substr(colon + 1));
        std::vector<std::string> columns{std::istream_iterator<std::string>(values), {}};
        rows.emplace_back(line.substr(0, colon), std::move(columns));
    }
    std::optional<std::size_t> column;
    for (const auto &[name, values] : rows)
        if (name == "drive name")
            for (std::size_t i = 0; i < values.size() && !column; ++i)
                if (values[i] == driveName) column = i;
    if (!column) return std::nullopt;

    const auto flag = [&](std::string_view row) {
        for (const auto &[name, values] : rows)
            if (name == row) return *column < values.size() && values[*column] == "1";
        return false;
    };
    DriveCapabilities caps;
    caps.readFeatures = kCDReads;
    for (const KernelFeature &feature : kKernelFeatures) {
        if (!flag(feature.row)) continue;
        std::string &words = feature.side == Side::Reads ? caps.readFeatures : caps.writeFeatures;
        words += std::string(feature.word) + " ";
    }
    caps.writesDVD = flag("Can write DVD-R") || flag("Can write DVD-RAM");
    caps.readsDVD = flag("Can read DVD");
    return caps;
}

}  // namespace saltmarrow::platform
