#include "foundation/KLog.h"
#include "foundation/KFoundation.h"
#include "support/Files.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>

#include <thread>

namespace {

/// A log in an empty folder, and all that it signals.
struct LogTest : ::testing::Test
{
    LogTest()
    {
        const auto direct = Qt::DirectConnection;
        const auto line = [this](const QString &text) { signalled += text; };
        const auto numbered = [this](int id, const QString &text) {
            signalled += QString("%1:%2").arg(id).arg(text);
        };
        QObject::connect(&log, QOverload<QString>::of(&KLog::Logged), &log, line, direct);
        QObject::connect(&log, QOverload<int, QString>::of(&KLog::Logged), &log, numbered, direct);
    }
    QByteArray content() const { return test::readFile(path); }

    const QTemporaryDir folder;
    const QString path = folder.filePath("log.txt");
    QStringList signalled;
    KLog log;
};

} // namespace

TEST_F(LogTest, WithoutFileOnlySignals)
{
    log.Log(QString("100 %s"));
    log.Log("%s %d", "\xC3\xA9", 3);
    log.Log(7, "%05.1f", 1.5);
    log.Log(8, QString("x"));
    EXPECT_EQ(signalled,
              QStringList({"100 %s", QString::fromUtf8("\xC3\xA9 3"), "7:001.5", "8:x"}));
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

TEST_F(LogTest, FileLinesAreIndentedFlushedAndUtf8)
{
    log.Open(path);
    log.Log(QString::fromUtf8("\xC3\xA9"));
    EXPECT_EQ(content().toStdString(), "\xC3\xA9\r\n");
    log.SetIndent(2);
    log.Log(1, "deep");
    EXPECT_EQ(content().toStdString(), "\xC3\xA9\r\n |  | deep\r\n");
    log.Close();
    log.Log(QString("unwritten"));
    log.Open(path);
    log.SetIndent(-1);
    log.Log(QString("anew"));
    EXPECT_EQ(content().toStdString(), "anew\r\n");
}

TEST_F(LogTest, LinesOfManyThreadsStayWhole)
{
    log.Open(path);
    const auto write = [this](const char *word) {
        for (int i = 0; i < 500; ++i)
            log.Log(QString(word).repeated(20));
    };
    std::thread a(write, "ab");
    std::thread b(write, "xyz");
    a.join();
    b.join();
    EXPECT_EQ(signalled.size(), 1000);
    EXPECT_EQ(content(), signalled.join("\r\n").toUtf8() + "\r\n");
}

TEST_F(LogTest, FileThatCannotBeOpenedIsReportedAndLoggingGoesOn)
{
    QString shown;
    QTimer whileOpen;
    QObject::connect(&whileOpen, &QTimer::timeout, [&] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            shown = box->windowTitle() + '|' + box->text();
            log.Log(QString("meanwhile"));
            box->close();
            whileOpen.stop();
        }
    });
    whileOpen.start(10);
    log.Open(folder.path());
    EXPECT_EQ(shown, "Critical error|Can not open file " + folder.path());
    EXPECT_EQ(signalled, QStringList("meanwhile"));
}

TEST(Foundation, MakesTheLogOnceAndEndsIt)
{
    EXPECT_EQ(KLog::Instance(), nullptr);
    KFoundation::Initialize();
    KLog *log = KLog::Instance();
    EXPECT_NE(log, nullptr);
    KFoundation::Initialize();
    EXPECT_EQ(KLog::Instance(), log);
    KFoundation::Shutdown();
    EXPECT_EQ(KLog::Instance(), nullptr);
    KFoundation::Shutdown();
}
