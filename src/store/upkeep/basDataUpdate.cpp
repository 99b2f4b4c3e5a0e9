#include "store/upkeep/basDataUpdate.h"

#include "platform/FileSystem.h"
#include "shell/forms/Module1.h"
#include "store/copies/KeptCopies.h"
#include "store/engine/Journal.h"
#include "store/jet/OpenFile.h"
#include "store/schema/Schema.h"
#include "widgets/Application.h"
#include "widgets/MessageBox.h"

#include <QFile>

namespace orlo
{

using store::Recordset;
using store::TableDef;
namespace schema = store::schema;

namespace
{

using Names = std::initializer_list<QStringView>;

// Adds fields to a table as the table of that name has them in version 1.1.
void addFields(TableDef& table, QStringView like, const Names& names)
{
    const auto& fields = schema::findTable(like)->fields();
    for (const QStringView name : names)
        table.appendField(*std::ranges::find(fields, name, &store::Field::name));
}

void addTable(QStringView name)
{
    TableDef table = *schema::findTable(name);
    database().appendTableDef(table);
}

// Does something at each record of a set, from the first to the last.
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

void addDenTitles()
{
    addTable(u"Den_Titles");
    store::addDefaultDenTitles(database());
}

void addLeaderDenAssignments()
{
    addTable(u"Leader_Den_Assignments");
    Recordset adults = database().openRecordset(QStringLiteral("Adults"));
    Recordset assignments = database().openRecordset(QStringLiteral("Leader_Den_Assignments"));
    forEachRecord(adults, [&] {
        if (adults[u"Assigned_Den_SID"].isEmpty())
            return;
        assignments.addNew();
        assignments.setValue(u"Adult_SID", adults[u"Adult_SID"]);
        assignments.setValue(u"Den_SID", adults[u"Assigned_Den_SID"]);
        assignments.update();
    });
    adults.close();
    assignments.close();
}

void addPackPositions()
{
    addTable(u"Pack_Positions");
    store::addDefaultPackTitles(database());
}

void extendAdults()
{
    TableDef adults = database().tableDef(u"Adults");
    addFields(adults, u"Adults", {u"Email"});
}

// Sends all records of one table to another; one that has no quantity counts once.
void copyAwards(const QString& from, const QString& to, bool withQuantity)
{
    Recordset old = database().openRecordset(from);
    Recordset made = database().openRecordset(to);
    forEachRecord(old, [&] {
        made.addNew();
        for (const QStringView field : {u"Scout_SID", u"Insignia_SID", u"Date_Assigned", u"Year", u"Month"})
            made.setValue(field, old[field]);
        made.setValue(u"Quantity", withQuantity ? old[u"Quantity"] : store::Value(1));
        made.update();
    });
    old.close();
    made.close();
}

// Gives every award of a scout a key and a quantity. The rows pass through a table of their own, because the engine
// numbers only rows that are new; the keys follow the order in which the awards were given.
void rebuildScoutAwards()
{
    const QString awards = QStringLiteral("Assigned_Awards_Scouts");
    TableDef passing(QStringLiteral("AAS_TMP"));
    addFields(passing, awards, {u"Scout_SID", u"Insignia_SID", u"Date_Assigned", u"Year", u"Month", u"Quantity"});
    database().appendTableDef(passing);
    copyAwards(awards, passing.name(), false);
    database().deleteTableDef(awards);
    addTable(awards);
    copyAwards(passing.name(), awards, true);
    database().deleteTableDef(passing.name());
}

void changePurchaseList()
{
    TableDef list = database().tableDef(u"Purchase_List");
    for (const QStringView old : {u"Award_Name", u"Award_Type", u"Insignia_SID"})
        list.deleteField(old);
    addFields(list, list.name(), {u"Award_Name", u"Insignia_Type", u"Quantity"});
}

// Parents of version 1.0 live where their scout lives.
void extendScouts()
{
    TableDef table = database().tableDef(u"Scouts");
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
    Recordset scouts = database().openRecordset(table.name());
    forEachRecord(scouts, [&] {
        scouts.edit();
        scouts.setValue(u"Parent1_Use_Scout_Add", true);
        scouts.setValue(u"Parent2_Use_Scout_Add", true);
        scouts.update();
    });
    scouts.close();
}

QByteArray contents(const QString& path)
{
    QFile file(platform::nativePath(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A run that was killed left half a change in the file, and its journal the way back, which the safety copy must not
// be without. But where the safety copy was put back since, the journal is for the file that it replaced.
void settleJournal(const QString& path, const QString& safetyCopy)
{
    const QString native = platform::nativePath(path);
    if (!QFile::exists(native + QStringLiteral("-journal")) || !gFileSystem.fileExists(path))
        return;
    if (contents(path) == contents(safetyCopy))
        store::setJournalAside(native);
    else
        store::openFile(path).close();
}

} // namespace

bool UpdateDatabaseFile()
{
    const QString old = gAppPath + gOldDbName;
    const QString safetyCopy = gAppPath + QStringLiteral("\\QuorrelOld_10.mdb");
    widgets::message(QStringLiteral("The ORLO Database will now be updated to work with this new version of software."),
                     QStringLiteral("Update Database"));
    const widgets::BusyPointer busy;
    // The next start would make the safety copy of whatever a failure leaves. A copy that is there already may be an
    // older update's.
    widgets::setClosingWords(QStringLiteral("Nothing was changed."));
    settleJournal(old, safetyCopy);
    gFileSystem.copyFile(old, safetyCopy, true);
    if (!gFileSystem.fileExists(safetyCopy)) {
        widgets::setClosingWords(QString());
        return false;
    }
    widgets::setClosingWords(
        QStringLiteral("Before you start ORLO again, put QuorrelOld_10.mdb in the place of Quorrel.mdb."));
    openDatabase(old);
    // An update that failed before has left its mark, in the safety copy, too.
    if (database().tableNames().contains(QLatin1StringView("Den_Titles"), Qt::CaseInsensitive))
        widgets::setClosingWords(QString());
    // The safety copy is on the disk. Until the changed file is copied to the disk too, flushing after every row would
    // only keep the user waiting.
    database().deferFlushing();
    ApplyUpdateSteps();
    database().close();
    store::keepCopyOf(databasePath());
    store::setJournalAside(platform::nativePath(databasePath())); // it is for the file that goes
    gFileSystem.copyFile(old, databasePath(), true);
    if (!gFileSystem.fileExists(databasePath()))
        return false;
    openDatabase(databasePath());
    gFileSystem.deleteFile(old, false);
    widgets::setClosingWords(QString());
    gDbNeedsUpdate = false;
    return true;
}

void ApplyUpdateSteps()
{
    addDenTitles();
    addLeaderDenAssignments();
    addTable(u"Leader_Pack_Assn");
    addTable(u"Other_Purchase_List");
    addPackPositions();
    extendAdults();
    rebuildScoutAwards();
    changePurchaseList();
    extendScouts();
    // In the order of their names; a query may name one that comes after it.
    for (const store::QueryDef& query : schema::queries())
        database().createQueryDef(query.name, query.sql);
}

} // namespace orlo
