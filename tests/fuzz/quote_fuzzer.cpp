// libFuzzer target: any byte string, quoted as an argument, comes back whole
// from the command-line splitter, from a pipeline stage and from a batch file.
#include <cstdint>

#include "platform/CommandLine.h"

using namespace saltmarrow::platform;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string name(reinterpret_cast<const char *>(data), size);
    const std::string quoted = quoteArgument(name), line = quoted + " " + quoted;
    if (splitCommandLine(line) != std::vector<std::string>{name, name} ||
        splitPipeline(quoted + " | " + line) != std::vector<std::string>{quoted, line} ||
        batchCommand(batchFileText(line)) != line)
        __builtin_trap();
    return 0;
}
