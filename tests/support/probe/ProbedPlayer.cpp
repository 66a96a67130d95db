#include "support/probe/ProbedPlayer.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QSettings>
#include <QThread>

namespace test {

namespace {

constexpr int kPatienceMs = 60000;
constexpr int kLookMs = 20;
const char kState[] =
    "(function(camera, player) { return {"
    "yaw: camera.yaw, pitch: camera.pitch, roll: camera.roll, fov: camera.fov,"
    "stereoMode: kShaderCodeBuilder.stereoMode, mediaSource: String(player.mediaSource),"
    "playbackState: player.playbackState, position: player.position, duration: player.duration,"
    "milliseconds: Date.now() } })(kGlobalObject, k_mediaLoader.mediaPlayer)";

} // namespace

ProbedPlayer::~ProbedPlayer()
{
    if (m_process.state() != QProcess::NotRunning)
        kill();
}

bool ProbedPlayer::start(const QProcessEnvironment &environment, const QStringList &arguments,
                         const QVariantMap &settings)
{
    const QString store = m_home.filePath(QStringLiteral(".config/Orvex/Orbilens Player 2.3.conf"));
    {
        QSettings file(store, QSettings::IniFormat);
        for (auto value = settings.cbegin(); value != settings.cend(); ++value)
            file.setValue(value.key(), value.value());
    }
    QProcessEnvironment own = environment;
    own.insert(QStringLiteral("HOME"), m_home.path());
    own.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home.filePath(QStringLiteral(".config")));
    own.insert(QStringLiteral("XDG_DATA_HOME"), m_home.filePath(QStringLiteral(".local/share")));
    own.insert(QStringLiteral("XDG_CACHE_HOME"), m_home.filePath(QStringLiteral(".cache")));
    own.insert(QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("orbilensprobe"));
    own.insert(QStringLiteral("QT_PLUGIN_PATH"), QStringLiteral(ORBILENS_PLUGINS));
    m_process.setProcessEnvironment(own);
    m_process.start(QStringLiteral(ORBILENS_PLAYER), arguments);
    return m_process.waitForStarted(kPatienceMs) &&
           waitFor([](const QJsonObject &state) { return !state.isEmpty(); });
}

QByteArray ProbedPlayer::ask(const QByteArray &command)
{
    m_process.write(command + '\n');
    for (;;) {
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(kPatienceMs))
                return {};
        }
        const QByteArray line = m_process.readLine().trimmed();
        if (!line.startsWith("yaw "))
            return line;
        m_trace.append(line);
    }
}

QJsonObject ProbedPlayer::state()
{
    return QJsonDocument::fromJson(ask(kState)).object();
}

bool ProbedPlayer::waitFor(const std::function<bool(const QJsonObject &)> &condition)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < kPatienceMs && m_process.state() == QProcess::Running) {
        if (condition(state()))
            return true;
        QThread::msleep(kLookMs);
    }
    return false;
}

QList<QByteArray> ProbedPlayer::takeTrace()
{
    ask("null"); // what was said before its answer is here then
    QList<QByteArray> trace;
    trace.swap(m_trace);
    return trace;
}

int ProbedPlayer::quit()
{
    m_process.write("kGlobalObject.quit()\n");
    if (!m_process.waitForFinished(kPatienceMs))
        return -1;
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

void ProbedPlayer::kill()
{
    m_process.kill();
    m_process.waitForFinished(kPatienceMs);
}

} // namespace test
