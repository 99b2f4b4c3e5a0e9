#include "widgets/TextGrid.h"

#include "platform/RuntimeError.h"
#include "widgets/CellMargin.h"
#include "widgets/TextGridModel.h"
#include "widgets/Twips.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QStringListModel>
#include <QStyledItemDelegate>

#include <algorithm>

namespace orlo::widgets
{

namespace
{

constexpr int DefaultWidth = 960; // twips

// The fixed column looks like the header. Other cells show no focus frame, since the whole row is highlighted.
class CellDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        QStyleOptionViewItem cell = option;
        cell.state &= ~QStyle::State_HasFocus;
        if (index.column() == 0) {
            cell.state &= ~(QStyle::State_Selected | QStyle::State_MouseOver);
            cell.palette.setColor(QPalette::Text, option.palette.color(QPalette::ButtonText));
            painter->fillRect(option.rect, option.palette.button());
        }
        QStyledItemDelegate::paint(painter, cell, index);
    }
};

} // namespace

TextGrid::TextGrid(QWidget* parent) : QTableView(parent), m_model(new TextGridModel(this))
{
    setModel(m_model);
    setItemDelegate(new CellDelegate(this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setAlternatingRowColors(true);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->setMinimumSectionSize(1);
    connect(m_model, &QAbstractItemModel::headerDataChanged, this, &TextGrid::fitHeadings);
    connect(m_model, &QAbstractItemModel::dataChanged, this, &TextGrid::fitTexts);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this] { m_heightsDue = true; });
    connect(this, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& index) {
        setRow(index.row() + 1);
        Q_EMIT rowDoubleClicked();
    });
    m_widths.resize(std::size_t(m_model->gridCols()), DefaultWidth);
    m_samples.resize(m_widths.size());
    for (int col = 0; col < int(m_widths.size()); ++col)
        setColumnWidth(col, std::max(twipsToPixels(DefaultWidth, this), minimumWidthOf(col)));
    applyHeights();
}

TextGrid::~TextGrid() = default;

int TextGrid::rows() const
{
    return m_model->gridRows();
}

void TextGrid::setRows(int count)
{
    if (count < 1)
        throw platform::RuntimeError(platform::InvalidProcedureCall, objectName());
    m_model->setGridRows(count);
    m_heldRow = std::min(m_heldRow, count - 1);
}

int TextGrid::cols() const
{
    return m_model->gridCols();
}

void TextGrid::setCols(int count)
{
    if (count < 1)
        throw platform::RuntimeError(platform::InvalidProcedureCall, objectName());
    m_model->setGridCols(count);
    const int before = int(m_widths.size());
    m_widths.resize(std::size_t(count), DefaultWidth);
    m_samples.resize(std::size_t(count));
    for (int col = before; col < count; ++col)
        setColWidth(col, DefaultWidth);
    stretch();
}

QString TextGrid::text(int row, int col) const
{
    requireRow(row);
    requireCol(col);
    return m_model->text(row, col);
}

void TextGrid::setText(int row, int col, const QString& text)
{
    requireRow(row);
    requireCol(col);
    m_model->setText(row, col, text);
}

int TextGrid::row() const
{
    return m_holds > 0 ? m_heldRow : currentIndex().row() + 1;
}

void TextGrid::setRow(int row)
{
    requireRow(row);
    if (m_holds > 0)
        m_heldRow = row;
    else
        makeCurrent(row);
}

int TextGrid::addRow()
{
    setRows(rows() + 1);
    return rows() - 1;
}

void TextGrid::removeRow(int row)
{
    requireRow(row);
    if (row == 0 || rows() == 2)
        throw platform::RuntimeError(platform::InvalidProcedureCall, objectName());
    m_model->removeGridRow(row);
    if (m_heldRow > row || m_heldRow == rows())
        --m_heldRow;
}

void TextGrid::setColWidth(int col, int twips)
{
    requireCol(col);
    m_widths[std::size_t(col)] = std::max(0, twips);
    setColumnHidden(col, twips <= 0);
    setColumnWidth(col, std::max(twipsToPixels(twips, this), minimumWidthOf(col)));
    for (QWidget* painted : {viewport(), horizontalHeader()->viewport()})
        painted->update(); // Qt leaves the last column there when it is hidden
    stretch();
}

void TextGrid::fitCol(int col, const QString& text)
{
    requireCol(col);
    m_samples[std::size_t(col)] = text;
    widen(col, widthFor(text));
    stretch();
}

void TextGrid::setHeadingHeight(int twips)
{
    m_headingHeight = twips;
    applyHeights();
}

void TextGrid::setColAlignment(int col, Qt::Alignment alignment)
{
    requireCol(col);
    m_model->setAlignment(col, alignment);
}

void TextGrid::setStretchColumn(int col)
{
    requireCol(col);
    m_stretched = col;
    stretch();
}

void TextGrid::setRedraw(bool on)
{
    if (!on) {
        if (m_holds == 0) {
            m_heldRow = row();
            m_model->hold();
        }
        ++m_holds;
        return;
    }
    if (m_holds == 0 || --m_holds > 0)
        return;
    m_model->release();
    if (m_heightsDue)
        applyHeights();
    makeCurrent(m_heldRow);
}

void TextGrid::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier) {
        if (row() > 0)
            Q_EMIT rowDoubleClicked();
        return;
    }
    QTableView::keyPressEvent(event);
}

void TextGrid::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || !index.isValid())
        return;
    Q_EMIT doubleClicked(index);
}

void TextGrid::focusInEvent(QFocusEvent* event)
{
    // The base class makes the first row current on focus; passing through with Tab must choose none.
    const bool none = row() == 0;
    QTableView::focusInEvent(event);
    if (none)
        selectionModel()->clear();
}

void TextGrid::resizeEvent(QResizeEvent* event)
{
    QTableView::resizeEvent(event);
    stretch();
}

void TextGrid::changeEvent(QEvent* event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        fitAll();
}

// The current row is always highlighted, so that a button can't act on a row that nobody sees.
QItemSelectionModel::SelectionFlags TextGrid::selectionCommand(const QModelIndex& index, const QEvent* event) const
{
    const auto command = QTableView::selectionCommand(index, event);
    return command.testFlag(QItemSelectionModel::Deselect) ? QItemSelectionModel::NoUpdate : command;
}

void TextGrid::requireRow(int row) const
{
    if (row < 0 || row >= rows())
        throw platform::RuntimeError(platform::SubscriptOutOfRange, objectName());
}

void TextGrid::requireCol(int col) const
{
    if (col < 0 || col >= cols())
        throw platform::RuntimeError(platform::SubscriptOutOfRange, objectName());
}

void TextGrid::makeCurrent(int row)
{
    selectionModel()->setCurrentIndex(m_model->index(row - 1, std::min(1, cols() - 1)), // none for the header row
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

// Other columns keep the widths set with the mouse.
void TextGrid::stretch()
{
    if (m_stretched < 0 || m_stretched >= cols() || isColumnHidden(m_stretched))
        return;
    const int others = horizontalHeader()->length() - columnWidth(m_stretched);
    setColumnWidth(m_stretched,
                   std::max(viewport()->width() - others, twipsToPixels(m_widths[std::size_t(m_stretched)], this)));
    applyHeights();
}

// The width of the heading's longest word, or of a mark.
int TextGrid::minimumWidthOf(int col) const
{
    const QFontMetrics metrics = horizontalHeader()->fontMetrics();
    int width = 0;
    for (const QString& word : m_model->text(0, col).split(u' '))
        width = std::max(width, metrics.horizontalAdvance(word));
    width += 2 * (style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, horizontalHeader()) + HeadingRoom);
    return col == 0 ? std::max(width, widthFor(QStringLiteral("X"))) : width;
}

// As the view itself measures its cells.
int TextGrid::widthFor(const QString& text) const
{
    const QStringListModel probe({text});
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    return itemDelegate()->sizeHint(option, probe.index(0)).width() + 1; // the line beside it
}

void TextGrid::widen(int col, int width)
{
    if (!isColumnHidden(col))
        setColumnWidth(col, std::max(columnWidth(col), width));
}

void TextGrid::fitHeadings()
{
    for (int col = 0; col < int(m_widths.size()); ++col)
        widen(col, minimumWidthOf(col));
    stretch();
    applyHeights();
}

// The stretched column gets the rest, and the fixed column's marks always fit.
void TextGrid::fitTexts(const QModelIndex& first, const QModelIndex& last)
{
    for (int col = std::max(1, first.column()); col <= last.column(); ++col)
        if (col != m_stretched && !isColumnHidden(col))
            widen(col, first.row() == last.row() ? sizeHintForIndex(first.siblingAtColumn(col)).width() + 1
                                                 : sizeHintForColumn(col));
    stretch();
}

void TextGrid::fitAll()
{
    for (int col = 0; col < int(m_samples.size()); ++col)
        if (const QString& sample = m_samples[std::size_t(col)]; !sample.isEmpty())
            widen(col, widthFor(sample));
    if (m_model->rowCount() > 0)
        fitTexts(m_model->index(0, 0), m_model->index(m_model->rowCount() - 1, cols() - 1));
    fitHeadings();
}

// The heading's height is a minimum; wrapped headings may need more.
void TextGrid::applyHeights()
{
    const int line = fontMetrics().height() + 2 * CellMargin;
    if (verticalHeader()->defaultSectionSize() != line)
        verticalHeader()->setDefaultSectionSize(line);
    m_heightsDue = m_holds > 0;
    if (m_heightsDue)
        return;
    const int margin = style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, horizontalHeader());
    const QFontMetrics metrics = horizontalHeader()->fontMetrics();
    int height = std::max(line, twipsToPixels(m_headingHeight, this));
    for (int col = 0; col < cols(); ++col)
        if (const QRect room(0, 0, columnWidth(col) - 2 * (margin + HeadingRoom), QWIDGETSIZE_MAX); room.width() > 0)
            height = std::max(height, metrics.boundingRect(room, Qt::TextWordWrap, m_model->text(0, col)).height() +
                                          2 * margin);
    horizontalHeader()->setFixedHeight(height);
}

} // namespace orlo::widgets
