#include <gtest/gtest.h>
#include <unistd.h>

#include "shell/ToolRegistry.h"
#include "testlib/ScriptedDialogs.h"
#include "testlib/TestSupport.h"

namespace saltmarrow {
namespace {

// The program folder of the build, with Debian's tools linked into external/
// by scripts/setup.
TEST(ToolRegistryTools, FindsTheDebianToolsLinkedBySetup) {
    test::ScriptedDialogs dialogs;
    MessageTable messages;
    ToolRegistry registry(SALTMARROW_APP_DIR, dialogs, messages);
    ToolPaths paths = registry.resolveTools();
    EXPECT_TRUE(dialogs.prompts.empty()) << dialogs.prompts.front().text;

    for (const std::string *path :
         {&paths.strCdrdao, &paths.strMkisofs, &paths.strdvdrecord, &paths.strLame, &paths.strOGG,
          &paths.strFLAC, &paths.strMPC, &paths.strAAC, &paths.strToc2Cue}) {
        ASSERT_FALSE(path->empty());
        EXPECT_EQ(access(path->c_str(), X_OK), 0) << *path;
    }
    // The tools really are the ones named: mkisofs answers as genisoimage.
    EXPECT_NE(test::runTool({paths.strMkisofs, "-version"}).output.find("genisoimage"), std::string::npos);
}

}  // namespace
}  // namespace saltmarrow
