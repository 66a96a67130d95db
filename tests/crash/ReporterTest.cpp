#include "crash/CrashHandler.h"
#include "crash/KCrashReportProcess.h"
#include "crash/reporter/ReporterWindow.h"
#include "support/Files.h"
#include "support/Soon.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString textsOf(const QWidget &window)
{
    QStringList texts;
    for (const QLabel *label : window.findChildren<QLabel *>())
        texts.append(label->text());
    return texts.join('\n');
}

} // namespace

TEST(Reporter, TellsWhatHappenedByWords)
{
    const QTemporaryDir folder;
    const QString dump = test::writeFile(folder.filePath("id.dmp"));
    const std::tuple<const char *, bool, QString, const char *> rows[] = {
        {"id", false, dump, "Nothing has been sent"},
        {"gone", false, folder.path(), "could not be written"},
        {"", true, folder.path(), "Nothing has crashed"}};
    for (const auto &[id, manual, path, words] : rows) {
        KCrashReportProcess process(
            {folder.path(), "<b>Player</b>", "2.3.1.400", "fr_FR", "more", ""});
        process.setManualMode(manual);
        const QStringList arguments = process.arguments(manual ? "" : folder.path(), id);
        const auto report = CrashReport::fromArguments(arguments);
        ASSERT_TRUE(report);
        EXPECT_FALSE(CrashReport::fromArguments(arguments.mid(1)));
        ReporterWindow window(*report);
        const QString texts = textsOf(window);
        EXPECT_TRUE(texts.contains(words)) << texts.toStdString();
        EXPECT_TRUE(texts.contains("<b>Player</b>") && texts.contains("2.3.1.400") &&
                    texts.contains("more"));
        EXPECT_EQ(window.findChild<QLineEdit *>()->text(), path);
    }
}

TEST(Reporter, WorksByKeys)
{
    CrashReport report;
    report.dumpFolder = "/tmp/dumps";
    report.manualMode = true;
    ReporterWindow window(report);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(&window, Qt::Key_P, Qt::AltModifier);
    // A button that is pressed by its key clicks a moment later.
    EXPECT_SOON(QGuiApplication::clipboard()->text() == "/tmp/dumps");
    QTest::keyClick(&window, Qt::Key_Return);
    EXPECT_FALSE(window.isVisible());
    window.show();
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}

TEST(Reporter, OpensAtTheUsersWishWithoutADump)
{
    QFile reporter(QCoreApplication::applicationDirPath() + "/KCrashReporter_linux");
    const QTemporaryDir folder;
    const QString told = folder.filePath("told");
    test::writeFile(reporter.fileName(),
                    "#!/bin/sh\nprintf '%s|' \"$@\" > \"$1/part\"; mv \"$1/part\" \"$1/told\"\n");
    reporter.setPermissions(QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner);

    CrashHandler handler({folder.path(), "p", "1.2", "C", "", 0});
    handler.showReporter();
    EXPECT_SOON(QFile::exists(told));
    EXPECT_EQ(test::readFile(told), folder.path().toUtf8() + "|p||1.2|C||||1|");
    EXPECT_TRUE(reporter.remove());
}
