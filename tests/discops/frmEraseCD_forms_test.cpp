// The erase dialog: the mode it hands over, and Cancel however it is given.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QPushButton>

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

}  // namespace
