#include "kontrols/thememanager/TintedImages.h"

#include <QColor>
#include <QImageReader>
#include <QPainter>
#include <QQmlFile>
#include <QUrl>

TintedImages::TintedImages()
    : QQuickImageProvider(QQuickImageProvider::Image)
{}

QString TintedImages::Name()
{
    return QStringLiteral("tinted");
}

QImage TintedImages::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const QColor colour(QLatin1Char('#') + id.section(QLatin1Char('/'), 0, 0));
    const QUrl url(QUrl::fromPercentEncoding(id.section(QLatin1Char('/'), 1).toUtf8()));
    QImageReader reader(QQmlFile::urlToLocalFileOrQrc(url));
    if (reader.size().isValid() && !requestedSize.isEmpty())
        reader.setScaledSize(reader.size().scaled(requestedSize, Qt::KeepAspectRatio));
    QImage image = reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (colour.isValid() && !image.isNull()) {
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
        painter.fillRect(image.rect(), colour);
    }
    if (size)
        *size = image.size();
    return image;
}
