// The extraction windows: what a user is told when the disc, the settings or
// the folder will not do, and the settings dialog with its Cancel.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>

#include "ExtractRig.h"
#include "extract/frmExtractSettings.h"
#include "shell/ExtractLink.h"

using namespace saltmarrow;
using namespace saltmarrow::test;
using testing::HasSubstr;
namespace fs = std::filesystem;

TEST(ExtractWindow, BadInputIsToldAndNothingIsWrittenOutsideTheFolder) {
    const std::vector<std::string> three = {"01 - Hells Bells", "02 - ..", "03 - \" | rm -rf ~ \""};
    // A data track first, and CD-Text with control characters.
    const std::string mixed = "tracks = 150 75\ndata_tracks = 1\ntitle2 = A\tB\001C\n";
    struct Case {
        std::string disc;         // empty: no disc in the drive
        const char *key, *value;  // a setting before the run
        int encoder;              // Wave, or Lame (not there)
        std::vector<std::string> rows, files;
        const char *box;  // empty: none
        bool drive = true;
    };
    // clang-format off
    const Case cases[] = {
        {kThreeTracks, "", "", 0, {}, {}, "Please select a Read Device.", false},
        {"", "", "", 0, {}, {}, "Please insert the disc to be read!"},
        {"tracks = 4500\ndata_tracks = 1\n", "", "", 0, {}, {}, ""},
        {kThreeTracks, "ExtractPath", "/%4", 0, three, {}, "template \"/%4\" has to name a file below"},
        {kThreeTracks, "", "", 1, three, {}, "/external/lame was not found."},
        {kThreeTracks, "MRUExtract", "/proc", 0, three, {}, "The folder /proc/AC-DC cannot be written to."},
        {mixed, "", "", 0, {"01 - A B C"}, {"Unknown Artist/Unknown Album/01 - A B C.wav"}, "1 tracks extracted"},
    };
    // clang-format on
    for (const Case &c : cases) {
        ExtractRig r(c.disc, {}, c.drive);
        SCOPED_TRACE(c.disc + c.key + c.value);
        EXPECT_EQ(r.rows(), c.rows);
        if (r.x && *c.key) r.h->form().settings.setText(c.key, c.value);
        if (r.x) r.extract(c.encoder);
        EXPECT_THAT(r.lastBox(), HasSubstr(c.box));
        EXPECT_EQ(r.h->dialogs.prompts.size(), *c.box ? 1u : 0u);
        std::vector<std::string> files;
        for (const auto &e : fs::recursive_directory_iterator(r.root.path()))
            if (e.is_regular_file() && e.path().string().find(r.app) != 0)
                files.push_back(fs::relative(e.path(), r.music).string());
        EXPECT_EQ(files, c.files);
        EXPECT_TRUE(livingProcessesNaming(r.app).empty()) << "a prompt for a disc ends the run";
        EXPECT_EQ(fakeCalls(r.app, "cdda2wav dev=/dev/sr0 -gui -B -H -x -t2+2 ").size(), c.files.size());
    }
}

TEST(ExtractSettings, WaveHasNoCommandAndCancelKeepsOnlyTheChoiceOfEncoder) {
    ShellHarness h;
    frmMain &f = h.form();
    f.Form_Load();
    f.settings.setText("UseEncoder", "3");
    const ExtractHost host = extractHost(f);
    frmExtractSettings d(host);
    d.Form_Load();
    EXPECT_EQ(d.txtCommand->text() + "|" + d.txtPath->text(),
              "--compression-level-5 -o %out %in|%1/%2/%3 - %4");
    for (int encoder : {0, 1}) {
        d.cmbEncoder->setCurrentIndex(encoder);
        d.cmbEncoder_Click();
        // Wave has no program to command, but an extension.
        EXPECT_EQ(d.txtCommand->isEnabled() + d.txtTagging->isEnabled() + d.txtExtension->isEnabled(),
                  1 + 2 * encoder);
        d.txtExtension->setText("wave");  // lost with the change of row
    }
    d.txtCommand->setText("-V 2 %in %out");
    d.txtPath->setText("%4");
    d.cmdCancel->click();
    const auto &rows = f.encoderTable->rows;
    EXPECT_EQ(rows[0][EncExtension] + "|" + rows[1][EncArguments] + "|" + f.settings.text("ExtractPath") +
                  "|" + f.settings.text("UseEncoder"),
              "wav|--alt-preset standard -Y %in %out|%1/%2/%3 - %4|1");

    d.Form_Load();
    d.txtCommand->setText("-V 2 %in %out");
    h.dialogs.answer(FolderChoice{"/srv/music", false});
    d.cmdBrowse->click();
    d.cmdOK->click();
    EXPECT_EQ(d.cmbEncoder->currentText().toStdString() + "|" + rows[1][EncArguments] + "|" +
                  f.settings.text("MRUExtract"),
              "Lame|-V 2 %in %out|/srv/music");
}
