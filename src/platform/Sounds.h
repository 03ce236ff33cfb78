#ifndef SALTMARROW_PLATFORM_SOUNDS_H
#define SALTMARROW_PLATFORM_SOUNDS_H

#include <string>
#include <vector>

namespace saltmarrow::platform {

// The system sounds the program plays: "DeviceFail", "SystemAsterisk",
// "SystemHand".
class Sounds {
public:
    virtual ~Sounds() = default;
    virtual void play(const std::string &name, bool async) = 0;
};

// The platform has no named sounds: each one is the desktop's beep.
class BeepSounds : public Sounds {
public:
    void play(const std::string &name, bool async) override;
};

class RecordingSounds : public Sounds {
public:
    void play(const std::string &name, bool) override { played.push_back(name); }
    std::vector<std::string> played;
};

}  // namespace saltmarrow::platform

#endif
