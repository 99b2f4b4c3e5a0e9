#include "support/Main.h"
#include "support/Table.h"
#include "widgets/CheckBox.h"
#include "widgets/CheckListBox.h"
#include "widgets/ComboBox.h"
#include "widgets/Contrast.h"
#include "widgets/EmptyText.h"
#include "widgets/MessageBox.h"
#include "widgets/OptionButton.h"
#include "widgets/TextGrid.h"

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

using namespace orlo;

namespace
{

// Every kind of control that the style paints an edge of, with the place of the edge's top.
struct Gallery : QWidget {
    QLineEdit text{this};
    widgets::ComboBox choice{this};
    widgets::EditableComboBox box{this};
    widgets::CheckBox tick{this};
    widgets::OptionButton option{this};
    QPlainTextEdit note{this};
    widgets::CheckListBox list{this};

    Gallery()
    {
        list.addItem("Illinois");
        list.addItem("Little Hill");
        tick.setText("Hill");
        option.setText("Hill");
        for (int y = 10;
             auto* child : std::initializer_list<QWidget*>{&text, &choice, &box, &tick, &option, &note, &list}) {
            child->setGeometry(20, y, 160, qobject_cast<QAbstractScrollArea*>(child) ? 70 : 28);
            y += child->height() + 10;
        }
        setFixedSize(200, 400);
        show();
    }

    // Where an edge is looked for, in its control: above the middle of what has one.
    [[nodiscard]] QPoint topOf(const QWidget& control) const
    {
        QStyleOptionButton button;
        button.initFrom(&control);
        QRect edged = control.rect();
        if (qobject_cast<const QCheckBox*>(&control))
            edged = style()->subElementRect(QStyle::SE_CheckBoxIndicator, &button, &control);
        else if (qobject_cast<const QRadioButton*>(&control))
            edged = style()->subElementRect(QStyle::SE_RadioButtonIndicator, &button, &control);
        else if (edged.width() > 100)
            edged.setLeft(edged.width() - 80); // beside the text
        return control.pos() + QPoint(edged.center().x(), edged.top());
    }

    // How many pixels from the outside in stand out from both grounds.
    [[nodiscard]] int edgeOf(const QWidget& control)
    {
        const QImage image = grab().toImage();
        const QPoint top = topOf(control);
        const QColor outside = image.pixel(top - QPoint(0, 3));
        const QColor inside = image.pixel(top + QPoint(0, 5));
        int pixels = 0;
        for (int y = -2; y < 5; ++y) {
            const QColor here = image.pixel(top + QPoint(0, y));
            pixels += widgets::contrast(here, outside) >= 3 && widgets::contrast(here, inside) >= 3;
        }
        return pixels;
    }
};

// The greatest contrast of a text with its ground, as it is painted.
double painted(const QImage& image, const QRect& place)
{
    const QColor ground = image.pixel(place.topLeft());
    double best = 0;
    for (int y = place.top(); y <= place.bottom(); ++y)
        for (int x = place.left(); x <= place.right(); ++x)
            best = std::max(best, widgets::contrast(image.pixelColor(x, y), ground));
    return best;
}

QPalette schemeOf(const QString& scheme)
{
    QPalette palette(scheme == "dark" ? QColor(45, 47, 51) : QColor(239, 239, 239));
    if (scheme == "dark")
        palette.setColor(QPalette::Base, QColor(30, 32, 35));
    palette.setColor(QPalette::Highlight, scheme == "dark" ? QColor(70, 120, 190) : QColor(48, 140, 198));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) // as faint as desktops have it
        palette.setColor(QPalette::Disabled, role, scheme == "dark" ? QColor(85, 87, 91) : QColor(190, 190, 190));
    return palette;
}

} // namespace

// What is painted, pixel by pixel.
class tst_look : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void schemes_data()
    {
        QTest::addColumn<QString>("scheme");
        for (const char* scheme : {"light", "dark"})
            QTest::newRow(scheme) << scheme;
    }
    void schemes()
    {
        QFETCH(QString, scheme);
        QPalette palette = schemeOf(scheme);
        QApplication::style()->polish(palette); // as it polishes the desktop's
        QApplication::setPalette(palette);
        Gallery form;
        QVERIFY(QTest::qWaitForWindowActive(&form));
        for (auto* child :
             {static_cast<QWidget*>(&form.text), static_cast<QWidget*>(&form.choice), static_cast<QWidget*>(&form.box),
              static_cast<QWidget*>(&form.tick), static_cast<QWidget*>(&form.option), static_cast<QWidget*>(&form.note),
              static_cast<QWidget*>(&form.list)}) {
            const char* name = child->metaObject()->className();
            form.setFocus();
            QVERIFY2(form.edgeOf(*child) >= 1, name);
            child->setFocus();
            QVERIFY2(form.edgeOf(*child) >= 2, name);
        }

        for (const bool focused : {true, false}) {
            form.list.setListIndex(1);
            focused ? form.list.setFocus() : form.text.setFocus();
            const QImage image = form.list.grab().toImage();
            QRect row = form.list.visualRect(form.list.currentIndex());
            row.moveTopLeft(form.list.viewport()->mapTo(&form.list, row.topLeft()));
            const QColor ground = image.pixel(row.right() - 20, row.center().y());
            for (int y = row.top(); y <= row.bottom(); ++y)
                QCOMPARE(image.pixelColor(row.right() - 20, y), ground);
            QVERIFY(painted(image, row.adjusted(25, 1, 0, -1)) >= 4.5);
        }

        QLabel label("Hill", &form);
        QPushButton button("Hill", &form);
        for (auto* child : {static_cast<QWidget*>(&label), static_cast<QWidget*>(&button),
                            static_cast<QWidget*>(&form.text), static_cast<QWidget*>(&form.choice)}) {
            form.text.setText("Hill");
            form.choice.addItem("Hill");
            form.choice.setListIndex(0);
            child->setEnabled(false);
            child->resize(100, 30);
            const double contrast = painted(child->grab().toImage(), child->rect().adjusted(5, 5, -25, -5));
            QVERIFY2(contrast >= 3 && contrast < 7, // fainter than others
                     qPrintable(QString("%1 %2").arg(child->metaObject()->className()).arg(contrast)));
        }
        QApplication::setPalette(QPalette());
    }

    // A text shows where there is no row, and only there; the model has none, whoever reads it.
    void emptyText()
    {
        widgets::ListBox list;
        widgets::TextGrid grid;
        for (QAbstractItemView* view :
             {static_cast<QAbstractItemView*>(&list), static_cast<QAbstractItemView*>(&grid)}) {
            view->resize(200, 100);
            view->show();
            const auto inked = [view] {
                const QRect inner = view->viewport()->rect().adjusted(3, 3, -3, -3);
                return painted(view->viewport()->grab().toImage(), inner) > 3;
            };
            QVERIFY(!inked());
            widgets::sayWhenEmpty(*view, "No scouts yet. Press New.");
            QVERIFY(inked());
            QCOMPARE(view->model()->rowCount(), 0);
        }
        list.addItem("");
        QVERIFY(widgets::saidWhileEmpty(list).isEmpty());
        QVERIFY(painted(list.viewport()->grab().toImage(), list.viewport()->rect()) < 3);
        list.clear();
        widgets::sayWhenEmpty(list, "Nobody here.");
        QCOMPARE(widgets::saidWhileEmpty(list), "Nobody here.");
    }

    // Lines that can be read, at any size of letters; a short text beside the middle of the sign; the text as it was.
    void messages_data()
    {
        test::table({"case", "size", "words", "lines"}, R"(
            short          | 9  | 2  | 1
            long           | 9  | 60 | many
            long and large | 16 | 60 | many)");
    }
    void messages()
    {
        QFETCH(QString, lines);
        const QFont before = QApplication::font();
        QFont font = before;
        font.setPointSize(test::cell("size").toInt());
        QApplication::setFont(font);
        const QString text = QString("little ill ").repeated(test::cell("words").toInt() / 2) + "end";
        QTimer::singleShot(20, qApp, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            const auto* label = box->findChild<QLabel*>("qt_msgbox_label");
            const auto* sign = box->findChild<QLabel*>("qt_msgboxex_icon_label");
            QCOMPARE(box->text(), text);
            QVERIFY(box->width() >= 340 && box->rect().contains(label->geometry()));
            QVERIFY(label->height() >= label->heightForWidth(label->width()));
            const int height = label->fontMetrics().height();
            if (lines == "1")
                QVERIFY(std::abs(label->geometry().center().y() - sign->geometry().center().y()) < height / 2);
            QTextLayout layout(text, label->font());
            layout.beginLayout();
            int count = 0;
            for (auto line = layout.createLine(); line.isValid(); line = layout.createLine(), ++count) {
                line.setLineWidth(label->width());
                QVERIFY(text.mid(line.textStart(), line.textLength()).trimmed().size() <= 70);
            }
            QVERIFY((count == 1) == (lines == "1"));
            box->accept();
        });
        widgets::message(text);
        QApplication::setFont(before);
    }
};

ORLO_TEST(tst_look)

#include "tst_look.moc"
