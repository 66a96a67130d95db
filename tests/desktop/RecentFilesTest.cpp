// The desktop's list of recent files: what is added, what is kept, what is left alone.

#include "desktop/RecentFiles.h"
#include "support/Files.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace {

const QByteArray kOthers = R"(<?xml version="1.0" encoding="UTF-8"?>
<xbel version="1.0"
      xmlns:bookmark="http://www.freedesktop.org/standards/desktop-bookmarks"
      xmlns:mime="http://www.freedesktop.org/standards/shared-mime-info">
  <bookmark href="file:///home/a/letter.odt" added="2020-01-02T03:04:05Z" modified="2020-01-02T03:04:05Z" visited="1969-12-31T23:59:59Z">
    <title>A &lt;letter&gt;</title>
    <info>
      <metadata owner="http://example.org"><secret kind="x"/></metadata>
      <metadata owner="http://freedesktop.org">
        <mime:mime-type type="application/vnd.oasis.opendocument.text"/>
        <bookmark:groups><bookmark:group>Office</bookmark:group></bookmark:groups>
        <bookmark:applications>
          <bookmark:application name="Writer" exec="&apos;writer %u&apos;" modified="2020-01-02T03:04:05Z" count="7"/>
        </bookmark:applications>
        <bookmark:private/>
      </metadata>
    </info>
  </bookmark>
</xbel>)";

RecentFile file(const QString &url, int second = 0)
{
    return {QUrl(url), QStringLiteral("video/mp4"),
            QDateTime(QDate(2026, 1, 2), QTime(3, 4, second), Qt::UTC)};
}

void expectAll(const QByteArray &document, const QByteArrayList &facts)
{
    for (const QByteArray &fact : facts)
        EXPECT_TRUE(document.contains(fact)) << fact.constData() << " in " << document.constData();
}

} // namespace

TEST(RecentFilesList, AddsOrRenewsAnEntryAndKeepsWhatOtherProgramsSay)
{
    const QByteArrayList others{"<title>A &lt;letter",
                                "<secret kind=\"x\"/>",
                                "<bookmark:group>Office</bookmark:group>",
                                "name=\"Writer\"",
                                "writer %u",
                                "count=\"7\"",
                                "added=\"2020-01-02T03:04:05Z\"",
                                "<bookmark:private/>"};
    const auto once = withRecentFile(kOthers, file("file:///films/a & b.mp4"));
    ASSERT_TRUE(once);
    expectAll(*once, others + QByteArrayList{"application/vnd.oasis.opendocument.text",
                                             "href=\"file:///home/a/letter.odt\"",
                                             "href=\"file:///films/a%20&amp;%20b.mp4\"",
                                             "added=\"2026-01-02T03:04:00.000Z\"",
                                             "visited=\"2026-01-02T03:04:00.000Z\"",
                                             "<mime:mime-type type=\"video/mp4\"/>",
                                             "name=\"Orbilens Player\"", "orbilens-player %u",
                                             "count=\"1\""});
    const auto twice = withRecentFile(*once, file("file:///films/a & b.mp4", 9));
    ASSERT_TRUE(twice);
    EXPECT_EQ(twice->count("<bookmark "), 2) << "renewed, not doubled";
    expectAll(*twice, {"count=\"2\"", "modified=\"2026-01-02T03:04:09.000Z\"",
                       "added=\"2026-01-02T03:04:00.000Z\""});

    const auto both = withRecentFile(kOthers, file("file:///home/a/letter.odt"));
    ASSERT_TRUE(both);
    expectAll(*both, others + QByteArrayList{"name=\"Orbilens Player\""});
    EXPECT_EQ(both->count("<bookmark "), 1);
}

TEST(RecentFilesList, LeavesAloneWhatItDoesNotUnderstand)
{
    for (const char *document : {"not xml", "<xbel version=\"1.0\"><bookmark", "<html/>", " "})
        EXPECT_FALSE(withRecentFile(document, file("file:///a.mp4"))) << document;
}

TEST(RecentFilesList, FollowsTheDesktopsWish)
{
    const std::tuple<const char *, const char *, const char *, bool> rows[] = {
        {"gtk-3.0/settings.ini", "Settings/gtk-recent-files-enabled", "0", false},
        {"gtk-4.0/settings.ini", "Settings/gtk-recent-files-enabled", "false", false},
        {"kdeglobals", "RecentDocuments/UseRecent", "false", false},
        {"kdeglobals", "RecentDocuments/UseRecent", "true", true},
        {"kdeglobals", "Other/UseRecent", "false", true}};
    for (const auto &[file, key, value, allowed] : rows) {
        QTemporaryDir folder;
        QDir(folder.path()).mkpath(QFileInfo(file).path());
        QSettings settings(folder.filePath(file), QSettings::IniFormat);
        settings.setValue(key, value);
        settings.sync();
        EXPECT_EQ(recentFilesAllowed(folder.path()), allowed) << file << value;
    }
}

TEST(RecentFilesList, HoldsLocalFilesThatExistAndIsForNobodyElsesEyes)
{
    const QString path = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                         QStringLiteral("/recently-used.xbel");
    QTemporaryDir folder;
    const QString still = test::writeFile(folder.filePath("still.png"));
    {
        RecentFiles recent;
        recent.remember({QUrl("https://example.org/film.mp4?token=1"),
                         QUrl::fromLocalFile(folder.filePath("gone.mp4")),
                         QUrl::fromLocalFile(folder.path()), QUrl::fromLocalFile(still)});
    }
    const QByteArray document = test::readFile(path);
    EXPECT_EQ(document.count("<bookmark "), 1) << document.toStdString();
    EXPECT_TRUE(document.contains("still.png"));
    EXPECT_TRUE(document.contains("image/png"));
    EXPECT_EQ(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther), 0);
}
