#pragma once

// Reader over an XML file of options, a short-lived object of whoever reads them, on that thread.

#include "settings/KernelSettingsReader.h"

#include <QByteArray>

#include <memory>

class QDomDocument;

/// Each part of a key names an element anywhere below the one before it ("image/rawGamma" finds a
/// rawGamma at any depth of image); a name that occurs there twice makes the key unreadable.
/// What cannot be opened or parsed, or goes past the limits below, counts as an empty file.
class KSRFromXMLFile final : public KernelSettingsReader
{
public:
    /// Options are a handful of short elements. Past these limits the document tree would cost far
    /// more memory than the file, or its recursive walk more stack than a thread has.
    static constexpr int kMaxBytes = 256 * 1024;
    static constexpr int kMaxDepth = 64;
    static constexpr int kMaxNodes = 10000;

    explicit KSRFromXMLFile(const QString &filePath);
    /// The same from a file's bytes: Latin-1 text up to the first NUL.
    [[nodiscard]] static KSRFromXMLFile FromBytes(const QByteArray &bytes);
    KSRFromXMLFile(KSRFromXMLFile &&other) noexcept;
    ~KSRFromXMLFile() override;

    /// "true" and "false" in any case, otherwise a decimal number that is false when zero.
    bool GetBool(const QString &key, bool defaultValue) override;
    int GetInt(const QString &key, int defaultValue) override;
    double GetDouble(const QString &key, double defaultValue) override;
    QString GetString(const QString &key, QString defaultValue) override;

private:
    KSRFromXMLFile();
    void Parse(const QByteArray &bytes);
    bool FindText(const QString &key, QString *text) const;

    std::unique_ptr<QDomDocument> m_document;
};
