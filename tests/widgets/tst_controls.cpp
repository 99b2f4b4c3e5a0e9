#include "platform/FileSystem.h"
#include "support/Main.h"
#include "support/Picture.h"
#include "support/RecordScreen.h"
#include "support/System.h"
#include "support/Table.h"
#include "widgets/Calendar.h"
#include "widgets/CheckBox.h"
#include "widgets/CheckListBox.h"
#include "widgets/ComboBox.h"
#include "widgets/DriveList.h"
#include "widgets/FolderList.h"
#include "widgets/Form.h"
#include "widgets/MessageBox.h"
#include "widgets/OptionButton.h"
#include "widgets/TextBox.h"

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

using namespace orlo;
using Args = QStringList;
using widgets::CheckListBox;
using widgets::ComboBox;
using widgets::FolderList;
using widgets::ListBox;

namespace
{

// Hears each signal of a control that buttons or the classes of this system have; without a slot for each signature, as
// Qt calls a slot by its number.
struct Listener : QObject {
    std::function<void(const QString&)> hear;
    Listener(QObject& heard, std::function<void(const QString&)> does) : QObject(&heard), hear(std::move(does))
    {
        const QMetaObject& meta = *heard.metaObject();
        for (int at = 0; at < meta.methodCount(); ++at)
            if (const QByteArray kind = meta.method(at).enclosingMetaObject()->className();
                meta.method(at).methodType() == QMetaMethod::Signal &&
                !(meta.method(at).attributes() & QMetaMethod::Cloned) &&
                (kind.startsWith("orlo") || meta.method(at).name() == "triggered" ||
                 (kind == "QAbstractButton" && meta.method(at).name() == "clicked")))
                QMetaObject::connect(&heard, at, this, staticMetaObject.methodCount() + at);
    }
    int qt_metacall(QMetaObject::Call call, int id, void** arguments) override
    {
        id = QObject::qt_metacall(call, id, arguments);
        if (id >= 0 && call == QMetaObject::InvokeMetaMethod)
            hear(parent()->objectName() + '.' + parent()->metaObject()->method(id).name());
        return -1;
    }
};

// What an assistive program hears of a control.
QString heardOf(QWidget* control)
{
    auto* reader = QAccessible::queryAccessibleInterface(control);
    const QAccessible::State is = reader->state();
    QString words = QMetaEnum::fromType<QAccessible::Role>().valueToKey(reader->role());
    for (const auto kind : {QAccessible::Name, QAccessible::Description, QAccessible::Value, QAccessible::Accelerator})
        words += " \"" + reader->text(kind) + '"';
    const QList<quint64> so{is.checkable, is.checked,       is.checkStateMixed, is.pressed,
                            is.modal,     is.defaultButton, is.disabled};
    for (qsizetype at = 0; const char* word : {"checkable", "checked", "mixed", "pressed", "modal", "default", "off"})
        words += so[at++] ? QString(' ') + word : QString();
    auto* actions = reader->actionInterface();
    for (const QString& name : actions ? actions->actionNames() : QStringList())
        words += ' ' + name + ' ' + actions->keyBindingsForAction(name).join('+');
    for (const auto* command : control->actions()) // of its menu
        words += " [" + command->text() + ']';
    return words.simplified();
}

// A form with a control of each kind, by what its owner may do to them. Save is the default button, Delete Escape's.
struct Hall : widgets::Form {
    QStringList& told;
    QTemporaryDir disk;
    QList<platform::Drive> drives{{disk.path() + "/C", 1LL << 40}, {disk.path() + "/D", 1LL << 40}};
    QMap<QString, QString> does; // the words to do at a signal
    test::Words words{
        {"add",
         [this](const Args& a) {
             for (const QString& text : a.mid(1))
                 if (auto* checks = of<CheckListBox>(a[0]))
                     checks->addItem(text);
                 else if (auto* list = of<ListBox>(a[0]))
                     list->addItem(text);
                 else
                     of<ComboBox>(a[0])->addItem(text);
         }},
        {"set",
         [this](const Args& a) {
             if (auto* box = of<ComboBox>(a[0]); box && a.size() < 3)
                 box->setText(a[1]);
             else if (auto* folders = of<FolderList>(a[0]); folders && a.size() < 3)
                 folders->setPath(disk.path() + a[1]);
             else
                 of<QWidget>(a[0])->setProperty(a.size() > 2 ? a[1].toLatin1().constData() : "text",
                                                a.mid(a.size() > 2 ? 2 : 1).join(','));
         }},
        {"index",
         [this](const Args& a) {
             if (auto* box = of<ComboBox>(a[0]))
                 box->setListIndex(a[1].toInt());
             else
                 of<ListBox>(a[0])->setListIndex(a[1].toInt());
         }},
        {"fill", [this](const Args& a) { widgets::fillBox(*of<QLineEdit>(a[0]), a[1]); }},
        {"remove", [this](const Args& a) { of<ListBox>(a[0])->removeItem(a[1].toInt()); }},
        {"clear",
         [this](const Args& a) { of<ComboBox>(a[0]) ? of<ComboBox>(a[0])->removeAll() : of<ListBox>(a[0])->clear(); }},
        {"refill", [this](const Args& a) { of<ComboBox>(a[0])->refill(a.mid(2), a[1].toInt()); }},
        {"tick", [this](const Args& a) { of<CheckListBox>("checks")->setChecked(a[0].toInt(), a[1] == "on"); }},
        {"ticked", [this](const Args& a) { tell(of<CheckListBox>("checks")->checked(a[0].toInt())); }},
        {"select", [this](const Args& a) { of<ListBox>("list")->setSelected(a[0].toInt(), a[1] == "on"); }},
        {"selected", [this](const Args& a) { tell(of<ListBox>("list")->selected(a[0].toInt())); }},
        {"sorted", [this](const Args& a) { told += QString::number(widgets::sortedRow(*of<ListBox>("list"), a[0])); }},
        {"open", [this](const Args& a) { of<ComboBox>(a[0])->showPopup(); }},
        {"pick",
         [this](const Args& a) {
             auto& box = *of<ComboBox>(a[0]);
             box.showPopup();
             box.view()->setCurrentIndex(box.model()->index(a[1].toInt(), 0));
             QTest::keyClick(box.view(), Qt::Key_Return);
         }},
        {"page",
         [this](const Args& a) { of<QCalendarWidget>("calendar")->setCurrentPage(a[0].toInt(), a[1].toInt()); }},
        {"day", [this](const Args& a) { of<widgets::Calendar>("calendar")->setDay(a[0].toInt()); }},
        {"make",
         [this](const Args& a) {
             QDir(disk.path()).mkpath(a[0]);
             if (a[0].contains("/."))
                 test::hide(disk.filePath(a[0]));
         }},
        {"wipe", [this](const Args& a) { QDir(disk.path() + '/' + a[0]).removeRecursively(); }},
        {"unplug", [this](const Args&) { drives.removeLast(); }},
        {"say", [](const Args& a) { widgets::message(a[0], a.value(1)); }},
        {"warn", [](const Args& a) { widgets::warn(a[0], a.value(1)); }},
        {"ask",
         [this](const Args& a) {
             using enum widgets::Preset;
             using enum widgets::OnEscape;
             tell(widgets::ask(a[0], a.value(1), a.contains("no") ? No : Yes, a.contains("must") ? DoesNothing : IsNo));
         }},
        {"during", // words while the next box is up
         [this](const Args& a) {
             screen.told += test::takeNext([this, steps = a.join(' ')](auto& modal, auto& box) {
                 if (box.shown || !modal.isActiveWindow())
                     return false;
                 box = {modal.windowTitle(), "during", true, "then No"};
                 screen.play(words, steps, told);
                 if (modal.isVisible())
                     static_cast<QMessageBox&>(modal).done(QMessageBox::No);
                 QTest::keyClick(&modal, Qt::Key_Y); // too late
                 return true;
             });
         }},
        {"check", // the field accepts only "good"
         [this](const Args& a) {
             setLeaveCheck(of<QWidget>(a[0]), [this, name = a[0]] {
                 const bool good = of<QWidget>(name)->property("text") == "good";
                 told += good ? "passes" : "refuses";
                 return good;
             });
         }},
        {"when", [this](const Args& a) { does[a[0]] = a.mid(1).join(' ').replace('+', ','); }},
        {"focus", [this](const Args& a) { of<QWidget>(a[0])->setFocus(); }},
        {"paste", // escaped as in JSON
         [](const Args& a) {
             qApp->clipboard()->setText(QJsonDocument::fromJson("[\"" + a[0].toUtf8() + "\"]")[0].toString());
         }},
        {"down", [this](const Args&) { QTest::keyPress(focusWidget(), Qt::Key_Alt); }},
        {"up", [this](const Args&) { QTest::keyRelease(focusWidget(), Qt::Key_Alt); }},
        {"again", // as a busy program gets a key that repeats
         [this](const Args& a) {
             repeatedAt += 1000;
             for (int step = 0; step < 4; ++step) {
                 QKeyEvent key(step % 2 ? QEvent::KeyRelease : QEvent::KeyPress, QKeySequence(a[0])[0].key(), {}, " ");
                 key.setTimestamp(repeatedAt + (step ? 500 : 0));
                 QCoreApplication::sendEvent(focusWidget(), &key);
             }
         }},
        {"reader", // a press by an assistive program arrives with the next event
         [this](const Args& a) {
             auto* actions = QAccessible::queryAccessibleInterface(of<QWidget>(a[0]))->actionInterface();
             actions->doAction(actions->actionNames().value(0));
             told += "sent";
         }},
        {"heard", [this](const Args& a) { told += heardOf(a[0].isEmpty() ? this : of<QWidget>(a[0])); }},
        {"default", [this](const Args& a) { setDefaultButton(a[0].isEmpty() ? nullptr : of<QPushButton>(a[0])); }},
        {"owner", // at this place, centred on which a form still lies on the screen
         [this](const Args& a) {
             QWidget owner;
             widgets::setMainWindow(&owner, {});
             owner.setGeometry(a[0].toInt(), a[1].toInt(), 1, 1);
             Form form(widgets::FormKind::Window);
             form.setAttribute(Qt::WA_DeleteOnClose, false);
             form.setFixedSize(300, 200);
             form.showForm();
             told += QString("at %1,%2").arg(form.x()).arg(form.y());
             widgets::setMainWindow(nullptr, {});
         }},
        {"elsewhere", [this](const Args&) {
             QWidget other;
             other.show();
             QVERIFY(QTest::qWaitForWindowActive(&other));
             activateWindow();
             QVERIFY(QTest::qWaitForWindowActive(this));
         }}};
    quint64 repeatedAt = 0; // milliseconds
    test::RecordScreen screen{*this};

    explicit Hall(QStringList& log) : Form(widgets::FormKind::Window), told(log)
    {
        setAttribute(Qt::WA_DeleteOnClose, false);
        setWindowTitle("Hall");
        for (const char* folder : {"C/Users", "D/Old/copies", "D/Old/Boxes", "D/old papers"})
            QDir(disk.path()).mkpath(folder);
        QDir::setCurrent(disk.path() + "/D/Old");
        platform::setVolumes([this] { return drives; });
        new QGridLayout(this);
        add<QLabel>("label", "Te&xt:").setBuddy(&add<QLineEdit>("text"));
        add<QLineEdit>("other");
        add<QPlainTextEdit>("note").setFixedHeight(40);
        add<QSpinBox>("number");
        add<QSlider>("slider");
        add<QTabBar>("tabs").addTab("First");
        of<QTabBar>("tabs")->addTab("Second");
        add<widgets::CheckBox>("tick", "Tic&k");
        auto* group = &add<QGroupBox>("group");
        group->setTitle("&Kind && size");
        new QHBoxLayout(group);
        for (const char* name : {"one", "two", "three"})
            add<widgets::OptionButton>(name, QString('&') + name, group);
        add<ListBox>("list").setFixedHeight(80);
        add<CheckListBox>("checks").setFixedHeight(80);
        add<QLabel>("comboLabel", "Com&bo:").setBuddy(&add<ComboBox>("combo"));
        of<ComboBox>("combo")->setMaximumWidth(120);
        add<QLabel>("freeLabel", "F&ree:").setBuddy(&add<widgets::EditableComboBox>("free"));
        of<ComboBox>("free")->lineEdit()->setObjectName("line");
        add<widgets::Calendar>("calendar");
        add<widgets::DriveList>("drives");
        add<FolderList>("folders").setFixedWidth(600); // so that no temporary folder's name is wider
        of<FolderList>("folders")->followDrive(*of<widgets::DriveList>("drives"));
        setDefaultButton(&add<QPushButton>("cmdSave", "&Save"));
        setCancelButton(&add<QPushButton>("cmdDelete", "&Delete"));
        add<QPushButton>("cmdMore", "&More").setMenu(new QMenu(this));
        QAction* command = addAction("Command", Qt::CTRL | Qt::Key_K);
        command->setObjectName("command");
        new Listener(*command, [this](const QString& signal) { told += signal; });
        showForm();
        activateWindow();
        if (!QTest::qWaitForWindowActive(this))
            test::fail("the form doesn't become active");
        of<QWidget>("text")->setFocus();
    }
    ~Hall() override
    {
        QDir::setCurrent(QDir::rootPath());
        platform::setVolumes({});
    }
    template <class W>
    [[nodiscard]] W* of(const QString& name) const
    {
        return findChild<W*>(name);
    }
    template <class W>
    W& add(const char* name, const QString& text = {}, QWidget* parent = nullptr)
    {
        auto* control = new W(parent ? parent : this);
        control->setObjectName(name);
        control->setProperty("text", text);
        auto* grid = qobject_cast<QGridLayout*>(layout());
        if (parent)
            parent->layout()->addWidget(control);
        else
            grid->addWidget(control, grid->count() / 5, grid->count() % 5);
        new Listener(*control, [this, control](const QString& signal) {
            QVariant value;
            for (const char* property : {"currentText", "currentRow", "checked", "selectedDate"})
                value = value.isValid() ? value : control->property(property);
            const auto* folders = qobject_cast<const FolderList*>(control);
            told += QString(signal + ' ' + shown(folders ? folders->path() : value.toString())).trimmed();
            screen.play(words, does.value(signal), told);
        });
        return *control;
    }
    void tell(bool so) const { told += so ? "yes" : "no"; }
    [[nodiscard]] QString shown(QString path) const
    {
        return QDir::fromNativeSeparators(path).replace(disk.path(), "disk");
    }
    // What the picture leaves out: the files of a machine, open lists, rows that are current without being chosen.
    [[nodiscard]] QStringList look() const
    {
        QStringList lines = test::pictureOf(*this);
        const auto* folders = of<FolderList>("folders");
        QStringList rows;
        for (QTreeWidgetItemIterator row(const_cast<FolderList*>(folders)); *row; ++row) {
            QString text = ((*row)->font(0).bold() ? "*" : "") + shown((*row)->text(0));
            for (auto* above = (*row)->parent(); above; above = above->parent())
                text.prepend(above->isExpanded() ? '-' : '+');
            rows += text;
        }
        lines += "folders: " + rows.join("; ") + ", at " + shown(folders->currentItem()->text(0));
        const auto* drive = of<ComboBox>("drives");
        lines += "drives: " + shown(drive->currentText()) + " of " + shown(test::textsOf(*drive));
        const auto* days = of<QCalendarWidget>("calendar");
        lines += "days: " + QVariant::fromValue(days->horizontalHeaderFormat()).toString();
        for (const char* name : {"list", "checks"})
            lines += QString("%1 at: row %2").arg(name).arg(of<ListBox>(name)->listIndex());
        const auto line = [&lines](const char* form, auto... numbers) { lines += QString::asprintf(form, numbers...); };
        if (const auto* view = of<ComboBox>("combo")->view(); view->isVisible())
            line("how combo: opens %d wide, %d high, %d rows below", view->width(), view->height(),
                 view->verticalScrollBar()->maximum());
        const auto* list = of<ListBox>("list");
        line("how list: a row %d by %d", list->sizeHintForColumn(0), list->sizeHintForRow(0));
        line("set: %d %d", of<QSlider>("slider")->value(), of<QTabBar>("tabs")->currentIndex());
        line("how folders: %d by %d, indented %d, scrolled %d, %d too wide", folders->sizeHint().width(),
             folders->sizeHint().height(), folders->indentation(), folders->verticalScrollBar()->value(),
             folders->columnWidth(0) - folders->viewport()->width());
        return lines;
    }
};

} // namespace

class tst_controls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Each case is what each step, "> ...", changes and signals. Words are those of RecordScreen, and "word=a,b" for
    // what a form calls; a tilde is a blank. A failure is told by its number.
    void walks_data() { test::cases({"case"}, "widgets/controls_walks.txt"); }
    void walks()
    {
        const QStringList lines = test::cell("case").trimmed().split('\n');
        QStringList told;
        Hall hall(told);
        const auto look = [&hall] { return hall.look(); };
        test::comparePicture(hall.screen.walk(hall.words, lines, told, look(), look), lines.join('\n'));
    }
};

ORLO_TEST(tst_controls)

#include "tst_controls.moc"
