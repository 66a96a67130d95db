#include "foundation/KLog.h"

#include <QApplication>
#include <QMessageBox>

#include <cstdarg>
#include <memory>

namespace {

std::unique_ptr<KLog> theInstance;

/// The box belongs to the GUI thread; other threads leave it there and go on. Programs without
/// windows have nowhere to show it.
void showOpenFailure(const QString &fileName)
{
    auto *application = qobject_cast<QApplication *>(QCoreApplication::instance());
    if (!application)
        return;
    QMetaObject::invokeMethod(application, [fileName] {
        QMessageBox::critical(nullptr, KLog::tr("Critical error"),
                              KLog::tr("Can not open file %1").arg(fileName));
    });
}

} // namespace

KLog::KLog() = default;

KLog::~KLog()
{
    Close();
}

KLog *KLog::Instance()
{
    return theInstance.get();
}

void KLog::CreateInstance()
{
    if (!theInstance)
        theInstance = std::make_unique<KLog>();
}

void KLog::DestroyInstance()
{
    theInstance.reset();
}

void KLog::Log(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const QString text = QString::vasprintf(format, arguments);
    va_end(arguments);
    Log(text);
}

void KLog::Log(const QString &text)
{
    QMutexLocker lock(&m_mutex);
    Write(text);
    emit Logged(text);
}

void KLog::Log(int id, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const QString text = QString::vasprintf(format, arguments);
    va_end(arguments);
    Log(id, text);
}

void KLog::Log(int id, const QString &text)
{
    QMutexLocker lock(&m_mutex);
    Write(text);
    emit Logged(id, text);
}

void KLog::Write(const QString &text)
{
    if (!m_fileLogging)
        return;
    for (int i = 0; i < m_indent; ++i)
        m_stream << " | ";
    m_stream << text << "\r\n";
    m_stream.flush();
}

void KLog::Open(const QString &fileName)
{
    QMutexLocker lock(&m_mutex);
    m_fileLogging = false;
    m_file.close();
    m_file.setFileName(fileName);
    // Not in text mode, which would double the carriage returns where lines end with them.
    if (m_file.open(QIODevice::WriteOnly)) {
        m_stream.setDevice(&m_file);
        m_stream.setCodec("UTF-8");
        m_fileLogging = true;
        return;
    }
    // The box runs an event loop, in which others log.
    lock.unlock();
    showOpenFailure(fileName);
}

void KLog::Close()
{
    QMutexLocker lock(&m_mutex);
    m_fileLogging = false;
    m_file.close();
}

void KLog::SetIndent(int indent)
{
    QMutexLocker lock(&m_mutex);
    m_indent = indent;
}
