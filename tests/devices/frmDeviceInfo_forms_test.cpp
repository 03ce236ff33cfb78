// The device dialog against the fake drive: what it shows on both tabs, that
// its boxes cannot be changed, and that nothing on it is cut off.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QScreen>
#include <QTabWidget>
#include <algorithm>

#include "FakeDriveRig.h"
#include "devices/frmDeviceInfo.h"

using namespace saltmarrow;
using saltmarrow::test::FakeDriveRig;
using saltmarrow::test::plextorWriter;
using saltmarrow::test::withLine;

namespace {

struct DeviceDialog : ::testing::Test, FakeDriveRig {
    double freeBytes = 0;
    frmDeviceInfo form{state, fake.host,
                       DeviceInfoSources{[this] { return writerPanel(); },
                                         [this] {
                                             FragmentSettings settings;
                                             settings.chkUseSPTI = state.chkUseSPTI;
                                             return settings;
                                         },
                                         [this] { return freeBytes; }}};

    // The member of a control array as a language file finds it.
    QCheckBox *member(const char *array, int index) {
        for (QCheckBox *box : form.findChildren<QCheckBox *>(QString::fromLatin1(array)))
            if (box->property("index").toInt() == index) return box;
        return nullptr;
    }
    // Indexes of the ticked members of an array.
    std::vector<int> ticked(const char *array, int count) {
        std::vector<int> on;
        for (int i = 0; i < count; ++i) {
            QCheckBox *box = member(array, i);
            EXPECT_NE(box, nullptr) << array << "(" << i << ")";
            if (box && box->isChecked()) on.push_back(i);
        }
        return on;
    }
    static std::string text(const QLabel *label) { return label->text().toStdString(); }
    void settle() {
        for (int i = 0; i < 5; ++i) QApplication::processEvents();
    }
};

TEST_F(DeviceDialog, BlankAppendableRewritable) {
    drives(withLine(withLine(plextorWriter(), "appendable", "yes"), "manufacturer", "Ritek Co.") +
           test::liteonReader());
    discover();
    ASSERT_EQ(lists.writer.size(), 1u);
    form.ShowDeviceInfo(0);

    ASSERT_EQ(form.TabStrip1->objectName(), "TabStrip1");
    ASSERT_EQ(form.TabStrip1->count(), 2);
    EXPECT_EQ(form.TabStrip1->tabText(0), "Device");
    EXPECT_EQ(form.TabStrip1->widget(0)->objectName(), "tabDeviceInfoTab");
    EXPECT_EQ(form.TabStrip1->tabText(1), "Media");
    EXPECT_EQ(form.TabStrip1->widget(1)->objectName(), "tabMediaInfoTab");

    // "Device": the drive-info answer.
    EXPECT_EQ(form.windowTitle(), "PLEXTOR, PX-W4012A");
    EXPECT_EQ(text(form.lblTypeValue), "CD Writer");
    EXPECT_EQ(text(form.lblFirmwareValue), "1.01");
    EXPECT_EQ(text(form.lblDriverValue), "generic-mmc");
    EXPECT_EQ(text(form.lblBufferValue), "2048kb");
    EXPECT_EQ(ticked("chkReadFeature", 9), (std::vector<int>{0, 1})) << "CD-ROM is no box; CD-R is not CD-RW";
    EXPECT_EQ(ticked("chkWriteFeature", 9), (std::vector<int>{0, 1, 7})) << "7 is the underrun protection";

    // "Media": the disk-info answer, asked of the writer.
    EXPECT_EQ(calls().back(), "cdrdao disk-info --device ASPI:0,1,0 --driver generic-mmc:0x10");
    EXPECT_EQ(ticked("chkMedia", 3), (std::vector<int>{0, 1}))
        << "rewritable and blank; the appendable key never matches the tool's padded line";
    EXPECT_NE(text(form.lblCapacityValue).find("(359849s, "), std::string::npos)
        << text(form.lblCapacityValue);
    EXPECT_EQ(text(form.lblCapacityValue).find("blocks"), std::string::npos);
    EXPECT_EQ(text(form.lblManufacturerValue).substr(0, 10), "Ritek Co.\n")
        << "one line of the tool's per line";
    EXPECT_EQ(text(form.lblManufacturerValue).find('\r'), std::string::npos);
    EXPECT_EQ(text(form.lblTOCTypeValue), "n/a") << "a blank disc has no table of contents";
    EXPECT_EQ(text(form.lblSessionsValue), "n/a");
    EXPECT_EQ(text(form.lblTracksValue), "n/a");
    EXPECT_EQ(form.writeSpeeds(), "40x");
}

TEST_F(DeviceDialog, BoxesOnlyShow) {
    drives(plextorWriter());
    discover();
    form.ShowDeviceInfo(0);
    form.show();
    for (const char *array : {"chkReadFeature", "chkWriteFeature", "chkMedia"})
        for (QCheckBox *box : form.findChildren<QCheckBox *>(QString::fromLatin1(array))) {
            const bool before = box->isChecked();
            EXPECT_EQ(box->property("tag").toString(), before ? "True" : "False") << array;
            box->click();
            EXPECT_EQ(box->isChecked(), before) << array << "(" << box->property("index").toInt() << ")";
            box->click();
            EXPECT_EQ(box->isChecked(), before);
        }
}

TEST_F(DeviceDialog, UsedDiscThenADvdReader) {
    std::string writer = withLine(plextorWriter(), "blank", "no");
    writer =
        withLine(withLine(withLine(writer, "sessions", "2"), "last_track", "7"), "toc_type", "CD-ROM XA");
    drives(writer + test::liteonReader());
    discover();
    form.ShowDeviceInfo(0);
    EXPECT_EQ(ticked("chkMedia", 3), std::vector<int>{0});
    EXPECT_EQ(text(form.lblTOCTypeValue), "CD-ROM XA");
    EXPECT_EQ(text(form.lblSessionsValue), "2");
    EXPECT_EQ(text(form.lblTracksValue), "7");

    // A pressed DVD: nothing is asked, and nothing of the CD stays on screen.
    const std::size_t asked = calls().size();
    freeBytes = 2295104.0 * 2048;  // the DVD's blocks
    form.ShowDeviceInfo(1);
    EXPECT_EQ(calls().size(), asked);
    EXPECT_EQ(form.windowTitle(), "LITEON, DVD-ROM LTD163");
    EXPECT_EQ(text(form.lblTypeValue), "DVD\\CD Reader");
    EXPECT_EQ(text(form.lblDriverValue), "generic-mmc");
    EXPECT_EQ(ticked("chkReadFeature", 9), (std::vector<int>{0, 1, 7}));
    EXPECT_TRUE(ticked("chkWriteFeature", 9).empty());
    EXPECT_TRUE(ticked("chkMedia", 3).empty());
    EXPECT_EQ(text(form.lblCapacityValue), "4483 MB");
    for (const QLabel *label : {form.lblManufacturerValue, form.lblTOCTypeValue, form.lblSessionsValue,
                                form.lblTracksValue, form.lblWriteSpeedValue})
        EXPECT_EQ(text(label), "n/a") << label->objectName().toStdString();
}

TEST_F(DeviceDialog, DriveNotReadyEndsTheQuery) {
    drives(plextorWriter());
    discover();
    form.ShowDeviceInfo(0);
    ASSERT_EQ(text(form.lblSessionsValue), "n/a");
    ASSERT_NE(text(form.lblCapacityValue), "n/a");
    // A second of warnings before the drive would answer.
    drives(plextorWriter() + "not_ready = 50\n");
    form.MediaInfo(0);
    EXPECT_FALSE(form.objDOS.isRunning());
    EXPECT_NE(form.objDOS.totalOutput.find("WARNING: Unit not ready, still trying..."), std::string::npos);
    EXPECT_EQ(form.objDOS.totalOutput.find("That data below"), std::string::npos) << "the tool was stopped";
    EXPECT_EQ(text(form.lblCapacityValue), "n/a");
    EXPECT_TRUE(ticked("chkMedia", 3).empty());
}

TEST_F(DeviceDialog, SpeedListIsCutToFit) {
    // No list of its own: the ladder from 52x down to 1x.
    std::string writer = plextorWriter();
    writer.erase(writer.find("speeds = "),
                 writer.find('\n', writer.find("speeds = ")) - writer.find("speeds = ") + 1);
    drives(withLine(writer, "max_speed", "52"));
    discover();
    form.ShowDeviceInfo(0);
    const QString full = form.writeSpeeds();
    ASSERT_TRUE(full.startsWith("52x, 48x, ")) << full.toStdString();
    ASSERT_TRUE(full.endsWith(", 2x, 1x")) << full.toStdString();
    EXPECT_EQ(form.lblWriteSpeedValue->toolTip(), full);

    form.TabStrip1->setCurrentWidget(form.tabMediaInfoTab);
    form.show();
    form.resize(form.minimumWidth(), form.height());
    settle();
    const QLabel *label = form.lblWriteSpeedValue;
    const QString shown = label->text();
    ASSERT_TRUE(shown.endsWith("...")) << shown.toStdString();
    EXPECT_TRUE(full.startsWith(shown.chopped(3))) << shown.toStdString();
    EXPECT_FALSE(shown.chopped(3).endsWith(",")) << "cut after a whole item";
    EXPECT_LE(label->fontMetrics().horizontalAdvance(shown), label->contentsRect().width());

    form.resize(label->fontMetrics().horizontalAdvance(full) * 2, form.height());
    settle();
    EXPECT_EQ(label->text(), full);
}

TEST_F(DeviceDialog, CutOfASingleItem) {
    const QFontMetrics metrics(QApplication::font());
    const QString list = QStringLiteral("48x, 40x, 32x");
    EXPECT_EQ(cutToFit(list, metrics, metrics.horizontalAdvance(list)), list);
    EXPECT_EQ(cutToFit(list, metrics, metrics.horizontalAdvance(list) - 1), "48x, 40x...");
    const QString one = cutToFit(list, metrics, metrics.horizontalAdvance(QStringLiteral("4...")));
    EXPECT_EQ(one, "4...");
}

TEST_F(DeviceDialog, NothingIsCutOff) {
    std::string writer = withLine(plextorWriter(), "blank", "no");
    writer = withLine(withLine(writer, "manufacturer", "CMC Magnetics Corporation"), "toc_type", "CD-ROM XA");
    drives(withLine(writer, "appendable", "yes"));
    discover();
    // On screen first, as the menu shows it; the values come after.
    form.show();
    settle();
    form.ShowDeviceInfo(0);
    settle();
    const QSize size = form.size();
    for (QWidget *page : {form.tabDeviceInfoTab, form.tabMediaInfoTab}) {
        form.TabStrip1->setCurrentWidget(page);
        settle();
        EXPECT_EQ(form.size(), size) << "the dialog has its size before either tab is looked at";
        std::vector<QWidget *> shown;
        for (QWidget *w : page->findChildren<QWidget *>())
            if ((qobject_cast<QLabel *>(w) || qobject_cast<QCheckBox *>(w)) && w->isVisible())
                shown.push_back(w);
        ASSERT_GT(shown.size(), 8u);
        for (QWidget *w : shown) {
            const std::string name = w->objectName().toStdString();
            const QRect inPage(w->mapTo(page, QPoint(0, 0)), w->size());
            EXPECT_TRUE(page->rect().contains(inPage)) << name;
            if (w != form.lblWriteSpeedValue) {
                EXPECT_GE(w->width(), w->sizeHint().width()) << name;
                EXPECT_GE(w->height(), w->sizeHint().height()) << name;
            }
            for (QWidget *other : shown) {
                if (other == w || other->parentWidget() != w->parentWidget()) continue;
                EXPECT_FALSE(w->geometry().intersects(other->geometry()))
                    << name << " over " << other->objectName().toStdString();
            }
        }
    }
}

TEST_F(DeviceDialog, PlacedBesideTheMainForm) {
    drives(plextorWriter());
    discover();
    QWidget mainForm;
    mainForm.setGeometry(20, 40, 300, 200);
    mainForm.show();
    settle();
    form.showBeside(&mainForm);
    form.ShowDeviceInfo(0);
    settle();
    EXPECT_TRUE(form.isVisible());
    EXPECT_FALSE(form.frameGeometry().intersects(mainForm.frameGeometry()));
    EXPECT_GT(form.frameGeometry().left(), mainForm.frameGeometry().left())
        << "on the right where there is room";

    // The main form against the screen's right edge: the dialog goes left.
    const QRect room = mainForm.screen()->availableGeometry();
    mainForm.move(room.right() - mainForm.frameGeometry().width() - 10, 40);
    settle();
    form.showBeside(&mainForm);
    settle();
    EXPECT_FALSE(form.frameGeometry().intersects(mainForm.frameGeometry()));
    EXPECT_LT(form.frameGeometry().left(), mainForm.frameGeometry().left());
    EXPECT_TRUE(room.contains(form.frameGeometry()));
}

}  // namespace
