#include "KImage/PanoramaXmp.h"

#include <QDomDocument>
#include <QTextStream>

namespace PanoramaXmp {

QByteArray packet(const QSize &size, const QString &stitchingSoftware, int sourcePhotos)
{
    QDomDocument document;
    QDomElement root = document.createElement(QStringLiteral("x:xmpmeta"));
    root.setAttribute(QStringLiteral("xmlns:x"), QStringLiteral("adobe:ns:meta/"));
    root.setAttribute(QStringLiteral("x:xmptk"), QStringLiteral("Adobe XMP Core 5.1.0-jc003"));
    document.appendChild(root);
    QDomElement rdf = document.createElement(QStringLiteral("rdf:RDF"));
    rdf.setAttribute(QStringLiteral("xmlns:rdf"),
                     QStringLiteral("http://www.w3.org/1999/02/22-rdf-syntax-ns#"));
    root.appendChild(rdf);
    QDomElement description = document.createElement(QStringLiteral("rdf:Description"));
    description.setAttribute(QStringLiteral("rdf:about"), QString());
    description.setAttribute(QStringLiteral("xmlns:GPano"),
                             QStringLiteral("http://ns.google.com/photos/1.0/panorama/"));
    rdf.appendChild(description);

    const QString width = QString::number(size.width());
    const QString height = QString::number(size.height());
    const struct
    {
        const char *name;
        QString value;
    } properties[] = {
        {"GPano:StitchingSoftware", stitchingSoftware},
        {"GPano:UsePanoramaViewer", QStringLiteral("True")},
        {"GPano:ProjectionType", QStringLiteral("equirectangular")},
        {"GPano:CroppedAreaImageHeightPixels", height},
        {"GPano:CroppedAreaImageWidthPixels", width},
        {"GPano:FullPanoHeightPixels", height},
        {"GPano:FullPanoWidthPixels", width},
        {"GPano:CroppedAreaLeftPixels", QStringLiteral("0")},
        {"GPano:CroppedAreaTopPixels", QStringLiteral("0")},
        {"GPano:SourcePhotosCount", QString::number(sourcePhotos)},
    };
    // Children, since the order of attributes is not kept.
    for (const auto &property : properties) {
        QDomElement element = document.createElement(QLatin1String(property.name));
        element.appendChild(document.createTextNode(property.value));
        description.appendChild(element);
    }

    QByteArray bytes;
    QTextStream stream(&bytes);
    stream.setCodec("UTF-8");
    document.save(stream, 1);
    stream.flush();
    return bytes;
}

} // namespace PanoramaXmp
