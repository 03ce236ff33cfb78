// The offer after a good write: what is asked, what goes, what stays.
#include "discops/ImageDelete.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "exec/EnglishTexts.h"
#include "platform/Dialogs.h"
#include "support/RuntimeError.h"
#include "support/mdlFunctions.h"
#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::discops;
using namespace saltmarrow::test;
namespace fs = std::filesystem;
namespace mb = saltmarrow::platform::mb;

namespace {

struct Offer {
    TempDir dir;
    ScriptedDialogs dialogs;
    ImageSlot slot;
    ImageContext ctx;
    std::string tempFolder;
    Offer() {
        fs::create_directories(dir.file("app/external"));
        ctx.appDir = dir.file("app");
        ctx.dialogs = &dialogs;
        ctx.msg = test::englishText;
    }
    std::string put(const std::string &name, const std::string &bytes = "x") {
        std::string path = dir.file(name);
        fs::create_directories(fs::path(path).parent_path());
        writeFile(path, bytes);
        return path;
    }
    DeleteImageResult offer(Mode mode) { return deleteImage(slot, tempFolder, mode, ctx); }
};

}  // namespace

// Each offer in folders of its own: the files before, the answers, the
// questions (text and style), and what is left.
TEST(DeleteImage, WhatIsAskedWhatGoesWhatStays) {
    using Answer = ScriptedDialogs::Answer;
    struct Row {
        const char *what;
        Mode mode;
        std::vector<std::string> files;  // the first is the loaded image; "temp/proj/..." makes tempFolder
        std::vector<Answer> answers;     // a monostate cancels the name
        std::vector<std::string> questions;
        std::vector<std::string> left;  // of the files and their folders
        bool unloaded, raises = false;
    };
    const std::string confirm = "Please confirm deletion of Image Files (35)";
    const std::string temp = "Delete tempory folder: @/temp/proj? (36)", name = "Rename tempory folder (0)";
    const std::vector<std::string> project{"temp/proj/authored.toc", "temp/proj/01.wav"},
        kept{"temp", "temp/proj", "temp/proj/01.wav", "temp/proj/authored.toc"},
        taken{"temp/proj/authored.toc", "temp/proj/01.wav", "temp/taken/x"},
        besideTaken{"temp",       "temp/proj",   "temp/proj/01.wav", "temp/proj/authored.toc",
                    "temp/taken", "temp/taken/x"};
    // clang-format off
    const Row rows[] = {
        {"a cue with its bin, then the emptied folder", Mode::WriteCD, {"w/Disc.cue", "w/Disc.bin"},
         {mb::Yes, mb::Yes}, {confirm, "Delete empty folder: w (36)"}, {}, true},
        {"the emptied folder stays on No", Mode::WriteCD, {"w/Disc.cue", "w/Disc.bin"},
         {mb::Yes, mb::No}, {confirm, "Delete empty folder: w (36)"}, {"w"}, true},
        {"a toc with its data files; a folder with other files stays", Mode::WriteCD,
         {"w/album.toc", "w/01.wav", "w/02.wav", "w/cover.jpg"}, {mb::Yes}, {confirm}, {"w", "w/cover.jpg"},
         true},
        {"No keeps everything", Mode::WriteCD, {"w/Disc.cue", "w/Disc.bin"}, {mb::No}, {confirm},
         {"w", "w/Disc.bin", "w/Disc.cue"}, false},
        {"so does Cancel", Mode::WriteCD, {"w/Disc.cue", "w/Disc.bin"}, {mb::Cancel}, {confirm},
         {"w", "w/Disc.bin", "w/Disc.cue"}, false},
        {"an ISO is only let go", Mode::WriteCD, {"w/Disc.iso"}, {mb::Yes}, {confirm}, {"w", "w/Disc.iso"},
         true},
        {"other tasks have nothing to offer", Mode::CopyCD, {"w/Disc.cue"}, {}, {}, {"w", "w/Disc.cue"},
         false},
        {"an audio project's folder", Mode::AudioCD, project, {mb::Yes}, {temp}, {"temp"}, true},
        // Kept, the folder may take a new name; the sheet takes it and follows its tracks.
        {"a new name", Mode::AudioCD, project, {mb::No, std::string("Road Trip")}, {temp, name},
         {"temp", "temp/Road Trip", "temp/Road Trip/01.wav", "temp/Road Trip/Road Trip.toc"}, false},
        {"the same name", Mode::AudioCD, project, {mb::No, std::string("proj")}, {temp, name}, kept, false},
        // A cancelled name is no name, and no name keeps the old one.
        {"the name cancelled", Mode::AudioCD, project, {mb::No, std::monostate{}}, {temp, name}, kept, false},
        // A name that is no plain name, or is taken, raises and moves nothing.
        {"a way out", Mode::AudioCD, taken, {mb::No, std::string("../x")}, {temp, name},
         besideTaken, false, true},
        {"the parent", Mode::AudioCD, taken, {mb::No, std::string("..")}, {temp, name},
         besideTaken, false, true},
        {"a name taken", Mode::AudioCD, taken, {mb::No, std::string("taken")}, {temp, name},
         besideTaken, false, true},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        Offer o;
        for (const std::string &name : row.files) o.put(name, "x");
        if (row.files[0].find(".toc") != std::string::npos)
            writeFile(o.dir.file(row.files[0]), "CD_DA\nTRACK AUDIO\nFILE \"" + o.dir.file("w/01.wav") +
                                                    "\" 0\nTRACK AUDIO\nFILE \"" + o.dir.file("w/02.wav") +
                                                    "\" 0\n");
        if (row.mode == Mode::AudioCD) o.tempFolder = o.dir.file("temp/proj");
        o.slot.strFilename = o.slot.deleteCandidate = o.dir.file(row.files[0]);
        for (const Answer &answer : row.answers) o.dialogs.answer(answer);
        DeleteImageResult r;
        if (row.raises)
            EXPECT_THROW(o.offer(row.mode), RuntimeError);
        else
            r = o.offer(row.mode);
        std::vector<std::string> questions, left;
        for (const auto &p : o.dialogs.prompts)
            questions.push_back(vb::Replace(p.kind == "input" ? p.title : p.text, o.dir.path(), "@") + " (" +
                                std::to_string(p.style) + ")");
        EXPECT_EQ(questions, row.questions);
        for (const auto &e : fs::recursive_directory_iterator(o.dir.path()))
            if (e.path().string().find("/app") == std::string::npos)
                left.push_back(fs::relative(e.path(), o.dir.path()).string());
        std::sort(left.begin(), left.end());
        EXPECT_EQ(left, row.left);
        EXPECT_EQ(o.slot.strFilename.empty(), row.unloaded);
        EXPECT_EQ(r.panel1.value_or(""), row.unloaded ? "NO IMAGE LOADED" : "");
        EXPECT_TRUE(o.tempFolder.empty());
        const std::string renamed = o.dir.file("temp/Road Trip/Road Trip.toc");
        EXPECT_EQ(r.reload, fs::exists(renamed));
        if (r.reload) {
            EXPECT_EQ(o.slot.startCommand, renamed);
            EXPECT_NE(readFile(renamed).find(o.dir.file("temp/Road Trip/01.wav")), std::string::npos);
        }
    }
}
