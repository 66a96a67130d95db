#include "crash/ReporterLauncher_linux.h"

#include "crash/KCrashReportProcess.h"

#include <QFile>

#include <csignal>
#include <cstring>

#include <sys/syscall.h>
#include <unistd.h>

namespace {

// Places in the command line, whose first element is the program.
constexpr int kDumpFolderArgument = 6;
constexpr int kMinidumpIdArgument = 7;
constexpr unsigned kFirstForeignDescriptor = 3;

/// Copies [@p begin, @p end) and its closing NUL, cut to what @p target holds.
template <std::size_t Size>
void copyText(std::array<char, Size> &target, const char *begin, const char *end)
{
    const std::size_t length = std::min<std::size_t>(end - begin, Size - 1);
    std::memcpy(target.data(), begin, length);
    target[length] = '\0';
}

} // namespace

ReporterLauncher::ReporterLauncher(const KCrashReportProcess &process)
    : m_program(QFile::encodeName(process.program()))
{
    m_texts.append(m_program);
    const QStringList arguments = process.arguments(QString(), QString());
    for (const QString &argument : arguments)
        m_texts.append(argument.toLocal8Bit());
    for (QByteArray &text : m_texts)
        m_arguments.push_back(text.data());
    m_arguments.push_back(nullptr);
    m_arguments[kDumpFolderArgument] = m_dumpFolder.data();
    m_arguments[kMinidumpIdArgument] = m_minidumpId.data();
}

void ReporterLauncher::start(const char *dumpFile)
{
    const char *const slash = std::strrchr(dumpFile, '/');
    const char *const name = slash ? slash + 1 : dumpFile;
    const char *const dot = std::strrchr(name, '.');
    copyText(m_dumpFolder, dumpFile, slash ? slash : dumpFile);
    copyText(m_minidumpId, name, dot ? dot : name + std::strlen(name));

    // The system's own call: the library's fork() takes locks that the crashed thread may hold.
    if (syscall(SYS_clone, SIGCHLD, nullptr, nullptr, nullptr, nullptr) != 0)
        return;
    // In the child, which has the crash's blocked signals and all descriptors.
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    setsid();
    syscall(SYS_close_range, kFirstForeignDescriptor, ~0U, 0U);
    execve(m_program.constData(), m_arguments.data(), environ);
    _exit(127);
}
