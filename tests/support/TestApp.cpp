#include "support/TestApp.h"

#include "shell/forms/Module1.h"
#include "store/engine/Database.h"
#include "store/engine/Field.h"
#include "store/engine/Value.h"
#include "store/opening/OpenFile.h"
#include "store/schema/Schema.h"
#include "support/Controls.h"
#include "support/Main.h"
#include "support/Sqlite.h"
#include "widgets/Form.h"

#include <QApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QProcess>
#include <QTest>

namespace orlo::test
{

AppFolder::AppFolder()
{
    gAppPath = m_dir.path();
    gOldDbName = QStringLiteral("\\Quorrel.mdb");
    gDbName = QStringLiteral("\\Quorrel11.mdb");
    store::Database fresh = store::DBEngine::createDatabase(m_dir.filePath(QStringLiteral("Quorrel11.mdb")));
    store::createSchema(fresh);
    fresh.close();
    gDatabase = std::make_unique<store::Database>(store::openFile(databasePath()));
}

AppFolder::~AppFolder()
{
    widgets::Form::unloadAll();
    gDatabase.reset();
}

bool alwaysBusy(const QString& statement, const std::function<void()>& action)
{
    static QString watched;
    static int seen;
    static int idle;
    watched = statement;
    seen = idle = 0;
    QLoggingCategory::setFilterRules("orlo.sql=true");
    const auto former = qInstallMessageHandler([](QtMsgType, const QMessageLogContext& context, const QString& text) {
        const bool counts = qstrcmp(context.category, "orlo.sql") == 0 && text.contains(watched);
        seen += counts;
        idle += counts && !QApplication::overrideCursor();
    });
    action();
    qInstallMessageHandler(former);
    QLoggingCategory::setFilterRules(QString());
    return seen > 0 && idle == 0;
}

int count(const QString& table, const QString& where)
{
    const QString condition = where.isEmpty() ? QString() : QStringLiteral(" Where ") + where;
    return database()
        .openRecordset(QStringLiteral("Select Count(*) As N From ") + table + condition)
        .value(u"N")
        .toInt32();
}

QString rows(const QString& select)
{
    QStringList lines;
    for (auto rs = database().openRecordset(select); !rs.eof(); rs.moveNext()) {
        QStringList cells;
        for (int column = 0; column < static_cast<int>(rs.fields().size()); ++column)
            cells += rs.value(column).isNull() ? "Null" : rs.value(column).toText();
        lines += cells.join(u'/');
    }
    return lines.join(", ");
}

void execute(const QString& sql)
{
    database().execute(sql);
}

void fill(const QString& sql)
{
    const QStringList told = sqlite(gAppPath + "/Quorrel11.mdb", sql.toUtf8());
    if (!told.isEmpty())
        fail(told.join(u'\n'));
}

void copyLayouts()
{
    for (const QString grid : {"DenAssign.grd", "Pack_Titles.grd", "Den_Titles.grd"})
        QVERIFY(QFile::copy(ORLO_SOURCE_DIR "/src/layouts/" + grid, gAppPath + "/" + grid));
}

QString failureInChild(const QString& sql, const std::function<void()>& action)
{
    constexpr auto Folder = "ORLO_TEST_CHILD";
    if (qEnvironmentVariableIsSet(Folder)) {
        gAppPath = qEnvironmentVariable(Folder);
        gDatabase = std::make_unique<store::Database>(store::openFile(databasePath()));
        answerNext();
        action();
        std::_Exit(0);
    }
    fill(sql);
    QProcess child;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(Folder), gAppPath);
    child.setProcessEnvironment(environment);
    QString test = QString::fromLatin1(QTest::currentTestFunction());
    if (QTest::currentDataTag())
        test += u':' + QString::fromUtf8(QTest::currentDataTag());
    child.start(QCoreApplication::applicationFilePath(), functionArguments(test));
    child.waitForFinished(60000);
    const QString told = QString::fromUtf8(child.readAllStandardError());
    const QString number = told.section(QLatin1String("Run-time error '"), 1).section(u'\'', 0, 0);
    return child.exitCode() == 1 && !number.isEmpty() ? number : told + u'?';
}

} // namespace orlo::test
