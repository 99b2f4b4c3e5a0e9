#include "reporting/ReportData.h"

#include "reporting/FormulaStands.h"
#include "reporting/RowOrder.h"
#include "reporting/Selection.h"
#include "store/engine/Database.h"
#include "store/engine/Field.h"
#include "store/engine/SqlError.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>
#include <iterator>

namespace orlo::reporting
{

namespace
{

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

// The position of what the store rejects in a query: the store's own position, or that of the unknown name. The
// statement's beginning if neither is known.
Place placeInQuery(const Source& source, const QString& statement, const platform::RuntimeError& error)
{
    qsizetype at = -1;
    static const QRegularExpression unknown(QStringLiteral("no such \\w+: ([^)]+)"));
    if (const auto* own = dynamic_cast<const store::SqlError*>(&error)) {
        if (own->statement() == statement) // the query is part of this statement, which isn't a stored query's
            at = own->position() - statement.indexOf(source.query);
    } else if (const auto named = unknown.match(error.description()); named.hasMatch()) {
        static const QRegularExpression quotes(QStringLiteral("\"[^\"]*\"|'[^']*'|#[^#]*#"));
        QString bare = source.query;
        for (const QRegularExpressionMatch& quote : quotes.globalMatch(source.query))
            bare.replace(quote.capturedStart(), quote.capturedLength(), QString(quote.capturedLength(), u' '));
        at = bare.indexOf(
            QRegularExpression(QStringLiteral("(?<!\\w)%1(?!\\w)").arg(QRegularExpression::escape(named.captured(1))),
                               QRegularExpression::CaseInsensitiveOption));
    }
    if (at < 0 || at > source.query.size())
        return source.place;
    const QString before = source.query.left(at);
    return {source.queryPlace.line + int(before.count(u'\n')), int(at - (before.lastIndexOf(u'\n') + 1)) + 1,
            source.queryPlace.file};
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
        orderRows(report, m_facts, m_progress);
        const RowSet own = m_fixed;
        for (const auto& [name, inner] : definition.subreports) {
            report.subreports.emplace(name.toCaseFolded(), loadSubreport(report, name, *inner, request, databases));
            m_fixed = own;
        }
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
            const PartProgress reading(m_progress, 0, RowsRead);
            store::Recordset records = file.openRecordset(query, [&] { reading(0, 0); });
            RowSet set;
            for (const store::Field& field : records.fields()) {
                set.columns << field.name;
                set.types.push_back(typeOf(field.type));
            }
            const int total = records.recordCount();
            set.rows.reserve(std::size_t(total));
            for (; !records.eof(); records.moveNext()) {
                reading.row(set.rows.size(), std::size_t(total));
                std::vector<Value>& row = set.rows.emplace_back();
                row.reserve(std::size_t(set.columns.size()));
                for (int column = 0; column < int(set.columns.size()); ++column)
                    row.push_back(records.value(column));
            }
            return set;
        } catch (const platform::RuntimeError& error) {
            throw ReportError(error.number(), error.description(), placeInQuery(source, query, error));
        }
    }

    // Reads a named source's first row, for this report and its subreports; without a row its fields are empty.
    void readFixed(const Slots& databases, const NamedSource& named)
    {
        const RowSet set = read(databases, named.source, named.source.query);
        for (int column = 0; column < int(set.columns.size()); ++column) {
            const QString name = named.name + u'.' + set.columns[column];
            int place = placeOf(name, m_fixed.fixedNames);
            if (place < 0) {
                place = int(m_fixed.fixed.size());
                m_fixed.fixedNames << name;
                m_fixed.fixed.emplace_back();
            }
            m_fixed.fixed[std::size_t(place)] = set.rows.empty() ? Value() : set.rows.front()[std::size_t(column)];
        }
    }

    // Reads the query's rows. Conditions on its own columns become part of it, so that fewer rows are read.
    RowSet mainRows(const BoundReport& report, const Slots& databases, const Formula& selection)
    {
        const Source& source = report.definition.source;
        if (selection.isEmpty())
            return read(databases, source, source.query);
        const RowSet shape = shapeOf(databases, source);
        const QString condition = handDown(selection, [&](const QString& field) -> std::optional<QueryColumn> {
            const int column = shape.columnOf(columnNamed(report.definition, field));
            if (column < 0)
                return std::nullopt;
            return QueryColumn{shape.columns[column], shape.types[std::size_t(column)]};
        });
        return read(databases, source, withCondition(source.query, condition));
    }

    // The query's columns. What is wrong in it is told of the query as it is written, not of the one around it.
    RowSet shapeOf(const Slots& databases, const Source& source)
    {
        try {
            return read(databases, source, withCondition(source.query, QStringLiteral("1 = 0")));
        } catch (const ReportError&) {
            return read(databases, source, source.query);
        }
    }

    // The column that a "field" line of the definition gives for a name, or the name itself.
    static QString columnNamed(const Definition& definition, const QString& name)
    {
        for (const FieldName& field : definition.fields)
            if (field.name.compare(name, Qt::CaseInsensitive) == 0)
                return field.column;
        return name;
    }

    static int required(const RowSet& set, const QString& name, Place place)
    {
        const int column = set.columnOf(name);
        if (column < 0)
            throw ReportError(platform::UnknownName, QStringLiteral("There is no field {%1}.").arg(name), place);
        return column;
    }

    // Joins all rows with the same key into one: their texts, separated by commas.
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
        for (std::size_t i = names; i-- > 0;) // the last definition wins
            if (definition.names[i].name.compare(name, Qt::CaseInsensitive) == 0)
                return int(report.rows.columns.size()) + int(i);
        const int fixed = placeOf(name, report.rows.fixedNames);
        return fixed < 0 ? -1 : int(report.rows.columns.size()) + int(definition.names.size()) + fixed;
    }

    static void bind(BoundReport& report)
    {
        Definition& definition = report.definition;
        for (const FieldName& field : definition.fields)
            required(report.rows, field.column, field.place);
        for (std::size_t i = 0; i < definition.names.size(); ++i) {
            NamedFormula& named = definition.names[i];
            if (indexOf(report, named.name, 0) >= 0)
                throw ReportError(platform::SyntaxError, QStringLiteral("{%1} exists already.").arg(named.name),
                                  named.place);
            bindOne(report, named.formula, i);
        }
        eachFormula(definition, [&](Formula& formula, Stands stands) {
            bindOne(report, formula, definition.names.size());
            checkFormula(report, formula, stands);
        });
    }

    static void bindOne(const BoundReport& report, Formula& formula, std::size_t names)
    {
        if (!formula.isEmpty())
            formula.bind([&](const QString& name) { return indexOf(report, name, names); });
    }

    static bool holdsAt(const Formula& selection, const RowScope& scope)
    {
        try {
            return selection.holds(scope);
        } catch (const ReportError& error) {
            throw error.atRecord(scope.row + 1);
        }
    }

    void filter(BoundReport& report, Formula selection) const
    {
        if (selection.isEmpty())
            return;
        bindOne(report, selection, report.definition.names.size());
        checkFormula(report, selection, Stands::InRows);
        RowScope scope(report.definition, report.rows, m_facts);
        std::vector<std::vector<Value>> kept;
        const PartProgress progress(m_progress, RowsRead, RowsRead);
        for (scope.row = 0; scope.row < report.rows.rows.size(); ++scope.row) {
            progress.row(scope.row, report.rows.rows.size());
            if (holdsAt(selection, scope))
                kept.push_back(std::move(report.rows.rows[scope.row]));
        }
        report.rows.rows = std::move(kept);
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
    RowSet m_fixed; // from the named sources so far
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

RowRange BoundReport::linkedTo(const Value& value) const
{
    const auto linked = value.isNull() ? byLink.end() : byLink.find(linkKey(value));
    return linked == byLink.end() ? RowRange{} : linked->second;
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

} // namespace orlo::reporting
