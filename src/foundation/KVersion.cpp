#include "foundation/KVersion.h"

namespace KVersion {

QString productName()
{
    return QStringLiteral("Orbilens Player");
}

QString makerName()
{
    return QStringLiteral("Orvex");
}

QString fullText()
{
    return QStringLiteral("2.3.1.400");
}

QString majorMinor(const QString &versionText)
{
    return versionText.section(QLatin1Char('.'), 0, 1);
}

QString applicationName()
{
    return productName() + QLatin1Char(' ') + majorMinor(fullText());
}

} // namespace KVersion
