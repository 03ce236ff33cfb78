#include "testlib/TestSupport.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
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

std::vector<int> livingProcessesNaming(const std::string &text) {
    std::vector<int> found;
    for (const auto &e : fs::directory_iterator("/proc")) {
        const int pid = std::atoi(e.path().filename().c_str());
        if (pid > 0 && readFile(e.path() / "cmdline").find(text) != std::string::npos && processAlive(pid))
            found.push_back(pid);
    }
    return found;
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
