#pragma once

#include "reporting/view/PageText.h"
#include "reporting/view/PreviewWindow.h"
#include "reporting/view/ReportControl.h"
#include "store/engine/Database.h"
#include "store/engine/TableDef.h"
#include "support/Files.h"

#include <QTemporaryDir>

#include <memory>

namespace orlo::test
{

inline const QString GoodReport = QString::fromUtf8(contents(ORLO_SOURCE_DIR "/tests/reporting/Shopping.rpt"));

/// A folder with a report of items and others, and the databases that it may read.
class Shopping
{
protected:
    QTemporaryDir m_folder;

    QString path(const QString& name) const { return m_folder.filePath(name); }

    void write(const QString& name, const QString& text) const { test::write(path(name), text.toUtf8()); }
    // A report path as a screen builds it: with the system's separator, and in other case than the file's.
    QString report(const QString& text) const
    {
        write("Shopping.rpt", text);
        return m_folder.path() + "\\shopping.rpt";
    }
    void makeDatabase(const QString& name, const QString& item, const QString& other, int rows = 1) const
    {
        store::Database database = store::DBEngine::createDatabase(path(name));
        for (const auto& [table, text, count] : {std::tuple("Items", item, rows), {"Others", other, 1}}) {
            store::TableDef definition{QString(table)};
            definition.appendField({.name = "Name", .size = 50, .defaultValue = {}});
            database.appendTableDef(definition);
            for (int row = 0; row < count; ++row)
                database.execute(QStringLiteral("Insert Into %1 Values ('%2')").arg(table, text));
        }
    }
    // A screen's object for the report, with the database that it reads.
    std::unique_ptr<reporting::ReportControl> control(const QString& database = "a.mdb") const
    {
        auto made = std::make_unique<reporting::ReportControl>("crShopping", nullptr);
        set(*made, database);
        return made;
    }
    void set(reporting::ReportControl& control, const QString& database) const
    {
        control.setDatabaseFile(0, path(database));
        control.setReportFile(report(GoodReport));
        control.setSubreportToChange("Others");
        control.setDatabaseFile(0, path(database));
    }
    // The same with 14,400 rows.
    std::unique_ptr<reporting::ReportControl> longControl() const
    {
        auto made = control("long.mdb");
        report(QString(GoodReport).replace("Name From Items Order By", "A.Name From Items As A, Items As B, Others"));
        return made;
    }
    // What a run shows of the databases' items, in order; or the number of its failure.
    static QString shown(reporting::ReportControl& control)
    {
        if (const int failure = control.run())
            return QString::number(failure);
        QStringList items;
        for (const char* item : {"Apple", "Axe", "Bread", "Bucket", "Butter", "Marble", "Mug"})
            if (!reporting::findText(control.preview()->document(), item).empty())
                items += item;
        return items.join(u' ');
    }
};

} // namespace orlo::test
