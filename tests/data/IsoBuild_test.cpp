// The path list and the mkisofs options of a data project, without the tool.
#include <gtest/gtest.h>

#include "data/IsoBuild.h"

using namespace saltmarrow;
using namespace saltmarrow::data;

namespace {

TEST(IsoBuild, PathListEntriesAndCharsets) {
    const std::string empty = "C:/app/external/TEMP/~emptyfolder";
    // clang-format off
    const std::string cases[][4] = {  // relative path, name, source ("": a folder), entry
        {"",          "My=Docs", "",               "/My\\=Docs=C:/app/external/TEMP/~emptyfolder"},
        {"\\My=Docs", "a.txt",   "C:/src/a.txt",   "/My\\=Docs/a.txt=C:/src/a.txt"},
        {"\\a\\b",    "=c d",    "/s=t/=c d",      "/a/b/\\=c d=/s\\=t/\\=c d"},
        {"",          "k",       "/back\\slash/k", "/k=/back\\\\slash/k"},
    };
    const char *charsets[][2] = {{"UTF-8", "utf-8"}, {"ANSI_X3.4-1968", "utf-8"}, {"", "utf-8"},
                                 {"ISO-8859-15", "iso8859-15"}, {"KOI8-R", "koi8-r"}, {"CP1252", "cp1252"}};
    // clang-format on
    for (const auto &c : cases) EXPECT_EQ(pathListEntry(c[0], c[1], c[2], c[2].empty(), empty), c[3]);
    EXPECT_EQ(pathListEntry("\\a", "Grüße", "", true, "/t=1/~e"), "/a/Grüße=/t\\=1/~e");
    for (const auto &c : charsets) EXPECT_EQ(isoCharset(c[0]), c[1]);
}

TEST(IsoBuild, OptionsInTheirOrder) {
    const std::string head = " -input-charset utf-8 -output-charset utf-8 ";
    const std::string list = " --path-list \"/t/l.txt\" -graft-points ";
    const std::string boot = "-b BootImage.img -c BootCatalog.cat -hide BootImage.img -hide BootCatalog.cat ";
    using B = IsoBox;
    struct Case {
        std::vector<IsoBox> boxes;
        std::function<void(IsoCommandInput &)> edit;
        std::string expected;
    } cases[] = {
        {{B::Joliet, B::RockRidge, B::UDF}, {}, head + " -udf" + list + "-J -r -volid \"DISC\" "},
        {{B::LongJoliet, B::ISOLevel2, B::VersionNo, B::DontRelocate, B::ISO1999, B::RelaxISO},
         [](IsoCommandInput &in) {
             in.iso.text(IsoField::Label).clear();
             in.iso.text(IsoField::Publisher) = "a \"b\"";
             in.iso.text(IsoField::Copyright) = "c";
         },
         head + list +
             "-joliet-long -iso-level 2 -N -D -iso-level 4 -allow-multidot -relaxed-filenames "
             "-allow-lowercase -d "
             "-L -publisher \"a \\\"b\\\"\" -copyright \"c\" "},
        // DVD-Video: no -udf of its own, and the staging folder last.
        {{B::UDF, B::RockRidge},
         [](IsoCommandInput &in) { in.blnDVDVideo = true; },
         head + " -dvd-video -f -r -volid \"DISC\" \"/t/v\""},
        {{},
         [](IsoCommandInput &in) { in.largeFile = true; },
         head + " -udf -allow-limited-size" + list + "-volid \"DISC\" "},
        {{B::Joliet, B::BootImage, B::NoEmulation, B::LoadSize, B::BootInfoTable},
         [](IsoCommandInput &in) { in.iso.text(IsoField::LoadSize) = "4 sectors"; },
         head + list + "-J -volid \"DISC\" " + boot +
             " -hide-joliet BootImage.img -hide-joliet BootCatalog.cat -no-emul-boot -boot-load-size 4 "
             "-boot-info-table \"/BootImage.img=/t/B\\=i.img\" "},
        {{B::BootImage}, {}, head + list + "-volid \"DISC\" " + boot + "\"/BootImage.img=/t/B\\=i.img\" "},
    };
    for (const Case &c : cases) {
        IsoCommandInput in{{}, false, "utf-8", "/t/l.txt", "/t/v", "/t/B=i.img", false};
        for (IsoField f : {IsoField::VolNo, IsoField::VolSize, IsoField::Application}) in.iso.text(f).clear();
        in.iso.text(IsoField::Label) = "DISC";
        for (IsoBox b : c.boxes) in.iso.boxes[static_cast<std::size_t>(b)] = true;
        if (c.edit) c.edit(in);
        EXPECT_EQ(getIsoCommand(in), c.expected);
    }
}

}  // namespace
