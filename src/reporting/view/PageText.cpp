#include "reporting/view/PageText.h"

#include "reporting/Paint.h"

#include <QFontMetricsF>
#include <QRegularExpression>
#include <QTextLayout>

#include <algorithm>
#include <optional>

namespace orlo::reporting
{

namespace
{

// Measures positions in a line as drawn.
class LineMeasure
{
public:
    LineMeasure(const QString& line, const QFont& font) : m_line(line), m_shaped(needsShaping(line))
    {
        if (!m_shaped) {
            m_metrics.emplace(typesetFont(font));
            return;
        }
        m_layout.setText(line);
        m_layout.setFont(typesetFont(font, true));
        m_layout.beginLayout();
        m_whole = m_layout.createLine();
        m_layout.endLayout();
    }

    // A position's distance from the line's left end, in points.
    [[nodiscard]] double x(qsizetype place) const
    {
        const double units =
            m_shaped ? m_whole.cursorToX(int(place)) : m_metrics->horizontalAdvance(m_line.left(place));
        return units / UnitsPerPoint;
    }

    [[nodiscard]] qsizetype placeAt(double x) const
    {
        if (m_shaped)
            return m_whole.xToCursor(x * UnitsPerPoint);
        qsizetype place = 0;
        while (place < m_line.size() && (this->x(place) + this->x(place + 1)) / 2 < x)
            ++place;
        return place;
    }

private:
    QString m_line;
    bool m_shaped;
    std::optional<QFontMetricsF> m_metrics;
    QTextLayout m_layout;
    QTextLine m_whole;
};

// A text without accents, and where its characters came from.
struct Folded {
    QString text;
    std::vector<qsizetype> places; // empty if nothing moved

    [[nodiscard]] qsizetype placeOf(qsizetype i) const { return places.empty() ? i : places[std::size_t(i)]; }
};

Folded folded(const QString& text)
{
    if (std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80 || c == PageText::LineBreak; }))
        return {text, {}};
    Folded result;
    for (qsizetype i = 0; i < text.size(); ++i)
        for (const QChar c : QString(text[i]).normalized(QString::NormalizationForm_D))
            if (!c.isMark()) {
                result.text += c;
                result.places.push_back(i);
            }
    result.places.push_back(text.size());
    return result;
}

// Matches a text on a page: any blanks match, and lines may be broken after separators within a word.
QRegularExpression patternOf(const QString& text)
{
    QString pattern;
    for (const QString& word : folded(text).text.split(QRegularExpression(QStringLiteral("\\s")), Qt::SkipEmptyParts)) {
        pattern += pattern.isEmpty() ? QStringLiteral("") : QStringLiteral("\\s+");
        bool afterSign = false;
        for (const char32_t character : word.toUcs4()) {
            pattern += afterSign ? QStringLiteral("\\x{2028}?") : QString();
            pattern += QRegularExpression::escape(QString::fromUcs4(&character, 1));
            afterSign = !QChar::isLetterOrNumber(character);
        }
    }
    return QRegularExpression(pattern, QRegularExpression::CaseInsensitiveOption |
                                           QRegularExpression::UseUnicodePropertiesOption);
}

double distance(const QRectF& box, QPointF point)
{
    const double down = std::max({box.top() - point.y(), point.y() - box.bottom(), 0.0});
    const double across = std::max({box.left() - point.x(), point.x() - box.right(), 0.0});
    return 8 * down + across; // the line being pointed along comes before those above or below it
}

} // namespace

PageText::PageText(const Document& document, int page) : m_document(document)
{
    const TextItem* previous = nullptr;
    for (const Item& item : document.pages[std::size_t(page)].items) {
        const auto* text = std::get_if<TextItem>(&item);
        if (!text)
            continue;
        if (previous)
            m_text +=
                text->box.top() < previous->box.bottom() && text->box.left() >= previous->box.right() ? u'\t' : u'\n';
        m_text += QString(text->emptyBefore, u'\t');
        previous = text;
        int number = 0;
        for (const QStringView line : QStringView(text->text).tokenize(u'\n')) {
            if (number > 0)
                m_text += LineBreak;
            m_lines.push_back({m_text.size(), line.size(), text, number++});
            m_text += line;
        }
    }
}

std::vector<QRectF> PageText::boxes(qsizetype from, qsizetype to) const
{
    std::vector<QRectF> found;
    for (const Line& line : m_lines) {
        const qsizetype first = std::max(from, line.start) - line.start;
        const qsizetype last = std::min(to, line.start + line.size) - line.start;
        if (first >= last)
            continue;
        QRectF box = boxOf(line);
        const LineMeasure measure(textOf(line), m_document.fonts[std::size_t(line.item->font)]);
        const auto [left, right] = std::minmax({measure.x(first), measure.x(last)});
        found.emplace_back(box.left() + left, box.top(), right - left, box.height());
    }
    return found;
}

bool PageText::isTextAt(QPointF point) const
{
    return std::any_of(m_lines.begin(), m_lines.end(),
                       [&](const Line& line) { return line.item->box.contains(point); });
}

qsizetype PageText::placeAt(QPointF point) const
{
    const auto nearest = std::min_element(m_lines.begin(), m_lines.end(), [&](const Line& a, const Line& b) {
        return distance(boxOf(a), point) < distance(boxOf(b), point);
    });
    if (nearest == m_lines.end())
        return 0;
    const LineMeasure measure(textOf(*nearest), m_document.fonts[std::size_t(nearest->item->font)]);
    return nearest->start + measure.placeAt(point.x() - nearest->item->box.left());
}

std::pair<qsizetype, qsizetype> PageText::wordAt(qsizetype place) const
{
    const auto ofWord = [this](qsizetype i) {
        return i >= 0 && i < m_text.size() && !m_text[i].isSpace() && m_text[i] != LineBreak;
    };
    qsizetype from = place;
    qsizetype to = place;
    while (ofWord(from - 1))
        --from;
    while (ofWord(to))
        ++to;
    return {from, to};
}

QString PageText::copied(qsizetype from, qsizetype to) const
{
    return m_text.mid(from, to - from).replace(LineBreak, u' ');
}

QRectF PageText::boxOf(const Line& line) const
{
    const QRectF& box = line.item->box;
    const double height = box.height() / double(line.item->text.count(u'\n') + 1);
    return {box.left(), box.top() + line.number * height, box.width(), height};
}

std::vector<TextSpan> findText(const Document& document, const QString& text)
{
    std::vector<TextSpan> spans;
    const QRegularExpression pattern = patternOf(text);
    if (pattern.pattern().isEmpty())
        return spans;
    for (int page = 0; page < int(document.pages.size()); ++page) {
        const Folded whole = folded(PageText(document, page).text());
        for (auto match = pattern.globalMatch(whole.text); match.hasNext();) {
            const QRegularExpressionMatch hit = match.next();
            spans.push_back({page, whole.placeOf(hit.capturedStart()), whole.placeOf(hit.capturedEnd())});
        }
    }
    return spans;
}

} // namespace orlo::reporting
