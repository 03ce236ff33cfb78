#ifndef SALTMARROW_SUPPORT_ERRORREPORT_H
#define SALTMARROW_SUPPORT_ERRORREPORT_H

#include <functional>
#include <string>

namespace saltmarrow {

// The details of an unexpected error as the report shows them, one item a line.
std::string errorReportText(int number, const std::string &description, const std::string &module,
                            const std::string &procedure, int line, const std::string &appVersion,
                            const std::string &platformVersion);

// Shows the report of an error and says whether the program goes on.
class ErrorReporter {
public:
    virtual ~ErrorReporter() = default;
    // True: the handler ends and the program carries on. False: it ends.
    virtual bool ErrorReport(int number, const std::string &description, const std::string &module,
                             const std::string &procedure, int line) = 0;
};

// Runs one event handler; whatever escapes it goes to the reporter. When the
// reporter says stop, terminate is called.
void guard(ErrorReporter &reporter, const char *module, const char *procedure, const std::function<void()> &handler,
           const std::function<void()> &terminate);

}  // namespace saltmarrow

#endif
