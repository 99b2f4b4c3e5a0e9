#include "hands/Hands.h"
#include "hands/Server.h"
#include "shell/forms/Module1.h"
#include "shell/forms/PersonShown.h"
#include "shell/frame/mdiPendrake.h"
#include "store/engine/Database.h"
#include "store/engine/Field.h"
#include "store/engine/Value.h"
#include "support/Main.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "widgets/ListBox.h"

#include <cstdio>

using namespace orlo;
using test::ask;
using test::expect;

// A user who doesn't look: random events, from a seed, over all windows, many of them before the program has handled
// the previous one. Events that may rightly end the program (an invalid date, a find under "All") aren't chosen.
namespace
{

// A dozen of each, so that no walk deletes them all.
constexpr auto Dozens = R"(
With k(i) As (Values (1) Union All Select i + 1 From k Limit 12) Insert Into Dens Select i, i, 'Den' || i, 'Wolf', 2025, 'Y' From k;
With k(i) As (Values (1) Union All Select i + 1 From k Limit 12) Insert Into Scouts (Scout_SID, First_Name, Last_Name,
    Active, Assigned_Den_SID) Select i, 'F' || i, 'L' || char(96 + i), 'Y', i From k;
With k(i) As (Values (1) Union All Select i + 1 From k Limit 12) Insert Into Adults (Adult_SID, First_Name, Last_Name,
    Active) Select i, 'F' || i, 'L' || char(96 + i), 'Y' From k;
With k(i) As (Values (1) Union All Select i + 1 From k Limit 12) Insert Into Insignias (Insignia_SID, Insignia_Name,
    Insignia_Type) Select i, 'A' || char(96 + i), 'Pin' From k;
With k(i) As (Values (1) Union All Select i + 1 From k Limit 12) Insert Into Assigned_Awards_Scouts (Scout_SID,
    Insignia_SID, Date_Assigned, Quantity) Select i, i, '2026-05-02', 1 From k;
Insert Into PackInfo Values (1, 'Old'))";

const QStringList Commands{"mnuScouts",          "mnuAdults",          "mnuDenInfo",           "mnuInsigniaInfo",
                           "mnuPackInformation", "mnuAssignInsignias", "mnuPurchaseList",      "mnuRptScoutList",
                           "mnuRepAwardList",    "mnuHelpTopics",      "ID_Pack_Den_Positions"};
const QStringList Clicks{"cmdFirst",        "cmdPrevious",  "cmdNext",        "cmdLast",         "cmdNew",
                         "cmdSave",         "cmdDelete",    "cmdCancel",      "cmdExit",         "cmdFind",
                         "cmdAddAward",     "cmdEditAward", "cmdDeleteAward", "cmdDelScouts",    "cmdView",
                         "txtFirst",        "txtLast",      "txtDenName",     "txtInsigniaName", "txtPackName",
                         "lbScouts",        "lbAdults",     "comActive",      "fgScoutsAwards",  "optOrderFirstName",
                         "optOrderLastName"};
const QStringList Writing{"Alt+s",  "Alt+d",   "Alt+a",     "Return",         "space",
                          "Escape", "cmdSave", "cmdDelete", "cmdDeleteAward", "cmdDelScouts"};
const QStringList Keys{"q",   "z",         "7",      "Alt+s",  "Alt+n", "Alt+c", "Alt+d",
                       "Tab", "Shift+Tab", "Return", "Escape", "Down",  "Up",    "Control+Tab"};

QMainWindow& frame()
{
    return mdiPendrake::instance();
}

// The window in use: the modal one, or the child window in front.
QWidget* front()
{
    if (QWidget* active = QApplication::activeWindow(); active && active != &frame())
        return active;
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    return frame().findChild<QMdiArea*>()->currentSubWindow();
}

template <class W = QWidget>
W* inFront(const QString& name)
{
    auto* widget = front() ? front()->findChild<W*>(name) : nullptr;
    return widget && widget->isVisible() && widget->isEnabled() ? widget : nullptr;
}

bool questionIsUp()
{
    const auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    return box && box->button(QMessageBox::Yes);
}

// The tables' rows, without what follows from deleting another record.
QMap<QString, QString> contents()
{
    QMap<QString, QString> rows;
    for (const QString table : {"Scouts", "Adults", "Dens", "Insignias", "PackInfo", "Pack_Positions", "Den_Titles"}) {
        int row = 0;
        for (auto rs = database().openRecordset("Select * From " + table); !rs.eof(); rs.moveNext()) {
            QString text;
            for (const auto& field : rs.fields())
                text += field.name == "Assigned_Den_SID" ? "" : rs.value(field.name).textOrEmpty() + '/';
            const QString key = table == "PackInfo" ? QString() : text.section('/', 0, table.contains('_') ? 1 : 0);
            rows[table + '/' + (key.isEmpty() ? QString::number(row++) : key)] = text;
        }
    }
    return rows;
}

int differences(const QMap<QString, QString>& a, const QMap<QString, QString>& b)
{
    int count = 0;
    for (auto it = a.begin(); it != a.end(); ++it)
        count += b.value(it.key()) != it.value();
    for (auto it = b.begin(); it != b.end(); ++it)
        count += !a.contains(it.key());
    return count;
}

// Row n of the list must be record n, and an unchanged record must be shown as stored.
QString personFault(const QString& noun, bool cancelled)
{
    const QWidget* form = screenOf("frm" + noun + u's').loaded();
    const auto place = QRegularExpression(noun + " (\\d+) of (\\d+)")
                           .match(form ? test::control<QLabel>(*form, "lblRecordInfo").text() : QString());
    if (!form || !place.hasMatch())
        return {};
    const auto& list = *form->findChild<widgets::ListBox*>();
    if (list.listCount() != place.captured(2).toInt() || list.listIndex() + 1 != place.captured(1).toInt())
        return QString("%1, but the list's row is %2 of %3")
            .arg(place.captured())
            .arg(list.listIndex() + 1)
            .arg(list.listCount());
    const QString stored = test::rows(QString("Select First_Name, Last_Name From %1s Where %1_SID = %2")
                                          .arg(noun)
                                          .arg(dynamic_cast<const PersonShown&>(*form).currentPerson()));
    const auto text = [form](const char* name) { return test::control<QLineEdit>(*form, name).text(); };
    const QString shown = text("txtFirst") + '/' + text("txtLast");
    const bool changed = test::control<QPushButton>(*form, "cmdSave").isEnabled();
    return changed || cancelled || shown == stored ? QString() : noun + " shows " + shown + ", stored is " + stored;
}

struct Walk {
    QRandomGenerator random;
    int steps = 0;
    bool cancelled = false; // typed texts may stay on the screen until the next record is shown
    QStringList burst;

    template <class List>
    QString oneOf(const List& list)
    {
        return list[random.bounded(int(list.size()))];
    }

    // Answers all questions; returns how often the answer was Yes.
    int answer()
    {
        int yes = 0;
        for (int asked = 0;
             ask([] { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()) != nullptr; }); ++asked) {
            expect(asked < 4, "it asks and asks");
            expect(!ask([] {
                return static_cast<QMessageBox*>(QApplication::activeModalWidget())->text().startsWith("Run-time");
            }),
                   "it ends: " +
                       ask([] { return static_cast<QMessageBox*>(QApplication::activeModalWidget())->text(); }));
            expect(ask([] {
                       return std::ranges::count_if(QApplication::topLevelWidgets(), [](QWidget* window) {
                           return window->isVisible() && qobject_cast<QMessageBox*>(window);
                       });
                   }) == 1,
                   "two questions at once");
            const QString key = ask(questionIsUp) ? oneOf(QStringList{"y", "n"}) : "Return";
            test::awaitKeys();
            test::strike(key);
            burst += key;
            yes += key == "y";
            test::settle();
        }
        return yes;
    }

    void click(const QString& name, int times = 1)
    {
        const auto place = ask([&] { return test::placeOf(name); });
        if (!place)
            return;
        test::moveTo(*place);
        test::press(name.startsWith("com") ? 5 : 1, times);
    }

    // Letters are typed wherever the focus is, except into dates and grids that refuse them.
    bool takesLetters()
    {
        return ask([] {
            const QWidget* focus = QApplication::focusWidget();
            const QString name = focus ? focus->objectName() : QString();
            return qobject_cast<const QLineEdit*>(focus) && Clicks.contains(name);
        });
    }

    void oneBurst()
    {
        burst.clear();
        int writes = 0;
        const auto before = ask(contents);
        if (!ask([] { return front() != nullptr; }) || random.bounded(12) == 0) {
            const QString command = oneOf(Commands);
            burst += command;
            QMetaObject::invokeMethod(qApp, [=] {
                if (!QApplication::activeModalWidget())
                    frame().findChild<QAction*>(command)->trigger();
            });
        } else if (random.bounded(2) == 0) {
            const QString name = oneOf(Clicks);
            const int times = random.bounded(5) == 0 ? 2 : 1;
            burst += (times == 2 ? "2:" : "") + name;
            click(name, times);
            writes += times * int(Writing.contains(name));
        }
        test::settle();
        answerAfter(before, writes);
        settleNewRecord();
        test::awaitKeys();
        QStringList strokes;
        const bool letters = takesLetters();
        for (int i = random.bounded(4); i >= 0; --i) {
            const QString key = oneOf(Keys);
            if (key.size() == 1 && (!letters || strokes.contains("Tab") || strokes.contains("Shift+Tab")))
                continue;
            strokes += key;
            writes += int(Writing.contains(key));
        }
        const int gap = random.bounded(4) == 0 ? 0 : random.bounded(300);
        burst += strokes.join(',') + '/' + QString::number(gap);
        cancelled = cancelled || strokes.contains("Escape") || burst.contains("cmdCancel");
        std::fprintf(stderr, "%s\n", qPrintable(burst.join(' '))); // shows what led to a crash
        if (!strokes.isEmpty())
            test::burst(strokes, gap);
        steps += int(burst.size() + strokes.size());
        answerAfter(before, writes);
        settleNewRecord();
        look();
    }

    void answerAfter(const QMap<QString, QString>& before, int& writes)
    {
        writes += answer();
        closeReports();
        const int changed = differences(before, ask(contents));
        expect(changed <= writes, QString("%1 rows are other than before").arg(changed));
    }

    // A new record that was neither saved nor cancelled must be given up before anything else is saved.
    void settleNewRecord()
    {
        const bool left = ask([] {
            const auto* label = inFront<QLabel>("lblRecordInfo");
            return label && label->text().endsWith("(New)") && !inFront("cmdSave");
        });
        if (left) {
            burst += "cmdCancel";
            click("cmdCancel");
        }
    }

    void closeReports()
    {
        ask([] {
            for (QWidget* window : QApplication::topLevelWidgets())
                if ((window->objectName() == "previewWindow" || window->objectName() == "reportMessage") &&
                    window->isVisible())
                    window->close();
            return 0;
        });
        test::settle();
    }

    void look()
    {
        expect(!ask([] { return QApplication::activePopupWidget(); }), "a list or menu is open");
        expect(!ask([] { return QApplication::overrideCursor(); }), "the pointer is busy");
        const auto inSight = [] {
            const QWidget* focus = QApplication::focusWidget();
            const QWidget* window = front();
            return !window || (focus && focus->isVisible() && (focus == window || window->isAncestorOf(focus)));
        };
        expect(test::await(inSight), "the focus is on " + ask([] {
                                         const auto* focus = QApplication::focusWidget();
                                         return focus ? focus->objectName() : QString("nothing");
                                     }));
        const QString fault = ask([this] { return personFault("Scout", cancelled) + personFault("Adult", cancelled); });
        expect(fault.isEmpty(), fault);
    }
};

struct PackFolder : test::AppFolder {
    PackFolder()
    {
        test::copyFiles();
        test::fill(Dozens);
    }
};

// Opens the screen again on the whole pack and changes its first field.
void openChanged(const QString& command)
{
    ask([&] {
        widgets::Form::unloadAll();
        for (const char* table : {"Scouts", "Adults", "Dens", "Insignias", "Assigned_Awards_Scouts", "PackInfo"})
            test::execute(QString("Delete From ") + table);
        test::fill(Dozens);
        return 0;
    });
    QMetaObject::invokeMethod(qApp, [=] { frame().findChild<QAction*>(command)->trigger(); });
    test::settle();
    test::awaitKeys();
    if (ask([] {
            return qobject_cast<QLineEdit*>(QApplication::focusWidget()) && front()->findChild<QWidget*>("cmdSave");
        }))
        test::strike("q");
}

// Without the keys that open a report's window, since the window manager decides whether that or the screen gets the
// next key.
QStringList accessKeys(const QString& command)
{
    openChanged(command);
    return ask([] {
        static const QRegularExpression opensReport("^cmd(Print|View|Preview)");
        QStringList keys;
        for (const auto* button : front()->findChildren<QAbstractButton*>())
            if (button->isVisible() && !button->shortcut().isEmpty() && !button->objectName().contains(opensReport))
                keys += button->shortcut().toString();
        return keys;
    });
}

// What is asked, shown and stored, and then stored once everything has been answered.
QString afterChord(const QString& command, const QString& first, const QString& second, int gap)
{
    openChanged(command);
    test::burst({first, second}, gap);
    QStringList seen;
    const auto see = [&seen] {
        seen += ask([] {
            const auto* label = inFront<QLabel>("lblRecordInfo");
            const auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            return box ? box->text().left(20) : (front() ? front()->objectName() : "") + (label ? label->text() : "");
        });
        seen += QString::number(qHash(QStringList(ask(contents).values())));
    };
    see();
    while (seen.size() < 8 && ask([] { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); })) {
        test::awaitKeys();
        test::strike(ask(questionIsUp) ? "n" : "Return");
        test::settle();
        see();
    }
    return seen.join(", ");
}

} // namespace

class tst_walk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(test::showFrame()); }

    // Two access keys while Alt is held: however soon the second comes, the result must be as if the program had been
    // idle.
    void chords_data()
    {
        QTest::addColumn<QString>("command");
        for (const QString& command : Commands)
            QTest::newRow(qPrintable(command)) << command;
    }
    void chords()
    {
        QFETCH(QString, command);
        const PackFolder folder;
        const QString fault = test::atTheScreen([&command] {
            const QStringList keys = accessKeys(command);
            const bool all = qEnvironmentVariableIsSet("ORLO_STEPS");
            int pair = 0;
            QSet<QString> outcomes;
            for (const QString& first : keys)
                for (const QString& second : keys) {
                    const QString waited = afterChord(command, first, second, 400);
                    outcomes += waited;
                    static constexpr int Gaps[] = {0, 30, 80, 150};
                    for (const int gap : Gaps)
                        if (const bool drawn = gap == Gaps[pair % 4]; all || drawn) {
                            const QString got = afterChord(command, first, second, gap);
                            expect(got == waited,
                                   QString("%1 %2 %3: %4, not %5").arg(first, second).arg(gap).arg(got, waited));
                        }
                    ++pair;
                }
            expect(outcomes.size() >= std::min(keys.size(), qsizetype(2)), "no key does anything");
        });
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
    }

    void walk_data()
    {
        QTest::addColumn<quint32>("seed");
        const quint32 first = qEnvironmentVariableIntValue("ORLO_SEED");
        const int walks = qMax(3, qEnvironmentVariableIntValue("ORLO_STEPS") / 100);
        for (quint32 seed = first; seed < first + quint32(walks); ++seed)
            QTest::newRow(qPrintable("seed " + QString::number(seed))) << seed;
    }
    void walk()
    {
        QFETCH(quint32, seed);
        const PackFolder folder;
        Walk walk{QRandomGenerator(seed), 0, false, {}};
        const QString fault = test::atTheScreen([&walk] {
            while (walk.steps < 100)
                walk.oneBurst();
        });
        QVERIFY2(fault.isEmpty(), qPrintable(walk.burst.join(' ') + ": " + fault));
    }
};

ORLO_TEST(tst_walk)

#include "tst_walk.moc"
