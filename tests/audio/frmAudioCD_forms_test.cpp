// The audio CD window: what it offers with the tools at hand, its keys, the
// disc database hand-back and the split, and the whole walk from files to a
// written disc.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <filesystem>

#include "AudioTestHost.h"
#include "audio/frmAudioCD.h"
#include "platform/CommandLine.h"
#include "testlib/FakeDrive.h"
#include "testlib/ShellHarness.h"

using namespace saltmarrow;
using namespace saltmarrow::test;
namespace fs = std::filesystem;
namespace mb = saltmarrow::platform::mb;

namespace {

std::vector<std::string> rowTexts(const QTreeWidget *list) {
    std::vector<std::string> out;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        out.push_back(list->topLevelItem(i)->text(0).toStdString() + " " +
                      list->topLevelItem(i)->text(2).toStdString());
    return out;
}

}  // namespace

TEST(AudioWindow, KeysTheDiscDatabaseAndWhatIsNotThere) {
    TempDir music;
    writeWave(music.file("b.wav"), 44100, 2, 3000);
    writeWave(music.file("a.wav"), 44100, 2, 4000);
    AudioTestHost h;
    h.settings["UseCDText"] = h.settings["2secGap"] = "True";
    std::vector<long> asked;
    std::vector<std::string> opened;
    h.host.QueryFreedb = [&](const std::vector<long> &lengths) -> std::optional<FreedbResult> {
        asked = lengths;
        return FreedbResult{{"Album", "Band"}, {"First", "Band"}, {"Second", "Guest"}};
    };
    h.host.openDocument = [&](const std::string &path) { opened.push_back(path); };
    frmAudioCD form(h.host);
    form.Form_Load();
    EXPECT_EQ(form.audioExtensions, "*.wav") << "no decoder, no other kind";
    EXPECT_FALSE(form.mnuWaveGain->isEnabled()) << "no WaveGain tool";
    EXPECT_FALSE(form.mnuSplitLengths->isVisible()) << "without the database mnuSplit asks for typed lengths";

    form.dropFiles({music.file("b.wav"), music.file("a.wav")});
    EXPECT_EQ(rowTexts(form.listFiles), (std::vector<std::string>{"a 00:04:00", "b 00:03:00"}));
    EXPECT_EQ(form.sbPanel1->text().toStdString(), "Total Time: 0mins 11secs");
    form.cmdFreedb->click();
    EXPECT_EQ(asked, (std::vector<long>{2000, 6000, 3000})) << "a track with the gap in front of the next";
    EXPECT_EQ(rowTexts(form.listFiles), (std::vector<std::string>{"First 00:04:00", "Second 00:03:00"}));

    form.listFiles->topLevelItem(1)->setSelected(true);
    emit form.listFiles->itemDoubleClicked(form.listFiles->topLevelItem(1), 0);
    EXPECT_EQ(opened, std::vector<std::string>{music.file("b.wav")});
    QKeyEvent del(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier);
    QApplication::sendEvent(form.listFiles, &del);
    EXPECT_EQ(rowTexts(form.listFiles), std::vector<std::string>{"First 00:04:00"});

    // With the database, mnuSplit cuts by its lengths, and mnuSplitLengths splits too.
    h.host.GetTrackLengths = [] {
        return std::make_optional(std::make_pair(std::vector<std::string>{"00:01:00"}, FreedbResult{}));
    };
    frmAudioCD split(h.host);
    split.Form_Load();
    split.dropFiles({music.file("a.wav")});
    split.mnuSplit->trigger();
    EXPECT_EQ(rowTexts(split.listFiles), (std::vector<std::string>{" 001  00:01:00", " 002 00:03:00"}));
    split.mnuSplitLengths->trigger();
    EXPECT_EQ(h.boxes(), std::vector<std::string>{"Only one track may exist in project to be split."});
}

TEST(AudioWindow, FilesAreCompiledHandedToTheMainWindowAndWritten) {
    for (const char *tool : {"lame", "madplay", "cdrdao"})
        if (!haveProgram(tool)) GTEST_SKIP() << tool << " is not installed (scripts/setup installs it)";
    TempDir app, music;
    LinuxDrive writer;
    writer.readsDVD = writer.writesDVD = false;
    writer.medium = "CD-R";
    writer.extra = "blank = yes\nappendable = no\nrewritable = no\ncapacity = 359849\n";
    installFakeDrive(app.path(), {writer});
    fs::create_symlink("/usr/bin/madplay", app.path() + "/external/madplay");
    const std::string wav = music.file("one.wav"), mp3 = music.file("two.mp3");
    writeWave(wav, 44100, 2, 6000);
    DOSOutputs().ExecuteCommand("lame --quiet " + platform::quoteArgument(wav) + " " +
                                platform::quoteArgument(mp3));

    auto h = ShellHarness::inFolder(app.path(), "", false);
    frmMain &f = h->form();
    ASSERT_TRUE(f.Form_Load());
    f.settings.setText("TempFolder", app.path() + "/scratch");
    f.mnuAudioCD->trigger();
    ASSERT_TRUE(f.audioCD);
    frmAudioCD &audio = *f.audioCD;
    h->dialogs.answer(std::vector<std::string>{mp3, wav});
    audio.cmdAddFiles->click();
    ASSERT_EQ(audio.listFiles->topLevelItemCount(), 2);
    h->dialogs.answer(mb::Yes);  // load into the main window
    audio.cmdCompile->click();

    EXPECT_TRUE(audio.isHidden());
    EXPECT_EQ(f.currentMode, Mode::AudioCD);
    EXPECT_EQ(f.sbPanel[0]->text().toStdString() + "|" + f.txtStatus->text().toStdString(),
              "AUDIO CD|AUDIO CD");
    EXPECT_EQ(f.slot.strFilename, f.strTempName + "/authored.toc");
    f.cmdWrite->click();

    EXPECT_TRUE(h->errors.reports.empty()) << h->errors.reports.front();
    EXPECT_TRUE(f.writeSucceeded) << f.txtStatus->text().toStdString();
    const std::string calls = readFile(app.path() + "/external/fakedrive.log");
    EXPECT_NE(calls.find("write --device /dev/sr0"), std::string::npos) << calls;
    EXPECT_NE(calls.find(f.strTempName + "/authored.toc"), std::string::npos) << calls;
}
