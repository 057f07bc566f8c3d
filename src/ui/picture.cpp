#include "ui/picture.h"

#include "app/env/appenv.h"
#include "ui/look.h"

#include <QtCore/QFile>
#include <QtCore/QtEndian>
#include <QtWidgets/QWidget>

namespace Look {

namespace {

/// Decoding one picture, and all that are shown together: a picture may have four times the pixels
/// of the largest recommended banner, and a thousand icons of the recommended size have room.
constexpr qint64 maxDecodingBytes = qint64(64) << 20;
constexpr qint64 maxShownBytes = qint64(64) << 20;

constexpr qint64 shownPixelBytes = 4;
/// PNG of 16 bits: eight, and four after the conversion. JPEG of several scans: four, and a
/// coefficient of two for each of up to four components.
constexpr qint64 decodingPixelBytes = 12;

constexpr int maxChunks = 16384;

/// The PNG decoder expands a chunk to this at most; zlib does so to about 1032 times its size.
constexpr qint64 maxExpandedBytes = 8000000;
constexpr qint64 maxExpansion = 1032;
/// Text is kept in the decoder, in Qt's strings of two bytes, and in a description made of those.
constexpr qint64 copiesOfText = 8;

PictureCost costOf(qint64 width, qint64 height, qint64 others)
{
    constexpr qint64 tooLong = qint64(1) << 24; // more would not fit into the product
    const qint64 pixels = qMin(width, tooLong) * qMin(height, tooLong);
    return {pixels * decodingPixelBytes + others, pixels * shownPixelBytes};
}

qint64 expanded(qint64 length)
{
    return qMin(length * maxExpansion, maxExpandedBytes);
}

/// Whether the text begins after its keyword with a mark that it is compressed.
bool isCompressed(const QByteArray &international)
{
    const int end = international.indexOf('\0');
    return end < 0 || end + 1 >= international.size() || international.at(end + 1) != 0;
}

std::optional<PictureCost> costOfPng(QIODevice &picture)
{
    constexpr qint64 mostOfKeyword = 82; // with the bytes that follow it
    qint64 others = 0;
    QByteArray size;
    for (int chunk = 0; chunk < maxChunks; ++chunk) {
        const QByteArray head = picture.read(8);
        if (head.size() != 8)
            return {};
        const qint64 length = qFromBigEndian<quint32>(head.constData());
        const qint64 next = picture.pos() + length + 4; // and the checksum
        const QByteArray type = head.mid(4);
        if (chunk == 0) {
            size = picture.read(8);
            if (type != "IHDR" || size.size() != 8)
                return {};
        }
        if (type == "IEND")
            return costOf(qFromBigEndian<quint32>(size.constData()),
                          qFromBigEndian<quint32>(size.constData() + 4), others);
        if (type == "zTXt" || (type == "iTXt" && isCompressed(picture.read(mostOfKeyword))))
            others += copiesOfText * expanded(length);
        else if (type == "iCCP")
            others += expanded(length);
        else if (type != "IDAT")
            others += copiesOfText * length;
        if (next > picture.size() || !picture.seek(next))
            return {};
    }
    return {};
}

bool isFrame(uchar marker)
{
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

std::optional<PictureCost> costOfJpeg(QIODevice &picture)
{
    // What other segments hold may be kept, some of it as text.
    const qint64 others = 4 * picture.size();
    char byte = 0;
    while (picture.getChar(&byte)) {
        if (uchar(byte) != 0xFF)
            continue; // as the decoder does
        while (uchar(byte) == 0xFF && picture.getChar(&byte)) {
        }
        const auto marker = uchar(byte);
        const bool hasNoSegment = marker == 0 || marker == 0x01 || (marker & 0xF8) == 0xD0;
        if (hasNoSegment)
            continue;
        const QByteArray segment = picture.read(8); // a frame: length, precision, height, width...
        if (segment.size() != 8 || (marker >= 0xD8 && marker <= 0xDA))
            return {};
        if (!isFrame(marker)) {
            const qint64 length = qFromBigEndian<quint16>(segment.constData());
            const qint64 next = picture.pos() - segment.size() + length;
            if (length < 2 || next > picture.size() || !picture.seek(next))
                return {};
            continue;
        }
        const auto blocks = [](qint64 pixels) { return (pixels + 31) / 32 * 32; };
        if (uchar(segment.at(7)) > 4) // components
            return {};
        return costOf(blocks(qFromBigEndian<quint16>(segment.constData() + 5)),
                      blocks(qFromBigEndian<quint16>(segment.constData() + 3)), others);
    }
    return {};
}

/// A widget's part of what may be shown; goes with it.
class ShownPicture : public QObject
{
public:
    ShownPicture(QWidget &widget, qint64 bytes)
        : QObject(&widget)
        , m_bytes(bytes)
    {
        s_total += bytes;
    }
    ~ShownPicture() override { s_total -= m_bytes; }
    Q_DISABLE_COPY(ShownPicture)

    static qint64 total() { return s_total; }

private:
    static qint64 s_total;
    qint64 m_bytes;
};

qint64 ShownPicture::s_total = 0;

/// Whether Qt would decode another file in its place on a display of some scale: NAME@2x.SUFFIX to
/// NAME@9x.SUFFIX. No download has such a name.
bool hasVariant(const QString &path)
{
    const int suffix = path.lastIndexOf(QLatin1Char('.'));
    for (int scale = 2; scale <= 9; ++scale) {
        QString variant = path;
        if (QFile::exists(variant.insert(suffix, QStringLiteral("@%1x").arg(scale))))
            return true;
    }
    return false;
}

bool mayBeShown(QWidget &widget, const QString &path)
{
    if (hasVariant(path) || AppEnv::isSpecialFile(path))
        return false;
    QFile file(path);
    if (!file.exists())
        return true; // and nothing will be decoded
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const std::optional<PictureCost> cost = pictureCost(file);
    if (!cost || cost->decoding > maxDecodingBytes ||
        ShownPicture::total() + cost->shown > maxShownBytes)
        return false;
    new ShownPicture(widget, cost->shown);
    return true;
}

} // namespace

std::optional<PictureCost> pictureCost(QIODevice &picture)
{
    if (picture.peek(8) == QByteArray("\x89PNG\r\n\x1A\n", 8)) {
        picture.seek(8);
        return costOfPng(picture);
    }
    if (picture.peek(3) == QByteArray("\xFF\xD8\xFF", 3)) {
        picture.seek(2);
        return costOfJpeg(picture);
    }
    return {};
}

void showPicture(QWidget &widget, const QString &path)
{
    const QObjectList children = widget.children();
    for (QObject *child : children) {
        if (auto *earlier = dynamic_cast<ShownPicture *>(child))
            delete earlier;
    }
    const bool isShown = path.startsWith(QLatin1Char(':')) || mayBeShown(widget, path);
    widget.setStyleSheet(isShown ? pictureStyle(path) : QString());
}

} // namespace Look
