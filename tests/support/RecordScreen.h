#pragma once

#include "support/Sqlite.h"
#include "support/TestApp.h"
#include "widgets/ComboBox.h"
#include "widgets/ListBox.h"

#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QPointer>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>

#include <functional>

namespace orlo::test
{

/// Clicks a control of a window.
inline void press(const QObject& window, const QString& name)
{
    QTest::mouseClick(&control<QWidget>(window, name.toUtf8().constData()), Qt::LeftButton);
}

/// A query's rows: cells separated by slashes, rows by ", ".
inline QString rows(const QString& select)
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

/// The rows of a list or combo box.
template <class List>
QString textsOf(const List& list)
{
    QStringList texts;
    for (int row = 0; row < list.listCount(); ++row)
        texts += list.list(row);
    return texts.join("; ");
}

/// Clicks a row of a list.
inline void clickRow(widgets::ListBox& list, int row, Qt::KeyboardModifier modifier = Qt::NoModifier)
{
    QTest::mouseClick(list.viewport(), Qt::LeftButton, modifier, list.visualItemRect(list.item(row)).center());
}

/// An open record form, driven by mouse and keys.
template <class F>
struct RecordScreen {
    F& form = widgets::Instance<F>::get();
    mutable QList<std::shared_ptr<Told>> told; ///< what the boxes answered by run() said
    mutable QString log;                       ///< how the last dialog driven by run() ended

    RecordScreen()
    {
        form.showForm();
        if (!QTest::qWaitForWindowActive(&form))
            fail(QStringLiteral("the form doesn't become active"));
    }
    template <class W = QWidget>
    W& get(const char* name) const
    {
        return control<W>(form, name);
    }
    void click(const char* button) const { press(form, button); }
    void type(const QString& box, const QString& text) const
    {
        QWidget& control = get(box.toUtf8().constData());
        control.setFocus();
        QTest::keyClick(&control, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&control, Qt::Key_Delete);
        QTest::keyClicks(&control, text);
    }
    /// Does what the words say: F, P, N and L step, n, s, d, c and x press New, Save, Delete, Cancel and Close, E,
    /// Enter and Tab are keys, "yes", "no" and "ok" answer the next box, "preset" by Enter, "Name=text" types into
    /// txtName, "@0" clicks a row of the list, "den:Bear_Den_2" sets the den filter, "cmdFind>steps" works the dialog
    /// that a word opens. Any other word goes to the form's own actions or, if there are none, is a control to click.
    void run(const QString& script, const std::function<void(const QString&)>& other = {}) const
    {
        const auto words = script.split(u' ', Qt::SkipEmptyParts);
        for (const QString& word : words) {
            static const QMap<QString, const char*> buttons{{"F", "cmdFirst"},  {"P", "cmdPrevious"}, {"N", "cmdNext"},
                                                            {"L", "cmdLast"},   {"n", "cmdNew"},      {"s", "cmdSave"},
                                                            {"d", "cmdDelete"}, {"c", "cmdCancel"},   {"x", "cmdExit"}};
            static const QMap<QString, QMessageBox::StandardButton> answers{{"yes", QMessageBox::Yes},
                                                                            {"no", QMessageBox::No},
                                                                            {"ok", QMessageBox::Ok},
                                                                            {"preset", QMessageBox::NoButton}};
            static const QMap<QString, Qt::Key> keys{
                {"E", Qt::Key_Escape}, {"Enter", Qt::Key_Return}, {"Tab", Qt::Key_Tab}};
            if (auto* dens = form.template findChild<QComboBox*>("cmbSelectedDens"); dens && word.startsWith("den:"))
                dens->setEditText(word.sliced(4).replace('_', ' '));
            else if (word.contains('>'))
                openDialog(word.section('>', 0, 0), word.section('>', 1).split(',', Qt::SkipEmptyParts), other);
            else if (buttons.contains(word))
                click(buttons[word]);
            else if (answers.contains(word))
                told.append(answerNext(answers[word]));
            else if (keys.contains(word))
                QTest::keyClick(word == "E" ? static_cast<QWidget*>(&form) : form.focusWidget(), keys[word]);
            else if (word.contains('='))
                type("txt" + word.section('=', 0, 0), word.section('=', 1));
            else if (word.startsWith('@') && word.size() > 1 && word[1].isDigit())
                clickRow(*form.template findChild<widgets::ListBox*>(), word.sliced(1).toInt());
            else if (other)
                other(word);
            else
                press(form, word);
        }
    }
    void openDialog(const QString& opener, const QStringList& steps,
                    const std::function<void(const QString&)>& other) const
    {
        log = "not shown";
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &form, [&] {
            QWidget* dialog = QApplication::activeModalWidget();
            if (!dialog || !dialog->isActiveWindow()) // it couldn't receive a key yet
                return;
            timer.stop();
            work(dialog, steps);
        });
        timer.start(5);
        run(opener, other);
    }
    /// Does what the steps say in a dialog: "Last:X" sets txtLast, "cmbDen:0" picks a row and "cmbDen=X" sets a text,
    /// "cmbDen^" opens the list and closes it, "lstScouts:0" clicks a row with Ctrl, Tab and E are keys, "yes" answers
    /// the next box, other words are clicks; underscores stand for blanks. A dialog that the steps leave open is
    /// cancelled. The log says whether they did, and for the state before the last step that it saw, whether it could
    /// be saved or find, and its boxes and lists.
    void work(const QPointer<QWidget>& dialog, const QStringList& steps) const
    {
        if (const auto* find = dialog->findChild<QPushButton*>("cmdFind"))
            QVERIFY(!find->isEnabled());
        for (const QString& step : steps + QStringList("end")) {
            if (!dialog || !dialog->isVisible()) {
                log.prepend("closed, ");
                return;
            }
            log.clear();
            for (const char* name : {"cmdSave", "cmdFind"})
                if (const auto* button = dialog->findChild<QPushButton*>(name))
                    log = button->isEnabled() ? "live" : "locked";
            for (const auto* box : dialog->findChildren<widgets::ComboBox*>())
                if (box->isVisible())
                    log += "; " + box->text() + " of " + textsOf(*box).replace("; ", ", ");
            for (const auto* list : dialog->findChildren<widgets::ListBox*>())
                log += textsOf(*list);
            static const QRegularExpression Marks("[:=^]");
            const QString name = step.section(Marks, 0, 0);
            const QString value = step.section(Marks, 1).replace('_', ' ');
            if (auto* box = dialog->findChild<widgets::ComboBox*>(name)) {
                box->setFocus();
                if (step.contains(':'))
                    box->setListIndex(value.toInt());
                else if (step.contains('='))
                    box->setText(value);
                else
                    box->showPopup(), box->hidePopup();
            } else if (auto* line = dialog->findChild<QLineEdit*>("txt" + name))
                line->setText(value);
            else if (auto* list = dialog->findChild<widgets::ListBox*>(name))
                clickRow(*list, value.toInt(), Qt::ControlModifier);
            else if (step == "yes")
                told.append(answerNext(QMessageBox::Yes));
            else if (step == "Tab" || step == "E")
                QTest::keyClick(dialog->focusWidget(), step == "E" ? Qt::Key_Escape : Qt::Key_Tab);
            else if (step != "end")
                press(*dialog, step);
        }
        log.prepend("open, ");
        press(*dialog, "cmdCancel");
    }
    /// Puts a different value into every control that the file names, a line "txtCity City Bern" for each, saves, steps
    /// to the next record and back, and returns each control that doesn't show its value then, and each field that
    /// doesn't hold it, or the fourth word. "- Field" is one without a control of its own; a field of the schema that
    /// isn't named is returned, too.
    [[nodiscard]] QString lostFields(const QString& file, const QString& record) const
    {
        const auto shown = [this](const QString& name) {
            QVariant value;
            for (const char* property : {"checked", "text", "plainText", "currentText"})
                if (!value.isValid() || value.toString().isEmpty())
                    value = get(name.toUtf8().constData()).property(property);
            return value.typeId() == QMetaType::Bool ? QString(value.toBool() ? "True" : "False") : value.toString();
        };
        QStringList lines = QString(contents(ORLO_SOURCE_DIR "/tests/" + file)).trimmed().split(u'\n');
        QString lost;
        for (const auto& field : store::schema::findTable(record.section(u' ', 0, 0))->fields())
            if (!lines.join(u' ').split(u' ').contains(field.name))
                lost += field.name + ": no line names it\n";
        lines.removeIf([](const QString& line) { return line.startsWith(u'-'); });
        for (const QString& line : std::as_const(lines)) {
            const QStringList words = line.split(u' ', Qt::SkipEmptyParts);
            auto* button = form.template findChild<QAbstractButton*>(words[0]);
            if (auto* list = form.template findChild<widgets::ComboBox*>(words[0]))
                list->setText(words[2]);
            else if (!button)
                type(words[0], words[2]);
            else if (shown(words[0]) != words[2])
                button->click();
        }
        run("s N P");
        for (const QString& line : lines) {
            const QStringList words = line.split(u' ', Qt::SkipEmptyParts);
            const QString held = rows("Select " + words[1] + " From " + record);
            if (shown(words[0]) != words[2] || held != words.last())
                lost += words.join(u' ') + ": shows " + shown(words[0]) + ", holds " + held + '\n';
        }
        return lost;
    }
    /// Which of these controls are enabled, by name; "all" or "none".
    [[nodiscard]] QString enabled(const QStringList& names) const
    {
        QStringList found;
        for (const QString& name : names)
            found += get(name.toUtf8().constData()).isEnabled() ? QStringList(name) : QStringList();
        return found.size() == names.size() ? "all" : found.isEmpty() ? "none" : found.join(u' ');
    }
    /// What the answered boxes said, one "Title: text" per line.
    [[nodiscard]] QString said() const
    {
        QStringList lines;
        for (const auto& box : told)
            lines += box->shown ? box->title + ": " + box->text : "not asked";
        return lines.join('\n');
    }
    /// What every record form shows, by the columns of the tests' tables: the label, and which buttons for stepping and
    /// changing are live, "Next Last New Delete".
    [[nodiscard]] QMap<QString, QString> shown() const
    {
        QStringList live;
        for (const QString name : {"First", "Previous", "Next", "Last", "New", "Save", "Delete"})
            live += get(("cmd" + name).toUtf8().constData()).isEnabled() ? QStringList(name) : QStringList();
        return {{"label", get<QLabel>("lblRecordInfo").text()}, {"live", live.join(u' ')}, {"said", said()}};
    }
};

/// Runs SQL on the open file as another program would; the row fails if it fails.
inline void fill(const QString& sql)
{
    const QStringList told = sqlite(gAppPath + "/Quorrel11.mdb", sql.toUtf8());
    if (!told.isEmpty())
        fail(told.join(u'\n'));
}

/// Copies the grids' layouts into the application's folder, as an installation does.
inline void copyLayouts()
{
    for (const QString grid : {"DenAssign.grd", "Pack_Titles.grd", "Den_Titles.grd"})
        QVERIFY(QFile::copy(ORLO_SOURCE_DIR "/src/layouts/" + grid, gAppPath + "/" + grid));
}

/// Runs the current test function and row again in a separate process on the same file, where the action is expected to
/// fail. Returns the number of the failure with which that process ends, or its output if it ends differently.
template <class Action>
QString failureInChild(const QString& sql, const Action& action)
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
