#include "reporting/FormulaFunctions.h"
#include "reporting/Layout.h"

#include <algorithm>

namespace orlo::reporting
{

namespace
{

constexpr double HairlineWidth = 0.3; // points
constexpr float HairlineGray = 0.65F;
constexpr double ShareOfAscent = 0.86; // of a capital letter's height
constexpr int FewLetters = 4;          // a line of an address that was broken for lack of room has more
constexpr int PartsOfLimit = 8;        // a row above the height limit is cut into parts of this share of it

// True for elements that take their height from the texts beside them, or state it.
bool isMark(const Element& element)
{
    return element.kind == Element::Kind::TickBox || element.kind == Element::Kind::Bar;
}

} // namespace

void keepRows(std::span<Strip> strips, bool withNext)
{
    for (Strip& strip : strips)
        strip.keepWithNext = &strip == &strips.back() ? withNext : !strip.goesOn;
}

void moveItem(Item& item, QPointF by)
{
    std::visit(
        [&](auto& one) {
            if constexpr (std::is_same_v<std::decay_t<decltype(one)>, LineItem>) {
                one.from += by;
                one.to += by;
            } else {
                one.box.translate(by);
            }
        },
        item);
}

BandLayout::BandLayout(const Definition& definition, Typesetter& typesetter, double textWidth, double bodyHeight,
                       double heightLimit)
    : m_definition(definition), m_typesetter(typesetter), m_textWidth(textWidth), m_bodyHeight(bodyHeight),
      m_heightLimit(heightLimit)
{
    for (const Style& style : definition.styles) {
        m_fonts.push_back(typesetter.font(style));
        m_colors.push_back(style.color);
    }
}

std::vector<Strip> BandLayout::strips(const Band& band, const RowScope& scope, double left) const
{
    std::vector<Strip> strips;
    if (band.condition.isEmpty() || band.condition.holds(scope))
        for (const Row& row : band.rows)
            layOutRow(row, scope, left, strips);
    return strips;
}

void BandLayout::layOutRow(const Row& row, const RowScope& scope, double left, std::vector<Strip>& strips) const
{
    if (!row.condition.isEmpty() && !row.condition.holds(scope))
        return;
    Content content = contentOf(row, scope, left);
    const double height = heightOf(row, content);
    if (height > m_heightLimit && !content.beside.empty()) {
        layOutBelow(row, scope, left, strips);
        return;
    }
    // Cuts a high row between lines: each part takes as many lines of each cell as fit into a share of the limit, so
    // that the parts fill pages to the end. Beside a picture, the first part takes as many as there is room for, unless
    // the picture itself is cut at the end of the page.
    const double limit = height > m_heightLimit ? m_heightLimit / PartsOfLimit : m_heightLimit;
    const double bottom = row.above + row.ruleAbove + content.pictures;
    const double first = bottom <= m_bodyHeight ? std::max(limit, bottom) : limit;
    for (bool top = true, more = true; more; top = false) {
        Strip strip = part(row, content, top ? first : limit, top);
        more = strip.goesOn;
        strip.row = scope.row;
        addDecoration(row, left, strip.height, top, !more, strip);
        for (const Cell& cell : content.cells)
            if (cell.element->kind == Element::Kind::Line)
                strip.items.push_back(
                    LineItem{{cell.left, 0}, {cell.left, strip.height}, cell.element->thickness, cell.element->color});
        strips.push_back(std::move(strip));
    }
}

BandLayout::Content BandLayout::contentOf(const Row& row, const RowScope& scope, double left) const
{
    Content content;
    content.cells.reserve(row.elements.size());
    for (const Element& element : row.elements) {
        if (element.kind == Element::Kind::Subreport || element.kind == Element::Kind::Rows ||
            (element.kind == Element::Kind::Picture && element.picture < 0))
            continue;
        const Cell& added = content.cells.emplace_back(cell(element, scope, left));
        if (element.kind == Element::Kind::Text || isMark(element))
            content.ascent =
                std::max({content.ascent, m_typesetter.ascent(added.font), isMark(element) ? element.height : 0});
        if (element.kind == Element::Kind::Picture)
            content.pictures = std::max(content.pictures, element.height);
    }
    content.beside = blocks(row, scope, left);
    return content;
}

double BandLayout::heightOf(const Row& row, const Content& content) const
{
    double height = content.pictures;
    for (const Cell& cell : content.cells)
        height = std::max(height, double(cell.lines.size()) * m_typesetter.lineHeight(cell.font));
    for (const Block& block : content.beside)
        height = std::max(height, block.height);
    return row.above + row.ruleAbove + height;
}

void BandLayout::layOutBelow(const Row& row, const RowScope& scope, double left, std::vector<Strip>& strips) const
{
    Row own = row;
    std::erase_if(own.elements, [](const Element& element) { return element.kind == Element::Kind::Rows; });
    layOutRow(own, scope, left, strips);
    for (const Element& element : row.elements)
        for (const Row& inner : element.rows)
            layOutRow(inner, scope, left + element.left.in(m_textWidth - left), strips);
}

Strip BandLayout::part(const Row& row, Content& content, double limit, bool top) const
{
    Strip strip;
    strip.items.reserve(content.cells.size() + 2);
    const double textTop = top ? row.above + row.ruleAbove : 0;
    double bottom = textTop;
    int empty = 0;
    for (Cell& cell : content.cells) {
        const double lineHeight = m_typesetter.lineHeight(cell.font);
        const double y = textTop + (top ? content.ascent - m_typesetter.ascent(cell.font) : 0);
        const auto room = std::max(qsizetype((limit - y) / lineHeight), qsizetype(1));
        const qsizetype count = std::min(cell.lines.size() - cell.done, room);
        if (top)
            bottom = std::max(bottom, addFigure(cell, textTop, content.ascent, strip));
        if (count > 0) {
            const std::size_t at = strip.items.size();
            addText(cell, count, y, strip);
            std::get<TextItem>(strip.items[at]).emptyBefore = std::exchange(empty, 0);
            bottom = std::max(bottom, y + double(count) * lineHeight);
        }
        empty += int(cell.element->kind == Element::Kind::Text && cell.lines.isEmpty());
        cell.done += count;
        strip.goesOn = strip.goesOn || cell.done < cell.lines.size();
    }
    for (Block& block : content.beside) {
        for (Item& item : block.items) {
            moveItem(item, {0, textTop});
            strip.items.push_back(std::move(item));
        }
        bottom = std::max(bottom, textTop + block.height);
    }
    strip.height = bottom + (strip.goesOn ? 0 : row.below + row.ruleBelow);
    return strip;
}

double BandLayout::addFigure(const Cell& cell, double textTop, double ascent, Strip& strip) const
{
    const Element& element = *cell.element;
    if (element.kind == Element::Kind::Picture) {
        const QRectF box(cell.left, textTop, cell.width, element.height);
        strip.items.push_back(PictureItem{box, m_definition.pictures[std::size_t(element.picture)]});
        return box.bottom();
    }
    if (!isMark(element) && element.kind != Element::Kind::Rule)
        return textTop;
    addMark(cell, textTop + ascent, strip);
    const double line = ascent - m_typesetter.ascent(cell.font) + m_typesetter.lineHeight(cell.font);
    return textTop + (isMark(element) ? line : ascent + element.thickness);
}

std::vector<BandLayout::Block> BandLayout::blocks(const Row& row, const RowScope& scope, double left) const
{
    std::vector<Block> blocks;
    for (const Element& element : row.elements) {
        if (element.kind != Element::Kind::Rows)
            continue;
        std::vector<Strip> strips;
        for (const Row& inner : element.rows)
            layOutRow(inner, scope, left + element.left.in(m_textWidth - left), strips);
        Block& block = blocks.emplace_back();
        for (Strip& strip : strips) {
            for (Item& item : strip.items) {
                moveItem(item, {0, block.height});
                block.items.push_back(std::move(item));
            }
            block.height += strip.height;
        }
    }
    return blocks;
}

BandLayout::Cell BandLayout::cell(const Element& element, const RowScope& scope, double left) const
{
    int style = element.style;
    if (!element.styleChoice.isEmpty()) {
        const QString name = displayText(element.styleChoice.evaluate(scope));
        style = m_definition.styleNamed(name);
        if (style < 0)
            throw ReportError(platform::UnknownName, QStringLiteral("There is no style \"%1\".").arg(name),
                              element.styleChoice.place());
    }
    const double room = m_textWidth - left;
    Cell cell{&element, {}, left + element.left.in(room), element.width.in(room), style, m_fonts[std::size_t(style)]};
    if (element.kind == Element::Kind::Text) {
        const double own = std::max(m_textWidth - cell.left, 1.0);
        cell.width = element.width.isNone() ? own : std::min(cell.width, own);
        const QString text = displayText(element.formula.evaluate(scope));
        cell.lines = m_typesetter.broken(cell.font, text, cell.width);
        if (cell.lines.size() > 1 && cell.lines.size() * FewLetters > text.size() && !fitsAnyWord(cell, text))
            m_typesetter.note(QStringLiteral("This column is too narrow for any word."), element.place);
    }
    if (element.kind == Element::Kind::Bar) {
        const Value share = element.formula.evaluate(scope);
        cell.width *= share.isNull() ? 0 : std::clamp(numberArgument(share, element.formula.place()), 0.0, 1.0);
    }
    return cell;
}

bool BandLayout::fitsAnyWord(const Cell& cell, const QString& text) const
{
    const QStringList words = text.simplified().split(u' ');
    return std::any_of(words.begin(), words.end(),
                       [&](const QString& word) { return m_typesetter.width(cell.font, word) <= cell.width; });
}

// Adds what stands on the base line of a row's texts.
void BandLayout::addMark(const Cell& cell, double base, Strip& strip) const
{
    const Element& element = *cell.element;
    const double usual = m_typesetter.ascent(cell.font) * ShareOfAscent;
    const double height = element.height > 0 ? element.height : usual;
    if (element.kind == Element::Kind::TickBox)
        strip.items.push_back(
            BoxItem{QRectF(cell.left, base - height, height, height), 0.75, Qt::black, Qt::transparent});
    else if (element.kind == Element::Kind::Rule)
        strip.items.push_back(
            LineItem{{cell.left, base}, {cell.left + cell.width, base}, element.thickness, element.color});
    else if (cell.width > 0)
        strip.items.push_back(
            BoxItem{QRectF(cell.left, base - height, cell.width, height), 0, Qt::black, element.color});
}

void BandLayout::addDecoration(const Row& row, double left, double height, bool top, bool bottom, Strip& strip) const
{
    const double from = left + row.left.in(m_textWidth - left);
    const double to = row.right.isNone() ? m_textWidth : left + row.right.in(m_textWidth - left);
    static const QColor hairline = QColor::fromRgbF(HairlineGray, HairlineGray, HairlineGray);
    if (row.fill.isValid())
        strip.items.insert(strip.items.begin(), BoxItem{QRectF(from, 0, to - from, height), 0, Qt::black, row.fill});
    if (row.ruleAbove > 0 && top)
        strip.items.push_back(
            LineItem{{from, row.ruleAbove / 2}, {to, row.ruleAbove / 2}, row.ruleAbove, row.ruleColor});
    if (row.hairline && bottom)
        strip.items.push_back(LineItem{{from, height}, {to, height}, HairlineWidth, hairline});
    if (row.ruleBelow > 0 && bottom)
        strip.items.push_back(LineItem{
            {from, height - row.ruleBelow / 2}, {to, height - row.ruleBelow / 2}, row.ruleBelow, row.ruleColor});
}

void BandLayout::addText(const Cell& cell, qsizetype count, double y, Strip& strip) const
{
    const double lineHeight = m_typesetter.lineHeight(cell.font);
    const QColor color = m_colors[std::size_t(cell.style)];
    if (cell.element->alignment == Qt::AlignLeft) {
        const QStringList part = cell.lines.mid(cell.done, count);
        double width = 0;
        for (const QString& line : part)
            width = std::max(width, m_typesetter.width(cell.font, line));
        strip.items.push_back(TextItem{QRectF(cell.left, y, width, lineHeight * double(count)),
                                       count == 1 ? part.front() : part.join(u'\n'), cell.font, color, 0});
        return;
    }
    // Lines that don't start at the same x become items of their own, so renderers needn't measure.
    for (qsizetype i = 0; i < count; ++i) {
        const QString& line = cell.lines[cell.done + i];
        const double width = m_typesetter.width(cell.font, line);
        const double free = std::max(cell.width - width, 0.0);
        const double x = cell.left + (cell.element->alignment == Qt::AlignRight ? free : free / 2);
        strip.items.push_back(
            TextItem{QRectF(x, y + lineHeight * double(i), width, lineHeight), line, cell.font, color, 0});
    }
}

} // namespace orlo::reporting
