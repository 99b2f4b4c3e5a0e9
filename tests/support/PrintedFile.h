#pragma once

#include "reporting/view/Printing.h"

#include <QFile>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>

namespace orlo::test
{

inline QString withoutBlanks(QString text)
{
    return text.removeIf([](QChar c) { return c.isSpace(); });
}

/// A PDF file's text in drawing order, each page ended by a form feed; empty if pdftotext isn't installed.
inline QString readPdf(const QString& pdf)
{
    QProcess reader;
    reader.start(QStringLiteral("pdftotext"), {QStringLiteral("-raw"), pdf, QStringLiteral("-")});
    return reader.waitForFinished() ? QString::fromUtf8(reader.readAll()) : QString();
}

/// The number of pages in a PDF file; -1 if it doesn't exist.
inline int pagesOf(const QString& pdf)
{
    QFile file(pdf);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray bytes = file.readAll();
    static const QRegularExpression page(QStringLiteral("/Type\\s*/Page\\b"));
    const bool packed = bytes.contains("/ObjStm");
    return static_cast<int>(packed ? readPdf(pdf).count(u'\f') : QString::fromLatin1(bytes).count(page));
}

/// The lines of a PDF file's text.
inline QStringList linesOf(const QString& pdf)
{
    return readPdf(pdf).split(u'\n', Qt::SkipEmptyParts);
}

/// The same text without blanks and line ends.
inline QString textOf(const QString& pdf)
{
    return withoutBlanks(linesOf(pdf).join(QString()));
}

/// Makes the default printer print to the PDF file until the factory is set again.
inline void printInto(const QString& pdf)
{
    reporting::setPrinterFactory([pdf] {
        auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
        printer->setOutputFileName(pdf);
        return printer;
    });
}

} // namespace orlo::test
