// The track properties dialog walked through three tracks.
#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "AudioTestHost.h"
#include "audio/frmTrackProperties.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
using namespace saltmarrow::test;
namespace mb = saltmarrow::platform::mb;

TEST(TrackPropertiesDialog, EditNextWithTheQuestionResetAndFill) {
    TempDir dir;
    AudioTestHost h;
    AudioProject p;
    for (const char *name : {"a.wav", "b.wav", "c.wav"}) {
        writeWave(dir.file(name), 44100, 2, 10000);
        p.addTrack(dir.file(name), "", "00:00:00", "", {false, true, "*.wav"}, h.host);
    }
    frmTrackProperties dialog(p, h.host);
    dialog.loadTrack(0);
    EXPECT_TRUE(dialog.optSilence->isChecked());
    EXPECT_EQ(dialog.sbPanel[0]->text() + "|" + dialog.lblFreqVal->text() + "|" + dialog.txtFinishMS->text(),
              "Track 1|44100|00:10:00");
    dialog.txtFinishMS->setCursorPosition(0);
    for (const char *key : {"1", "2", "7", "0", "9"}) {  // 7 cannot begin the seconds
        QKeyEvent press(QEvent::KeyPress, Qt::Key_0 + (key[0] - '0'), Qt::NoModifier, key);
        QApplication::sendEvent(dialog.txtFinishMS, &press);
    }
    EXPECT_EQ(dialog.txtFinishMS->text().toStdString(), "12:09:00");
    QFocusEvent out(QEvent::FocusOut);
    QApplication::sendEvent(dialog.txtFinishMS, &out);
    EXPECT_EQ(dialog.txtFinishMS->text().toStdString(), "00:10:00") << "12:09:00 is beyond the file's end";
    dialog.txtTrackTitle->setText("Opening");
    dialog.optPregap->setChecked(true);
    dialog.cmdNext->click();
    EXPECT_EQ(dialog.row(), 1u);
    EXPECT_EQ(h.boxes(), std::vector<std::string>{"Do you want to save your changes?"});
    EXPECT_EQ(p.track(0).Title, "") << "not saved without a yes";
    dialog.cmdPrevious->click();
    dialog.txtTrackTitle->setText("Opening");
    h.dialogs.answer(mb::Yes);
    dialog.cmdNext->click();
    EXPECT_EQ(p.track(0).Title + p.track(0).PregapType, "OpeningPREGAP");

    dialog.txtStartMS->setText("00:04:00");
    dialog.txtFinishMS->setText("00:05:00");
    dialog.cmdReset->click();
    EXPECT_EQ(dialog.txtStartMS->text() + "-" + dialog.txtFinishMS->text(), "00:00:00-00:10:00");
    dialog.txtTrackArtist->setText("Band");
    h.dialogs.answer(mb::Yes);
    dialog.cmdFill->click();
    EXPECT_EQ(p.track(0).Artist + p.track(2).Artist, "BandBand");
    for (int i = 0; i < 2; ++i) dialog.cmdNext->click();
    EXPECT_EQ(dialog.row(), 2u) << "next stops at the last row";
}
