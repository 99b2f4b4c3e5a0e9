#include "reporting/Formula.h"
#include "reporting/Selection.h"
#include "support/Failure.h"
#include "support/Main.h"
#include "support/Table.h"

using namespace orlo;
using namespace orlo::reports;
using store::Value;

namespace
{

/// One row with the fields that the cases name.
class Row final : public FormulaScope
{
public:
    static inline const QStringList names{"S.SID", "A.Day", "S.Active", "Name", "Nothing"};

    [[nodiscard]] Value field(int index) const override
    {
        const Value values[] = {12, QDate(2004, 6, 7), u"y", u"O'Bri'en", {}};
        return values[index];
    }
    [[nodiscard]] Value word(Word word) const override { return word == Word::PageNumber ? Value(4) : Value(u"?"); }
    [[nodiscard]] Value summary(const FormulaNode& node) const override { return int(node.children.size()) * 100; }
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
    const Type types[] = {Type::Number, Type::Date, Type::Text, Type::Text, Type::Number};
    return at < 0 ? std::nullopt : std::optional(QueryColumn{field.section(u'.', -1), types[at]});
}

} // namespace

class tst_formula : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void computes_data()
    {
        test::table({"text", "result"}, R"(
            1 + 2 * 3                                            | 7
            10 - (4 - 3) - 2                                     | 7
            12 / (4 / 2)                                         | 6
            .5 + 06                                              | 6.5
            "a" + 'b' & 3 & {Nothing} & 1 + 2 & 7 - 3            | ab334
            "say ""hi""" & 'it''s'                               | say "hi"it's
            if 1 > 2 then "x" else if 2 = 2 then "y"             | y
            if {Nothing} = 1 then 5                              |
            IIF(isnull({Nothing}), "none", {Nothing})            | none
            #6/7/2004# - Date(2004,06,01)                        | 6
            ToText({A.Day}, "MMMM d, yyyy")                      | June 7, 2004
            ToText(1234567.891, 2)                               | 1,234,567.89
            Join(", ", " a ", {Nothing}, "", 7)                  | a, 7
            Trim(" x ") & UpperCase("é") & Left("abc", 2)        | xÉab
            Right("abc", 1) & Mid("abcd", 2, 2)                  | cbc
            Length("abc") & Year(#6/7/2004#) & Round(2.567, 1)   | 320042.6
            PageNumber & Count() & Sum({Name}, "Den")            | 40100
            {Name} like "o'b*'en"                                | True
        )");
    }
    void computes()
    {
        QFETCH(QString, text);
        QTEST(displayText(bound(text).evaluate(Row())), "result");
    }

    /// What the formula says of the row and what of it goes into the query. What can't be read fails with its number
    /// and column, and never selects more instead.
    void selects_data()
    {
        test::table({"text", "outcome"}, R"(
            {S.SID} = 12 and {A.Day} = Date ( 2004, 06, 07)      | yes ([SID] = 12) And ([Day] = #06/07/2004#)
            {A.Day} in Date (2004, 06, 07) to Date (2004, 07,01) | yes ([Day] >= #06/07/2004# And [Day] <= #07/01/2004#)
            {A.Day} in Date (2004, 07, 01) to Date (2004, 06, 01) | no ([Day] >= #07/01/2004# And [Day] <= #06/01/2004#)
            NOT ({S.SID} = 12) OR ({Name} <> 'x' And 1 < 2) | yes ((Not ([SID] = 12)) Or (([Name] <> 'x') And (1 < 2)))
            {Name} = "o'bri'en"                                  | yes ([Name] = 'o''bri''en')
            {S.SID} = 12 and Length({Name}) = 8                  | yes ([SID] = 12)
            {S.SID} = 12 and (1 = 1 or {A.Day} = "soon")         | yes ([SID] = 12)
            {Nothing} = 1 or not ({Nothing} = 1)                 | no (([Nothing] = 1) Or (Not ([Nothing] = 1)))
            {S.SID} =                                            | 3075 at 10
            {S.SID = 12                                          | 3075 at 1
            1 = 1 and                                            | 3075 at 10
            1 = (2                                               | 3075 at 7
            1 ; 2                                                | 3075 at 3
            Shout(1) = 1                                         | 3061 at 1
            {A.Day} = Date (2004, 13, 1)                         | 13 at 11
            Date(2004, 6, 7) = "soon"                            | 13 at 18
            5                                                    | 13 at 1
            1 = 1 / 0                                            | 11 at 7
            {Name} = 7                                           | 13 at 8
            {S.SID} and 1 = 1                                    | 13 at 1
            99999999999999999999999999                           | 13 at 1
        )");
        QTest::newRow("open text") << "\"open"
                                   << "3075 at 1";
    }
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
            outcome = QStringLiteral("%1 at %2").arg(error->number()).arg(error->place().column);
        QTEST(outcome.trimmed(), "outcome");
    }

    void survivesDepth()
    {
        for (const char* opening : {"(", "not ", "-", "if 1=1 then ", "Trim("})
            QVERIFY_THROWS_EXCEPTION(ReportError, Formula(QString::fromLatin1(opening).repeated(2500)));
        QString text = QStringLiteral("1 = 1");
        for (int i = 0; i < 3000; ++i)
            text += QLatin1String(" and {Name} = 'x' & 'y' + 'z'");
        QVERIFY(!bound(text).holds(Row()));
        for (int i = 0; i < 300; ++i)
            text = QStringLiteral("1 + 1 - 1 + ") + text;
        QVERIFY_THROWS_EXCEPTION(ReportError, Formula{text});
    }
};

ORLO_TEST(tst_formula)
#include "tst_formula.moc"
