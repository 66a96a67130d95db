#pragma once

// The process-wide log: lines go out by signal and, once a file was opened, to that file too.
// KFoundation makes and ends it; any thread may log, whole lines are ordered by a mutex.

#include <QFile>
#include <QMutex>
#include <QObject>
#include <QString>
#include <QTextStream>

class KLog : public QObject
{
    Q_OBJECT

public:
    KLog();
    ~KLog() override;

    /// Null before KFoundation::Initialize() and after KFoundation::Shutdown().
    static KLog *Instance();
    static void CreateInstance();
    static void DestroyInstance();

    /// Formats as vsprintf does, strings being UTF-8.
    void Log(const char *format, ...) Q_ATTRIBUTE_FORMAT_PRINTF(2, 3);
    void Log(const QString &text);
    /// The same with a number that tells the receivers what the line belongs to.
    void Log(int id, const char *format, ...) Q_ATTRIBUTE_FORMAT_PRINTF(3, 4);
    void Log(int id, const QString &text);

    /// From now on lines also go to @p fileName, which is written anew: UTF-8, each line ended by
    /// "\r\n" and flushed. When it cannot be opened a message box says so and logging goes on
    /// without a file.
    void Open(const QString &fileName);
    void Close();

    /// Lines in the file begin with this many " | "; none for a negative @p indent.
    void SetIndent(int indent);

signals:
    // Both are emitted with the mutex held, so a slot connected directly must not log.
    void Logged(int id, QString log);
    void Logged(QString log);

private:
    void Write(const QString &text);

    QMutex m_mutex;
    QFile m_file;
    QTextStream m_stream;
    bool m_fileLogging = false;
    int m_indent = 0;
};
