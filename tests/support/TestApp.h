#pragma once

#include "shell/forms/Module1.h"
#include "store/opening/OpenFile.h"
#include "store/schema/Schema.h"
#include "support/Main.h"
#include "widgets/Form.h"

#include <QAbstractButton>
#include <QLoggingCategory>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace orlo::test
{

/// A temporary application folder with a fresh database, opened as the program's.
class AppFolder
{
public:
    AppFolder()
    {
        gAppPath = m_dir.path();
        gOldDbName = QStringLiteral("\\Quorrel.mdb");
        gDbName = QStringLiteral("\\Quorrel11.mdb");
        store::Database fresh = store::DBEngine::createDatabase(m_dir.filePath(QStringLiteral("Quorrel11.mdb")));
        store::createSchema(fresh);
        fresh.close();
        gDatabase = std::make_unique<store::Database>(store::openFile(databasePath()));
    }
    ~AppFolder()
    {
        widgets::Form::unloadAll();
        gDatabase.reset();
    }
    AppFolder(const AppFolder&) = delete;
    AppFolder& operator=(const AppFolder&) = delete;

    [[nodiscard]] QString path() const { return m_dir.path(); }

private:
    QTemporaryDir m_dir;
};

/// What the next message box says, once it has been answered.
struct Told {
    QString text;
    QString title;
    bool shown = false;
};

/// Handles the next modal window as soon as it is shown, by a function that returns false for a window it doesn't wait
/// for.
template <class Take>
std::shared_ptr<Told> takeNext(const Take& take)
{
    auto told = std::make_shared<Told>();
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, qApp, [timer, told, take] {
        if (QWidget* modal = QApplication::activeModalWidget(); modal && take(*modal, *told)) {
            timer->stop();
            timer->deleteLater();
        }
    });
    timer->start(5);
    return told;
}

/// Answers the next message box with the button, or by Enter if there is none, and records its text.
inline std::shared_ptr<Told> answerNext(QMessageBox::StandardButton button = QMessageBox::Ok)
{
    return takeNext([button](QWidget& modal, Told& told) {
        auto* box = qobject_cast<QMessageBox*>(&modal);
        if (!box || told.shown)
            return false;
        told = {box->text(), box->windowTitle(), true};
        if (button == QMessageBox::NoButton)
            QTest::keyClick(box->focusWidget(), Qt::Key_Return);
        else if (auto* pressed = box->button(button))
            pressed->click();
        else
            box->reject();
        return true;
    });
}

/// Dismisses the next failure report and records type, number, source, description and text, one per line.
inline std::shared_ptr<Told> dismissReport()
{
    return takeNext([](QWidget& modal, Told& told) {
        if (modal.objectName() != QLatin1String("dlgError") || told.shown)
            return false;
        told.shown = true;
        for (const char* field : {"Type", "Number", "Source", "Description", "Text"}) {
            const auto* shown = modal.findChild<QWidget*>(QLatin1String("txtError") + QLatin1String(field));
            told.text += shown->property("text").toString() + shown->property("plainText").toString() + u'\n';
        }
        modal.findChild<QAbstractButton*>(QStringLiteral("cmdOk"))->click();
        return true;
    });
}

/// A form's control by its name; the test fails without it.
template <class W>
W& control(const QObject& form, const char* name)
{
    W* found = form.findChild<W*>(QString::fromLatin1(name));
    if (!found)
        fail(QStringLiteral("no control ") + QString::fromLatin1(name));
    return *found;
}

/// True if an action runs statements that contain a text, and all of them under the busy cursor.
template <class Action>
bool alwaysBusy(const QString& statement, const Action& action)
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

/// A count from the open database.
inline int count(const QString& table, const QString& where = QString())
{
    const QString condition = where.isEmpty() ? QString() : QStringLiteral(" Where ") + where;
    return database()
        .openRecordset(QStringLiteral("Select Count(*) As N From ") + table + condition)
        .value(u"N")
        .toInt32();
}

} // namespace orlo::test
