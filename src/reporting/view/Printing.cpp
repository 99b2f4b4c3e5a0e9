#include "reporting/view/Printing.h"

#include "platform/RuntimeError.h"
#include "reporting/Paint.h"
#include "reporting/PdfFile.h"

#include <QPageLayout>
#include <QPaintEngine>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>

#include <algorithm>

namespace orlo::reporting
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

// The print system's own PDF file would be left truncated on a full disk, without an error.
bool printsIntoPdf(const QPrinter& printer)
{
    return !printer.outputFileName().isEmpty() && printer.paintEngine()->type() == QPaintEngine::Pdf;
}

// The bookmarks of some pages, in print order.
std::vector<OutlineEntry> outlineOf(const Document& document, const std::vector<int>& order)
{
    std::vector<OutlineEntry> outline;
    if (std::is_sorted(order.begin(), order.end()) && order.back() - order.front() + 1 == int(order.size()))
        for (OutlineEntry entry : document.outline)
            if (entry.page >= order.front() && entry.page <= order.back()) {
                entry.page -= order.front();
                outline.push_back(std::move(entry));
            }
    return outline;
}

bool printInto(const QString& path, QSizeF sheet, const Document& document, const std::vector<int>& order,
               const std::function<bool(std::size_t)>& goesOn)
{
    Document head;
    head.title = document.title;
    head.author = document.author;
    head.subject = document.subject;
    head.paper = document.paper;
    head.exactSize = document.exactSize;
    head.fonts = document.fonts;
    head.outline = outlineOf(document, order);
    PdfFile file(path, sheet);
    for (std::size_t done = 0; done < order.size(); ++done) {
        file.add(head, document.pages[static_cast<std::size_t>(order[done])]);
        if (!goesOn(done))
            return false;
    }
    file.commit();
    return true;
}

// The pages in print order; copies are laid out here if the printer can't make them.
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
    const std::vector<int> order = printOrder(printer, first, last);
    const auto goesOn = [&](std::size_t done) {
        return !progress || progress(static_cast<int>(done) + 1, static_cast<int>(order.size()));
    };
    if (printsIntoPdf(printer))
        return printInto(printer.outputFileName(), sheet, document, order, goesOn);

    QPainter painter;
    if (!painter.begin(&printer))
        raiseUnreachable(printer);
    const PagePainter pages(document.fonts);
    const QTransform place = placedOn(sheet, document);
    for (std::size_t done = 0; done < order.size(); ++done) {
        if (done > 0 && !printer.newPage()) {
            printer.abort();
            raiseUnreachable(printer);
        }
        painter.save();
        painter.scale(printer.logicalDpiX() / PointsPerInch, printer.logicalDpiY() / PointsPerInch);
        painter.setTransform(place, true);
        pages.paint(painter, document.pages[static_cast<std::size_t>(order[done])]);
        painter.restore();
        if (!goesOn(done)) {
            printer.abort();
            return false;
        }
    }
    return true;
}

} // namespace orlo::reporting
