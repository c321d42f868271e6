#pragma once

#include <QHash>
#include <QIcon>
#include <QPixmap>
#include <QString>
#include <QStringList>

// Pictures by key at one size, drawn from the SVG icons compiled into the resources
// (":/icons/<file>.svg", see ResourceFor). A grey list renders the same SVGs as grey
// pictures, so the normal and the highlighted look of a toolbar come from one drawing.
class ImageList {
public:
    enum class Tone { Colour, Grey };

    explicit ImageList(int size = 16, Tone tone = Tone::Colour);

    // Adds the picture of the icon resource for each key (ResourceFor). A key without a
    // resource gets an empty picture, so a missing icon never stops a window from loading.
    void Add(const QString& key);
    void Add(const QStringList& keys);
    // Adds a picture from any SVG or bitmap file or resource under the key.
    void Add(const QString& key, const QString& fileName);
    void Clear();

    int Size() const { return mSize; }
    Tone ImageTone() const { return mTone; }
    int Count() const { return static_cast<int>(mKeys.size()); }
    QStringList Keys() const { return mKeys; }
    bool Contains(const QString& key) const { return mPictures.contains(key); }

    // The picture at the list's size (a null pixmap for an unknown key).
    QPixmap Picture(const QString& key) const;
    QIcon Icon(const QString& key) const;

    // The resource that holds the picture of a key: the key in lower case without blanks,
    // ":/icons/arrangeall.svg" for "Arrange All".
    static QString ResourceFor(const QString& key);
    // Renders an SVG (or loads a bitmap) at size x size device-independent pixels, for
    // the screen's pixel ratio, optionally turned grey.
    static QPixmap Render(const QString& fileName, int size, Tone tone = Tone::Colour);

private:
    int mSize;
    Tone mTone;
    QStringList mKeys;
    QHash<QString, QPixmap> mPictures;
};
