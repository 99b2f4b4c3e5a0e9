#include "PackFile.h"
#include "Painting.h"
#include "PeopleList.h"
#include "Subjects.h"
#include "Table.h"
#include "scouts/frmScouts.h"
#include "shell/forms/Module1.h"
#include "widgets/ComboBox.h"
#include "widgets/ListBox.h"

#include <QAbstractTableModel>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListView>
#include <QStringListModel>
#include <QTabWidget>
#include <QTableView>

#include <algorithm>

#include <sqlite3.h>

namespace orlo::bench
{

namespace
{

constexpr int Scouts = 10'000;
constexpr int FewScouts = Scouts / 10;
constexpr int ManyScouts = 3 * Scouts;
constexpr int AwardsOfScout = 20;
constexpr int Clicks = 50;
const PeopleList<frmScouts> List{"Scouts", Scouts};
const PeopleList<frmScouts> LongList{"Scouts", ManyScouts};

QByteArray awardedSql(int scouts)
{
    return "WITH RECURSIVE n(i) AS (VALUES(1) UNION ALL SELECT i + 1 FROM n WHERE i < " +
           QByteArray::number(scouts * AwardsOfScout) + ") INSERT INTO Assigned_Awards_Scouts SELECT 1 + i % " +
           QByteArray::number(scouts) +
           ", 1 + i * 7919 % 110, d, strftime('%Y', d) + 0, strftime('%m', d) + 0, NULL, NULL"
           " FROM (SELECT i, date('2025-01-01', (i * 31 % 700) || ' days') AS d FROM n);";
}

QByteArray packSql(int scouts)
{
    return densSql() + awardsSql(110) + scoutsSql(scouts, scouts / 10) + awardedSql(scouts);
}

frmScouts& form()
{
    return widgets::Instance<frmScouts>::get();
}

template <class W>
W& control(const char* name)
{
    return *form().findChild<W*>(QString::fromLatin1(name));
}

double filterAndBack()
{
    auto& filter = control<widgets::ComboBox>("cmbSelectedDens");
    QWidget& list = *control<widgets::ListBox>("lbScouts").viewport();
    return timed([&] {
        filter.setText(filter.list(0));
        paint(list);
        filter.setText(QStringLiteral("<All>"));
        paint(list);
    });
}

// The clicked rows are spread over the list.
int clickedRow(int click, int scouts)
{
    return (click + 1) * 7919 % scouts;
}

double clickRows(int scouts)
{
    auto& list = control<widgets::ListBox>("lbScouts");
    return timed([&] {
        for (int click = 0; click < Clicks; ++click) {
            list.setListIndex(clickedRow(click, scouts));
            paint(*list.viewport());
        }
    });
}

// A list, boxes for the texts that the form has in view, and a grid of awards out of view, as in the form.
class BareForm
{
public:
    BareForm(const PlainDatabase& plain, const QStringList& names, std::size_t boxes)
        : m_names(names), m_record(plain.prepare("Select * From Scouts Where Scout_SID = ?")),
          m_awards(plain.prepare(
              "Select a.Scout_SID, a.Assigned_SID, b.Insignia_Name, b.Insignia_Type, a.Date_Assigned, a.Quantity, "
              "a.Insignia_SID From Assigned_Awards_Scouts a, Insignias b Where b.Insignia_SID = a.Insignia_SID and "
              "a.Scout_SID = ? Order by Date_Assigned")),
          m_boxes(boxes)
    {
        m_list.setUniformItemSizes(true);
        m_list.setModel(&m_names);
        m_grid.setModel(&m_rows);
        auto* row = new QHBoxLayout(&m_window);
        row->addWidget(&m_list);
        row->addWidget(&m_pages);
        auto* column = new QVBoxLayout(&m_page);
        for (QLineEdit& box : m_boxes)
            column->addWidget(&box);
        m_pages.addTab(&m_page, QStringLiteral("Scout"));
        m_pages.addTab(&m_grid, QStringLiteral("Awards"));
        m_window.show();
        paint(*m_list.viewport());
    }

    void click(int row, int sid)
    {
        m_list.setCurrentIndex(m_names.index(row));
        sqlite3_bind_int(m_record.get(), 1, sid);
        (void)step(m_record);
        for (int column = 0; column < sqlite3_column_count(m_record.get()); ++column) {
            const QString text = textOf(m_record, column);
            if (const auto box = static_cast<std::size_t>(column); box < m_boxes.size() && m_boxes[box].text() != text)
                m_boxes[box].setText(text);
        }
        sqlite3_reset(m_record.get());
        sqlite3_bind_int(m_awards.get(), 1, sid);
        QList<QStringList> rows;
        while (step(m_awards)) {
            QStringList& texts = rows.emplaceBack();
            for (int column = 0; column < sqlite3_column_count(m_awards.get()); ++column)
                texts.append(textOf(m_awards, column));
        }
        sqlite3_reset(m_awards.get());
        m_rows.show(std::move(rows));
        paint(*m_list.viewport());
    }

private:
    class Rows final : public QAbstractTableModel
    {
    public:
        void show(QList<QStringList>&& rows)
        {
            beginResetModel();
            m_rows = std::move(rows);
            endResetModel();
        }
        [[nodiscard]] int rowCount(const QModelIndex& parent) const override
        {
            return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
        }
        [[nodiscard]] int columnCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : 7; }
        [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override
        {
            return role == Qt::DisplayRole ? m_rows[index.row()][index.column()] : QVariant();
        }

    private:
        QList<QStringList> m_rows;
    };

    QStringListModel m_names;
    Rows m_rows;
    PlainStatement m_record;
    PlainStatement m_awards;
    QWidget m_window;
    QListView m_list;
    QTabWidget m_pages;
    QWidget m_page;
    std::vector<QLineEdit> m_boxes;
    QTableView m_grid;
};

std::vector<int> clickedSids(const PlainDatabase& plain, int scouts)
{
    std::vector<int> inOrder;
    const auto all = plain.prepare(List.select());
    while (step(all))
        inOrder.push_back(sqlite3_column_int(all.get(), 0));
    std::vector<int> clicked;
    for (int click = 0; click < Clicks; ++click)
        clicked.push_back(inOrder[static_cast<std::size_t>(clickedRow(click, scouts))]);
    return clicked;
}

// The form on a pack of its own; one row is clicked before those that count.
Work clicksIn(const PackFile& file, int scouts)
{
    return [&file, scouts] {
        const OpenPack pack(file);
        form().show();
        (void)clickRows(scouts);
        return clickRows(scouts);
    };
}

void compareOpening(Table& table, const std::string& work, const PackFile& file, const PeopleList<frmScouts>& list,
                    double limit)
{
    const OpenPack pack(file);
    const PlainDatabase plain(file.path());
    table.compare({work, "query into a list of a string model", limit, [&] { return list.open(); },
                   [&] { return list.fillPlain(plain); }, 9});
}

void compareClicks(Table& table, const PackFile& file)
{
    const OpenPack pack(file);
    const PlainDatabase plain(file.path());
    form().show();
    QStringList names;
    for (int row = 0; row < Scouts; ++row)
        names.append(control<widgets::ListBox>("lbScouts").list(row));
    const auto boxes = form().findChildren<QLineEdit*>();
    const std::vector<int> sids = clickedSids(plain, Scouts);
    BareForm bare(plain, names, static_cast<std::size_t>(std::ranges::count_if(boxes, &QWidget::isVisible)));
    table.compare({"50 clicks in the list, 200,000 awards", "two statements, texts into bare boxes", 1.4,
                   [] { return clickRows(Scouts); },
                   [&] {
                       return timed([&] {
                           for (int click = 0; click < Clicks; ++click)
                               bare.click(clickedRow(click, Scouts), sids[static_cast<std::size_t>(click)]);
                       });
                   },
                   9});
    table.compare({"filter by den and back", "query into a list of a string model", 1.15, filterAndBack,
                   [&] { return List.fillPlain(plain); }, 9});
}

} // namespace

void openScouts(Table& table)
{
    const PackFile file(packSql(Scouts));
    compareOpening(table, "open frmScouts on 10,000 scouts", file, List, 1.15);
    compareOpening(table, "open frmScouts on 30,000 scouts", PackFile(packSql(ManyScouts)), LongList, 1.2);
    compareClicks(table, file);
    const PackFile small(packSql(FewScouts));
    table.compare({"50 clicks: ten times the scouts", "1,000 scouts", 1.2, clicksIn(file, Scouts),
                   clicksIn(small, FewScouts), 9});
}

} // namespace orlo::bench
