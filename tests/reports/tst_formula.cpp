#include "reports/engine/Formula.h"
#include "reports/engine/Selection.h"

#include <QTest>

using namespace orlo::reports;
using orlo::store::Value;

Q_DECLARE_METATYPE(orlo::store::Value)

namespace
{

/// One row with the fields that the cases name.
class Row final : public FormulaScope
{
public:
    static inline const QStringList names{
        "Scouts.Scout_SID", "Scouts.Assigned_Den_SID", "A.Date_Assigned", "Scouts.Active", "Name", "Nothing", "Flag"};

    [[nodiscard]] Value field(int index) const override
    {
        const Value values[] = {12, 3, QDate(2004, 6, 7), u"y", u"O'Brien", {}, true};
        return values[index];
    }
    [[nodiscard]] Value word(Word word) const override { return word == Word::PageNumber ? Value(4) : Value(u"?"); }
    [[nodiscard]] Value summary(const FormulaNode& node) const override { return int(node.children.size()) * 100; }
};

int indexOf(const QString& name)
{
    return int(Row::names.indexOf(name, 0));
}

Formula bound(const QString& text)
{
    Formula formula(text);
    formula.bind([](const QString& name) {
        for (int i = 0; i < Row::names.size(); ++i)
            if (Row::names[i].compare(name, Qt::CaseInsensitive) == 0)
                return i;
        return -1;
    });
    return formula;
}

std::optional<QString> columnOf(const QString& field)
{
    return indexOf(field) < 0 ? std::nullopt : std::optional(field.section(u'.', -1));
}

} // namespace

class TestFormula : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void computes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("result");
        const std::pair<const char*, const char*> cases[] = {
            {"1 + 2 * 3", "7"},
            {"(1 + 2) * 3", "9"},
            {"10 - (4 - 3) - 2", "7"},
            {"10 - 4 - 3", "3"},
            {"12 / 4 / 3", "1"},
            {"12 / (4 / 2)", "6"},
            {"-2 + 5", "3"},
            {".5 + 06", "6.5"},
            {"\"a\" + 'b' & 3 & {Nothing}", "ab3"},
            {"\"say \"\"hi\"\"\" & 'it''s'", "say \"hi\"it's"},
            {"1 + {Nothing}", ""},
            {"if 1 > 2 then \"x\" else if 2 = 2 then \"y\"", "y"},
            {"if {Nothing} = 1 then 5", ""},
            {"IIF(isnull({nothing}), \"none\", {Nothing})", "none"},
            {"Date(2004, 6, 7) + 30", "7/7/2004"},
            {"#6/7/2004# - Date(2004,06,01)", "6"},
            {"ToText({A.Date_Assigned}, \"MMMM d, yyyy\")", "June 7, 2004"},
            {"ToText(1234567.891, 2)", "1,234,567.89"},
            {"Join(\", \", \" a \", {Nothing}, \"\", 7)", "a, 7"},
            {"Trim(\" x \") & UpperCase(\"é\") & Left(\"abc\", 2) & Right(\"abc\", 1) & Mid(\"abcd\", 2, 2)",
             "xÉabcbc"},
            {"Length(\"abc\") & \" \" & Year({A.Date_Assigned}) & Round(2.567, 1)", "3 20042.6"},
            {"PageNumber & \"|\" & Count() & \"|\" & Sum({Scouts.Scout_SID}, \"Den\")", "4|0|100"},
            {"{Name} like \"o'b*\"", "True"},
            {"{Scouts.Scout_SID} in [1, 12]", "True"},
        };
        for (const auto& [text, result] : cases)
            QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(result);
    }
    void computes()
    {
        QFETCH(QString, text);
        QTEST(displayText(bound(text).evaluate(Row())), "result");
    }

    void selects_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("holds");
        QTest::addColumn<QString>("condition");
        const QString sid = QStringLiteral("{Scouts.Scout_SID} = 12");
        QTest::newRow("person, den, date") << sid + " and {Scouts.Assigned_Den_SID} = 3 and {A.Date_Assigned} = Date "
                                                    "( 2004, 06, 07) and {Scouts.Active} = \"Y\""
                                           << true
                                           << "([Scout_SID] = 12) And ([Assigned_Den_SID] = 3) And ([Date_Assigned] = "
                                              "#06/07/2004#) And ([Active] = 'Y')";
        QTest::newRow("range") << "{A.Date_Assigned} in Date ( 2004, 06, 07) to Date ( 2004, 07, 01)" << true
                               << "([Date_Assigned] >= #06/07/2004# And [Date_Assigned] <= #07/01/2004#)";
        QTest::newRow("range, ends swapped")
            << "{A.Date_Assigned} in Date (2004, 07, 01) to Date (2004, 06, 01)" << false
            << "([Date_Assigned] >= #07/01/2004# And [Date_Assigned] <= #06/01/2004#)";
        QTest::newRow("at least") << "{A.Date_Assigned} >= Date ( 2004, 06, 08)" << false
                                  << "([Date_Assigned] >= #06/08/2004#)";
        QTest::newRow("at most") << "{A.Date_Assigned} <= Date ( 2004, 06, 07)" << true
                                 << "([Date_Assigned] <= #06/07/2004#)";
        QTest::newRow("or, not") << "NOT (" + sid + ") OR ({Name} <> 'x' And 1 < 2)" << true
                                 << "((Not ([Scout_SID] = 12)) Or (([Name] <> 'x') And (1 < 2)))";
        QTest::newRow("apostrophe") << "{Name} = \"o'brien\"" << true << "([Name] = 'o''brien')";
        QTest::newRow("half of it stays") << sid + " and Length({Name}) = 7" << true << "([Scout_SID] = 12)";
        QTest::newRow("or can't be halved") << sid + " or Length({Name}) = 9" << true << "";
        QTest::newRow("Null is not yes") << "{Nothing} = 1 or not ({Nothing} = 1)" << false
                                         << "(([Nothing] = 1) Or (Not ([Nothing] = 1)))";
    }
    void selects()
    {
        QFETCH(QString, text);
        Formula formula = bound(text);
        formula.requireCondition();
        QTEST(formula.holds(Row()), "holds");
        QTEST(handDown(formula, columnOf).condition, "condition");
    }

    /// What can't be read fails with its place, and never selects more instead.
    void refuses_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number");
        QTest::addColumn<int>("column");
        const auto row = [](const char* text, int number, int column) {
            QTest::newRow(text) << QString::fromUtf8(text) << number << column;
        };
        row("{Scouts.Scout_SID} = ", 3075, 22);
        row("{Scouts.Scout_SID = 12", 3075, 1);
        row("1 = 1 and", 3075, 10);
        row("1 = 1 2", 3075, 7);
        row("1 = (2", 3075, 7);
        row("1 < 2 < 3", 3075, 7);
        row("{Name} in 1", 3075, 12);
        row("\"open", 3075, 1);
        row("1 ; 2", 3075, 3);
        row("Shout(1) = 1", 3061, 1);
        row("{Unknown} = 1", 3061, 1);
        row("Trim() = \"\"", 3075, 1);
        row("{A.Date_Assigned} = Date (2004, 13, 1)", 13, 21);
        row("{A.Date_Assigned} = \"soon\"", 13, 19);
        row("Date(2004, 6, 7) = \"soon\"", 13, 18);
        row("5", 13, 1);
        row("\"yes\" and 1 = 1", 13, 1);
        row("1 = 1 / 0", 11, 7);
        row("{Name} = 7", 13, 8);
        row("99999999999999999999999999", 13, 1);
    }
    void refuses()
    {
        QFETCH(QString, text);
        QFETCH(int, number);
        QFETCH(int, column);
        try {
            Formula formula(text);
            formula.requireCondition();
            (void)bound(text).holds(Row());
            QFAIL("the formula was read");
        } catch (const ReportError& error) {
            QCOMPARE(error.number(), number);
            QCOMPARE(error.place().column, column);
        }
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

QTEST_GUILESS_MAIN(TestFormula)
#include "tst_formula.moc"
