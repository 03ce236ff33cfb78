#ifndef SALTMARROW_TESTS_RECORDINGSOUNDS_H
#define SALTMARROW_TESTS_RECORDINGSOUNDS_H

#include <string>
#include <vector>

#include "platform/Sounds.h"

namespace saltmarrow::test {

// Keeps the names of the sounds played, in order.
class RecordingSounds : public platform::Sounds {
public:
    void play(const std::string &name, bool) override { played.push_back(name); }
    std::vector<std::string> played;
};

}  // namespace saltmarrow::test

#endif
