#ifndef SALTMARROW_SUPPORT_RUNTIMEERROR_H
#define SALTMARROW_SUPPORT_RUNTIMEERROR_H

#include <stdexcept>
#include <string>

namespace saltmarrow {

// The one error type of the logic layer. It carries the number and the
// description that the error report shows; the guard around each event handler
// catches it (and anything else) and opens frmErrorReport.
class RuntimeError : public std::runtime_error {
public:
    RuntimeError(int number, std::string description);

    int number() const { return number_; }
    const std::string &description() const { return description_; }

private:
    int number_;
    std::string description_;
};

// The run-time errors the program raises itself, with their usual texts.
namespace err {
constexpr int InvalidProcedureCall = 5;
constexpr int Overflow = 6;
constexpr int SubscriptOutOfRange = 9;
constexpr int TypeMismatch = 13;
constexpr int FileNotFound = 53;
constexpr int PermissionDenied = 70;
constexpr int PathNotFound = 76;
} // namespace err

// The standard description of a run-time error number ("Type mismatch", ...).
std::string errorDescription(int number);

[[noreturn]] void raiseError(int number);

} // namespace saltmarrow

#endif
