#ifndef SALTMARROW_TESTS_TESTSUPPORT_H
#define SALTMARROW_TESTS_TESTSUPPORT_H

#include <string>
#include <vector>

namespace saltmarrow::test {

// A fresh folder under the system's temporary folder, removed with everything
// in it when the object goes.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir &) = delete;
    TempDir &operator=(const TempDir &) = delete;
    const std::string &path() const { return path_; }
    std::string file(const std::string &name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

std::string readFile(const std::string &path);
void writeFile(const std::string &path, const std::string &bytes);

// Path of a helper program built from tests/fixtures.
std::string fixture(const std::string &name);
// Path of a file below the source tree.
std::string sourcePath(const std::string &relative);

// The living processes whose command line holds text (zombies do not count).
std::vector<int> livingProcessesNaming(const std::string &text);
bool processAlive(int pid);

// True if a program of that name is on PATH.
bool haveProgram(const std::string &name);

// Runs a program without a shell, in folder (empty: the current one): its
// exit code and what it printed on either stream. Each argument is passed
// as it stands.
struct ToolResult {
    int exitCode = -1;
    std::string output;
};
ToolResult runTool(const std::vector<std::string> &arguments, const std::string &folder = {});

}  // namespace saltmarrow::test

#endif
