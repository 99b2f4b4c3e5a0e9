#include "store/schema/Schema.h"

#include "platform/RuntimeError.h"
#include "store/engine/TableDef.h"
#include "store/engine/Value.h"
#include "store/engine/Version.h"

#include <algorithm>
#include <span>

namespace orlo::store
{

namespace
{

using enum FieldType;
using schema::Newest;
using schema::V10;
using schema::V11;

constexpr QLatin1StringView DenTitleTable("Den_Titles");
constexpr QLatin1StringView PackTitleTable("Pack_Positions");

// The first and the last version that has something.
struct Span {
    int first = V10;
    int last = Newest;
};

constexpr Span since(int version)
{
    return {version, Newest};
}

constexpr Span until(int version)
{
    return {V10, version};
}

// A special property of a field.
enum class Extra { None, Counter, StartsTrue, NotEmpty };

struct Column {
    QStringView name;
    FieldType type;
    int size = 0;
    Span in = {};
    Extra extra = Extra::None;
};

struct Key {
    QStringView name;
    QStringView field;
    bool primary = false;
    Span in = {};
};

struct Table {
    QStringView name;
    Span in;
    std::span<const Column> columns;
    std::span<const Key> keys;
};

constexpr Column PackInfo[] = {
    {u"Pack Number", Double},
    {u"Name", Text, 50},
};

constexpr Column Dens[] = {
    {u"Den_SID", Integer},   {u"Den_Number", Double},   {u"Den_Name", Text, 40},
    {u"Den_Type", Text, 40}, {u"Year_Started", Double}, {u"Active", Text, 255}, // any text can be typed there
};
constexpr Key DensKeys[] = {{u"Dens_PK", u"Den_SID", true}};

constexpr Column Scouts[] = {
    {u"Scout_SID", Integer},
    {u"First_Name", Text, 40},
    {u"Last_Name", Text, 40},
    {u"MI", Text, 1},
    {u"Address", Text, 40},
    {u"Phone", Text, 20},
    {u"City", Text, 30},
    {u"State", Text, 25},
    {u"Zip_Code", Text, 10},
    {u"Birth_Date", Date},
    {u"Parent_Name1", Text, 60},
    {u"Parent_Name2", Text, 60},
    {u"Active", Text, 1},
    {u"Pack_Start_Date", Date},
    {u"Tigar", Text, 1},
    {u"Years_In_Other_Pack", Double},
    {u"Years_In_Scouts", Double},
    {u"School", Text, 40},
    {u"Assigned_Den_SID", Integer},
    {u"Note", Memo},
    {u"Alt_Parent_Address", Text, 60, since(V11)},
    {u"Alt_Parent_City", Text, 40, since(V11)},
    {u"Alt_Parent_State", Text, 30, since(V11)},
    {u"Alt_Parent_Zip", Text, 10, since(V11)},
    {u"Parent1_Email", Text, 100, since(V11)},
    {u"Parent1_Use_Scout_Add", Boolean, 0, since(V11), Extra::StartsTrue},
    {u"Parent1_Home_Phone", Text, 20, since(V11)},
    {u"Parent1_Work_Phone", Text, 20, since(V11)},
    {u"Parent1_Correspondance", Boolean, 0, since(V11)},
    {u"Parent2_Work_Phone", Text, 20, since(V11)},
    {u"Parent2_Use_Scout_Add", Boolean, 0, since(V11), Extra::StartsTrue},
    {u"Parent2_Email", Text, 100, since(V11)},
    {u"Parent2_Correspondance", Boolean, 0, since(V11)},
    {u"Grade_In_School", Integer, 0, since(V11)},
    {u"Boys_Life", Boolean, 0, since(V11)},
    {u"BSA_Number", Text, 50, since(V11)},
    {u"Scouts_Email", Text, 100, since(V11)},
    {u"Parent2_Home_Phone", Text, 20, since(V11)},
    {u"Parent1_Den_Leader_SID", Integer, 0, since(V11)},
    {u"Parent2_Den_Leader_SID", Integer, 0, since(V11)},
};
constexpr Key ScoutsKeys[] = {
    {u"Scouts_PK", u"Scout_SID", true},
    {u"Assigned_Den_SID", u"Assigned_Den_SID"},
};

constexpr Column Adults[] = {
    {u"Adult_SID", Integer},
    {u"First_Name", Text, 40},
    {u"Last_Name", Text, 40},
    {u"MI", Text, 1},
    {u"Address", Text, 40},
    {u"Phone", Text, 20},
    {u"WorkPhone", Text, 20},
    {u"City", Text, 25},
    {u"State", Text, 30},
    {u"Zip_Code", Text, 10},
    {u"Birth_Date", Date},
    {u"Active", Text, 1},
    {u"Pack_Start_Date", Date},
    {u"Years_In_Other_Pack", Double},
    {u"Years_In_Scouts", Double},
    {u"Assigned_Den_SID", Integer},
    {u"Note", Memo},
    {u"Email", Text, 100, since(V11)},
};
constexpr Key AdultsKeys[] = {{u"Adults_PK", u"Adult_SID", true}};

constexpr Column Insignias[] = {
    {u"Insignia_SID", Integer},
    {u"Insignia_Name", Text, 40},
    {u"Insignia_Type", Text, 40},
    {u"Description", Memo},
};
constexpr Key InsigniasKeys[] = {{u"Insignias_PK", u"Insignia_SID", true}};

constexpr Column AwardsScouts[] = {
    {u"Scout_SID", Integer},
    {u"Insignia_SID", Integer},
    {u"Date_Assigned", Date},
    {u"Year", Integer},
    {u"Month", Integer},
    {u"Assigned_SID", Long, 0, since(V11), Extra::Counter},
    {u"Quantity", Integer, 0, since(V11)},
};
constexpr Key AwardsScoutsKeys[] = {
    {u"Assigned_SID_PK", u"Assigned_SID", true, since(V11)},
    {u"Date_Assigned", u"Date_Assigned"},
    {u"Insignia_SID", u"Insignia_SID"},
    {u"Month", u"Month"},
    {u"Scout_SID", u"Scout_SID"},
    {u"Year", u"Year"},
};

constexpr Column AwardsAdults[] = {
    {u"Adult_SID", Integer}, {u"Insignia_SID", Integer}, {u"Date_Assigned", Date},
    {u"Year", Integer},      {u"Month", Integer},
};
constexpr Key AwardsAdultsKeys[] = {
    {u"Adult_SID", u"Adult_SID"},
    {u"Date_Assigned", u"Date_Assigned"},
    {u"Insignia_SID", u"Insignia_SID"},
};

constexpr Column DenTitles[] = {
    {u"Den_Title", Text, 30, {}, Extra::NotEmpty},
    {u"Sort_Order", Integer},
};
constexpr Key DenTitlesKeys[] = {{u"Den_Titles_PK", u"Den_Title", true}};

constexpr Column LeaderDenAssignments[] = {
    {u"Adult_SID", Long},
    {u"Den_SID", Integer},
    {u"Den_Title", Text, 50},
    {u"Sort_Order", Integer},
};
constexpr Key LeaderDenAssignmentsKeys[] = {
    {u"LDA_Adult_SID_IDX", u"Adult_SID"},
    {u"LDA_Den_SID_IDX", u"Den_SID"},
};

constexpr Column LeaderPackAssn[] = {
    {u"Position_Title", Text, 60},
    {u"Leader_SID", Integer},
    {u"Sort_Order", Integer},
    {u"Leader_Pack_Assn", Long, 0, {}, Extra::Counter},
};
constexpr Key LeaderPackAssnKeys[] = {
    {u"LPA_Leader_Pack_Assn_PK", u"Leader_Pack_Assn", true},
    {u"LPA_Leader_SID_IDX", u"Leader_SID"},
};

constexpr Column OtherPurchaseList[] = {
    {u"Item_Name", Text, 100},
    {u"Quantity", Integer},
};

constexpr Column PackPositions[] = {
    {u"Pack_Titles", Text, 60, {}, Extra::NotEmpty},
    {u"Sort_Order", Integer},
};
constexpr Key PackPositionsKeys[] = {{u"Pack_Titles", u"Pack_Titles", true}};

constexpr Column PurchaseList[] = {
    {u"Insignia_SID", Integer, 0, until(V10)}, {u"Award_Name", Text, 40},
    {u"Award_Type", Text, 40, until(V10)},     {u"Insignia_Type", Text, 40, since(V11)},
    {u"Quantity", Integer, 0, since(V11)},
};

constexpr Table Tables[] = {
    {u"PackInfo", {}, PackInfo, {}},
    {u"Dens", {}, Dens, DensKeys},
    {u"Scouts", {}, Scouts, ScoutsKeys},
    {u"Adults", {}, Adults, AdultsKeys},
    {u"Insignias", {}, Insignias, InsigniasKeys},
    {u"Assigned_Awards_Scouts", {}, AwardsScouts, AwardsScoutsKeys},
    {u"Assigned_Awards_Adults", {}, AwardsAdults, AwardsAdultsKeys},
    {u"Den_Titles", since(V11), DenTitles, DenTitlesKeys},
    {u"Leader_Den_Assignments", since(V11), LeaderDenAssignments, LeaderDenAssignmentsKeys},
    {u"Leader_Pack_Assn", since(V11), LeaderPackAssn, LeaderPackAssnKeys},
    {u"Other_Purchase_List", since(V11), OtherPurchaseList, {}},
    {u"Pack_Positions", since(V11), PackPositions, PackPositionsKeys},
    {u"Purchase_List", {}, PurchaseList, {}},
};

struct Query {
    QStringView name;
    Span in;
    QStringView sql;
};

constexpr Query Queries[] = {
    {u"Join_AssignedAdultsWInsgnias", since(V11),
     u"SELECT Insignias.Insignia_Name AS Award_Name, 1 AS Qty, Assigned_Awards_Adults.Insignia_SID, "
     u"Insignias.Insignia_Type, Assigned_Awards_Adults.Date_Assigned FROM Assigned_Awards_Adults LEFT JOIN Insignias "
     u"ON Assigned_Awards_Adults.Insignia_SID = Insignias.Insignia_SID ORDER BY Assigned_Awards_Adults.Insignia_SID"},
    {u"Join_AssignedScoutsWInsignias", since(V11),
     u"SELECT Insignias.Insignia_Name AS Award_Name,  IIf(IsNull(Quantity),1,Quantity) AS Qty, "
     u"Assigned_Awards_Scouts.Insignia_SID, Insignias.Insignia_Type, Assigned_Awards_Scouts.Date_Assigned "
     u"FROM Assigned_Awards_Scouts LEFT JOIN Insignias ON Assigned_Awards_Scouts.Insignia_SID = "
     u"Insignias.Insignia_SID ORDER BY Assigned_Awards_Scouts.Insignia_SID"},
    {u"Leader_Assignments", since(V11),
     u"SELECT IIf(B.Den_SID=0,\"N/A\",A.Den_Number) AS Den_Number, IIf(B.Den_SID=0,\"N/A\",A.Den_Type) AS Den_Type, "
     u"B.Position_Title, B.Den_SID, B.Leader_SID, B.Leader_Pack_Assn FROM Union_Pack_Den_Positions AS B "
     u"LEFT JOIN Dens AS A ON B.Den_SID = A.Den_SID"},
    {u"Scouts_Parents_As_DenLeader", since(V11),
     u"SELECT A.Last_Name, A.First_Name, A.MI, B.Den_Title, B.Adult_SID, B.Den_SID FROM Leader_Den_Assignments AS B, "
     u"Adults AS A WHERE (((A.Adult_SID)=[B].[Adult_SID])) "},
    {u"Union_Pack_Den_Positions", since(V11),
     u"Select Adult_SID As Leader_SID, Den_SID, Den_Title as Position_Title, \"N/A\"as Leader_Pack_Assn "
     u"From Leader_Den_Assignments UNION ALL Select Leader_SID, 0 as Den_SID, Position_Title, Leader_Pack_Assn "
     u"From Leader_Pack_Assn"},
    {u"UnionAwardsScoutAdults", since(V11),
     u"SELECT * From Join_AssignedScoutsWInsignias UNION ALL Select * from Join_AssignedAdultsWInsgnias"},
};

bool isIn(const Span& in, int version)
{
    return in.first <= version && version <= in.last;
}

Field makeField(const Column& column)
{
    Field field;
    field.name = column.name.toString();
    field.type = column.type;
    field.size = column.size;
    field.allowZeroLength = (column.type == Text || column.type == Memo) && column.extra != Extra::NotEmpty;
    field.autoIncrement = column.extra == Extra::Counter;
    if (column.extra == Extra::StartsTrue)
        field.defaultValue = std::make_shared<const Value>(true);
    return field;
}

TableDef makeTable(const Table& table, int version)
{
    TableDef made(table.name.toString());
    for (const Column& column : table.columns)
        if (isIn(column.in, version))
            made.appendField(makeField(column));
    for (const Key& key : table.keys)
        if (isIn(key.in, version))
            made.appendIndex({key.name.toString(), {key.field.toString()}, key.primary, key.primary, key.primary});
    return made;
}

QStringList textsOf(const std::vector<PositionTitle>& titles)
{
    QStringList made;
    for (const PositionTitle& title : titles)
        made += title.title.toString();
    return made;
}

Version makeVersion(int number)
{
    Version made{number, number <= V11 ? 0 : number, {}, {}, {}};
    for (const Table& table : Tables)
        if (isIn(table.in, number))
            made.tables.push_back(makeTable(table, number));
    for (const Query& query : Queries)
        if (isIn(query.in, number))
            made.queries.push_back({query.name.toString(), query.sql.toString()});
    if (made.findTable(QString(DenTitleTable)))
        made.usualTexts = {{DenTitleTable, textsOf(schema::denTitles())},
                           {PackTitleTable, textsOf(schema::packTitles())}};
    return made;
}

void addTitles(Database& database, const QString& table, const QString& field, const std::vector<PositionTitle>& titles)
{
    Recordset rows = database.openRecordset(table);
    for (const PositionTitle& title : titles) {
        rows.addNew();
        rows.setValue(field, title.title.toString());
        rows.setValue(u"Sort_Order", title.sortOrder);
        rows.update();
    }
}

} // namespace

const Versions& schema::versions()
{
    static const Versions All = [] {
        Versions all;
        for (const int number : Numbers)
            all.push_back(makeVersion(number));
        return all;
    }();
    return All;
}

const Version& schema::version(int number)
{
    return *std::ranges::find(versions(), number, &Version::number);
}

const std::vector<TableDef>& schema::tables(int number)
{
    return version(number).tables;
}

const TableDef* schema::findTable(QStringView name, int number)
{
    return version(number).findTable(name);
}

const std::vector<QueryDef>& schema::queries(int number)
{
    return version(number).queries;
}

bool schema::isOurs(const QString& table)
{
    return std::ranges::any_of(versions(), [&table](const Version& one) { return one.findTable(table); });
}

void schema::requireOurs(const QStringList& tables)
{
    if (std::ranges::none_of(tables, isOurs))
        throw platform::RuntimeError(platform::UnrecognisedFormat, QStringLiteral("Database"),
                                     QStringLiteral("It isn't a pack's file: it has none of a pack's tables."));
}

// The titles are spelled as in the packs' reports, misspellings included.
const std::vector<PositionTitle>& schema::denTitles()
{
    static const std::vector<PositionTitle> Titles = {
        {u"Asst. Den Leader", 2}, {u"Co-Den Leader", 2},   {u"Den Chief", 3},
        {u"Den Leader", 1},       {u"Tiger Cub Coach", 1}, {u"Tiger Cub Parent", 2},
    };
    return Titles;
}

const std::vector<PositionTitle>& schema::packTitles()
{
    static const std::vector<PositionTitle> Titles = {
        {u"Cub Master", 1},       {u"Advancement Chair", 5},      {u"Asst. Cubmaster", 2},
        {u"Treasure", 4},         {u"Charter Representitive", 4}, {u"Committee Chair", 3},
        {u"Den Leader Coach", 5}, {u"Membership Chair", 5},       {u"Quartermaster", 5},
        {u"Secretary", 4},
    };
    return Titles;
}

int versionOf(const Database& database, const Versions& versions)
{
    const int stated = database.stated();
    if (isLater(stated, versions))
        return stated;
    TableFields tables;
    for (const QString& name : database.tableNames()) {
        const TableDef table = database.tableDef(name);
        for (const Field& field : table.fields())
            tables[name] += field.name;
    }
    return versionOf(versions, stated, tables).number;
}

void createSchema(Database& database, int number)
{
    const Version& version = schema::version(number);
    Transaction together(database);
    for (TableDef table : version.tables)
        database.appendTableDef(table);
    for (const QueryDef& query : version.queries)
        database.createQueryDef(query.name, query.sql);
    if (version.findTable(QString(DenTitleTable))) {
        addDefaultDenTitles(database);
        addDefaultPackTitles(database);
    }
    database.state(version.stated);
    together.commit();
}

void addDefaultDenTitles(Database& database)
{
    addTitles(database, DenTitleTable, QStringLiteral("Den_Title"), schema::denTitles());
}

void addDefaultPackTitles(Database& database)
{
    addTitles(database, PackTitleTable, QStringLiteral("Pack_Titles"), schema::packTitles());
}

} // namespace orlo::store
