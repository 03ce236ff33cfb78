#include "platform/SingleInstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalSocket>

namespace saltmarrow::platform {

SingleInstance::SingleInstance(const std::string &appFolder, QObject *parent)
    : QObject(parent), name_(socketName(appFolder)) {}

SingleInstance::~SingleInstance() = default;

std::string SingleInstance::socketName(const std::string &appFolder) {
    QString canonical = QDir(QString::fromStdString(appFolder)).canonicalPath();
    if (canonical.isEmpty()) canonical = QString::fromStdString(appFolder);
    QByteArray hash = QCryptographicHash::hash(canonical.toUtf8(), QCryptographicHash::Sha1).toHex().left(16);
    return "saltmarrow-" + hash.toStdString();
}

bool SingleInstance::firstInstanceRunning() const {
    QLocalSocket socket;
    socket.connectToServer(QString::fromStdString(name_));
    bool up = socket.waitForConnected(500);
    if (up) {
        // Say nothing: an empty probe is not a hand-over.
        socket.disconnectFromServer();
    }
    return up;
}

bool SingleInstance::handOver(const std::string &text) const {
    QLocalSocket socket;
    socket.connectToServer(QString::fromStdString(name_));
    if (!socket.waitForConnected(1000)) return false;
    QByteArray bytes = QByteArray::fromStdString(text.substr(0, kMaxText));
    bytes.append('\0');  // the end mark; an empty command line is one NUL
    socket.write(bytes);
    bool ok = socket.waitForBytesWritten(1000);
    socket.disconnectFromServer();
    if (socket.state() != QLocalSocket::UnconnectedState) socket.waitForDisconnected(1000);
    return ok;
}

bool SingleInstance::listen(std::function<void(const std::string &)> onReceive) {
    onReceive_ = std::move(onReceive);
    server_ = std::make_unique<QLocalServer>();
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    QString name = QString::fromStdString(name_);
    if (!server_->listen(name)) {
        // A socket file left by a crashed first instance: nobody answers on it.
        QLocalServer::removeServer(name);
        if (!server_->listen(name)) return false;
    }
    connect(server_.get(), &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *socket = server_->nextPendingConnection()) {
            auto buffer = std::make_shared<QByteArray>();
            connect(socket, &QLocalSocket::readyRead, socket, [this, socket, buffer] {
                buffer->append(socket->readAll());
                int end = buffer->indexOf('\0');
                if (end < 0) return;
                std::string text = buffer->left(end).toStdString();
                // The text is all there is to have: the socket goes before
                // anything is done with it, and what is done (a whole write,
                // perhaps) runs from the event loop, not inside this handler.
                socket->disconnect();
                socket->abort();
                socket->deleteLater();
                QMetaObject::invokeMethod(
                    this,
                    [this, text] {
                        if (onReceive_) onReceive_(text);
                    },
                    Qt::QueuedConnection);
            });
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
    return true;
}

}  // namespace saltmarrow::platform
