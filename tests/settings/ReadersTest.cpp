#include "settings/KSRFromXMLFile.h"
#include "settings/KSettingsReaders.h"

#include "settings/StoreFile.h"

#include <QTemporaryDir>

namespace {

/// What a reader answers with one key, in the order bool, int, double, text.
QString answers(KernelSettingsReader &reader, const QString &key)
{
    return QStringLiteral("%1%2 %3 %4 %5")
        .arg(int(reader.GetBool(key, true)))
        .arg(int(reader.GetBool(key, false)))
        .arg(reader.GetInt(key, 7))
        .arg(reader.GetDouble(key, 7.5))
        .arg(reader.GetString(key, "default"));
}

const QString kDefaults = QStringLiteral("10 7 7.5 default");

/// Leaves a mark when it dies.
class Mortal : public KernelSettingsReader
{
public:
    Mortal(QString &deaths, QChar name)
        : m_deaths(deaths)
        , m_name(name)
    {}
    ~Mortal() override { m_deaths += m_name; }

private:
    QString &m_deaths;
    QChar m_name;
};

} // namespace

TEST(Readers, NullReaderStoreAndHash)
{
    KernelSettingsReader nothing;
    EXPECT_EQ(answers(nothing, "k"), kDefaults);

    QHash<QString, QVariant> hash{{"number", 3}, {"word", "abc"}};
    const QHash<QString, QVariant> shared = hash;
    const test::StoreFile file;
    KSettingsManager store = file.open();
    for (auto entry = hash.cbegin(); entry != hash.cend(); ++entry)
        store.Set(entry.key(), entry.value());

    KSRFromQHash fromHash(&hash);
    KSRFromKSettingsManager fromStore(&store);
    const struct
    {
        const char *key;
        const char *fromHash;
        const char *fromStore;
    } rows[] = {{"number", "11 3 3 3", "11 3 3 3"},
                {"word", "11 0 0 abc", "11 7 7.5 abc"},
                {"absent", "10 7 7.5 default", "10 7 7.5 default"}};
    for (const auto &row : rows) {
        EXPECT_EQ(answers(fromHash, row.key), row.fromHash);
        EXPECT_EQ(answers(fromStore, row.key), row.fromStore);
    }
    EXPECT_EQ(shared.size(), 2);
}

TEST(Readers, ChainLetsTheLastHolderWin)
{
    QHash<QString, QVariant> a{{"both", 1}, {"a", 1}};
    QHash<QString, QVariant> b{{"both", 2}};
    QString deaths;
    {
        KSRFromKSRs::Readers readers;
        readers.push_back(std::make_unique<KSRFromQHash>(&a));
        readers.push_back(nullptr);
        readers.push_back(std::make_unique<Mortal>(deaths, 'x'));
        readers.push_back(std::make_unique<KSRFromQHash>(&b));
        readers.push_back(std::make_unique<Mortal>(deaths, 'y'));
        KSRFromKSRs chain(std::move(readers));
        EXPECT_EQ(answers(chain, "both"), "11 2 2 2");
        EXPECT_EQ(answers(chain, "a"), "11 1 1 1");
        EXPECT_EQ(answers(chain, "neither"), kDefaults);
    }
    EXPECT_EQ(deaths, "xy");
    KSRFromKSRs empty({});
    EXPECT_EQ(answers(empty, "a"), kDefaults);
}

TEST(Readers, XmlTextsAndTheirConversion)
{
    const struct
    {
        const char *xml;
        const char *key;
        const char *expected;
    } rows[] = {
        {"<o><b>TRUE</b></o>", "b", "11 7 7.5 TRUE"},
        {"<o><b>fAlse</b></o>", "b", "00 7 7.5 fAlse"},
        {"<o><b>2</b></o>", "b", "11 2 2 2"},
        {"<o><b>0</b></o>", "b", "00 0 0 0"},
        {"<o><b>maybe</b></o>", "b", "10 7 7.5 maybe"},
        {"<o><b>0x10</b></o>", "b", "10 7 7.5 0x10"},
        {"<o><b>2.5</b></o>", "b", "10 7 2.5 2.5"},
        {"<o><b/></o>", "b", "10 7 7.5 "},
        {"<o><i><deep><g>1</g></deep></i></o>", "i/g", "11 1 1 1"},
        {"<o><x><a><b>1</b></a><c><b>2</b></c></x></o>", "x/b", "10 7 7.5 default"},
        {"<o><a><b>1</b></a></o>", "o/a/b", "10 7 7.5 default"},
        {"<o><b>1</b></o>", "", "10 7 7.5 default"},
        {"<?xml version='1.0' encoding='UTF-8'?><!DOCTYPE o SYSTEM 'o.dtd'><o><b>3</b></o>", "b",
         "11 3 3 3"},
        {"<o><b>&lt;<![CDATA[&]]></b><!-- <!ENTITY --></o>", "b", "10 7 7.5 <&"},
        {"<o xmlns:p='u'><p:b>4</p:b></o>", "p:b", "11 4 4 4"},
        // Not parsed, so nothing of it counts.
        {"<o><b>1</b>", "b", "10 7 7.5 default"},
        {"", "b", "10 7 7.5 default"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.xml);
        KSRFromXMLFile reader = KSRFromXMLFile::FromBytes(row.xml);
        EXPECT_EQ(answers(reader, row.key).toStdString(), row.expected);
    }
}

TEST(Readers, XmlFileIsLatin1UpToTheFirstNul)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("options.xml"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("<o><b>\xE9\r\nx</b></o>\0<rest", 27));
    file.close();
    KSRFromXMLFile reader(file.fileName());
    EXPECT_EQ(reader.GetString("b", ""), QString::fromLatin1("\xE9\nx"));

    for (const QString &path : {folder.filePath("absent"), folder.path(), QString("/dev/zero")}) {
        KSRFromXMLFile none(path);
        EXPECT_EQ(answers(none, "b"), kDefaults);
    }
}

TEST(Readers, HostileXmlCountsAsEmpty)
{
    const int many = KSRFromXMLFile::kMaxBytes / 8;
    const QByteArray value("<b>1</b></o>");
    const QByteArray rows[] = {
        "<o>" + QByteArray("<a>").repeated(100) + "<b>1</b>" + QByteArray("</a>").repeated(100) +
            "</o>",
        "<o>" + QByteArray("<a/>").repeated(many) + value,
        "<o>" + QByteArray("<!---->").repeated(many) + value,
        "<o>" + QByteArray("<?a?>").repeated(many) + value,
        "<o>" + QByteArray(KSRFromXMLFile::kMaxBytes, ' ') + value,
        "<!DOCTYPE o [<!ENTITY e 'x'>]><o>" + value,
        "<!DOCTYPE o [<!ELEMENT b " + QByteArray(KSRFromXMLFile::kMaxBytes - 99, '(') + "]><o>" +
            value,
    };
    for (const QByteArray &row : rows) {
        SCOPED_TRACE(row.left(40).toStdString());
        KSRFromXMLFile reader = KSRFromXMLFile::FromBytes(row);
        EXPECT_EQ(answers(reader, "b"), kDefaults);
    }
}
