#ifndef SALTMARROW_TESTS_DISCOPS_IMAGETESTSUPPORT_H
#define SALTMARROW_TESTS_DISCOPS_IMAGETESTSUPPORT_H

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "discops/ImageSlot.h"
#include "shell/MessageTable.h"

namespace saltmarrow::test {

// The English texts of the messages the image procedures show.
inline std::string imageMessage(const std::string &key) {
    static const MessageTable table;
    return table.contains(key) ? table.text(key) : "<" + key + ">";
}

// A file of exactly bytes zero bytes; sparse where the file system allows.
inline void makeFileOfSize(const std::string &path, std::uintmax_t bytes) {
    { std::ofstream(path, std::ios::binary | std::ios::trunc); }
    std::filesystem::resize_file(path, bytes);
}

}  // namespace saltmarrow::test

#endif
