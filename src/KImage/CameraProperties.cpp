#include "KImage/CameraProperties.h"

#include "KImage/TableReader.h"
#include "resources/DataResources.h"

namespace {

void append(QList<CameraProperties::Entry> &entries, const QStringList &cells)
{
    constexpr int kCells = 3;
    if (cells.size() != kCells)
        return;
    CameraProperties::Entry entry;
    entry.brand = cells.at(0);
    entry.model = cells.at(1);
    bool ok = false;
    entry.scale = cells.at(2).trimmed().toDouble(&ok);
    if (ok)
        entries.append(entry);
}

} // namespace

CameraProperties::CameraProperties(const QString &fileName)
    : m_fileName(fileName)
{}

CameraProperties *CameraProperties::instance()
{
    static CameraProperties shared((initDataResources(), QStringLiteral("Data:cameras.txt")));
    return &shared;
}

QList<CameraProperties::Entry> CameraProperties::parse(QTextStream &stream)
{
    QList<Entry> entries;
    TableReader::read(stream, [&entries](const QStringList &cells) { append(entries, cells); });
    return entries;
}

void CameraProperties::load()
{
    if (m_loaded)
        return;
    TableReader::readFile(m_fileName,
                          [this](const QStringList &cells) { append(m_entries, cells); });
    m_loaded = true;
}

bool CameraProperties::getSensorScale(const QString &make, const QString &model, double &scale)
{
    const QMutexLocker lock(&m_mutex);
    load();
    for (const Entry &entry : qAsConst(m_entries)) {
        if (make.indexOf(entry.brand) >= 0 && model.indexOf(entry.model) >= 0) {
            scale = entry.scale;
            return true;
        }
    }
    return false;
}
