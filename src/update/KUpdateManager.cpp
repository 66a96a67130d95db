#include "update/KUpdateManager.h"

#include "foundation/KHttp.h"
#include "foundation/KSignalStack.h"
#include "settings/KSettingsManager.h"

#include <QDateTime>
#include <QNetworkReply>

namespace {

const char kLastCheckKey[] = "general/last_update_check";
const char kStable[] = "stable";
const char kBeta[] = "beta";

// Requests say themselves what they are for; the text of an address is the server's business.
constexpr auto kChannel = QNetworkRequest::Attribute(QNetworkRequest::User);
constexpr auto kIsChangeLog = QNetworkRequest::Attribute(QNetworkRequest::User + 1);

} // namespace

KUpdateManager::KUpdateManager(const QString &serverUrl, KSettingsManager *store, QObject *parent)
    : QThread(parent)
    , m_serverUrl(serverUrl)
    , m_store(store)
{
    connect(this, &KUpdateManager::UrlResolved, this, &KUpdateManager::OnUrlResolved);
}

KUpdateManager::~KUpdateManager()
{
    wait();
}

bool KUpdateManager::isEnabled() const
{
    return KHttp::isAllowed(QUrl(m_serverUrl));
}

bool KUpdateManager::isManualCheck() const
{
    return m_manualCheck;
}

void KUpdateManager::Start(const QString &productId, const QString &currentVersion,
                           const QString &userData)
{
    m_productId = productId;
    m_userData = userData;
    m_currentVersionText = currentVersion;
    m_currentVersion = ProductVersion::parse(currentVersion).value_or(ProductVersion());
    const QDateTime never(QDate(1970, 1, 1), QTime(0, 0));
    const QDateTime last = m_store->GetDateTime(QLatin1String(kLastCheckKey), never);
    if (!UpdateDecision::isDue(last, QDateTime::currentDateTime()) || m_checking)
        return;
    m_manualCheck = false;
    begin();
}

void KUpdateManager::CheckForNewVersion()
{
    m_manualCheck = true;
    if (!m_checking)
        begin();
}

void KUpdateManager::begin()
{
    if (!isEnabled() || isRunning())
        return;
    m_checking = true;
    start(QThread::InheritPriority);
}

void KUpdateManager::run()
{
    const KSignalStack signalStack;
    if (!m_network) {
        // The first manager of a program takes its time to come up.
        m_network = std::make_unique<QNetworkAccessManager>();
        m_network->moveToThread(thread());
    }
    emit UrlResolved();
}

void KUpdateManager::OnUrlResolved()
{
    connect(m_network.get(), &QNetworkAccessManager::finished, this,
            &KUpdateManager::OnNetReplyFinished, Qt::UniqueConnection);
    m_channels.clear();
    requestVersion(QLatin1String(kStable));
    if (!m_currentVersion.isStable())
        requestVersion(QLatin1String(kBeta));
}

void KUpdateManager::requestVersion(const QString &channel)
{
    ++m_pendingReplies;
    const UpdateAddresses addresses(m_serverUrl, m_productId, m_currentVersionText);
    QNetworkRequest request = KHttp::request(addresses.version(channel, m_userData));
    request.setAttribute(kChannel, channel);
    KHttp::limitBody(m_network->get(request), kMaxVersionBytes);
    if (m_userData.isEmpty())
        return;
    m_userData.clear();
    emit ClearUserData();
}

void KUpdateManager::requestChangeLog(const QString &channel)
{
    const UpdateAddresses addresses(m_serverUrl, m_productId, m_currentVersionText);
    QNetworkRequest request = KHttp::request(addresses.changeLog(channel));
    request.setAttribute(kIsChangeLog, true);
    KHttp::limitBody(m_network->get(request), kMaxChangeLogBytes);
}

void KUpdateManager::OnNetReplyFinished(QNetworkReply *reply)
{
    reply->deleteLater();
    if (!reply->request().attribute(kIsChangeLog).toBool()) {
        --m_pendingReplies;
        readVersion(reply, reply->request().attribute(kChannel).toString());
        if (m_pendingReplies == 0)
            decide();
        return;
    }
    m_checking = false;
    if (!KHttp::succeeded(*reply))
        return;
    m_pendingResults.changeLog = UpdateDecision::safeChangeLog(reply->readAll());
    {
        const QMutexLocker lock(&m_mutex);
        m_results = m_pendingResults;
    }
    emit NewVersionAvailable();
}

void KUpdateManager::readVersion(QNetworkReply *reply, const QString &channel)
{
    if (!KHttp::succeeded(*reply))
        return;
    const auto newest = UpdateDecision::readVersionReply(reply->readAll());
    if (!newest) {
        m_channels.remove(channel);
        return;
    }
    m_store->Set(QLatin1String(kLastCheckKey), QDateTime::currentDateTime());
    m_channels.insert(channel, *newest);
}

void KUpdateManager::decide()
{
    const auto offer = UpdateDecision::highest(m_channels);
    if (!offer || !(m_currentVersion < offer->newest.version)) {
        m_checking = false;
        if (offer)
            emit AlreadyLatestVersion();
        return;
    }
    const UpdateAddresses addresses(m_serverUrl, m_productId, m_currentVersionText);
    m_pendingResults.version = offer->newest.version.text() + offer->newest.version.suffix();
    m_pendingResults.date = offer->newest.date;
    m_pendingResults.urlWebsite = addresses.website().toString(QUrl::FullyEncoded);
    m_pendingResults.urlInstaller = addresses.installer().toString(QUrl::FullyEncoded);
    m_pendingResults.urlHistory = addresses.history().toString(QUrl::FullyEncoded);
    requestChangeLog(offer->channel);
}

KUpdateManager::Results KUpdateManager::results() const
{
    const QMutexLocker lock(&m_mutex);
    return m_results;
}

QString KUpdateManager::newVersion() const
{
    return results().version;
}

QDate KUpdateManager::newVersionDate() const
{
    return results().date;
}

QString KUpdateManager::newChangeLog() const
{
    return results().changeLog;
}

QString KUpdateManager::urlWebsite() const
{
    return results().urlWebsite;
}

QString KUpdateManager::urlHistory() const
{
    return results().urlHistory;
}

QString KUpdateManager::urlInstaller() const
{
    return results().urlInstaller;
}
