#pragma once

// A real HTTP server on the loopback address for tests: keeps what came in byte for byte and gives
// back what the test says, well formed or not. Lives on the thread of the test's event loop.

#include <QByteArray>
#include <QSslCertificate>
#include <QSslKey>
#include <QString>
#include <QTcpServer>
#include <QVector>

#include <functional>

class QTcpSocket;

namespace test {

class HttpServer : public QObject
{
public:
    struct Request
    {
        /// "GET /path?query HTTP/1.1".
        QByteArray line;
        /// Header lines as they came, without line ends.
        QVector<QByteArray> headers;
        QByteArray body;

        /// The value of the header named exactly so; empty when there is none.
        QByteArray header(const QByteArray &name) const;
    };

    /// Bytes to write before the connection closes; null keeps it open without a word.
    using Answer = std::function<QByteArray(const Request &)>;

    explicit HttpServer(Answer answer);

    /// "http://127.0.0.1:<port>"; stays the same over stop() and restart().
    QString address() const;
    /// From now on an https server, with a certificate that nobody has signed.
    void encrypt();
    void setAnswer(Answer answer) { m_answer = std::move(answer); }
    /// Refuses connections from now on, or takes them again.
    void stop() { m_server.close(); }
    void restart();

    QVector<Request> requests;

    static QByteArray reply(const QByteArray &status, const QByteArray &body);

private:
    /// Speaks TLS where it has a key.
    class Listener : public QTcpServer
    {
    public:
        QSslCertificate certificate;
        QSslKey key;

    protected:
        void incomingConnection(qintptr handle) override;
    };

    void read(QTcpSocket *socket);

    Listener m_server;
    Answer m_answer;
    quint16 m_port = 0;
};

/// Turns the event loop until everything posted so far is done.
void settle();

} // namespace test
