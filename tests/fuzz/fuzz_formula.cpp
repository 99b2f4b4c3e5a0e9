// Reads any bytes as a formula; a formula that can be read is checked, cut for the query and evaluated.
#include "reporting/Formula.h"
#include "reporting/Selection.h"

#include <cstddef>
#include <cstdint>

namespace
{

using namespace orlo::reporting;

class AnyRow final : public FormulaScope
{
public:
    [[nodiscard]] Value field(int index) const override
    {
        const Value values[] = {{}, 7, 2.5, u"Müller's \"den\"", QDate(2004, 6, 7), true};
        return values[index % 6];
    }
    [[nodiscard]] Value word(Word word) const override { return int(word); }
    [[nodiscard]] Value summary(const FormulaNode& node) const override
    {
        return node.children.empty() ? Value(3) : evaluateNode(node.children.front(), *this);
    }
    [[nodiscard]] Value inRow(int, const FormulaNode& node) const override { return evaluateNode(node, *this); }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    try {
        Formula formula(QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size)));
        formula.bind([](const QString& name) { return int(name.size()); });
        (void)handDown(formula, [](const QString& name) {
            return std::optional(QueryColumn{name, FormulaNode::Type(name.size() % 5)});
        });
        (void)formula.evaluate(AnyRow());
        formula.requireCondition();
        (void)formula.holds(AnyRow());
    } catch (const orlo::platform::RuntimeError&) {
        // A text that can't be read is refused, which is the reader's job.
    }
    return 0;
}
