#include "reporting/Layout.h"

#include <algorithm>
#include <iterator>
#include <numeric>

namespace orlo::reporting
{

namespace
{

constexpr std::size_t RowsBetweenProgress = 200;
constexpr std::size_t StripsBetweenLooks = 200;
constexpr double MinColumn = 36; // points
constexpr std::size_t MostCutNamed = 10;
constexpr double LabelTolerance = 0.05; // points

class ReportLayout
{
public:
    ReportLayout(const BoundReport& report, LayoutJob& job, Flow& flow, double left, bool isMain)
        : m_report(report), m_definition(report.definition), m_job(job), m_flow(flow), m_left(left), m_isMain(isMain),
          m_bands(report.definition, job.typesetter, job.textWidth, job.bodyHeight, job.heightLimit),
          m_scope(report.definition, report.rows, job.facts)
    {
        if (const int columns = m_definition.detail.columns; columns > 1 || hasLabels()) {
            m_columnWidth = (job.textWidth - left - m_definition.detail.gap * (columns - 1)) / columns;
            if (m_columnWidth < MinColumn)
                throw ReportError(platform::SyntaxError, QStringLiteral("The columns are too narrow."),
                                  m_definition.detail.place);
            m_columns.emplace(report.definition, job.typesetter, left + m_columnWidth, job.bodyHeight, job.heightLimit);
        }
    }

    void run(RowRange rows)
    {
        try {
            runRows(rows);
        } catch (const ReportError& error) {
            throw m_scope.row < rows.last ? error.atRecord(m_scope.row - rows.first + 1) : error;
        }
    }

private:
    static constexpr std::size_t NoHeading = SIZE_MAX;
    static constexpr std::size_t NoStrip = SIZE_MAX;

    [[nodiscard]] bool hasLabels() const { return m_definition.detail.height > 0; }

    void runRows(RowRange rows)
    {
        m_rows = rows;
        m_scope.row = rows.size() > 0 ? rows.first : SIZE_MAX;
        m_scope.range = rows;
        m_scope.whole = rows;
        append(m_definition.reportHeader, true);
        if (rows.size() == 0) {
            append(m_definition.nothing, false);
        } else {
            const std::size_t heading = beginHeading(m_definition.headings);
            emitGroup(0, rows);
            endHeading(heading);
            m_scope.range = rows;
        }
        noteCutLabels();
        keepWithPrevious(m_definition.reportFooter);
        append(m_definition.reportFooter, false);
    }

    // Appends a band's rows; a row that holds a subreport is replaced by it.
    void append(const Band& band, bool keepWithNext)
    {
        if (band.isEmpty() || (!band.condition.isEmpty() && !band.condition.holds(m_scope)))
            return;
        const std::size_t first = m_flow.strips.size();
        std::size_t afterSubreport = first;
        for (const Row& row : band.rows) {
            const auto inner = std::find_if(row.elements.begin(), row.elements.end(), [](const Element& element) {
                return element.kind == Element::Kind::Subreport;
            });
            const std::size_t before = m_flow.strips.size();
            m_bands.layOutRow(row, m_scope, m_left, m_flow.strips);
            if (inner == row.elements.end())
                continue;
            if (m_flow.strips.size() > before && m_flow.strips.back().items.empty())
                m_flow.strips.pop_back();
            keepRows(stripsFrom(afterSubreport), isLinked(*inner)); // an unlinked list may begin a new page
            if (row.condition.isEmpty() || row.condition.holds(m_scope))
                subreport(*inner);
            afterSubreport = m_flow.strips.size();
        }
        keepRows(stripsFrom(afterSubreport), keepWithNext);
    }

    [[nodiscard]] std::span<Strip> stripsFrom(std::size_t first) { return std::span(m_flow.strips).subspan(first); }

    // A footer must not stand alone at the top of a page.
    void keepWithPrevious(const Band& footer)
    {
        const bool printed = !footer.isEmpty() && (footer.condition.isEmpty() || footer.condition.holds(m_scope));
        if (printed && !m_flow.strips.empty() && !beginsWithSubreport(footer))
            m_flow.strips.back().keepWithNext = true;
    }

    static bool beginsWithSubreport(const Band& band)
    {
        return !band.rows.front().elements.empty() &&
               band.rows.front().elements.front().kind == Element::Kind::Subreport;
    }

    [[nodiscard]] bool isLinked(const Element& element) const
    {
        const auto found = m_report.subreports.find(element.subreport.toCaseFolded());
        return found != m_report.subreports.end() && found->second.linkedIndex >= 0;
    }

    void subreport(const Element& element)
    {
        const auto found = m_report.subreports.find(element.subreport.toCaseFolded());
        if (found == m_report.subreports.end())
            throw ReportError(platform::UnknownName,
                              QStringLiteral("There is no subreport \"%1\".").arg(element.subreport), element.place);
        const BoundReport& inner = found->second;
        RowRange rows{0, inner.rows.rows.size()};
        if (inner.linkedIndex >= 0)
            rows = inner.linkedTo(m_scope.field(inner.linkedIndex));
        const std::size_t kept = m_flow.kept.size();
        m_flow.kept.push_back({m_flow.strips.size(), m_flow.strips.size(), m_mayLeaveEmpty});
        const std::size_t first = m_flow.strips.size();
        ReportLayout layout(inner, m_job, m_flow, m_left + element.left.in(m_job.textWidth - m_left), false);
        layout.m_mayLeaveEmpty = m_mayLeaveEmpty;
        layout.run(rows);
        for (std::size_t i = first; i < m_flow.strips.size(); ++i)
            m_flow.strips[i].row = m_scope.row; // a page that begins here belongs to this record of the main report
        if (m_flow.strips.size() > m_flow.kept[kept].first)
            m_flow.kept[kept].last = m_flow.strips.size();
        else
            m_flow.kept.resize(kept);
    }

    // Appends a heading and registers it for the pages that its strips run on to.
    std::size_t beginHeading(const Band& band)
    {
        if (band.isEmpty())
            return NoHeading;
        append(band, true);
        Flow::Heading heading;
        heading.first = m_flow.strips.size();
        m_scope.repeated = true;
        heading.strips = m_bands.strips(band, m_scope, m_left);
        m_scope.repeated = false;
        m_flow.headings.push_back(std::move(heading));
        return m_flow.headings.size() - 1;
    }

    void endHeading(std::size_t heading)
    {
        if (heading != NoHeading)
            m_flow.headings[heading].last = m_flow.strips.size();
    }

    void emitGroup(std::size_t level, RowRange rows)
    {
        if (level == m_definition.groups.size())
            return emitDetails(rows);
        const Group& group = m_definition.groups[level];
        int number = 0;
        for (std::size_t first = rows.first; first < rows.last;) {
            const RowRange own{first, m_scope.endOfGroup(group, {first, rows.last})};
            m_scope.groups.push_back(own);
            emitOneGroup(group, level, own, ++number);
            m_scope.groups.pop_back();
            first = own.last;
        }
    }

    void emitOneGroup(const Group& group, std::size_t level, RowRange rows, int number)
    {
        const std::size_t start = m_flow.strips.size();
        const std::size_t kept = m_flow.kept.size();
        const bool keepTogether = group.keepTogether && !hasLabels();
        if (keepTogether)
            m_flow.kept.push_back({start, start, group.mayLeaveEmpty});
        const double mayLeaveEmpty =
            std::exchange(m_mayLeaveEmpty, group.keepTogether ? group.mayLeaveEmpty : m_mayLeaveEmpty);
        if (group.newPage)
            m_label = SIZE_MAX; // on a new sheet
        m_scope.row = rows.first;
        m_scope.range = rows;
        m_scope.groupNumber = number;
        if (!group.outline.isEmpty())
            m_flow.outline.push_back(
                {hasLabels() ? NoStrip : start, int(level), displayText(group.outline.evaluate(m_scope))});
        std::size_t heading = NoHeading;
        if (group.repeatHeader)
            heading = beginHeading(group.header);
        else
            append(group.header, true);
        emitGroup(level + 1, rows);
        endHeading(heading);
        m_scope.range = rows;
        m_scope.groupNumber = number;
        keepWithPrevious(group.footer);
        append(group.footer, false);
        if (group.newPage && rows.first != m_rows.first && start < m_flow.strips.size())
            m_flow.strips[start].breakBefore = true;
        if (keepTogether)
            m_flow.kept[kept].last = m_flow.strips.size();
        m_mayLeaveEmpty = mayLeaveEmpty;
    }

    void emitDetails(RowRange rows)
    {
        for (std::size_t row = rows.first; row < rows.last; ++row) {
            m_scope.row = row;
            if (hasLabels())
                appendLabel();
            else if (m_columns)
                appendInColumns();
            else
                appendDetail();
            recordDone();
        }
        m_filledColumns = 0;
    }

    void recordDone()
    {
        if (++m_done == m_rows.size())
            return;
        if (m_isMain && m_job.watch && m_flow.strips.size() >= m_watched + StripsBetweenLooks) {
            m_watched = m_flow.strips.size();
            if (m_job.watch(m_flow))
                m_job.watch = {};
        }
        if (m_done % RowsBetweenProgress == 0)
            m_job.progress(m_done, m_rows.size());
    }

    void appendDetail()
    {
        const std::size_t first = m_flow.strips.size();
        append(m_definition.detail, false);
        if (first < m_flow.strips.size())
            m_flow.strips[first].beginsRecord = m_isMain;
    }

    // Puts the record in the next column, line by line, so that page breaks keep the order.
    void appendInColumns()
    {
        std::vector<Strip> strips = m_columns->strips(m_definition.detail, m_scope, m_left);
        if (strips.empty())
            return;
        const double height = heightOf(strips);
        if (height > m_job.heightLimit) { // a record longer than a page gets the full width
            keepRows(strips, false);
            strips.front().beginsRecord = m_isMain;
            std::move(strips.begin(), strips.end(), std::back_inserter(m_flow.strips));
            m_filledColumns = 0;
            return;
        }
        if (m_filledColumns == 0)
            appendLine();
        Strip& line = m_flow.strips.back();
        place(std::move(strips), m_filledColumns, line);
        line.height = std::max(line.height, height);
        m_filledColumns = (m_filledColumns + 1) % m_definition.detail.columns;
    }

    // Puts the record on the next label, by line or by column; the first sheet may have labels missing.
    void appendLabel()
    {
        const Band& detail = m_definition.detail;
        if (!detail.condition.isEmpty() && !detail.condition.holds(m_scope))
            return;
        const auto columns = std::size_t(detail.columns);
        const auto linesOfSheet =
            std::max(std::size_t((m_job.bodyHeight + HeightTolerance) / detail.height), std::size_t(1));
        const std::size_t ofSheet = linesOfSheet * columns;
        if (m_sheet == NoStrip || m_label >= ofSheet) {
            m_label = m_sheet == NoStrip ? std::size_t(detail.skip) % ofSheet : 0;
            m_sheet = m_flow.strips.size();
        }
        const std::size_t line = detail.down ? m_label % linesOfSheet : m_label / columns;
        const std::size_t column = detail.down ? m_label / linesOfSheet : m_label % columns;
        ++m_label;
        while (m_flow.strips.size() <= m_sheet + line) {
            appendLine();
            m_flow.strips.back().height = detail.height;
            m_flow.strips.back().breakBefore = m_flow.strips.size() == m_sheet + 1;
        }
        for (auto mark = m_flow.outline.rbegin(); mark != m_flow.outline.rend() && mark->strip == NoStrip; ++mark)
            mark->strip = m_sheet + line;
        fillLabel(m_flow.strips[m_sheet + line], int(column));
    }

    void fillLabel(Strip& line, int column)
    {
        std::vector<Strip> strips = m_columns->strips(m_definition.detail, m_scope, m_left);
        const std::size_t before = line.items.size();
        place(std::move(strips), column, line);
        const std::size_t whole = line.items.size();
        cutItems(line.items, before, m_definition.detail.height);
        if (line.items.size() < whole || m_wasCut)
            m_cutRecords.push_back(m_scope.row + 1);
    }

    // Warns of the records that were cut: the first few, and the number of the others.
    void noteCutLabels()
    {
        const std::size_t count = m_cutRecords.size();
        QStringList named;
        for (std::size_t i = 0; i < std::min(count, MostCutNamed); ++i)
            named << QString::number(m_cutRecords[i]);
        const QString last = count > MostCutNamed ? QStringLiteral("%1 others").arg(count - MostCutNamed)
                             : count > 0          ? named.takeLast()
                                                  : QString();
        if (count == 1)
            m_job.typesetter.note(QStringLiteral("Record %1 is too long for its label and cut.").arg(last));
        else if (count > 1)
            m_job.typesetter.note(QStringLiteral("Records %1 and %2 are too long for their labels and cut.")
                                      .arg(named.join(QStringLiteral(", ")), last));
    }

    // Removes what is below a height: lines of texts, the lower part of shades, bars and vertical lines, and whole
    // pictures and tick-boxes.
    void cutItems(std::vector<Item>& items, std::size_t first, double height)
    {
        m_wasCut = false;
        const double limit = height + LabelTolerance;
        const auto isOutside = [&](Item& item) {
            if (auto* text = std::get_if<TextItem>(&item))
                return text->box.bottom() > limit && !cutText(*text, limit);
            if (auto* line = std::get_if<LineItem>(&item)) {
                if (line->from.y() <= limit && line->to.y() > limit) // a vertical line
                    line->to.setY(height);
                return line->to.y() > limit;
            }
            if (const auto* picture = std::get_if<PictureItem>(&item))
                return picture->box.bottom() > limit;
            auto& [box, width, color, fill] = std::get<BoxItem>(item);
            if (box.bottom() > limit && fill.alpha() > 0)
                box.setBottom(std::max(height, box.top()));
            return box.bottom() > limit;
        };
        items.erase(std::remove_if(items.begin() + std::ptrdiff_t(first), items.end(), isOutside), items.end());
    }

    // Keeps a text's lines that end above the limit; false if there are none.
    bool cutText(TextItem& text, double limit)
    {
        const QStringList lines = text.text.split(u'\n');
        const double lineHeight = text.box.height() / double(lines.size());
        const auto fits = qsizetype((limit - text.box.top()) / lineHeight);
        if (fits <= 0)
            return false;
        m_wasCut = true;
        text.text = lines.first(fits).join(u'\n');
        text.box.setHeight(lineHeight * double(fits));
        return true;
    }

    void appendLine()
    {
        m_flow.strips.emplace_back();
        m_flow.strips.back().beginsRecord = m_isMain;
        m_flow.strips.back().row = m_scope.row;
    }

    // Puts a record's strips into a column of the line.
    void place(std::vector<Strip>&& strips, int column, Strip& line) const
    {
        QPointF at(column * (m_columnWidth + m_definition.detail.gap), 0);
        for (Strip& strip : strips) {
            for (Item& item : strip.items) {
                moveItem(item, at);
                line.items.push_back(std::move(item));
            }
            at.ry() += strip.height;
        }
        line.lastRow = std::max(line.lastRow, m_scope.row);
    }

    static double heightOf(const std::vector<Strip>& strips)
    {
        return std::accumulate(strips.begin(), strips.end(), 0.0,
                               [](double sum, const Strip& strip) { return sum + strip.height; });
    }

    const BoundReport& m_report;
    const Definition& m_definition;
    LayoutJob& m_job;
    Flow& m_flow;
    double m_left;
    bool m_isMain;
    BandLayout m_bands;
    RowScope m_scope;
    RowRange m_rows;
    double m_mayLeaveEmpty = 1; // share of a page, for the contents of the innermost group around it
    std::size_t m_done = 0;
    std::size_t m_watched = 0;           // strips when the watch last looked
    std::optional<BandLayout> m_columns; // of the detail band, if it has columns
    double m_columnWidth = 0;
    int m_filledColumns = 0;       // of the line being filled
    std::size_t m_sheet = NoStrip; // the first line of the sheet being filled
    std::size_t m_label = 0;       // the next one on that sheet
    bool m_wasCut = false;         // the last label
    std::vector<std::size_t> m_cutRecords;
};

} // namespace

Flow layOut(const BoundReport& report, LayoutJob job)
{
    Flow flow;
    ReportLayout(report, job, flow, 0, true).run({0, report.rows.rows.size()});
    return flow;
}

Flow soFar(const Flow& flow)
{
    Flow part = flow;
    for (KeptTogether& kept : part.kept)
        if (kept.last == kept.first)
            kept.last = part.strips.size();
    for (Flow::Heading& heading : part.headings)
        if (heading.last == 0)
            heading.last = part.strips.size();
    return part;
}

} // namespace orlo::reporting
