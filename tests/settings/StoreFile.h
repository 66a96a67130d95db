#pragma once

// A store of its own for one test, and its file as an earlier run or a fault would have left it.

#include "settings/KSettingsManager.h"
#include "support/Files.h"

#include <QUuid>

namespace test {

class StoreFile
{
public:
    const QString application = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const QString path =
        QSettings(QSettings::UserScope, QStringLiteral("Orvex"), application).fileName();

    void write(const QByteArray &text) const { writeFile(path, text); }
    QByteArray text() const { return readFile(path); }
    KSettingsManager open() const
    {
        return KSettingsManager(QSettings::UserScope, QStringLiteral("Orvex"), application);
    }
};

} // namespace test
