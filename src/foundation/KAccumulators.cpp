// Before any Qt header: both want the word "emit".
#include <tbb/concurrent_hash_map.h>

#include "foundation/KAccumulators.h"

#include "foundation/KSimpleChronometer.h"

#include <QHash>
#include <QStringList>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <mutex>

namespace {

/// Written by one thread under a read lock, so that a report may read at the same time.
struct Total
{
    mutable std::atomic<quint64> count{0};
    mutable std::atomic<quint64> ticks{0};

    void Add(quint64 elapsed) const
    {
        count.fetch_add(1, std::memory_order_relaxed);
        ticks.fetch_add(elapsed, std::memory_order_relaxed);
    }
};

struct KeyCompare
{
    static std::size_t hash(const QString &key) { return qHash(key); }
    static bool equal(const QString &left, const QString &right) { return left == right; }
};

using Totals = tbb::concurrent_hash_map<QString, Total, KeyCompare>;

struct Registry
{
    Totals totals;
    // A walk over the map is not safe while others look entries up, so a report goes by this list.
    std::mutex keysMutex;
    QStringList keys;
};

Registry &registry()
{
    static Registry instance;
    return instance;
}

QHash<QString, KSimpleChronometer> &underWay()
{
    thread_local QHash<QString, KSimpleChronometer> chronometers;
    return chronometers;
}

} // namespace

void KAccumulators::Begin(const QString &name)
{
    underWay()[name].Start();
}

void KAccumulators::End(const QString &name)
{
    auto measurement = underWay().find(name);
    if (measurement == underWay().end())
        return;
    const auto elapsed = quint64(measurement->Ticks());
    underWay().erase(measurement);

    const auto thread = quintptr(QThread::currentThreadId());
    const QString key = QStringLiteral("%1@%2").arg(name, QString::number(thread));
    Registry &all = registry();
    {
        Totals::const_accessor found;
        if (all.totals.find(found, key)) {
            found->second.Add(elapsed);
            return;
        }
    }
    {
        Totals::accessor added;
        all.totals.insert(added, key);
        added->second.Add(elapsed);
    }
    const std::lock_guard lock(all.keysMutex);
    all.keys.append(key);
}

QString KAccumulators::Report()
{
    Registry &all = registry();
    all.keysMutex.lock();
    QStringList keys = all.keys;
    all.keysMutex.unlock();
    std::sort(keys.begin(), keys.end());

    QString report;
    for (const QString &key : qAsConst(keys)) {
        Totals::const_accessor total;
        if (!all.totals.find(total, key))
            continue;
        const auto ticks = qint64(total->second.ticks.load(std::memory_order_relaxed));
        report +=
            QStringLiteral(" %1 : %2, %3\r\n")
                .arg(key, QString::number(total->second.count.load(std::memory_order_relaxed)),
                     KSimpleChronometer::ToText(ticks, KSimpleChronometer::Frequency()));
    }
    return report;
}
