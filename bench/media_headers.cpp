// readMediaInfo over 2,000 files (WAV, MP3, Ogg Vorbis, FLAC, with tags),
// against a baseline that only opens each file, asks its size and reads its
// first 4 KiB and last 128 bytes. Warm cache: one untimed pass of each first,
// then the two alternate so that both see the same machine. Goal: at most
// 1.5 times the baseline's time.
//   bench_media_headers [rounds]     (default 9; needs sox, lame, oggenc, flac)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "audio/mdlMediaInfo.h"
#include "platform/ChildProcess.h"
#include "platform/CommandLine.h"

namespace fs = std::filesystem;

namespace {

constexpr int kFiles = 2000;

// Runs a tool in folder without a shell; true if it ended well.
bool run(const fs::path &folder, const std::vector<std::string> &arguments) {
    std::string line;
    for (const std::string &a : arguments) line += " " + saltmarrow::platform::quoteArgument(a);
    saltmarrow::platform::ChildProcess process;
    if (!process.start(line.substr(1), folder.string())) return false;
    char buffer[4096];
    while (!process.waitFor(50))
        while (process.read(buffer, sizeof buffer) > 0) {
        }
    return process.exitCode() == 0;
}

// A few real files of each format, made by the tools, then copied to 2,000.
std::vector<std::string> makeFiles(const fs::path &dir) {
    const std::vector<std::string> tags = {"--tt",     "A Title", "--ta", "An Artist", "--tl",
                                           "An Album", "--ty",    "2004", "--tn",      "3",
                                           "--tg",     "Jazz",    "--tc", "note"};
    const std::vector<std::string> vorbis = {"-t", "A Title", "-a", "An Artist", "-l", "An Album",
                                             "-d", "2004",    "-N", "3",         "-G", "Jazz"};
    const auto with = [](std::vector<std::string> head, const std::vector<std::string> &middle,
                         const std::vector<std::string> &tail) {
        head.insert(head.end(), middle.begin(), middle.end());
        head.insert(head.end(), tail.begin(), tail.end());
        return head;
    };
    const bool ok =
        run(dir, {"sox", "-n", "-r", "44100", "-c", "2", "-b", "16", "s.wav", "synth", "1", "pinknoise",
                  "vol", "0.5"}) &&
        run(dir, {"sox", "-n", "-r", "22050", "-c", "1", "-b", "8", "m.wav", "synth", "1", "sine", "440"}) &&
        run(dir, with({"lame", "--quiet", "-b", "192", "--id3v2-latin1"}, tags,
                      {"--add-id3v2", "s.wav", "t0.mp3"})) &&
        run(dir, with({"lame", "--quiet", "-V", "2", "--id3v2-latin1"}, tags,
                      {"--add-id3v2", "s.wav", "t1.mp3"})) &&
        run(dir, with({"lame", "--quiet", "-b", "128"}, tags, {"--id3v1-only", "s.wav", "t2.mp3"})) &&
        run(dir, with({"oggenc", "-Q"}, vorbis, {"s.wav", "-o", "t0.ogg"})) &&
        run(dir, with({"oggenc", "-Q"}, vorbis, {"m.wav", "-o", "t1.ogg"})) &&
        run(dir, {"flac", "-s", "-T", "TITLE=A Title", "-T", "ARTIST=An Artist", "-T", "ALBUM=Album", "-T",
                  "TRACKNUMBER=3", "s.wav", "-o", "t0.flac"}) &&
        run(dir, {"flac", "-s", "m.wav", "-o", "t1.flac"});
    if (!ok) return {};
    fs::copy_file(dir / "s.wav", dir / "t0.wav");
    fs::copy_file(dir / "m.wav", dir / "t1.wav");
    const std::vector<std::string> templates{"t0.mp3",  "t1.mp3",  "t2.mp3", "t0.ogg", "t1.ogg",
                                             "t0.flac", "t1.flac", "t0.wav", "t1.wav"};
    const std::vector<std::string> exts{"mp3", "ogg", "flac", "wav"};
    std::vector<std::string> files;
    for (int i = 0; i < kFiles; ++i) {
        const std::string &ext = exts[i % 4];
        std::vector<std::string> of;
        for (const std::string &t : templates)
            if (fs::path(t).extension() == "." + ext) of.push_back(t);
        const std::string &from = of[static_cast<std::size_t>(i / 4) % of.size()];
        char name[32];
        std::snprintf(name, sizeof name, "f%04d.%s", i, ext.c_str());
        fs::copy_file(dir / from, dir / name);
        files.push_back((dir / name).string());
    }
    return files;
}

long baseline(const std::vector<std::string> &files) {
    long sum = 0;
    char head[4096];
    char tail[128];
    for (const std::string &f : files) {
        const int fd = ::open(f.c_str(), O_RDONLY | O_CLOEXEC);
        if (fd < 0) continue;
        struct stat st {};
        ::fstat(fd, &st);
        sum += ::pread(fd, head, sizeof head, 0);
        sum += ::pread(fd, tail, sizeof tail, std::max<off_t>(0, st.st_size - 128));
        sum += head[0] + tail[0];
        ::close(fd);
    }
    return sum;
}

long readAll(const std::vector<std::string> &files) {
    long sum = 0;
    for (const std::string &f : files) {
        const saltmarrow::MediaFileInfo info = saltmarrow::readMediaInfo(f);
        sum += info.Millisecs + static_cast<long>(info.Title.size());
    }
    return sum;
}

template <class F>
double seconds(F &&pass, long &sink) {
    const auto t0 = std::chrono::steady_clock::now();
    sink += pass();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
}

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

}  // namespace

int main(int argc, char **argv) {
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 9;
    const fs::path dir = fs::temp_directory_path() / ("saltmarrow-bench-" + std::to_string(::getpid()));
    fs::create_directories(dir);
    const std::vector<std::string> files = makeFiles(dir);
    if (files.empty()) {
        std::fprintf(stderr, "media_headers: could not make the files (sox, lame, oggenc, flac needed)\n");
        fs::remove_all(dir);
        return 2;
    }

    // Every file must really have been read: a failed reader would be fast.
    int unread = 0;
    for (const std::string &f : files)
        if (saltmarrow::readMediaInfo(f).Millisecs == 0) ++unread;

    long sink = 0;
    baseline(files);
    readAll(files);
    std::vector<double> base, media;
    for (int r = 0; r < rounds; ++r) {
        base.push_back(seconds([&] { return baseline(files); }, sink));
        media.push_back(seconds([&] { return readAll(files); }, sink));
    }
    fs::remove_all(dir);

    const double b = median(base), m = median(media);
    std::printf("media_headers: %d files, %d rounds, median of each (checksum %ld)\n", kFiles, rounds,
                sink % 1000);
    std::printf("media_headers: baseline      %9.0f files/s  (%.2f ms a pass)\n", kFiles / b, b * 1000);
    std::printf("media_headers: readMediaInfo %9.0f files/s  (%.2f ms a pass)\n", kFiles / m, m * 1000);
    std::printf("media_headers: readMediaInfo takes %.2fx the baseline's time (goal <= 1.5x)\n", m / b);
    if (unread > 0) std::printf("media_headers: %d files gave no duration\n", unread);
    return unread == 0 && m / b <= 1.5 ? 0 : 1;
}
