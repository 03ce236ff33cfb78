// The mastering menu opens the data form in its kind: the same kind again
// keeps the project, another kind asks first when something was added.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QTreeView>
#include <QTreeWidget>
#include <filesystem>

#include "data/DataListModel.h"
#include "data/frmDataCD.h"
#include "testlib/ShellHarness.h"

using namespace saltmarrow;
using namespace saltmarrow::test;
namespace mb = saltmarrow::platform::mb;

TEST(DataLink, MenuEntriesOpenTheirKindAndGuardTheProject) {
    ShellHarness shell;
    frmMain &main = shell.form();
    main.mnuDataDVD->trigger();
    auto *form = main.findChild<frmDataCD *>("frmDataCD");
    ASSERT_TRUE(form);
    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(form->windowTitle(), "Data DVD Mastering");
    EXPECT_EQ(form->listModel->headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(), "Name");

    TempDir dir;
    writeFile(dir.file("a.txt"), "12345");
    shell.dialogs.answer(std::vector<std::string>{dir.file("a.txt")});
    form->mnuAddFiles->trigger();
    EXPECT_EQ(form->sbPanel1->text(), "Total Size: 5");
    EXPECT_EQ(main.settings.text("DVDMRUData"), dir.path());
    form->close();
    EXPECT_FALSE(form->isVisible()) << "closing only hides it";

    main.mnuDataDVD->trigger();
    EXPECT_EQ(form->project.total, 5) << "the same kind keeps the project";
    shell.dialogs.answer(mb::Cancel);
    main.mnuDVDVideo->trigger();
    EXPECT_EQ(shell.dialogs.prompts.back().text,
              "Starting a new data project type will clear previous data project.");
    EXPECT_TRUE(form->project.blnDVD && !form->project.blnDVDVideo);
    EXPECT_EQ(form->project.total, 5);

    shell.dialogs.answer(mb::OK);
    main.mnuDVDVideo->trigger();
    EXPECT_EQ(form->windowTitle(), "DVD Video Mastering");
    EXPECT_EQ(form->treeFolders->topLevelItem(0)->childCount(), 2);
    const auto prompts = shell.dialogs.prompts.size();
    main.mnuDataCD->trigger();
    EXPECT_EQ(shell.dialogs.prompts.size(), prompts) << "nothing added: no question";
    EXPECT_EQ(form->windowTitle(), "Data CD Mastering");
    EXPECT_EQ(main.findChildren<frmDataCD *>().size(), 1);
    EXPECT_TRUE(shell.errors.reports.empty());
}
