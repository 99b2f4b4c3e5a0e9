// Paints a drawing to a picture: art IN.svg OUT WIDTH HEIGHT
// OUT is a picture file by its suffix; with the suffix .rgb it gets the plain pixels, 4 bytes each.

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

namespace
{

bool save(const QImage& picture, const QString& path)
{
    if (!path.endsWith(QLatin1String(".rgb")))
        return picture.save(path);
    const QImage pixels = picture.convertToFormat(QImage::Format_RGB32);
    QFile file(path);
    return file.open(QIODevice::WriteOnly) &&
           file.write(reinterpret_cast<const char*>(pixels.constBits()), pixels.sizeInBytes()) == pixels.sizeInBytes();
}

} // namespace

int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 5) {
        std::fputs("usage: art IN.svg OUT WIDTH HEIGHT\n", stderr);
        return 2;
    }
    QSvgRenderer drawing(arguments[1]);
    if (!drawing.isValid()) {
        std::fprintf(stderr, "art: %s can't be read as a drawing\n", qPrintable(arguments[1]));
        return 1;
    }
    QImage picture(arguments[3].toInt(), arguments[4].toInt(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    drawing.render(&painter);
    painter.end();
    if (!save(picture, arguments[2])) {
        std::fprintf(stderr, "art: %s can't be written\n", qPrintable(arguments[2]));
        return 1;
    }
    return 0;
}
