#include "PackImport.h"

#include "LinkTexts.h"
#include "RowNames.h"
#include "store/engine/Conversion.h"
#include "store/engine/TableDef.h"
#include "store/engine/Value.h"

#include <QFileInfo>

#include <algorithm>
#include <optional>

using namespace orlo;
using platform::RuntimeError;
using store::Field;
using store::FieldType;
using store::Value;

namespace
{

constexpr qsizetype MostWrong = 20;

// A table that an import fills, and the fields that identify a row already in the file. Required ones must not be
// empty.
struct Identity {
    QStringView table;
    QStringList fields;
    QStringList needed;
    bool once = true; // also within the new rows; not for awards, which somebody may get twice on a day
};

// Tables that others point to come first. Null for a table that no import fills.
const Identity* identityOf(const store::TableDef& table)
{
    static const QStringList person = {QStringLiteral("Last_Name"), QStringLiteral("First_Name"),
                                       QStringLiteral("Birth_Date")};
    static const QStringList den = {QStringLiteral("Den_Type"), QStringLiteral("Den_Number")};
    static const QStringList award = {QStringLiteral("Insignia_Name"), QStringLiteral("Insignia_Type")};
    static const QStringList scouts = {QStringLiteral("Scout_SID"), QStringLiteral("Insignia_SID"),
                                       QStringLiteral("Date_Assigned")};
    static const QStringList adults = {QStringLiteral("Adult_SID"), QStringLiteral("Insignia_SID"),
                                       QStringLiteral("Date_Assigned")};
    static const QStringList leads = {QStringLiteral("Adult_SID"), QStringLiteral("Den_SID")};
    static const QStringList serves = {QStringLiteral("Leader_SID"), QStringLiteral("Position_Title")};
    static const QStringList item = {QStringLiteral("Item_Name")};
    static const QStringList denTitle = {QStringLiteral("Den_Title")};
    static const QStringList packTitle = {QStringLiteral("Pack_Titles")};
    static const Identity All[] = {{u"PackInfo", {}, {}}, // there is only one pack
                                   {u"Den_Titles", denTitle, denTitle},
                                   {u"Pack_Positions", packTitle, packTitle},
                                   {u"Dens", den, den},
                                   {u"Insignias", award, award},
                                   {u"Adults", person, {}},
                                   {u"Scouts", person, {}},
                                   {u"Leader_Den_Assignments", leads, leads},
                                   {u"Leader_Pack_Assn", serves, serves},
                                   {u"Assigned_Awards_Scouts", scouts, scouts, false},
                                   {u"Assigned_Awards_Adults", adults, adults, false},
                                   {u"Other_Purchase_List", item, item, false}};
    const auto* found = std::ranges::find(All, table.name(), &Identity::table);
    return found == std::end(All) ? nullptr : found;
}

// The key that the import gives to a new row, in tables like Scouts; a counter is given by the file, a title by people.
QString givenKey(const store::TableDef& table)
{
    const Field* key = table.findField(keyField(table));
    return key && key->type == FieldType::Integer && !key->autoIncrement ? key->name : QString();
}

// A row of a file: its fields in the table's order, and their positions.
struct Incoming {
    PackRows::Row values;
    std::vector<CsvPlace> places;
};

class TableImport
{
public:
    TableImport(store::Database& database, LinkTexts& links, const CsvFile& file)
        : m_database(database), m_links(links), m_file(file), m_table(*file.table), m_rows(database, m_table.name()),
          m_identity(*identityOf(m_table)), m_key(givenKey(m_table))
    {
    }

    // Collects the errors in the list.
    void run(QStringList& wrong)
    {
        for (const Field& field : m_table.fields())
            if (m_rows.column(field.name) < 0)
                throw LoadError(QStringLiteral("%1: the file lacks the field %2").arg(m_table.name(), field.name));
        const std::vector<Incoming> incoming = read(wrong);
        if (!wrong.isEmpty())
            return;
        const qsizetype stood = qsizetype(m_rows.rows.size());
        for (const PackRows::Row& row : m_rows.rows)
            m_known.insert(identity(row), keyText(row));
        int highest = highestKey(incoming);
        store::Recordset set = m_database.openRecordset(u'[' + m_table.name() + u']');
        for (const Incoming& row : incoming)
            try {
                if (!standsThere(row))
                    add(set, row, highest);
            } catch (const CsvError& error) {
                wrong += m_file.wrong(error);
            }
        m_added = {m_rows.rows.begin() + stood, m_rows.rows.end()};
    }

    [[nodiscard]] QStringList told(const RowNames& names, bool trial) const
    {
        QStringList lines = {QStringLiteral("%1: %2 %3, %4 there already")
                                 .arg(m_table.name())
                                 .arg(m_added.size())
                                 .arg(trial ? QStringLiteral("would be added") : QStringLiteral("added"))
                                 .arg(m_there.size())};
        for (const PackRows::Row& row : m_added)
            lines += QStringLiteral("  added    %1").arg(names.of(m_table.name(), m_rows, row));
        for (const auto& [row, line] : m_there)
            lines += QStringLiteral("  there    %1 (line %2)").arg(names.of(m_table.name(), m_rows, row)).arg(line);
        return lines;
    }

private:
    [[nodiscard]] std::size_t at(QStringView field) const { return static_cast<std::size_t>(m_rows.column(field)); }
    [[nodiscard]] bool isPerson() const { return m_table.findField(u"Birth_Date"); }

    std::vector<Incoming> read(QStringList& wrong)
    {
        std::vector<Incoming> all;
        CsvTable file(m_file);
        std::vector<CsvCell> row;
        while (file.readRow(row)) {
            if (isEmpty(row))
                continue;
            try {
                all.push_back(complete(values(file, row), row.front().place));
            } catch (const CsvError& error) {
                wrong += m_file.wrong(error);
            }
        }
        return all;
    }

    [[nodiscard]] Incoming values(const CsvTable& file, const std::vector<CsvCell>& row)
    {
        Incoming made = {PackRows::Row(std::size_t(m_rows.fields.size())), {}};
        made.places.assign(made.values.size(), row.front().place);
        for (std::size_t i = 0; i < row.size(); ++i)
            if (const Field* field = file.columns()[i].field) {
                made.places[at(field->name)] = row[i].place;
                made.values[at(field->name)] = valueOf(row[i], *field, file.columns()[i].onScreen);
            }
        return made;
    }

    [[nodiscard]] Value valueOf(const CsvCell& cell, const Field& field, bool onScreen)
    {
        const QString table = field.name == m_key ? QString() : RowNames::targetTable(field.name);
        try {
            if (!table.isEmpty() && !cell.text.trimmed().isEmpty())
                return Value(m_links.keyOf(table, cell.text, onScreen));
            if (field.name == QLatin1String("Active") || field.name == QLatin1String("Tigar"))
                return letter(cell, field);
            if (const std::optional<bool> yes = yesOrNo(cell.text); yes && field.type == FieldType::Boolean)
                return Value(*yes);
            return store::converted(cellValue(cell, field), {field.name, field.type, field.size, field.autoIncrement});
        } catch (const LoadError& error) {
            throw CsvError(
                cell.place,
                QStringLiteral("%1: \"%2\": %3").arg(field.name, cell.text.left(40), QString::fromUtf8(error.what())));
        } catch (const RuntimeError& error) {
            throw CsvError(cell.place, problemOf(error, cell, field));
        }
    }

    static std::optional<bool> yesOrNo(const QString& text)
    {
        const QString word = text.trimmed().toUpper();
        if (word == QLatin1String("Y") || word == QLatin1String("YES") || word == QLatin1String("TRUE"))
            return true;
        if (word == QLatin1String("N") || word == QLatin1String("NO") || word == QLatin1String("FALSE"))
            return false;
        return std::nullopt;
    }
    // Y or N, shown by windows as Yes and No.
    static Value letter(const CsvCell& cell, const Field& field)
    {
        if (cell.text.trimmed().isEmpty())
            return {};
        if (const std::optional<bool> yes = yesOrNo(cell.text))
            return *yes ? QStringLiteral("Y") : QStringLiteral("N");
        throw CsvError(cell.place, QStringLiteral("%1: \"%2\" is neither Y nor N").arg(field.name, cell.text.left(40)));
    }

    // Fills the other fields as a window would.
    [[nodiscard]] Incoming complete(Incoming row, CsvPlace place) const
    {
        const auto value = [&](QStringView field) -> Value& { return row.values[at(field)]; };
        for (const QString& field : m_identity.needed)
            if (value(field).isEmpty())
                throw CsvError(row.places[at(field)], QStringLiteral("%1 is missing").arg(field));
        if (m_table.findField(u"Active") && value(u"Active").isNull())
            value(u"Active") = QStringLiteral("Y");
        if (isPerson()) {
            if (value(u"First_Name").isEmpty() && value(u"Last_Name").isEmpty())
                throw CsvError(place, QStringLiteral("the name is missing"));
            for (const QStringView name : {u"First_Name", u"Last_Name"})
                if (value(name).isNull())
                    value(name) = QString();
            if (value(u"Birth_Date").isNull())
                value(u"Birth_Date") = MissingDate;
        }
        if (m_table.findField(u"Date_Assigned")) {
            const QDate date = value(u"Date_Assigned").toDate().date;
            if (value(u"Year").isNull())
                value(u"Year") = date.year();
            if (value(u"Month").isNull())
                value(u"Month") = date.month();
        }
        rankTitle(row);
        return row;
    }

    // A position gets its title's rank.
    void rankTitle(Incoming& row) const
    {
        for (const auto& [table, position, titles, title] :
             {std::tuple(u"Leader_Den_Assignments", u"Den_Title", u"Den_Titles", u"Den_Title"),
              std::tuple(u"Leader_Pack_Assn", u"Position_Title", u"Pack_Positions", u"Pack_Titles")}) {
            if (m_table.name() != QStringView(table) || row.values[at(position)].isEmpty())
                continue;
            const PackRows all(m_database, QString::fromUtf16(titles));
            const QString wanted = row.values[at(position)].toText();
            const auto found = std::ranges::find_if(all.rows, [&, title = title](const PackRows::Row& one) {
                return sameText(all.value(one, title).textOrEmpty(), wanted);
            });
            if (found == all.rows.end())
                throw CsvError(row.places[at(position)],
                               QStringLiteral("%1: \"%2\" is no title of %3")
                                   .arg(QString::fromUtf16(position), wanted.left(40), QString::fromUtf16(titles)));
            if (row.values[at(u"Sort_Order")].isNull())
                row.values[at(u"Sort_Order")] = all.value(*found, u"Sort_Order");
        }
    }

    [[nodiscard]] QString identity(const PackRows::Row& row) const
    {
        QStringList parts;
        for (const QString& field : m_identity.fields) {
            const Value value = m_rows.value(row, field);
            if (!value.isDate())
                parts += value.textOrEmpty().simplified().toCaseFolded();
            else if (const QDate date = value.toDate().date; date != MissingDate)
                parts += date.toString(Qt::ISODate);
            else
                parts += QString();
        }
        return parts.join(u'\n');
    }
    [[nodiscard]] QString keyText(const PackRows::Row& row) const { return shown(m_rows.value(row, m_key)); }

    // If the same row has a different key in the file, rows pointing to it would point to somebody else.
    [[nodiscard]] bool standsThere(const Incoming& row)
    {
        const auto known = m_known.constFind(identity(row.values));
        if (known == m_known.constEnd())
            return false;
        if (!m_key.isEmpty() && !row.values[at(m_key)].isNull() && *known != keyText(row.values))
            throw CsvError(row.places[at(m_key)], QStringLiteral("%1: %2 stands in the file already, with the key %3")
                                                      .arg(m_key, keyText(row.values), *known));
        m_there.push_back({row.values, row.places.front().line});
        return true;
    }

    [[nodiscard]] int highestKey(const std::vector<Incoming>& incoming) const
    {
        int highest = 0;
        if (m_key.isEmpty())
            return highest;
        for (const PackRows::Row& row : m_rows.rows)
            if (const Value& key = row[at(m_key)]; !key.isNull())
                highest = std::max(highest, key.toInt32());
        for (const Incoming& row : incoming)
            if (const Value& key = row.values[at(m_key)]; !key.isNull())
                highest = std::max(highest, key.toInt32());
        return highest;
    }

    void add(store::Recordset& set, Incoming row, int& highest)
    {
        try {
            if (!m_key.isEmpty() && row.values[at(m_key)].isNull())
                row.values[at(m_key)] = ++highest;
            set.addNew();
            for (std::size_t i = 0; i < row.values.size(); ++i)
                if (!row.values[i].isNull() && !isCounter(i))
                    set.setValue(static_cast<int>(i), row.values[i]);
            set.update();
        } catch (const RuntimeError& error) {
            static const QList<int> ofTheRow{platform::DuplicateKey,        platform::NullInPrimaryKey,
                                             platform::NullInRequiredField, platform::ZeroLengthNotAllowed,
                                             platform::WrongDataType,       platform::Overflow,
                                             platform::FieldTooSmall};
            set.cancelUpdate();
            if (!ofTheRow.contains(error.number())) // such as a full disk: the next row must not be tried
                throw;
            const QString key = keyField(m_table);
            if (key.isEmpty())
                throw CsvError(row.places.front(), error.description());
            if (error.number() == platform::Overflow)
                throw CsvError(row.places[at(key)], QStringLiteral("%1: there are no keys left").arg(key));
            throw CsvError(row.places[at(key)], refusalOf(error, key, row.values[at(key)].textOrEmpty()));
        }
        if (m_identity.once)
            m_known.insert(identity(row.values), keyText(row.values));
        m_rows.rows.push_back(row.values);
    }
    [[nodiscard]] bool isCounter(std::size_t i) const
    {
        return m_table.findField(m_rows.fields[qsizetype(i)])->autoIncrement;
    }

    store::Database& m_database;
    LinkTexts& m_links;
    CsvFile m_file;
    const store::TableDef& m_table;
    PackRows m_rows;
    const Identity& m_identity;
    QString m_key; // of a table whose rows get their keys here
    QHash<QString, QString> m_known;
    std::vector<PackRows::Row> m_added;
    std::vector<std::pair<PackRows::Row, int>> m_there;
};

} // namespace

QStringList importPack(store::Database& database, const QString& folder, bool trial)
{
    std::vector<CsvFile> files = csvFiles(folder, store::schema::Newest);
    const auto rank = [](const CsvFile& file) { return identityOf(*file.table); };
    for (const CsvFile& file : files)
        if (!rank(file))
            throw LoadError(
                QStringLiteral("%1: an import doesn't fill this table").arg(QFileInfo(file.path).fileName()));
    std::ranges::sort(files, {}, rank);

    store::Transaction transaction(database);
    LinkTexts links(database);
    std::vector<std::unique_ptr<TableImport>> tables;
    for (const CsvFile& file : files) {
        QStringList wrong;
        try {
            tables.push_back(std::make_unique<TableImport>(database, links, file));
            tables.back()->run(wrong);
        } catch (const CsvError& error) {
            wrong += file.wrong(error);
        }
        if (wrong.size() > MostWrong)
            wrong = wrong.mid(0, MostWrong) + QStringList(QStringLiteral("and %1 more").arg(wrong.size() - MostWrong));
        if (!wrong.isEmpty())
            throw LoadError(wrong.join(u'\n'));
    }
    const RowNames names(database);
    QStringList lines;
    for (const auto& table : tables)
        lines += table->told(names, trial);
    if (!trial)
        transaction.commit();
    return lines;
}
