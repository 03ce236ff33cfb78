// The device dialog against the fake drive: what it shows on both tabs,
// that its boxes cannot be changed, and that nothing on it is cut off.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QScreen>
#include <QTabWidget>

#include "devices/Discovery.h"
#include "devices/frmDeviceInfo.h"
#include "exec/CommandRunner.h"
#include "testlib/FakeDrive.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::test;

namespace {

struct DeviceDialog : ::testing::Test {
    TempDir app;
    CommandRunner runner{app.file("external")};
    DeviceState state;
    DeviceHost host;
    double freeBytes = 0;
    std::unique_ptr<frmDeviceInfo> form;

    void start(const std::vector<LinuxDrive> &drives) {
        host.layer = &installFakeDrive(app.path(), drives);
        host.cdrdao = app.file("external/cdrdao");
        host.mediaInfoTool = app.file("external/dvd+rw-mediainfo");
        host.run = [this](const std::string &command) {
            return ToolRun{runner.commandExecute(command), runner.commandOutput};
        };
        DeviceLists lists;
        startupScanDevices(state, host, true, lists);
        startupConfigureDevices(state, host, lists, "");
        form = std::make_unique<frmDeviceInfo>(
            state, host,
            DeviceInfoSources{[] { return std::string(" --device /dev/sr0 --driver generic-mmc:0x0 "); },
                              [this] { return freeBytes; }});
    }
    std::vector<int> ticked(const char *array) {
        std::vector<int> on;
        for (QCheckBox *box : form->findChildren<QCheckBox *>(array))
            if (box->isChecked()) on.push_back(box->property("index").toInt());
        std::sort(on.begin(), on.end());
        return on;
    }
    static std::string text(const QLabel *label) { return label->text().toStdString(); }
    static void settle() {
        for (int i = 0; i < 5; ++i) QApplication::processEvents();
    }
};

TEST_F(DeviceDialog, TheWriterAndTheDiscInIt) {
    LinuxDrive writer = cdWriter("CD-RW", kUsedCDRW + "appendable = yes\nsessions = 2\nlast_track = 7\n");
    writer.extra += "manufacturer = CMC Magnetics Corporation\n";
    LinuxDrive reader = dvdReader();
    reader.path = "/dev/sr1";
    reader.medium = "DVD-ROM";
    start({writer, reader});
    form->ShowDeviceInfo(0);

    EXPECT_EQ(form->windowTitle(), "PLEXTOR, CD-R   PX-W4012A");
    EXPECT_EQ(text(form->lblTypeValue), "CD Writer");
    EXPECT_EQ(text(form->lblFirmwareValue), "1.01");
    EXPECT_EQ(text(form->lblDriverValue), "generic-mmc");
    EXPECT_EQ(ticked("chkReadFeature"), (std::vector<int>{0, 1, 8}));
    EXPECT_EQ(ticked("chkWriteFeature"), (std::vector<int>{0, 1, 7, 8})) << "7 is the underrun protection";
    EXPECT_EQ(fakeCalls(app.path()).back(), "cdrdao disk-info --device /dev/sr0 --driver generic-mmc:0x0");
    EXPECT_EQ(ticked("chkMedia"), std::vector<int>{0});
    EXPECT_NE(text(form->lblCapacityValue).find("(359849s, "), std::string::npos);
    EXPECT_EQ(text(form->lblManufacturerValue), "CMC Magnetics Corporation")
        << "the tool's next lines stay out";
    EXPECT_NE(form->lblManufacturerValue->toolTip().indexOf("Short Strategy"), -1);
    EXPECT_EQ(text(form->lblSessionsValue), "2");
    EXPECT_EQ(text(form->lblTracksValue), "7");
    EXPECT_EQ(form->writeSpeeds(), "40x, 32x, 24x, 20x, 16x, 12x, 10x, 8x, 6x, 4x, 2x, 1x");

    // The boxes only show.
    for (QCheckBox *box : form->findChildren<QCheckBox *>()) {
        const bool before = box->isChecked();
        box->click();
        EXPECT_EQ(box->isChecked(), before) << box->objectName().toStdString();
    }

    // A pressed DVD: nothing is asked, and nothing of the CD stays on screen.
    const std::size_t asked = fakeCalls(app.path()).size();
    freeBytes = 2295104.0 * 2048;
    form->ShowDeviceInfo(1);
    EXPECT_EQ(fakeCalls(app.path()).size(), asked);
    EXPECT_TRUE(ticked("chkMedia").empty());
    EXPECT_EQ(text(form->lblCapacityValue), "4483 MB");
    for (const QLabel *label : {form->lblManufacturerValue, form->lblTOCTypeValue, form->lblSessionsValue})
        EXPECT_EQ(text(label), "n/a") << label->objectName().toStdString();

    // A drive that keeps saying it is not ready ends the query at once.
    writer.extra += "not_ready = 50\n";
    installFakeDrive(app.path(), {writer, reader});
    form->MediaInfo(0);
    EXPECT_FALSE(form->objDOS.isRunning());
    EXPECT_EQ(form->objDOS.totalOutput.find("That data below"), std::string::npos) << "the tool was stopped";
    EXPECT_EQ(text(form->lblCapacityValue), "n/a");
}

TEST_F(DeviceDialog, NothingIsCutOffAndTheSpeedsAreCutToFit) {
    LinuxDrive writer = cdWriter("CD-R", kUsedCDRW + "manufacturer = CMC Magnetics Corporation\n");
    writer.maxWriteKbs = 52 * 176;  // the longest ladder
    start({writer});
    // On screen first, as the menu shows it; the values come after.
    form->show();
    settle();
    form->ShowDeviceInfo(0);
    settle();
    const QSize size = form->size();
    for (QWidget *page : {form->tabDeviceInfoTab, form->tabMediaInfoTab}) {
        form->TabStrip1->setCurrentWidget(page);
        settle();
        EXPECT_EQ(form->size(), size) << "the dialog has its size before either tab is looked at";
        std::vector<QWidget *> shown;
        for (QWidget *w : page->findChildren<QWidget *>())
            if ((qobject_cast<QLabel *>(w) || qobject_cast<QCheckBox *>(w)) && w->isVisible())
                shown.push_back(w);
        ASSERT_GT(shown.size(), 8u);
        for (QWidget *w : shown) {
            const std::string name = w->objectName().toStdString();
            EXPECT_TRUE(page->rect().contains(QRect(w->mapTo(page, QPoint(0, 0)), w->size()))) << name;
            if (w != form->lblWriteSpeedValue) {
                EXPECT_GE(w->width(), w->sizeHint().width()) << name;
                EXPECT_GE(w->height(), w->sizeHint().height()) << name;
            }
            for (QWidget *other : shown)
                if (other != w && other->parentWidget() == w->parentWidget()) {
                    EXPECT_FALSE(w->geometry().intersects(other->geometry()))
                        << name << " over " << other->objectName().toStdString();
                }
        }
    }

    const QString full = form->writeSpeeds();
    ASSERT_TRUE(full.startsWith("52x, 48x, ")) << full.toStdString();
    EXPECT_EQ(form->lblWriteSpeedValue->toolTip(), full);
    form->resize(form->minimumWidth(), form->height());
    settle();
    const QLabel *label = form->lblWriteSpeedValue;
    const QString shown = label->text();
    ASSERT_TRUE(shown.endsWith("...")) << shown.toStdString();
    EXPECT_TRUE(full.startsWith(shown.chopped(3)));
    EXPECT_FALSE(shown.chopped(3).endsWith(",")) << "cut after a whole item";
    EXPECT_LE(label->fontMetrics().horizontalAdvance(shown), label->contentsRect().width());
    form->resize(label->fontMetrics().horizontalAdvance(full) * 2, form->height());
    settle();
    EXPECT_EQ(label->text(), full);

    // Too narrow for a whole item: what fits of the first.
    const QFontMetrics metrics(QApplication::font());
    const QString list = QStringLiteral("48x, 40x, 32x");
    EXPECT_EQ(cutToFit(list, metrics, metrics.horizontalAdvance(QStringLiteral("4..."))), "4...");
}

TEST_F(DeviceDialog, PlacedBesideTheMainForm) {
    start({cdWriter("CD-R", kBlankCDR)});
    QWidget mainForm;
    mainForm.setGeometry(20, 40, 300, 200);
    mainForm.show();
    settle();
    form->ShowDeviceInfo(0);
    form->showBeside(&mainForm);
    settle();
    EXPECT_FALSE(form->frameGeometry().intersects(mainForm.frameGeometry()));
    EXPECT_GT(form->frameGeometry().left(), mainForm.frameGeometry().left())
        << "on the right where there is room";

    // The main form against the screen's right edge: the dialog goes left.
    const QRect room = mainForm.screen()->availableGeometry();
    mainForm.move(room.right() - mainForm.frameGeometry().width() - 10, 40);
    settle();
    form->showBeside(&mainForm);
    settle();
    EXPECT_FALSE(form->frameGeometry().intersects(mainForm.frameGeometry()));
    EXPECT_LT(form->frameGeometry().left(), mainForm.frameGeometry().left());
    EXPECT_TRUE(room.contains(form->frameGeometry()));
}

}  // namespace
