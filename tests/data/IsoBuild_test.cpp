// The path list and the mkisofs options of a data project, without the tool.
#include "data/IsoBuild.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/Dialogs.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::data;
namespace fs = std::filesystem;

namespace {

TEST(IsoBuild, PathListEntries) {
    const std::string empty = "C:/app/external/TEMP/~emptyfolder";
    struct Case {
        std::string relative, name, source;
        bool folder;
        std::string entry;
    } cases[] = {
        {"", "My=Docs", "", true, "/My\\=Docs=C:/app/external/TEMP/~emptyfolder"},
        {"\\My=Docs", "a.txt", "C:/src/a.txt", false, "/My\\=Docs/a.txt=C:/src/a.txt"},
        {"", "x.bin", "/s/x.bin", false, "/x.bin=/s/x.bin"},
        {"\\a\\b", "=c d", "/s=t/=c d", false, "/a/b/\\=c d=/s\\=t/\\=c d"},
        {"", "k", "/back\\slash/k", false, "/k=/back\\\\slash/k"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(pathListEntry(c.relative, c.name, c.source, c.folder, empty), c.entry);
    EXPECT_EQ(pathListEntry("\\a", "Grüße", "", true, "/t=1/~e"), "/a/Grüße=/t\\=1/~e");
}

TEST(IsoBuild, CharsetOfTheLocale) {
    for (auto [codeset, name] : {std::pair{"UTF-8", "utf-8"},
                                 {"ANSI_X3.4-1968", "utf-8"},
                                 {"", "utf-8"},
                                 {"ISO-8859-15", "iso8859-15"},
                                 {"KOI8-R", "koi8-r"},
                                 {"CP1252", "cp1252"}})
        EXPECT_EQ(isoCharset(codeset), name);
}

TEST(IsoBuild, OptionsInTheirOrder) {
    IsoSettings plain;
    for (IsoField f : {IsoField::VolNo, IsoField::VolSize, IsoField::Application}) plain.text(f).clear();
    plain.text(IsoField::Label) = "DISC";
    const std::string head = " -input-charset utf-8 -output-charset utf-8 ";
    const std::string list = " --path-list \"/t/l.txt\" -graft-points ";
    auto with = [&](std::initializer_list<IsoBox> boxes, auto edit) {
        IsoCommandInput in{plain, false, "utf-8", "/t/l.txt", "/t/v", "/t/B=i.img", false};
        for (IsoBox b : boxes) in.iso.boxes[static_cast<std::size_t>(b)] = true;
        edit(in);
        return getIsoCommand(in);
    };
    const auto none = [](IsoCommandInput &) {};
    EXPECT_EQ(with({IsoBox::Joliet, IsoBox::RockRidge, IsoBox::UDF}, none),
              head + " -udf" + list + "-J -r -volid \"DISC\" ");
    EXPECT_EQ(with({IsoBox::LongJoliet, IsoBox::ISOLevel2, IsoBox::VersionNo, IsoBox::DontRelocate,
                    IsoBox::ISO1999, IsoBox::RelaxISO},
                   [](IsoCommandInput &in) {
                       in.iso.text(IsoField::Label).clear();
                       in.iso.text(IsoField::Publisher) = "a \"b\"";
                       in.iso.text(IsoField::Copyright) = "c";
                   }),
              head + list +
                  "-joliet-long -iso-level 2 -N -D -iso-level 4 -allow-multidot -relaxed-filenames "
                  "-allow-lowercase -d -L -publisher \"a \\\"b\\\"\" -copyright \"c\" ");
    // DVD-Video: no -udf of its own, and the staging folder last.
    EXPECT_EQ(with({IsoBox::UDF, IsoBox::RockRidge}, [](IsoCommandInput &in) { in.blnDVDVideo = true; }),
              head + " -dvd-video -f -r -volid \"DISC\" \"/t/v\"");
    EXPECT_EQ(with({}, [](IsoCommandInput &in) { in.largeFile = true; }),
              head + " -udf -allow-limited-size" + list + "-volid \"DISC\" ");
    const std::string boot = "-b BootImage.img -c BootCatalog.cat -hide BootImage.img -hide BootCatalog.cat ";
    EXPECT_EQ(with({IsoBox::Joliet, IsoBox::BootImage, IsoBox::NoEmulation, IsoBox::LoadSize,
                    IsoBox::BootInfoTable},
                   [](IsoCommandInput &in) { in.iso.text(IsoField::LoadSize) = "4 sectors"; }),
              head + list + "-J -volid \"DISC\" " + boot +
                  " -hide-joliet BootImage.img -hide-joliet BootCatalog.cat -no-emul-boot -boot-load-size 4 "
                  "-boot-info-table \"/BootImage.img=/t/B\\=i.img\" ");
    EXPECT_EQ(with({IsoBox::BootImage}, none),
              head + list + "-volid \"DISC\" " + boot + "\"/BootImage.img=/t/B\\=i.img\" ");
}

// A project L with a folder My=Docs holding a.txt, an empty folder and a
// file in the root, listed into a temporary folder.
struct ListRig : ::testing::Test {
    test::TempDir dir;
    platform::ScriptedDialogs dialogs;
    DataProject project;
    DataJob job{project, [this] {
                    DataHost h;
                    h.dialogs = &dialogs;
                    h.message = [](std::string_view key) { return std::string(key); };
                    return h;
                }()};
    std::string mode = "DATA CD";
    IsoBuild build{job, [this] {
                       IsoBuildHost h;
                       h.tempFolder = dir.path();
                       h.charset = "utf-8";
                       h.ChangeCurrentMode = [this](const std::string &m) { mode = m; };
                       return h;
                   }()};

    void SetUp() override {
        test::writeFile(dir.file("a.txt"), "a");
        test::writeFile(dir.file("r=1"), "r");
        job.ClearList("L");
        project.newFolder(project.root(), "Empty");
        job.loadFolderObjects(project.Key(project.newFolder(project.root(), "My=Docs")));
        job.addFiles({dir.path(), "a.txt"});
        job.loadFolderObjects("L");
        job.addFiles({dir.path(), "r=1"});
    }
};

TEST_F(ListRig, ListInNodeOrderWithoutATrailingLineEnd) {
    ASSERT_TRUE(build.buildFileList(false));
    const std::string empty = dir.file("~emptyfolder");
    EXPECT_EQ(test::readFile(dir.file("filelist.txt")), "/Empty=" + empty + "\n/My\\=Docs=" + empty +
                                                            "\n/r\\=1=" + dir.path() +
                                                            "/r\\=1\n/My\\=Docs/a.txt=" + dir.file("a.txt"));
    EXPECT_TRUE(fs::is_directory(empty));
    EXPECT_FALSE(fs::exists(dir.file("isofilelist.txt")));
    ASSERT_TRUE(build.buildFileList(true));
    EXPECT_TRUE(fs::exists(dir.file("isofilelist.txt")));
}

TEST_F(ListRig, CancelDeletesTheListAndClearsTheMode) {
    project.cancelFlag = true;
    EXPECT_FALSE(build.buildFileList(true));
    EXPECT_FALSE(fs::exists(dir.file("isofilelist.txt")));
    EXPECT_EQ(mode, "");
}

TEST_F(ListRig, EmptyProjectAsksForData) {
    job.ClearList("L");
    build.cmdBurn_Click({});
    ASSERT_EQ(dialogs.prompts.size(), 1u);
    EXPECT_EQ(dialogs.prompts[0].text, "msgAddData");
}

TEST_F(ListRig, DVDVideoStandsAsLinks) {
    project.blnDVDVideo = true;
    ASSERT_TRUE(build.buildFileList(false));
    const std::string stage = dir.file("dvdvideo");
    EXPECT_TRUE(fs::is_directory(stage + "/Empty"));
    EXPECT_EQ(fs::read_symlink(stage + "/My=Docs/a.txt"), dir.file("a.txt"));
    EXPECT_EQ(test::readFile(stage + "/r=1"), "r");
}

}  // namespace
