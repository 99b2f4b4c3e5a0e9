#include "Scramble.h"

#include "PackRows.h"
#include "store/engine/Value.h"
#include "store/engine/Version.h"
#include "store/jet/BulkLoad.h"
#include "store/schema/Schema.h"

#include <QHash>
#include <QRandomGenerator>
#include <QSet>

#include <algorithm>

using namespace orlo;
using store::Database;
using store::FieldType;
using store::TableDef;
using store::Value;

namespace
{

constexpr int FirstYear = 100;
constexpr int MaxTries = 100;

int random(int from, int to)
{
    return QRandomGenerator::global()->bounded(from, to + 1);
}

// Another letter or digit of the same kind; other characters stay.
char32_t otherCharacter(char32_t given)
{
    if (given >= U'0' && given <= U'9')
        return U'0' + static_cast<char32_t>(random(0, 9));
    if (given >= U'a' && given <= U'z')
        return U'a' + static_cast<char32_t>(random(0, 25));
    if (given < 0x80 || !QChar::isLetter(given))
        return given;
    for (int i = 0; i < MaxTries; ++i) { // within a block with as many bytes per letter
        const char32_t other = (given & ~char32_t(0x1F)) + static_cast<char32_t>(random(0, 0x1F));
        if (QChar::isLetter(other) && QChar::toLower(other) == other)
            return other;
    }
    return given;
}

// Fields with words from the program's own lists, which people don't type.
const QSet<QString>& listedFields()
{
    static const QSet<QString> Names = {QStringLiteral("tigar"), QStringLiteral("insignia_type"),
                                        QStringLiteral("award_type")};
    return Names;
}

class Scrambler
{
public:
    Scrambler()
    {
        for (const store::Version& version : store::schema::versions())
            for (const TableDef& table : version.tables)
                for (const store::Field& field : table.fields())
                    m_known.insert(field.name.toLower());
        for (const char* word : {"y", "n", "tiger", "wolf", "bear", "webelos (1st yr)", "webelos (2nd yr)"})
            m_words.insert(QLatin1String(word));
        for (const auto* titles : {&store::schema::denTitles(), &store::schema::packTitles()})
            for (const store::PositionTitle& title : *titles)
                m_words.insert(title.title.toString().toLower());
    }

    [[nodiscard]] PackRows::Row scrambled(const PackRows& rows, const PackRows::Row& row, const TableDef& table)
    {
        PackRows::Row made = row;
        for (std::size_t i = 0; i < made.size(); ++i)
            made[i] = other(row[i], table.fields()[i]);
        moveYear(rows, row, made);
        return made;
    }

private:
    [[nodiscard]] Value other(const Value& value, const store::Field& field)
    {
        const QString name = field.name.toLower();
        const bool known = m_known.contains(name);
        if (value.isText())
            return known && field.type != FieldType::Memo ? Value(otherText(value.textOrEmpty(), name))
                                                          : Value(crossedOut(value.textOrEmpty()));
        if (value.isDate())
            return name == QLatin1String("birth_date") ? Value(otherBirth(value.toDate()))
                                                       : Value(moved(value.toDate()));
        if (value.isNumber() && (!known || name == QLatin1String("pack number")))
            return otherNumber(value);
        return value;
    }

    static QString crossedOut(QString text)
    {
        for (QChar& c : text)
            if (c != u'\n' && c != u'\r')
                c = u'x';
        return text;
    }

    // Texts that are equal, ignoring case, stay equal, and different ones stay different.
    QString otherText(const QString& text, const QString& field)
    {
        if (listedFields().contains(field) || m_words.contains(text.toLower()))
            return text;
        const QList<uint> given = text.toLower().toUcs4();
        QString& made = m_texts[text.toLower()];
        for (int i = 0; made.isNull() && i < MaxTries; ++i) {
            QString tried;
            for (const uint c : given)
                tried += QChar::fromUcs4(otherCharacter(c));
            if (i + 1 == MaxTries || (!m_given.contains(tried) && !m_words.contains(tried) && tried != text.toLower()))
                made = tried;
        }
        m_given.insert(made);
        return withCaseOf(text, made);
    }
    static QString withCaseOf(const QString& text, QString made)
    {
        for (qsizetype i = 0; i < std::min(text.size(), made.size()); ++i)
            if (text[i].isUpper())
                made[i] = made[i].toUpper();
        return made;
    }

    [[nodiscard]] store::DateTime moved(const store::DateTime& date) const
    {
        if (date.date == MissingDate)
            return date;
        const QDate earlier = date.date.addDays(-m_days);
        return {earlier.year() < FirstYear ? date.date.addDays(m_days) : earlier, date.time};
    }
    // Each birth date moves independently, so knowing one doesn't reveal the others.
    store::DateTime otherBirth(const store::DateTime& date)
    {
        if (date.date == MissingDate)
            return date;
        int& days = m_births[date.date.toJulianDay()];
        while (days == 0)
            days = random(-180, 180);
        return {moved(date).date.addDays(days), date.time};
    }

    static Value otherNumber(const Value& value)
    {
        QString text = shown(value);
        for (QChar& c : text)
            if (c.isDigit())
                c = QChar(u'0' + random(1, 9));
        bool whole = false;
        const qint64 number = text.toLongLong(&whole);
        return whole && value.toDouble() >= INT16_MIN && value.toDouble() <= INT16_MAX
                   ? Value(number % (INT16_MAX + 1))
                   : (whole ? Value(number) : Value(text.toDouble()));
    }

    // An award's year and month stay those of its date, if they were.
    static void moveYear(const PackRows& rows, const PackRows::Row& row, PackRows::Row& made)
    {
        const int date = rows.column(u"Date_Assigned");
        const int year = rows.column(u"Year");
        const int month = rows.column(u"Month");
        if (date < 0 || year < 0 || month < 0 || !row[static_cast<std::size_t>(date)].isDate())
            return;
        const QDate before = row[static_cast<std::size_t>(date)].toDate().date;
        const QDate after = made[static_cast<std::size_t>(date)].toDate().date;
        Value& madeYear = made[static_cast<std::size_t>(year)];
        Value& madeMonth = made[static_cast<std::size_t>(month)];
        if (madeYear.isNumber())
            madeYear = Value(madeYear.toInt32() + after.year() - before.year());
        if (madeMonth == Value(before.month()))
            madeMonth = Value(after.month());
    }

    QSet<QString> m_known; // fields of the program's tables
    QSet<QString> m_words; // which tell nothing about people
    QHash<QString, QString> m_texts;
    QSet<QString> m_given; // the values of m_texts
    QHash<qint64, int> m_births;
    const int m_days = random(200, 2000);
};

} // namespace

namespace
{

// Names and defaults of other programs' tables and fields may reveal something about people.
TableDef unnamed(const TableDef& given, int number)
{
    TableDef table(QStringLiteral("Table %1").arg(number));
    for (store::Field field : given.fields()) {
        field.name = QStringLiteral("Field %1").arg(table.fields().size() + 1);
        field.defaultValue = {};
        table.appendField(field);
    }
    return table;
}

QStringList namesOf(const TableDef& table)
{
    QStringList names;
    for (const store::Field& field : table.fields())
        names += field.name;
    return names;
}

} // namespace

QStringList scramble(Database& pack, Database& made)
{
    store::Transaction together(made);
    store::BulkLoad load(made);
    Scrambler scrambler;
    int others = 0;
    for (const QString& name : pack.tableNames()) {
        const TableDef given = pack.tableDef(name);
        TableDef table = store::schema::isOurs(name) ? given : unnamed(given, ++others);
        made.appendTableDef(table);
        const PackRows rows(pack, name);
        load.begin(table, namesOf(table));
        for (const PackRows::Row& row : rows.rows) {
            const PackRows::Row other = scrambler.scrambled(rows, row, given);
            for (std::size_t i = 0; i < other.size(); ++i)
                load.set(static_cast<int>(i), other[i]);
            load.addRow();
        }
    }
    QStringList left;
    for (const QString& name : pack.queryNames()) {
        const auto& own = store::schema::queries(std::min(store::versionOf(pack), store::schema::Newest));
        const auto known = std::ranges::find_if(own, [&name](const auto& query) { return sameText(query.name, name); });
        if (known == own.end())
            left += name;
        else
            made.createQueryDef(known->name, known->sql);
    }
    made.state(pack.stated());
    together.commit();
    return left;
}
