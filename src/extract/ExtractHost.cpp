#include "extract/ExtractHost.h"

#include "support/mdlFunctions.h"

namespace saltmarrow {

std::optional<std::size_t> ExtractHost::encoderIndex() const {
    const std::size_t rows = encoderRows().size();
    if (rows == 0) return std::nullopt;
    const double chosen = vb::Val(value("UseEncoder"));
    return chosen < 0 || chosen >= static_cast<double>(rows) ? 0 : static_cast<std::size_t>(chosen);
}

}  // namespace saltmarrow
