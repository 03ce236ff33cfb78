#include "support/RuntimeError.h"

#include <array>
#include <utility>

namespace saltmarrow {

namespace {
struct ErrorText {
    int number;
    const char *text;
};

constexpr std::array<ErrorText, 12> kErrorTexts{{
    {3, "Return without GoSub"},
    {5, "Invalid procedure call or argument"},
    {6, "Overflow"},
    {7, "Out of memory"},
    {9, "Subscript out of range"},
    {11, "Division by zero"},
    {13, "Type mismatch"},
    {52, "Bad file name or number"},
    {53, "File not found"},
    {61, "Disk full"},
    {70, "Permission denied"},
    {76, "Path not found"},
}};
} // namespace

RuntimeError::RuntimeError(int number, std::string description)
    : std::runtime_error(description), number_(number), description_(std::move(description)) {}

std::string errorDescription(int number) {
    for (const auto &row : kErrorTexts)
        if (row.number == number) return row.text;
    return "Application-defined or object-defined error";
}

void raiseError(int number) { throw RuntimeError(number, errorDescription(number)); }

} // namespace saltmarrow
