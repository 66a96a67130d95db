#pragma once

// One real instance of the program with a home of its own, looked into and moved from outside
// through the probe plugin; owned by a test or a bench.

#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QVariantMap>

#include <functional>

namespace test {

class ProbedPlayer
{
public:
    ~ProbedPlayer();

    /// Starts the program and waits until its scene answers. @p environment holds the display;
    /// @p settings go into the store first, by their whole keys.
    [[nodiscard]] bool start(const QProcessEnvironment &environment, const QStringList &arguments,
                             const QVariantMap &settings = {});

    /// The answer to one command of the probe; empty when none came.
    QByteArray ask(const QByteArray &command);

    /// Camera, stereo mode and player, with the moment in milliseconds.
    QJsonObject state();

    /// Waits until the state satisfies @p condition.
    [[nodiscard]] bool waitFor(const std::function<bool(const QJsonObject &)> &condition);

    /// Lines that came without a question, such as those of "trace".
    QList<QByteArray> takeTrace();

    /// Ends the program from inside; its exit status, -1 after a crash.
    int quit();
    void kill();

    /// Folders as the program sees them.
    QString home() const { return m_home.path(); }
    QByteArray errors() { return m_process.readAllStandardError(); }

private:
    QTemporaryDir m_home;
    QProcess m_process;
    QList<QByteArray> m_trace;
};

} // namespace test
