#include "store/jet/Import.h"

#include "platform/Logging.h"
#include "platform/RuntimeError.h"
#include "store/engine/Catalogue.h"
#include "store/engine/Connection.h"
#include "store/engine/Conversion.h"
#include "store/engine/TableSql.h"
#include "store/jet/BulkLoad.h"
#include "store/jet/Definitions.h"
#include "store/jet/FormerRows.h"
#include "store/jet/HelperStream.h"
#include "store/schema/Schema.h"

#include <QElapsedTimer>

#include <cmath>
#include <span>

namespace orlo::store::jet
{

using platform::RuntimeError;

namespace
{

constexpr qsizetype SureDigits = 15; // significant digits of a double
constexpr qsizetype MaxLines = 12;
constexpr qsizetype MaxReasons = 5;
constexpr int ProgressEvery = 100; // ms

// Counts digits without leading and trailing zeros.
qsizetype countDigits(const QString& number)
{
    QStringView text = number;
    while (number.contains(u'.') && text.endsWith(u'0'))
        text.chop(1);
    const auto* first = std::ranges::find_if(text, [](QChar c) { return c > u'0'; });
    return std::count_if(first, text.end(), [](QChar c) { return c.isDigit(); });
}

bool isTextual(FieldType type)
{
    return type == FieldType::Text || type == FieldType::Memo;
}

QString refusalOf(int number)
{
    switch (number) {
    case platform::DuplicateKey:
        return QStringLiteral("the key is there already");
    case platform::NullInPrimaryKey:
        return QStringLiteral("the key is missing");
    case platform::ZeroLengthNotAllowed:
        return QStringLiteral("an empty text where none can be");
    case platform::FieldTooSmall:
        return QStringLiteral("the text is too long");
    case platform::Overflow:
        return QStringLiteral("the number is too large");
    default:
        return QStringLiteral("a value of another type");
    }
}

bool isWhole(FieldType type)
{
    return type == FieldType::Integer || type == FieldType::Long;
}

// Fills one table of the new file.
class TableFill
{
public:
    TableFill(Connection& connection, BulkLoad& load, const FormerTable& table)
        : m_connection(connection), m_load(load), m_table(table)
    {
        for (const QString& name : table.targetFields)
            for (const Field& field : table.target.fields())
                if (field.name == name)
                    m_fields.push_back(&field);
    }

    // Takes the rows up to the table's end, with a callback for each.
    template <class Each>
    void run(FormerRows& rows, const Each& each)
    {
        if (!m_table.isLeft)
            m_load.begin(m_table.target, m_table.targetFields);
        m_row = rows.row();
        for (; rows.next(); each())
            if (!m_table.isLeft)
                takeRow();
        m_rows = rows.count().rows;
        qCInfo(platform::takeoverLog).noquote() << words(rows.count());
    }

    // Creates the "_Kept" table for rows refused wholly or partly.
    void keep(QStringList& taken, Report& report)
    {
        if (m_kept.empty())
            return;
        const QString name = freeName(m_table.target.name() + QStringLiteral("_Kept"), taken);
        taken.append(name);
        TableDef beside(name);
        QStringList names;
        QStringList fields = m_table.targetFields;
        fields.append(freeName(QStringLiteral("Kept_Because"), fields));
        for (const QString& field : fields)
            beside.appendField({field, FieldType::Memo, 0, true});
        createTable(m_connection, beside);
        m_load.begin(beside, fields);
        for (const Kept& row : m_kept) {
            for (std::size_t i = 0; i < row.values.size(); ++i)
                m_load.set(static_cast<int>(i), row.values[i]);
            m_load.set(static_cast<int>(row.values.size()), row.reason);
            m_load.addRow();
        }
        const QString more = m_reasons.size() > MaxReasons ? QStringLiteral("; ...") : QString();
        const auto rows =
            m_kept.size() == 1 ? QStringLiteral("1 row is") : QStringLiteral("%1 rows are").arg(m_kept.size());
        report.append(
            QStringLiteral("%1: %2 whole in the table %3 (%4%5).")
                .arg(m_table.target.name(), rows, name, m_reasons.mid(0, MaxReasons).join(QStringLiteral("; ")), more));
    }

    // Raises 3049 unless the table has all rows and values except those refused.
    void verify()
    {
        if (m_table.isLeft)
            return;
        QByteArray values = "0";
        for (const Field* field : m_fields)
            values += "+count(" + quoted(field->name) + ')';
        auto count = m_connection.statement("SELECT count(*), " + values + " FROM " + quoted(m_table.target.name()));
        if (!count.step() || count.integer(0) + m_refused != m_rows || count.integer(1) != m_values)
            throw damaged(QStringLiteral("%1 has lost rows or values.").arg(m_table.name));
    }

private:
    struct Kept {
        std::vector<Value> values;
        QString reason;
    };

    void takeRow()
    {
        QStringList reasons;
        const qint64 before = m_values;
        for (std::size_t i = 0; i < m_row.size(); ++i)
            if (const QString problem = setField(i); !problem.isEmpty())
                reasons.append(QStringLiteral("%1: %2").arg(m_fields[i]->name, problem));
        try {
            for (std::size_t i = 0; i < m_row.size(); ++i)
                if (m_fields[i]->autoIncrement && m_row[i].value.isNull()) // it would be numbered automatically
                    throw RuntimeError(platform::NullInPrimaryKey);
                else if (isTextual(m_fields[i]->type) && !m_fields[i]->allowZeroLength && m_row[i].value.isText() &&
                         m_row[i].value.isEmpty())
                    throw RuntimeError(platform::ZeroLengthNotAllowed);
            m_load.addRow();
        } catch (const RuntimeError& error) {
            if (error.number() == platform::DiskFull || error.number() == platform::PathFileAccess)
                throw;
            m_load.dropRow();
            reasons.append(refusalOf(error.number()));
            ++m_refused;
            m_values = before;
        }
        if (reasons.isEmpty())
            return;
        Kept& kept = m_kept.emplace_back();
        kept.reason = reasons.join(QStringLiteral("; "));
        for (const QString& reason : reasons)
            if (!m_reasons.contains(reason))
                m_reasons.append(reason);
        for (const SourceValue& source : m_row)
            kept.values.push_back(source.value.isNull() && source.problem.isEmpty() ? Value() : Value(textOf(source)));
    }

    // Sets a field's value as far as it fits; returns what didn't.
    QString setField(std::size_t i)
    {
        const int at = static_cast<int>(i);
        const Field& field = *m_fields[i];
        const SourceValue& source = m_row[i];
        // Only text fields can be empty without being Null.
        const bool nothing = source.value.isEmpty() && !isTextual(field.type);
        QString problem = source.problem;
        try {
            const bool becomesText = isTextual(field.type) && !source.value.isText() && !source.value.isNull();
            if (!nothing) // unset means Null
                set(at, becomesText ? Value(textOf(source)) : source.value);
            if (source.value.isNull() || nothing)
                return problem;
            if (field.type == FieldType::Double && source.value.isText() &&
                countDigits(source.value.toText()) > SureDigits)
                problem = QStringLiteral("more digits than a number keeps");
            if (isWhole(field.type)) {
                const double number = converted(source.value, {{}, FieldType::Double}).toDouble();
                if (number != std::trunc(number))
                    problem = QStringLiteral("the number has a fraction");
            }
            if (field.type == FieldType::Boolean && source.value.isNumber() && source.value.toDouble() != 0 &&
                std::abs(source.value.toDouble()) != 1)
                problem = QStringLiteral("a number that is neither yes nor no");
        } catch (const RuntimeError& error) {
            problem = refusalOf(error.number());
            if (error.number() == platform::FieldTooSmall) {
                const QString text = source.value.isText() ? source.value.toText() : textOf(source);
                set(at, text.left(field.size - (text[field.size].isLowSurrogate() ? 1 : 0)));
            }
        }
        return problem;
    }

    void set(int at, const Value& value)
    {
        m_load.set(at, value);
        m_values += !value.isNull();
    }

    Connection& m_connection;
    BulkLoad& m_load;
    const FormerTable& m_table;
    std::vector<const Field*> m_fields;
    std::span<const SourceValue> m_row; // the one being read
    qint64 m_rows = 0;
    std::vector<Kept> m_kept;
    QStringList m_reasons;
    qint64 m_refused = 0;
    qint64 m_values = 0; // other than Null
};

// The other indexes, of which none is unique, are created after the rows, which is much faster.
TableDef withKeyOnly(const TableDef& table)
{
    TableDef bare(table.name());
    for (const Field& field : table.fields())
        bare.appendField(field);
    for (const Index& index : table.indexes())
        if (index.primary)
            bare.appendIndex(index);
    return bare;
}

void addFurtherIndexes(Connection& connection, const TableDef& table)
{
    for (const Index& index : table.indexes())
        if (!index.primary)
            createIndex(connection, table.name(), index);
}

void createTables(Connection& connection, const Definitions& definitions)
{
    for (const TableDef& ours : schema::tables(definitions.version)) {
        const auto same = [&ours](const FormerTable& table) { return table.target.name() == ours.name(); };
        const auto found = std::ranges::find_if(definitions.tables, same);
        createTable(connection, withKeyOnly(found == definitions.tables.end() ? ours : found->target));
    }
    for (const FormerTable& table : definitions.tables)
        if (!table.isLeft && !schema::findTable(table.target.name(), definitions.version))
            createTable(connection, withKeyOnly(table.target));
}

// Checks the file's structure, and every index against its table.
void checkIntegrity(Connection& connection, const Definitions& definitions)
{
    auto check = connection.statement("PRAGMA quick_check(1)");
    if (!check.step() || check.text(0) != QLatin1String("ok"))
        throw damaged(QStringLiteral("What was made of it is not sound: %1").arg(check.text(0)));
    for (const FormerTable& table : definitions.tables)
        for (const Index& index : table.target.indexes()) {
            if (index.primary)
                continue;
            const QByteArray name = quoted(table.target.name());
            auto same = connection.statement("SELECT (SELECT count(*) FROM " + name + " INDEXED BY " +
                                             quoted(fileIndexName(table.target.name(), index.name)) +
                                             ") = (SELECT count(*) FROM " + name + " NOT INDEXED)");
            if (!same.step() || same.integer(0) != 1)
                throw damaged(QStringLiteral("The index %1 of %2 has lost rows.").arg(index.name, table.name));
        }
}

} // namespace

Report import(HelperStream& stream, Connection& connection, Database& database,
              const std::function<void(int percent)>& progress)
{
    const Definitions definitions = readDefinitions(stream);
    qint64 all = 1;
    for (const FormerTable& table : definitions.tables)
        all += table.rows;
    qint64 done = 0;
    QElapsedTimer since;
    since.start();
    const auto each = [&] {
        ++done;
        if (since.elapsed() < ProgressEvery)
            return;
        progress(static_cast<int>(std::min<qint64>(99, 100 * done / all)));
        since.restart();
    };

    // Values were converted to their fields' types already; the checks would find nothing more.
    connection.run("PRAGMA ignore_check_constraints=ON");
    Transaction transaction(connection);
    BulkLoad load(database);
    createTables(connection, definitions);
    std::vector<TableFill> fills;
    readTables(stream, definitions.tables, [&](const FormerTable& table, FormerRows& rows) {
        fills.emplace_back(connection, load, table).run(rows, each);
    });

    QStringList taken = tableNames(connection);
    Report report; // rows first, since the message is limited
    for (TableFill& fill : fills)
        fill.keep(taken, report);
    for (const FormerTable& table : definitions.tables)
        addFurtherIndexes(connection, table.target);
    for (const TableDef& table : definitions.empty)
        addFurtherIndexes(connection, table);
    for (const QueryDef& query : schema::queries(definitions.version))
        createQuery(connection, query);
    transaction.commit();
    for (TableFill& fill : fills)
        fill.verify();
    checkIntegrity(connection, definitions);
    return report + definitions.report;
}

QString words(const Report& report, const QString& file, const QString& kept)
{
    QString text = QStringLiteral("%1 came from an earlier version of the program and was brought into today's format. "
                                  "The old file is unchanged beside it as %2.\n\n"
                                  "Not everything had its place:\n\n%3")
                       .arg(file, kept, report.mid(0, MaxLines).join(u'\n'));
    if (report.size() > MaxLines)
        text += QStringLiteral("\nand %1 more.").arg(report.size() - MaxLines);
    return text;
}

} // namespace orlo::store::jet
