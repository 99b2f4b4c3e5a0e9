#include "reporting/PdfFile.h"

#include "platform/Application.h"
#include "platform/WriteAll.h"
#include "reporting/Paint.h"

#include <QPainter>
#include <QPdfWriter>

#include <optional>

namespace orlo::reporting
{

namespace
{

// Makes the writer's device unit a typesetting unit.
constexpr int PdfResolution = int(72 * UnitsPerPoint);

} // namespace

// The device that the PDF writer draws to. The writer doesn't check whether its bytes were written, so failures are
// kept here.
class PdfFile::Drawn final : public QIODevice
{
public:
    explicit Drawn(const QString& path) : m_file(path), m_path(path)
    {
        if (!m_file.open())
            platform::raiseUnwritable(path, m_file.errorString());
        open(WriteOnly | Unbuffered);
    }

    // The complete file. Raises 75 if any write failed.
    QFile& finished()
    {
        keepingFailure([this] { platform::flushAll(m_file); });
        if (m_failure)
            throw *m_failure;
        return m_file;
    }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* bytes, qint64 count) override
    {
        keepingFailure([&] { platform::writeAll(m_file, {bytes, qsizetype(count)}); });
        return m_failure ? -1 : count;
    }

private:
    template <class Step>
    void keepingFailure(const Step& step)
    {
        try {
            if (!m_failure)
                step();
        } catch (const platform::RuntimeError&) {
            m_failure.emplace(platform::unwritable(m_path, m_file.errorString()));
        }
    }

    QTemporaryFile m_file;
    QString m_path; // of the wanted file
    std::optional<platform::RuntimeError> m_failure;
};

PdfFile::PdfFile(const QString& path, QSizeF sheet) : m_file(path), m_sheet(sheet)
{
    if (!m_file.open(QIODevice::WriteOnly))
        platform::raiseUnwritable(path, m_file.errorString());
    m_drawn = std::make_unique<Drawn>(path);
}

PdfFile::~PdfFile() = default;

void PdfFile::begin(const Document& document)
{
    if (m_sheet.isEmpty())
        m_sheet = document.paper;
    m_place = placedOn(m_sheet, document);
    m_extras = {document.author, document.subject, m_sheet, document.outline, {}};
    for (OutlineEntry& entry : m_extras.outline)
        entry.top = m_place.map(QPointF(0, entry.top)).y();
    m_writer = std::make_unique<QPdfWriter>(m_drawn.get());
    m_writer->setTitle(document.title);
    m_writer->setCreator(platform::title());
    m_writer->setResolution(PdfResolution);
    m_writer->setPageSize(QPageSize(m_sheet, QPageSize::Point));
    m_writer->setPageMargins(QMarginsF(0, 0, 0, 0));
    m_painter = std::make_unique<QPainter>(m_writer.get());
    m_painter->scale(UnitsPerPoint, UnitsPerPoint);
    m_painter->setTransform(m_place, true);
    m_pages = std::make_unique<PagePainter>(document.fonts);
}

void PdfFile::add(const Document& document, const Page& page)
{
    if (m_count == 0)
        begin(document);
    else
        m_writer->newPage();
    m_pages->paint(*m_painter, page);
    const std::size_t before = m_extras.links.size();
    addMailLinks(page, m_count++, document.fonts, m_extras.links);
    for (std::size_t i = before; i < m_extras.links.size(); ++i)
        m_extras.links[i].box = m_place.mapRect(m_extras.links[i].box);
}

void PdfFile::commit(const PartProgress& progress)
{
    m_painter.reset();
    m_writer.reset();
    finishPdf(
        m_drawn->finished(), [this](QByteArrayView bytes) { platform::writeAll(m_file, bytes); }, m_extras, progress);
    platform::commitAll(m_file);
}

} // namespace orlo::reporting
