#include "PackFile.h"
#include "Painting.h"
#include "Subjects.h"
#include "Table.h"
#include "awards/frmInsigniaInfo.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace orlo::bench
{

namespace
{

constexpr int Awards = 10'000;

// Opens the catalogue and steps through it with its Next button.
void walkForm()
{
    auto& form = widgets::Instance<frmInsigniaInfo>::get();
    form.showForm();
    auto& next = *form.findChild<QPushButton*>(QStringLiteral("cmdNext"));
    while (next.isEnabled())
        next.click();
    paint(form);
}

// Boxes of the same kinds as the form's, in a window, and nothing else.
struct BareWindow {
    QWidget window;
    QLineEdit name;
    QPlainTextEdit description;
    QLineEdit type;
    QLabel place;

    BareWindow()
    {
        auto* column = new QVBoxLayout(&window);
        for (QWidget* box : std::initializer_list<QWidget*>{&name, &description, &type, &place}) {
            box->setParent(&window);
            column->addWidget(box);
        }
        window.show();
    }

    // A text that is already there isn't set.
    void show(const QString& nameText, const QString& descriptionText, const QString& typeText)
    {
        if (name.text() != nameText)
            name.setText(nameText);
        if (description.toPlainText() != descriptionText)
            description.setPlainText(descriptionText);
        if (type.text() != typeText)
            type.setText(typeText);
    }
};

void walkRows(const PlainDatabase& plain)
{
    BareWindow bare;
    const auto awards = plain.prepare("SELECT Insignia_SID, Insignia_Name, Insignia_Type, Description FROM Insignias "
                                      "ORDER BY Insignia_Name, Insignia_Type");
    for (int at = 1; step(awards); ++at) {
        bare.show(textOf(awards, 1), textOf(awards, 3), textOf(awards, 2));
        bare.place.setText(QStringLiteral("Award %1 of %2").arg(at).arg(Awards));
    }
    paint(bare.window);
}

} // namespace

void walkRecordForm(Table& table)
{
    const PackFile file(awardsSql(Awards));
    const OpenPack open(file);
    const PlainDatabase plain(file.path());
    const Work ours = [] {
        const double seconds = timed(walkForm);
        auto* form = widgets::Instance<frmInsigniaInfo>::loaded();
        const QString place = form->findChild<QLabel*>(QStringLiteral("lblRecordInfo"))->text();
        if (place != QStringLiteral("Award %1 of %1").arg(Awards))
            qFatal("the walk ended on %s", qPrintable(place));
        form->unload();
        return seconds;
    };
    table.compare({"open and step through 10,000 awards", "C API, texts into bare boxes", 0.7, ours,
                   [&] { return timed([&] { walkRows(plain); }); }, 7});
}

} // namespace orlo::bench
