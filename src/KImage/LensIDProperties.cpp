#include "KImage/LensIDProperties.h"

#include "KImage/TableReader.h"
#include "resources/DataResources.h"

namespace {

/// False for a cell that is none of the types.
bool typeOf(const QString &cell, LensType &type)
{
    bool ok = false;
    const int number = cell.trimmed().toInt(&ok);
    if (!ok || number < int(LensType::Standard) || number > int(LensType::TiltShift))
        return false;
    type = LensType(number);
    return true;
}

void append(QList<LensIDProperties::Entry> &entries, const QStringList &cells)
{
    constexpr int kCellsWithoutType = 3;
    constexpr int kCells = 4;
    if (cells.size() != kCellsWithoutType && cells.size() != kCells)
        return;
    LensIDProperties::Entry entry;
    entry.identifier = cells.at(0);
    entry.brand = cells.at(1);
    entry.name = cells.at(2);
    if (cells.size() == kCellsWithoutType || typeOf(cells.at(3), entry.type))
        entries.append(entry);
}

} // namespace

LensIDProperties::LensIDProperties(const QString &fileName)
    : m_fileName(fileName)
{}

LensIDProperties *LensIDProperties::instance()
{
    static LensIDProperties shared((initDataResources(), QStringLiteral("Data:lensid.txt")));
    return &shared;
}

QList<LensIDProperties::Entry> LensIDProperties::parse(QTextStream &stream)
{
    QList<Entry> entries;
    TableReader::read(stream, [&entries](const QStringList &cells) { append(entries, cells); });
    return entries;
}

void LensIDProperties::load()
{
    if (m_loaded)
        return;
    TableReader::readFile(m_fileName,
                          [this](const QStringList &cells) { append(m_entries, cells); });
    m_loaded = true;
}

QList<LensIDProperties::Entry> LensIDProperties::getLens(const QString &lensId, const QString &make)
{
    QList<Entry> found;
    if (lensId.isEmpty())
        return found;
    const QMutexLocker lock(&m_mutex);
    load();
    for (const Entry &entry : qAsConst(m_entries)) {
        if (entry.identifier.indexOf(lensId, 0, Qt::CaseInsensitive) >= 0 &&
            entry.brand.indexOf(make, 0, Qt::CaseInsensitive) >= 0)
            found.append(entry);
    }
    return found;
}
