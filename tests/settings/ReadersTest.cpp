#include "settings/KSRFromXMLFile.h"
#include "settings/KSettingsReaders.h"

#include "settings/StoreFile.h"
#include "support/Files.h"

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

} // namespace

TEST(Readers, NullReaderStoreAndHash)
{
    KernelSettingsReader nothing;
    EXPECT_EQ(answers(nothing, "k"), kDefaults);

    QHash<QString, QVariant> hash{{"number", 3}, {"word", "abc"}};
    const test::StoreFile file;
    KSettingsManager store = file.open();
    for (auto entry = hash.cbegin(); entry != hash.cend(); ++entry)
        store.Set(entry.key(), entry.value());

    KSRFromQHash fromHash(&hash);
    KSRFromKSettingsManager fromStore(&store);
    EXPECT_EQ(answers(fromHash, "number"), "11 3 3 3");
    EXPECT_EQ(answers(fromHash, "word"), "11 0 0 abc");
    EXPECT_EQ(answers(fromHash, "absent"), kDefaults);
    EXPECT_EQ(answers(fromStore, "number"), "11 3 3 3");
    EXPECT_EQ(answers(fromStore, "word"), "11 7 7.5 abc");
    EXPECT_EQ(answers(fromStore, "absent"), kDefaults);
}

TEST(Readers, ChainLetsTheLastHolderWin)
{
    QHash<QString, QVariant> a{{"both", 1}, {"a", 1}};
    QHash<QString, QVariant> b{{"both", 2}};
    KSRFromKSRs::Readers readers(1);
    readers.push_back(std::make_unique<KSRFromQHash>(&a));
    readers.push_back(std::make_unique<KSRFromQHash>(&b));
    KSRFromKSRs chain(std::move(readers));
    EXPECT_EQ(answers(chain, "both"), "11 2 2 2");
    EXPECT_EQ(answers(chain, "a"), "11 1 1 1");
    EXPECT_EQ(answers(chain, "neither"), kDefaults);
    KSRFromKSRs empty({});
    EXPECT_EQ(answers(empty, "a"), kDefaults);
}

TEST(Readers, XmlTextsAndTheirConversion)
{
    // clang-format off
    const char *const rows[][3] = {
        {"<b>TRUE</b>", "b", "11 7 7.5 TRUE"}, {"<b>fAlse</b>", "b", "00 7 7.5 fAlse"},
        {"<b>2</b>", "b", "11 2 2 2"}, {"<b>0</b>", "b", "00 0 0 0"},
        {"<b>0x1</b>", "b", "10 7 7.5 0x1"}, {"<b>maybe</b>", "b", "10 7 7.5 maybe"},
        {"<b>2.5</b>", "b", "10 7 2.5 2.5"}, {"<b/>", "b", "10 7 7.5 "},
        {"<i><deep><g>1</g></deep></i>", "i/g", "11 1 1 1"},
        {"<x><a><b>1</b></a><c><b>2</b></c></x>", "x/b", "10 7 7.5 default"},
        {"<a><b>1</b></a>", "o/a/b", "10 7 7.5 default"}, {"<b>1</b>", "", "10 7 7.5 default"},
        {"<b>&lt;<![CDATA[&]]></b>", "b", "10 7 7.5 <&"},
        {"<p:b xmlns:p='u'>4</p:b>", "p:b", "11 4 4 4"}, {"<b>1</b><c>", "b", "10 7 7.5 default"}};
    // clang-format on
    for (const auto &[content, key, expected] : rows) {
        SCOPED_TRACE(content);
        KSRFromXMLFile reader = KSRFromXMLFile::FromBytes(
            QByteArray("<!DOCTYPE o SYSTEM 'o.dtd'><o>") + content + "</o>");
        EXPECT_EQ(answers(reader, key).toStdString(), expected);
    }
}

TEST(Readers, XmlFileIsLatin1UpToTheFirstNul)
{
    const QTemporaryDir folder;
    KSRFromXMLFile reader(test::writeFile(folder.filePath("options.xml"),
                                          QByteArray("<o><b>\xE9\r\nx</b></o>") + '\0' + "<rest"));
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
    // clang-format off
    const QByteArray rows[] = {
       
        "<o>" + QByteArray("<a>").repeated(100) + "<b>1</b>" + QByteArray("</a>").repeated(100) + "</o>",
        "<o>" + QByteArray("<a/>").repeated(many) + value,
        "<o>" + QByteArray("<!---->").repeated(many) + value,
        "<o>" + QByteArray("<?a?>").repeated(many) + value,
        "<o>" + QByteArray(KSRFromXMLFile::kMaxBytes, ' ') + value,
        "<!DOCTYPE o [<!ENTITY e 'x'>]><o>" + value,
        "<!DOCTYPE o [<!ELEMENT b " + QByteArray(KSRFromXMLFile::kMaxBytes - 99, '(') + "]><o>" + value};
    // clang-format on
    for (const QByteArray &row : rows) {
        SCOPED_TRACE(row.left(40).toStdString());
        KSRFromXMLFile reader = KSRFromXMLFile::FromBytes(row);
        EXPECT_EQ(answers(reader, "b"), kDefaults);
    }
}
