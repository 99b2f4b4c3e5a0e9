// Renders a drawing: art IN.svg OUT WIDTH HEIGHT
// OUT is an image file, its format given by the suffix; ".rgb" means raw pixels of 4 bytes each.

#include <QCommandLineParser>
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
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Draws an SVG file as a picture."));
    parser.addHelpOption();
    for (const char* name : {"in", "out", "width", "height"})
        parser.addPositionalArgument(QString::fromLatin1(name), QString());
    parser.process(application);
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() != 4)
        parser.showHelp(2);
    QSvgRenderer drawing(arguments[0]);
    if (!drawing.isValid()) {
        std::fprintf(stderr, "art: %s can't be read as a drawing\n", qPrintable(arguments[0]));
        return 1;
    }
    QImage picture(arguments[2].toInt(), arguments[3].toInt(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    drawing.render(&painter);
    painter.end();
    if (!save(picture, arguments[1])) {
        std::fprintf(stderr, "art: %s can't be written\n", qPrintable(arguments[1]));
        return 1;
    }
    return 0;
}
