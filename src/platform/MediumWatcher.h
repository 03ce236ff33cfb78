#ifndef SALTMARROW_PLATFORM_MEDIUMWATCHER_H
#define SALTMARROW_PLATFORM_MEDIUMWATCHER_H

#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <functional>
#include <optional>

namespace saltmarrow::platform {

// What one property change of a UDisks2 drive says about its medium: true
// for a medium removed, false for one arrived, nothing for any other change.
std::optional<bool> mediumChange(const QString &interface, const QVariantMap &changed);

// Tells the main form when a disc arrives or leaves, so that it refreshes
// the drive status by itself. Listens to UDisks2 on the system bus where
// there is one; elsewhere it stays silent.
class MediumWatcher : public QObject {
    Q_OBJECT
public:
    explicit MediumWatcher(std::function<void(bool removed)> onChange, QObject *parent = nullptr);
    bool listening() const { return listening_; }

private slots:
    void propertiesChanged(const QString &interface, const QVariantMap &changed,
                           const QStringList &invalidated);

private:
    std::function<void(bool)> onChange_;
    bool listening_ = false;
};

}  // namespace saltmarrow::platform

#endif
