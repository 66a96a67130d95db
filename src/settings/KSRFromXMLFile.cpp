#include "settings/KSRFromXMLFile.h"

#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QXmlDefaultHandler>
#include <QXmlSimpleReader>

namespace {

/// Walks the text with the very parser that builds the document tree, keeps nothing, and stops at
/// the first thing that a tree must not be built from.
class TreeLimits final : public QXmlDefaultHandler
{
public:
    explicit TreeLimits(const QString &text)
        : m_text(text)
    {}

    /// A document type may be named but not declare anything: a few hundred bytes of entities
    /// expand to gigabytes, and nested content models use up the parser's stack.
    bool startDTD(const QString &, const QString &, const QString &) override
    {
        for (const char *declaration : {"<!ELEMENT", "<!ATTLIST", "<!ENTITY", "<!NOTATION"}) {
            if (m_text.contains(QLatin1String(declaration)))
                return false;
        }
        return true;
    }
    bool startElement(const QString &, const QString &, const QString &,
                      const QXmlAttributes &attributes) override
    {
        return ++m_depth <= KSRFromXMLFile::kMaxDepth && CountNodes(1 + attributes.count());
    }
    bool endElement(const QString &, const QString &, const QString &) override
    {
        --m_depth;
        return true;
    }
    bool characters(const QString &) override { return CountNodes(1); }
    bool startCDATA() override { return CountNodes(1); }
    bool comment(const QString &) override { return CountNodes(1); }
    bool processingInstruction(const QString &, const QString &) override { return CountNodes(1); }
    bool skippedEntity(const QString &) override { return CountNodes(1); }

private:
    bool CountNodes(int count)
    {
        m_nodes += count;
        return m_nodes <= KSRFromXMLFile::kMaxNodes;
    }

    const QString &m_text;
    int m_depth = 0;
    int m_nodes = 0;
};

bool isSafeToBuild(const QString &text)
{
    TreeLimits limits(text);
    QXmlSimpleReader parser;
    parser.setFeature(QStringLiteral("http://xml.org/sax/features/namespaces"), false);
    parser.setFeature(QStringLiteral("http://xml.org/sax/features/namespace-prefixes"), true);
    parser.setContentHandler(&limits);
    parser.setErrorHandler(&limits);
    parser.setLexicalHandler(&limits);
    QXmlInputSource source;
    source.setData(text);
    return parser.parse(source);
}

} // namespace

KSRFromXMLFile::KSRFromXMLFile()
    : m_document(std::make_unique<QDomDocument>())
{}

KSRFromXMLFile::KSRFromXMLFile(const QString &filePath)
    : KSRFromXMLFile()
{
    // A pipe or a device would block or never end.
    if (!QFileInfo(filePath).isFile())
        return;
    QFile file(filePath);
    if (file.open(QIODevice::ReadOnly | QIODevice::Text))
        Parse(file.read(kMaxBytes + 1));
}

KSRFromXMLFile KSRFromXMLFile::FromBytes(const QByteArray &bytes)
{
    KSRFromXMLFile reader;
    reader.Parse(bytes);
    return reader;
}

KSRFromXMLFile::KSRFromXMLFile(KSRFromXMLFile &&other) noexcept = default;

KSRFromXMLFile::~KSRFromXMLFile() = default;

void KSRFromXMLFile::Parse(const QByteArray &bytes)
{
    if (bytes.size() > kMaxBytes)
        return;
    const QString text = QString::fromLatin1(bytes.constData(),
                                             int(qstrnlen(bytes.constData(), uint(bytes.size()))));
    if (isSafeToBuild(text))
        m_document->setContent(text);
}

bool KSRFromXMLFile::FindText(const QString &key, QString *text) const
{
    QDomElement element = m_document->documentElement();
    const QStringList parts = key.split(QLatin1Char('/'));
    for (const QString &part : parts) {
        const QDomNodeList found = element.elementsByTagName(part);
        if (found.length() != 1)
            return false;
        element = found.at(0).toElement();
    }
    *text = element.text();
    return true;
}

bool KSRFromXMLFile::GetBool(const QString &key, bool defaultValue)
{
    QString text;
    if (!FindText(key, &text))
        return defaultValue;
    if (text.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0)
        return true;
    if (text.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0)
        return false;
    bool converts = false;
    const int value = text.toInt(&converts, 10);
    return converts ? value != 0 : defaultValue;
}

int KSRFromXMLFile::GetInt(const QString &key, int defaultValue)
{
    QString text;
    bool converts = false;
    const int value = FindText(key, &text) ? text.toInt(&converts, 10) : 0;
    return converts ? value : defaultValue;
}

double KSRFromXMLFile::GetDouble(const QString &key, double defaultValue)
{
    QString text;
    bool converts = false;
    const double value = FindText(key, &text) ? text.toDouble(&converts) : 0.0;
    return converts ? value : defaultValue;
}

QString KSRFromXMLFile::GetString(const QString &key, QString defaultValue)
{
    QString text;
    return FindText(key, &text) ? text : std::move(defaultValue);
}
