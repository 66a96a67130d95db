#pragma once

// A desktop of its own for one test: an X server without a screen, a window manager, and the means
// to drive a program there as a person would.

#include <QImage>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <string>

namespace test {

/// What the player printed, but for the line in which the crash handler names its folder.
std::string complaints(const QByteArray &output);

class Desktop
{
public:
    /// Starts the X server and waits for the window manager; valid() tells whether it runs.
    explicit Desktop(const QSize &size = {1280, 800});
    ~Desktop();
    Desktop(const Desktop &) = delete;
    Desktop &operator=(const Desktop &) = delete;

    bool valid() const { return !m_display.isEmpty(); }

    /// Environment of a program that runs on this desktop with the home @p home.
    QProcessEnvironment environment(const QString &home) const;

    /// Runs xdotool; returns what it printed, trimmed.
    QString xdotool(const QStringList &arguments) const;

    /// The visible window of the process, waiting for it; empty when none came.
    QString windowOf(const QProcess &program) const;

    /// What the screen shows now; kept below the build folder under @p name as well.
    QImage screenshot(const QString &name) const;

private:
    QString run(const QString &program, const QStringList &arguments) const;

    QTemporaryDir m_folder;
    QProcess m_server;
    QProcess m_windowManager;
    QString m_display;
};

} // namespace test
