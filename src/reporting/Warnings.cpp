#include "reporting/Warnings.h"

#include "reporting/Typesetter.h"

#include <QFontDatabase>

#include <algorithm>

namespace orlo::reporting
{

namespace
{

constexpr double PageTolerance = 0.5; // points

class Inspection
{
public:
    Inspection(QSizeF body, const QString& file) : m_textWidth(body.width()), m_bodyHeight(body.height()), m_file(file)
    {
    }

    QStringList run(const Definition& definition)
    {
        inspect(definition, 0);
        m_warnings.removeDuplicates();
        return std::move(m_warnings);
    }

private:
    void warn(const QString& message, Place place) { m_warnings << withPlace(message, place, m_file); }

    void inspect(const Definition& definition, double left)
    {
        for (const Style& style : definition.styles)
            if (!isGenericFamily(style.family) && !QFontDatabase::hasFamily(style.family))
                warn(QStringLiteral("The font \"%1\" isn't installed; another takes its place.").arg(style.family),
                     style.place);
        for (const Band* band : {&definition.pageHeader, &definition.pageFooter, &definition.reportHeader,
                                 &definition.reportFooter, &definition.headings, &definition.nothing})
            rows(definition, band->rows, left, m_textWidth);
        const Band& detail = definition.detail;
        if (detail.height > m_bodyHeight + PageTolerance)
            warn(QStringLiteral("These labels are higher than a page's room for them."), detail.place);
        const double column = (m_textWidth - left - detail.gap * (detail.columns - 1)) / detail.columns;
        rows(definition, detail.rows, left, left + column);
        for (const Group& group : definition.groups) {
            rows(definition, group.header.rows, left, m_textWidth);
            rows(definition, group.footer.rows, left, m_textWidth);
        }
    }

    void rows(const Definition& definition, const std::vector<Row>& all, double left, double right)
    {
        for (const Row& row : all) {
            std::vector<const Element*> texts;
            collect(definition, row, left, right, texts);
            const auto leftOf = [&](const Element* text) { return text->left.in(right - left); };
            std::ranges::stable_sort(texts, {}, leftOf);
            for (std::size_t i = 1; i < texts.size(); ++i)
                if (const Element& before = *texts[i - 1];
                    before.width.isNone() ||
                    leftOf(&before) + before.width.in(right - left) > leftOf(texts[i]) + PageTolerance)
                    warn(QStringLiteral("This text stands over the one that begins before it."), texts[i]->place);
        }
    }

    void collect(const Definition& definition, const Row& row, double left, double right,
                 std::vector<const Element*>& texts)
    {
        for (const Element& element : row.elements) {
            const double from = left + element.left.in(right - left);
            if (from + element.width.in(right - left) + element.thickness > right + PageTolerance)
                warn(QStringLiteral("This reaches beyond the right margin."), element.place);
            if (element.picture == Element::UnreadPicture)
                warn(QStringLiteral("The picture can't be read."), element.place);
            if (element.picture >= 0 && element.height > m_bodyHeight)
                warn(QStringLiteral("This picture is higher than a page's room for it."), element.place);
            if (element.kind == Element::Kind::Text)
                texts.push_back(&element);
            rows(definition, element.rows, from, right);
            if (element.kind == Element::Kind::Subreport)
                if (const Definition* inner = definition.subreport(element.subreport))
                    inspect(*inner, from);
        }
    }

    double m_textWidth;
    double m_bodyHeight;
    const QString& m_file;
    QStringList m_warnings;
};

} // namespace

QStringList layoutWarnings(const Definition& definition, QSizeF body, const QString& file)
{
    return Inspection(body, file).run(definition);
}

} // namespace orlo::reporting
