#include "reporting/ReportData.h"

#include "reporting/Selection.h"
#include "store/engine/Database.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <iterator>
#include <numeric>

namespace orlo::reports
{

namespace
{

constexpr int RowsBetweenProgress = 500;
const QString SelectionPlace = QStringLiteral("selection formula");

FormulaNode::Type typeOf(store::FieldType type)
{
    switch (type) {
    case store::FieldType::Boolean:
        return FormulaNode::Type::Condition;
    case store::FieldType::Integer:
    case store::FieldType::Long:
    case store::FieldType::Double:
        return FormulaNode::Type::Number;
    case store::FieldType::Date:
        return FormulaNode::Type::Date;
    case store::FieldType::Text:
    case store::FieldType::Memo:
        break;
    }
    return FormulaNode::Type::Text;
}

/// Visits every formula of a report's own bands and keys.
template <typename Visit>
void eachFormula(Definition& definition, Visit visit)
{
    const auto each = [&](auto& self, std::vector<Row>& rows, bool onPage) -> void {
        for (Row& row : rows) {
            visit(row.condition, onPage);
            for (Element& element : row.elements) {
                visit(element.formula, onPage);
                visit(element.styleChoice, onPage);
                self(self, element.rows, onPage);
            }
        }
    };
    const auto band = [&](Band& one, bool onPage) {
        visit(one.condition, onPage);
        each(each, one.rows, onPage);
    };
    visit(definition.unique, false);
    for (SortKey& key : definition.sort)
        visit(key.formula, false);
    for (ExportColumn& column : definition.exports)
        visit(column.formula, false);
    for (Group& group : definition.groups) {
        visit(group.key, false);
        visit(group.outline, false);
        for (SortKey& key : group.sort)
            visit(key.formula, false);
        band(group.header, false);
        band(group.footer, false);
    }
    for (Band* one : {&definition.reportHeader, &definition.reportFooter, &definition.headings, &definition.detail,
                      &definition.nothing})
        band(*one, false);
    band(definition.pageHeader, true);
    band(definition.pageFooter, true);
}

class Loader
{
public:
    Loader(const DatabaseProvider& databaseOf, const RunFacts& facts, const Progress& progress)
        : m_databaseOf(databaseOf), m_facts(facts), m_progress(progress)
    {
    }

    BoundReport load(const Definition& definition, const RunRequest& request, const Slots& databases,
                     const Formula& selection)
    {
        BoundReport report;
        report.definition = definition;
        for (const NamedSource& named : definition.namedSources)
            readFixed(databases, named);
        report.rows = mainRows(report, databases, selection);
        for (const Lookup& lookup : definition.lookups)
            join(report, lookup, read(databases, lookup.source, lookup.source.query));
        report.rows.fixedNames = m_fixed.fixedNames;
        report.rows.fixed = m_fixed.fixed;
        bind(report);
        try {
            filter(report, selection);
        } catch (const ReportError& error) {
            throw error.inFile(SelectionPlace);
        }
        sort(report);
        if (!report.definition.unique.isEmpty())
            dropRepeated(report);
        for (const auto& [name, inner] : definition.subreports)
            report.subreports.emplace(name.toCaseFolded(), loadSubreport(report, name, *inner, request, databases));
        return report;
    }

private:
    store::Database& database(const Slots& databases, const Source& source)
    {
        const auto slot = databases.find(source.slot);
        if (slot == databases.end() || slot->second.isEmpty())
            throw ReportError(platform::DatabaseNotFound,
                              QStringLiteral("Table slot %1 names no database.").arg(source.slot), source.place);
        return m_databaseOf(slot->second);
    }

    RowSet read(const Slots& databases, const Source& source, const QString& query)
    {
        store::Database& file = database(databases, source);
        try {
            store::Recordset records = file.openRecordset(query);
            RowSet set;
            for (const store::FieldInfo& field : records.fields()) {
                set.columns << field.name;
                set.types.push_back(typeOf(field.type));
            }
            const int total = records.recordCount();
            set.rows.reserve(std::size_t(total));
            for (; !records.eof(); records.moveNext()) {
                if (set.rows.size() % RowsBetweenProgress == 0 && m_progress && !m_progress(0, total))
                    throw Cancelled();
                std::vector<Value>& row = set.rows.emplace_back();
                row.reserve(std::size_t(set.columns.size()));
                for (int column = 0; column < int(set.columns.size()); ++column)
                    row.push_back(records.value(column));
            }
            return set;
        } catch (const ReportError&) {
            throw;
        } catch (const platform::RuntimeError& error) {
            throw ReportError(error.number(), error.description(), source.place);
        }
    }

    /// The first row of a named source, for this report and its subreports; without one its fields are empty.
    void readFixed(const Slots& databases, const NamedSource& named)
    {
        const RowSet set = read(databases, named.source, named.source.query);
        for (int column = 0; column < int(set.columns.size()); ++column) {
            m_fixed.fixedNames << named.name + u'.' + set.columns[column];
            m_fixed.fixed.push_back(set.rows.empty() ? Value() : set.rows.front()[std::size_t(column)]);
        }
    }

    /// The query's rows. Conditions on its own columns go into it, so that few are read of many.
    RowSet mainRows(const BoundReport& report, const Slots& databases, const Formula& selection)
    {
        const Source& source = report.definition.source;
        if (selection.isEmpty())
            return read(databases, source, source.query);
        const RowSet shape = read(databases, source, withCondition(source.query, QStringLiteral("1 = 0")));
        const QString condition = handDown(selection, [&](const QString& field) -> std::optional<QueryColumn> {
            const int column = shape.columnOf(columnNamed(report.definition, field));
            if (column < 0)
                return std::nullopt;
            return QueryColumn{shape.columns[column], shape.types[std::size_t(column)]};
        });
        return read(databases, source, withCondition(source.query, condition));
    }

    /// The column behind a name that the definition's "field" lines give, or the name itself.
    static QString columnNamed(const Definition& definition, const QString& name)
    {
        for (const NamedFormula& field : definition.fields)
            if (field.name.compare(name, Qt::CaseInsensitive) == 0)
                return field.formula.root().name;
        return name;
    }

    static int required(const RowSet& set, const QString& name, Place place)
    {
        const int column = set.columnOf(name);
        if (column < 0)
            throw ReportError(platform::UnknownName, QStringLiteral("There is no field {%1}.").arg(name), place);
        return column;
    }

    /// Makes one row of all that have the same key: their texts, separated by commas.
    static void joinTexts(RowSet& set, std::size_t key)
    {
        QHash<QString, std::size_t> firstOf;
        std::vector<std::vector<Value>> joined;
        for (std::vector<Value>& row : set.rows) {
            const QString name = linkKey(row[key]);
            const auto first = firstOf.constFind(name);
            if (first == firstOf.constEnd()) {
                firstOf.insert(name, joined.size());
                joined.push_back(std::move(row));
                continue;
            }
            for (std::size_t i = 0; i < row.size(); ++i)
                if (Value& value = joined[*first][i]; i != key && !row[i].isNull())
                    value =
                        value.isNull()
                            ? row[i]
                            : Value(QStringList{displayText(value), displayText(row[i])}.join(QLatin1StringView(", ")));
        }
        set.rows = std::move(joined);
    }

    static void join(BoundReport& report, const Lookup& lookup, RowSet other)
    {
        const auto key = std::size_t(required(report.rows, lookup.mainField, lookup.place));
        const auto ownKey = std::size_t(required(other, lookup.ownField, lookup.place));
        if (lookup.joined)
            joinTexts(other, ownKey);
        QHash<QString, std::size_t> byKey;
        for (std::size_t i = other.rows.size(); i-- > 0;)
            if (!other.rows[i][ownKey].isNull())
                byKey.insert(linkKey(other.rows[i][ownKey]), i);
        for (const QString& column : other.columns)
            report.rows.columns << column;
        for (std::vector<Value>& row : report.rows.rows) {
            const auto found = row[key].isNull() ? byKey.constEnd() : byKey.constFind(linkKey(row[key]));
            if (found == byKey.constEnd())
                row.resize(row.size() + std::size_t(other.columns.size()));
            else
                row.insert(row.end(), other.rows[*found].begin(), other.rows[*found].end());
        }
    }

    static int indexOf(const BoundReport& report, const QString& name, std::size_t names)
    {
        const Definition& definition = report.definition;
        if (const int column = report.rows.columnOf(columnNamed(definition, name)); column >= 0)
            return column;
        for (std::size_t i = 0; i < names; ++i)
            if (definition.names[i].name.compare(name, Qt::CaseInsensitive) == 0)
                return int(report.rows.columns.size()) + int(i);
        const int fixed = placeOf(name, report.rows.fixedNames);
        return fixed < 0 ? -1 : int(report.rows.columns.size()) + int(definition.names.size()) + fixed;
    }

    static void bind(BoundReport& report)
    {
        Definition& definition = report.definition;
        for (const NamedFormula& field : definition.fields)
            required(report.rows, field.formula.root().name, field.place);
        for (std::size_t i = 0; i < definition.names.size(); ++i) {
            NamedFormula& named = definition.names[i];
            if (indexOf(report, named.name, i) >= 0)
                throw ReportError(platform::SyntaxError, QStringLiteral("{%1} exists already.").arg(named.name),
                                  named.place);
            bindOne(report, named.formula, i, false);
        }
        eachFormula(definition,
                    [&](Formula& formula, bool onPage) { bindOne(report, formula, definition.names.size(), onPage); });
    }

    static void bindOne(const BoundReport& report, Formula& formula, std::size_t names, bool onPage)
    {
        if (formula.isEmpty())
            return;
        formula.bind([&](const QString& name) { return indexOf(report, name, names); });
        if (!onPage && formula.usesPages())
            throw ReportError(platform::SyntaxError,
                              QStringLiteral("Page numbers stand in page-header and page-footer only."),
                              formula.root().place);
    }

    void filter(BoundReport& report, Formula selection) const
    {
        if (selection.isEmpty())
            return;
        bindOne(report, selection, report.definition.names.size(), false);
        RowScope scope(report.definition, report.rows, m_facts);
        std::vector<std::vector<Value>> kept;
        for (scope.row = 0; scope.row < report.rows.rows.size(); ++scope.row)
            if (selection.holds(scope))
                kept.push_back(std::move(report.rows.rows[scope.row]));
        report.rows.rows = std::move(kept);
    }

    static std::vector<SortKey> sortKeys(const Definition& definition)
    {
        std::vector<SortKey> keys;
        for (const Group& group : definition.groups) {
            keys.insert(keys.end(), group.sort.begin(), group.sort.end());
            keys.push_back({group.key, group.descending});
        }
        keys.insert(keys.end(), definition.sort.begin(), definition.sort.end());
        return keys;
    }

    /// Null comes first, as it does in the store's own order; texts are folded once, not in each comparison.
    void sort(BoundReport& report) const
    {
        const std::vector<SortKey> keys = sortKeys(report.definition);
        const std::size_t count = report.rows.rows.size();
        if (keys.empty() || count < 2)
            return;
        std::vector<Value> values;
        values.reserve(count * keys.size());
        RowScope scope(report.definition, report.rows, m_facts);
        for (scope.row = 0; scope.row < count; ++scope.row)
            for (const SortKey& key : keys) {
                Value value = key.formula.evaluate(scope);
                values.push_back(value.isText() ? Value(value.toText().toCaseFolded()) : std::move(value));
            }
        std::vector<std::size_t> order(count);
        std::iota(order.begin(), order.end(), std::size_t(0));
        std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
            for (std::size_t k = 0; k < keys.size(); ++k) {
                const int sign =
                    ordered(values[a * keys.size() + k], values[b * keys.size() + k], keys[k].formula.root().place);
                if (sign != 0)
                    return keys[k].descending ? sign > 0 : sign < 0;
            }
            return false;
        });
        std::vector<std::vector<Value>> sorted;
        sorted.reserve(count);
        for (const std::size_t i : order)
            sorted.push_back(std::move(report.rows.rows[i]));
        report.rows.rows = std::move(sorted);
    }

    static int ordered(const Value& a, const Value& b, Place place)
    {
        if (a.isNull() || b.isNull())
            return int(b.isNull()) - int(a.isNull());
        if (const auto* left = std::get_if<QString>(&a.data()))
            if (const auto* right = std::get_if<QString>(&b.data()))
                return left->compare(*right);
        // A column of a union may mix kinds: numbers stand before dates, dates before texts.
        const auto rank = [](const Value& value) { return value.isText() ? 2 : value.isDate() ? 1 : 0; };
        return rank(a) != rank(b) ? rank(a) - rank(b) : compareValues(a, b, place);
    }

    void dropRepeated(BoundReport& report) const
    {
        RowScope scope(report.definition, report.rows, m_facts);
        QSet<QString> seen;
        std::vector<std::size_t> kept;
        for (scope.row = 0; scope.row < report.rows.rows.size(); ++scope.row)
            if (const QString key = linkKey(report.definition.unique.evaluate(scope)); !seen.contains(key)) {
                seen.insert(key);
                kept.push_back(scope.row);
            }
        for (std::size_t i = 0; i < kept.size(); ++i)
            if (kept[i] != i)
                report.rows.rows[i] = std::move(report.rows.rows[kept[i]]);
        report.rows.rows.resize(kept.size());
    }

    BoundReport loadSubreport(const BoundReport& main, const QString& name, const Definition& definition,
                              const RunRequest& request, const Slots& mainDatabases)
    {
        const Slots* databases = &mainDatabases;
        for (const auto& [known, own] : request.subreports)
            if (known.compare(name, Qt::CaseInsensitive) == 0)
                databases = &own;
        BoundReport inner = load(definition, request, *databases, Formula());
        if (definition.linkField.isEmpty())
            return inner;
        const auto own = std::size_t(required(inner.rows, definition.linkField, definition.linkPlace));
        inner.linkedIndex = indexOf(main, definition.linkedField, main.definition.names.size());
        if (inner.linkedIndex < 0)
            throw ReportError(platform::UnknownName,
                              QStringLiteral("There is no field {%1}.").arg(definition.linkedField),
                              definition.linkPlace);
        std::map<QString, std::vector<std::vector<Value>>> byKey;
        for (std::vector<Value>& row : inner.rows.rows)
            if (!row[own].isNull())
                byKey[linkKey(row[own])].push_back(std::move(row));
        inner.rows.rows.clear();
        for (auto& [key, rows] : byKey) {
            const std::size_t first = inner.rows.rows.size();
            std::move(rows.begin(), rows.end(), std::back_inserter(inner.rows.rows));
            inner.byLink[key] = {first, inner.rows.rows.size()};
        }
        return inner;
    }

    const DatabaseProvider& m_databaseOf;
    const RunFacts& m_facts;
    const Progress& m_progress;
    RowSet m_fixed; // what the named sources gave so far
};

Formula readSelection(const RunRequest& request)
{
    if (request.selectionFormula.trimmed().isEmpty())
        return {};
    try {
        Formula selection(request.selectionFormula);
        selection.requireCondition();
        return selection;
    } catch (const ReportError& error) {
        throw error.inFile(SelectionPlace);
    }
}

} // namespace

QString linkKey(const Value& value)
{
    if (value.isBool())
        return QString::number(int(value.toBool()));
    return displayText(value).toCaseFolded();
}

std::optional<BoundReport> loadReport(const Definition& definition, const RunRequest& request,
                                      const DatabaseProvider& databaseOf, const RunFacts& facts,
                                      const Progress& progress)
{
    const Formula selection = readSelection(request);
    try {
        return Loader(databaseOf, facts, progress).load(definition, request, request.databases, selection);
    } catch (const Cancelled&) {
        return std::nullopt;
    }
}

} // namespace orlo::reports
