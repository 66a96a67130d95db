#include "support/Desktop.h"
#include "support/Soon.h"

#include <QDir>

namespace test {

std::string complaints(const QByteArray &output)
{
    std::string rest;
    for (const QByteArray &line : output.split('\n')) {
        if (!line.isEmpty() && !line.startsWith("Crash dump path : "))
            rest += line.toStdString() + '\n';
    }
    return rest;
}

Desktop::Desktop(const QSize &size)
{
    m_server.setProcessChannelMode(QProcess::SeparateChannels);
    m_server.start(QStringLiteral("Xvfb"),
                   {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                    QStringLiteral("0"),
                    QStringLiteral("%1x%2x24").arg(size.width()).arg(size.height()),
                    QStringLiteral("-nolisten"), QStringLiteral("tcp"),
                    QStringLiteral("-noreset")}); // else a first client's end takes others along
    QByteArray number;
    while (!number.contains('\n') && m_server.waitForReadyRead(kPatienceMs))
        number += m_server.readAllStandardOutput();
    if (number.trimmed().isEmpty())
        return;
    m_display = QLatin1Char(':') + QString::fromLatin1(number.trimmed());

    m_windowManager.setProcessEnvironment(environment(m_folder.path()));
    m_windowManager.setProcessChannelMode(QProcess::MergedChannels);
    m_windowManager.start(QStringLiteral("openbox"), QStringList());
    // A window that comes before the manager has begun never gets the focus.
    EXPECT_SOON(run(QStringLiteral("xprop"),
                    {QStringLiteral("-root"), QStringLiteral("_NET_SUPPORTING_WM_CHECK")})
                    .contains(QLatin1String("window id")));
}

Desktop::~Desktop()
{
    for (QProcess *process : {&m_windowManager, &m_server}) {
        process->terminate();
        if (!process->waitForFinished(kPatienceMs))
            process->kill();
    }
}

QProcessEnvironment Desktop::environment(const QString &home) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), m_display);
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/.config"));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), home + QStringLiteral("/.local/share"));
    environment.insert(QStringLiteral("XDG_CACHE_HOME"), home + QStringLiteral("/.cache"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    return environment;
}

QString Desktop::run(const QString &program, const QStringList &arguments) const
{
    QProcess tool;
    tool.setProcessEnvironment(environment(m_folder.path()));
    tool.start(program, arguments);
    tool.waitForFinished(kPatienceMs);
    return QString::fromLatin1(tool.readAllStandardOutput()).trimmed();
}

QString Desktop::xdotool(const QStringList &arguments) const
{
    return run(QStringLiteral("xdotool"), arguments);
}

QString Desktop::windowOf(const QProcess &program) const
{
    QString ids;
    EXPECT_TRUE(soon([&] {
        ids = xdotool({QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                       QStringLiteral("--pid"), QString::number(program.processId())});
        return !ids.isEmpty() || program.state() != QProcess::Running;
    }));
    return ids.section(QLatin1Char('\n'), -1);
}

QImage Desktop::screenshot(const QString &name) const
{
    const QString folder = QStringLiteral(ORBILENS_BINARY_DIR "/screenshots/") +
                           qEnvironmentVariable("QSG_RENDER_LOOP", QStringLiteral("default"));
    QDir().mkpath(folder);
    const QString path = QStringLiteral("%1/%2.png").arg(folder, name);
    run(QStringLiteral("import"), {QStringLiteral("-window"), QStringLiteral("root"), path});
    return QImage(path);
}

} // namespace test
