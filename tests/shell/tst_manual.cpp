#include "platform/Conversion.h"
#include "reporting/view/PreviewWindow.h"
#include "shell/frame/mdiPendrake.h"
#include "support/Files.h"
#include "support/OrloDb.h"
#include "support/RecordScreen.h"
#include "widgets/FolderList.h"

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

using namespace orlo;

namespace
{

// Goes through a page as its reader would: each sentence that quotes something of the program is an action on the
// windows that are up. Every action is called from the event loop, so that the next one can run inside one that waits.
class Reader : public QObject
{
public:
    using Act = std::function<void()>;

    // What to do for the sentences, after everything that was read before.
    void read(const QString& sentences)
    {
        int at = 0;
        for (const auto& match : rules().globalMatch(sentences)) {
            requireNothing(sentences.mid(at, match.capturedStart() - at));
            at = int(match.capturedEnd());
            m_actions += {match.captured(), [this, match] { return act(match); }};
        }
        requireNothing(sentences.mid(at));
    }
    // The same for something to look at.
    void look(const Act& at)
    {
        m_actions += {QString(), [at] { return at; }};
    }
    void run()
    {
        QTimer::singleShot(0, this, [this] { next(0); });
        QVERIFY(QTest::qWaitFor([this] { return m_actions.isEmpty(); }, 120000));
    }

private:
    static const QRegularExpression& rules()
    {
        static const QRegularExpression all(
            "In the \"(?<menu1>[^\"]+)\" menu choose \"[^\"]+\" and \"(?<command1>[^\"]+)\"|"
            "[Cc]hoose \"(?<command2>[^\"]+)\" in the \"(?<menu2>[^\"]+)\" menu|"
            "(?:and|On) the tab \"(?<tab>[^\"]+)\"|"
            "list of folders double-click \"(?<folder>[^\"]+)\"(?: \\([^)]*\\))?|"
            "answer \"(?<answer>[^\"]+)\"|says \"(?<says>[^\"]+)\"|window is (?<gone>gone)|"
            "Click \"(?<row>[^\"]+)\" in the list|"
            "Pick \"(?<pick>[^\"]+)\" (?:in the list \"(?<label>[^\"]+)\"|as the award)|"
            "Double-click the box \"(?<box>[^\"]+)\"|"
            "[Pp]ress `(?<all>[^`]+)` beside the (?<whom>\\w+)s|"
            "press (?<key>Ctrl\\+P) and then \"Print\"|the report by (?<close>Ctrl\\+W)|"
            "(?:[Pp]ress|window by) \"(?<press>[^\"]+)\"");
        return all;
    }
    void requireNothing(const QString& between)
    {
        if (between.contains(u'"') || between.contains(u'`'))
            test::fail("nothing does what this says: " + between);
    }

    void next(int tries)
    {
        const auto [words, ready] = m_actions.front();
        const Act act = ready();
        if (!act) {          // the window or control isn't up yet
            if (tries > 250) // whatever waits would wait on
                qFatal("can't do: %s; what is up: %s", qPrintable(words), qPrintable(whatIsUp()));
            QTimer::singleShot(20, this, [this, tries] { next(tries + 1); });
            return;
        }
        if (m_actions.size() > 1)
            QTimer::singleShot(100, this, [this] { next(0); });
        m_actions.removeFirst();
        act();
    }

    static QWidget* window()
    {
        if (QWidget* modal = QApplication::activeModalWidget())
            return modal;
        const auto* child = mdiPendrake::instance().findChild<QMdiArea*>()->currentSubWindow();
        return child ? child->widget() : nullptr;
    }
    static QString whatIsUp()
    {
        const auto* box = qobject_cast<QMessageBox*>(window());
        return box ? box->text() : window() ? window()->objectName() : QStringLiteral("nothing");
    }
    template <class W>
    static QList<W*> seen(const QString& caption)
    {
        QList<W*> all;
        if (QWidget* up = caption.isEmpty() ? nullptr : window())
            for (W* one : up->findChildren<W*>())
                if (one->isVisible() && one->isEnabled())
                    all += one;
        return all;
    }
    static QString plain(QString caption) { return caption.remove(u'&'); }
    static QAbstractButton* button(const QString& caption, const QString& part = QString())
    {
        for (auto* one : seen<QAbstractButton>(caption))
            if (plain(one->text()) == caption && one->objectName().contains(part))
                return one;
        return nullptr;
    }
    static QWidget* beside(const QString& label)
    {
        for (const auto* one : seen<QLabel>(label))
            if (plain(one->text()) == label)
                return one->buddy();
        return nullptr;
    }
    static QAction* command(const QList<QAction*>& menu, const QString& caption)
    {
        for (QAction* action : menu)
            if (QAction* found = action->menu() ? command(action->menu()->actions(), caption) : action;
                found && plain(found->text()) == caption && found->isEnabled())
                return found;
        return nullptr;
    }
    static QAction* command(const QString& menu, const QString& caption)
    {
        for (QAction* action : mdiPendrake::instance().menuBar()->actions())
            if (plain(action->text()) == menu)
                return command(action->menu()->actions(), caption);
        return nullptr;
    }
    static reporting::PreviewWindow* report()
    {
        for (QWidget* one : QApplication::topLevelWidgets())
            if (auto* preview = qobject_cast<reporting::PreviewWindow*>(one); preview && preview->isVisible())
                return preview;
        return nullptr;
    }

    // What the action does, as soon as it can be done.
    Act act(const QRegularExpressionMatch& says)
    {
        const auto part = [&says](const char* name) { return says.captured(QString::fromLatin1(name)); };
        const QString folder = part("folder");
        const QString row = part("row");
        const QString pick = part("pick");
        if (const QString caption = part("command1") + part("command2"); !caption.isEmpty()) {
            QAction* found = command(part("menu1") + part("menu2"), caption);
            return found && !QApplication::activeModalWidget() ? [found] { found->trigger(); } : Act();
        }
        if (const QString caption = part("answer") + part("press") + part("all"); !caption.isEmpty()) {
            QString whom = part("whom");
            QAbstractButton* found = button(caption, whom.isEmpty() ? whom : whom.replace(0, 1, whom[0].toUpper()));
            return found ? [found] { QTest::mouseClick(found, Qt::LeftButton); } : Act();
        }
        for (auto* tabs : seen<QTabWidget>(part("tab")))
            for (int page = 0; page < tabs->count(); ++page)
                if (plain(tabs->tabText(page)) == part("tab"))
                    return [tabs, page] { tabs->setCurrentIndex(page); };
        for (auto* list : seen<widgets::FolderList>(folder))
            for (auto* item : list->findItems(folder, Qt::MatchExactly | Qt::MatchRecursive))
                return [list, item] {
                    list->scrollToItem(item);
                    const QPoint at = list->visualItemRect(item).center();
                    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
                    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
                };
        for (auto* list : seen<QListWidget>(row))
            for (auto* item : list->findItems(row, Qt::MatchExactly))
                return [list, item] {
                    list->scrollToItem(item);
                    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(item).center());
                };
        for (auto* box : seen<QComboBox>(pick))
            if (part("label").isEmpty() || box == beside(part("label"))) {
                box->showPopup();
                const int at = box->findText(pick);
                if (at >= 0)
                    return [box, at] {
                        box->view()->setCurrentIndex(box->model()->index(at, 0));
                        QTest::keyClick(box->view(), Qt::Key_Return);
                    };
                box->hidePopup();
            }
        if (QWidget* box = beside(part("box")))
            return [box] { QTest::mouseDClick(box, Qt::LeftButton); };
        if (const auto* told = qobject_cast<QMessageBox*>(window());
            told && !part("says").isEmpty() && told->text() == part("says"))
            return [] {};
        if (!part("gone").isEmpty() && !window())
            return [] {};
        auto* preview = report();
        if (preview && !part("close").isEmpty())
            return [preview] { QTest::keyClick(preview, Qt::Key_W, Qt::ControlModifier); };
        for (const QAction* action :
             preview && !part("key").isEmpty() ? preview->findChildren<QAction*>() : QList<QAction*>())
            if (action->shortcut() == QKeySequence(part("key")) && plain(action->text()).startsWith("Print"))
                return [] {}; // the system's own dialog works itself
        return {};
    }

    QList<std::pair<QString, std::function<Act()>>> m_actions; // in words, and what it does as soon as it can be done
};

} // namespace

class tst_manual : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The steps of the first hour, done as the page says; what each leaves in the records.
    void firstHour()
    {
        static const QRegularExpression step("^\\d\\. \\*\\*(.*?)\\*\\*(.*?)(?=^\\d\\. |^Those)",
                                             QRegularExpression::MultilineOption |
                                                 QRegularExpression::DotMatchesEverythingOption);
        QMap<QString, QStringList> left; // by the step's title: the value and the query that gives it
        for (const QByteArray& line :
             test::contents(ORLO_SOURCE_DIR "/tests/shell/firsthour.txt").trimmed().split('\n')) {
            const QStringList cells = QString::fromUtf8(line).split(" | ");
            left.insert(cells[0], cells.mid(1));
        }
        const test::AppFolder folder;
        platform::setToday(QDate(2026, 2, 14));
        QVERIFY(QDir::setCurrent(folder.path()));
        const QStringList from = {"--from", ORLO_SOURCE_DIR "/samples/pack"};
        QVERIFY(QDir().mkpath("sample-pack") && QDir().mkpath("empty-pack"));
        QCOMPARE(test::orloDb(QStringList{"new", "sample-pack/Quorrel11_Backup"} + from).errors, QString());
        QCOMPARE(test::orloDb({"new", "empty-pack/Quorrel11_Backup"}).errors, QString());
        for (const QFileInfo& report : QDir(ORLO_SOURCE_DIR "/src/reports/files").entryInfoList(QDir::Files))
            QVERIFY(QFile::copy(report.filePath(), folder.path() + u'/' + report.fileName()));
        mdiPendrake::instance().show();
        test::copyLayouts();
        QString restore;
        int steps = 0;
        Reader reader;
        const QByteArray page = test::contents(ORLO_SOURCE_DIR "/docs/manual/first-start.md");
        for (const auto& match : step.globalMatch(QString::fromUtf8(page).section("## Your own pack", 0, 0))) {
            const QString title = match.captured(1);
            QString text = match.captured(2).remove(QRegularExpression("!\\[[^)]*\\)")).simplified();
            if (restore.isEmpty())
                restore = text;
            static const QRegularExpression again("As in step 1, but with the folder \"([^\"]+)\"");
            if (const auto other = again.match(text); other.hasMatch())
                text = QString(restore).replace("\"sample-pack\"", u'"' + other.captured(1) + u'"');
            reader.read(text);
            if (const QStringList wanted = left.take(title); !wanted.isEmpty())
                reader.look([=] { QCOMPARE(title + ' ' + test::rows(wanted[1]), title + ' ' + wanted[0]); });
            ++steps;
        }
        reader.run();
        QCOMPARE(steps, 6);
        QVERIFY(left.isEmpty());
    }

    void cleanupTestCase()
    {
        platform::setToday({});
        QDir::setCurrent(QDir::tempPath());
    }
};

ORLO_TEST(tst_manual)
#include "tst_manual.moc"
