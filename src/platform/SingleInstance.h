#ifndef SALTMARROW_PLATFORM_SINGLEINSTANCE_H
#define SALTMARROW_PLATFORM_SINGLEINSTANCE_H

#include <QLocalServer>
#include <QObject>
#include <functional>
#include <memory>
#include <string>

namespace saltmarrow::platform {

// The hand-over between instances: a local socket named after the program's
// folder, so that two installations do not meet. The first instance listens;
// a later one sends its command line (at most 254 bytes, as the hand-over
// always allowed) and leaves.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    explicit SingleInstance(const std::string &appFolder, QObject *parent = nullptr);
    ~SingleInstance() override;

    static std::string socketName(const std::string &appFolder);

    // True if a first instance answers on the socket.
    bool firstInstanceRunning() const;
    // Sends text to the first instance. False if none took it.
    bool handOver(const std::string &text) const;
    // Become the first instance; received texts go to onReceive, called from
    // the event loop once the socket that brought them is closed.
    bool listen(std::function<void(const std::string &)> onReceive);

    static constexpr std::size_t kMaxText = 254;

private:
    std::string name_;
    std::unique_ptr<QLocalServer> server_;
    std::function<void(const std::string &)> onReceive_;
};

}  // namespace saltmarrow::platform

#endif
