// The offer after a good write: what is asked, what goes, what stays.
#include "discops/ImageDelete.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "discops/ImageTestSupport.h"
#include "platform/Dialogs.h"
#include "support/RuntimeError.h"
#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::discops;
using saltmarrow::test::readFile;
using saltmarrow::test::ScriptedDialogs;
using saltmarrow::test::TempDir;
using saltmarrow::test::writeFile;
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
        ctx.msg = test::imageMessage;
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

TEST(DeleteImage, ACueGoesWithItsBinAndTheEmptiedFolderIsOffered) {
    Offer o;
    std::string cue = o.put("written/Disc.cue", "FILE \"Disc.bin\" BINARY\n");
    std::string bin = o.put("written/Disc.bin");
    o.slot.strFilename = cue;
    o.slot.deleteCandidate = cue;
    o.dialogs.answer(mb::Yes);
    o.dialogs.answer(mb::Yes);

    DeleteImageResult r = o.offer(Mode::WriteCD);
    ASSERT_EQ(o.dialogs.prompts.size(), 2u);
    EXPECT_EQ(o.dialogs.prompts[0].text, "Please confirm deletion of Image Files");
    EXPECT_EQ(o.dialogs.prompts[0].style, 35);
    EXPECT_EQ(o.dialogs.prompts[1].text, "Delete empty folder: written");
    EXPECT_EQ(o.dialogs.prompts[1].style, 36);
    EXPECT_EQ(r.deleted, (std::vector<std::string>{cue, bin, o.dir.file("written")}));
    EXPECT_FALSE(fs::exists(o.dir.file("written")));
    EXPECT_TRUE(o.slot.strFilename.empty());
    EXPECT_TRUE(o.slot.deleteCandidate.empty());
    EXPECT_EQ(r.panel1, "NO IMAGE LOADED");
}

TEST(DeleteImage, ATocTakesItsDataFilesAndAFolderWithOtherFilesStays) {
    Offer o;
    std::string one = o.put("album/01.wav");
    std::string two = o.put("album/02.wav");
    std::string cover = o.put("album/cover.jpg");
    std::string toc = o.put("album/album.toc", "CD_DA\nTRACK AUDIO\nFILE \"" + one +
                                                   "\" 0\nTRACK AUDIO\nFILE \"" + two + "\" 0\n");
    o.slot.strFilename = toc;
    o.dialogs.answer(mb::Yes);
    o.offer(Mode::WriteCD);
    EXPECT_FALSE(fs::exists(one));
    EXPECT_FALSE(fs::exists(two));
    EXPECT_FALSE(fs::exists(toc));
    EXPECT_TRUE(fs::exists(cover));
    EXPECT_EQ(o.dialogs.prompts.size(), 1u);  // the folder is not empty
    EXPECT_TRUE(o.slot.strFilename.empty());
}

TEST(DeleteImage, NoOrCancelKeepsEverythingAndAnIsoIsOnlyLetGo) {
    for (int answer : {mb::No, mb::Cancel}) {
        Offer o;
        std::string cue = o.put("w/Disc.cue");
        std::string bin = o.put("w/Disc.bin");
        o.slot.strFilename = cue;
        o.dialogs.answer(answer);
        DeleteImageResult r = o.offer(Mode::WriteCD);
        EXPECT_TRUE(fs::exists(cue));
        EXPECT_TRUE(fs::exists(bin));
        EXPECT_EQ(o.slot.strFilename, cue);
        EXPECT_FALSE(r.panel1.has_value());
    }

    Offer o;
    std::string iso = o.put("w/Disc.iso");
    o.slot.strFilename = iso;
    o.dialogs.answer(mb::Yes);
    DeleteImageResult r = o.offer(Mode::WriteCD);
    EXPECT_TRUE(fs::exists(iso));
    EXPECT_TRUE(r.deleted.empty());
    EXPECT_TRUE(o.slot.strFilename.empty());
    EXPECT_EQ(r.panel1, "NO IMAGE LOADED");

    // The emptied folder stays when the user says No.
    Offer keep;
    keep.slot.strFilename = keep.put("k/Disc.cue");
    keep.put("k/Disc.bin");
    keep.dialogs.answer(mb::Yes);
    keep.dialogs.answer(mb::No);
    keep.offer(Mode::WriteCD);
    EXPECT_TRUE(fs::is_directory(keep.dir.file("k")));
    EXPECT_TRUE(fs::is_empty(keep.dir.file("k")));

    // Other tasks have nothing to offer.
    Offer copy;
    copy.slot.strFilename = copy.put("c/Disc.cue");
    copy.offer(Mode::CopyCD);
    EXPECT_TRUE(copy.dialogs.prompts.empty());
}

TEST(DeleteImage, AnAudioProjectsFolderIsDeletedOnYes) {
    Offer o;
    o.put("temp/proj/01.wav");
    o.put("temp/proj/authored.toc", "CD_DA\n");
    o.tempFolder = o.dir.file("temp/proj");
    o.slot.strFilename = o.tempFolder + "/authored.toc";
    o.dialogs.answer(mb::Yes);
    DeleteImageResult r = o.offer(Mode::AudioCD);
    ASSERT_EQ(o.dialogs.prompts.size(), 1u);
    EXPECT_EQ(o.dialogs.prompts[0].text, "Delete tempory folder: " + o.dir.file("temp/proj") + "?");
    EXPECT_EQ(o.dialogs.prompts[0].style, 36);
    EXPECT_FALSE(fs::exists(o.dir.file("temp/proj")));
    EXPECT_TRUE(fs::exists(o.dir.file("temp")));
    EXPECT_TRUE(o.tempFolder.empty());
    EXPECT_TRUE(o.slot.strFilename.empty());
    EXPECT_EQ(r.panel1, "NO IMAGE LOADED");
}

TEST(DeleteImage, KeepingTheAudioFolderNameMovesNothing) {
    for (std::optional<std::string> answer :
         {std::optional<std::string>(""), std::optional<std::string>("proj"), std::optional<std::string>()}) {
        Offer o;
        o.put("temp/proj/authored.toc", "CD_DA\n");
        o.tempFolder = o.dir.file("temp/proj");
        o.dialogs.answer(mb::No);
        if (answer)
            o.dialogs.answer(*answer);
        else
            o.dialogs.cancelNext();
        DeleteImageResult r = o.offer(Mode::AudioCD);
        EXPECT_TRUE(fs::exists(o.dir.file("temp/proj/authored.toc")));
        EXPECT_FALSE(r.reload);
        EXPECT_TRUE(o.tempFolder.empty());
    }
}

TEST(DeleteImage, ANewNameThatIsNoPlainNameOrIsTakenRaisesAndMovesNothing) {
    for (const std::string name : {"../escape", "a/b", "..", "taken"}) {
        SCOPED_TRACE(name);
        Offer o;
        o.put("temp/proj/authored.toc", "CD_DA\n");
        o.put("temp/taken/keep.txt");
        o.tempFolder = o.dir.file("temp/proj");
        o.dialogs.answer(mb::No);
        o.dialogs.answer(name);
        EXPECT_THROW(o.offer(Mode::AudioCD), RuntimeError);
        EXPECT_TRUE(fs::exists(o.dir.file("temp/proj/authored.toc")));
        EXPECT_TRUE(fs::exists(o.dir.file("temp/taken/keep.txt")));
    }
}
