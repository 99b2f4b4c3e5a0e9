#pragma once

#include "reporting/PdfFinish.h"

#include <QSaveFile>
#include <QTemporaryFile>

#include <memory>

class QPainter;
class QPdfWriter;

namespace orlo::reporting
{

class PagePainter;

/// A PDF file that takes a report's pages as they are finished. Unless it is committed, no file is left and an existing
/// one stays.
class PdfFile
{
public:
    /// On the report's own paper, or on a sheet in points on which placedOn() places the pages. Raises PathFileAccess
    /// (75) if the file can't be written.
    explicit PdfFile(const QString& path, QSizeF sheet = {});
    ~PdfFile();
    PdfFile(const PdfFile&) = delete;
    PdfFile& operator=(const PdfFile&) = delete;

    /// Adds a page. The first call's document supplies title, author, subject, paper, fonts and outline.
    void add(const Document& document, const Page& page);
    /// Completes the file, of at least one page. Raises PathFileAccess (75); throws Cancelled.
    void commit(const PartProgress& progress = {});

private:
    class Drawn;

    void begin(const Document& document);

    QSaveFile m_file;
    QSizeF m_sheet;
    std::unique_ptr<Drawn> m_drawn; // before bookmarks and links are added
    std::unique_ptr<QPdfWriter> m_writer;
    std::unique_ptr<QPainter> m_painter;
    std::unique_ptr<PagePainter> m_pages;
    QTransform m_place;
    PdfExtras m_extras;
    int m_count = 0;
};

} // namespace orlo::reporting
