#ifndef SALTMARROW_TESTS_CDDB_CDDBSERVERS_H
#define SALTMARROW_TESTS_CDDB_CDDBSERVERS_H

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "cddb/FreedbHost.h"
#include "exec/EnglishTexts.h"
#include "platform/Dialogs.h"
#include "testlib/ScriptedDialogs.h"

namespace saltmarrow::test {

// A server on the loopback that answers from a transcript: each line it gets
// (a CDDB command, or the request line of an HTTP GET) is looked up by its
// beginning, and the reply goes out in its chunks, 30 ms apart, so that they
// reach the client apart. A chunk "<close>" closes the connection.
class TranscriptServer {
public:
    std::vector<std::string> greeting;                        // sent on connect
    std::map<std::string, std::vector<std::string>> replies;  // line beginning -> chunks
    std::vector<std::string> received;                        // every line, without its end

    TranscriptServer() {
        server_.listen(QHostAddress::LocalHost);
        QObject::connect(&server_, &QTcpServer::newConnection, [this] {
            QTcpSocket *client = server_.nextPendingConnection();
            QObject::connect(client, &QTcpSocket::readyRead, client, [this, client] {
                while (client->canReadLine()) {
                    const std::string line = client->readLine().trimmed().toStdString();
                    received.push_back(line);
                    for (const auto &[start, chunks] : replies)
                        if (line.rfind(start, 0) == 0) send(client, chunks);
                }
            });
            send(client, greeting);
        });
    }
    std::string address() const { return "127.0.0.1:" + std::to_string(server_.serverPort()); }

private:
    static void send(QTcpSocket *client, const std::vector<std::string> &chunks) {
        int delay = 0;
        for (const std::string &chunk : chunks)
            QTimer::singleShot(delay += 30, client, [client, chunk] {
                if (chunk == "<close>")
                    client->disconnectFromHost();
                else
                    client->write(chunk.data(), qint64(chunk.size()));
            });
    }
    QTcpServer server_;
};

// The host of a dialog that is answered by dialogs, in English, and keeps its
// settings in settings.
inline FreedbHost scriptedHost(test::ScriptedDialogs &dialogs, FreedbSettings &settings) {
    FreedbHost host;
    host.dialogs = &dialogs;
    host.message = [](std::string_view key) { return englishText(key); };
    host.loadSettings = [&settings] { return settings; };
    host.saveSettings = [&settings](const FreedbSettings &s) { settings = s; };
    return host;
}

inline std::string httpOk(const std::string &body) {
    return "HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\n\r\n" + body;
}

// Lets events run until done() holds, for at most half a minute; what it returns
// is done() at the end.
inline bool waitFor(const std::function<bool()> &done) {
    QDeadlineTimer limit(30000);
    while (!done() && !limit.hasExpired()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    return done();
}

}  // namespace saltmarrow::test

#endif
