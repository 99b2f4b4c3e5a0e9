#include "PackFile.h"
#include "Painting.h"
#include "Subjects.h"
#include "Table.h"
#include "awards/frmAssignInsignias.h"
#include "shell/forms/Module1.h"
#include "store/engine/Database.h"
#include "widgets/ComboBox.h"
#include "widgets/OptionButton.h"
#include "widgets/TextGrid.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QTest>

#include <array>
#include <optional>

#include <sqlite3.h>
#include <unistd.h>

namespace orlo::bench
{

namespace
{

template <class W>
W& control(const char* name)
{
    auto* form = widgets::Instance<frmAssignInsignias>::loaded();
    W* found = form ? form->findChild<W*>(QString::fromLatin1(name)) : nullptr;
    if (!found)
        qFatal("no control %s", name);
    return *found;
}

void click(const char* button)
{
    QTest::mouseClick(&control<QPushButton>(button), Qt::LeftButton);
}

void pick(const char* box, int row)
{
    auto& combo = control<widgets::ComboBox>(box);
    combo.showPopup();
    combo.hidePopup();
    combo.setListIndex(row);
}

// Opens the screen and takes all scouts of den 1 into the working list.
void openWithDenSelected()
{
    widgets::Instance<frmAssignInsignias>::show();
    control<QTabWidget>("SSTabAssignInsignias").setCurrentIndex(1);
    pick("comDen", 0);
    click("cmdSelAllByDenScouts");
}

// The contents of the pack's list, without the screen: one row of texts per person.
class Rows final : public QAbstractTableModel
{
public:
    using Row = std::array<QString, 4>;

    explicit Rows(const PlainDatabase& plain)
    {
        const auto people = plain.prepare(
            "Select First_Name, Last_Name, Den_Number, Den_Type, Scout_SID From Scouts LEFT JOIN Dens ON "
            "Scouts.Assigned_Den_SID = Dens.Den_SID Where Scouts.Active = 'Y' Order by Last_Name, First_Name, MI");
        while (step(people))
            m_rows.push_back(
                {QString(), textOf(people, 0) + u' ' + textOf(people, 1), textOf(people, 2), textOf(people, 4)});
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(Row().size());
    }
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override
    {
        return role == Qt::DisplayRole
                   ? m_rows[static_cast<std::size_t>(index.row())][static_cast<std::size_t>(index.column())]
                   : QVariant();
    }

private:
    std::vector<Row> m_rows;
};

// The time that the screen takes to fill its list with this many people, this many of them selected.
class PackGrid
{
public:
    PackGrid(int people, int selected) : m_file(densSql() + scoutsSql(people, selected)), m_people(people) {}

    [[nodiscard]] const PackFile& file() const { return m_file; }

    [[nodiscard]] Work fill() const
    {
        return [this] {
            const OpenPack open(m_file);
            openWithDenSelected();
            control<QTabWidget>("SSTabAssignInsignias").setCurrentIndex(0);
            control<widgets::OptionButton>("optListOfAdults").setChecked(true);
            auto& grid = control<widgets::TextGrid>("fgSelectFrom");
            paint(*grid.viewport());
            const double seconds = timed([&grid] {
                control<widgets::OptionButton>("optListOfScouts").setChecked(true);
                paint(*grid.viewport());
            });
            if (grid.rows() != m_people + 1)
                qFatal("the list isn't full");
            return seconds;
        };
    }

private:
    PackFile m_file;
    int m_people;
};

} // namespace

void assignAwards(Table& table)
{
    constexpr int People = 500;
    const PackFile file(densSql() + awardsSql(110) + scoutsSql(People, People));
    const OpenPack open(file);
    const PlainDatabase plain(file.path());
    openWithDenSelected();
    const Work ours = [] {
        pick("cboAward", 3);
        control<QLineEdit>("txtAssignDate").setText(QStringLiteral("11/24/2026"));
        const double seconds = waited([] { click("cmdAssignAward"); });
        const int rows = database().openRecordset(QStringLiteral("Assigned_Awards_Scouts")).recordCount();
        database().execute(QStringLiteral("Delete From Assigned_Awards_Scouts"));
        if (rows != People)
            qFatal("%d awards were assigned", rows);
        return seconds;
    };
    const Work theirs = [&] {
        const auto insert = plain.prepare("INSERT INTO Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned, "
                                          "Year, Month) VALUES (?, 4, '2026-11-24', 2026, 11)");
        const double seconds = waited([&] {
            for (int scout = 1; scout <= People; ++scout) {
                sqlite3_bind_int(insert.get(), 1, scout);
                (void)step(insert);
                sqlite3_reset(insert.get());
            }
        });
        plain.run("DELETE FROM Assigned_Awards_Scouts");
        return seconds;
    };
    const Work appends = [&file] {
        QFile pages(file.folder() + QStringLiteral("/pages"));
        if (!pages.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            qFatal("no file to append to");
        const QByteArray page(4096, 'x');
        return waited([&] {
            for (int append = 0; append < People; ++append) {
                pages.write(page);
                ::fsync(pages.handle());
            }
        });
    };
    table.compare({"assign an award to 500 people", "durable inserts, C API", 1.3, ours, theirs, 5});
    // Each change flushes four times where an append flushes once; docs/database.md says why.
    table.compare({"assign an award to 500 people", "flushed appends of a page", 4.5, ours, appends, 5});
}

void fillPackGrid(Table& table)
{
    const PackGrid grid(10'000, 1'000);
    const PackGrid morePeople(20'000, 1'000);
    const PackGrid moreSelected(10'000, 2'000);
    const PlainDatabase plain(grid.file().path());
    QTableView view;
    view.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view.show();
    const Work theirs = [&] {
        std::optional<Rows> rows;
        const double seconds = timed([&] {
            view.setModel(&rows.emplace(plain));
            paint(*view.viewport());
        });
        view.setModel(nullptr);
        return seconds;
    };
    table.compare({"pack grid: 10,000 people, 1,000 selected", "raw query into a table of a vector", 1.15, grid.fill(),
                   theirs, 9});
    table.compare({"pack grid: twice the people", "10,000 people", 2.4, morePeople.fill(), grid.fill(), 9});
    table.compare({"pack grid: twice the selected", "1,000 selected", 1.3, moreSelected.fill(), grid.fill(), 9});
}

} // namespace orlo::bench
