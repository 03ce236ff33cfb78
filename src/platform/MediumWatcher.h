#ifndef SALTMARROW_PLATFORM_MEDIUMWATCHER_H
#define SALTMARROW_PLATFORM_MEDIUMWATCHER_H

#include <QObject>
#include <QVariantMap>
#include <functional>
#include <optional>

namespace saltmarrow::platform {

// Device-change events that concern a disc: arrival (32768) and removal
// complete (32772). Anything else is no business of the drive status.
constexpr int DBT_DEVICEARRIVAL = 32768;
constexpr int DBT_DEVICEREMOVECOMPLETE = 32772;
// True for a removal, false for an arrival, nothing for other events.
std::optional<bool> mediumChange(int event);

// The event that a change of a UDisks2 drive's properties stands for: its
// "MediaAvailable" turning true or false. Other changes give 0.
int udisksDriveEvent(const QString &interfaceName, const QVariantMap &changed);

// Listens to UDisks2 on the system bus, where there is one, and reports each
// disc arrival or removal. Without a system bus it stays silent.
class MediumWatcher : public QObject {
    Q_OBJECT
public:
    explicit MediumWatcher(std::function<void(bool removed)> onChange, QObject *parent = nullptr);
    bool listening() const { return listening_; }

    // One device-change event, as the bus or a test delivers it.
    void deviceChange(int event);

private slots:
    void propertiesChanged(const QString &interfaceName, const QVariantMap &changed, const QStringList &invalidated);

private:
    std::function<void(bool)> onChange_;
    bool listening_ = false;
};

}  // namespace saltmarrow::platform

#endif
