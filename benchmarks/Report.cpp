#include "PackFile.h"
#include "Subjects.h"
#include "Table.h"
#include "reporting/Export.h"
#include "reporting/Paint.h"
#include "reporting/Renderer.h"
#include "shell/forms/Module1.h"
#include "store/engine/Database.h"

#include <QPainter>
#include <QPdfWriter>

namespace orlo::bench
{

namespace
{

using reporting::UnitsPerPoint;

constexpr int Lines = 10'000;

QByteArray purchasesSql()
{
    return "WITH RECURSIVE n(i) AS (VALUES(1) UNION ALL SELECT i + 1 FROM n WHERE i < " + QByteArray::number(Lines) +
           ") INSERT INTO Purchase_List (Award_Name, Insignia_Type, Quantity) SELECT 'Award number ' || i, "
           "CASE i % 3 WHEN 0 THEN 'Belt Loop' WHEN 1 THEN 'Pin' ELSE 'Badge' END, 1 + i % 40 FROM n;";
}

store::Database& packOf(const QString& /*path*/)
{
    return database();
}

void writePages(const reporting::RunRequest& request, const QString& path)
{
    reporting::writePdf(*reporting::render(request, packOf), path);
}

// The document's texts at their places, and nothing else.
void drawTexts(const reporting::Document& document, const QString& path)
{
    std::vector<QFont> fonts;
    std::vector<double> ascents;
    for (const QFont& font : document.fonts) {
        fonts.push_back(reporting::typesetFont(font));
        ascents.push_back(QFontMetricsF(fonts.back()).ascent());
    }
    QPdfWriter writer(path);
    writer.setResolution(static_cast<int>(72 * UnitsPerPoint));
    writer.setPageSize(QPageSize(document.paper, QPageSize::Point));
    writer.setPageMargins(QMarginsF());
    QPainter painter(&writer);
    for (const reporting::Page& page : document.pages) {
        if (&page != &document.pages.front())
            writer.newPage();
        int current = -1;
        for (const reporting::Item& item : page.items) {
            const auto* text = std::get_if<reporting::TextItem>(&item);
            if (!text)
                continue;
            const auto font = static_cast<std::size_t>(text->font);
            if (text->font != current)
                painter.setFont(fonts[font]);
            current = text->font;
            painter.drawText(text->box.topLeft() * UnitsPerPoint + QPointF(0, ascents[font]), text->text);
        }
    }
}

// A report of many lines against the same texts drawn on the same writer.
void compareReport(Table& table, const std::string& work, const QString& reportFile, const QByteArray& fillingSql,
                   double limit)
{
    const PackFile file(fillingSql);
    const OpenPack open(file);
    reporting::RunRequest request;
    request.reportFile = QStringLiteral(ORLO_SOURCE_DIR "/src/reports/files/") + reportFile;
    request.databases = {{0, databasePath()}, {1, databasePath()}};
    const reporting::Document document = *reporting::render(request, packOf);
    if (document.rows.size() != Lines)
        qFatal("the report has %zu lines", document.rows.size());
    const QString pdf = file.folder() + QStringLiteral("/report.pdf");
    table.compare({work, "its texts with QPainter on a PDF writer", limit,
                   [&] { return timed([&] { writePages(request, pdf); }); },
                   [&] { return timed([&] { drawTexts(document, pdf); }); }, 9, true});
}

} // namespace

void printReport(Table& table)
{
    compareReport(table, "10,000-line report to PDF", QStringLiteral("PurchaseList.rpt"), purchasesSql(), 1.25);
    compareReport(table, "10,000-scout roster by den to PDF", QStringLiteral("ScoutPhoneList1.rpt"),
                  densSql() + scoutsSql(Lines, Lines / 10), 1.5); // packing the objects of 30,000 links
}

} // namespace orlo::bench
