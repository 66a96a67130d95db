#pragma once

// The test writer as a process of its own, with a block that no other run of the tests uses.

#include "input/WriterPattern.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>

namespace test {

class WriterProcess
{
public:
    /// @p name is the block's, with its leading slash; by default one of this process alone.
    explicit WriterProcess(const QString &name = QStringLiteral("/orbilens-test-%1")
                                                     .arg(QCoreApplication::applicationPid()))
        : m_name(name)
    {
        start();
    }
    ~WriterProcess()
    {
        if (m_process.state() == QProcess::NotRunning)
            start();
        ask("create " + m_name + " 1 4096");
        ask("unlink");
        m_process.write("exit\n");
        m_process.waitForFinished();
    }

    QString name() const { return m_name; }

    void start()
    {
        m_process.start(QStringLiteral(ORBILENS_SHARED_WRITER), QStringList());
        EXPECT_TRUE(m_process.waitForStarted());
    }
    /// As a crash does it: nothing is tidied up.
    void kill()
    {
        m_process.kill();
        EXPECT_TRUE(m_process.waitForFinished());
    }

    void send(const QString &command)
    {
        m_process.write(command.toLatin1() + '\n');
        EXPECT_TRUE(m_process.waitForBytesWritten(kPatienceMs));
    }
    QByteArray reply()
    {
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(kPatienceMs))
                return "none";
        }
        return m_process.readLine().trimmed();
    }
    QByteArray ask(const QString &command)
    {
        send(command);
        return reply();
    }
    void create(int slotCount, int bytes, const QString &version = {})
    {
        EXPECT_EQ(ask(QStringLiteral("create %1 %2 %3 %4")
                          .arg(m_name)
                          .arg(slotCount)
                          .arg(bytes)
                          .arg(version)),
                  "ok");
    }

private:
    static constexpr int kPatienceMs = 60000;
    QString m_name;
    QProcess m_process;
};

} // namespace test
