#ifndef SALTMARROW_TESTS_EXEC_ENGLISHTEXTS_H
#define SALTMARROW_TESTS_EXEC_ENGLISHTEXTS_H

#include "shell/MessageTable.h"
#include <string>
#include <string_view>

namespace saltmarrow::test {

// The program's own English texts; a key the table does not know shows as
// "<key>", so a test sees a lookup of a wrong key.
inline std::string englishText(std::string_view key) {
    static const MessageTable table;
    return table.contains(key) ? table.text(key) : "<" + std::string(key) + ">";
}

}  // namespace saltmarrow::test

#endif
