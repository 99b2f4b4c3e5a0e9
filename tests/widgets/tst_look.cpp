#include "support/Main.h"
#include "support/Picture.h"
#include "support/Table.h"
#include "widgets/CheckBox.h"
#include "widgets/CheckListBox.h"
#include "widgets/ComboBox.h"
#include "widgets/Contrast.h"
#include "widgets/Glyphs.h"
#include "widgets/ListBox.h"
#include "widgets/MessageBox.h"
#include "widgets/OptionButton.h"
#include "widgets/TextGrid.h"

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

using namespace orlo;

namespace
{

// The colours of the drawings' palette, and the letter of each in the text of a picture.
const QList<std::pair<QPalette::ColorRole, QColor>> Inks{
    {QPalette::Window, 0xd0d0d0},       {QPalette::Base, 0xffffff},   {QPalette::Text, 0x000000},
    {QPalette::ButtonText, 0x000080},   {QPalette::Button, 0xc0d0c0}, {QPalette::Highlight, 0x3060ff},
    {QPalette::AlternateBase, 0xffe0ff}};
constexpr char Letters[] = "_.#TBH~";

// Dark desktops have the opposite colours.
QColor inkOf(const QColor& color, bool dark)
{
    return dark ? QColor(255 - color.red(), 255 - color.green(), 255 - color.blue()) : color;
}

// A picture as text, a letter for each pixel: the palette's, or one of those told below for colours of other places;
// the pixels along slanting lines are the nearest of these. A line that repeats the one above is left out.
QStringList drawn(const QImage& image, bool dark)
{
    QList<std::pair<QColor, char>> colors;
    for (const auto& [role, color] : Inks)
        colors.emplaceBack(inkOf(color, dark), Letters[colors.size()]);
    QHash<QRgb, int> pixels;
    QStringList lines;
    QStringList told;
    const auto letterOf = [&colors](const QColor& color) {
        const auto distance = [&color](const auto& known) {
            const QColor& other = known.first;
            return std::abs(color.red() - other.red()) + std::abs(color.green() - other.green()) +
                   std::abs(color.blue() - other.blue());
        };
        return std::ranges::min(colors, {}, distance).second;
    };
    for (int at = 0; at < image.width() * image.height(); ++at)
        if (const QColor color = image.pixelColor(at % image.width(), at / image.width());
            ++pixels[color.rgb()] == 20 && !std::ranges::count(colors, color, &std::pair<QColor, char>::first)) {
            colors.emplaceBack(color, char('a' + told.size()));
            told += colors.last().second + (' ' + color.name());
        }
    for (int y = 0; y < image.height(); ++y) {
        QString line;
        for (int x = 0; x < image.width(); ++x)
            line += QLatin1Char(letterOf(image.pixelColor(x, y)));
        if (lines.isEmpty() || lines.last() != line)
            lines += line;
    }
    return lines + told;
}

// The greatest contrast of a painted text with its ground.
double contrastIn(const QImage& image, const QRect& place)
{
    double best = 0;
    for (int y = place.top(); y <= place.bottom(); ++y)
        for (int x = place.left(); x <= place.right(); ++x)
            best = std::max(best, widgets::contrast(image.pixelColor(x, y), image.pixelColor(place.topLeft())));
    return best;
}

QImage iconOf(const QIcon& icon, bool enabled)
{
    QImage image(24, 24, QImage::Format_RGB32);
    image.fill(0xd0d0d0); // of which it covers only what it draws
    QPainter painter(&image);
    painter.drawPixmap(0, 0, icon.pixmap(24, enabled ? QIcon::Normal : QIcon::Disabled));
    return image;
}

QImage pictureOf(const QStringList& words)
{
    const bool enabled = !words.contains("off");
    if (words[0] == "sign")
        return iconOf(QApplication::style()->standardIcon(
                          QStyle::StandardPixmap(QStyle::SP_MessageBoxInformation + words[1].toInt())),
                      enabled);
    if (words[0] == "glyph")
        return iconOf(widgets::glyphIcon(widgets::Glyph(words[1].toInt())), enabled);
    QWidget form;
    const QMap<QString, std::function<QWidget*()>> kinds{{"text", [&] { return new QLineEdit(&form); }},
                                                         {"number", [&] { return new QSpinBox(&form); }},
                                                         {"choice", [&] { return new widgets::ComboBox(&form); }},
                                                         {"box", [&] { return new widgets::EditableComboBox(&form); }},
                                                         {"note", [&] { return new QPlainTextEdit(&form); }},
                                                         {"tick", [&] { return new widgets::CheckBox(&form); }},
                                                         {"option", [&] { return new widgets::OptionButton(&form); }},
                                                         {"list", [&] { return new widgets::ListBox(&form); }},
                                                         {"ticks", [&] { return new widgets::CheckListBox(&form); }},
                                                         {"grid", [&] { return new widgets::TextGrid(&form); }}};
    QWidget& control = *kinds[words[0]]();
    QLineEdit other(&form);
    other.move(0, 170);
    int width = 40;
    control.setGeometry(4, 4, 32, 26);
    if (auto* area = qobject_cast<QAbstractScrollArea*>(&control)) {
        area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    }
    if (auto* button = qobject_cast<QAbstractButton*>(&control)) {
        button->setChecked(words.contains("on"));
        if (auto* box = qobject_cast<QCheckBox*>(button); box && words.contains("partly"))
            box->setTristate(true), box->setCheckState(Qt::PartiallyChecked);
        width = 24;
    } else if (auto* list = qobject_cast<widgets::ListBox*>(&control)) {
        for (const char* row : {" ", "  ", "   "})
            list->addItem(row);
        control.resize(32, 90);
        list->setListIndex(words.contains("chosen") ? 1 : -1);
        if (words.contains("typing")) {
            list->item(1)->setFlags(list->item(1)->flags() | Qt::ItemIsEditable);
            width = 7; // the edge
        }
        if (auto* ticks = qobject_cast<widgets::CheckListBox*>(list))
            ticks->setChecked(1, words.contains("on"));
    } else if (auto* grid = qobject_cast<widgets::TextGrid*>(&control)) {
        control.resize(60, 120);
        grid->setRows(4);
        grid->setColWidth(0, 150);
        grid->setColWidth(1, 400);
        grid->setRow(words.contains("chosen") ? 2 : 0);
        grid->horizontalHeader()->hide();
        width = 68;
    }
    if (words[0] == "number")
        width = 12; // the rest isn't ours
    control.setEnabled(enabled);
    form.resize(200, 200);
    form.show();
    if (!QTest::qWaitForWindowActive(&form))
        test::fail("the window doesn't become active");
    (words.contains("focus") ? &control : &other)->setFocus();
    if (auto* button = qobject_cast<QAbstractButton*>(&control))
        button->setDown(words.contains("down"));
    if (auto* list = qobject_cast<QListWidget*>(&control); list && words.contains("typing"))
        list->editItem(list->item(1));
    control.setAttribute(Qt::WA_UnderMouse, words.contains("hover") && control.testAttribute(Qt::WA_Hover));
    return form.grab(QRect(0, 0, width, control.height() + 8)).toImage().convertToFormat(QImage::Format_RGB32);
}

} // namespace

// What is painted, pixel by pixel.
class tst_look : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Whatever the desktop's colours, a chosen row and a disabled text can be read.
    void contrasts_data() { test::table({"scheme"}, "light\ndark"); }
    void contrasts()
    {
        const auto back = qScopeGuard([] { QApplication::setPalette(QPalette()), test::isPainted = false; });
        test::showColours(test::cell("scheme"));
        QWidget form;
        widgets::CheckListBox list(&form);
        list.setFixedWidth(250);
        list.addItem("Little Hill");
        list.setListIndex(0);
        const QWidgetList others{new QLineEdit("Hill", &form), new QLabel("Hill", &form),
                                 new QPushButton("Hill", &form)};
        form.show();
        QVERIFY(QTest::qWaitForWindowActive(&form));
        for (QWidget* focused : QWidgetList{&list, others[0]}) {
            focused->setFocus();
            const QImage image = list.viewport()->grab().toImage();
            QVERIFY(contrastIn(image, list.visualRect(list.currentIndex()).adjusted(25, 1, 0, -1)) >= 4.5);
        }
        for (QWidget* disabled : others) {
            disabled->setEnabled(false);
            disabled->resize(100, 30);
            const double contrast = contrastIn(disabled->grab().toImage(), disabled->rect().adjusted(5, 5, -25, -5));
            QVERIFY2(contrast >= 3 && contrast < 7, disabled->metaObject()->className()); // fainter than others
        }
    }

    // Each case is a control, what is so of it, and below that the picture; "focus" and "off" are of all controls.
    void drawings_data() { test::cases({"case"}, "widgets/drawings.txt"); }
    void drawings()
    {
        if (QSysInfo::productType() == "windows" && QString(QTest::currentDataTag()).startsWith("a number box"))
            test::skip("Qt makes it a pixel higher there");
        const QString text = test::cell("case").trimmed();
        const QStringList words = text.section('\n', 0, 0).split(' ');
        const bool dark = words.contains("dark");
        QPalette palette(inkOf(0xd0d0d0, dark));
        for (const auto& [role, color] : Inks)
            for (const auto group : {QPalette::Active, QPalette::Inactive})
                palette.setColor(group, role, inkOf(color, dark));
        QApplication::setPalette(palette);
        const QStringList seen = QStringList(text.section('\n', 0, 0)) + drawn(pictureOf(words), dark);
        QApplication::setPalette(QPalette());
        test::comparePicture(seen, text);
    }

    // Lines of readable length, at any font size; a short text is beside the middle of the sign; the text is unchanged.
    void messages_data() { test::tableOf("widgets/look_messages.txt"); } // "text*3": three times
    void messages()
    {
        const QFont before = QApplication::font();
        QApplication::setFont(QFont(before.family(), test::cell("size").toInt()));
        const QString words = test::cell("text") + ' ';
        const QString text = words.section('*', 0, 0).repeated(std::max(1, words.section('*', 1).toInt())) + "end";
        QStringList seen;
        QTimer::singleShot(20, qApp, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            const auto* label = box->findChild<QLabel*>("qt_msgbox_label");
            const auto* sign = box->findChild<QLabel*>("qt_msgboxex_icon_label");
            const QRect at = label->geometry();
            QCOMPARE(box->text(), text);
            QVERIFY(box->width() >= 340 && box->rect().contains(at) &&
                    at.height() >= label->heightForWidth(at.width()));
            QVERIFY(text.size() > 70 || std::abs(at.center().y() - sign->geometry().center().y()) < 5);
            seen += QString::asprintf("how the box is: %dx%d, text %d,%d %dx%d", box->width(), box->height(), at.x(),
                                      at.y(), at.width(), at.height());
            QTextLayout layout(QString(text).replace('\n', QChar::LineSeparator), label->font());
            layout.beginLayout();
            for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
                line.setLineWidth(at.width());
                const QString shown = text.mid(line.textStart(), line.textLength()).trimmed();
                QVERIFY(shown.size() <= 70 || !shown.contains(' '));
            }
            box->accept();
        });
        widgets::message(text, test::cell("title"));
        QApplication::setFont(before);
        test::comparePicture(seen, "how the box is: " + test::cell("shape"));
    }
};

ORLO_TEST(tst_look)

#include "tst_look.moc"
