#include "exec/OutputInterpreter.h"

#include <cmath>

#include "platform/Sounds.h"
#include "support/RuntimeError.h"
#include "support/mdlFunctions.h"

namespace saltmarrow {

using namespace vb;

// One row of a pattern chain: the tool's phrase, the message that replaces
// it, the sound it plays and whether it marks the run as failed.
struct LogChainRow {
    std::string_view pattern;
    std::string_view key;
    std::string_view sound;
    bool fails;
};

namespace {

constexpr std::string_view kUnitNotReady = "WARNING: Unit not ready, still trying...";

// CD work: the first hit ends the chain.
constexpr LogChainRow kWriteChain[] = {
    {"Starting write at speed ", "logStartWrite", "", false},
    {"Writing track ", "logWritingTrack", "", false},
    {"Starting write simulation at speed ", "logStartSimulation", "", false},
    {kUnitNotReady, "logDeviceNotReady", "DeviceFail", false},
    {"Simulation finished successfully.", "logSimulationSuccess", "", false},
    {"Reloading disk...", "logReloadingDisc", "", false},
    {"Blanking disk...", "logBlankingDisc", "", false},
    {"Cannot erase CD-RW", "logCannotErase", "", false},
    {"Blanking failed", "logBlankingFailed", "", false},
    {"Executing power calibration...", "logCalibrationStart", "", false},
    {"Power calibration successful.", "logCalibrationSuccess", "", false},
    {"Writing lead-in and gap...", "logWritingLeadIn", "", false},
    {"ERROR: Cannot setup device", "logCannotSetupDevice", "", true},
    {"Inserted disk is not empty", "logDiscNotEmpty", "", true},
    {"syntax error", "logSyntaxError", "", true},
    {": not a WAVE file.", "logBadFile", "", true},
    {"is corrupted", "logBadFile", "", true},
    {"Cannot determine", "logBadFile", "", true},
    {"Write data failed.", "logWriteFailed", "", true},
    {"Writing failed.", "logWriteFailed", "", true},
    // mkisofs echoing its own option list means it refused them: a failed run.
    {"-graft-points", "msgScanningFiles", "", true},
    {"same Joliet name", "msgDupeFileName", "", true},
    {"Directories too deep", "msgFolderTooDeep", "", true},
    {"Cannot read first writable address", "msgCannotReadAddress", "", true},
};

// DVD work.
constexpr LogChainRow kDVDChain[] = {
    {"Starting to write CD/DVD at speed ", "logStartWrite", "", false},
    {"ERROR: Cannot setup device", "logCannotSetupDevice", "", true},
    {"Inserted disk is not empty", "logDiscNotEmpty", "", true},
    {"syntax error", "logSyntaxError", "", true},
    {": not a WAVE file.", "logBadFile", "", true},
    {"is corrupted", "logBadFile", "", true},
    {"Cannot determine", "logBadFile", "", true},
    {"Write data failed.", "logWriteFailed", "", true},
    {"Writing failed.", "logWriteFailed", "", true},
    {"-graft-points", "msgScanningFiles", "", true},
    {"same Joliet name", "msgDupeFileName", "", true},
    {"Directories too deep", "msgFolderTooDeep", "", true},
    {"Cannot read first writable address", "msgCannotReadAddress", "", true},
};

// Lines of the DVD writer that never reach the log window.
constexpr std::string_view kDVDHidden[] = {
    "Last chance to quit",
    "scsidev: ",
    "scsibus: ",
    "devname: 'SPTI",
    "devname: 'ASPI",
    "Warning: using inofficial libscg transport code version",
    "Warning: using inofficial version of libscg",
    "Warning: Disabling Joliet support for DVD-Video.",
    "No such file or directory. Can't stat",
    "Can't open device ''",
    "Unable to make a DVD-Video image.",
};

// Lines hidden in every mode.
constexpr std::string_view kAlwaysHidden[] = {
    "Initializing",
    "Using driver: ",
    "That data below may not reflect the real status of the inserted medium",
};

enum class Reading { Hide, DVDSize, DiscInfo, VersionInfo, ReadCD, ReadTOC, Write, DVD, Dump };

struct ModeRow {
    Mode mode;
    Reading reading;
};

// How each mode reads its lines; a mode not listed shows every line.
constexpr ModeRow kModes[] = {
    {Mode::HideMe, Reading::Hide},       {Mode::DVDSize, Reading::DVDSize},
    {Mode::DiscInfo, Reading::DiscInfo}, {Mode::VersionInfo, Reading::VersionInfo},
    {Mode::ReadCD, Reading::ReadCD},     {Mode::ReadTOC, Reading::ReadTOC},
    {Mode::AudioCD, Reading::Write},     {Mode::WriteCD, Reading::Write},
    {Mode::EraseCD, Reading::Write},     {Mode::CopyCD, Reading::Write},
    {Mode::DataCD, Reading::Write},      {Mode::DataDVD, Reading::DVD},
    {Mode::WriteDVD, Reading::DVD},      {Mode::DiscDump, Reading::Dump},
};

// The reading tools, as the status line names them while they read.
struct ReaderRow {
    Mode mode;
    std::string_view status;
};
constexpr ReaderRow kReaders[] = {
    {Mode::ReadCD, "Cdrdao Reading Sector #"},
    {Mode::DiscDump, "Readom Reading Sector #"},
};

const ReaderRow *readerOf(Mode mode) {
    for (const ReaderRow &row : kReaders)
        if (row.mode == mode) return &row;
    return nullptr;
}

constexpr std::string_view kReloadPhrase =
    "if a simulation run was performed before. Reload the medium in this case.";
constexpr std::string_view kReloadText = "Media should be reloaded if a simulation was performed before.";

bool holds(std::string_view line, std::string_view phrase) {
    return InStr(line, phrase, Compare::Text) != 0;
}

// The number between two positions of a progress line; a cut that comes out
// negative, or text that is not a number, is a run-time error.
long numberBetween(std::string_view line, std::size_t from, std::size_t to) {
    if (from == 0 || to < from) raiseError(err::InvalidProcedureCall);
    return CLng(Mid(line, from, to - from));
}

}  // namespace

std::string properCase(std::string_view text) {
    std::string out(text);
    bool wordStart = true;
    for (char &c : out) {
        const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        if (letter) {
            if (wordStart && c >= 'a') c = static_cast<char>(c - 'a' + 'A');
            if (!wordStart && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        }
        wordStart = c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\0';
    }
    return out;
}

OutputInterpreter::OutputInterpreter(InterpreterView &view, InterpreterState &state,
                                     std::function<double()> clock, std::string cygwinRoot)
    : view_(view), state_(state), clock_(std::move(clock)), cygwinRoot_(std::move(cygwinRoot)) {}

bool OutputInterpreter::due(double last, bool always) const {
    if (always) return true;
    const double now = clock_();
    // Past midnight the clock starts again below the last update; that
    // counts as time having passed.
    return now - last >= 0.5 || now < last;
}

void OutputInterpreter::deviceNotReady() {
    view_.sounds().play("DeviceFail", true);
    view_.setStatus(view_.message("msgDriveNotReady"));
}

void OutputInterpreter::objDOS_ReceiveOutputs(const std::string &received) {
    view_.writeCommandLog(received);
    view_.letEventsRun();
    std::string line = Replace(received, cygwinRoot_ + "/mkisofs: ", "", Compare::Text);
    line = Replace(line, cygwinRoot_ + "/dvdrecord: ", "", Compare::Text);

    bool hide = false;
    const Mode mode = view_.currentMode();
    for (const ModeRow &row : kModes) {
        if (row.mode != mode) continue;
        switch (row.reading) {
            case Reading::Hide:
                hide = true;
                break;
            case Reading::DVDSize:
                hide = true;
                recieveDVDSize(line);
                break;
            case Reading::DiscInfo:
                if (holds(line, kUnitNotReady)) deviceNotReady();
                break;
            case Reading::VersionInfo:
                // The first line with anything on it stays; the rest is hidden.
                if (!line.empty())
                    view_.ChangeCurrentMode(Mode::HideMe);
                else
                    hide = true;
                break;
            case Reading::ReadCD:
                hide = checkRead(line);
                break;
            case Reading::ReadTOC:
                hide = recieveTOC(line);
                break;
            case Reading::Write:
                hide = recieveWrite(line);
                break;
            case Reading::DVD:
                hide = recieveDVD(line);
                break;
            case Reading::Dump:
                hide = recieveDump(line);
                break;
        }
        break;
    }
    for (std::string_view phrase : kAlwaysHidden)
        if (holds(line, phrase)) hide = true;
    if (holds(line, kReloadPhrase)) line = std::string(kReloadText);
    if (!hide) view_.appendLog(line);
}

void OutputInterpreter::objDOS_nullOutputs() {
    if (readerOf(view_.currentMode())) recieveReadCD();
}

bool OutputInterpreter::translateLog(const std::string &line, std::string &translated,
                                     std::string_view pattern, const std::string &replacement,
                                     std::string_view sound) {
    if (!holds(line, pattern)) return false;
    if (!sound.empty()) view_.sounds().play(std::string(sound), true);
    translated = Replace(line, pattern, replacement, Compare::Text);
    return true;
}

void OutputInterpreter::runChain(const LogChainRow *rows, std::size_t count, const std::string &line,
                                 std::string &translated) {
    for (std::size_t i = 0; i < count; ++i) {
        const LogChainRow &row = rows[i];
        if (translateLog(line, translated, row.pattern, view_.message(row.key), row.sound)) {
            if (row.fails) view_.setWriteFailed();
            return;
        }
    }
}

std::string OutputInterpreter::progressText(long written, long total, bool hasFill, long fill) const {
    std::string text = Replace(view_.message("msgWriteProgress"), "%1", std::to_string(written));
    text = Replace(text, "%2", std::to_string(total));
    if (hasFill)
        text += " (" + view_.message("msgWriteBuffer") + " " + std::to_string(fill == 100 ? 99 : fill) + "%)";
    return text;
}

bool OutputInterpreter::recieveWrite(const std::string &line) {
    bool hide = false;
    std::string translated;
    if (holds(line, "Process can be aborted with QUIT signal (usually CTRL-\\).")) hide = true;
    if (holds(line, "finished successfully") || holds(line, "Blanking time:")) view_.setWriteSucceeded();

    if (holds(line, "Wrote ") && holds(line, " of ")) {
        // "Wrote 12 of 700 MB (Buffer 100%)."
        hide = true;
        const std::size_t wrote = InStr(line, "Wrote ", Compare::Text);
        const std::size_t of = InStr(wrote, line, " of ", Compare::Text);
        const long written = numberBetween(line, wrote + 6, of);
        const std::size_t mb = InStr(of, line, " MB", Compare::Text);
        const long total = numberBetween(line, of + 4, mb);
        // Where the drive reports its own buffer too, Debian's cdrdao prints
        // "Wrote 12 of 700 MB (Buffers 100%  98%)."; the first figure, the
        // program's buffer, is the one shown.
        const std::size_t buffers = InStr(mb, line, "(Buffers ", Compare::Text);
        const std::size_t percent = buffers != 0 ? InStr(buffers, line, "%") : InStr(mb, line, "%)");
        const bool hasBuffer = percent != 0;
        const long buffer =
            hasBuffer ? numberBetween(line, buffers != 0 ? buffers + 9 : mb + 12, percent) : 0;
        if (!due(state_.lastWriteUpdate, written == 1 || written == total)) return hide;
        if (written > 2) {
            // Value before Max, as the display has always been driven.
            view_.setProgressValue(static_cast<int>(written));
            view_.setProgressMax(static_cast<int>(total));
            translated = progressText(written, total, hasBuffer, buffer);
            state_.lastWriteUpdate = clock_();
        }
    } else {
        runChain(kWriteChain, std::size(kWriteChain), line, translated);
    }

    const std::string trackWord = view_.message("logWritingTrack");
    if (InStr(translated, trackWord, Compare::Text) != 0) {
        if (holds(translated, " (mode ")) {
            translated = properCase(translated);
            translated = Left(translated, InStr(translated, " (mode ", Compare::Text) - 1) + "...";
        }
        // While the bar runs the progress text stays on screen.
        if (view_.progressValue() != 0) translated.clear();
    }
    if (!translated.empty()) view_.setStatus(translated);
    return hide;
}

bool OutputInterpreter::recieveDVD(const std::string &line) {
    bool hide = false;
    std::string translated;
    for (std::string_view phrase : kDVDHidden)
        if (holds(line, phrase)) hide = true;
    if (line.empty() && view_.logEmpty()) hide = true;
    if (holds(line, "Fixating time:") || holds(line, "Writing  time:")) view_.setWriteSucceeded();
    // The writer ends a blank with its time and nothing else.
    if (state_.erasing && holds(line, "Blanking time: ")) view_.setWriteSucceeded();

    // "Track 01:   12 of  700 MB written (fifo 100%) [buf  99%]"
    const std::size_t mbWritten = InStr(line, " MB written", Compare::Text);
    const std::size_t of = mbWritten != 0 ? InStrRev(line, " of ", mbWritten, Compare::Text) : 0;
    const std::size_t blank = of > 1 ? InStrRev(line, " ", of - 1) : 0;
    if (mbWritten != 0 && of != 0 && blank != 0) {
        hide = true;
        const long written = numberBetween(line, blank, of);
        const long total = numberBetween(line, of + 4, InStr(of, line, " MB ", Compare::Text));
        const std::size_t fifoAt = InStr(line, " (fifo ", Compare::Text);
        const bool hasFifo = fifoAt != 0;
        const long fifo = hasFifo ? numberBetween(line, fifoAt + 7, InStr(fifoAt, line, "%) ")) : 0;
        if (!due(state_.lastDVDUpdate, written == 1 || written == total)) return hide;
        if (written > 2) {
            // Max before Value here: the reverse of the CD writer's order, kept.
            view_.setProgressMax(static_cast<int>(total));
            view_.setProgressValue(static_cast<int>(written));
            translated = progressText(written, total, hasFifo, fifo);
            state_.lastDVDUpdate = clock_();
        }
    } else {
        runChain(kDVDChain, std::size(kDVDChain), line, translated);
    }

    const std::string trackWord = view_.message("logWritingTrack");
    if (InStr(translated, trackWord, Compare::Text) != 0) {
        if (holds(translated, " (mode "))
            translated = Left(translated, InStr(translated, " (mode ", Compare::Text) - 1) + "...";
        if (view_.progressValue() != 0) translated.clear();
    }
    const std::string startWord = view_.message("logStartWrite");
    if (InStr(translated, startWord, Compare::Text) != 0 && holds(translated, " in "))
        translated = Left(translated, InStr(translated, " in ", Compare::Text) - 1) + "...";
    if (!translated.empty()) view_.setStatus(translated);
    return hide;
}

void OutputInterpreter::recieveDVDSize(const std::string &line) {
    // The writer ran only to tell the size; it has said it by now.
    if (holds(line, "Starting to write")) view_.killInstantly();
}

bool OutputInterpreter::recieveTOC(const std::string &line) {
    if (holds(line, kUnitNotReady)) deviceNotReady();
    if (const std::size_t leadout = InStrRev(line, "Leadout", 0, Compare::Text); leadout != 0) {
        const std::size_t open = InStr(leadout, line, "(");
        const std::size_t close = open != 0 ? InStr(open, line, ")") : 0;
        if (close != 0) {
            state_.readSectors = static_cast<float>(Val(Mid(line, open + 1, close - open - 1)));
            state_.discBytes = state_.readSectors * 2352.0f;
        }
    }
    if (state_.discBytes > 0) view_.killInstantly();  // the tool has said all that was wanted
    return false;
}

bool OutputInterpreter::checkRead(const std::string &line) {
    bool hide = false;
    if (holds(line, "This drive does not support RW sub-channel reading."))
        view_.setStatus(view_.message("msgNoRWRead"));
    if (holds(line, kUnitNotReady)) deviceNotReady();
    if (holds(line, "This drive does not support RW_RAW sub-channel reading."))
        view_.setStatus(view_.message("msgNoRWRAWRead"));
    if (line.size() == 8 && line[2] == ':' && line[5] == ':') {  // "mm:ss:ff", 75 sectors a second
        hide = true;
        const double minutes = Val(Mid(line, 1, 2));
        const double seconds = Val(Mid(line, 4, 2));
        const double frames = Val(Mid(line, 7, 2));
        state_.readSector = static_cast<std::int32_t>((minutes * 60 + seconds) * 75 + frames);
    }
    const bool shown = recieveReadCD();
    return hide || shown;
}

bool OutputInterpreter::recieveReadCD() {
    bool hide = false;
    for (int i = 0; i < 4; ++i) view_.letEventsRun();
    const ReaderRow *reader = readerOf(view_.currentMode());
    if (due(state_.lastReadUpdate, false) && reader) {
        state_.lastReadUpdate = clock_();
        if (state_.readSector != 0) {
            view_.setStatus(std::string(reader->status) + std::to_string(state_.readSector));
            const long percent = state_.readSectors > 0
                                     ? static_cast<long>(std::floor(static_cast<double>(state_.readSector) /
                                                                    state_.readSectors * 100))
                                     : 0;
            view_.setProgressMax(100);
            view_.setProgressValue(percent > 100 ? 100 : static_cast<int>(percent));
            const std::string caption = std::to_string(percent) + "% - saltmarrow";
            view_.setCaption(caption);
            view_.setTrayTip(caption);
        }
        for (int i = 0; i < 4; ++i) view_.letEventsRun();
        hide = true;
    }
    return hide;
}

bool OutputInterpreter::recieveDump(const std::string &line) {
    // readom's errors all begin so: "readom: Input/output error. Cannot read source disk".
    if (holds(line, "Cannot ")) view_.setWriteFailed();
    if (Left(line, 10) == "Capacity: ") {  // "Capacity: 2295104 Blocks = 4590208 kBytes = ..."
        state_.discBytes = static_cast<float>(Val(Mid(line, InStr(line, "= ") + 2)) * 1024);
        if (state_.readRoom >= 0 && state_.discBytes > state_.readRoom) {
            state_.readTooLarge = true;
            view_.killInstantly();
        }
    }
    if (Left(line, 5) == "end: ") state_.readSectors = static_cast<float>(Val(Mid(line, 6)));
    if (Left(line, 6) != "addr: ") return false;  // "addr:   123456 cnt: 128"
    state_.readSector = static_cast<std::int32_t>(Val(Mid(line, 7)));
    recieveReadCD();
    return true;
}

bool OutputInterpreter::readcd(const std::string &command) {
    state_.reading = true;
    state_.readSector = 0;
    view_.autoHideSettings();
    view_.setProgressValue(0);
    view_.clearLog();
    view_.setStatus("Waiting for device...");
    view_.setTrayTip("Waiting for device...");
    view_.enableControls(false, true);
    const double start = clock_();
    const bool result = view_.commandExecute(command);
    if (result) {
        double elapsed = clock_() - start;
        if (elapsed < 0) elapsed += 86400;  // the read ran past midnight
        view_.setStatus(view_.message("msgReadComplete") + " " +
                        view_.elapsedTimeText(static_cast<long>(std::lround(elapsed))));
    } else {
        view_.setStatus(view_.message("msgReadCancelled"));
    }
    view_.setProgressValue(0);
    view_.setCaption("saltmarrow");
    view_.setTrayTip("saltmarrow");
    view_.restoreWindow();
    view_.enableControls(true, false);
    state_.reading = false;
    return result;
}

}  // namespace saltmarrow
