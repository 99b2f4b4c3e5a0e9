#pragma once

#include "reports/engine/view/Printing.h"

#include <QFile>
#include <QPrinter>
#include <QRegularExpression>

namespace orlo::test
{

/// The number of pages in a PDF file, -1 without such a file.
inline int pagesOf(const QString& pdf)
{
    QFile file(pdf);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    static const QRegularExpression page(QStringLiteral("/Type\\s*/Page\\b"));
    return static_cast<int>(QString::fromLatin1(file.readAll()).count(page));
}

/// Makes the default printer one that prints into the PDF file, until the factory is set again.
inline void printInto(const QString& pdf)
{
    reports::setPrinterFactory([pdf] {
        auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
        printer->setOutputFileName(pdf);
        return printer;
    });
}

} // namespace orlo::test
