#include "common/ui/ImageList.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

namespace {
// Grey keeps the lightness and the alpha of each pixel and lifts it a little, so the
// resting toolbar reads as quiet but legible next to the colour look under the mouse.
QImage ToGrey(QImage image) {
    image = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = line[x];
            const int grey = qMin(255, qGray(pixel) * 3 / 4 + 40);
            line[x] = qRgba(grey, grey, grey, qAlpha(pixel));
        }
    }
    return image;
}
} // namespace

ImageList::ImageList(int size, Tone tone) : mSize(size), mTone(tone) {}

void ImageList::Add(const QString& key) {
    Add(key, ResourceFor(key));
}

void ImageList::Add(const QStringList& keys) {
    for (const QString& key : keys)
        Add(key);
}

void ImageList::Add(const QString& key, const QString& fileName) {
    if (!mPictures.contains(key))
        mKeys.append(key);
    mPictures.insert(key, Render(fileName, mSize, mTone));
}

void ImageList::Clear() {
    mKeys.clear();
    mPictures.clear();
}

QPixmap ImageList::Picture(const QString& key) const {
    return mPictures.value(key);
}

QIcon ImageList::Icon(const QString& key) const {
    const QPixmap picture = Picture(key);
    return picture.isNull() ? QIcon() : QIcon(picture);
}

QString ImageList::ResourceFor(const QString& key) {
    QString file = key.toLower();
    file.remove(QLatin1Char(' '));
    return QStringLiteral(":/icons/") + file + QStringLiteral(".svg");
}

QPixmap ImageList::Render(const QString& fileName, int size, Tone tone) {
    const qreal ratio = qGuiApp ? qGuiApp->devicePixelRatio() : 1.0;
    const int pixels = qRound(size * ratio);
    QImage image;
    if (fileName.endsWith(QStringLiteral(".svg"), Qt::CaseInsensitive)) {
        QSvgRenderer renderer(fileName);
        if (!renderer.isValid())
            return {};
        image = QImage(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        renderer.render(&painter, QRectF(0, 0, pixels, pixels));
    } else {
        image = QImage(fileName);
        if (image.isNull())
            return {};
        image = image.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    if (tone == Tone::Grey)
        image = ToGrey(std::move(image));
    QPixmap picture = QPixmap::fromImage(image);
    picture.setDevicePixelRatio(ratio);
    return picture;
}
