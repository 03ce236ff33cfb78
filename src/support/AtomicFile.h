#ifndef SALTMARROW_SUPPORT_ATOMICFILE_H
#define SALTMARROW_SUPPORT_ATOMICFILE_H

#include <string>
#include <string_view>

namespace saltmarrow {

// Replaces the file at path by bytes so that at every moment the file is either
// the old one or the whole new one: the bytes go to a temporary file in the
// same folder, are flushed to the disk, and the temporary file is renamed over
// the old one. The new file keeps the old one's permissions, and a symbolic
// link keeps pointing at the file it named. A read-only file, a folder that
// cannot be written or a full disk raise a RuntimeError (70 permission denied,
// 76 path not found, 61 disk full) and leave the old file as it was.
void replaceFileAtomically(const std::string &path, std::string_view bytes);

}  // namespace saltmarrow

#endif
