#include "platform/Text.h"
#include "reporting/Formula.h"
#include "reporting/Selection.h"
#include "support/Failure.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/Table.h"

using namespace orlo;
using namespace orlo::reporting;
using store::Value;

namespace
{

// One row with the fields that the cases use.
class Row final : public FormulaScope
{
public:
    static inline const QStringList names{"S.SID", "A.Day", "S.Active", "Name", "Nothing", "Odd]", "[Odd"};

    [[nodiscard]] Value field(int index) const override
    {
        const Value values[] = {12, QDate(2004, 6, 7), u"y", u"O'Bri'en", {}, 1, 1};
        return values[index];
    }
    [[nodiscard]] Value word(Word word) const override
    {
        return word == Word::PageNumber ? Value(4) : Value(QString("w%1").arg(int(word)));
    }
    [[nodiscard]] Value summary(const FormulaNode& node) const override
    {
        const auto& [summary, group, running] = *node.as<FormulaNode::Summarised>();
        return QString::number(int(summary)) + (running ? u'r' : u'+') + QString::number(node.children.size()) + group;
    }
    [[nodiscard]] Value inRow(int offset, const FormulaNode& node) const override
    {
        return displayText(evaluateNode(node, *this)) + QString::number(offset);
    }
};

Formula bound(const QString& text)
{
    Formula formula(text);
    formula.bind([](const QString& name) { return int(Row::names.indexOf(name)); });
    return formula;
}

std::optional<QueryColumn> columnOf(const QString& field)
{
    using Type = FormulaNode::Type;
    const auto at = Row::names.indexOf(field);
    const Type types[] = {Type::Number, Type::Date, Type::Text, Type::Text, Type::Number, Type::Number, Type::Number};
    return at < 0 ? std::nullopt : std::optional(QueryColumn{field.section(u'.', -1), types[at]});
}

} // namespace

class tst_formula : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void computes_data() { test::tableOf("reporting/formulas.txt"); }
    void computes() { QTEST(displayText(bound(test::cell("text")).evaluate(Row())), "result"); }

    // What the formula says of the row and which part of it goes into the query. A part that can't be read fails with
    // its number and column, and never selects more instead.
    void selects_data() { test::tableOf("reporting/formula_selects.txt"); }
    void selects()
    {
        QFETCH(QString, text);
        QString outcome;
        const auto error = test::failureOf<ReportError>([&] {
            Formula(text).requireCondition();
            const Formula formula = bound(text);
            outcome = formula.holds(Row()) ? "yes " : "no ";
            outcome += handDown(formula, columnOf);
        });
        if (error)
            outcome = QStringLiteral("%1 at %2: ").arg(error->number()).arg(error->place().column) + error->message();
        QTEST(outcome.trimmed(), "outcome");
    }

    void survivesDepth()
    {
        QString text = QStringLiteral("1 = 1");
        for (int i = 0; i < 3000; ++i)
            text += QLatin1String(" and {Name} = 'x' & 'y' + 'z'");
        QVERIFY(!bound(text).holds(Row()));
        text = QStringLiteral("1 = 1"); // lists in lists are as long as they are written
        for (int i = 0; i < 15; ++i)
            text = "true in [(" + text + ")]";
        int nodes = 0;
        QVERIFY(!bound(text).any([&](const FormulaNode&) { return ++nodes > 100; }));
        QVERIFY(bound(text).holds(Row()));
    }

    // The keys of a sort are in the order of the store's comparison; those that it treats as equal form one group.
    void sortsAsTheStore()
    {
        const QStringList texts =
            QString("z Zorn Ångström a Ä á Ae æ Ø o Straße strasse straßf STRASSE  й и ά α \U0001F600 Ａ ａ a\u0301b")
                .split(' ');
        for (const QString& a : texts)
            for (const QString& b : texts) {
                const int keys = platform::sortKey(a).compare(platform::sortKey(b));
                const int order = platform::compareText(a, b);
                QVERIFY2((keys < 0) == (order < 0) && (keys > 0) == (order > 0), qPrintable(a + ' ' + b));
            }
    }
};

ORLO_TEST(tst_formula)
#include "tst_formula.moc"
