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

/// The number of pages in a PDF file; -1 if it doesn't exist.
inline int pagesOf(const QString& pdf)
{
    QFile file(pdf);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    static const QRegularExpression page(QStringLiteral("/Type\\s*/Page\\b"));
    return static_cast<int>(QString::fromLatin1(file.readAll()).count(page));
}

/// A PDF file's lines of text in drawing order; none if pdftotext isn't installed.
inline QStringList linesOf(const QString& pdf)
{
    QProcess reader;
    reader.start(QStringLiteral("pdftotext"), {QStringLiteral("-raw"), pdf, QStringLiteral("-")});
    return reader.waitForFinished() ? QString::fromUtf8(reader.readAll()).split(u'\n', Qt::SkipEmptyParts)
                                    : QStringList();
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
