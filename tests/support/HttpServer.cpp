#include "support/HttpServer.h"
#include "support/Files.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QProcess>
#include <QSslSocket>
#include <QTemporaryDir>

namespace test {

QByteArray HttpServer::Request::header(const QByteArray &name) const
{
    for (const QByteArray &line : headers) {
        if (line.startsWith(name + ": "))
            return line.mid(name.size() + 2);
    }
    return {};
}

HttpServer::HttpServer(Answer answer)
    : m_answer(std::move(answer))
{
    QObject::connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            QObject::connect(socket, &QTcpSocket::readyRead, this,
                             [this, socket] { read(socket); });
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
    restart();
    m_port = m_server.serverPort();
}

void HttpServer::restart()
{
    EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost, m_port));
}

QString HttpServer::address() const
{
    return QStringLiteral("%1://127.0.0.1:%2")
        .arg(m_server.key.isNull() ? "http" : "https")
        .arg(m_port);
}

void HttpServer::encrypt()
{
    const QTemporaryDir folder;
    const QString key = folder.filePath("key"), certificate = folder.filePath("certificate");
    QProcess maker;
    maker.start("openssl", {"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-subj",
                            "/CN=127.0.0.1", "-keyout", key, "-out", certificate});
    EXPECT_TRUE(maker.waitForFinished());
    m_server.key = QSslKey(readFile(key), QSsl::Rsa);
    m_server.certificate = QSslCertificate(readFile(certificate));
    EXPECT_FALSE(m_server.key.isNull() || m_server.certificate.isNull());
}

void HttpServer::Listener::incomingConnection(qintptr handle)
{
    if (key.isNull()) {
        QTcpServer::incomingConnection(handle);
        return;
    }
    auto *socket = new QSslSocket(this);
    socket->setSocketDescriptor(handle);
    socket->setLocalCertificate(certificate);
    socket->setPrivateKey(key);
    socket->startServerEncryption();
    addPendingConnection(socket);
}

QByteArray HttpServer::reply(const QByteArray &status, const QByteArray &body)
{
    return "HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

void HttpServer::read(QTcpSocket *socket)
{
    QByteArray seen = socket->property("seen").toByteArray() + socket->readAll();
    socket->setProperty("seen", seen);
    const int end = seen.indexOf("\r\n\r\n");
    if (end < 0)
        return;
    Request request;
    for (const QByteArray &line : seen.left(end).split('\n'))
        request.headers.append(line.trimmed());
    request.line = request.headers.takeFirst();
    request.body = seen.mid(end + 4);
    if (request.body.size() < request.header("Content-Length").toInt())
        return;
    requests.append(request);
    const QByteArray answer = m_answer(request);
    if (answer.isNull())
        return;
    socket->write(answer);
    socket->disconnectFromHost();
}

void settle()
{
    for (int i = 0; i < 20; ++i)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

} // namespace test
