#pragma once

#include "store/engine/TableDef.h"
#include "store/schema/Schema.h"
#include "support/JetPages.h"

#include <QMap>
#include <QRegularExpression>

namespace orlo::test
{

using namespace Qt::StringLiterals;

// Bytes as hexadecimal digits or "512 zeros", 'text' with a byte per letter and "text" with two.
inline QByteArray bytesOf(const QString& words)
{
    static const QRegularExpression part(u"\"([^\"]+)\"|'([^']+)'|(\\d+) zeros|([0-9A-F]{2})"_s);
    QByteArray bytes;
    for (const auto& match : part.globalMatch(words))
        bytes += JetPages::wide(match.captured(1)) + match.captured(2).toLatin1() +
                 QByteArray(match.captured(3).toInt(), '\0') + QByteArray::fromHex(match.captured(4).toLatin1());
    return bytes;
}

inline void change(JetPages::Row& row, const QString& what)
{
    row.moved |= what == u"moved";
    row.removed |= what == u"removed";
    if (what.startsWith(u"at ")) {
        const int at = what.section(u' ', 1, 1).toInt();
        const QByteArray bytes = bytesOf(what.section(u' ', 2));
        row.bytes.replace(at < 0 ? row.bytes.size() + at : at, bytes.size(), bytes);
    } else if (what.startsWith(u"is "))
        row.bytes = bytesOf(what.sliced(3));
    else if (what.contains(u" -> "))
        row.bytes.replace(bytesOf(what.section(u" -> "_s, 0, 0)), bytesOf(what.section(u" -> "_s, 1)));
}

// The page of a table of ours, by its first fields, or of the former format's own catalogue.
inline int tablePage(const JetPages& pages, const QString& name)
{
    QStringList fields{u"ParentId"_s, u"DateUpdate"_s};
    for (int field = 0; name != u"catalogue" && field < 2; ++field)
        fields[field] = store::schema::findTable(name)->fields()[field].name;
    return pages.table(fields);
}

// Changes a file as the lines of oddities.txt say.
inline void change(JetPages& pages, const QStringList& lines)
{
    QMap<QString, QStringList> ofRows;
    for (const QString& line : lines) {
        const QString table = line.section(u' ', 0, 0);
        const QString what = line.section(u' ', 1);
        if (table == u"rename")
            pages.replace(what.section(u" to "_s, 0, 0), what.section(u" to "_s, 1));
        else if (what.startsWith(u"swaps "))
            pages.exchangeNames(tablePage(pages, table), what.section(u' ', 1, 1), what.section(u' ', 3));
        else if (table == u"byte")
            pages.write(what.section(u": "_s, 0, 0).toInt(), bytesOf(what.section(u": "_s, 1)));
        else if (what.startsWith(u"states "))
            pages.state(tablePage(pages, table), what.sliced(7).toInt());
        else if (what.startsWith(u"field "))
            pages.setType(tablePage(pages, table), what.section(u' ', 1, 1).toInt(), what.section(u' ', 3, 3).toInt(),
                          what.section(u' ', 5).toInt());
        else
            ofRows[table] += what;
    }
    for (auto table = ofRows.cbegin(); table != ofRows.cend(); ++table)
        pages.change(tablePage(pages, table.key()), [&](std::vector<JetPages::Row>& rows) {
            for (const QString& what : *table)
                for (std::size_t i = 0; i < rows.size(); ++i) {
                    const QString which = what.section(u": "_s, 0, 0);
                    const bool byText = !which[0].isDigit() && rows[i].bytes.contains(JetPages::wide(which));
                    if (which == u"all" || which == QString::number(i + 1) || byText)
                        change(rows[i], what.section(u": "_s, 1));
                }
        });
}

} // namespace orlo::test
