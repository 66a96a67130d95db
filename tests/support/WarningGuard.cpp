#include "support/WarningGuard.h"

#include <gtest/gtest.h>

#include <QMutex>

#include <cstdio>

namespace test {

namespace {
// The handler is process-wide and may run on any thread; guards do not nest.
QMutex mutex;
QList<QRegularExpression> allowed;
QStringList seen;
QtMessageHandler previous = nullptr;

/// Without a window manager the toolkit hands the focus to a new window itself, and the server
/// complains where that window was closed meanwhile.
bool isLateFocus(const QString &text)
{
    return text.startsWith("QXcbConnection: XCB error: 8 (BadMatch)") &&
           text.contains("(SetInputFocus)");
}

} // namespace

WarningGuard::WarningGuard(const QStringList &expected)
{
    QMutexLocker lock(&mutex);
    allowed.clear();
    for (const QString &pattern : expected)
        allowed.append(QRegularExpression(pattern));
    seen.clear();
    previous = qInstallMessageHandler(handle);
}

WarningGuard::~WarningGuard()
{
    qInstallMessageHandler(previous);
    const QStringList rest = unexpected();
    EXPECT_TRUE(rest.isEmpty()) << rest.join(QLatin1Char('\n')).toStdString();
}

QStringList WarningGuard::unexpected() const
{
    QMutexLocker lock(&mutex);
    return seen;
}

QStringList WarningGuard::take()
{
    QMutexLocker lock(&mutex);
    QStringList result;
    result.swap(seen);
    return result;
}

void WarningGuard::handle(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    std::fprintf(stderr, "%s\n", qPrintable(text));
    if (type == QtDebugMsg || type == QtInfoMsg || isLateFocus(text))
        return;
    QMutexLocker lock(&mutex);
    for (const QRegularExpression &pattern : qAsConst(allowed)) {
        if (pattern.match(text).hasMatch())
            return;
    }
    seen.append(text);
}

} // namespace test
