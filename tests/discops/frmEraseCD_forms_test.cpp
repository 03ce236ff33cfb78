// The erase dialog: the mode it hands over, Cancel, and its part in the disc
// check, where a used rewritable disc is offered for erasing and read again.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QPushButton>
#include <QTimer>

#include "../devices/FakeDriveRig.h"
#include "devices/DriveQueries.h"
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

// The disc check with the real dialog as its erase offer, against the fake
// drive: the erase runs and the disc is read again.
struct EraseOffer : EraseDialog, test::FakeDriveRig {
    WritePanel panel;
    FragmentSettings settings;
    DiscStatusContext context;
    frmEraseCD offer{eraseCancelled, [this](const std::string &mode) { discErase(mode); }};

    void discErase(const std::string &mode) {
        eraseCancelled = false;
        bool useRaw = true;
        fake.host.run(vb::quoteString(fake.host.cdrdao) + " blank" +
                      writeDevice(panel, settings, state.devices.item(0), useRaw, true, true, layer) +
                      " --reload --blank-mode " + mode);
    }
    void SetUp() override {
        drives(test::withLine(test::plextorWriter(), "blank", "no"));
        discover();
        panel = writerPanel();
        context.panel = &panel;
        context.settings = &settings;
        context.offerErase = [this] { return offer.offerErase(); };
    }
};

TEST_F(EraseOffer, ErasedDiscIsReadAgain) {
    offer.chkMinimal->setChecked(false);
    Answerer answer(offer, offer.cmdErase);
    const DiscStatusResult result = splitDiscStatus(discStatus(state, fake.host, context));
    EXPECT_EQ(answer.offers, 1) << "the erased disc is blank: no second offer";
    EXPECT_EQ(result.status, 'E');
    EXPECT_EQ(result.blocks, 359849);
    EXPECT_EQ(result.rewritable, 1);
    const std::vector<std::string> log = calls();
    ASSERT_GE(log.size(), 3u);
    EXPECT_EQ(log[log.size() - 3], log.back()) << "the same disk-info before and after";
    EXPECT_EQ(log[log.size() - 2].substr(0, 13), "cdrdao blank ");
    EXPECT_NE(log[log.size() - 2].find(" --reload --blank-mode full"), std::string::npos)
        << log[log.size() - 2];
}

TEST_F(EraseOffer, CancelledOfferKeepsTheDisc) {
    Answerer answer(offer, offer.cmdCancel);
    const std::size_t before = calls().size();
    const DiscStatusResult result = splitDiscStatus(discStatus(state, fake.host, context));
    EXPECT_EQ(answer.offers, 1);
    EXPECT_EQ(result.status, 'C') << "neither blank nor appendable";
    EXPECT_EQ(result.rewritable, 1);
    EXPECT_EQ(calls().size(), before + 1) << "one disk-info, no blank";
}

}  // namespace
