// The real folder browser carries the extra check box and hands back its state.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QFileDialog>
#include <QTimer>

#include "platform/QtDialogs.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;

TEST(QtDialogs, FolderBrowserCarriesTheBoxAndGivesItsState) {
    test::TempDir dir;
    platform::QtDialogs dialogs;
    for (const bool start : {true, false}) {
        QString shownCaption;
        bool shownState = !start;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, [&] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            if (!dialog) return;
            poll.stop();
            if (auto *box = dialog->findChild<QCheckBox *>()) {
                shownCaption = box->text();
                shownState = box->isChecked();
                box->setChecked(!start);
            }
            dialog->setDirectory(QString::fromStdString(dir.path()));
            QMetaObject::invokeMethod(dialog, "accept");
        });
        poll.start(10);
        const auto choice = dialogs.browseFolder("Browse", dir.path(), "Folder &Contents Only", start);
        EXPECT_EQ(shownCaption, "Folder &Contents Only");
        EXPECT_EQ(shownState, start);
        ASSERT_TRUE(choice);
        EXPECT_EQ(choice->folder, dir.path());
        EXPECT_EQ(choice->checked, !start);
    }
}
