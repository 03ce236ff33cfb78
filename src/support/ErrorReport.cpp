#include "support/ErrorReport.h"

#include <exception>

#include "support/RuntimeError.h"

namespace saltmarrow {

std::string errorReportText(int number, const std::string &description, const std::string &module,
                            const std::string &procedure, int line, const std::string &appVersion,
                            const std::string &platformVersion) {
    std::string text = "Error " + std::to_string(number) + ": " + description + "\r\n";
    text += "Error occurred in: " + module + ":" + procedure;
    if (line != 0) text += ":" + std::to_string(line);
    text += "\r\n";
    text += "App Version: " + appVersion + "\r\n";
    text += "Linux Version: " + platformVersion;
    return text;
}

void guard(ErrorReporter &reporter, const char *module, const char *procedure, const std::function<void()> &handler,
           const std::function<void()> &terminate) {
    bool goOn = true;
    try {
        handler();
        return;
    } catch (const RuntimeError &e) {
        goOn = reporter.ErrorReport(e.number(), e.description(), module, procedure, 0);
    } catch (const std::bad_alloc &) {
        goOn = reporter.ErrorReport(7, errorDescription(7), module, procedure, 0);
    } catch (const std::exception &e) {
        goOn = reporter.ErrorReport(51, e.what(), module, procedure, 0);
    } catch (...) {
        goOn = reporter.ErrorReport(51, "Internal error", module, procedure, 0);
    }
    if (!goOn && terminate) terminate();
}

}  // namespace saltmarrow
