#ifndef SALTMARROW_CDDB_CDDBSOCKET_H
#define SALTMARROW_CDDB_CDDBSOCKET_H

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <string>

class QNetworkAccessManager;
class QNetworkReply;
class QTcpSocket;

namespace saltmarrow {

// The database dialog's socket: a TCP connection to a host and port, or one
// HTTP GET. Either way it reports what arrives as chunks and ends in Closed or
// Failed, once. After Close nothing more is reported. The local port is the
// system's choice.
class CddbSocket : public QObject {
    Q_OBJECT
public:
    explicit CddbSocket(QObject *parent = nullptr);
    ~CddbSocket() override;

    void Connect(const std::string &host, int port);
    void Get(const std::string &url);
    // Sent only while connected; a text for a closed connection is dropped.
    void SendData(const std::string &text);
    void Close();

    std::string LocalHostName() const;
    std::string LocalIP() const;

signals:
    void Connected();
    void DataArrival(const QByteArray &bytes);
    void Closed();
    void Failed();

private:
    void readTcp();
    QTcpSocket *tcp_ = nullptr;
    QNetworkAccessManager *http_ = nullptr;
    QPointer<QNetworkReply> reply_;
};

}  // namespace saltmarrow

#endif
