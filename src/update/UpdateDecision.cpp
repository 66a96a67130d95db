#include "update/UpdateDecision.h"

#include "foundation/KSystemInfo.h"

#include <QRegularExpression>
#include <QStringList>
#include <QUrlQuery>

namespace {

constexpr qint64 kSecondsBetweenChecks = 604800;
constexpr quint32 kFinalRelease = 400;
constexpr quint32 kMaturityStep = 100;

QString encoded(const QString &text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text, "/"));
}

} // namespace

std::optional<ProductVersion> ProductVersion::parse(const QString &text)
{
    ProductVersion version;
    const QStringList parts = text.split(QLatin1Char('.'));
    if (parts.size() != int(version.numbers.size()))
        return std::nullopt;
    static const QRegularExpression digits(QStringLiteral("\\A[0-9]+\\z"));
    for (std::size_t i = 0; i < version.numbers.size(); ++i) {
        const QString &part = parts[int(i)];
        bool fits = false;
        version.numbers[i] = part.toUInt(&fits);
        if (!fits || !digits.match(part).hasMatch())
            return std::nullopt;
    }
    return version;
}

QString ProductVersion::text() const
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(numbers[0])
        .arg(numbers[1])
        .arg(numbers[2])
        .arg(numbers[3]);
}

QString ProductVersion::suffix() const
{
    const quint32 build = numbers.back();
    if (build >= kFinalRelease)
        return {};
    static const char *const formats[] = {" Internal %1", " Alpha %1", " Beta %1", " RC %1"};
    return QString::fromLatin1(formats[build / kMaturityStep]).arg(build % kMaturityStep);
}

bool ProductVersion::isStable() const
{
    return numbers.back() == kFinalRelease;
}

bool UpdateDecision::isDue(const QDateTime &last, const QDateTime &now)
{
    const qint64 seconds = last.secsTo(now);
    return !last.isValid() || seconds > kSecondsBetweenChecks || seconds < 0;
}

std::optional<ChannelVersion> UpdateDecision::readVersionReply(const QByteArray &body)
{
    static const QRegularExpression line(
        QStringLiteral("^([\\d]+\\.[\\d]+\\.[\\d]+\\.[\\d]+)_([\\d-]+)[ \\t\\r]*$"),
        QRegularExpression::MultilineOption);
    const QRegularExpressionMatch match = line.match(QString::fromUtf8(body));
    if (!match.hasMatch())
        return std::nullopt;
    const auto version = ProductVersion::parse(match.captured(1));
    const QDate date = QDate::fromString(match.captured(2), QStringLiteral("yyyy-MM-dd"));
    if (!version || !date.isValid())
        return std::nullopt;
    return ChannelVersion{*version, date};
}

std::optional<UpdateDecision::Offer>
UpdateDecision::highest(const QHash<QString, ChannelVersion> &channels)
{
    std::optional<Offer> best;
    for (auto channel = channels.cbegin(); channel != channels.cend(); ++channel) {
        if (!best || best->newest.version < channel->version)
            best = Offer{channel.key(), *channel};
    }
    return best;
}

QString UpdateDecision::safeChangeLog(const QByteArray &body)
{
    // Elements whose content is not text for people go with it; an unclosed one goes to the end.
    static const QRegularExpression wholeElements(
        QStringLiteral("<\\s*(script|style|object|iframe|svg|head)\\b.*?(<\\s*/\\s*\\1[^>]*>|\\z)"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    // Whatever else stays must be one of the plain tags below; an address survives on links only.
    static const QRegularExpression tag(QStringLiteral("<[^>]*(>|\\z)"));
    static const QRegularExpression plainTag(
        QStringLiteral("\\A<\\s*(/?)\\s*(a|b|i|u|s|p|br|ul|ol|li|h[1-6]|em|strong|code|pre|hr|"
                       "tt|sub|sup|blockquote|dl|dt|dd|table|tr|td|th)\\b"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression address(
        QStringLiteral("\\bhref\\s*=\\s*[\"']?(https?://[^\\s\"'<>]+)"),
        QRegularExpression::CaseInsensitiveOption);

    QString text = QString::fromUtf8(body);
    text.replace(wholeElements, QString());
    QString result;
    int end = 0;
    auto tags = tag.globalMatch(text);
    while (tags.hasNext()) {
        const QRegularExpressionMatch found = tags.next();
        result += text.midRef(end, found.capturedStart() - end);
        end = found.capturedEnd();
        const QRegularExpressionMatch plain = plainTag.match(found.captured());
        if (!plain.hasMatch())
            continue;
        const QString name = plain.captured(2).toLower();
        result += QLatin1Char('<') + plain.captured(1) + name;
        const QRegularExpressionMatch link = address.match(found.captured());
        if (name == QLatin1String("a") && link.hasMatch())
            result += QStringLiteral(" href=\"%1\"").arg(link.captured(1));
        result += QLatin1Char('>');
    }
    result += text.midRef(end);
    return result.trimmed();
}

UpdateAddresses::UpdateAddresses(const QString &server, const QString &productId,
                                 const QString &currentVersion)
    : m_product(server + (server.endsWith(QLatin1Char('/')) ? QString() : QStringLiteral("/")) +
                productId)
    , m_source(productId + QLatin1Char('/') + currentVersion)
{}

QUrl UpdateAddresses::address(const QString &path, const QString &source) const
{
    return QUrl(m_product + path + QLatin1String("?src=") + encoded(source));
}

QUrl UpdateAddresses::version(const QString &channel, const QString &userData) const
{
    QUrl url =
        address(QStringLiteral("/%1/version").arg(channel), m_source + QLatin1String("CHECK"));
    if (!userData.isEmpty())
        url.setQuery(url.query(QUrl::FullyEncoded) + QLatin1String("&data=") + encoded(userData));
    return url;
}

QUrl UpdateAddresses::changeLog(const QString &channel) const
{
    return address(QStringLiteral("/%1/changelog").arg(channel), m_source);
}

QUrl UpdateAddresses::website() const
{
    return address(QLatin1Char('/') + KSystemInfo::PlatformWord(), m_source);
}

QUrl UpdateAddresses::installer() const
{
    return website();
}

QUrl UpdateAddresses::history() const
{
    return address(QStringLiteral("/%1/history").arg(KSystemInfo::PlatformWord()), m_source);
}
