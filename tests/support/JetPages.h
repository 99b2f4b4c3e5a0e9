#pragma once

#include "support/Files.h"

#include <QByteArray>
#include <QStringList>

namespace orlo::test
{

/// The pages of a Jet 4 file, for changing a sample's tables in ways that no program would write.
class JetPages
{
public:
    struct Row {
        QByteArray bytes;
        bool moved = false;   ///< on another page, with a pointer in its place
        bool removed = false; ///< marked as deleted
    };

    explicit JetPages(const QString& path) : m_bytes(contents(path)) {}
    [[nodiscard]] const QByteArray& bytes() const { return m_bytes; }

    /// The text as stored in the file.
    static QByteArray wide(const QString& text)
    {
        return {reinterpret_cast<const char*>(text.utf16()), text.size() * 2};
    }
    /// The page of the table that has all these fields.
    [[nodiscard]] int table(const QStringList& fields) const
    {
        for (int page = 0; page < pages(); ++page) {
            const QByteArray bytes = m_bytes.mid(page * Size, Size);
            if (bytes[0] == 2 && std::ranges::all_of(fields, [&](const QString& f) { return bytes.contains(wide(f)); }))
                return page;
        }
        fail(QStringLiteral("no table with ") + fields.join(u' '));
    }
    /// Swaps two names of the same length on a table's page.
    void exchangeNames(int table, const QString& one, const QString& other)
    {
        QByteArray page = m_bytes.mid(table * Size, Size);
        page.replace(wide(one), "\1\2\3").replace(wide(other), wide(one)).replace("\1\2\3", wide(other));
        m_bytes.replace(table * Size, Size, page);
    }
    /// Changes a field's type and width, by its index; leftover bytes become a removed field's.
    void setType(int table, int field, int type, int width)
    {
        const qsizetype entry = table * Size + 63 + 12 * get(table * Size + 51, 4) + 25 * field;
        put(entry, type, 1);
        put(entry + 23, width, 2);
        put(table * Size + 41, get(table * Size + 41, 2) + 1, 2);
    }
    void write(qsizetype at, const QByteArray& bytes) { m_bytes.replace(at, bytes.size(), bytes); }
    /// Changes the number of rows that a table states.
    void state(int table, int rows) { put(table * Size + 16, rows, 4); }
    void replace(const QString& before, const QString& after) { m_bytes.replace(wide(before), wide(after)); }
    /// A table's rows that aren't deleted.
    [[nodiscard]] std::vector<Row> rows(int table) const
    {
        std::vector<Row> found;
        for (int page = 0; page < pages(); ++page) {
            const qsizetype at = page * Size;
            if (m_bytes[at] != 1 || get(at + 4, 4) != table)
                continue;
            int end = Size;
            for (int row = 0; row < get(at + 12, 2); ++row) {
                const int start = get(at + 14 + 2 * row, 2);
                if (!(start & 0xC000))
                    found.push_back({m_bytes.mid(at + start, end - start)});
                end = start & 0x1FFF;
            }
        }
        return found;
    }
    /// Changes a table's rows. They are written to new pages, and the old ones are no longer part of it.
    template <class Change>
    void change(int table, const Change& change)
    {
        auto changed = rows(table);
        change(changed);
        const int first = pages();
        for (const Row& row : changed)
            if (row.moved)
                addRow(table, row.bytes, 0x8000, pages() == first);
        const int split = pages();
        int next = 0;
        int count = 0;
        for (const auto& [bytes, moved, removed] : changed) {
            const QByteArray pointer = number(first << 8 | next, 4);
            next += moved;
            count += !removed;
            addRow(table, moved ? pointer : bytes, removed ? 0xC000 : moved ? 0x4000 : 0, pages() == split);
        }
        addMap(table, first);
        put(table * Size + 16, count, 4);
    }

private:
    static constexpr int Size = 4096;

    static QByteArray number(int value, int width) { return {reinterpret_cast<const char*>(&value), width}; }
    [[nodiscard]] int pages() const { return static_cast<int>(m_bytes.size() / Size); }
    [[nodiscard]] int get(qsizetype at, int width) const
    {
        int value = 0;
        memcpy(&value, m_bytes.constData() + at, static_cast<std::size_t>(width));
        return value;
    }
    void put(qsizetype at, int value, int width) { m_bytes.replace(at, width, number(value, width)); }

    void addRow(int owner, const QByteArray& bytes, int flags, bool newPage)
    {
        qsizetype at = m_bytes.size() - Size;
        int count = get(at + 12, 2);
        qsizetype end = count == 0 ? Size : get(at + 12 + 2 * count, 2) & 0x1FFF;
        if (newPage || count == 255 || end - bytes.size() < 16 + 2 * count) {
            m_bytes += QByteArray("\1\1\0\0", 4) + number(owner, 4) + QByteArray(Size - 8, '\0');
            at += Size;
            count = 0;
            end = Size;
        }
        end -= bytes.size();
        m_bytes.replace(at + end, bytes.size(), bytes);
        put(at + 14 + 2 * count, static_cast<int>(end) | flags, 2);
        put(at + 12, count + 1, 2);
    }
    // A map of all pages from this one on.
    void addMap(int table, int first)
    {
        const int end = pages();
        QByteArray map = QByteArray("\5\1\0\0", 4) + QByteArray(Size - 4, '\0');
        for (int page = first; page < end; ++page)
            map[4 + page / 8] = static_cast<char>(map[4 + page / 8] | 1 << page % 8);
        m_bytes += map;
        addRow(0, '\1' + number(end, 4), 0, true);
        put(table * Size + 55, (end + 1) << 8, 4);
    }

    QByteArray m_bytes;
};

} // namespace orlo::test
