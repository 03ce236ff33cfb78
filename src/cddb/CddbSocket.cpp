#include "cddb/CddbSocket.h"

#include <QHostInfo>
#include <QNetworkAccessManager>
#include <QNetworkInterface>
#include <QNetworkReply>
#include <QTcpSocket>

namespace saltmarrow {

namespace {
// Read a little at a time, so that a server that floods us is stopped by the
// session's limits before the bytes pile up here.
constexpr qint64 kReadPiece = 64 * 1024;
}  // namespace

CddbSocket::CddbSocket(QObject *parent) : QObject(parent) {}

CddbSocket::~CddbSocket() {
    Close();
}

void CddbSocket::Connect(const std::string &host, int port) {
    Close();
    tcp_ = new QTcpSocket(this);
    tcp_->setReadBufferSize(kReadPiece);
    connect(tcp_, &QTcpSocket::connected, this, &CddbSocket::Connected);
    connect(tcp_, &QTcpSocket::readyRead, this, &CddbSocket::readTcp);
    connect(tcp_, &QTcpSocket::disconnected, this, [this, tcp = tcp_] {
        readTcp();
        if (tcp_ != tcp) return;  // a handler of the last bytes has closed it
        Close();
        emit Closed();
    });
    connect(tcp_, &QTcpSocket::errorOccurred, this, [this](QAbstractSocket::SocketError error) {
        // The peer's close is reported as disconnected as well.
        if (error == QAbstractSocket::RemoteHostClosedError) return;
        Close();
        emit Failed();
    });
    tcp_->connectToHost(QString::fromStdString(host), static_cast<quint16>(port));
}

void CddbSocket::readTcp() {
    // The handlers may close the socket under this loop.
    while (tcp_ && tcp_->bytesAvailable() > 0) emit DataArrival(tcp_->read(kReadPiece));
}

void CddbSocket::Get(const std::string &url) {
    Close();
    if (!http_) http_ = new QNetworkAccessManager(this);
    QNetworkRequest request{QUrl(QString::fromStdString(url))};
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    reply_ = http_->get(request);
    reply_->setReadBufferSize(kReadPiece);
    connect(reply_, &QNetworkReply::metaDataChanged, this, &CddbSocket::Connected);
    connect(reply_, &QNetworkReply::readyRead, this, [this] {
        while (reply_ && reply_->bytesAvailable() > 0) emit DataArrival(reply_->read(kReadPiece));
    });
    connect(reply_, &QNetworkReply::finished, this, [this] {
        if (!reply_) return;
        while (reply_ && reply_->bytesAvailable() > 0) emit DataArrival(reply_->read(kReadPiece));
        if (!reply_) return;
        const bool failed = reply_->error() != QNetworkReply::NoError;
        Close();
        if (failed)
            emit Failed();
        else
            emit Closed();
    });
}

void CddbSocket::SendData(const std::string &text) {
    if (tcp_ && tcp_->state() == QAbstractSocket::ConnectedState)
        tcp_->write(text.data(), static_cast<qint64>(text.size()));
}

void CddbSocket::Close() {
    if (tcp_) {
        QTcpSocket *tcp = tcp_;
        tcp_ = nullptr;
        tcp->disconnect(this);
        tcp->abort();
        tcp->deleteLater();
    }
    if (reply_) {
        QNetworkReply *reply = reply_;
        reply_ = nullptr;
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
}

std::string CddbSocket::LocalHostName() const {
    return QHostInfo::localHostName().toStdString();
}

std::string CddbSocket::LocalIP() const {
    if (tcp_ && !tcp_->localAddress().isNull()) return tcp_->localAddress().toString().toStdString();
    for (const QHostAddress &address : QNetworkInterface::allAddresses())
        if (!address.isLoopback() && address.protocol() == QAbstractSocket::IPv4Protocol)
            return address.toString().toStdString();
    return "127.0.0.1";
}

}  // namespace saltmarrow
