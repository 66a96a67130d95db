// The plug-in's face: hands each call to libvips or LibRaw.

#include "KImage/StillCodecs.h"
#include "KImage/codecs/RawCodec.h"
#include "KImage/codecs/VipsCodec.h"

#include <QObject>

class StillCodecsPlugin : public QObject, public StillCodecs
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID StillCodecs_iid)
    Q_INTERFACES(StillCodecs)

public:
    QStringList suffixes() override { return VipsCodec::suffixes(); }
    bool reads(const QString &path) override { return VipsCodec::reads(path); }
    ImageError describe(const QString &path, ImageInfo &info) override
    {
        return VipsCodec::describe(path, info);
    }
    ImageError load(const QString &path, const LoadRequest &request, PixelSink &sink) override
    {
        return VipsCodec::load(path, request, sink);
    }
    ImageError describeRaw(const QString &path, ImageInfo &info) override
    {
        return RawCodec::describe(path, info);
    }
    ImageError loadRaw(const QString &path, const LoadRequest &request, PixelSink &sink) override
    {
        return RawCodec::load(path, request, sink);
    }
    ImageError resize(const KBitmap &source, const QSize &size, PixelSink &sink) override
    {
        return VipsCodec::resize(source, size, sink);
    }
    ImageError encode(const KBitmap &bitmap, const QString &format, int quality,
                      QByteArray &bytes) override
    {
        return VipsCodec::encode(bitmap, format, quality, bytes);
    }
};

#include "StillCodecsPlugin.moc"
