#pragma once

// Fails the running test when Qt, QML or GL logs a warning that the test did not announce.

#include <QRegularExpression>
#include <QStringList>
#include <QtGlobal>

namespace test {

class WarningGuard
{
public:
    /// @p expected lists patterns of warnings that may appear (each any number of times).
    explicit WarningGuard(const QStringList &expected = {});
    ~WarningGuard();
    WarningGuard(const WarningGuard &) = delete;
    WarningGuard &operator=(const WarningGuard &) = delete;

    /// Warnings and worse seen so far that no pattern allows.
    QStringList unexpected() const;

    /// Forgets what was seen, for tests that look at the messages themselves.
    QStringList take();

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text);
};

} // namespace test
