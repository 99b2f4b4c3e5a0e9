#include "store/schema/Update11.h"

#include "store/engine/TableDef.h"
#include "store/engine/Value.h"
#include "store/schema/Schema.h"

#include <algorithm>

namespace orlo::store
{

namespace
{

using Names = std::initializer_list<QStringView>;

// Adds fields to a table, as the table of that name has them in version 1.1.
void addFields(TableDef& table, QStringView like, const Names& names)
{
    const auto& fields = schema::findTable(like, schema::V11)->fields();
    for (const QStringView name : names)
        table.appendField(*std::ranges::find(fields, name, &Field::name));
}

void addTable(Database& database, QStringView name)
{
    TableDef table = *schema::findTable(name, schema::V11);
    database.appendTableDef(table);
}

// Runs an action at each record of a set, first to last.
template <class Action>
void forEachRecord(Recordset& records, const Action& action)
{
    if (!records.bof() || !records.eof()) {
        records.moveLast();
        records.moveFirst();
    }
    for (; !records.eof(); records.moveNext())
        action();
}

void addDenTitles(Database& database)
{
    addTable(database, u"Den_Titles");
    addDefaultDenTitles(database);
}

void addLeaderDenAssignments(Database& database)
{
    addTable(database, u"Leader_Den_Assignments");
    Recordset adults = database.openRecordset(QStringLiteral("Adults"));
    Recordset assignments = database.openRecordset(QStringLiteral("Leader_Den_Assignments"));
    forEachRecord(adults, [&] {
        if (adults[u"Assigned_Den_SID"].isEmpty())
            return;
        assignments.addNew();
        assignments.setValue(u"Adult_SID", adults[u"Adult_SID"]);
        assignments.setValue(u"Den_SID", adults[u"Assigned_Den_SID"]);
        assignments.update();
    });
}

void addPackPositions(Database& database)
{
    addTable(database, u"Pack_Positions");
    addDefaultPackTitles(database);
}

void extendAdults(Database& database)
{
    TableDef adults = database.tableDef(u"Adults");
    addFields(adults, u"Adults", {u"Email"});
}

// Copies all records of one table to another; without a quantity they count once.
void copyAwards(Database& database, const QString& from, const QString& to, bool withQuantity)
{
    Recordset old = database.openRecordset(from);
    Recordset made = database.openRecordset(to);
    forEachRecord(old, [&] {
        made.addNew();
        for (const QStringView field : {u"Scout_SID", u"Insignia_SID", u"Date_Assigned", u"Year", u"Month"})
            made.setValue(field, old[field]);
        made.setValue(u"Quantity", withQuantity ? old[u"Quantity"] : Value(1));
        made.update();
    });
}

// Gives every scout's award a key and a quantity. The rows go through a temporary table because the engine numbers only
// new rows; the keys follow the order in which awards were given.
void rebuildScoutAwards(Database& database)
{
    const QString awards = QStringLiteral("Assigned_Awards_Scouts");
    TableDef passing(QStringLiteral("AAS_TMP"));
    addFields(passing, awards, {u"Scout_SID", u"Insignia_SID", u"Date_Assigned", u"Year", u"Month", u"Quantity"});
    database.appendTableDef(passing);
    copyAwards(database, awards, passing.name(), false);
    database.deleteTableDef(awards);
    addTable(database, awards);
    copyAwards(database, passing.name(), awards, true);
    database.deleteTableDef(passing.name());
}

void changePurchaseList(Database& database)
{
    TableDef list = database.tableDef(u"Purchase_List");
    for (const QStringView old : {u"Award_Name", u"Award_Type", u"Insignia_SID"})
        list.deleteField(old);
    addFields(list, list.name(), {u"Award_Name", u"Insignia_Type", u"Quantity"});
}

// Parents of version 1.0 live where their scout lives.
void extendScouts(Database& database)
{
    TableDef table = database.tableDef(u"Scouts");
    addFields(table, table.name(),
              {u"Alt_Parent_Address",
               u"Alt_Parent_City",
               u"Alt_Parent_State",
               u"Alt_Parent_Zip",
               u"Parent1_Email",
               u"Parent1_Use_Scout_Add",
               u"Parent1_Home_Phone",
               u"Parent1_Work_Phone",
               u"Parent1_Correspondance",
               u"Parent2_Work_Phone",
               u"Parent2_Use_Scout_Add",
               u"Parent2_Email",
               u"Parent2_Correspondance",
               u"Grade_In_School",
               u"Boys_Life",
               u"BSA_Number",
               u"Scouts_Email",
               u"Parent2_Home_Phone",
               u"Parent1_Den_Leader_SID",
               u"Parent2_Den_Leader_SID"});
    Recordset scouts = database.openRecordset(table.name());
    forEachRecord(scouts, [&] {
        scouts.edit();
        scouts.setValue(u"Parent1_Use_Scout_Add", true);
        scouts.setValue(u"Parent2_Use_Scout_Add", true);
        scouts.update();
    });
}

} // namespace

void updateTo11(Database& database)
{
    addDenTitles(database);
    addLeaderDenAssignments(database);
    addTable(database, u"Leader_Pack_Assn");
    addTable(database, u"Other_Purchase_List");
    addPackPositions(database);
    extendAdults(database);
    rebuildScoutAwards(database);
    changePurchaseList(database);
    extendScouts(database);
    // In the order of their names; a query may name one that comes after it.
    for (const QueryDef& query : schema::queries(schema::V11))
        database.createQueryDef(query.name, query.sql);
}

} // namespace orlo::store
