#include "reporting/view/Printing.h"

#include "platform/RuntimeError.h"
#include "reporting/Paint.h"

#include <QPageLayout>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>

#include <algorithm>

namespace orlo::reports
{

namespace
{

PrinterFactory theFactory;

[[noreturn]] void raiseUnreachable(const QPrinter& printer)
{
    const QString where = printer.outputFileName().isEmpty() ? printer.printerName() : printer.outputFileName();
    throw platform::RuntimeError(platform::DeviceUnavailable, QString(),
                                 QStringLiteral("The printer can't be reached: %1").arg(where));
}

// The pages in the order in which they leave the printer; copies are laid out here where the printer makes none.
std::vector<int> printOrder(const QPrinter& printer, int first, int last)
{
    std::vector<int> order;
    const int copies = printer.supportsMultipleCopies() ? 1 : std::max(printer.copyCount(), 1);
    if (printer.collateCopies()) {
        for (int copy = 0; copy < copies; ++copy) {
            for (int page = first; page <= last; ++page)
                order.push_back(page);
        }
    } else {
        for (int page = first; page <= last; ++page)
            order.insert(order.end(), static_cast<std::size_t>(copies), page);
    }
    if (printer.pageOrder() == QPrinter::LastPageFirst)
        std::reverse(order.begin(), order.end());
    return order;
}

} // namespace

std::unique_ptr<QPrinter> defaultPrinter()
{
    if (theFactory)
        return theFactory();
    const QPrinterInfo info = QPrinterInfo::defaultPrinter();
    if (info.isNull())
        return nullptr;
    return std::make_unique<QPrinter>(info, QPrinter::HighResolution);
}

void setPrinterFactory(PrinterFactory factory)
{
    theFactory = std::move(factory);
}

void preparePrinter(QPrinter& printer, const Document& document)
{
    const bool landscape = document.paper.width() > document.paper.height();
    const QSizeF upright = landscape ? document.paper.transposed() : document.paper;
    printer.setPageSize(QPageSize(upright, QPageSize::Point, QString(), QPageSize::FuzzyMatch));
    printer.setPageOrientation(landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    printer.setFullPage(true);
    printer.setDocName(document.title);
}

bool printDocument(QPrinter& printer, const Document& document, int from, int to, const Progress& progress)
{
    const int count = static_cast<int>(document.pages.size());
    const int first = std::max(from, 1) - 1;
    const int last = (to <= 0 ? count : std::min(to, count)) - 1;
    if (first > last)
        return true;

    printer.setFullPage(true);
    const QSizeF sheet = printer.pageLayout().fullRectPoints().size();
    // Smaller where the paper is, in its middle where it's larger; a point is nothing, as papers are rounded to it.
    const double fit = std::min(sheet.width() / document.paper.width(), sheet.height() / document.paper.height());
    const double scale = fit > 0.99 ? 1 : fit;
    const QSizeF margin = (sheet - document.paper * scale) / 2;
    const std::vector<int> order = printOrder(printer, first, last);
    QPainter painter;
    if (!painter.begin(&printer))
        raiseUnreachable(printer);
    const PagePainter pages(document.fonts);
    const double scaleX = printer.logicalDpiX() / PointsPerInch;
    const double scaleY = printer.logicalDpiY() / PointsPerInch;
    for (std::size_t done = 0; done < order.size(); ++done) {
        if (done > 0 && !printer.newPage()) {
            printer.abort();
            raiseUnreachable(printer);
        }
        painter.save();
        painter.scale(scaleX, scaleY);
        painter.translate(margin.width(), margin.height());
        painter.scale(scale, scale);
        pages.paint(painter, document.pages[static_cast<std::size_t>(order[done])]);
        painter.restore();
        if (progress && !progress(static_cast<int>(done) + 1, static_cast<int>(order.size()))) {
            printer.abort();
            return false;
        }
    }
    return true;
}

} // namespace orlo::reports
