// Reads any bytes as a statement of the dialect and runs it on a small file. Whatever the text does, it may only read
// and change rows: the file's tables, texts of queries and journal stay as they are. The same bytes also choose an
// expression, written with as few brackets as the dialect's precedence allows, whose value is also computed here.
#include "platform/Conversion.h"
#include "platform/RuntimeError.h"
#include "platform/Text.h"
#include "store/engine/Database.h"
#include "store/engine/Recordset.h"
#include "store/engine/TableDef.h"
#include "store/engine/Value.h"
#include "store/schema/Schema.h"

#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <span>

namespace
{

using namespace orlo;
using store::Value;

// An expression with its value. The levels of precedence are in this order, the lowest first.
class Expressions
{
public:
    enum class Kind { Text, Number, Date, Truth };
    enum Level { Or, And, Not, Comparison, Join, Sum, Product, Leaf };
    struct Node {
        QString text;
        Level level;
        Kind kind;
        Value value; // a date as a date, a truth value as a yes/no
    };

    explicit Expressions(std::span<const std::uint8_t> bytes) : m_bytes(bytes) {}

    Node next(int depth)
    {
        const unsigned shape = depth == 0 ? 0 : byte(8);
        if (shape == 0)
            return leaf();
        const Node left = next(depth - 1);
        const auto truth = truthOf(left);
        if (shape == 1)
            return {"Not " + within(left, Not), Not, Kind::Truth, truth ? Value(!*truth) : Value()};
        Node right = next(depth - 1);
        if (shape == 2)
            return {within(left, Join) + " & " + within(right, Sum), Join, Kind::Text,
                    textOf(left).textOrEmpty() + textOf(right).textOrEmpty()};
        if (shape == 3) {
            const Node then = next(depth - 1);
            if (right.kind != then.kind)
                right = {"Null", Leaf, then.kind, {}};
            return {QString("IIf(%1, %2, %3)").arg(left.text, then.text, right.text), Leaf, then.kind,
                    truth.value_or(false) ? then.value : right.value};
        }
        return shape == 4   ? compared(left, byte(4), right)
               : shape == 5 ? connected(left, byte(2) == 0, right)
                            : calculated(left, byte(4), right);
    }

private:
    using Number = std::optional<double>;

    unsigned byte(unsigned end)
    {
        if (m_bytes.empty())
            return 0;
        const unsigned value = m_bytes.front();
        m_bytes = m_bytes.subspan(1);
        return value % end;
    }

    static QString within(const Node& node, Level least)
    {
        return node.level >= least ? node.text : '(' + node.text + ')';
    }

    // The row's fields, and literals.
    Node leaf()
    {
        static const Node Leaves[] = {{"Scout_SID", Leaf, Kind::Number, 1},
                                      {"Grade_In_School", Leaf, Kind::Number, {}},
                                      {"Scouts.Last_Name", Leaf, Kind::Text, u"Øst"},
                                      {"City", Leaf, Kind::Text, {}},
                                      {"[Birth_Date]", Leaf, Kind::Date, QDate(2014, 6, 7)},
                                      {"Pack_Start_Date", Leaf, Kind::Date, {}},
                                      {"Boys_Life", Leaf, Kind::Truth, true},
                                      {"7", Leaf, Kind::Number, 7},
                                      {"2.5", Leaf, Kind::Number, 2.5},
                                      {"-3", Leaf, Kind::Number, -3},
                                      {"'øST'", Leaf, Kind::Text, u"øST"},
                                      {"\"o'b\"", Leaf, Kind::Text, u"o'b"},
                                      {"'7'", Leaf, Kind::Text, u"7"},
                                      {"'6/7/2014'", Leaf, Kind::Text, u"6/7/2014"},
                                      {"#1/1/1001#", Leaf, Kind::Date, QDate(1001, 1, 1)},
                                      {"False", Leaf, Kind::Truth, false}};
        return Leaves[byte(std::size(Leaves))];
    }

    static Number numberOf(const Node& node)
    {
        if (node.kind == Kind::Text && !node.value.isNull())
            return platform::readNumber(node.value.toText());
        return node.value.isNull() ? Number() : node.value.toDouble();
    }

    static Value textOf(const Node& node)
    {
        if (node.value.isNull() || node.kind != Kind::Truth)
            return node.value.isNull() ? Value() : Value(node.value.toText());
        return node.value.toBool() ? Value(u"-1") : Value(u"0");
    }

    static std::optional<bool> truthOf(const Node& node)
    {
        const Number number = numberOf(node);
        return number ? std::optional(*number != 0) : std::nullopt;
    }

    static Value dateOf(const Node& node)
    {
        const Number number = numberOf(node);
        try {
            if (node.kind == Kind::Text && !node.value.isNull())
                return node.value.toDate();
            return number ? Value(Value(*number).toDate()) : Value();
        } catch (const platform::RuntimeError&) {
            return {};
        }
    }

    static Node calculated(const Node& left, unsigned sign, const Node& right)
    {
        static constexpr const char* Signs[] = {" + ", " - ", " * ", " / "};
        if (sign == 0 && (left.kind == Kind::Text) != (right.kind == Kind::Text))
            sign = 1; // refused otherwise
        const Level level = sign < 2 ? Sum : Product;
        Node result{within(left, level) + Signs[sign] + within(right, Level(level + 1)), level, Kind::Number, {}};
        const bool dates = left.kind == Kind::Date && right.kind == Kind::Date;
        if (sign == 0 && left.kind == Kind::Text && right.kind == Kind::Text) {
            result.kind = Kind::Text;
            if (!left.value.isNull() && !right.value.isNull())
                result.value = left.value.toText() + right.value.toText();
            return result;
        }
        const Number a = numberOf(left);
        const Number b = numberOf(right);
        if (a && b && (sign < 3 || *b != 0))
            result.value = (sign == 0 ? *a + *b : sign == 1 ? *a - *b : sign == 2 ? *a * *b : *a / *b) + 0.0;
        if (sign < 2 && (left.kind == Kind::Date || right.kind == Kind::Date) && !(sign == 1 && dates)) {
            result.value = dateOf(result);
            result.kind = Kind::Date;
        }
        return result;
    }

    static Node compared(const Node& left, unsigned sign, const Node& right)
    {
        static constexpr const char* Signs[] = {" = ", " <> ", " < ", " >= "};
        Node result{within(left, Comparison) + Signs[sign] + within(right, Join), Comparison, Kind::Truth, {}};
        if (right.text == "Null" || left.text == "Null")
            return result;
        const auto either = [&](Kind kind) { return left.kind == kind || right.kind == kind; };
        std::optional<int> order;
        if (left.kind != right.kind && either(Kind::Text) && either(Kind::Date)) {
            const Value a = dateOf(left);
            const Value b = dateOf(right);
            if (!a.isNull() && !b.isNull())
                order = a.toDate() < b.toDate() ? -1 : a.toDate() == b.toDate() ? 0 : 1;
        } else if (left.kind == right.kind && either(Kind::Text)) {
            if (const Value a = textOf(left), b = textOf(right); !a.isNull() && !b.isNull())
                order = platform::compareText(a.toText(), b.toText());
        } else if (const Number a = numberOf(left), b = numberOf(right); a && b)
            order = *a < *b ? -1 : *a == *b ? 0 : 1;
        if (order)
            result.value = sign == 0 ? *order == 0 : sign == 1 ? *order != 0 : sign == 2 ? *order < 0 : *order >= 0;
        return result;
    }

    static Node connected(const Node& left, bool both, const Node& right)
    {
        const Level level = both ? And : Or;
        const auto a = truthOf(left);
        const auto b = truthOf(right);
        const bool decided = (a && *a != both) || (b && *b != both);
        return {within(left, level) + (both ? " And " : " Or ") + within(right, Level(level + 1)), level, Kind::Truth,
                decided  ? Value(!both)
                : a && b ? Value(both)
                         : Value()};
    }

    std::span<const std::uint8_t> m_bytes;
};

class Pack
{
public:
    Pack() : m_database(store::DBEngine::createDatabase(m_folder.filePath(QStringLiteral("fuzz.mdb"))))
    {
        store::createSchema(m_database);
        m_database.execute(QStringLiteral("Insert Into Scouts (Scout_SID, Last_Name, Birth_Date, Boys_Life) "
                                          "Values (1, 'Øst', #6/7/2014#, True)"));
    }

    void run(const QString& statement)
    {
        attempt([&] {
            store::Recordset rows = m_database.openRecordset(statement);
            if (rows.recordCount() > 0)
                (void)rows.value(0);
        });
        // Rolled back, so that inputs neither accumulate nor wait for the disk.
        attempt([&] {
            const store::Transaction dropped(m_database);
            m_database.execute(statement);
        });
        if (m_database.tableNames().size() != std::ssize(store::schema::tables()) ||
            m_database.queryNames().size() != std::ssize(store::schema::queries()))
            std::abort();
    }

    void reckon(const Expressions::Node& node)
    {
        Value value;
        try {
            value = m_database.openRecordset("Select " + node.text + " As X From Scouts").value(0);
        } catch (const platform::RuntimeError& error) {
            if (error.description().contains(" is n")) // not a number, neither yes nor no
                return;
            throw;
        }
        const auto shown = [](const Value& one) { return one.isNull() ? QString("Null") : one.toText(); };
        const bool same = value.isNumber() && node.value.isNumber() ? value.toDouble() == node.value.toDouble()
                                                                    : shown(value) == shown(node.value);
        if (same)
            return;
        std::fprintf(stderr, "%s gives %s, not %s\n", qPrintable(node.text), qPrintable(shown(value)),
                     qPrintable(shown(node.value)));
        std::abort();
    }

private:
    template <class Action>
    static void attempt(const Action& action)
    {
        try {
            action();
        } catch (const platform::RuntimeError&) {
            // Most inputs are refused.
        }
    }

    QTemporaryDir m_folder;
    store::Database m_database;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Pack pack;
    pack.run(QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size)));
    pack.reckon(Expressions({data, size}).next(4));
    return 0;
}
