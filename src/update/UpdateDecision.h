#pragma once

// What the update check decides, without network or store: versions, replies, addresses and when a
// check is due. Plain values and functions, used by KUpdateManager on any thread.

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QHash>
#include <QString>
#include <QUrl>

#include <array>
#include <optional>

/// Four dot-separated numbers, compared from the left.
struct ProductVersion
{
    std::array<quint32, 4> numbers{};

    /// Nothing unless @p text is exactly four decimal numbers that fit into 32 bits.
    [[nodiscard]] static std::optional<ProductVersion> parse(const QString &text);

    /// "2.3.1.400".
    QString text() const;

    /// What the last number tells of the maturity: empty for a final release (400 and above), else
    /// for example " Beta 12", the number within its hundred.
    QString suffix() const;

    /// Users of such a version hear of stable versions only.
    bool isStable() const;

    friend bool operator<(const ProductVersion &a, const ProductVersion &b)
    {
        return a.numbers < b.numbers;
    }
};

/// One channel's newest version.
struct ChannelVersion
{
    ProductVersion version;
    QDate date;
};

namespace UpdateDecision {

/// Whether a scheduled check is due at @p now: the last was more than seven days ago, or lies in
/// the future, as after a clock was put right.
[[nodiscard]] bool isDue(const QDateTime &last, const QDateTime &now);

/// Reads the first line of the form "2.3.2.410_2017-02-14". Nothing when there is none.
[[nodiscard]] std::optional<ChannelVersion> readVersionReply(const QByteArray &body);

/// A channel and its version.
struct Offer
{
    QString channel;
    ChannelVersion newest;
};

/// The highest version of @p channels; nothing when no channel has one.
[[nodiscard]] std::optional<Offer> highest(const QHash<QString, ChannelVersion> &channels);

/// The change log as rich text that loads nothing: trimmed, without pictures, scripts and styles.
QString safeChangeLog(const QByteArray &body);

} // namespace UpdateDecision

/// The addresses on one download server.
class UpdateAddresses
{
public:
    /// @p server ends with or without a slash.
    UpdateAddresses(const QString &server, const QString &productId, const QString &currentVersion);

    /// Where @p channel tells its version; @p userData goes along when it isn't empty.
    QUrl version(const QString &channel, const QString &userData) const;
    QUrl changeLog(const QString &channel) const;
    QUrl website() const;
    QUrl installer() const;
    QUrl history() const;

private:
    QUrl address(const QString &path, const QString &source) const;

    QString m_product;
    QString m_source;
};
