#include "support/HttpServer.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTcpSocket>

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
    return QStringLiteral("http://127.0.0.1:%1").arg(m_port);
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

bool eventually(const std::function<bool()> &condition)
{
    QDeadlineTimer deadline(10000);
    while (!condition() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return condition();
}

void settle()
{
    for (int i = 0; i < 20; ++i)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

} // namespace test
