#pragma once

// A store of its own for one test, and its file as an earlier run or a fault would have left it.

#include "settings/KSettingsManager.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

namespace test {

class StoreFile
{
public:
    const QString application = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const QString path =
        QSettings(QSettings::UserScope, QStringLiteral("Orvex"), application).fileName();

    void write(const QByteArray &text) const
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    QByteArray text() const
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    KSettingsManager open() const
    {
        return KSettingsManager(QSettings::UserScope, QStringLiteral("Orvex"), application);
    }
};

} // namespace test
