#ifndef SALTMARROW_TESTS_DEVICES_FAKEDRIVERIG_H
#define SALTMARROW_TESTS_DEVICES_FAKEDRIVERIG_H

#include <filesystem>
#include <string>
#include <vector>

#include "ScriptedHost.h"
#include "devices/Discovery.h"
#include "discops/Fragments.h"
#include "exec/CommandRunner.h"
#include "platform/DriveLayer.h"
#include "support/mdlFunctions.h"
#include "testlib/FakeDrive.h"
#include "testlib/TestSupport.h"

namespace saltmarrow::test {

// <app>/external with the fake drive under the tools' names, and the main
// form's runner, device state and lists around it.
struct FakeDriveRig {
    TempDir app;
    std::string external = app.file("external");
    CommandRunner runner;
    ScriptedHost fake;
    DeviceState state;
    DeviceLists lists;
    // The fake speaks as the Windows builds of the tools do.
    const platform::DriveLayer &layer = useWindowsDriveLayer();

    FakeDriveRig() {
        std::filesystem::create_directories(external + "/TEMP");
        for (const char *name : {"cdrdao", "dvdrecord", "cdda2wav"})
            std::filesystem::create_symlink(fixture("fakedrive"), external + "/" + name);
        runner.setExternalFolder(external);
        runner.log.setPath(external + "/TEMP/commandlog.txt");
        runner.objDOS.ReceiveOutputs = [this](const std::string &line) { runner.log.writeLine(line); };
        fake.host.cdrdao = external + "/cdrdao";
        fake.host.layer = &layer;
        fake.host.run = [this](const std::string &command) {
            const bool ok = runner.commandExecute(command);
            return ToolRun{ok, runner.commandOutput};
        };
    }

    // The drives and their media, as the fake's state file describes them.
    void drives(const std::string &text) const { writeFile(external + "/fakedrive.state", text); }
    // The command lines the fake was started with, oldest first.
    std::vector<std::string> calls() const {
        std::vector<std::string> lines;
        const std::string path = external + "/fakedrive.log";
        if (!std::filesystem::exists(path)) return lines;
        for (auto &l : vb::Split(readFile(path), "\n"))
            if (!l.empty()) lines.push_back(l);
        return lines;
    }
    // Start-up's scan and configuration, with no writer named in the settings.
    void discover() {
        startupScanDevices(state, fake.host, true, lists);
        startupConfigureDevices(state, fake.host, lists, "");
    }
    // The write panel with the selected writer's options loaded.
    WritePanel writerPanel() {
        WritePanel panel;
        panel.cmbWriterDeviceIndex = lists.writerIndex;
        panel.cmbWriterDevice = lists.writerText();
        OptionsMemory memory;
        std::string statusPanel;
        cmbWriterDevice_Click(state, panel, memory, layer, statusPanel);
        return panel;
    }
};

// A CD writer with a rewritable, blank disc; tests change single lines.
inline std::string plextorWriter() {
    return "aspi = ok\n"
           "spti = ok\n"
           "[device]\n"
           "address = 1,0,0\n"
           "aspi_address = 0,1,0\n"
           "vendor = PLEXTOR\n"
           "model = PX-W4012A\n"
           "firmware = 1.01\n"
           "driver_table = generic-mmc:0x10\n"
           "reads = CD-R CD-RW CD-ROM\n"
           "writes = CD-R CD-RW\n"
           "features = BURN-Proof\n"
           "buffer = 2048\n"
           "underrun = yes\n"
           "max_speed = 40\n"
           "speeds = 40x 32x 24x\n"
           "medium = CD-RW\n"
           "rewritable = yes\n"
           "blank = yes\n"
           "appendable = no\n"
           "capacity = 359849\n";
}

// A DVD reader (not in the driver table) with a pressed DVD in it.
inline std::string liteonReader() {
    return "[device]\n"
           "address = 1,1,0\n"
           "aspi_address = 0,2,0\n"
           "vendor = LITEON\n"
           "model = DVD-ROM LTD163\n"
           "firmware = GHR3\n"
           "reads = CD-R CD-RW CD-ROM DVD-ROM\n"
           "buffer = 512\n"
           "medium = DVD-ROM\n";
}

// text with the line that starts with key replaced by "key = value".
inline std::string withLine(std::string text, const std::string &key, const std::string &value) {
    const std::size_t at = text.find("\n" + key + " = ");
    if (at == std::string::npos) return text + key + " = " + value + "\n";
    const std::size_t end = text.find('\n', at + 1);
    return text.replace(at + 1, end - at - 1, key + " = " + value);
}

}  // namespace saltmarrow::test

#endif
