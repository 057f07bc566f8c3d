#include "ui/picture.h"

#include "config/content/configcontent.h"
#include "tests/support/machine.h"
#include "tests/unit/ui/pagetest.h"
#include "ui/optionpage.h"
#include "ui/productpage.h"
#include "ui/uninstallpage.h"

#include <QtCore/QBuffer>
#include <QtGui/QImage>
#include <QtGui/QImageWriter>
#include <QtWidgets/QWidget>
#include <algorithm>

using Look::PictureCost;

/// Pictures that come from outside, and what showing them may take.
class TestPicture : public PageTest
{
    Q_OBJECT

private Q_SLOTS:
    void hostilePicturesTakeLittleMemory();
    void onlyPngAndJpegAreShown_data();
    void onlyPngAndJpegAreShown();
    void costIsReadFromTheHead_data();
    void costIsReadFromTheHead();
    void headThatLiesIsRefused_data();
    void headThatLiesIsRefused();
    void hiddenTextCounts_data();
    void hiddenTextCounts();
    void segmentsOfJpegCount();
    void tooLargePictureIsNotShown();
    void decodingMayTakeTheWholeLimit();
    void shownPicturesMayTakeTheWholeLimit();
    void folderIsNotShown();
    void pictureWithAVariantForAScaleIsNotShown_data();
    void pictureWithAVariantForAScaleIsNotShown();
    void namedPipeIsNotShown();
    void roomIsGivenBack();

private:
    bool isShown(QWidget &panel, const QByteArray &bytes) const;
};

namespace {

constexpr qint64 mebibyte = qint64(1) << 20;

QByteArray encoded(const char *format, const QSize &size, QImage::Format pixels,
                   bool progressive = false)
{
    QImage image(size, pixels);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, format);
    writer.setProgressiveScanWrite(progressive);
    return writer.write(image) ? bytes : QByteArray("not written");
}

QByteArray png(int width, int height, QImage::Format pixels = QImage::Format_ARGB32)
{
    return encoded("PNG", {width, height}, pixels);
}

std::optional<PictureCost> costOf(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return Look::pictureCost(buffer);
}

QByteArray littleEndian(int number, int size)
{
    QByteArray bytes;
    for (int i = 0; i < size; ++i)
        bytes += static_cast<char>(number >> 8 * i);
    return bytes;
}

QByteArray chunk(const char *type, const QByteArray &content)
{
    QByteArray length = littleEndian(content.size(), 4);
    std::reverse(length.begin(), length.end());
    return length + type + content + "CRC?";
}

/// Of 64 by 32 pixels.
QByteArray jpeg()
{
    return encoded("JPEG", {64, 32}, QImage::Format_RGB32);
}

/// With segments before all others.
QByteArray jpegWith(const QByteArray &segments)
{
    return jpeg().insert(2, segments);
}

/// With one byte of the frame changed, counted from its marker's.
QByteArray jpegWithFrame(int index, char byte)
{
    QByteArray bytes = jpeg();
    bytes[bytes.indexOf("\xFF\xC0") + index] = byte;
    return bytes;
}

QByteArray segment(char marker, const QByteArray &content)
{
    QByteArray length = littleEndian(content.size() + 2, 2);
    std::reverse(length.begin(), length.end());
    return '\xFF' + QByteArray(1, marker) + length + content;
}

/// With chunks behind the head.
QByteArray pngWith(const QByteArray &chunks)
{
    return png(8, 8).insert(8 + 25, chunks);
}

QByteArray gif(int width, int height)
{
    QByteArray bytes = QByteArray::fromHex("474946383961 00000000 800000 ff0000 000000"
                                           "2c 00000000 0100 0100 00 02 02 4401 00 3b");
    return bytes.replace(6, 4, littleEndian(width, 2) + littleEndian(height, 2));
}

QByteArray bmp(int width, int height)
{
    QByteArray bytes =
        QByteArray::fromHex("424d 7a000000 00000000 36000000 28000000 00000000 00000000 0100 1800"
                            "00000000 00000000 00000000 00000000 00000000 00000000");
    return bytes.replace(18, 8, littleEndian(width, 4) + littleEndian(height, 4)) +
           QByteArray(64, '\x7f');
}

/// An icon that says it is of 8 by 8 pixels around a PNG of another size.
QByteArray ico(const QByteArray &content)
{
    QByteArray bytes = QByteArray::fromHex("0000 0100 0100 0808 0000 0100 2000 00000000 16000000");
    return bytes.replace(14, 4, littleEndian(content.size(), 4)) + content;
}

QJsonArray products(int count, const char *suffix)
{
    QJsonArray products;
    for (int i = 0; i < count; ++i)
        products += QJsonObject{
            {"pid"_s, i}, {"icon"_s, QString("https://h.example/a."_s + QLatin1String(suffix))}};
    return products;
}

void write(const QString &fileName, const QByteArray &bytes)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write a picture");
}

} // namespace

bool TestPicture::isShown(QWidget &panel, const QByteArray &bytes) const
{
    const QString path = m_sandbox->path("a.png"_s);
    write(path, bytes);
    Look::showPicture(panel, path);
    return !panel.styleSheet().isEmpty();
}

void TestPicture::hostilePicturesTakeLittleMemory()
{
    constexpr int perKind = 15;
    const QList<QPair<const char *, QByteArray>> kinds{
        {"png", png(2360, 2360, QImage::Format_RGBA64)}, // just small enough to be shown
        {"jpg", encoded("JPEG", {2350, 2350}, QImage::Format_RGB32, true)},
        {"jpeg", png(30000, 2000, QImage::Format_Mono)},
        {"gif", gif(16383, 16383)},
        {"bmp", bmp(20000, -20000)},
        {"ico", ico(png(16000, 4000, QImage::Format_Mono))}};
    QJsonArray all;
    for (const auto &[suffix, bytes] : kinds) {
        for (int i = 0; i < perKind; ++i)
            write(Config::imagesDir() + "/pid_%1.%2"_s.arg(i).arg(QLatin1String(suffix)), bytes);
        const QJsonArray some = products(perKind, suffix);
        for (const QJsonValue &product : some)
            all += product;
    }
    write(Config::imagesDir() + "/option_1.png"_s, kinds.constFirst().second);

    OptionPage optionPage(nullptr, {object(R"({"value": 1, "banner_url": "https://h.example/a.png",
                                               "extend": "{\"option_type\":\"homepage\"}"})")});
    QList<QJsonObject> list;
    for (const QJsonValue &product : qAsConst(all))
        list += product.toObject();
    UninstallPage uninstallPage(nullptr, list);
    ProductPage productPage(nullptr, {{{"key"_s, "utilities"_s}, {"list"_s, all}}});
    int shown = 0;
    for (QWidget *page :
         std::initializer_list<QWidget *>{&optionPage, &uninstallPage, &productPage}) {
        page->show();
        const QList<ProductList *> views = page->findChildren<ProductList *>();
        for (ProductList *view : views) {
            for (int row = 0; row < view->count(); ++row)
                view->itemWidget(view->item(row)); // as if scrolled through
        }
        page->grab();
        const QList<QWidget *> widgets = page->findChildren<QWidget *>();
        for (const QWidget *widget : widgets)
            shown += widget->styleSheet().contains("Configs/Images"_s);
    }
    QVERIFY(shown > 0); // what fits is there
    const qint64 peak = Machine::peakMemory();
    qInfo("peak memory: %lld MiB, %d pictures shown", peak / mebibyte, shown);
    QVERIFY(peak > 0 && peak < 300 * mebibyte);
}

void TestPicture::onlyPngAndJpegAreShown_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isShown");
    const auto row = [](const char *name, const QByteArray &bytes, bool isShown = false) {
        QTest::newRow(name) << bytes << isShown;
    };
    row("PNG", png(8, 8), true);
    row("JPEG", encoded("JPEG", {8, 8}, QImage::Format_RGB32), true);
    row("GIF", gif(1, 1));
    row("BMP", bmp(4, 4));
    row("ICO", ico(png(8, 8)));
    row("PPM", "P6 1 1 255\n\xff\x01\x01");
    row("XBM", "#define a_width 8\n#define a_height 1\nstatic char a_bits[] = { 0xff };");
    row("XPM", "/* XPM */\nstatic char *a[] = {\"1 1 1 1\", \"  c #FF0000\", \" \"};");
    row("SVG", "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'>"
               "<rect width='8' height='8' fill='red'/></svg>");
    row("nothing", {});
}

void TestPicture::onlyPngAndJpegAreShown()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isShown);
    const QString path = m_sandbox->path("a.png"_s);
    write(path, bytes);
    QWidget panel;
    Look::showPicture(panel, path);
    QCOMPARE(!panel.styleSheet().isEmpty(), isShown);
    QCOMPARE(panel.grab().toImage().pixelColor(panel.rect().center()).red() > 250 &&
                 panel.grab().toImage().pixelColor(panel.rect().center()).green() < 5,
             isShown);
}

void TestPicture::costIsReadFromTheHead_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qint64>("pixels");
    const auto row = [](const char *name, const QByteArray &bytes, qint64 pixels) {
        QTest::newRow(name) << bytes << pixels;
    };
    row("PNG", png(40, 30), 1200);
    row("PNG of one bit", png(4000, 3000, QImage::Format_Mono), 12000000);
    row("PNG of 16 bits", png(40, 30, QImage::Format_RGBA64), 1200);
    row("JPEG", jpeg(), 2048);
    row("JPEG of several scans", encoded("JPEG", {64, 32}, QImage::Format_RGB32, true), 2048);
    row("JPEG, in whole blocks", encoded("JPEG", {33, 1}, QImage::Format_RGB32), 2048);
    row("grey JPEG", encoded("JPEG", {64, 64}, QImage::Format_Grayscale8), 4096);
    row("JPEG of four components", jpegWithFrame(9, 4), 2048);
    row("JPEG with the last kind of frame", jpegWithFrame(1, '\xCF'), 2048);
    row("JPEG with a thumbnail",
        jpegWith(segment('\xE1', encoded("JPEG", {8, 8}, QImage::Format_RGB32))), 2048);
    row("JPEG with an empty segment", jpegWith(segment('\xFE', {})), 2048);
    row("JPEG with a byte between segments", jpegWith(segment('\xFE', {}) + "x"), 2048);
    row("JPEG with bytes that fill", jpegWith("\xFF\xFF\xFF"), 2048);
    row("JPEG with a zero for a marker", jpegWith(QByteArray("\xFF\0", 2)), 2048);
    row("JPEG with a marker for temporary use", jpegWith("\xFF\x01"), 2048);
    row("JPEG with a restart", jpegWith("\xFF\xD0"), 2048);
}

void TestPicture::costIsReadFromTheHead()
{
    QFETCH(QByteArray, bytes);
    QFETCH(qint64, pixels);
    const std::optional<PictureCost> cost = costOf(bytes);
    QVERIFY(cost);
    QCOMPARE(cost->shown, pixels * 4);
    QVERIFY(cost->decoding >= pixels * 12);
    QVERIFY(cost->decoding <= pixels * 12 + qint64(8) * bytes.size());
}

void TestPicture::headThatLiesIsRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("PNG that ends early") << png(8, 8).chopped(12);
    QTest::newRow("PNG without a head") << png(8, 8).remove(8, 25);
    QTest::newRow("PNG's first bytes alone") << png(8, 8).left(8);
    QTest::newRow("PNG of chunks without end") << pngWith(chunk("teXt", {}).repeated(20000));
    QTest::newRow("JPEG's first bytes alone") << jpeg().left(3);
    QTest::newRow("JPEG that ends before its frame") << jpeg().left(30);
    QTest::newRow("JPEG that ends in its frame") << jpeg().left(jpeg().indexOf("\xFF\xC0") + 9);
    QTest::newRow("JPEG that ends in a marker") << jpeg().left(20) + '\xFF';
    QTest::newRow("JPEG with a segment of no length") << jpegWith(QByteArray("\xFF\xE1\0\0", 4));
    QTest::newRow("JPEG with a second start") << jpegWith(segment('\xD8', "12345678"));
    QTest::newRow("JPEG whose scan comes first") << jpegWith(segment('\xDA', "12345678"));
    QTest::newRow("JPEG of five components") << jpegWithFrame(9, 5);
}

void TestPicture::headThatLiesIsRefused()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(!costOf(bytes));
}

void TestPicture::hiddenTextCounts_data()
{
    QTest::addColumn<QByteArray>("chunks");
    QTest::addColumn<qint64>("bytes");
    const QByteArray packed = QByteArray("key\0\0", 5) + QByteArray(9000, 'x');
    QTest::newRow("none") << QByteArray() << qint64(0);
    QTest::newRow("text") << chunk("tEXt", packed) << qint64(8 * 9005);
    QTest::newRow("packed text") << chunk("zTXt", packed) << qint64(8 * 8000000);
    QTest::newRow("international text") << chunk("iTXt", packed) << qint64(8 * 9005);
    QTest::newRow("packed international text")
        << chunk("iTXt", QByteArray("key\0\1", 5) + QByteArray(9000, 'x')) << qint64(8 * 8000000);
    QTest::newRow("international text whose keyword is too long")
        << chunk("iTXt", QByteArray(81, 'k') + QByteArray("\0\1", 2) + QByteArray(9000, 'x'))
        << qint64(8 * 8000000);
    QTest::newRow("a little of it") << chunk("zTXt", packed.left(100)) << qint64(8 * 100 * 1032);
    QTest::newRow("colour profile") << chunk("iCCP", packed) << qint64(8000000);
    QTest::newRow("hundred times")
        << chunk("zTXt", packed).repeated(100) << qint64(100 * qint64(8 * 8000000));
}

void TestPicture::hiddenTextCounts()
{
    QFETCH(QByteArray, chunks);
    QFETCH(qint64, bytes);
    const QByteArray head = QByteArray::fromHex("00000008 00000008 08 06 00 00 00");
    const std::optional<PictureCost> cost =
        costOf("\x89PNG\r\n\x1A\n" + chunk("IHDR", head) + chunks + chunk("IEND", {}));
    QVERIFY(cost);
    QCOMPARE(cost->decoding, 8 * 8 * 12 + 8 * head.size() + bytes);
    QCOMPARE(cost->shown, qint64(8 * 8 * 4));
}

void TestPicture::segmentsOfJpegCount()
{
    const QByteArray comment = segment('\xFE', QByteArray(60000, 'x'));
    const std::optional<PictureCost> cost = costOf(jpegWith(comment.repeated(10)));
    const std::optional<PictureCost> plain = costOf(jpeg());
    QVERIFY(cost && plain);
    QCOMPARE(cost->decoding - plain->decoding, qint64(4) * 10 * comment.size());
}

void TestPicture::decodingMayTakeTheWholeLimit()
{
    const QByteArray large = png(4096, 1365, QImage::Format_Mono);
    const int room = int(64 * mebibyte - costOf(large)->decoding) / 8;
    const auto withText = [&large](int size) {
        return QByteArray(large).insert(8 + 25, chunk("tEXt", QByteArray(size, 'x')));
    };
    QWidget panel;
    QVERIFY(isShown(panel, withText(room)));
    QVERIFY(!isShown(panel, withText(room + 1)));
}

void TestPicture::shownPicturesMayTakeTheWholeLimit()
{
    QWidget first;
    QWidget second;
    QWidget third;
    QWidget last;
    QWidget none;
    for (QWidget *panel : {&first, &second, &third})
        QVERIFY(isShown(*panel, png(4096, 1365, QImage::Format_Mono)));
    QVERIFY(isShown(last, png(64, 64)));
    QVERIFY(!isShown(none, png(1, 1)));
}

void TestPicture::tooLargePictureIsNotShown()
{
    QWidget panel;
    const auto isShown = [this, &panel](const QByteArray &bytes) {
        return this->isShown(panel, bytes);
    };
    QVERIFY(!isShown(png(40000, 8000, QImage::Format_Mono))); // a few kilobytes of file
    QVERIFY(!isShown(png(2400, 2400, QImage::Format_Mono)));
    QVERIFY(!isShown(png(8, 700000, QImage::Format_Mono)));
    // Bytes that would be none, were they counted in 64 bits.
    QVERIFY(!isShown(png(8, 8).replace(16, 8, QByteArray::fromHex("8000000080000000"))));
    QVERIFY(isShown(png(2360, 2360, QImage::Format_Mono)));
    QVERIFY(isShown(png(816, 1440)));
    QVERIFY(!isShown(pngWith(chunk("zTXt", QByteArray(9000, 'x')).repeated(2))));
}

void TestPicture::pictureWithAVariantForAScaleIsNotShown_data()
{
    QTest::addColumn<QString>("variant");
    QTest::addColumn<bool>("isShown");
    QTest::newRow("scale 2") << "a@2x.png"_s << false;
    QTest::newRow("scale 3") << "a@3x.png"_s << false;
    QTest::newRow("scale 9") << "a@9x.png"_s << false;
    QTest::newRow("no scale") << "a@1x.png"_s << true;
    QTest::newRow("more than Qt has") << "a@10x.png"_s << true;
    QTest::newRow("of another picture") << "b@2x.png"_s << true;
}

void TestPicture::pictureWithAVariantForAScaleIsNotShown()
{
    QFETCH(QString, variant);
    QFETCH(bool, isShown);
    QVERIFY(QDir().mkpath(m_sandbox->path("pictures"_s)));
    const QString path = m_sandbox->path("pictures/a.png"_s);
    write(m_sandbox->path("pictures/"_s + variant), png(8, 8));
    for (const bool exists : {false, true}) {
        if (exists)
            write(path, png(8, 8));
        QWidget panel;
        Look::showPicture(panel, path);
        QCOMPARE(!panel.styleSheet().isEmpty(), isShown);
    }
    QVERIFY(QDir(m_sandbox->path("pictures"_s)).removeRecursively());
}

void TestPicture::folderIsNotShown()
{
    const QString path = m_sandbox->path("folder.png"_s);
    QVERIFY(QDir().mkpath(path));
    QWidget panel;
    Look::showPicture(panel, path);
    QCOMPARE(panel.styleSheet(), QString());
}

void TestPicture::namedPipeIsNotShown()
{
    const QString path = m_sandbox->path("pipe.png"_s);
    if (!Machine::makePipe(path))
        QSKIP("no pipe has a name of the file system here");
    QWidget panel;
    Look::showPicture(panel, path);
    QCOMPARE(panel.styleSheet(), QString());
}

void TestPicture::roomIsGivenBack()
{
    const QString path = m_sandbox->path("a.png"_s);
    write(path, png(2360, 2360, QImage::Format_Mono));
    const auto showsAs = [&path](QWidget &widget) {
        Look::showPicture(widget, path);
        return !widget.styleSheet().isEmpty();
    };
    QWidget first;
    QWidget second;
    QWidget fourth;
    QVERIFY(showsAs(first));
    QVERIFY(showsAs(second));
    {
        QWidget third;
        QVERIFY(showsAs(third));
        QVERIFY(!showsAs(fourth));
        QVERIFY(showsAs(first)); // in place of its own
    }
    QVERIFY(showsAs(fourth));

    QWidget other;
    QVERIFY(!showsAs(other));
    Look::showPicture(fourth, ":/Resources/light/Option0_2x.png"_s); // counts for nothing
    QVERIFY(!fourth.styleSheet().isEmpty());
    QVERIFY(showsAs(other));
}

QTEST_MAIN(TestPicture)
#include "test_picture.moc"
