#include "KImage/TableReader.h"

#include "foundation/KException.h"

#include <QCoreApplication>
#include <QFile>
#include <QTextStream>

namespace TableReader {

void read(QTextStream &stream, const std::function<void(const QStringList &)> &entry)
{
    QString line;
    while (stream.readLineInto(&line)) {
        const int comment = line.indexOf('#');
        if (comment >= 0)
            line.truncate(comment);
        if (!line.isEmpty())
            entry(line.split(';'));
    }
}

void readFile(const QString &fileName, const std::function<void(const QStringList &)> &entry)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        K_THROW(QCoreApplication::translate("KException", "Can't open %1").arg(fileName));
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    read(stream, entry);
    file.close();
}

} // namespace TableReader
