#pragma once

#include "platform/Conversion.h"
#include "shell/forms/Module1.h"
#include "store/jet/OpenFile.h"
#include "store/schema/Schema.h"
#include "support/Main.h"
#include "widgets/Form.h"

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
