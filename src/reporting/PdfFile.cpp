#include "reporting/PdfFile.h"

#include "platform/Application.h"
#include "reporting/Paint.h"
#include "reporting/ReportError.h"

#include <QPainter>
#include <QPdfWriter>

namespace orlo::reports
{

namespace
{

/// Makes the writer's device unit the typesetting unit.
constexpr int PdfResolution = int(72 * UnitsPerPoint);

} // namespace

PdfFile::PdfFile(const QString& path) : m_file(path), m_drawn(path)
{
    if (!m_file.open(QIODevice::WriteOnly))
        raiseUnwritable(path, m_file);
    if (!m_drawn.open())
        raiseUnwritable(path, m_drawn);
}

PdfFile::~PdfFile() = default;

void PdfFile::begin(const Document& document)
{
    m_extras = {document.author, document.subject, document.paper, document.outline, {}};
    m_writer = std::make_unique<QPdfWriter>(&m_drawn);
    m_writer->setTitle(document.title);
    m_writer->setCreator(platform::title());
    m_writer->setResolution(PdfResolution);
    m_writer->setPageSize(QPageSize(document.paper, QPageSize::Point));
    m_writer->setPageMargins(QMarginsF(0, 0, 0, 0));
    m_painter = std::make_unique<QPainter>(m_writer.get());
    m_painter->scale(UnitsPerPoint, UnitsPerPoint);
    m_pages = std::make_unique<PagePainter>(document.fonts);
}

void PdfFile::add(const Document& document, const Page& page)
{
    if (m_count == 0)
        begin(document);
    else
        m_writer->newPage();
    m_pages->paint(*m_painter, page);
    addMailLinks(page, m_count++, document.fonts, m_extras.links);
}

void PdfFile::commit(const PartProgress& progress)
{
    m_painter.reset();
    m_writer.reset();
    if (!m_drawn.flush() || m_drawn.error() != QFileDevice::NoError)
        raiseUnwritable(m_file.fileName(), m_drawn);
    finishPdf(m_drawn, m_file, m_extras, progress);
    if (!m_file.commit())
        raiseUnwritable(m_file.fileName(), m_file);
}

} // namespace orlo::reports
