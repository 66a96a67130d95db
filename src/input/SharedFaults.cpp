#include "input/SharedFaults.h"

#include <QCoreApplication>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

QString faultText(SharedFault fault)
{
    const char *text = "";
    switch (fault) {
    case SharedFault::BlockTooSmall:
        text = QT_TRANSLATE_NOOP("SharedFaults", "the block is smaller than its header");
        break;
    case SharedFault::WrongVersion:
        text = QT_TRANSLATE_NOOP("SharedFaults", "the block has another version");
        break;
    case SharedFault::SlotsOutside:
        text = QT_TRANSLATE_NOOP("SharedFaults", "the slots do not lie inside the block");
        break;
    case SharedFault::FrameOutside:
        text = QT_TRANSLATE_NOOP("SharedFaults", "a frame does not lie inside the block");
        break;
    case SharedFault::FrameImpossible:
        text = QT_TRANSLATE_NOOP("SharedFaults", "a frame has an impossible size");
        break;
    case SharedFault::FrameCutShort:
        text = QT_TRANSLATE_NOOP("SharedFaults", "the block shrank during a copy");
        break;
    case SharedFault::NoTexture:
        text = QT_TRANSLATE_NOOP("SharedFaults", "there is no memory for the picture");
        break;
    case SharedFault::Count:
        break;
    }
    return QCoreApplication::translate("SharedFaults", text);
}

} // namespace

void SharedFaults::add(SharedFault fault)
{
    int &count = m_counts[std::size_t(fault)];
    if (count == 0)
        m_news = true;
    if (count < std::numeric_limits<int>::max())
        ++count;
}

int SharedFaults::total() const
{
    qint64 total = 0;
    for (const int count : m_counts)
        total += count;
    return int(std::min<qint64>(total, std::numeric_limits<int>::max()));
}

bool SharedFaults::takeNews()
{
    return std::exchange(m_news, false);
}

QString SharedFaults::text() const
{
    QString text;
    for (std::size_t i = 0; i < m_counts.size(); ++i) {
        if (m_counts[i] > 0)
            text += QCoreApplication::translate("SharedFaults", "Shared memory: %1 (%2 times).\n")
                        .arg(faultText(SharedFault(i)))
                        .arg(m_counts[i]);
    }
    return text;
}
