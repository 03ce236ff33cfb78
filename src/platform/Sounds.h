#ifndef SALTMARROW_PLATFORM_SOUNDS_H
#define SALTMARROW_PLATFORM_SOUNDS_H

#include <string>

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

}  // namespace saltmarrow::platform

#endif
