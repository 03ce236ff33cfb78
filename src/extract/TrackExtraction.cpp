#include "extract/TrackExtraction.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "exec/DOSOutputs.h"
#include "extract/ExtractCommand.h"
#include "extract/ExtractNames.h"
#include "platform/CommandLine.h"
#include "platform/Dialogs.h"
#include "platform/Files.h"
#include "support/TimeText.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

namespace fs = std::filesystem;
namespace mb = platform::mb;

using platform::exists;

namespace {

constexpr std::string_view kLoadPrompt = "load cdrom please and press enter";
// icedax ends a track with " track  3 recorded" and then " successfully".
constexpr std::string_view kRecorded = "recorded successfully";

}  // namespace

TrackExtraction::TrackExtraction(ExtractDisc &disc, const ExtractHost &host, ExtractView &view,
                                 DOSOutputs &objDOS)
    : disc_(disc), host_(host), view_(view), objDOS_(objDOS) {
    objDOS_.ReceiveOutputs = [this](const std::string &line) { objDOS_ReceiveOutputs(line); };
    objDOS_.pump = [this] { host_.events(); };
    // icedax asks for a disc without ending the line, and waits.
    objDOS_.openLine = [this](const std::string &text) {
        if (vb::InStr(text, kLoadPrompt) > 0) objDOS_ReceiveOutputs(text);
    };
}

std::string TrackExtraction::available() const {
    return std::to_string(disc_.count()) + " Tracks Available";
}

void TrackExtraction::cmdRescan_Click() {
    if (running_) return;
    device_ = host_.readerDevice ? host_.readerDevice() : std::string();
    if (device_.empty()) {
        host_.msgBox(host_.text("msgSelectReader"), mb::Exclamation);
        return;
    }
    if (!exists(cdda2wav())) {
        host_.msgBox(host_.format("msgNotFound", cdda2wav()), mb::Exclamation);
        return;
    }
    disc_.clear();
    view_.setPanel(1, "Analysing TOC...");
    view_.enableControls(false);
    view_.showRows();
    noDisc = false;
    readingToc = true;
    objDOS_.ExecuteCommand(scanCommand(cdda2wav(), device_), 256, 1, std::string());
    readingToc = false;
    if (disc_.count() > 0) view_.setCaption(disc_.caption());
    view_.enableControls(true);
    view_.showRows();
    updateTotals();
    view_.setPanel(1, available());
    if (noDisc) host_.msgBox(host_.text("msgInsertReadCD"), mb::Exclamation);
}

void TrackExtraction::updateTotals() {
    const double seconds = disc_.selectedSeconds();
    view_.setBar(kDiscSecondsShown, static_cast<int>(std::min<double>(seconds, kDiscSecondsShown)));
    view_.setPanel(2, host_.text("msgTotalTime") + secondsToText(vb::CLng(seconds), host_.text("msgTimeMins"),
                                                                 host_.text("msgTimeSecs")));
}

bool TrackExtraction::choiceUsable(const ExtractChoice &choice) {
    device_ = host_.readerDevice ? host_.readerDevice() : std::string();
    std::string problem;
    if (device_.empty())
        problem = host_.text("msgSelectReader");
    else if (!choice.encoder)
        problem = host_.format("msgEncoderMissing", "");
    else if (!exists(cdda2wav()))
        problem = host_.format("msgNotFound", cdda2wav());
    else if (!isWave(*choice.encoder) && !exists(host_.externalFolder + "/" + (*choice.encoder)[EncProgram]))
        problem =
            host_.format("msgEncoderMissing", host_.externalFolder + "/" + (*choice.encoder)[EncProgram]);
    else if (auto key = templateProblem(choice.pattern); key && !choice.chkImageFile)
        problem = host_.format(*key, choice.pattern);
    if (!problem.empty()) host_.msgBox(problem, mb::Exclamation);
    return problem.empty();
}

void TrackExtraction::cmdExtract_Click(const ExtractChoice &choice) {
    if (running_) {
        extractCancelled = true;
        objDOS_.killInstantly();
        return;
    }
    extractCancelled = false;
    selectedCount = static_cast<short>(disc_.selectedCount());
    if (disc_.count() == 0 || (!choice.chkImageFile && selectedCount == 0)) return;
    if (!choiceUsable(choice)) return;

    running_ = true;
    stopped_ = noDisc = false;
    chkImageFile = choice.chkImageFile;
    extractedCount = 0;
    view_.extractRunning(true);
    view_.enableControls(false);
    // Whatever goes wrong on the way, the window is given back.
    struct Restore {
        TrackExtraction &t;
        ~Restore() {
            t.running_ = false;
            t.view_.extractRunning(false);
            t.view_.enableControls(true);
        }
    };
    const auto started = std::chrono::steady_clock::now();
    {
        Restore restore{*this};
        if (choice.chkImageFile)
            imageRun(choice);
        else
            trackRun(choice);
    }
    if (noDisc) host_.msgBox(host_.text("msgInsertReadCD"), mb::Exclamation);
    if (!extractCancelled && !stopped_ && !noDisc) {
        const auto seconds =
            std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - started)
                .count();
        const std::size_t count =
            choice.chkImageFile ? disc_.count() : static_cast<std::size_t>(selectedCount);
        host_.msgBox(std::to_string(count) + " tracks extracted after " + std::to_string(seconds) + "secs",
                     mb::Information);
    }
    view_.setPanel(1, available());
    view_.setBar(100, 0);
}

std::optional<std::string> TrackExtraction::target(const ExtractChoice &choice,
                                                   const std::vector<std::string> &pieces) {
    std::string failed;
    const std::string extension = pathValue((*choice.encoder)[EncExtension]);
    std::optional<std::string> path = prepareTarget(choice.folder, pieces, extension, failed);
    if (!path) {
        host_.msgBox(host_.format("msgExtractFolder", failed), mb::Exclamation);
        stopped_ = true;
        return std::nullopt;
    }
    return *path + "." + extension;
}

void TrackExtraction::trackRun(const ExtractChoice &choice) {
    for (std::size_t i = 0; i < disc_.count() && !stopped_ && !noDisc; ++i) {
        if (!disc_.rows[i].selected || extractCancelled) continue;
        const AudioObjects &t = disc_.track(i);
        const std::string number = rowNumber(i);
        const std::optional<std::string> file =
            target(choice, fillTemplate(choice.pattern,
                                        {disc_.extractArtist, disc_.extractAlbum, number, t.Title, t.Album}));
        if (!file) return;
        ++extractedCount;
        view_.setPanel(
            1, "Extracting Track: " + std::to_string(extractedCount) + " / " + std::to_string(selectedCount));
        view_.setBar(100, 0);
        runLine(extractCommand({cdda2wav(),
                                device_,
                                disc_.rows[i].discTrack,
                                disc_.rows[i].discTrack,
                                false,
                                host_.externalFolder,
                                *choice.encoder,
                                *file,
                                {disc_.extractArtist, disc_.extractAlbum, number, t.Title, t.Artist}}));
    }
}

void TrackExtraction::imageRun(const ExtractChoice &choice) {
    const std::optional<std::string> file =
        target(choice, {pathValue(disc_.extractArtist) + " - " + pathValue(disc_.extractAlbum)});
    if (!file) return;
    view_.setPanel(1, "Extracting Track: 1 / " + std::to_string(disc_.count()));
    // One file holds the disc: it is tagged as one track named after the album.
    runLine(extractCommand(
        {cdda2wav(),
         device_,
         disc_.rows.front().discTrack,
         disc_.rows.back().discTrack,
         true,
         host_.externalFolder,
         *choice.encoder,
         *file,
         {disc_.extractArtist, disc_.extractAlbum, "01", disc_.extractAlbum, disc_.extractArtist}}));
}

void TrackExtraction::runLine(const std::string &line) {
    const std::string folder = host_.externalFolder + "/TEMP";
    std::error_code ec;
    fs::create_directories(folder, ec);
    const std::string bat = folder + "/extract.bat";
    std::ofstream out(bat, std::ios::binary | std::ios::trunc);
    out << line << "\r\n";
    out.close();
    if (!out) {
        host_.msgBox(host_.text("msgReadOnlyFile"), mb::Exclamation);
        stopped_ = true;
        return;
    }
    objDOS_.ExecuteCommand(platform::quoteArgument(bat), 256, 1, std::string());
}

void TrackExtraction::objDOS_ReceiveOutputs(const std::string &line) {
    if (vb::InStr(line, kLoadPrompt) > 0) {
        noDisc = true;
        objDOS_.killInstantly();
        return;
    }
    if (chkImageFile && !readingToc) {
        const std::size_t p = vb::InStr(line, "track");
        const std::size_t q = p ? vb::InStr(p + 5, line, kRecorded) : 0;
        if (q > 0) {
            const auto row = disc_.rowOfDiscTrack(static_cast<int>(vb::Val(vb::Mid(line, p + 5, q - p - 5))));
            if (row && *row + 2 <= disc_.count())
                view_.setPanel(1, "Extracting Track: " + std::to_string(*row + 2) + " / " +
                                      std::to_string(disc_.count()));
        }
    }
    if (readingToc) {
        disc_.recieveCDDA2WAV_TOC(line);
    } else if (line.size() == 4 && line[3] == '%') {
        view_.setBar(100, static_cast<int>(vb::Val(line.substr(0, 3))));
    }
    host_.events();
}

}  // namespace saltmarrow
