// libFuzzer target: any byte string, quoted as an argument, comes back whole
// from the command-line splitter, from a pipeline stage and from a batch file.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/CommandLine.h"

namespace sp = saltmarrow::platform;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string name(reinterpret_cast<const char *>(data), size);
    const std::string quoted = sp::quoteArgument(name);
    const std::string line = quoted + " " + quoted;
    if (sp::splitCommandLine(line) != std::vector<std::string>{name, name}) std::abort();
    const std::vector<std::string> stages = sp::splitPipeline(quoted + " | " + line);
    if (stages != std::vector<std::string>{quoted, line}) std::abort();
    if (sp::batchCommand(sp::batchFileText(line)) != line) std::abort();
    return 0;
}
