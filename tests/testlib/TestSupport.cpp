#include "testlib/TestSupport.h"

#include <dirent.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>

#include "platform/ChildProcess.h"
#include "platform/CommandLine.h"

namespace saltmarrow::test {

namespace fs = std::filesystem;

TempDir::TempDir() {
    std::string pattern = (fs::temp_directory_path() / "saltmarrow-test-XXXXXX").string();
    std::vector<char> buf(pattern.begin(), pattern.end());
    buf.push_back('\0');
    if (!mkdtemp(buf.data())) throw std::runtime_error("mkdtemp failed");
    path_ = buf.data();
}

TempDir::~TempDir() {
    std::error_code ec;
    // Tests may leave read-only folders behind; open them up before removing.
    for (auto it = fs::recursive_directory_iterator(path_, ec); it != fs::recursive_directory_iterator();
         ++it)
        fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, ec);
    fs::remove_all(path_, ec);
}

std::string readFile(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

void writeFile(const std::string &path, const std::string &bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
}

std::string fixture(const std::string &name) {
    return std::string(SALTMARROW_FIXTURE_DIR) + "/" + name;
}

std::string sourcePath(const std::string &relative) {
    return std::string(SALTMARROW_SOURCE_DIR) + "/" + relative;
}

bool processAlive(int pid) {
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    if (!std::getline(stat, line)) return false;
    auto close = line.rfind(')');
    return close != std::string::npos && close + 2 < line.size() && line[close + 2] != 'Z' &&
           line[close + 2] != 'X';
}

namespace {

std::vector<int> livingProcesses(const std::function<bool(int pid)> &match) {
    std::vector<int> found;
    DIR *proc = opendir("/proc");
    if (!proc) return found;
    while (dirent *e = readdir(proc)) {
        int pid = std::atoi(e->d_name);
        if (pid > 0 && match(pid) && processAlive(pid)) found.push_back(pid);
    }
    closedir(proc);
    return found;
}

}  // namespace

std::vector<int> livingProcessesInGroup(int pgid) {
    return livingProcesses([pgid](int pid) { return getpgid(pid) == pgid; });
}

std::vector<int> livingProcessesNaming(const std::string &text) {
    return livingProcesses([&text](int pid) {
        return readFile("/proc/" + std::to_string(pid) + "/cmdline").find(text) != std::string::npos;
    });
}

bool haveProgram(const std::string &name) {
    const char *path = std::getenv("PATH");
    if (!path) return false;
    std::stringstream dirs(path);
    std::string dir;
    while (std::getline(dirs, dir, ':'))
        if (access((dir + "/" + name).c_str(), X_OK) == 0) return true;
    return false;
}

ToolResult runTool(const std::vector<std::string> &arguments, const std::string &folder) {
    std::string line;
    for (const std::string &a : arguments) line += (line.empty() ? "" : " ") + platform::quoteArgument(a);
    ToolResult result;
    platform::ChildProcess process;
    if (!process.start(line, folder)) return result;
    char buffer[4096];
    for (;;) {
        const bool ended = process.waitFor(50);
        for (int n; (n = process.read(buffer, sizeof buffer)) > 0;) result.output.append(buffer, n);
        if (ended) break;
    }
    result.exitCode = process.exitCode();
    return result;
}

}  // namespace saltmarrow::test
