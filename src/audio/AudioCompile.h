#ifndef SALTMARROW_AUDIO_AUDIOCOMPILE_H
#define SALTMARROW_AUDIO_AUDIOCOMPILE_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include "audio/AudioHost.h"
#include "audio/AudioProject.h"
#include "audio/Decoders.h"

namespace saltmarrow {

class DOSOutputs;

// The form as the compile sees it: its bar, status panel, rows and buttons.
class CompileView {
public:
    virtual ~CompileView() = default;
    virtual std::int64_t barValue() const = 0;
    virtual std::int64_t barMax() const = 0;
    virtual void setBarMax(std::int64_t max) = 0;
    virtual void setBarValue(std::int64_t value) = 0;
    virtual void setPanel(const std::string &text) = 0;
    virtual void selectRow(std::size_t row, bool selected) = 0;  // and scroll it into view
    // cmdCompile becomes the Cancel button, untagged, or goes back to rest.
    virtual void compileRunning(bool running) = 0;
    virtual void enableControls(bool enable) = 0;
    virtual void hideForm() = 0;
};

// What a compile reads of the form and the settings when it starts.
struct CompileSettings {
    bool mnuCDText = true;
    bool mnuWaveGain = false;
    bool mnuAutoWrite = false;
    std::string strTempFolder;
    DecoderCommands decoders;
    std::string strWaveGain;         // the tool
    std::string strWaveGainCommand;  // its options
};

// cmdCompile: decodes every track that needs it into the temporary folder,
// which keeps them as a cache between compiles, copies WAVs there for an
// optional WaveGain pass, writes authored.toc (and CDText.txt) and hands the
// sheet to the main form. Each tool runs on objDOS2, whose lines come to
// objDOS2_ReceiveOutputs.
class AudioCompile {
public:
    AudioCompile(AudioProject &project, const AudioHost &host, CompileView &view, DOSOutputs &objDOS2);

    // Starts a compile, or cancels the one that runs.
    void cmdCompile_Click(const CompileSettings &settings);
    bool running() const { return running_; }
    void objDOS2_ReceiveOutputs(const std::string &line);

    bool compileCancelled = false;
    bool compiledAny = false;
    bool decoderBusy = false;
    std::string decoderKind;
    std::string lastTocFile;
    std::string waveGainReport;
    int waveGainRow = 0;
    int waveGainTrack = 0;
    int tracksLeftOut = 0;

private:
    void compile(const CompileSettings &settings);
    bool decodeMp3(const std::string &command, const std::string &target, const AudioObjects &track);
    bool doWaveGain(const CompileSettings &settings, const std::string &list);
    bool copyTrack(const std::string &source, const std::string &destination);
    bool spaceEnough(const CompileSettings &settings, const std::string &tempName);
    bool shortTracksAccepted();
    // The path as a TOC names it. There are no short names here, and upper case
    // would name another file: a path stays as it is, unless a TOC string
    // cannot carry it; then a link with a plain name stands in for it.
    std::string shortPathUpper(const std::string &path, std::size_t row);
    void leaveOut(const AudioObjects &track, const std::string &toolOutput);
    std::string rowOfRows() const;
    void waveGainLine(const std::string &line);

    AudioProject &project_;
    const AudioHost &host_;
    CompileView &view_;
    DOSOutputs &objDOS2_;
    bool running_ = false;
    std::size_t row_ = 0;
    std::string tempName_;
    std::chrono::steady_clock::time_point compileStart_;
};

// A file that begins with a RIFF/WAVE header and holds some sound.
bool isWaveFile(const std::string &path);

}  // namespace saltmarrow

#endif
