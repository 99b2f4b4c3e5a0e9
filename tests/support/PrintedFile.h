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

/// The text of a PDF file, page by page; nothing where the reader, pdftotext, isn't installed.
inline QString readPdf(const QString& pdf)
{
    QProcess reader;
    reader.start(QStringLiteral("pdftotext"), {QStringLiteral("-raw"), pdf, QStringLiteral("-")});
    return reader.waitForFinished() ? QString::fromUtf8(reader.readAll()) : QString();
}

/// The number of pages in a PDF file, -1 without such a file.
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

/// What a PDF file says, in the order in which it is drawn and without blanks and line ends.
inline QString textOf(const QString& pdf)
{
    return withoutBlanks(readPdf(pdf));
}

/// Makes the default printer one that prints into the PDF file, until the factory is set again.
inline void printInto(const QString& pdf)
{
    reporting::setPrinterFactory([pdf] {
        auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
        printer->setOutputFileName(pdf);
        return printer;
    });
}

} // namespace orlo::test
