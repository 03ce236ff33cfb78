// A data project of 100,000 files made into an .iso through the program's
// path (path list, options, genisoimage run through DOSOutputs with the
// progress lines read as the form reads them), beside genisoimage alone on
// the same path list and options. Goal: the program's path at most 1.05
// times genisoimage's time.
// Then the program's own CPU while a 700 MB stream runs from genisoimage
// through the pipeline of command.bat into the fake CD writer: at most 2 %
// of one core.
//   bench_iso_build [files]     (default 100000)
#include <QCoreApplication>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

#include "data/IsoBuild.h"
#include "discops/DataWrite.h"
#include "discops/SheetFile.h"
#include "exec/DOSOutputs.h"
#include "platform/ChildProcess.h"
#include "platform/CommandLine.h"
#include "platform/Dialogs.h"
#include "platform/EventWait.h"

namespace fs = std::filesystem;
using namespace saltmarrow;

namespace {

double seconds(std::chrono::steady_clock::time_point since) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

double cpuSeconds() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return static_cast<double>(u.ru_utime.tv_sec + u.ru_stime.tv_sec) +
           static_cast<double>(u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

// The save dialog names the image; every other question is answered OK.
class TargetDialogs : public platform::Dialogs {
public:
    std::string target;
    int MsgBoxOverMe(const std::string &, int, const std::string &) override { return platform::mb::OK; }
    std::optional<std::vector<std::string>> openFile(const platform::FileRequest &) override { return {}; }
    std::optional<std::string> saveFile(const platform::FileRequest &) override { return target; }
    std::optional<platform::FolderChoice> browseFolder(const std::string &, const std::string &,
                                                       const std::string &, bool) override {
        return {};
    }
    std::optional<std::string> inputBox(const std::string &, const std::string &, const std::string &) override {
        return {};
    }
    std::optional<platform::FontChoice> chooseFont(const platform::FontChoice &) override { return {}; }
};

// top/gNN/dNNNN/fNNNNNN.dat of 100 bytes: 100 files a folder.
void makeTree(const std::string &top, long files) {
    const std::string bytes(100, 'x');
    for (long d = 0; d < files / 100; ++d) {
        const std::string dir = top + "/g" + std::to_string(d / 100) + "/d" + std::to_string(d);
        fs::create_directories(dir);
        for (int f = 0; f < 100; ++f) {
            const int fd = ::open((dir + "/f" + std::to_string(d * 100 + f) + ".dat").c_str(), O_CREAT | O_WRONLY, 0644);
            if (fd >= 0 && ::write(fd, bytes.data(), bytes.size()) >= 0) ::close(fd);
        }
    }
}

// Runs a command line without a shell and drains what it prints.
double runAlone(const std::string &line) {
    const auto t = std::chrono::steady_clock::now();
    platform::ChildProcess p;
    if (!p.start(line, {})) return -1;
    char buf[65536];
    for (bool ended = false; !ended;) {
        ended = p.waitFor(20);
        while (p.read(buf, sizeof buf) > 0) {
        }
    }
    return p.exitCode() == 0 ? seconds(t) : -1;
}

bool buildBench(const std::string &scratch, long files) {
    const std::string top = scratch + "/top", temp = scratch + "/TEMP";
    fs::create_directories(temp);
    auto t = std::chrono::steady_clock::now();
    makeTree(top, files);
    std::printf("iso_build: %ld files, tree made in %.1f s\n", files, seconds(t));

    TargetDialogs dialogs;
    data::DataProject project;
    data::DataHost host;
    host.dialogs = &dialogs;
    host.message = [](std::string_view key) { return std::string(key); };
    host.letEventsRun = [] { QCoreApplication::processEvents(); };
    data::DataJob job(project, host);
    job.ClearList("BENCH");
    job.addFolder(top, "", true, false);
    data::IsoBuildHost buildHost;
    buildHost.tempFolder = temp;
    buildHost.mkisofs = "genisoimage";
    buildHost.charset = "utf-8";
    buildHost.waitForEvents = platform::waitForEvents;
    data::IsoBuild build(job, buildHost);
    data::BurnClick click;
    click.chkCreateISO = true;
    data::IsoSettings iso;
    iso.boxes[static_cast<std::size_t>(data::IsoBox::Joliet)] = true;
    iso.boxes[static_cast<std::size_t>(data::IsoBox::RockRidge)] = true;
    click.isoSettings = [&] { return iso; };

    t = std::chrono::steady_clock::now();
    build.buildFileList(true);
    std::printf("  the path list alone: %.3f s\n", seconds(t));
    double program = 1e9, alone = 1e9;
    // Each goes first in every other round, so that neither always finds
    // the disk busy with what the other wrote.
    for (int round = 0; round < 6; ++round) {
        const auto viaProgram = [&] {
            dialogs.target = scratch + "/program.iso";
            const auto t0 = std::chrono::steady_clock::now();
            build.cmdBurn_Click(click);
            const double p = seconds(t0);
            if (!fs::exists(dialogs.target)) return false;
            program = std::min(program, p);
            return true;
        };
        const auto viaTool = [&] {
            const double a = runAlone(platform::quoteArgument("genisoimage") + " -o " +
                                      platform::quoteArgument(scratch + "/alone.iso") + build.getIsoCommand(iso));
            alone = a < 0 ? alone : std::min(alone, a);
            return a >= 0;
        };
        if (!(round % 2 ? viaTool() && viaProgram() : viaProgram() && viaTool()))
            return std::printf("  a build FAILED\n"), false;
        fs::remove(scratch + "/program.iso");
        fs::remove(scratch + "/alone.iso");
    }
    const double ratio = program / alone;
    std::printf("  the program's path (list, options, run, progress): %.2f s\n", program);
    std::printf("  genisoimage alone on the same list:                %.2f s\n", alone);
    std::printf("  ratio %.3f, goal <= 1.05 %s\n", ratio, ratio <= 1.05 ? "met" : "MISSED");
    fs::remove_all(top);
    return ratio <= 1.05;
}

// The path of a program on PATH, for the link the fake drive's folder gets.
std::string onPath(const std::string &name) {
    const char *path = std::getenv("PATH");
    std::string folders = path ? path : "/usr/bin";
    for (std::size_t at = 0; at <= folders.size();) {
        const std::size_t end = std::min(folders.find(':', at), folders.size());
        const std::string candidate = folders.substr(at, end - at) + "/" + name;
        if (::access(candidate.c_str(), X_OK) == 0) return candidate;
        at = end + 1;
    }
    return name;
}

bool pipelineBench(const std::string &scratch) {
    const std::string external = scratch + "/external", temp = external + "/TEMP";
    fs::create_directories(temp);
    fs::create_symlink(std::string(SALTMARROW_FIXTURE_DIR) + "/fakedrive", external + "/cdrdao");
    fs::create_symlink(onPath("genisoimage"), external + "/mkisofs");
    discops::writeSheet(external + "/fakedrive.state",
                        "[device]\npath = /dev/sr0\nvendor = PLEXTOR\nmodel = PX-W4012A\nfirmware = 1.01\n"
                        "max_write_kbs = 7056\nmedium = CD-R\nblank = yes\ncapacity = 359849\n");
    std::ofstream(scratch + "/stream.bin").close();
    fs::resize_file(scratch + "/stream.bin", 700000000);
    discops::writeSheet(temp + "/filelist.txt", "/stream.bin=" + scratch + "/stream.bin");
    data::IsoCommandInput in;
    in.charset = "utf-8";
    in.listFile = temp + "/filelist.txt";
    const std::string options = data::getIsoCommand(in);
    const std::string mkisofs = platform::quoteArgument(external + "/mkisofs");

    DOSOutputs dos;
    long lines = 0;
    bool succeeded = false;
    dos.pump = [] { QCoreApplication::processEvents(); };
    dos.waitForEvents = platform::waitForEvents;
    dos.ReceiveOutputs = [&](const std::string &line) {
        ++lines;
        succeeded = succeeded || line.find("finished successfully") != std::string::npos;
    };
    dos.ExecuteCommand(mkisofs + " -print-size" + options);
    const std::optional<double> extents = discops::totalExtents(dos.totalOutput);
    if (!extents) return std::printf("pipeline: the dry run FAILED\n"), false;
    discops::writeSheet(temp + "/mkisofs.toc", discops::mkisofsToc(*extents, false));
    discops::writeSheet(temp + "/command.bat",
                        platform::batchFileText(mkisofs + " -quiet " + options + " | " +
                                                platform::quoteArgument(external + "/cdrdao") +
                                                " write --device /dev/sr0 --driver generic-mmc:0x10 -n "
                                                "--buffers 256 -v 2 " +
                                                platform::quoteArgument(temp + "/mkisofs.toc")));
    const double cpu0 = cpuSeconds();
    const auto t0 = std::chrono::steady_clock::now();
    dos.ExecuteCommand(platform::quoteArgument(temp + "/command.bat"), 256, 1, external);
    const double wall = seconds(t0), cpu = cpuSeconds() - cpu0;
    const double share = 100.0 * cpu / wall;
    std::printf("pipeline: %.0f extents from genisoimage into the fake cdrdao in %.1f s, %ld lines, %s\n", *extents,
                wall, lines, succeeded ? "written" : "NOT WRITTEN");
    std::printf("  the program's own CPU %.3f s = %.2f %% of one core, goal <= 2 %% %s\n", cpu, share,
                share <= 2.0 ? "met" : "MISSED");
    return succeeded && share <= 2.0;
}

}  // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    const long files = argc > 1 ? std::atol(argv[1]) : 100000;
    std::string scratch = (fs::temp_directory_path() / "saltmarrow-bench-XXXXXX").string();
    if (!mkdtemp(scratch.data())) return 2;
    bool ok = buildBench(scratch, files);
    ok = pipelineBench(scratch) && ok;
    fs::remove_all(scratch);
    return ok ? 0 : 1;
}
