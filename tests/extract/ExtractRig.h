#ifndef SALTMARROW_TESTS_EXTRACT_EXTRACTRIG_H
#define SALTMARROW_TESTS_EXTRACT_EXTRACTRIG_H

#include <QAction>
#include <QCheckBox>
#include <QPushButton>
#include <QTreeWidget>
#include <filesystem>

#include "extract/frmExtractTracks.h"
#include "testlib/FakeDrive.h"
#include "testlib/ShellHarness.h"

namespace saltmarrow::test {

// A three-track disc with CD-Text: a backslash, a climb and a pipeline in its names.
inline const std::string kThreeTracks =
    "tracks = 375 300 450\nalbum = Live\nartist = AC/DC\ntitle1 = Hells \\Bells\ntitle2 = ..\n"
    "title3 = \" | rm -rf ~ \"\nartist3 = Guest\n";

// The main window in a program folder whose name is shell syntax, a fake
// reader with disc in it (none for an empty disc), Debian's encoders in its
// tools folder, and the extraction window as mnuExtractTracks opens it.
struct ExtractRig {
    TempDir root;
    const std::string app = root.file("a\" | touch PWNED \"b"), music = root.file("Music");
    std::unique_ptr<ShellHarness> h;
    frmExtractTracks *x = nullptr;

    explicit ExtractRig(const std::string &disc, const std::vector<const char *> &encoders = {},
                        bool drive = true) {
        LinuxDrive reader;
        reader.medium = disc.empty() ? "n/a" : "CD-ROM";
        reader.extra = disc;
        installFakeDrive(app, drive ? std::vector<LinuxDrive>{reader} : std::vector<LinuxDrive>{});
        for (const char *encoder : encoders)
            std::filesystem::create_symlink(std::string("/usr/bin/") + encoder, app + "/external/" + encoder);
        h = ShellHarness::inFolder(app, "", false);
        h->form().Form_Load();
        h->form().settings.setText("MRUExtract", music);
        h->dialogs.prompts.clear();
        h->form().mnuExtractTracks->trigger();
        x = h->form().extractTracks;
    }
    ~ExtractRig() {
        for (const std::string &folder : {app + "/external", music, std::string(".")})
            EXPECT_FALSE(std::filesystem::exists(folder + "/PWNED"));
    }
    std::vector<std::string> rows() const {
        std::vector<std::string> out;
        for (int i = 0; x && i < x->listFiles->topLevelItemCount(); ++i)
            out.push_back(x->listFiles->topLevelItem(i)->text(0).toStdString());
        return out;
    }
    std::string lastBox() const { return h->dialogs.prompts.empty() ? "" : h->dialogs.prompts.back().text; }
    void extract(int encoder, bool image = false) {
        h->form().settings.setText("UseEncoder", std::to_string(encoder));
        x->chkImageFile->setChecked(image);
        x->listFiles->selectAll();
        x->cmdExtract->click();
    }
};

}  // namespace saltmarrow::test

#endif
