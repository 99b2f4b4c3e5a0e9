#pragma once

#include "platform/Conversion.h"
#include "shell/forms/Module1.h"
#include "store/jet/OpenFile.h"
#include "store/schema/Schema.h"
#include "support/Main.h"
#include "widgets/Form.h"

#include <QLoggingCategory>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace orlo::test
{

/// An application folder of a test's own with a fresh database in it, opened as the program's.
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

/// What the next message box says, after it has been answered.
struct Told {
    QString text;
    QString title;
    bool shown = false;
};

/// Answers the next message box with the button, or by Enter for none, as soon as it is up, and keeps what it said.
inline std::shared_ptr<Told> answerNext(QMessageBox::StandardButton button = QMessageBox::Ok)
{
    auto told = std::make_shared<Told>();
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, qApp, [timer, told, button] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box)
            return;
        timer->stop();
        timer->deleteLater();
        *told = {box->text(), box->windowTitle(), true};
        if (button == QMessageBox::NoButton)
            QTest::keyClick(box->focusWidget(), Qt::Key_Return);
        else if (auto* pressed = box->button(button))
            pressed->click();
        else
            box->reject();
    });
    timer->start(5);
    return told;
}

/// The control of a form by its name; the test fails without it.
template <class W>
W& control(const QObject& form, const char* name)
{
    W* found = form.findChild<W*>(QString::fromLatin1(name));
    if (!found)
        fail(QStringLiteral("no control ") + QString::fromLatin1(name));
    return *found;
}

/// Watches the statements that hold a text: whether they run under the busy pointer.
class BusyWatch
{
public:
    explicit BusyWatch(const QString& statement)
    {
        s_statement = statement;
        s_seen = s_idle = 0;
        QLoggingCategory::setFilterRules("orlo.sql=true");
        m_former = qInstallMessageHandler([](QtMsgType, const QMessageLogContext& context, const QString& text) {
            if (qstrcmp(context.category, "orlo.sql") != 0 || !text.contains(s_statement))
                return;
            ++s_seen;
            s_idle += QApplication::overrideCursor() ? 0 : 1;
        });
    }
    ~BusyWatch()
    {
        qInstallMessageHandler(m_former);
        QLoggingCategory::setFilterRules(QString());
    }
    BusyWatch(const BusyWatch&) = delete;
    BusyWatch& operator=(const BusyWatch&) = delete;

    /// True if there were such statements, and all under the pointer.
    [[nodiscard]] static bool alwaysBusy() { return s_seen > 0 && s_idle == 0; }

private:
    static inline QString s_statement;
    static inline int s_seen = 0;
    static inline int s_idle = 0;
    QtMessageHandler m_former;
};

/// One number out of the open database.
inline int count(const QString& table, const QString& where = QString())
{
    const QString condition = where.isEmpty() ? QString() : QStringLiteral(" Where ") + where;
    return database()
        .openRecordset(QStringLiteral("Select Count(*) As N From ") + table + condition)
        .value(u"N")
        .toInt32();
}

} // namespace orlo::test
