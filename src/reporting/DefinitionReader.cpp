#include "reporting/Definition.h"

#include "platform/FileSystem.h"
#include "reporting/DefinitionLines.h"

#include <QFile>
#include <QFileInfo>

namespace orlo::reports
{

namespace
{

constexpr int DeepestSubreport = 3;
constexpr qint64 LargestFile = 4'000'000;

class Reader
{
public:
    Reader(DefinitionLines& lines, std::vector<Style> styles, int depth) : m_lines(lines), m_depth(depth)
    {
        if (!styles.empty())
            m_definition.styles = std::move(styles);
    }

    Definition run(bool nested)
    {
        while (m_lines.next()) {
            if (m_lines.closes()) {
                if (!nested)
                    m_lines.fail(QStringLiteral("This brace closes nothing."));
                m_lines.close();
                return check();
            }
            statement(m_lines.word());
        }
        if (nested)
            m_lines.fail(QStringLiteral("The block's closing brace is missing."));
        return check();
    }

private:
    Definition check()
    {
        if (m_definition.source.query.isEmpty())
            m_lines.fail(QStringLiteral("The report has no source."));
        return std::move(m_definition);
    }

    void statement(const QString& word)
    {
        if (Band* band = bandNamed(word))
            readBand(*band);
        else if (word == QLatin1String("report"))
            m_definition.title = m_lines.quoted();
        else if (word == QLatin1String("paper"))
            readPaper();
        else if (word == QLatin1String("margins"))
            readMargins();
        else if (word == QLatin1String("style"))
            readStyle();
        else if (word == QLatin1String("source"))
            m_definition.source = readSource();
        else if (word == QLatin1String("lookup"))
            readLookup();
        else if (word == QLatin1String("let"))
            readLet();
        else if (word == QLatin1String("field"))
            readField();
        else if (word == QLatin1String("sort"))
            m_definition.sort.push_back(readSort());
        else if (word == QLatin1String("unique"))
            m_definition.unique = m_lines.formula();
        else if (word == QLatin1String("group"))
            readGroup();
        else if (word == QLatin1String("export"))
            readExport();
        else if (word == QLatin1String("link"))
            readLink();
        else if (word == QLatin1String("subreport"))
            readSubreport();
        else
            m_lines.failAtWord(QStringLiteral("\"%1\" is no part of a report.").arg(word));
        m_lines.end();
    }

    Band* bandNamed(const QString& word)
    {
        const std::pair<QLatin1String, Band*> bands[] = {
            {QLatin1String("page-header"), &m_definition.pageHeader},
            {QLatin1String("page-footer"), &m_definition.pageFooter},
            {QLatin1String("report-header"), &m_definition.reportHeader},
            {QLatin1String("report-footer"), &m_definition.reportFooter},
            {QLatin1String("headings"), &m_definition.headings},
            {QLatin1String("detail"), &m_definition.detail},
            {QLatin1String("nothing"), &m_definition.nothing},
        };
        for (const auto& [name, band] : bands)
            if (word == name)
                return band;
        return nullptr;
    }

    void readPaper()
    {
        if (m_depth > 0)
            m_lines.fail(QStringLiteral("A subreport has no paper of its own."));
        const QString name = m_lines.word();
        if (name == QLatin1String("letter"))
            m_definition.paper = {612, 792};
        else if (name == QLatin1String("legal"))
            m_definition.paper = {612, 1008};
        else if (name == QLatin1String("a4"))
            m_definition.paper = {595, 842};
        else
            m_lines.failAtWord(QStringLiteral("The paper is letter, legal or a4."));
        if (m_lines.accept("landscape"))
            m_definition.paper.transpose();
        else
            m_lines.accept("portrait");
    }

    void readMargins()
    {
        if (m_depth > 0)
            m_lines.fail(QStringLiteral("A subreport has no margins of its own."));
        QMarginsF& margins = m_definition.margins;
        while (!m_lines.atEnd()) {
            const QString side = m_lines.word();
            const double length = m_lines.length();
            if (length > 144)
                m_lines.fail(QStringLiteral("A margin is two inches at most."));
            if (side == QLatin1String("left"))
                margins.setLeft(length);
            else if (side == QLatin1String("right"))
                margins.setRight(length);
            else if (side == QLatin1String("top"))
                margins.setTop(length);
            else if (side == QLatin1String("bottom"))
                margins.setBottom(length);
            else
                m_lines.failAtWord(QStringLiteral("A margin is left, right, top or bottom."));
        }
    }

    void readStyle()
    {
        const QString name = m_lines.word();
        Style style = m_definition.styles.front();
        style.name = name;
        while (!m_lines.atEnd()) {
            if (m_lines.accept("bold"))
                style.bold = true;
            else if (m_lines.accept("italic"))
                style.italic = true;
            else if (m_lines.accept("gray"))
                style.gray = m_lines.percent();
            else if (m_lines.accept("font"))
                style.family = m_lines.atQuote() ? m_lines.quoted() : m_lines.word();
            else
                style.size = m_lines.length();
        }
        if (!(style.size >= 3 && style.size <= 200))
            m_lines.fail(QStringLiteral("A font's size is 3 to 200 points."));
        const int known = styleNamed(name);
        if (known >= 0)
            m_definition.styles[std::size_t(known)] = style;
        else
            m_definition.styles.push_back(style);
    }

    [[nodiscard]] int styleNamed(const QString& name) const
    {
        for (std::size_t i = 0; i < m_definition.styles.size(); ++i)
            if (m_definition.styles[i].name == name)
                return int(i);
        return -1;
    }

    Source readSource()
    {
        Source source;
        source.place = m_lines.place();
        if (m_lines.accept("slot"))
            source.slot = m_lines.number(0, 99);
        m_lines.open();
        source.query = m_lines.rawBlock().trimmed();
        if (source.query.isEmpty())
            m_lines.fail(QStringLiteral("The query is missing."));
        return source;
    }

    /// lookup {main field} = {own field} slot 1 { query }
    void readLookup()
    {
        Lookup lookup;
        lookup.place = m_lines.place();
        lookup.mainField = m_lines.fieldName();
        m_lines.expect("=");
        lookup.ownField = m_lines.fieldName();
        lookup.source = readSource();
        m_definition.lookups.push_back(std::move(lookup));
    }

    void readLet()
    {
        const Place place = m_lines.place();
        const QString name = m_lines.fieldName();
        m_definition.names.push_back({name, m_lines.assigned(), place});
    }

    /// field {Table.Field} = {Column}
    void readField()
    {
        const Place place = m_lines.place();
        const QString name = m_lines.fieldName();
        m_definition.fields.push_back({name, m_lines.assigned(), place});
        if (m_definition.fields.back().formula.root().kind != FormulaNode::Kind::Field)
            m_lines.fail(QStringLiteral("A field stands for a column: field {Table.Field} = {Column}."));
    }

    SortKey readSort()
    {
        SortKey key;
        key.descending = m_lines.accept("descending");
        key.formula = m_lines.formula();
        return key;
    }

    void readLink()
    {
        if (m_depth == 0)
            m_lines.fail(QStringLiteral("Only a subreport is linked."));
        m_definition.linkPlace = m_lines.place();
        m_definition.linkField = m_lines.fieldName();
        m_lines.expect("=");
        m_definition.linkedField = m_lines.fieldName();
    }

    void readSubreport()
    {
        if (m_depth >= DeepestSubreport)
            m_lines.fail(QStringLiteral("Subreports are nested too deeply."));
        const QString name = m_lines.quoted();
        if (m_definition.subreport(name))
            m_lines.fail(QStringLiteral("There are two subreports \"%1\".").arg(name));
        m_lines.open();
        Reader inner(m_lines, m_definition.styles, m_depth + 1);
        auto definition = std::make_shared<Definition>(inner.run(true));
        if (definition->title.isEmpty())
            definition->title = name;
        m_definition.subreports.emplace_back(name, std::move(definition));
    }

    void readExport()
    {
        m_lines.open();
        while (m_lines.nextInBlock()) {
            ExportColumn column;
            column.heading = m_lines.quoted();
            column.formula = m_lines.assigned();
            m_definition.exports.push_back(std::move(column));
            m_lines.end();
        }
    }

    void readGroup()
    {
        Group group;
        group.name = m_lines.quoted();
        m_lines.open();
        while (m_lines.nextInBlock()) {
            const QString word = m_lines.word();
            if (word == QLatin1String("by")) {
                group.descending = m_lines.accept("descending");
                group.key = m_lines.formula();
            } else if (word == QLatin1String("sort"))
                group.sort.push_back(readSort());
            else if (word == QLatin1String("keep-together"))
                group.keepTogether = true;
            else if (word == QLatin1String("repeat-header"))
                group.repeatHeader = true;
            else if (word == QLatin1String("new-page"))
                group.newPage = true;
            else if (word == QLatin1String("outline"))
                group.outline = m_lines.assigned();
            else if (word == QLatin1String("header"))
                readBand(group.header);
            else if (word == QLatin1String("footer"))
                readBand(group.footer);
            else
                m_lines.failAtWord(QStringLiteral("\"%1\" is no part of a group.").arg(word));
            m_lines.end();
        }
        if (group.key.isEmpty())
            m_lines.fail(QStringLiteral("The group has no key: by {Field}."));
        m_definition.groups.push_back(std::move(group));
    }

    void readBand(Band& band)
    {
        if (m_lines.accept("if"))
            band.condition = m_lines.formulaBeforeBrace();
        m_lines.open();
        while (m_lines.nextInBlock()) {
            const QString word = m_lines.word();
            if (word == QLatin1String("row"))
                readRow(band);
            else if (word == QLatin1String("space")) {
                Row row;
                row.above = m_lines.length();
                band.rows.push_back(std::move(row));
            } else if (word == QLatin1String("rule") || word == QLatin1String("hairline")) {
                Row row;
                row.hairline = word == QLatin1String("hairline");
                if (!row.hairline)
                    row.ruleAbove = m_lines.length();
                if (m_lines.accept("from"))
                    row.left = m_lines.length();
                band.rows.push_back(std::move(row));
            } else {
                Row row;
                row.elements.push_back(readElement(word));
                band.rows.push_back(std::move(row));
            }
            m_lines.end();
        }
    }

    void readRow(Band& band)
    {
        Row row;
        while (!m_lines.atOpening()) {
            if (m_lines.accept("if")) {
                row.condition = m_lines.formulaBeforeBrace();
                break;
            }
            const QString word = m_lines.word();
            if (word == QLatin1String("above"))
                row.above = m_lines.length();
            else if (word == QLatin1String("below"))
                row.below = m_lines.length();
            else if (word == QLatin1String("rule-above"))
                row.ruleAbove = m_lines.length();
            else if (word == QLatin1String("rule-below"))
                row.ruleBelow = m_lines.length();
            else if (word == QLatin1String("hairline"))
                row.hairline = true;
            else if (word == QLatin1String("from"))
                row.left = m_lines.length();
            else if (word == QLatin1String("shade"))
                row.shade = m_lines.percent();
            else
                m_lines.failAtWord(QStringLiteral("\"%1\" is no part of a row.").arg(word));
        }
        m_lines.open();
        while (m_lines.nextInBlock()) {
            row.elements.push_back(readElement(m_lines.word()));
            m_lines.end();
        }
        band.rows.push_back(std::move(row));
    }

    /// text LEFT WIDTH [left|center|right] [STYLE] = formula; tick-box LEFT; subreport "NAME" LEFT
    Element readElement(const QString& word)
    {
        Element element;
        element.place = m_lines.place();
        if (word == QLatin1String("subreport")) {
            element.kind = Element::Kind::Subreport;
            element.subreport = m_lines.quoted();
            element.left = m_lines.atEnd() ? 0 : m_lines.length();
        } else if (word == QLatin1String("tick-box")) {
            element.kind = Element::Kind::TickBox;
            element.left = m_lines.length();
        } else if (word == QLatin1String("text")) {
            readText(element);
        } else {
            m_lines.failAtWord(QStringLiteral("\"%1\" is no part of a band.").arg(word));
        }
        return element;
    }

    void readText(Element& element)
    {
        element.left = m_lines.length();
        if (m_lines.atLength())
            element.width = m_lines.length();
        while (!m_lines.atSign(u'=')) {
            if (m_lines.accept("left"))
                element.alignment = Qt::AlignLeft;
            else if (m_lines.accept("center"))
                element.alignment = Qt::AlignHCenter;
            else if (m_lines.accept("right"))
                element.alignment = Qt::AlignRight;
            else {
                const QString name = m_lines.word();
                element.style = styleNamed(name);
                if (element.style < 0)
                    m_lines.failAtWord(QStringLiteral("There is no style \"%1\".").arg(name));
            }
        }
        element.formula = m_lines.assigned();
    }

    DefinitionLines& m_lines;
    Definition m_definition;
    int m_depth;
};

} // namespace

const Definition* Definition::subreport(const QString& name) const
{
    for (const auto& [known, definition] : subreports)
        if (known.compare(name, Qt::CaseInsensitive) == 0)
            return definition.get();
    return nullptr;
}

Definition readDefinition(const QString& text)
{
    DefinitionLines lines(text);
    return Reader(lines, {}, 0).run(false);
}

Definition readDefinitionFile(const QString& path)
{
    const QString native = platform::nativePath(path);
    const QString name = QFileInfo(native).fileName();
    QFile file(native);
    if (!file.exists() || QFileInfo(native).isDir())
        throw ReportError(platform::FileNotFound, QStringLiteral("The report file can't be found."), {}, native);
    if (!file.open(QIODevice::ReadOnly))
        throw ReportError(platform::PathFileAccess, QStringLiteral("The report file can't be read."), {}, native);
    if (file.size() > LargestFile)
        throw ReportError(platform::SyntaxError, QStringLiteral("This is no report file."), {}, name);
    try {
        return readDefinition(QString::fromUtf8(file.readAll()));
    } catch (const ReportError& error) {
        throw error.inFile(name);
    }
}

} // namespace orlo::reports
