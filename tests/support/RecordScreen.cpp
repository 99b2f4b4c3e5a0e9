#include "support/RecordScreen.h"

#include "platform/Conversion.h"
#include "store/engine/TableDef.h"
#include "store/schema/Schema.h"
#include "support/Failure.h"
#include "support/Files.h"
#include "support/Picture.h"
#include "widgets/ComboBox.h"
#include "widgets/ListBox.h"

#include <QApplication>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QToolTip>
#include <QWheelEvent>

namespace orlo::test
{

QWidget& showForm(const QString& name)
{
    widgets::Form& form = screenOf(name).get();
    form.showForm();
    return form;
}

RecordScreen::RecordScreen(const QString& name) : form(showForm(name))
{
    if (!QTest::qWaitForWindowActive(&form))
        fail(QStringLiteral("the form doesn't become active"));
}

void RecordScreen::type(const QString& box, const QString& text) const
{
    QWidget& control = get(box.toUtf8().constData());
    control.setFocus();
    QTest::keyClick(&control, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&control, Qt::Key_Delete);
    QTest::keyClicks(&control, text);
}

void RecordScreen::run(const QString& script, const std::function<void(const QString&)>& other) const
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
        if (auto* dens = form.findChild<QComboBox*>("cmbSelectedDens"); dens && word.startsWith("den:"))
            dens->setEditText(word.sliced(4).replace('_', ' '));
        else if (word.contains('>'))
            openDialog(word.section('>', 0, 0), word.section('>', 1).split(',', Qt::SkipEmptyParts), other);
        else if (buttons.contains(word))
            click(buttons[word]);
        else if (answers.contains(word))
            told.append(answerNext(answers[word]));
        else if (keys.contains(word))
            QTest::keyClick(form.focusWidget() ? form.focusWidget() : &form, keys[word]);
        else if (word.contains('=') && !form.findChild<QComboBox*>(word.section('=', 0, 0)))
            type("txt" + word.section('=', 0, 0), word.section('=', 1));
        else if (byHand(word))
            QCoreApplication::processEvents(); // an editor ends after its key
        else if (word.startsWith('@') && word.size() > 1 && word[1].isDigit())
            clickRow(*form.findChild<widgets::ListBox*>(), word.sliced(1).toInt());
        else if (other)
            other(word);
        else if (word == "close")
            form.close();
        else if (word == "away")
            form.hide(), form.show();
        else if (!set(form, word))
            press(form, word);
    }
}

bool RecordScreen::byHand(const QString& word) const
{
    const QString value = word.section(':', 1).replace('_', ' ');
    const auto focused = [this] { return QApplication::focusWidget() ? QApplication::focusWidget() : &form; };
    const auto sendKey = [&](bool repeats) {
        const QKeyCombination key = QKeySequence(value)[0];
        const QString text = value.size() == 1 ? value : QString(value.endsWith("Space") ? " " : "");
        QTest::simulateEvent(focused(), true, key.key(), key.keyboardModifiers(), text, repeats);
        if (!repeats)
            QTest::simulateEvent(focused(), false, key.key(), key.keyboardModifiers(), QString(), false);
    };
    const auto target = [&] {
        QWidget& control = get(word.section(':', 1).section(',', 0, 0).toUtf8().constData());
        auto* area = qobject_cast<QAbstractScrollArea*>(&control);
        return area ? area->viewport() : &control;
    };
    const auto place = [&] { // of a grid's cell "name,row,column"
        const auto* view = qobject_cast<QAbstractItemView*>(target()->parentWidget());
        const QStringList at = value.split(',');
        if (const auto* tabs = qobject_cast<QTabBar*>(target()); tabs && at.size() > 1)
            return tabs->tabRect(at[1].toInt()).center();
        if (view && at.size() > 2 && !view->model()->hasIndex(at[1].toInt(), at[2].toInt()))
            fail("no cell " + value);
        return view && at.size() > 2 ? view->visualRect(view->model()->index(at[1].toInt(), at[2].toInt())).center()
                                     : target()->rect().center();
    };
    if (word == "paint")
        isPainted = true;
    else if (word.startsWith("colours:"))
        showColours(value);
    else if (word.startsWith("today:"))
        platform::setToday(platform::readDate(value)->date);
    else if (word.startsWith("key:"))
        sendKey(false);
    else if (word.startsWith("held:"))
        sendKey(true);
    else if (word.startsWith("box:"))
        told.append(takeNext([keys = value.split(',')](QWidget& modal, Told& box) {
            auto* asked = qobject_cast<QMessageBox*>(&modal);
            if (!asked || box.shown || !asked->isActiveWindow()) // before that, it answers no access key
                return false;
            box = {asked->text(), asked->windowTitle(), true, "keys"};
            for (qsizetype at = 0; at < keys.size() && asked->isVisible(); ++at) {
                box.kind += ' ' + keys[at];
                if (keys[at] == "close") {
                    asked->close();
                    continue;
                }
                const auto key = QKeySequence(keys[at])[0];
                QTest::keyClick(asked, key.key(), key.keyboardModifiers());
            }
            if (asked->isVisible())
                asked->done(QMessageBox::No);
            return true;
        }));
    else if (word.startsWith("type:"))
        QTest::keyClicks(focused(), value);
    else if (word.startsWith("press:"))
        QTest::mouseClick(target(), Qt::LeftButton, {}, place());
    else if (word.startsWith("ctrl:") || word.startsWith("shift:"))
        QTest::mouseClick(target(), Qt::LeftButton, word[0] == 'c' ? Qt::ControlModifier : Qt::ShiftModifier, place());
    else if (word.startsWith("twice:")) {
        const QPointer<QWidget> hit = target();
        const QPoint at = place();
        QTest::mouseClick(hit, Qt::LeftButton, {}, at), QCoreApplication::processEvents();
        if (hit)
            QTest::mouseDClick(hit, Qt::LeftButton, {}, at);
        if (hit)
            QTest::mouseRelease(hit, Qt::LeftButton, {}, at);
    } else if (word.startsWith("right:"))
        QTest::mouseClick(target(), Qt::RightButton, {}, place()),
            QTest::mouseDClick(target(), Qt::RightButton, {}, place());
    else if (word.startsWith("wheel:")) {
        QWheelEvent turned(place(), target()->mapToGlobal(place()), {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(target(), &turned);
    } else if (word.startsWith("tip:")) {
        QToolTip::hideText();
        (void)QTest::qWaitFor([] { return !QToolTip::isVisible(); });
        QHelpEvent help(QEvent::ToolTip, place(), target()->mapToGlobal(place()));
        QApplication::sendEvent(target(), &help);
        log += "tip " + (QToolTip::isVisible() ? QToolTip::text() : "none");
    } else if (word.startsWith("says:")) {
        target()->parentWidget()->grab();
        log += "says " + target()->parentWidget()->accessibleDescription();
    } else if (word.startsWith("wide:")) { // a heading dragged to this width, or one so much less than the grid's
        if (auto* grid = qobject_cast<QTableView*>(target()->parentWidget())) {
            const int width = value.section(',', 2).toInt();
            grid->setColumnWidth(value.section(',', 1, 1).toInt(), width + (width < 0 ? target()->width() : 0));
        }
    } else
        return false;
    return true;
}

void RecordScreen::play(const Words& added, const QString& steps, QStringList& seen) const
{
    for (const QString& word : steps.split(' ', Qt::SkipEmptyParts)) {
        const QString name = word.section('=', 0, 0);
        const int number = failureNumber([&] {
            if (added.contains(name))
                added[name](word.section('=', 1).replace('~', ' ').split(','));
            else
                run(word);
        });
        seen += number ? QStringList(QString("failure %1").arg(number)) : QStringList();
    }
}

QStringList RecordScreen::walk(const Words& added, const QStringList& lines, QStringList& heard, QStringList before,
                               const std::function<QStringList()>& look) const
{
    QStringList seen;
    Unanswered unanswered(seen);
    for (const QString& line : lines.filter(QRegularExpression("^> "))) {
        seen += line;
        unanswered.start();
        heard.clear();
        told.clear();
        log.clear();
        for (const QString& word : line.sliced(2).split(' ')) {
            play(added, word, heard);
            QCoreApplication::processEvents();
        }
        if (!QApplication::activePopupWidget())
            form.activateWindow(); // as a window manager does once a box or an opened list is gone
        QCoreApplication::processEvents();
        seen += heard + (log.isEmpty() ? QStringList() : QStringList(log));
        for (const auto& box : std::as_const(told)) {
            seen += box->line();
            box->shown = true; // it answers no later one
        }
        const QStringList now = look();
        seen += changesOf(before, now);
        before = now;
    }
    return seen;
}

void RecordScreen::openDialog(const QString& opener, const QStringList& steps,
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

bool RecordScreen::set(QWidget& window, const QString& step)
{
    static const QRegularExpression Marks("[:=^!]");
    const QString name = step.section(Marks, 0, 0);
    const QString value = step.section(Marks, 1).replace('_', ' ');
    if (auto* box = window.findChild<widgets::ComboBox*>(name)) {
        box->setFocus();
        if (step.contains(':'))
            box->setListIndex(value.toInt());
        else if (step.contains('='))
            box->setText(value);
        else
            box->showPopup(), box->hidePopup(), window.activateWindow(); // as a window manager does
    } else if (auto* line = window.findChild<QLineEdit*>("txt" + name))
        line->setText(value);
    else if (auto* list = window.findChild<widgets::ListBox*>(name))
        clickRow(*list, value.toInt(), Qt::ControlModifier);
    else if (auto* tabs = window.findChild<QTabWidget*>(name))
        tabs->setCurrentIndex(value.toInt());
    else if (auto* grid = window.findChild<QTableView*>(name)) {
        const QModelIndex cell = grid->model()->index(value.toInt(), 1);
        grid->setCurrentIndex(cell);
        if (step.contains('!'))
            QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, grid->visualRect(cell).center());
    } else
        return false;
    return true;
}

void RecordScreen::work(const QPointer<QWidget>& dialog, const QStringList& steps) const
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
        if (step == "end")
            break;
        const RecordScreen screen(*dialog);
        screen.run(step);
        told += screen.told;
    }
    log.prepend("open, ");
    press(*dialog, "cmdCancel");
}

QString RecordScreen::lostFields(const QString& file, const QString& record) const
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
    for (const auto& field : store::schema::findTable(record.section(u' ', 0, 0))->fields()) {
        const auto line = lines.indexOf(QRegularExpression("\\S+ +" + field.name + "( .*)?"));
        const auto* box = form.findChild<QLineEdit*>(lines.value(line).section(u' ', 0, 0));
        if (line < 0 || (box && field.size > 0 && box->maxLength() > field.size))
            lost += field.name + (line < 0 ? ": no line names it\n" : ": its box takes a longer text\n");
    }
    lines.removeIf([](const QString& line) { return line.startsWith(u'-'); });
    for (const QString& line : std::as_const(lines)) {
        const QStringList words = line.split(u' ', Qt::SkipEmptyParts);
        auto* button = form.findChild<QAbstractButton*>(words[0]);
        if (auto* list = form.findChild<widgets::ComboBox*>(words[0]))
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

QString RecordScreen::said() const
{
    QStringList lines;
    for (const auto& box : told)
        lines += box->shown ? box->title + ": " + box->text : "not asked";
    return lines.join('\n');
}

QMap<QString, QString> RecordScreen::shown() const
{
    QStringList live;
    for (const QString name : {"First", "Previous", "Next", "Last", "New", "Save", "Delete"})
        live += get(("cmd" + name).toUtf8().constData()).isEnabled() ? QStringList(name) : QStringList();
    return {{"label", get<QLabel>("lblRecordInfo").text()}, {"live", live.join(u' ')}, {"said", said()}};
}

} // namespace orlo::test
