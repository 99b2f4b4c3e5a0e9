#include "PackFile.h"
#include "PeopleList.h"
#include "Subjects.h"
#include "Table.h"
#include "scouts/frmScouts.h"
#include "shell/forms/Module1.h"
#include "widgets/ComboBox.h"
#include "widgets/ListBox.h"
#include "widgets/TextGrid.h"

#include <sqlite3.h>

#include <algorithm>

namespace orlo::bench
{

namespace
{

constexpr int Scouts = 10'000;
constexpr int FewScouts = Scouts / 10;
constexpr int AwardsOfScout = 20;
const PeopleList<frmScouts> List{"Scouts", Scouts};

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
    return timed([&] {
        filter.setText(filter.list(0));
        filter.setText(QStringLiteral("<All>"));
    });
}

// A click on rows all over the list, and the two reads after it.
double clickRows(int scouts)
{
    auto& list = control<widgets::ListBox>("lbScouts");
    return timed([&] {
        for (int i = 1; i <= 50; ++i)
            list.setListIndex(i * 7919 % scouts);
    });
}

double readRows(const PlainDatabase& plain, const std::vector<int>& sids)
{
    return timed([&] {
        for (const int sid : sids)
            for (const char* select :
                 {"Select * From Scouts Where Scout_SID = ",
                  "Select a.Scout_SID, a.Assigned_SID, b.Insignia_Name, b.Insignia_Type, a.Date_Assigned, a.Quantity, "
                  "a.Insignia_SID From Assigned_Awards_Scouts a, Insignias b Where b.Insignia_SID = a.Insignia_SID and "
                  "a.Scout_SID = "}) {
                QByteArray sql = select + QByteArray::number(sid);
                if (sql.contains("Assigned_SID, b"))
                    sql += " Order by Date_Assigned";
                const auto read = plain.prepare(sql);
                while (step(read))
                    for (int column = 0; column < sqlite3_column_count(read.get()); ++column)
                        (void)textOf(read, column);
            }
    });
}

std::vector<int> clickedSids(const PlainDatabase& plain, int scouts)
{
    std::vector<int> inOrder;
    const auto all = plain.prepare(List.select());
    while (step(all))
        inOrder.push_back(sqlite3_column_int(all.get(), 0));
    std::vector<int> clicked;
    for (int i = 1; i <= 50; ++i)
        clicked.push_back(inOrder[static_cast<std::size_t>(i * 7919 % scouts)]);
    return clicked;
}

} // namespace

void openScouts(Table& table)
{
    const PackFile file(packSql(Scouts));
    const PlainDatabase plain(file.path());
    std::vector<double> few(9);
    {
        const PackFile small(packSql(FewScouts));
        const OpenPack pack(small);
        form().show();
        (void)clickRows(FewScouts);
        std::ranges::generate(few, [] { return clickRows(FewScouts); });
        std::ranges::sort(few);
    }
    const OpenPack pack(file);
    const Work plainList = [&] { return List.fillPlain(plain); };
    table.compare(
        {"open frmScouts on 10,000 scouts", "query into a plain list", 2.0, [] { return List.open(); }, plainList, 9});
    const std::vector<int> sids = clickedSids(plain, Scouts);
    const Work clicks = [] { return clickRows(Scouts); };
    table.compare({"50 clicks in the list, 200,000 awards", "the same reads, C API", 2.5, clicks,
                   [&] { return readRows(plain, sids); }, 9});
    table.compare(
        {"50 clicks: ten times the scouts", "1,000 scouts", 1.2, clicks, [&few] { return few[few.size() / 2]; }, 9});
    table.compare({"filter by den and back", "query into a plain list", 2.0, filterAndBack, plainList, 9});
}

} // namespace orlo::bench
