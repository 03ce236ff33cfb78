// The image options: the key filter, the rules between the boxes, the two
// sets of the settings file, and which kind of project a menu entry opens.
#include "data/IsoSettings.h"

#include <gtest/gtest.h>

#include "data/DataProject.h"
#include "data/NewDataJob.h"
#include "platform/Dialogs.h"
#include "shell/SettingsStore.h"
#include "testlib/ScriptedDialogs.h"

using namespace saltmarrow;
using namespace saltmarrow::data;
namespace mb = platform::mb;

namespace {

TEST(IsoFilter, KeysByClass) {
    struct Case {
        char key;
        bool wide, compliant;
        std::optional<char> out;
    };
    const Case cases[] = {
        {'_', false, true, '_'},       {'7', false, true, '7'},   {'Q', false, true, 'Q'},
        {' ', true, true, ' '},        {' ', false, true, '_'},   {'!', false, true, '_'},
        {'%', true, true, '%'},        {'?', false, true, '_'},   {'a', true, true, 'A'},
        {'z', false, true, 'Z'},       {'\t', false, true, '\t'}, {'#', true, true, {}},
        {'@', true, true, {}},         {'\xc3', true, true, {}},  {'#', false, false, '#'},
        {'\x7f', false, true, '\x7f'},
    };
    for (const Case &c : cases)
        EXPECT_EQ(checkASCII(c.key, c.wide, c.compliant), c.out) << int(c.key) << " wide " << c.wide;
    EXPECT_EQ(checkDigit('\b'), '\b') << "the digits themselves are typed in the form's test";
}

TEST(IsoFilter, WholeTextsAndTheFieldsThatFilterWhenLeft) {
    EXPECT_EQ(leaveField(IsoField::Label, "a b", true), "A_B");
    EXPECT_EQ(leaveField(IsoField::Abstract, "pasted lower", true), "pasted lower");
    EXPECT_EQ(leaveField(IsoField::Label, "a b", false), "a b");
    EXPECT_EQ(filterText("x#\xc3\xa4\t y", false, false, false, true), "x#\xc3\xa4 y");
    EXPECT_EQ(filterText("x#\xc3\xa4\t y", false, false, true, false), "x_y");
    IsoSettings s;
    s.text(IsoField::Label) = "KEEP";
    s.text(IsoField::Publisher) = "P";
    s.text(IsoField::VolNo) = "3";
    s.text(IsoField::Application) = "";
    clearFields(s);
    EXPECT_EQ(s.text(IsoField::Label), "KEEP");
    EXPECT_EQ(s.text(IsoField::Publisher), "");
    EXPECT_EQ(s.text(IsoField::VolNo), "1");
    EXPECT_EQ(s.text(IsoField::Application), "SALTMARROW");
}

TEST(IsoBoxes, RulesBetweenTheBoxes) {
    IsoControls c;
    setBox(c, IsoBox::RelaxISO, true);
    setBox(c, IsoBox::ISO1999, true);
    EXPECT_FALSE(c.values.checked(IsoBox::RelaxISO));
    for (IsoBox b : {IsoBox::DontRelocate, IsoBox::VersionNo, IsoBox::RelaxISO})
        EXPECT_FALSE(c.enabledBox(b));
    setBox(c, IsoBox::ISOLevel2, true);
    EXPECT_FALSE(c.values.checked(IsoBox::ISO1999));
    EXPECT_TRUE(c.enabledBox(IsoBox::RelaxISO)) << "the cleared box's own rule ran";

    setBox(c, IsoBox::Joliet, true);
    setBox(c, IsoBox::LongJoliet, true);
    EXPECT_TRUE(c.enabledBox(IsoBox::LongJoliet));
    setBox(c, IsoBox::Joliet, false);
    EXPECT_FALSE(c.values.checked(IsoBox::LongJoliet));
    EXPECT_FALSE(c.enabledBox(IsoBox::LongJoliet));

    setBox(c, IsoBox::Multi, true);
    EXPECT_TRUE(c.values.checked(IsoBox::Import) && c.enabledBox(IsoBox::Import));

    setBox(c, IsoBox::BootImage, true);
    EXPECT_TRUE(c.bootImageEnabled && c.enabledBox(IsoBox::NoEmulation) &&
                c.enabledBox(IsoBox::BootInfoTable));
    EXPECT_FALSE(c.enabledBox(IsoBox::LoadSize)) << "only with No Emulation";
    setBox(c, IsoBox::NoEmulation, true);
    setBox(c, IsoBox::LoadSize, true);
    EXPECT_TRUE(c.loadSizeEnabled);
    c.values.strBootImage = "/x";
    setBox(c, IsoBox::BootImage, false);
    EXPECT_FALSE(c.loadSizeEnabled || c.bootImageEnabled || c.enabledBox(IsoBox::LoadSize));
    EXPECT_EQ(c.values.strBootImage, "");
}

TEST(IsoBoxes, CDAndDVDSetsStayApartAndDVDVideoFixesTwelve) {
    Settings settings;
    auto read = [&](std::string_view k) { return settings.text(k); };
    auto write = [&](std::string_view k, const std::string &v) { settings.setText(k, v); };
    IsoControls cd, dvd;
    loadIsoSettings(cd, read, false, false);
    EXPECT_TRUE(cd.values.checked(IsoBox::Joliet) && cd.values.checked(IsoBox::RockRidge));
    EXPECT_FALSE(cd.values.checked(IsoBox::UDF));
    loadIsoSettings(dvd, read, true, false);
    EXPECT_TRUE(dvd.values.checked(IsoBox::UDF) && !dvd.values.checked(IsoBox::Joliet));
    EXPECT_FALSE(dvd.enabledBox(IsoBox::LongJoliet));

    setBox(cd, IsoBox::UDF, true);
    setBox(dvd, IsoBox::ISO1999, true);
    saveIsoSettings(cd, write, false, false);
    saveIsoSettings(dvd, write, true, false);
    const std::string file = composeSettings(settings, DeviceTable(), std::nullopt);
    for (const char *line : {"\r\nUDF=True\r\n", "\r\nISOLevel4=False\r\n", "\r\nDVDISOLevel4=True\r\n",
                             "\r\nDVDUDF=True\r\n", "\r\nJoliet=True\r\n", "\r\nDVDJoliet=False\r\n"})
        EXPECT_NE(file.find(line), std::string::npos) << line;

    IsoControls video;
    setBox(video, IsoBox::BootImage, true);
    setBox(video, IsoBox::CompliantPVD, true);
    settings.setText("DVDCheckPVD", "False");
    loadIsoSettings(video, read, true, true);
    for (const IsoBoxRow &row : kIsoBoxes)
        EXPECT_TRUE(!row.fixedByVideo || !video.enabledBox(row.box)) << row.control;
    EXPECT_TRUE(video.enabledBox(IsoBox::CompliantPVD));
    EXPECT_FALSE(video.values.checked(IsoBox::BootImage));
    setBox(video, IsoBox::CompliantPVD, true);
    setBox(video, IsoBox::UDF, false);
    saveIsoSettings(video, write, true, true);
    EXPECT_EQ(settings.text("DVDCheckPVD"), "True");
    EXPECT_EQ(settings.text("DVDUDF"), "True") << "kept by DVD-Video, not saved";
}

TEST(NewDataJob, AChangeOfKindAsksOnlyWhenSomethingWasAdded) {
    test::ScriptedDialogs dialogs;
    std::unique_ptr<DataProject> project;
    std::vector<std::string> calls;
    bool busy = false;
    DataJobHost host;
    host.dialogs = &dialogs;
    host.message = [](std::string_view k) { return std::string(k); };
    host.project = [&] { return project.get(); };
    host.loadForm = [&] { project = std::make_unique<DataProject>(); };
    host.formBusy = [&] { return busy; };
    host.ClearList = [&] { calls.push_back(std::string("clear") + (project->blnDVDVideo ? " video" : "")); };
    host.showForm = [&](bool first) { calls.push_back(first ? "first show" : "show"); };
    auto step = [&](bool dvd, bool video) {
        calls.clear();
        newDataJob(host, dvd, video);
        return calls;
    };
    using V = std::vector<std::string>;
    EXPECT_EQ(step(false, false), (V{"clear", "first show"}));
    project->blnDirty = true;
    EXPECT_EQ(step(false, false), V{"show"}) << "the same kind keeps the project";
    dialogs.answer(mb::Cancel);
    EXPECT_EQ(step(true, true), V{});
    EXPECT_FALSE(project->blnDVD || project->blnDVDVideo) << "the old kind is back";
    EXPECT_EQ(dialogs.prompts.back().text, "msgNewDataJob");
    dialogs.answer(mb::OK);
    EXPECT_EQ(step(true, true), (V{"clear video", "show"}));
    project->blnDirty = false;
    EXPECT_EQ(step(true, false), (V{"clear", "show"}));
    EXPECT_EQ(dialogs.prompts.size(), 2u);
    busy = true;
    EXPECT_EQ(step(false, false), V{"show"}) << "a running add is not cleared away";
}

}  // namespace
