#include "store/jet/Import.h"

#include "platform/RuntimeError.h"
#include "store/engine/BulkLoad.h"
#include "store/engine/Catalogue.h"
#include "store/engine/Connection.h"
#include "store/engine/Conversion.h"
#include "store/engine/Rows.h"
#include "store/engine/TableSql.h"
#include "store/jet/Definitions.h"
#include "store/jet/HelperStream.h"

#include <QElapsedTimer>
#include <QLocale>

#include <cmath>

namespace orlo::store::jet
{

using platform::RuntimeError;

namespace
{

constexpr qsizetype SureDigits = 15;            // of a double
constexpr qsizetype MaxTextLength = 33'000'000; // characters, of up to three bytes each in the new file
constexpr qsizetype MaxLines = 12;
constexpr qsizetype MaxReasons = 5;
constexpr int ProgressEvery = 100; // ms

// A value as the former file has it, before its new field has its say.
struct SourceValue {
    Value value;
    QString problem; ///< why it isn't all of what stood there
    QString text;    ///< what stood there then
};

SourceValue day(double serial)
{
    if (const auto date = dateOfSerial(serial))
        return {*date, {}, {}};
    return {{}, QStringLiteral("no date"), QString::number(serial, 'g', 17)};
}

// Halves of a character have no place in UTF-8; beside it they stand as their numbers.
SourceValue textValue(const QString& text)
{
    if (text.size() > MaxTextLength)
        throw damaged(QStringLiteral("A text is too long for the new file."));
    if (text.isValidUtf16())
        return {text, {}, {}};
    QString shown;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const bool whole = c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (c.isSurrogate() && !whole)
            shown += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16);
        else
            shown += whole ? text.mid(i++, 2) : QString(c);
    }
    return {QString::fromUtf8(text.toUtf8()), QStringLiteral("half a letter"), shown};
}

// Digits without the zeros that only fill up.
qsizetype countDigits(const QString& number)
{
    QStringView text = number;
    while (number.contains(u'.') && text.endsWith(u'0'))
        text.chop(1);
    const auto* first = std::ranges::find_if(text, [](QChar c) { return c > u'0' && c <= u'9'; });
    return std::count_if(first, text.end(), [](QChar c) { return c.isDigit(); });
}

SourceValue readCell(HelperStream& stream)
{
    switch (stream.number<Cell>()) {
    case Cell::Null:
        return {};
    case Cell::No:
        return {false, {}, {}};
    case Cell::Yes:
        return {true, {}, {}};
    case Cell::Whole:
        return {qint64(stream.number<std::int32_t>()), {}, {}};
    case Cell::Real: {
        const auto number = stream.number<double>();
        if (std::isfinite(number))
            return {number, {}, {}};
        return {{}, QStringLiteral("no number"), QString::number(number)};
    }
    case Cell::Day:
        return day(stream.number<double>());
    case Cell::Text:
        return textValue(stream.text());
    }
    throw damaged(QStringLiteral("A value is of no known kind."));
}

QString textOf(const SourceValue& source)
{
    if (!source.problem.isEmpty())
        return source.text;
    if (source.value.isBool())
        return QString::number(source.value.toBool() ? 1 : 0);
    if (source.value.isDate())
        return QString::fromLatin1(isoText(source.value.toDate()));
    if (source.value.isNumber())
        return QString::number(source.value.toDouble(), 'g', QLocale::FloatingPointShortest);
    return source.value.textOrEmpty();
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
    TableFill(HelperStream& stream, Connection& connection, BulkLoad& load, const FormerTable& table)
        : m_stream(stream), m_connection(connection), m_load(load), m_table(table)
    {
        for (const QString& name : table.targetFields)
            for (const Field& field : table.target.fields())
                if (field.name == name)
                    m_fields.push_back(&field);
        m_row.resize(m_fields.size());
    }

    // Takes the rows of the stream to the table's end; calls for each of them.
    template <class Each>
    void run(const Each& each)
    {
        m_load.begin(m_table.target, m_table.targetFields);
        for (; nextRow(); ++m_rows, each())
            takeRow();
        if (m_rows < m_table.rows)
            throw damaged(
                QStringLiteral("%1 broke off after %2 of %3 rows.").arg(m_table.name).arg(m_rows).arg(m_table.rows));
    }

    // Makes the table beside for the rows that were refused, in whole or in part.
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

    // Raises 3049 unless the table holds every row but those that it refused.
    void verify()
    {
        auto count = m_connection.statement("SELECT count(*) FROM " + quoted(m_table.target.name()));
        if (!count.step() || count.integer(0) + m_refused != m_rows)
            throw damaged(QStringLiteral("%1 has lost rows.").arg(m_table.name));
    }

private:
    struct Kept {
        std::vector<Value> values;
        QString reason;
    };

    bool nextRow()
    {
        switch (m_stream.number<std::uint8_t>()) {
        case RowFollows:
            for (SourceValue& source : m_row)
                source = readCell(m_stream);
            return true;
        case TableEnds:
            return false;
        default:
            throw damaged(QStringLiteral("%1 breaks off.").arg(m_table.name));
        }
    }

    void takeRow()
    {
        QStringList reasons;
        for (std::size_t i = 0; i < m_row.size(); ++i)
            if (const QString problem = setField(i); !problem.isEmpty())
                reasons.append(QStringLiteral("%1: %2").arg(m_fields[i]->name, problem));
        try {
            for (std::size_t i = 0; i < m_row.size(); ++i)
                if (m_fields[i]->autoIncrement && m_row[i].value.isNull()) // which would be given a number
                    throw RuntimeError(platform::NullInPrimaryKey);
                else if (isTextual(m_fields[i]->type) && !m_fields[i]->allowZeroLength && m_row[i].value.isText() &&
                         m_row[i].value.isEmpty())
                    throw RuntimeError(platform::ZeroLengthNotAllowed);
            m_load.addRow();
        } catch (const RuntimeError& error) {
            if (error.number() == platform::DiskFull || error.number() == platform::PathFileAccess)
                throw;
            reasons.append(refusalOf(error.number()));
            ++m_refused;
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

    // Sets what the field takes of the value; why that isn't all.
    QString setField(std::size_t i)
    {
        const int at = static_cast<int>(i);
        const Field& field = *m_fields[i];
        const SourceValue& source = m_row[i];
        // Only a text can be empty without being nothing.
        const bool nothing = source.value.isEmpty() && !isTextual(field.type);
        QString problem = source.problem;
        try {
            const bool becomesText = isTextual(field.type) && !source.value.isText() && !source.value.isNull();
            if (nothing)
                m_load.set(at, Value());
            else
                m_load.set(at, becomesText ? Value(textOf(source)) : source.value);
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
                m_load.set(at, text.left(field.size - (text[field.size].isLowSurrogate() ? 1 : 0)));
            } else
                m_load.set(at, Value());
        }
        return problem;
    }

    HelperStream& m_stream;
    Connection& m_connection;
    BulkLoad& m_load;
    const FormerTable& m_table;
    std::vector<const Field*> m_fields;
    std::vector<SourceValue> m_row;
    std::vector<Kept> m_kept;
    QStringList m_reasons;
    qint64 m_rows = 0;
    qint64 m_refused = 0;
};

// Indexes that keep nothing out are made once the rows are in, which is much faster.
TableDef withoutPlainIndexes(const TableDef& table)
{
    TableDef bare(table.name());
    for (const Field& field : table.fields())
        bare.appendField(field);
    for (const Index& index : table.indexes())
        if (index.primary || index.unique || index.required)
            bare.appendIndex(index);
    return bare;
}

void addPlainIndexes(Connection& connection, const TableDef& table)
{
    for (const Index& index : table.indexes())
        if (!index.primary && !index.unique && !index.required)
            createIndex(connection, table.name(), index);
}

void createTables(Connection& connection, const Definitions& definitions)
{
    for (const TableDef& ours : schema::tables(definitions.version)) {
        const auto same = [&ours](const FormerTable& table) { return table.target.name() == ours.name(); };
        const auto found = std::ranges::find_if(definitions.tables, same);
        createTable(connection, withoutPlainIndexes(found == definitions.tables.end() ? ours : found->target));
    }
    for (const FormerTable& table : definitions.tables)
        if (!schema::findTable(table.target.name(), definitions.version))
            createTable(connection, withoutPlainIndexes(table.target));
}

// The file's structure, and every index against its table.
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

    // Each value is converted to its field's type on its way in; the checks would find nothing more.
    connection.run("PRAGMA ignore_check_constraints=ON");
    Transaction transaction(connection);
    BulkLoad load(database);
    createTables(connection, definitions);
    std::vector<TableFill> fills;
    for (const FormerTable& table : definitions.tables)
        fills.emplace_back(stream, connection, load, table).run(each);
    if (stream.number<std::uint32_t>() != End)
        throw damaged(QStringLiteral("It could not be read to its end."));
    stream.finish();

    QStringList taken = tableNames(connection);
    Report report; // the rows first, since the message has an end
    for (TableFill& fill : fills)
        fill.keep(taken, report);
    for (const FormerTable& table : definitions.tables)
        addPlainIndexes(connection, table.target);
    for (const TableDef& table : definitions.empty)
        addPlainIndexes(connection, table);
    if (definitions.version == SchemaVersion::V11)
        for (const QueryDef& query : schema::queries())
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
