#include "discops/DiscErase.h"

#include <gtest/gtest.h>

#include "platform/LinuxDriveLayer.h"
#include "platform/WindowsDeviceForms.h"

using namespace saltmarrow;
using namespace saltmarrow::discops;

namespace {

TEST(DiscErase, ACDByCdrdaoADVDByTheDVDWriter) {
    struct Row {
        const char *medium, *eraseMode;
        bool linux;
        Mode mode;
        std::string command;
    };
    const Row rows[] = {
        {"CD-RW", "full", false, Mode::EraseCD,
         "\"cdrdao\" blank --device ASPILOCK:1,0,0 --driver generic-mmc:0x0  --reload --blank-mode full"},
        {"", "minimal", true, Mode::EraseCD,
         "\"cdrdao\" blank --device /dev/sr0 --driver generic-mmc:0x0  --reload --blank-mode minimal"},
        {"DVD-RW", "full", false, Mode::WriteDVD,
         "\"/a b/dvdrecord\" blank=all dev=ASPILOCK:1,0,0 gracetime=0"},
        {"DVD+RW", "minimal", true, Mode::WriteDVD,
         "\"/a b/dvdrecord\" blank=minimal dev=/dev/sr0 gracetime=0"},
    };
    const platform::WindowsDeviceForms windows;
    const platform::LinuxDriveLayer linux("/nonexistent");
    for (const Row &row : rows) {
        DeviceInfo writer;
        writer.LastMediaType = row.medium;
        writer.Driver = "generic-mmc";
        writer.DriverOptions = "0";
        WritePanel panel;
        panel.cmbWriterDevice = row.linux ? "/dev/sr0: HL-DT-ST, DVDRAM" : "1,0,0: PLEXTOR, PX-W4012A";
        const ErasePlan plan =
            planErase(row.eraseMode, writer, panel, FragmentSettings{}, {"cdrdao", "/a b/dvdrecord"},
                      row.linux ? static_cast<const platform::DeviceForms &>(linux) : windows);
        EXPECT_EQ(plan.mode, row.mode) << row.command;
        EXPECT_EQ(plan.command, row.command);
    }
    EXPECT_EQ(writerRefusal("/dev/sr0: A, B"), std::nullopt);
    const auto refusal = writerRefusal("");
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->key, "msgSelectWriter");
    EXPECT_TRUE(refusal->openSettings);
}

}  // namespace
