#ifndef SALTMARROW_PLATFORM_SYSTEMINFO_H
#define SALTMARROW_PLATFORM_SYSTEMINFO_H

#include <string>

namespace saltmarrow::platform {

// "6.1.0-18-amd64<TAB>Debian GNU/Linux 12 (bookworm)": kernel release, a tab
// and the distribution's name, for the error report.
std::string platformVersion();

// The character set of the locale as the C library names it ("UTF-8").
std::string localeCodeset();

}  // namespace saltmarrow::platform

#endif
