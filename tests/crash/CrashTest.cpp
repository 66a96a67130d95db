// A real run of the program is made to crash; what it leaves is read by Breakpad's own walker.

#include "support/Files.h"
#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>

#include <csignal>

#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr int kPatience = 30000;

/// A copy of the program in a folder of its own, beside a reporter that writes its arguments down.
class Player
{
public:
    explicit Player(const QString &fault, const QStringList &arguments = {})
    {
        EXPECT_TRUE(QFile::copy(PLAYER, folder.filePath("orbilens-player")));
        const QString reporter = test::writeFile(folder.filePath("KCrashReporter_linux"),
                                                 "#!/bin/sh\n"
                                                 "printf '%s\\n' \"$PWD\" \"$@\" > told.part\n"
                                                 "mv told.part told\n");
        QFile::setPermissions(reporter, QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner);
        EXPECT_TRUE(QDir(folder.path()).mkdir("tmp"));

        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TMPDIR", dumps());
        environment.insert("HOME", folder.path());
        environment.insert("XDG_CONFIG_HOME", folder.filePath("config"));
        environment.remove("LC_ALL");
        environment.insert("LANG", "C.UTF-8");
        environment.insert("LC_MESSAGES", "de_DE.UTF-8"); // not what the reporter is to be told
        environment.insert("TEST_FAULT", fault);
        environment.insert("LD_PRELOAD", CRASHER);
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(folder.filePath("orbilens-player"), arguments);
    }

    ~Player()
    {
        if (process.state() == QProcess::NotRunning)
            return;
        process.kill();
        process.waitForFinished();
    }

    QString dumps() const { return folder.filePath("tmp"); }
    QStringList dumpFiles() const { return QDir(dumps()).entryList({"*.dmp"}); }

    /// Waits until the handler is installed.
    bool isUp()
    {
        while (!output.contains("Crash dump path : " + dumps().toLocal8Bit())) {
            if (!process.waitForReadyRead(kPatience))
                return false;
            output += process.readAll();
        }
        return true;
    }

    /// The file that the reporter wrote, line by line; empty when there is none in time.
    QStringList told(int patience = kPatience) const
    {
        QElapsedTimer timer;
        timer.start();
        QFile file(folder.filePath("told"));
        while (!file.exists() && timer.elapsed() < patience)
            QThread::msleep(20);
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split('\n');
    }

    QTemporaryDir folder;
    QProcess process;
    QByteArray output;
};

QString walk(const QString &dump)
{
    QProcess walker;
    walker.start(STACKWALK, QStringList(dump));
    EXPECT_TRUE(walker.waitForFinished(kPatience));
    return QString::fromUtf8(walker.readAllStandardOutput());
}

} // namespace

TEST(Crash, LeavesADumpThatNamesTheFaultAndStartsTheReporter)
{
    // The function on the crashed thread.
    const std::tuple<const char *, int, const char *, bool, const char *, QStringList> rows[] = {
        {"null", SIGUSR1, "SIGSEGV", true, "orbilens_test_crasher", {}},
        {"null", SIGUSR2, "SIGSEGV", false, "orbilens_test_crasher", {}},
        {"abort", SIGUSR1, "SIGABRT", true, "libc", {}},
        {"overflow", SIGUSR1, "SIGSEGV", true, "orbilens_test_crasher", {}},
        // Not at a signal but when the thread that polls for frames gets there.
        {"overflow of its own", 0, "SIGSEGV", false, "orbilens_test_crasher", {"--adobeplugin"}},
    };
    for (const auto &[fault, signal, reason, onMain, function, arguments] : rows) {
        SCOPED_TRACE(std::string(fault) + (onMain ? " on main" : " on a worker"));
        Player player(fault, arguments);
        ASSERT_TRUE(player.isUp()) << player.output.constData();
        const pid_t pid = pid_t(player.process.processId());
        // The worker waits for its signal as any thread of the process may take it.
        ASSERT_EQ(onMain ? syscall(SYS_tgkill, pid, pid, signal) : kill(pid, signal), 0);
        ASSERT_TRUE(player.process.waitForFinished(kPatience));
        EXPECT_EQ(player.process.exitStatus(), QProcess::CrashExit);

        const QStringList dumps = player.dumpFiles();
        ASSERT_EQ(dumps.size(), 1);
        EXPECT_EQ(
            player.told(),
            QStringList({player.folder.path(), player.dumps(), "Orbilens Player", "", "2.3.1.400",
                         "C", player.dumps(), QString(dumps[0]).chopped(4), "", "0", ""}));
        const QString report = walk(player.dumps() + '/' + dumps[0]);
        EXPECT_TRUE(report.contains(QLatin1String("Crash reason:  ") + reason))
            << report.left(600).toStdString();
        const auto crashed =
            QRegularExpression("Thread (\\d+) \\(crashed\\)[^\\n]*\\n 0  ([^ ]+)").match(report);
        ASSERT_TRUE(crashed.hasMatch());
        EXPECT_EQ(crashed.captured(1) == "0", onMain);
        EXPECT_TRUE(crashed.captured(2).contains(function)) << crashed.captured(2).toStdString();
    }
}

TEST(Crash, ACleanExitLeavesNothing)
{
    Player player("quit");
    ASSERT_TRUE(player.isUp()) << player.output.constData();
    ASSERT_EQ(kill(pid_t(player.process.processId()), SIGUSR2), 0);
    ASSERT_TRUE(player.process.waitForFinished(kPatience));
    EXPECT_EQ(player.process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(player.process.exitCode(), 0);
    EXPECT_EQ(player.dumpFiles(), QStringList());
    EXPECT_EQ(player.told(500), QStringList());
}
