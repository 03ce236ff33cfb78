#ifndef SALTMARROW_DISCOPS_DATAWRITE_H
#define SALTMARROW_DISCOPS_DATAWRITE_H

#include <string>

namespace saltmarrow::discops {

// What a data project leaves on the main window for its write.
struct DataDisc {
    std::string isoCommand;  // the mkisofs arguments
    bool largeFile = false;  // a file of 4 GiB or more, which only UDF shows whole
};

}  // namespace saltmarrow::discops

#endif
