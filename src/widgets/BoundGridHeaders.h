#pragma once

#include <QHeaderView>

namespace orlo::widgets
{

/// The column headings of a bound grid, with room above them for the grid's caption.
class HeadingRow : public QHeaderView
{
public:
    explicit HeadingRow(QWidget* parent);

    void setRoomAbove(int pixels) { setViewportMargins(0, pixels, 0, 0); }
    [[nodiscard]] QSize sizeHint() const override;
};

/// The marks left of a bound grid's rows: a star for the empty line, a pencil for a row that isn't written yet.
class MarkColumn : public QHeaderView
{
public:
    /// What stands in the model for the pencil, which is drawn: not every desktop has a letter for it.
    static constexpr char16_t Pencil = u'\u270E';

    explicit MarkColumn(QWidget* parent);

protected:
    void initStyleOptionForIndex(QStyleOptionHeader* option, int row) const override;
    void paintSection(QPainter* painter, const QRect& rect, int row) const override;

private:
    [[nodiscard]] bool isPencil(int row) const;
};

} // namespace orlo::widgets
