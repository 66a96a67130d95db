#pragma once

// One picture file: described on construction, its pixels loaded on demand and released with the
// last unlock. Owned by whoever opens the file; one thread at a time uses it.

#include "KImage/ImageLoader.h"
#include "KImage/ImageMetadata.h"
#include "KImage/KBitmap.h"
#include "KImage/KIImageDef.h"

#include <QHash>
#include <QObject>

class ImageDef : public QObject, public KIImageDef
{
    Q_OBJECT

public:
    /// The working size is the file's fitted into @p limit, the full one for an empty limit.
    explicit ImageDef(const QString &path, const ImageOptions &options = {},
                      const QSize &limit = QSize(), QObject *parent = nullptr);
    ~ImageDef() override;

    void DumpExif(QString &text) const override;
    QString getFilePath() const override;
    QString getFileName() const override;
    QString getDirectory() const override;
    int getWidth() const override;
    int getHeight() const override;
    int getFullWidth() const override;
    int getFullHeight() const override;
    bool isValid() const override;
    double getYaw() const override;
    double getPitch() const override;
    const ImageMetadata &getMetadata() const override;
    double getFocal35() const override;
    double getSensorScale() const override;
    QString getLensModel() const override;
    const KBitmap &Lock() override;
    void Unlock() override;
    const KBitmap &LockFullSize() override;
    void UnlockFullSize() override;

    QString getFormatName() const { return m_info.formatName; }
    /// Description and value by "flag_tag".
    const QHash<QString, QString> &dumpedTags() const { return m_dumpedTags; }

private:
    struct Locked
    {
        KBitmap bitmap;
        int count = 0;
    };

    void readExif();
    const KBitmap &LockAs(const char *label, Locked &locked, const LoadRequest &request);
    static void Release(Locked &locked);

    QString m_path;
    ImageOptions m_options;
    QSize m_workingSize;
    ImageInfo m_info;
    bool m_valid = false;
    bool m_exifFailed = false;
    ExifEntries m_entries;
    ImageMetadata m_metadata;
    QHash<QString, QString> m_dumpedTags;
    Locked m_working;
    Locked m_full;
};
