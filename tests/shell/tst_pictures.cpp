#include "platform/Conversion.h"
#include "shell/frame/mdiPendrake.h"
#include "support/Main.h"
#include "support/Pack.h"
#include "support/Picture.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "support/Windows.h"

#include <QApplication>
#include <QFileInfo>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPointer>
#include <QScopedValueRollback>
#include <QTableView>
#include <QTimer>

#include <optional>

using namespace orlo;

// What the screens show, as texts: every control of a window when it opens, and what each step of work changes. To
// change a text, copy the new one from the failed test's output.
class tst_pictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.emplace();
        platform::setToday(QDate(2026, 11, 24));
    }

    void dens_data() { test::cases({"case"}, "shell/pictures_dens.txt"); }
    void dens() { play(); }
    void pack_data() { test::cases({"case"}, "shell/pictures_pack.txt"); }
    void pack() { play(); }
    void awards_data() { test::cases({"case"}, "shell/pictures_awards.txt"); }
    void awards() { play(); }
    void scouts_data() { test::cases({"case"}, "shell/pictures_scouts.txt"); }
    void scouts() { play(); }
    void adults_data() { test::cases({"case"}, "shell/pictures_adults.txt"); }
    void adults() { play(); }
    void grids_data() { test::cases({"case"}, "shell/pictures_grids.txt"); }
    void grids() { play(); }
    void dialogs_data() { test::cases({"case"}, "shell/pictures_dialogs.txt"); }
    void dialogs() { play(); }
    void others_data() { test::cases({"case"}, "shell/pictures_others.txt"); }
    void others() { play(); }
    void twins_data() { test::cases({"case"}, "shell/pictures_twins.txt"); }
    void twins() { play(); }
    void paint_data() { test::cases({"case"}, "shell/pictures_paint.txt"); }
    void paint() { play(); }

    // A grid whose layout file is missing is laid out by the program.
    void withoutLayouts()
    {
        test::fill(test::Pack);
        QStringList seen;
        for (const auto& [name, files] : {std::pair("frmAdults", 1), {"frmPackDenPositions", 2}}) {
            decltype(test::RecordScreen::told) told;
            while (told.size() < files)
                told += test::answerNext();
            const test::RecordScreen screen(name);
            for (const auto& box : std::as_const(told))
                seen += box->title + ": " + QFileInfo(box->text.section('\n', 0, 0)).fileName();
            seen += test::pictureOf(screen.form, test::What::Everything).filter(QRegularExpression("^dbg")) +
                    gridsOf(screen.form);
            screen.form.close();
        }
        test::comparePicture(seen, windowsFile("without layouts"));
    }

    // Where the frame puts several windows, as large as the screen and smaller than they are, which is in front (last),
    // and what the window menu offers. A number chooses from it; other words are steps of the current window.
    void sideBySide()
    {
        test::copyLayouts();
        test::fill(test::Pack);
        auto& frame = mdiPendrake::instance();
        frame.show();
        auto& area = test::control<QMdiArea>(frame, "mdiArea");
        auto& choices = test::control<QMenu>(frame, "ID_WINDOWS_MENU");
        QStringList seen;
        const QString text = windowsFile("side by side");
        for (const QString& step : text.split('\n').filter(QRegularExpression("^> "))) {
            const QStringList size = step.sliced(2).split('x');
            if (size.size() > 1 && size[0].toInt() > 0)
                widgets::Form::unloadAll(), frame.showNormal(), frame.resize(size[0].toInt(), size[1].toInt());
            else if (size[0].toInt() > 0)
                choices.actions()[size[0].toInt() - 1]->trigger();
            else if (step.startsWith("> frm"))
                test::showForm(step.sliced(2));
            else
                QMetaObject::invokeMethod(area.currentSubWindow(), qPrintable(step.sliced(2)));
            QTest::qWait(10);
            seen += step;
            for (const auto* window : area.subWindowList(QMdiArea::StackingOrder))
                QDebug(&seen.emplaceBack("place of ")).nospace()
                    << qPrintable(window->widget()->objectName()) << ": " << window->geometry()
                    << (window->isMaximized()   ? ", maximised"
                        : window->isMinimized() ? ", minimised"
                                                : "")
                    << (window == area.activeSubWindow() ? ", active" : "");
            Q_EMIT choices.aboutToShow();
            for (const auto* choice : choices.actions())
                seen += "menu: " + choice->text() + (choice->isChecked() ? ", chosen" : "") +
                        (choice->isCheckable() ? ", box" : "") + (choice->isEnabled() ? "" : ", off");
            seen += "focus: " + (QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : "nothing");
        }
        frame.close();
        test::comparePicture(seen, text);
    }

    // Last, because later forms would be child windows of the frame that is up then.
    void windows_data() { test::addWindows(); }
    void windows()
    {
        skipOtherSizes();
        QFETCH(test::Open, open);
        test::prepareForWindows();
        QStringList seen;
        QMap<QString, QString> places; // the last ones: those of a hidden page aren't settled
        QVERIFY(test::openAndLook(open, [&](QWidget& form) {
            const QWidget& window = form.isWindow() || !form.parentWidget() ? form : *form.parentWidget();
            const QSize room = &window == &form ? window.size() : window.parentWidget()->size();
            const QSize wanted = window.sizeHint().boundedTo(room);
            if (seen.isEmpty())
                seen = QStringList("title: " + form.windowTitle()) + test::pictureOf(form, test::What::Everything) +
                       test::tabOrderOf(form) + test::traitsOf(form) +
                       (window.size().expandedTo(wanted) == window.size() ? QStringList() : QStringList("too small"));
            QDebug(&(places["place of"] = "place of the window: ")).nospace()
                << window.geometry() << window.windowFlags() << window.windowModality();
            QHash<QString, int> before; // of the same name
            for (const QString& place : test::placesOf(form) + gridsOf(form) + test::paintOf(form))
                places[place.section(':', 0, 0) + QString::number(before[place.section(':', 0, 0)]++)] = place;
        }));
        seen += places.values();
        seen.replaceInStrings(QRegularExpression("^(cboZoom: |lblVersion: \"Version \\d|paint of lblVersion: ).*"),
                              "\\1 (another each time)");
        test::comparePicture(seen, windowsFile(QTest::currentDataTag()));
    }

    // Letters that grow while a window is open leave it as it opens with large ones, and a window that was smaller for
    // a while is as before.
    void keepsItsShape_data() { test::addWindows(); }
    void keepsItsShape()
    {
        skipOtherSizes();
        if (QTest::currentDataTag() == QByteArray("previewWindow"))
            test::skip("it is no form");
        QFETCH(test::Open, open);
        const QFont usual = QApplication::font();
        QFont large = usual;
        large.setPointSize(usual.pointSize() + 5);
        const auto back = qScopeGuard([&] { QApplication::setFont(usual); });
        QList<QStringList> shapes[2]; // of all pages, the first one twice: it settles when the others have been seen
        for (const bool changes : {false, true}) {
            QApplication::setFont(changes ? usual : large);
            m_folder.emplace();
            test::prepareForWindows();
            QVERIFY(test::openAndLook(open, [&](QWidget& form) {
                auto* child = form.isWindow() ? nullptr : form.parentWidget();
                QTest::qWait(1);
                QApplication::setFont(large);
                for (const QSize size : {QSize(400, 300), QSize(1300, 1000)}) {
                    QTest::qWait(1);
                    if (child && (changes || size.width() > 400))
                        child->resize(size);
                }
                for (QStringList shape; shape != test::shapeOf(form); QTest::qWait(1)) // until nothing moves any more
                    shape = test::shapeOf(form);
                shapes[changes] += test::shapeOf(form);
            }));
            if (shapes[changes].size() > 1)
                shapes[changes].removeFirst();
        }
        QVERIFY(!shapes[0].isEmpty());
        QCOMPARE(shapes[1].size(), shapes[0].size());
        for (qsizetype page = 0; page < shapes[0].size(); ++page)
            QCOMPARE(shapes[1][page], shapes[0][page]);
    }

private:
    static QString windowsFile(const QString& name)
    {
        const QString all = test::contents(test::fileOfTests("shell/windows.txt"));
        return all.section("= " + name + '\n', 1).section("\n\n", 0, 0);
    }

    // The sizes of the grids, with their columns and headings.
    static QStringList gridsOf(const QWidget& form)
    {
        QStringList lines;
        for (const QString& shape : test::shapeOf(form))
            if (form.findChild<QTableView*>(shape.section(':', 0, 0)))
                lines += "how wide " + shape;
        return lines;
    }

    // Some windows and grids just fit the tests' screen, but not with the margins that Windows has, and a press in a
    // text is between other letters.
    static void skipOtherSizes()
    {
        const QStringList rows{"frmScouts", "frmAdults", "assign: widths", "positions: wide columns",
                               "scouts: awards are edited"};
        if (QSysInfo::productType() == "windows" && rows.contains(QTest::currentDataTag()))
            test::skip("the sizes are other ones there");
    }

    // A case begins with the form's name and, if it isn't the small pack, with what the file holds instead (here, or in
    // a file that is named) or, after a plus sign, as well. Then each step is a line "> words", and the lines below it
    // are what it changed: controls, answered boxes, the log of a dialog that it worked. After "> words>>" the steps
    // are those of the window that the last word opens, until it is closed. "> Select" shows what is stored;
    // "> Insert", "> Update" and "> Delete" change it, as another program does.
    void play()
    {
        skipOtherSizes();
        const QString text = test::cell("case").trimmed();
        const QString head = text.section("\n> ", 0, 0);
        const QString given = head.section('\n', 1);
        const QString sql = given.endsWith(".sql") ? QString(test::contents(test::fileOfTests(given))) : given;
        test::copyLayouts();
        const bool isMore = sql.isEmpty() || sql[0] == '+';
        test::fill(isMore ? test::Pack + sql.sliced(std::min(qsizetype(1), sql.size())) : sql);
        const test::RecordScreen screen(head.section('\n', 0, 0));
        m_seen = head.split('\n');
        m_steps = text.split('\n').filter(QRegularExpression("^> "));
        test::Unanswered unanswered(m_seen);
        workOrTell(screen, unanswered, true);
        if (!m_steps.isEmpty())
            m_seen += "a step after the form was closed: " + m_steps.first();
        test::comparePicture(m_seen, text);
    }

    // A failure tells in its place what went before it, and within a dialog doesn't end the process.
    void workOrTell(const test::RecordScreen& screen, QTimer& unanswered, bool isFirst)
    {
        try {
            work(screen, unanswered, isFirst);
        } catch (const std::exception& error) {
            m_seen += error.what();
            screen.form.close();
        }
    }

    // Does the next steps, until the window is closed; after the case's own one is, what is stored may still be asked.
    void work(const test::RecordScreen& screen, QTimer& unanswered, bool isFirst)
    {
        const QPointer<QWidget> form = &screen.form;
        const auto isOpen = [&form] { return form && form->isVisible(); };
        QStringList before = test::pictureOf(*form);
        const auto changes = [&] {
            const QStringList now = isOpen() ? test::pictureOf(*form) : QStringList("closed");
            return test::changesOf(std::exchange(before, now), now);
        };
        const QScopedValueRollback looks(test::lookBehind, {changes});
        while (!m_steps.isEmpty() && (isOpen() || (isFirst && m_steps.first().startsWith("> Select")))) {
            QString words = m_steps.takeFirst();
            m_seen += words;
            words.remove(0, 2);
            if (words.contains(QRegularExpression("^(Insert|Update|Delete) "))) {
                test::fill(words);
                continue;
            }
            if (words.startsWith("Select")) {
                const QString stored = test::rows(words);
                m_seen += stored.isEmpty() ? QStringList("nothing") : stored.split(", ");
                continue;
            }
            unanswered.start();
            screen.told.clear();
            screen.log.clear();
            qsizetype boxes = 0; // in the order in which they and dialogs came
            const auto tellBoxes = [&](bool all) {
                for (; boxes < screen.told.size() && (all || screen.told[boxes]->shown); ++boxes)
                    m_seen += screen.told[boxes]->before + QStringList(screen.told[boxes]->line());
            };
            QTimer opened;
            connect(&opened, &QTimer::timeout, this, [&] {
                auto* dialog = QApplication::activeModalWidget();
                if (!dialog || dialog == form || !dialog->isActiveWindow()) // it couldn't receive a key yet
                    return;
                opened.stop();
                tellBoxes(false);
                m_seen += "opens: " + dialog->windowTitle();
                m_seen += test::pictureOf(*dialog);
                workOrTell(test::RecordScreen(*dialog), unanswered, false);
            });
            const bool opens = words.endsWith(">>");
            if (opens)
                opened.start(5);
            screen.run(words.chopped(opens ? 2 : 0));
            if (form && !(screen.told.isEmpty() && screen.log.isEmpty() && !opens))
                form->activateWindow(); // as a window manager does once a box is gone
            QCoreApplication::processEvents();
            m_seen += opened.isActive() ? QStringList("opens nothing") : QStringList();
            m_seen += screen.log.isEmpty() ? QStringList() : QStringList("dialog: " + screen.log);
            tellBoxes(true);
            for (const auto& box : std::as_const(screen.told))
                box->shown = true; // it answers no later one
            m_seen += changes();
        }
    }

    QStringList m_seen, m_steps;
    std::optional<test::AppFolder> m_folder;
};

ORLO_TEST(tst_pictures)

#include "tst_pictures.moc"
