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
    static inline const QStringList names{"S.SID", "A.Day", "S.Active", "Name", "Nothing", "Odd]", "[Odd", "-"};

    [[nodiscard]] Value field(int index) const override
    {
        const Value values[] = {12, QDate(2004, 6, 7), u"y", u"O'Bri'en", {}, 1, 1, 1};
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
    const Type types[] = {Type::Number, Type::Date, Type::Text, Type::Text};
    return at < 0 ? std::nullopt : std::optional(QueryColumn{field.section(u'.', -1), types[at < 4 ? at : 0]});
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
            outcome = (formula.holds(Row()) ? "yes " : "no ") + handDown(formula, columnOf);
        });
        if (error)
            outcome = QStringLiteral("%1 at %2: ").arg(error->number()).arg(error->place().column) + error->message();
        QTEST(outcome.trimmed(), "outcome");
    }

    void survivesDepth()
    {
        QVERIFY(!bound("1 = 1" + QString(" and {Name} = 'x' & 'y' + 'z'").repeated(3000)).holds(Row()));
        // Lists in lists are as long as they are written.
        const QString text = QString("true in [(").repeated(15) + "1 = 1" + QString(")]").repeated(15);
        int nodes = 0;
        QVERIFY(!bound(text).any([&](const FormulaNode&) { return ++nodes > 100; }));
        QVERIFY(bound(text).holds(Row()));
        const auto tooLong = test::failureOf<ReportError>([] { Formula(QString(100'000, ' ') + '1', {3, 4}); });
        QVERIFY(tooLong && tooLong->place() == (Place{3, 4}));
        Formula(QString(99'999, ' ') + '1');
    }

    // The keys of a sort are in the order of the store's comparison; those that it treats as equal form one group.
    void sortsAsTheStore()
    {
        const QStringList texts =
            QString("z Zorn Ångström a Ä á Ae æ Ø o Straße strasse straßf STRASSE  й и ά α \U0001F600 Ａ ａ a\u0301b")
                .split(' ');
        for (const QString& a : texts)
            for (const QString& b : texts)
                QVERIFY2((platform::sortKey(a).compare(platform::sortKey(b)) <=> 0) ==
                             (platform::compareText(a, b) <=> 0),
                         qPrintable(a + ' ' + b));
    }
};

ORLO_TEST(tst_formula)
#include "tst_formula.moc"
