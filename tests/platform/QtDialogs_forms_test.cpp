// The real folder browser carries the extra check box and hands back its state;
// the save dialog gives back the name as typed.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QFileDialog>
#include <QLineEdit>
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

// A name typed with quotes in it is taken as it stands, not as Qt's list of
// names: for saving always, for opening where that file is there.
TEST(QtDialogs, FileDialogsTakeTheTypedNameWhole) {
    test::TempDir dir;
    platform::QtDialogs dialogs;
    struct Row {
        bool save;
        std::string name;
    };
    for (const Row &row : {Row{true, "plain.toc"}, Row{true, "x\" | touch PWNED \"y.toc"},
                           Row{true, "\"quoted\".iso"}, Row{false, "a \"live\" take.wav"}}) {
        SCOPED_TRACE(row.name);
        const std::string path = dir.path() + "/" + row.name;
        if (!row.save) test::writeFile(path, "RIFF");
        QTimer poll;
        bool typed = false;
        QObject::connect(&poll, &QTimer::timeout, [&] {
            QWidget *modal = QApplication::activeModalWidget();
            // A dialog still up after the name was typed did not take it: cancel it.
            if (typed && modal) QMetaObject::invokeMethod(modal, "reject");
            auto *dialog = qobject_cast<QFileDialog *>(modal);
            auto *edit = dialog ? dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit")) : nullptr;
            if (typed || !edit) return;
            typed = true;
            edit->setText(QString::fromStdString(row.name));
            QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection);
        });
        poll.start(10);
        platform::FileRequest request;
        request.title = "File";
        request.folder = dir.path();
        request.filter = "Sheets (*.toc;*.iso;*.wav)|*.toc;*.iso;*.wav";
        if (row.save)
            EXPECT_EQ(dialogs.saveFile(request), std::optional<std::string>(path));
        else
            EXPECT_EQ(dialogs.openFile(request), std::optional<std::vector<std::string>>({path}));
    }
}
