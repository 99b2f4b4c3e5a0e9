#pragma once

#include "platform/RuntimeError.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"
#include "support/Failure.h"
#include "support/Sqlite.h"

#include <QMap>
#include <QRandomGenerator>
#include <QTest>

#include <array>
#include <optional>
#include <utility>

namespace orlo::test
{

// A record's values in the file; empty for a deleted one.
using State = QStringList;
inline constexpr std::array Fields{u"SID", u"Name", u"Note", u"F1", u"F2"};
inline constexpr int MaxRecords = 4;

inline QString shown(const store::Value& value)
{
    return value.isNull() ? QStringLiteral("Null") : value.toText();
}

// What a set has to know of a record.
struct Knowledge {
    qint64 number = 0;
    std::optional<State> state = {}; // as its program last read or wrote it
    bool another = false;            // another program has changed it since
    bool removed = false;            // its program has removed it
};

struct Walker {
    int program;
    store::Recordset set;
    QList<qint64> numbers = {};
    Knowledge current = {};
    Knowledge added = {};
    std::optional<State> seen = {}; // what it has shown of the current record
    State buffer = {};              // what it would turn it into
    QList<int> given = {};          // the buffer's fields that it would write
    bool onRemoved = false;
};

/// Random steps of sets, programs and another tool, beside the rows that the file must then have.
class Walk
{
public:
    Walk(QString path, std::array<store::Database, 2>& programs) : m_path(std::move(path)), m_programs(programs)
    {
        for (const int program : {0, 0, 1})
            m_walkers.push_back({program, programs[program].openRecordset("T")});
    }

    /// Does one step; returns the failure that it had, and the one that it should have.
    std::pair<int, int> step()
    {
        m_value = QString::number(++m_steps);
        m_failure = 0;
        Walker& walker = m_walkers[random(3)];
        const int expected = act(walker, random(15));
        return {m_failure, expected};
    }

    [[nodiscard]] QStringList rows() const
    {
        QStringList all;
        for (auto row = m_rows.cbegin(); row != m_rows.cend(); ++row)
            all += QString::number(row.key()) + u'|' + row->join(u'|');
        return all;
    }

private:
    [[nodiscard]] int random(qsizetype below) { return m_random.bounded(int(qMax<qsizetype>(1, below))); }
    template <class Action>
    void attempt(const Action& action)
    {
        m_failure = test::failureNumber(action);
    }

    int act(Walker& walker, int action)
    {
        store::Recordset& set = walker.set;
        if (action < 3)
            return outside(action == 2 ? walker.program : Tool);
        if (action < 5 && !walker.numbers.isEmpty())
            return go(walker, random(walker.numbers.size()));
        if (action == 5 && m_rows.size() < MaxRecords) {
            attempt([&] {
                set.addNew();
                set.setValue(Fields[0], m_value);
                set.update();
            });
            const qint64 number =
                test::sqlite(m_path, "Select rowid From T Where SID = " + m_value.toUtf8())[0].toLongLong();
            write(walker.program, number, State{m_value, "Null", "Null", "Null", "Null"});
            walker.added = {number, m_rows[number]};
            walker.numbers += number;
            if (walker.numbers.size() == 1)
                arrive(walker, number);
            return 0;
        }
        if (walker.numbers.isEmpty() && !walker.onRemoved)
            return 0;
        if (action == 6 && !walker.onRemoved) {
            walker.numbers = m_rows.keys();
            walker.onRemoved = !m_rows.contains(walker.current.number);
            return set.recordCount() == walker.numbers.size() ? 0 : -1;
        }
        if (action < 9)
            return read(walker, random(Fields.size()));
        if (action == 9)
            return remove(walker);
        if (action == 10) {
            set.addNew();
            set.cancelUpdate();
            return 0;
        }
        if (action == 11) {
            set = m_programs[walker.program].openRecordset("T");
            walker.numbers = m_rows.keys();
            walker.added = {};
            arrive(walker, walker.numbers.value(0));
            return 0;
        }
        if (!set.editing())
            return edit(walker);
        return action == 12 && m_rows.size() > 1 ? saveTwice(walker) : save(walker);
    }

    // Another tool, or a program through a statement.
    int outside(int who)
    {
        const QList<qint64> numbers = m_rows.keys();
        const qint64 one = numbers.value(random(numbers.size()));
        const int action = numbers.isEmpty() ? 0 : random(8);
        QString sql;
        if (action == 0 && numbers.size() < MaxRecords) {
            const qint64 last = numbers.isEmpty() ? 0 : numbers.back();
            // A tool may use any number, including one that a deleted row had.
            const bool former = who == Tool && m_former > 0 && !m_rows.contains(m_former);
            const qint64 number = former ? m_former : last + 1;
            sql = who == Tool ? QString("Insert Into T(rowid, SID) Values(%1, %2)").arg(number).arg(m_value)
                              : QString("Insert Into T (SID) Values (%1)").arg(m_value);
            write(who, number, State{m_value, "Null", "Null", "Null", "Null"});
        } else if (action == 1 && random(4) == 0) {
            sql = "Delete From T";
            for (const qint64 number : numbers)
                write(who, number, {});
        } else if (action == 1) {
            sql = "Delete From T Where SID = " + m_rows[one][0];
            write(who, one, {});
        } else if (action > 1) {
            sql = QString("Update T Set F1 = %1 Where SID = %2").arg(m_value, m_rows[one][0]);
            State state = m_rows[one];
            state[3] = m_value;
            write(who, one, state);
        }
        if (who == Tool)
            m_failure = test::sqlite(m_path, sql.toUtf8()).isEmpty() ? 0 : 1;
        else if (!sql.isEmpty())
            attempt([&] { m_programs[who].execute(sql); });
        return 0;
    }

    int go(Walker& walker, int place)
    {
        attempt([&] { walker.set.moveTo(place); });
        arrive(walker, walker.numbers[place]);
        return 0;
    }

    static void arrive(Walker& walker, qint64 number)
    {
        walker.current = walker.added.number == number ? std::exchange(walker.added, {}) : Knowledge{number};
        walker.seen = {};
        walker.onRemoved = false;
    }

    int read(Walker& walker, int field)
    {
        QString value;
        if (!walker.seen)
            QTest::qSleep(2); // a look at the file is valid for a millisecond
        attempt([&] { value = shown(walker.set.value(Fields[field])); });
        if (walker.set.editing())
            return value == walker.buffer[field] ? 0 : -1;
        if (walker.onRemoved)
            return platform::RecordDeleted;
        if (!walker.seen)
            know(walker, m_rows.value(walker.current.number));
        if (walker.seen->isEmpty())
            return platform::RecordDeleted;
        return value == walker.seen->at(field) ? 0 : -1;
    }

    int edit(Walker& walker)
    {
        attempt([&] { walker.set.edit(); });
        const int expected = confirm(walker);
        walker.buffer = walker.seen.value_or(State());
        walker.given = {};
        return expected;
    }

    int save(Walker& walker)
    {
        const int field = 1 + random(Fields.size() - 1);
        walker.buffer[field] = m_value;
        walker.given += field;
        attempt([&] {
            walker.set.setValue(Fields[field], m_value);
            walker.set.update();
        });
        if (const int expected = confirm(walker); expected != 0)
            return expected;
        State state = *walker.seen;
        for (const int one : walker.given)
            state[one] = walker.buffer[one];
        write(walker.program, walker.current.number, state);
        walker.seen = state;
        return 0;
    }

    // With the key of another record: nothing is written.
    int saveTwice(Walker& walker)
    {
        const State& other = walker.current.number == m_rows.firstKey() ? m_rows.last() : m_rows.first();
        attempt([&] {
            walker.set.setValue(Fields[0], other[0]);
            walker.set.update();
        });
        walker.set.cancelUpdate();
        const int expected = confirm(walker);
        return expected != 0 ? expected : platform::DuplicateKey;
    }

    int remove(Walker& walker)
    {
        attempt([&] { walker.set.remove(); });
        if (const int expected = confirm(walker); expected != 0)
            return expected;
        write(walker.program, walker.current.number, {});
        walker.numbers.removeOne(walker.current.number);
        walker.onRemoved = true;
        return 0;
    }

    // What a set must report of its record before it changes it.
    int confirm(Walker& walker)
    {
        Knowledge& known = walker.current;
        const State now = m_rows.value(known.number);
        const bool wasGone = known.state && known.state->isEmpty();
        if (walker.onRemoved)
            return platform::RecordDeleted;
        if (now.isEmpty())
            know(walker, now);
        if (now.isEmpty() || known.removed || wasGone)
            return platform::RecordDeleted;
        const bool changed = known.another || (known.state && *known.state != now);
        know(walker, now);
        return changed ? platform::ChangedByAnother : 0;
    }

    static void know(Walker& walker, const State& state)
    {
        walker.seen = walker.current.state = state;
        walker.current.another = false;
    }

    // Somebody changes a record to this; the sets of the same program know it.
    void write(int who, qint64 number, const State& state)
    {
        const State before = m_rows.value(number);
        for (Walker& walker : m_walkers)
            for (Knowledge* known : {&walker.current, &walker.added})
                if (who == walker.program && known->number == number && !known->removed) {
                    const bool followed = known->state && !known->state->isEmpty();
                    known->another = known->another || (followed && *known->state != before);
                    known->removed = state.isEmpty();
                    if (followed && !state.isEmpty())
                        known->state = state;
                }
        if (state.isEmpty()) {
            m_rows.remove(number);
            m_former = number;
        } else
            m_rows[number] = state;
    }

    static constexpr int Tool = 2;
    QString m_path;
    std::array<store::Database, 2>& m_programs;
    std::vector<Walker> m_walkers;
    QMap<qint64, State> m_rows;
    QRandomGenerator m_random{20261126};
    QString m_value;
    qint64 m_former = 0;
    int m_steps = 0;
    int m_failure = 0;
};

} // namespace orlo::test
