// The erase dialog: the mode it hands over, and Cancel however it is given.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QPushButton>
#include <QTimer>

#include "discops/frmEraseCD.h"

using namespace saltmarrow;

namespace {

struct EraseDialog : ::testing::Test {
    bool eraseCancelled = false;
    std::vector<std::string> erased;
    std::vector<bool> visibleDuringErase;
    frmEraseCD dialog{eraseCancelled, [this](const std::string &mode) {
                          visibleDuringErase.push_back(dialog.isVisible());
                          erased.push_back(mode);
                      }};
};

TEST_F(EraseDialog, EraseHandsOverTheMode) {
    EXPECT_EQ(dialog.objectName(), "frmEraseCD");
    for (bool minimal : {true, false}) {
        dialog.show();
        dialog.chkMinimal->setChecked(minimal);
        dialog.cmdErase->click();
        EXPECT_FALSE(dialog.isVisible());
    }
    EXPECT_EQ(erased, (std::vector<std::string>{"minimal", "full"}));
    EXPECT_EQ(visibleDuringErase, (std::vector<bool>{false, false})) << "closed before the erase starts";
    EXPECT_FALSE(eraseCancelled);
}

TEST_F(EraseDialog, CancelEscapeAndCloseAreCancel) {
    dialog.show();
    dialog.cmdCancel->click();
    EXPECT_TRUE(eraseCancelled);
    EXPECT_FALSE(dialog.isVisible());

    eraseCancelled = false;
    dialog.show();
    dialog.reject();  // Escape
    EXPECT_TRUE(eraseCancelled);

    eraseCancelled = false;
    dialog.show();
    dialog.close();  // the window's close button
    EXPECT_TRUE(eraseCancelled);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_TRUE(erased.empty());
}

// Clicks the named button each time the dialog comes on screen, and Cancel
// from the fourth time on so that a check that keeps offering still ends.
struct Answerer {
    frmEraseCD &dialog;
    QPushButton *button;
    int offers = 0;
    bool modal = true;
    QTimer timer;

    Answerer(frmEraseCD &d, QPushButton *b) : dialog(d), button(b) {
        timer.setInterval(5);
        QObject::connect(&timer, &QTimer::timeout, [this] {
            if (!dialog.isVisible()) return;
            ++offers;
            modal = modal && dialog.isModal();
            (offers > 3 ? dialog.cmdCancel : button)->click();
        });
        timer.start();
    }
};

TEST_F(EraseDialog, OfferReturnsWhetherCancelled) {
    Answerer cancel(dialog, dialog.cmdCancel);
    EXPECT_TRUE(dialog.offerErase());
    EXPECT_EQ(cancel.offers, 1);
    EXPECT_TRUE(cancel.modal);
    cancel.timer.stop();

    // The owner's erase clears the flag; the offer returns once it is done.
    frmEraseCD clearing(eraseCancelled, [this](const std::string &mode) {
        erased.push_back(mode);
        eraseCancelled = false;
    });
    Answerer erase(clearing, clearing.cmdErase);
    EXPECT_FALSE(clearing.offerErase());
    EXPECT_EQ(erased, std::vector<std::string>{"minimal"}) << "minimal unless the box is cleared";
}

}  // namespace
