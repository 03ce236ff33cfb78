#include "platform/SystemInfo.h"

#include <langinfo.h>
#include <sys/utsname.h>

#include <fstream>

namespace saltmarrow::platform {

std::string platformVersion() {
    std::string kernel = "unknown";
    utsname u{};
    if (uname(&u) == 0) kernel = u.release;
    std::string distribution;
    std::ifstream os("/etc/os-release");
    std::string line;
    while (std::getline(os, line)) {
        if (line.rfind("PRETTY_NAME=", 0) != 0) continue;
        distribution = line.substr(12);
        if (distribution.size() >= 2 && distribution.front() == '"' && distribution.back() == '"')
            distribution = distribution.substr(1, distribution.size() - 2);
    }
    return kernel + "\t" + distribution;
}

std::string localeCodeset() {
    const char *codeset = nl_langinfo(CODESET);
    return codeset ? codeset : "";
}

}  // namespace saltmarrow::platform
