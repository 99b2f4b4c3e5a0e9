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

// Every kind of control whose edge the style paints.
struct Gallery : QWidget {
    QLineEdit text{this};
    widgets::ComboBox choice{this};
    widgets::EditableComboBox box{this};
    QSpinBox number{this};
    widgets::CheckBox tick{this};
    widgets::OptionButton option{this};
    QPlainTextEdit note{this};
    widgets::CheckListBox list{this};
    const QList<QWidget*> all{&text, &choice, &box, &number, &tick, &option, &note, &list};

    Gallery()
    {
        list.addItem("Illinois");
        list.addItem("Little Hill");
        for (int y = 10; QWidget * child : all) {
            child->setGeometry(20, y, 160, qobject_cast<QAbstractScrollArea*>(child) ? 70 : 28);
            y += child->height() + 10;
        }
        setFixedSize(200, 440);
        show();
    }

    // How many pixels of a control's upper edge contrast with both backgrounds.
    [[nodiscard]] int edgeOf(const QWidget& control)
    {
        const int x = &control == &tick || &control == &option ? 7 : 120; // within the mark, beside the text
        const QImage line = grab().toImage().copy(control.x() + x, control.y() - 3, 1, control.height() / 2 + 3);
        int pixels = 0;
        for (int y = 0; y < line.height(); ++y)
            pixels += std::min(widgets::contrast(line.pixel(0, y), line.pixel(0, 0)),
                               widgets::contrast(line.pixel(0, y), line.pixel(0, line.height() - 1))) >= 3;
        return pixels;
    }
};

// The greatest contrast of a painted text with its background.
double painted(const QImage& image, const QRect& place)
{
    const QColor ground = image.pixel(place.topLeft());
    double best = 0;
    for (int y = place.top(); y <= place.bottom(); ++y)
        for (int x = place.left(); x <= place.right(); ++x)
            best = std::max(best, widgets::contrast(image.pixelColor(x, y), ground));
    return best;
}

// A desktop's colours, with pale texts as faint as on some.
QPalette schemeOf(bool dark)
{
    QPalette palette(dark ? QColor(45, 47, 51) : QColor(239, 239, 239));
    palette.setColor(QPalette::Base, dark ? QColor(30, 32, 35) : QColor(Qt::white));
    palette.setColor(QPalette::Highlight, dark ? QColor(70, 120, 190) : QColor(48, 140, 198));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, dark ? QColor(85, 87, 91) : QColor(190, 190, 190));
    return palette;
}

} // namespace

// What is painted, pixel by pixel.
class tst_look : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void schemes_data() { test::table({"scheme"}, "light\ndark"); }
    void schemes()
    {
        QPalette palette = schemeOf(test::cell("scheme") == "dark");
        QApplication::style()->polish(palette); // as it polishes the desktop's
        QApplication::setPalette(palette);
        Gallery form;
        QVERIFY(QTest::qWaitForWindowActive(&form));
        for (QWidget* child : form.all) {
            const char* name = child->metaObject()->className();
            form.setFocus();
            QVERIFY2(form.edgeOf(*child) >= 1, name);
            child->setFocus();
            QVERIFY2(form.edgeOf(*child) >= 2, name);
        }

        QColor before;
        for (const bool focused : {true, false}) {
            form.list.setListIndex(1);
            (focused ? form.all.last() : form.all.first())->setFocus();
            const QImage image = form.list.grab().toImage();
            const QRect row = form.list.visualRect(form.list.currentIndex()).translated(form.list.viewport()->pos());
            const QColor ground = image.pixel(row.right() - 20, row.center().y());
            for (int y = row.top(); y <= row.bottom(); ++y)
                QCOMPARE(image.pixelColor(row.right() - 20, y), ground);
            QVERIFY(painted(image, row.adjusted(25, 1, 0, -1)) >= 4.5);
            QVERIFY(std::exchange(before, ground) != ground); // the focus can be seen
        }

        QLabel label("Hill", &form);
        QPushButton button("Hill", &form);
        for (QWidget* child : QList<QWidget*>{&label, &button, &form.text, &form.choice}) {
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

    void signs()
    {
        const auto look = [](QStyle::StandardPixmap sign) {
            const QImage image = QApplication::style()->standardIcon(sign).pixmap(48).toImage();
            const bool corner = image.pixelColor(image.width() / 7, image.height() * 8 / 10).alpha() > 0;
            return image.pixelColor(image.width() * 3 / 10, image.height() * 8 / 10).name() +
                   (corner ? " triangle" : "");
        };
        QCOMPARE(look(QStyle::SP_MessageBoxWarning), "#eea43c triangle");
        QCOMPARE(look(QStyle::SP_MessageBoxCritical), "#c94a34");
        QCOMPARE(look(QStyle::SP_MessageBoxInformation), "#357f9f");
        Gallery form;
        QVERIFY(form.choice.testAttribute(Qt::WA_Hover)); // it shows when the pointer is over it
        QStyleOptionButton option;
        option.initFrom(&form.tick);
        const QRect mark = form.style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, &form.tick);
        form.tick.setChecked(true);
        const QImage ticked = form.tick.grab(mark).toImage();
        const auto at = [&](double x, double y) {
            return ticked.pixelColor(int(x * mark.width()), int(y * mark.height()));
        };
        QVERIFY(widgets::contrast(at(0.3, 0.56), at(0.3, 0.3)) > 3); // the short stroke is on the left
    }

    // A text shows where there are no rows, and only there; the model has none, whoever reads it.
    void emptyText()
    {
        widgets::TextGrid grid;
        const auto inked = [&grid] {
            const QRect inner = grid.viewport()->rect().adjusted(3, 3, -3, -3);
            return painted(grid.viewport()->grab().toImage(), inner) > 3;
        };
        grid.show();
        QVERIFY(!inked());
        widgets::sayWhenEmpty(grid, "Nobody here.");
        QPushButton button("&New");
        widgets::sayWhenEmpty(grid, "No scouts yet.", &button);
        QVERIFY(inked());
        QCOMPARE(grid.model()->rowCount(), 0);
        QCOMPARE(grid.accessibleDescription(), "No scouts yet. Press New.");
        button.setEnabled(false);
        QVERIFY(inked());
        QCOMPARE(grid.accessibleDescription(), "No scouts yet.");
        grid.addRow();
        QVERIFY(!inked() && grid.accessibleDescription().isEmpty());
    }

    // Lines of readable length, at any font size; a short text is beside the middle of the sign; the text is unchanged.
    void messages_data()
    {
        test::table({"case", "size", "words"}, R"(
            short          | 9  | 2
            long           | 9  | 60
            long and large | 16 | 60)");
    }
    void messages()
    {
        const QFont before = QApplication::font();
        QApplication::setFont(QFont(before.family(), test::cell("size").toInt()));
        const QString text = QString("little ill ").repeated(test::cell("words").toInt() / 2) + "end";
        QTimer::singleShot(20, qApp, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            const auto* label = box->findChild<QLabel*>("qt_msgbox_label");
            const auto* sign = box->findChild<QLabel*>("qt_msgboxex_icon_label");
            QCOMPARE(box->text(), text);
            QVERIFY(box->width() >= 340 && box->rect().contains(label->geometry()));
            QVERIFY(label->height() >= label->heightForWidth(label->width()));
            QVERIFY(text.size() > 70 || std::abs(label->geometry().center().y() - sign->geometry().center().y()) < 5);
            QTextLayout layout(text, label->font());
            layout.beginLayout();
            for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
                line.setLineWidth(label->width());
                QVERIFY(line.textLength() <= 71); // the trailing blank
            }
            box->accept();
        });
        widgets::message(text);
        QApplication::setFont(before);
    }
};

ORLO_TEST(tst_look)

#include "tst_look.moc"
