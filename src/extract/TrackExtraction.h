#ifndef SALTMARROW_EXTRACT_TRACKEXTRACTION_H
#define SALTMARROW_EXTRACT_TRACKEXTRACTION_H

#include <chrono>
#include <optional>
#include <string>

#include "extract/ExtractDisc.h"
#include "extract/ExtractHost.h"

namespace saltmarrow {

class DOSOutputs;

// The extraction window as the scan and the runs see it.
class ExtractView {
public:
    virtual ~ExtractView() = default;
    virtual void setPanel(int panel, const std::string &text) = 0;  // panel 1 or 2 of the status bar
    virtual void setBar(int max, int value) = 0;
    virtual void setCaption(const std::string &text) = 0;
    virtual void enableControls(bool enable) = 0;
    // cmdExtract becomes the Cancel button, untagged, or goes back to rest.
    virtual void extractRunning(bool running) = 0;
    // The disc's rows into the list; the first one in view.
    virtual void showRows() = 0;
};

// What a run reads of the forms when it starts.
struct ExtractChoice {
    bool chkImageFile = false;
    std::string folder;   // extractCurrentFolder
    std::string pattern;  // the file name template
    std::optional<EncoderRow> encoder;
};

inline constexpr int kDiscSecondsShown = 4800;  // the bar's 80 minutes

// The scan of the disc and the two kinds of run: each selected track into a
// file of its own, or the whole disc into one. cdda2wav runs on objDOS,
// piped into the encoder through extract.bat, and its lines come to
// objDOS_ReceiveOutputs.
class TrackExtraction {
public:
    TrackExtraction(ExtractDisc &disc, const ExtractHost &host, ExtractView &view, DOSOutputs &objDOS);

    void cmdRescan_Click();
    // Starts a run, or cancels the one that runs.
    void cmdExtract_Click(const ExtractChoice &choice);
    void objDOS_ReceiveOutputs(const std::string &line);
    // The selection's share of an 80-minute disc, on the bar and in panel 2.
    void updateTotals();
    bool running() const { return running_; }
    std::string cdda2wav() const { return host_.externalFolder + "/cdda2wav"; }

    bool extractCancelled = false;
    bool readingToc = false;
    bool chkImageFile = false;  // of the run under way
    short selectedCount = 0;
    short extractedCount = 0;
    bool noDisc = false;  // the tool asked for a disc

private:
    bool choiceUsable(const ExtractChoice &choice);
    void trackRun(const ExtractChoice &choice);
    void imageRun(const ExtractChoice &choice);
    // Writes the line as extract.bat and runs it.
    void runLine(const std::string &line);
    std::optional<std::string> target(const ExtractChoice &choice, const std::vector<std::string> &pieces);
    std::string available() const;

    ExtractDisc &disc_;
    const ExtractHost &host_;
    ExtractView &view_;
    DOSOutputs &objDOS_;
    std::string device_;
    bool running_ = false;
    bool stopped_ = false;  // a run that could not go on says so itself
};

}  // namespace saltmarrow

#endif
