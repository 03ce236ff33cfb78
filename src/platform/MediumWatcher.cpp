#include "platform/MediumWatcher.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>

namespace saltmarrow::platform {

namespace {

const QString kService = QStringLiteral("org.freedesktop.UDisks2");
const QString kDriveInterface = QStringLiteral("org.freedesktop.UDisks2.Drive");

}  // namespace

std::optional<bool> mediumChange(const QString &interface, const QVariantMap &changed) {
    if (interface != kDriveInterface) return std::nullopt;
    if (changed.contains(QStringLiteral("Media"))) {
        const QString media = changed.value(QStringLiteral("Media")).toString();
        if (media.isEmpty()) return true;
        // Cards and sticks come and go through the same drives interface.
        if (!media.startsWith(QStringLiteral("optical"))) return std::nullopt;
        return false;
    }
    if (changed.contains(QStringLiteral("MediaAvailable")))
        return !changed.value(QStringLiteral("MediaAvailable")).toBool();
    return std::nullopt;
}

MediumWatcher::MediumWatcher(std::function<void(bool removed)> onChange, QObject *parent)
    : QObject(parent), onChange_(std::move(onChange)) {
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected() || !bus.interface() || !bus.interface()->isServiceRegistered(kService)) return;
    listening_ = bus.connect(kService, QString(), QStringLiteral("org.freedesktop.DBus.Properties"),
                             QStringLiteral("PropertiesChanged"), this,
                             SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
}

void MediumWatcher::propertiesChanged(const QString &interface, const QVariantMap &changed,
                                      const QStringList &invalidated) {
    Q_UNUSED(invalidated);
    if (const auto removed = mediumChange(interface, changed); removed && onChange_) onChange_(*removed);
}

}  // namespace saltmarrow::platform
