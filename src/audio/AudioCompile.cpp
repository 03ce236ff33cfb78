#include "audio/AudioCompile.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <vector>

#include "audio/AudioToc.h"
#include "discops/SheetFile.h"
#include "exec/CommandLog.h"
#include "exec/DOSOutputs.h"
#include "platform/CommandLine.h"
#include "platform/Dialogs.h"
#include "platform/Files.h"
#include "support/TimeText.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace fs = std::filesystem;
namespace mb = platform::mb;

using platform::exists;
using platform::removeFile;

namespace {

constexpr std::size_t kCopyBlock = 1048576;
constexpr double kKbitPerSecond = 1412;  // 44100 Hz, 16 bits, two channels
constexpr int kShortestTrackMs = 4000;   // cdrdao refuses shorter tracks without --force

// cdrdao reads a FILE name as it stands, without escapes, and ends it at the
// first quote: such a name is reached through a link.
bool plainForToc(const std::string &path) {
    return std::none_of(path.begin(), path.end(), [](char c) {
        return c == '\\' || c == '"' || static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
    });
}

std::string twoDigits(std::size_t n) {
    return n < 10 ? "0" + std::to_string(n) : std::to_string(n);
}

}  // namespace

bool isWaveFile(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    char head[12] = {};
    if (!in.read(head, sizeof head)) return false;
    std::error_code ec;
    const auto size = fs::file_size(path, ec);
    return !ec && size > 44 && std::string_view(head, 4) == "RIFF" && std::string_view(head + 8, 4) == "WAVE";
}

AudioCompile::AudioCompile(AudioProject &project, const AudioHost &host, CompileView &view,
                           DOSOutputs &objDOS2)
    : project_(project), host_(host), view_(view), objDOS2_(objDOS2) {
    objDOS2_.ReceiveOutputs = [this](const std::string &line) { objDOS2_ReceiveOutputs(line); };
    objDOS2_.pump = [this] { host_.events(); };
}

std::string AudioCompile::rowOfRows() const {
    return std::to_string(row_ + 1) + " / " + std::to_string(project_.count());
}

void AudioCompile::cmdCompile_Click(const CompileSettings &settings) {
    if (running_) {
        objDOS2_.killInstantly();
        compileCancelled = true;
        return;
    }
    compile(settings);
}

bool AudioCompile::shortTracksAccepted() {
    std::string names;
    for (std::size_t i = 0; i < project_.count(); ++i) {
        const std::int32_t ms = trackTimeToMs(project_.track(i).Length);
        if (ms > 0 && ms < kShortestTrackMs)
            names += "\r\n" + project_.rows[i].text + " (" + project_.track(i).Length + ")";
    }
    if (names.empty()) return true;
    return host_.msgBox(host_.format("msgTrackTooShort", names.substr(2)), mb::YesNo | mb::Exclamation) ==
           mb::Yes;
}

bool AudioCompile::spaceEnough(const CompileSettings &settings, const std::string &tempName) {
    double toDecode = 0;
    double largest = 0;
    for (std::size_t i = 0; i < project_.count(); ++i) {
        const AudioObjects &t = project_.track(i);
        if (extensionOf(t.FullPath) == "WAV" && !settings.mnuWaveGain) continue;
        if (!exists(tempName + "/" + baseNameOf(t.FullPath) + ".wav")) toDecode += t.Millisecs / 1000.0;
        largest = std::max(largest, t.Millisecs / 1000.0);
    }
    const std::optional<platform::VolumeSpace> space = host_.space(tempName);
    if (!space) return true;  // nothing to tell; the tools will say it if the disk fills
    const double freeMB = static_cast<double>(space->availableBytes) / 1024 / 1024;
    const double neededMB = (toDecode + (settings.mnuWaveGain ? largest : 0)) * kKbitPerSecond / 8 / 1024;
    if (neededMB <= freeMB) return true;
    host_.msgBox(host_.format("msgNoFreeSpace", space->mountPoint), mb::Exclamation);
    return false;
}

void AudioCompile::compile(const CompileSettings &settings) {
    compiledAny = false;
    lastTocFile.clear();
    tracksLeftOut = 0;
    if (project_.count() == 0) {
        host_.msgBox(host_.text("msgAddTracks"), mb::Information);
        return;
    }
    const std::int64_t barBefore = view_.barValue();
    if (project_.totalUsed > kDiscSeconds &&
        host_.msgBox(host_.text("msgOver80Mins"), mb::OKCancel | mb::Question) == mb::Cancel)
        return;
    if (!shortTracksAccepted()) return;

    tempName_ = host_.tempName ? host_.tempName() : std::string();
    std::error_code ec;
    if (tempName_.empty()) {
        fs::create_directories(settings.strTempFolder, ec);
        tempName_ = platform::makeTempFolder(settings.strTempFolder, "saltmarrow-");
        if (tempName_.empty()) {
            host_.msgBox(host_.format("msgNotFound", settings.strTempFolder), mb::Exclamation);
            return;
        }
        if (host_.setTempName) host_.setTempName(tempName_);
    }
    if (!spaceEnough(settings, tempName_)) return;

    running_ = true;
    view_.compileRunning(true);
    view_.enableControls(false);
    // Whatever goes wrong on the way, the window is given back.
    struct Restore {
        AudioCompile &c;
        ~Restore() {
            if (!c.running_) return;
            c.running_ = false;
            c.view_.compileRunning(false);
            c.view_.enableControls(true);
        }
    } restore{*this};
    fs::create_directories(tempName_, ec);
    project_.findAlbumNames();
    std::string toc = tocHead(project_, settings.mnuCDText);
    std::string cdTextFile = settings.mnuCDText ? cdTextHead(project_) : std::string();
    compileStart_ = std::chrono::steady_clock::now();
    std::string waveGainList;

    for (row_ = 0; row_ < project_.count(); ++row_) {
        AudioObjects &t = project_.track(row_);
        view_.selectRow(row_, true);
        if (settings.mnuCDText) cdTextFile += cdTextLine(t, project_.strAlbumArtist);
        const std::string extension = extensionOf(t.FullPath);
        const std::optional<DecoderKind> decoder = decoderForExtension(extension);
        decoderKind = decoder ? std::string(decoder->kind) : std::string();
        std::string target;
        std::string toolOutput;
        if (decoder && decoder->command) {
            target = tempName_ + "/" + baseNameOf(t.FullPath) + ".wav";
            const std::string prefix = settings.decoders.*(decoder->command);
            const std::string command = decoderCommand(prefix, t.FullPath, target);
            // A decoded file already there is used again: the folder is a cache.
            const bool cached = exists(target) && isWaveFile(target);
            if (!cached && (prefix.empty() || !decodeMp3(command, target, t))) {
                decoderKind = "doh";
                toolOutput = objDOS2_.totalOutput;
            }
        } else if (decoder && settings.mnuWaveGain) {
            // WaveGain works on a copy: the user's own file is never touched.
            target = tempName_ + "/" + fileNameOf(t.FullPath);
            if (!exists(target) && !copyTrack(t.FullPath, target)) decoderKind = "doh";
        } else if (!isWaveFile(t.FullPath)) {
            decoderKind = "doh";
        }
        if (decoderKind == "doh") {
            if (!compileCancelled) leaveOut(t, toolOutput);
        } else {
            toc += tocTrack(project_, row_, shortPathUpper(target.empty() ? t.FullPath : target, row_),
                            settings.mnuCDText, lastTocFile) +
                   "\r\n";
            compiledAny = true;
        }
        view_.selectRow(row_, false);
        if (compileCancelled) {
            if (!target.empty()) removeFile(target);
            break;
        }
        if (settings.mnuWaveGain && decoderKind != "doh")
            waveGainList += " " + platform::quoteArgument(target);
    }
    if (settings.mnuWaveGain && !compileCancelled) doWaveGain(settings, waveGainList);

    view_.selectRow(0, true);
    try {
        discops::writeSheet(tempName_ + "/authored.toc", toc);
        if (settings.mnuCDText) discops::writeSheet(tempName_ + "/CDText.txt", cdTextFile);
    } catch (const std::exception &) {
        host_.msgBox(host_.text("msgReadOnlyFile"), mb::Exclamation);
        compiledAny = false;
    }

    view_.setBarMax(kDiscSeconds);
    view_.setBarValue(barBefore);
    const Totals totals = project_.updateTotals(host_);
    view_.setPanel(tracksLeftOut ? host_.format("msgTracksLeftOut", std::to_string(tracksLeftOut))
                                 : totals.panel);
    running_ = false;
    view_.compileRunning(false);
    if (compileCancelled) compiledAny = false;
    compileCancelled = false;
    view_.enableControls(true);
    if (!compiledAny) return;

    const auto seconds =
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - compileStart_)
            .count();
    const bool load =
        settings.mnuAutoWrite || host_.msgBox(host_.format("msgProjectCompiled", std::to_string(seconds)),
                                              mb::YesNo | mb::Question) == mb::Yes;
    if (!load) return;
    if (host_.loadCompiledToc) host_.loadCompiledToc(tempName_ + "/authored.toc", settings.mnuAutoWrite);
    view_.hideForm();
}

std::string AudioCompile::shortPathUpper(const std::string &path, std::size_t row) {
    if (plainForToc(path)) return path;
    const std::string link = tempName_ + "/~link" + twoDigits(row + 1) + ".wav";
    // A link beside its file names it relatively, so that the folder may be
    // renamed after the write.
    const fs::path file(path);
    const fs::path target = file.parent_path() == fs::path(tempName_) ? file.filename() : fs::absolute(file);
    std::error_code ec;
    fs::remove(link, ec);
    fs::create_symlink(target, link, ec);
    return link;
}

void AudioCompile::leaveOut(const AudioObjects &track, const std::string &toolOutput) {
    ++tracksLeftOut;
    host_.log(std::string(CommandLog::kSeparator));
    host_.log(host_.format("logTrackLeftOut", std::to_string(row_ + 1)) + track.FullPath);
    // totalOutput begins with a line end of its own.
    if (toolOutput.size() > 2) host_.log(toolOutput.substr(2));
}

bool AudioCompile::decodeMp3(const std::string &command, const std::string &target,
                             const AudioObjects &track) {
    decoderBusy = true;
    view_.setBarValue(0);
    view_.setBarMax(decoderKind == "mp3" ? trackTimeToMs(track.OrigLength) / 1000 + 1 : 100);
    view_.setPanel(host_.text("msgDecodingTrack") + rowOfRows());
    const std::optional<DecoderKind> decoder = decoderForExtension(extensionOf(track.FullPath));
    const bool ran = objDOS2_.ExecuteCommand(command, decoder ? decoder->chunkSize : 512, 1, tempName_);
    view_.setBarValue(0);
    decoderBusy = false;
    // Some decoders end with 0 after a failure: the target has to be there,
    // and be a WAV file.
    if (ran && isWaveFile(target)) return true;
    if (!compileCancelled) removeFile(target);
    return false;
}

bool AudioCompile::doWaveGain(const CompileSettings &settings, const std::string &list) {
    decoderBusy = true;
    view_.setBarValue(0);
    view_.setBarMax(static_cast<std::int64_t>(project_.count()));
    waveGainRow = 1;
    waveGainTrack = 0;
    view_.setPanel(host_.text("msgCalculateWaveGain"));
    decoderKind = "WaveGain";
    waveGainReport.clear();
    const std::string command =
        platform::quoteArgument(settings.strWaveGain) + " " + settings.strWaveGainCommand + " " + list;
    const bool ran = objDOS2_.ExecuteCommand(command, 512, 1, tempName_);
    host_.log(std::string(CommandLog::kSeparator));
    host_.log("WaveGain settings were applied as follows:\r\n" + waveGainReport);
    view_.setBarValue(0);
    decoderBusy = false;
    return ran;
}

bool AudioCompile::copyTrack(const std::string &source, const std::string &destination) {
    std::ifstream in(source, std::ios::binary);
    std::error_code ec;
    const std::uintmax_t size = fs::file_size(source, ec);
    if (!in || ec || !isWaveFile(source)) return false;
    std::ofstream out(destination, std::ios::binary | std::ios::trunc);
    view_.setBarMax(static_cast<std::int64_t>(size));
    std::vector<char> block(kCopyBlock);
    std::uintmax_t done = 0;
    bool ok = static_cast<bool>(out);
    while (ok && done < size) {
        if (compileCancelled) {
            ok = false;
            break;
        }
        const std::size_t n = static_cast<std::size_t>(std::min<std::uintmax_t>(kCopyBlock, size - done));
        ok = static_cast<bool>(in.read(block.data(), static_cast<std::streamsize>(n))) &&
             static_cast<bool>(out.write(block.data(), static_cast<std::streamsize>(n)));
        done += n;
        view_.setPanel("Copying Track: " + rowOfRows());
        view_.setBarValue(static_cast<std::int64_t>(done));
        host_.events();
    }
    out.close();
    view_.setBarValue(0);
    if (ok && out) return true;
    removeFile(destination);
    return false;
}

void AudioCompile::objDOS2_ReceiveOutputs(const std::string &line) {
    if (line.empty()) return;
    if (decoderKind == "WaveGain") return waveGainLine(line);
    const std::optional<int> v = decoderProgress(decoderKind, line);
    if (decoderKind == "mp3" && vb::InStr(line, "resampling", vb::Compare::Text) > 0)
        view_.setPanel(host_.text("msgResamplingTrack") + rowOfRows());
    // The bar never runs backwards.
    if (v && *v > view_.barMax())
        view_.setBarValue(view_.barMax());
    else if (v && *v > view_.barValue())
        view_.setBarValue(*v);
    host_.events();
}

void AudioCompile::waveGainLine(const std::string &line) {
    const std::size_t p = vb::InStr(line, "This file");
    const std::size_t q = p ? vb::InStr(p, line, "% done") : 0;
    if (q > p + 9) {
        view_.setBarMax(100);
        view_.setBarValue(static_cast<std::int64_t>(vb::Val(vb::Trim(vb::Mid(line, p + 9, q - p - 9)))));
    }
    // Paths are not upper-cased here as they were on a system of short names.
    if (vb::InStr(line, ".WAV", vb::Compare::Text) == 0) return;
    ++waveGainRow;
    ++waveGainTrack;
    if (waveGainRow > static_cast<int>(project_.count())) waveGainRow = 0;
    const std::string rows = " " + std::to_string(waveGainRow) + " / " + std::to_string(project_.count());
    const std::size_t bar = vb::InStrRev(line, "|");
    if (bar == 0) {
        const bool skipped = vb::InStr(line, "No Title Gain adjustment required for file: ") > 0;
        view_.setPanel(host_.text(skipped ? "msgSkippingTrack" : "msgAdjustingTrack") + rows);
    } else {
        waveGainReport += "\r\nTrack " + twoDigits(static_cast<std::size_t>(waveGainTrack)) + ": " +
                          vb::Trim(vb::Left(line, bar - 1));
    }
}

}  // namespace saltmarrow
