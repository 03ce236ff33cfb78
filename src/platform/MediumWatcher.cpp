#include "platform/MediumWatcher.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>

namespace saltmarrow::platform {

std::optional<bool> mediumChange(int event) {
    if (event == DBT_DEVICEARRIVAL) return false;
    if (event == DBT_DEVICEREMOVECOMPLETE) return true;
    return std::nullopt;
}

int udisksDriveEvent(const QString &interfaceName, const QVariantMap &changed) {
    if (interfaceName != QLatin1String("org.freedesktop.UDisks2.Drive")) return 0;
    if (changed.contains(QStringLiteral("Media"))) {
        const QString media = changed.value(QStringLiteral("Media")).toString();
        if (media.isEmpty()) return DBT_DEVICEREMOVECOMPLETE;
        // Cards and sticks come and go through the same drives interface.
        return media.startsWith(QLatin1String("optical")) ? DBT_DEVICEARRIVAL : 0;
    }
    auto it = changed.find(QStringLiteral("MediaAvailable"));
    if (it == changed.end()) return 0;
    return it->toBool() ? DBT_DEVICEARRIVAL : DBT_DEVICEREMOVECOMPLETE;
}

MediumWatcher::MediumWatcher(std::function<void(bool)> onChange, QObject *parent)
    : QObject(parent), onChange_(std::move(onChange)) {
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected() || !bus.interface() ||
        !bus.interface()->isServiceRegistered(QStringLiteral("org.freedesktop.UDisks2")))
        return;
    listening_ = bus.connect(QStringLiteral("org.freedesktop.UDisks2"), QString(),
                             QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"),
                             this, SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
}

void MediumWatcher::deviceChange(int event) {
    if (auto removed = mediumChange(event); removed && onChange_) onChange_(*removed);
}

void MediumWatcher::propertiesChanged(const QString &interfaceName, const QVariantMap &changed, const QStringList &) {
    deviceChange(udisksDriveEvent(interfaceName, changed));
}

}  // namespace saltmarrow::platform
