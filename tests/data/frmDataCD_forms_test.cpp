// The data form and the ISO settings offscreen: what a file manager drops,
// the keys of the list and the tree, Cancel during an add, and the dialog's
// filter, boxes and boot image check.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTreeView>
#include <QTreeWidget>
#include <QUrl>
#include <filesystem>
#include <map>

#include "data/DataListModel.h"
#include "data/frmDataCD.h"
#include "data/frmISOSettings.h"
#include "platform/Dialogs.h"
#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

using namespace saltmarrow;
namespace fs = std::filesystem;
namespace mb = platform::mb;

namespace {

void key(QWidget *w, int k, const QString &text = {}) {
    QKeyEvent press(QEvent::KeyPress, k, Qt::NoModifier, text);
    QApplication::sendEvent(w, &press);
}

void type(QWidget *w, const QString &text) {
    for (const QChar c : text) key(w, c.toUpper().unicode(), QString(c));
}

struct DataForm : ::testing::Test {
    test::TempDir dir;
    test::ScriptedDialogs dialogs;
    std::map<std::string, std::string, std::less<>> settings;
    std::vector<std::string> opened;
    std::function<void()> onPump;
    std::unique_ptr<frmDataCD> form;
    std::string top = dir.file("top");

    void SetUp() override {
        DataFormHost h;
        h.data.dialogs = &dialogs;
        h.data.message = [](std::string_view k) { return std::string(k); };
        h.data.setting = [this](std::string_view k) { return settings[std::string(k)]; };
        h.data.setSetting = [this](std::string_view k, const std::string &v) {
            settings[std::string(k)] = v;
        };
        h.data.letEventsRun = [this] {
            if (onPump) onPump();
        };
        h.openDocument = [this](const std::string &p) { opened.push_back(p); };
        settings["CheckPVD"] = "True";
        form = std::make_unique<frmDataCD>(h);
        form->ClearList();
        form->show();
        fs::create_directories(top + "/sub");
        test::writeFile(top + "/a.txt", "aaaa");
        test::writeFile(top + "/sub/c.txt", "cc");
    }
    std::vector<std::string> rows() {
        std::vector<std::string> out;
        for (int r = 0; r < form->listModel->rowCount(); ++r)
            out.push_back(form->listModel->index(r, 0).data().toString().toStdString());
        return out;
    }
    void selectRow(int row) {
        form->listFiles->setCurrentIndex(form->listModel->index(row, 0));
        form->listFiles->setFocus();
    }
    void edit(QWidget *view, const QString &text) {
        key(view, Qt::Key_F2);
        auto *editor = qobject_cast<QLineEdit *>(QApplication::focusWidget());
        ASSERT_TRUE(editor) << "F2 opens the label edit";
        editor->setText(text);
        key(editor, Qt::Key_Return);
        QCoreApplication::processEvents();
    }
};

TEST_F(DataForm, DropRenameOpenAndDeleteInListAndTree) {
    QMimeData mime;
    mime.setUrls({QUrl::fromLocalFile(QString::fromStdString(top + "/a.txt")),
                  QUrl::fromLocalFile(QString::fromStdString(top + "/sub"))});
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction | Qt::MoveAction, &mime, Qt::LeftButton,
                          Qt::NoModifier);
    QApplication::sendEvent(form->listFiles->viewport(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent dropped(QPointF(5, 5), Qt::CopyAction | Qt::MoveAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(form->listFiles->viewport(), &dropped);
    EXPECT_TRUE(dropped.isAccepted());
    EXPECT_EQ(dropped.dropAction(), Qt::CopyAction);
    QCoreApplication::processEvents();
    EXPECT_EQ(rows(), (std::vector<std::string>{"sub", "a.txt"}));
    EXPECT_EQ(form->sbPanel1->text(), "msgTotalSize6");

    selectRow(1);
    edit(form->listFiles, "b;1.txt");
    EXPECT_EQ(rows(), (std::vector<std::string>{"sub", "b_1.txt"}));
    selectRow(1);
    key(form->listFiles, Qt::Key_Return);
    EXPECT_EQ(opened, std::vector<std::string>{top + "/a.txt"});
    key(form->listFiles, Qt::Key_Delete);
    EXPECT_EQ(rows(), std::vector<std::string>{"sub"});

    QTreeWidgetItem *sub = form->treeFolders->topLevelItem(0)->child(0);
    form->treeFolders->setCurrentItem(sub);
    EXPECT_EQ(rows(), std::vector<std::string>{"c.txt"}) << "a click on a node shows its folder";
    form->treeFolders->setFocus();
    edit(form->treeFolders, "docs");
    EXPECT_EQ(sub->text(0), "docs");
    key(form->treeFolders, Qt::Key_Delete);
    EXPECT_EQ(form->treeFolders->topLevelItem(0)->childCount(), 0);
    EXPECT_TRUE(rows().empty());
}

TEST_F(DataForm, BurnButtonCancelsALongAdd) {
    dialogs.answer(platform::FolderChoice{top, false});
    std::vector<bool> lockedWhilePumping;
    onPump = [this, &lockedWhilePumping] {
        lockedWhilePumping.push_back(!form->cmdAddFiles->isEnabled() && !form->mnuAddFiles->isEnabled() &&
                                     form->cmdBurn->isEnabled());
        form->cmdBurn->click();
    };
    form->cmdBrowse->click();
    ASSERT_FALSE(lockedWhilePumping.empty());
    EXPECT_TRUE(lockedWhilePumping.front());
    EXPECT_EQ(rows(), std::vector<std::string>{"top"});
    EXPECT_EQ(form->project.count(form->project.findNode(form->project.Key(form->project.root()) + "\\top")),
              0u);
    EXPECT_EQ(form->cmdBurn->text(), "&Burn");
    EXPECT_FALSE(form->project.cancelFlag);
    EXPECT_TRUE(form->cmdAddFiles->isEnabled());
    EXPECT_EQ(settings["FolderContentsOnly"], "0") << "the folder box's state is kept";
}

TEST_F(DataForm, IsoSettingsFilterBoxesAndBootImage) {
    frmISOSettings *iso = form->iso();
    ASSERT_TRUE(iso->chkCompliantPVD->isChecked()) << "the default of the setting";
    type(iso->txtLabel, "a b#");
    EXPECT_TRUE(iso->txtLabel->text().endsWith("A_B"));
    QLineEdit *volNo = iso->field(data::IsoField::VolNo);
    volNo->clear();
    type(volNo, "1x2");
    EXPECT_EQ(volNo->text(), "12");

    QLineEdit *publisher = iso->field(data::IsoField::Publisher);
    iso->chkCompliantPVD->click();
    publisher->setText("a b#");
    dialogs.answer(mb::Cancel);
    iso->chkCompliantPVD->click();
    EXPECT_FALSE(iso->chkCompliantPVD->isChecked());
    EXPECT_EQ(dialogs.prompts.back().text, "msgCompliantPVD");
    dialogs.answer(mb::OK);
    iso->chkCompliantPVD->click();
    EXPECT_EQ(publisher->text(), "A B");

    // The rules between the boxes reach the widgets.
    iso->box(data::IsoBox::ISO1999)->click();
    EXPECT_FALSE(iso->box(data::IsoBox::RelaxISO)->isEnabled());
    iso->box(data::IsoBox::ISOLevel2)->click();
    EXPECT_FALSE(iso->box(data::IsoBox::ISO1999)->isChecked());

    iso->show();
    iso->cmdOK->click();
    EXPECT_FALSE(iso->isVisible()) << "no boot image is asked for while its box is clear";
    iso->show();
    iso->box(data::IsoBox::BootImage)->click();
    EXPECT_TRUE(iso->cmdBootImage->isEnabled());
    test::writeFile(dir.file("boot.img"), "boot");
    for (const std::string &chosen : {dir.path(), dir.file("none"), dir.file("boot.img")}) {
        dialogs.answer(std::vector<std::string>{chosen});
        iso->cmdBootImage->click();
        EXPECT_EQ(iso->txtBootImage->text().toStdString(), chosen);
        iso->txtLabel->setText("NEWLABEL");
        iso->cmdOK->click();
    }
    EXPECT_EQ(dialogs.prompts[dialogs.prompts.size() - 2].text, "msgBootPathError");
    EXPECT_FALSE(iso->isVisible());
    EXPECT_EQ(form->treeFolders->topLevelItem(0)->text(0), "NEWLABEL");
    EXPECT_EQ(settings["ISOLevel2"], "True");
    EXPECT_EQ(iso->snapshot().strBootImage, dir.file("boot.img"));
}

}  // namespace
