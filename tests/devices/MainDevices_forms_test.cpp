// The main window with a fake writer and a fake reader in its tools folder:
// the lists it fills at start, what it keeps of the panels, and a write whose
// progress reaches the bar through the real runner.
#include <gtest/gtest.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <filesystem>

#include "discops/Fragments.h"
#include "platform/DriveLayer.h"
#include "support/mdlFunctions.h"
#include "testlib/FakeDrive.h"
#include "testlib/ShellHarness.h"

using namespace saltmarrow;
using namespace saltmarrow::test;

namespace {

const std::string kDrives = fakeWriter("CD-R", true, "speeds = 16x 24x 32x 40x\n") + fakeReader();

// A program folder whose cdrdao is the fake drive.
std::unique_ptr<ShellHarness> withDrives(TempDir &app, const std::string &ini = {}) {
    installFakeDrive(app.path(), kDrives);
    if (!ini.empty()) writeFile(app.path() + "/saltmarrow.ini", ini);
    return ShellHarness::inFolder(app.path(), "", false);
}

std::vector<std::string> items(QComboBox *box) {
    std::vector<std::string> out;
    for (int i = 0; i < box->count(); ++i) out.push_back(box->itemText(i).toStdString());
    return out;
}

}  // namespace

TEST(MainDevices, StartUpListsEveryDriveAndTheWritersAmongThem) {
    TempDir app;
    auto h = withDrives(app);
    frmMain &f = h->form();
    ASSERT_TRUE(f.Form_Load());
    EXPECT_TRUE(h->errors.reports.empty()) << h->errors.reports.front();
    ASSERT_EQ(f.cmbReaderDevice->count(), 2);
    EXPECT_NE(f.cmbReaderDevice->itemText(0).indexOf("PLEXTOR"), -1);
    EXPECT_NE(f.cmbReaderDevice->itemText(1).indexOf("LITEON"), -1);
    EXPECT_EQ(f.cmbReaderDevice->currentIndex(), 0);
    ASSERT_EQ(f.cmbWriterDevice->count(), 1);
    EXPECT_NE(f.cmbWriterDevice->itemText(0).indexOf("PLEXTOR"), -1);
    EXPECT_EQ(items(f.cmbSpeed), (std::vector<std::string>{"16x", "24x", "32x", "40x"}));
    EXPECT_TRUE(f.deviceState.devices.item(0).isWriter);
    EXPECT_FALSE(f.deviceState.devices.item(1).isWriter);
    EXPECT_EQ(f.deviceState.devices.item(0).Driver.substr(0, 11), "generic-mmc");
}

TEST(MainDevices, PanelChoicesLiveInTheDriveAndComeBackNextRun) {
    TempDir app;
    {
        auto h = withDrives(app);
        frmMain &f = h->form();
        ASSERT_TRUE(f.Form_Load());
        f.chkSimulate->click();
        f.chkOverburn->click();
        f.chkReadRaw->click();
        const std::string writerOptions = f.deviceState.devices.item(0).WriterOptions;
        EXPECT_FALSE(writerOptions.empty());
        EXPECT_NE(writerOptions, std::string(kDefaultWriterOptions));
        f.settings.setText("TempFolder", "");
        f.close();
    }
    const std::string ini = readFile(app.path() + "/saltmarrow.ini");
    EXPECT_NE(ini.find("\r\nDevice=1|PLEXTOR, PX-W4012A|"), std::string::npos) << ini;

    auto h = withDrives(app);
    frmMain &g = h->form();
    ASSERT_TRUE(g.Form_Load());
    EXPECT_TRUE(g.chkSimulate->isChecked());
    EXPECT_TRUE(g.chkOverburn->isChecked());
    EXPECT_TRUE(g.chkReadRaw->isChecked());
    EXPECT_EQ(g.cmdWrite->text().toStdString(), "&Simulate");
}

TEST(MainDevices, AWriteMovesTheBarAndEndsInSuccess) {
    TempDir app;
    auto h = withDrives(app);
    frmMain &f = h->form();
    ASSERT_TRUE(f.Form_Load());
    h->dialogs.prompts.clear();

    const std::string bin = app.path() + "/image.bin";
    const std::string sheet = app.path() + "/image.toc";
    writeFile(bin, std::string(6 * 1048576, '\x5a'));
    writeFile(sheet, "CD_ROM\n\nTRACK MODE1\nDATAFILE " + vb::quoteString(bin) + "\n");

    std::vector<int> values;
    QObject::connect(f.ProgressBar1, &QProgressBar::valueChanged, [&](int v) { values.push_back(v); });
    WritePanel panel = f.writePanel();
    FragmentSettings settings = f.fragmentSettings();
    bool useRaw = false;
    f.ChangeCurrentMode("WRITE CD");
    f.writeFrame(vb::quoteString(f.paths.strCdrdao) + " write" +
                 writeDevice(panel, settings, f.deviceState.devices.item(0), useRaw, false, false,
                             platform::driveLayer()) +
                 WriteOptions(panel, settings) + vb::quoteString(sheet));
    EXPECT_TRUE(f.writeSucceeded);
    EXPECT_FALSE(f.writeFailed);
    EXPECT_EQ(f.txtStatus->text().left(29).toStdString(), "Writing finished successfully");
    ASSERT_FALSE(values.empty());
    EXPECT_GE(*std::max_element(values.begin(), values.end()), 3) << "the bar moved on the way";
    EXPECT_EQ(f.ProgressBar1->value(), 0) << "and is reset at the end";
    EXPECT_EQ(f.cmdWrite->text(), "&Write");
    EXPECT_TRUE(h->errors.reports.empty());
}
