#include "reporting/Paint.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace orlo::reporting
{

namespace
{

// The most glyphs drawn in one run, roughly: more saves nothing, and zooming in on part of a page draws every run that
// reaches into it.
constexpr std::size_t MaxTogether = 400;

// Rounds to whole typesetting units: finer differences are invisible, and a PDF file would spell them out digit by
// digit.
QPointF onGrid(QPointF place)
{
    return {std::round(place.x() * UnitsPerPoint), std::round(place.y() * UnitsPerPoint)};
}

// Draws a page's items in typesetting units. Each change of pen is written to a PDF file, so lines and outlines are
// collected by pen, and texts are drawn last, on top.
class PageDrawing
{
public:
    PageDrawing(QPainter& painter, const std::vector<PagePainter::Face>& faces) : m_painter(painter), m_faces(faces) {}

    void draw(const Page& page)
    {
        m_texts.reserve(page.items.size());
        for (const Item& item : page.items)
            std::visit(*this, item);
        drawStrokes();
        for (const TextItem* text : m_texts)
            drawText(*text);
        drawPlain();
    }

    void operator()(const TextItem& item) { m_texts.push_back(&item); }

    void operator()(const LineItem& item)
    {
        strokes(item.color, item.width).lines.append({onGrid(item.from), onGrid(item.to)});
    }

    void operator()(const BoxItem& item)
    {
        const QRectF box(onGrid(item.box.topLeft()), onGrid(item.box.bottomRight()));
        if (item.fill.alpha() > 0) {
            drawStrokes(); // the box covers only what was drawn before it
            m_painter.fillRect(box, item.fill);
        }
        if (item.width > 0)
            strokes(item.color, item.width).boxes.append(box);
    }

    void operator()(const PictureItem& item)
    {
        m_painter.drawImage(QRectF(item.box.topLeft() * UnitsPerPoint, item.box.size() * UnitsPerPoint), item.picture);
    }

private:
    struct Strokes {
        QColor color;
        double width;
        QList<QLineF> lines;
        QList<QRectF> boxes;
    };

    Strokes& strokes(const QColor& color, double width)
    {
        const auto known = std::find_if(m_strokes.begin(), m_strokes.end(),
                                        [&](const Strokes& one) { return one.width == width && one.color == color; });
        return known != m_strokes.end() ? *known : m_strokes.emplace_back(Strokes{color, width, {}, {}});
    }

    void drawStrokes()
    {
        for (const Strokes& one : m_strokes) {
            m_painter.setPen(QPen(one.color, one.width * UnitsPerPoint, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
            m_painter.drawLines(one.lines);
            m_painter.drawRects(one.boxes);
        }
        m_strokes.clear();
    }

    void drawText(const TextItem& item)
    {
        const PagePainter::Face& face = m_faces[std::size_t(item.font)];
        QPointF start = onGrid(item.box.topLeft()) + QPointF(0, std::round(face.ascent));
        for (const QStringView line : QStringView(item.text).tokenize(u'\n')) {
            if (m_face != &face || m_color != item.color)
                drawPlain();
            m_face = &face;
            m_color = item.color;
            const bool isPlain = addPlain(start, line);
            if (!isPlain || m_glyphs.size() > MaxTogether)
                drawPlain();
            if (!isPlain) {
                m_painter.setPen(m_color);
                m_painter.setFont(needsShaping(line) ? face.shaped : face.font);
                m_painter.drawText(start, line.toString());
            }
            start.ry() += face.height;
        }
    }

    // Adds a line of plain characters to the current run of glyphs, exactly as the text layout would place them. False
    // if the line needs the real text layout, for characters from another font.
    bool addPlain(QPointF start, QStringView line)
    {
        const std::size_t before = m_glyphs.size();
        for (const QChar c : line) {
            const PagePainter::PlainGlyph* glyph = plainGlyph(c);
            if (!glyph) {
                m_glyphs.resize(before);
                m_places.resize(before);
                return false;
            }
            m_glyphs.push_back(glyph->index);
            m_places.push_back(start);
            start.rx() += glyph->advance;
        }
        return true;
    }

    // A character's glyph; null if it isn't plain or the font lacks it.
    [[nodiscard]] const PagePainter::PlainGlyph* plainGlyph(QChar c) const
    {
        const char16_t code = c.unicode();
        if (code == QChar::SoftHyphen || code >= m_face->glyphs.size())
            return nullptr;
        PagePainter::PlainGlyph& glyph = m_face->glyphs[code];
        if (glyph.advance < 0) {
            const QList<quint32> found = m_face->raw.glyphIndexesForString(QString(c));
            glyph.index = found.value(0);
            glyph.advance = m_face->raw.advancesForGlyphIndexes(found).value(0).x();
        }
        return glyph.index > 0 ? &glyph : nullptr;
    }

    // Draws the collected lines, all of one font and colour: drawing ten together takes as long as one alone.
    void drawPlain()
    {
        if (m_glyphs.empty())
            return;
        QGlyphRun run;
        run.setRawFont(m_face->raw);
        run.setRawData(m_glyphs.data(), m_places.data(), int(m_glyphs.size()));
        m_painter.setPen(m_color);
        m_painter.drawGlyphRun({}, run);
        m_glyphs.clear();
        m_places.clear();
    }

    QPainter& m_painter;
    const std::vector<PagePainter::Face>& m_faces;
    std::vector<Strokes> m_strokes; // since the last fill
    std::vector<const TextItem*> m_texts;
    // The plain lines to draw next, and what they have in common.
    const PagePainter::Face* m_face = nullptr;
    QColor m_color;
    std::vector<quint32> m_glyphs;
    std::vector<QPointF> m_places;
};

} // namespace

bool needsShaping(QStringView text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c >= EndOfPlainCharacters; });
}

QFont typesetFont(const QFont& font, bool shaped)
{
    QFont typeset(font);
    typeset.setPixelSize(int(std::lround(font.pointSizeF() * UnitsPerPoint)));
    typeset.setHintingPreference(QFont::PreferNoHinting);
    typeset.setKerning(false);
    typeset.setStyleStrategy(shaped ? QFont::PreferAntialias
                                    : QFont::StyleStrategy(QFont::PreferNoShaping | QFont::PreferAntialias));
    return typeset;
}

PagePainter::PagePainter(const std::vector<QFont>& fonts)
{
    for (const QFont& font : fonts) {
        const QFont typeset = typesetFont(font);
        const QFontMetricsF metrics(typeset);
        m_faces.push_back(
            {typeset, typesetFont(font, true), QRawFont::fromFont(typeset), metrics.ascent(), metrics.height(), {}});
    }
}

void PagePainter::paint(QPainter& painter, const Page& page) const
{
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
    painter.setBrush(Qt::NoBrush);
    painter.setLayoutDirection(Qt::LayoutDirectionAuto); // by each line's own characters
    painter.scale(1 / UnitsPerPoint, 1 / UnitsPerPoint);
    PageDrawing(painter, m_faces).draw(page);
    painter.restore();
}

QTransform placedOn(QSizeF sheet, const Document& document)
{
    if (document.exactSize)
        return {};
    // Ignore a point, since paper sizes are rounded to it.
    const double fit = std::min(sheet.width() / document.paper.width(), sheet.height() / document.paper.height());
    const double scale = fit > 0.99 ? 1 : fit;
    const QSizeF margin = (sheet - document.paper * scale) / 2;
    return {scale, 0, 0, scale, margin.width(), margin.height()};
}

void paintPage(QPainter& painter, const Document& document, int page)
{
    PagePainter(document.fonts).paint(painter, document.pages[std::size_t(page)]);
}

} // namespace orlo::reporting
