#include "widgets/BoundGrid.h"

#include "platform/RuntimeError.h"
#include "widgets/BoundGridHeaders.h"
#include "widgets/BoundGridModel.h"
#include "widgets/CellMargin.h"
#include "widgets/DataControl.h"
#include "widgets/MessageBox.h"
#include "widgets/RowGuard.h"
#include "widgets/RowTint.h"
#include "widgets/Twips.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMessageBox>
#include <QScopedValueRollback>

#include <algorithm>

namespace orlo::widgets
{

BoundGrid::BoundGrid(QWidget* parent)
    : QTableView(parent), m_model(new BoundGridModel(this)), m_caption(new QLabel(this)),
      m_guard(std::make_unique<RowGuard>(*this, [this] { return commitRow(); }))
{
    setHorizontalHeader(new HeadingRow(this));
    setModel(m_model);
    setItemDelegate(new RowTint(this));
    setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
    setSelectionMode(ContiguousSelection);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setTabKeyNavigation(false); // Tab leaves the grid; in a cell's editor it goes to the next cell
    setCornerButtonEnabled(false);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);

    m_caption->setObjectName(QStringLiteral("caption"));
    m_caption->setAlignment(Qt::AlignCenter);
    m_caption->setAutoFillBackground(true);
    m_caption->setBackgroundRole(QPalette::Button);
    m_caption->setForegroundRole(QPalette::ButtonText);
    m_caption->setTextFormat(Qt::PlainText);
    m_caption->hide();
    applyHeights();

    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        const bool byItself = m_stretched < 0 && column == m_model->columnCount() - 1;
        if (!m_layingOut && !byItself)
            columnWidened(column, width);
    });
    // Other columns than before take widths that nobody set by hand.
    connect(m_model, &QAbstractItemModel::modelAboutToBeReset, this, [this] { m_layingOut = true; });
    connect(m_model, &QAbstractItemModel::modelReset, this, [this] { m_layingOut = false; });
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { focusMoved(now); });
}

BoundGrid::~BoundGrid()
{
    disconnect(qApp, nullptr, this, nullptr); // the focus changes once more during the base class's destruction
}

void BoundGrid::setDataControl(DataControl* control)
{
    if (m_control)
        disconnect(m_control, nullptr, this, nullptr);
    m_control = control;
    if (control) {
        connect(control, &DataControl::aboutToRefresh, this, &BoundGrid::commitRow);
        connect(control, &DataControl::refreshed, this, &BoundGrid::rebind);
    }
    m_model->setControl(control);
    applyColumns();
    makeCurrent(0, 0);
}

void BoundGrid::setColumns(const QList<GridColumn>& columns)
{
    commitRow();
    const QModelIndex before = currentIndex();
    m_model->setColumns(columns);
    applyColumns();
    makeCurrent(std::max(0, before.row()), std::max(0, before.column()));
}

const QList<GridColumn>& BoundGrid::columns() const
{
    return m_model->columns();
}

QString BoundGrid::caption() const
{
    return m_caption->text();
}

void BoundGrid::setCaption(const QString& caption)
{
    m_caption->setText(caption);
    m_caption->setVisible(!caption.isEmpty());
    setAccessibleName(caption);
    applyHeights();
}

void BoundGrid::setAllowUpdate(bool allow)
{
    m_allowUpdate = allow;
    applyAllowed();
}

void BoundGrid::setAllowAddNew(bool allow)
{
    m_allowAddNew = allow;
    applyAllowed();
}

int BoundGrid::recordCount() const
{
    return m_model->recordCount();
}

QString BoundGrid::cellText(int row, int column) const
{
    if (column < 0 || column >= m_model->columnCount())
        throw platform::RuntimeError(platform::SubscriptOutOfRange, objectName());
    return m_model->index(row, column).data().toString();
}

void BoundGrid::setRow(int row)
{
    makeCurrent(std::max(0, row), std::max(0, currentIndex().column()));
}

int BoundGrid::findRow(int column, const QString& text) const
{
    for (int row = 0; row < m_model->recordCount(); ++row)
        if (cellText(row, column) == text)
            return row;
    return -1;
}

bool BoundGrid::commitRow()
{
    if (m_committing)
        return false;
    if (m_model->openRow() >= 0 && m_model->openRow() != row() && !writeOpenRow())
        return false;
    commitOpenEditor();
    return writeOpenRow();
}

bool BoundGrid::writeOpenRow()
{
    const QScopedValueRollback guard(m_committing, true);
    const auto refusal = m_model->write();
    if (!refusal)
        return true;
    if (refusal->column >= 0 || row() != m_model->openRow())
        makeCurrent(m_model->openRow(), std::max(0, refusal->column));
    message(refusalText(*refusal), caption());
    if (refusal->error.number() != platform::ObjectInvalid)
        return false;
    m_model->cancel(); // the set is gone, so the row can never be written and must not keep its window open
    return true;
}

// A cell says what it accepts; what is wrong with the whole row, the database says.
QString BoundGrid::refusalText(const RowRefusal& refusal) const
{
    const QString takes = refusal.column < 0 ? QString() : m_model->takes(refusal.column);
    return takes.isEmpty() ? refusal.error.description()
                           : QStringLiteral("%1 takes %2.").arg(columns()[refusal.column].caption, takes);
}

void BoundGrid::cancelRow()
{
    if (QWidget* editor = cellEditor())
        closeEditor(editor, QAbstractItemDelegate::RevertModelCache);
    const QModelIndex before = currentIndex();
    const int row = before.row();
    m_model->cancel();
    if (row >= 0)
        makeCurrent(row, before.column()); // after a dropped new record its row is the empty line again
}

void BoundGrid::rebind()
{
    cancelRow();
    m_model->rebind();
    applyColumns();
    makeCurrent(0, 0);
}

void BoundGrid::refresh()
{
    commitRow();
    const QModelIndex before = currentIndex();
    rebind();
    makeCurrent(std::max(0, before.row()), std::max(0, before.column()));
}

void BoundGrid::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QTableView::currentChanged(current, previous);
    viewport()->update();
    if (m_committing || m_model->openRow() == current.row() || !m_model->write())
        return;
    // First finish the mouse or key event that moved on: a message box within it would leave the button pressed.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (!m_committing && m_model->openRow() != row())
                writeOpenRow();
        },
        Qt::QueuedConnection);
}

void BoundGrid::keyPressEvent(QKeyEvent* event)
{
    // While the window isn't active, the keys after the one that opened an editor still come here. A key that the
    // focused editor has already ignored, such as Enter, must not be sent back to it.
    const bool isText = !event->text().isEmpty() && event->text().front().isPrint();
    if (QWidget* editor = cellEditor(); editor && (isText || !editor->hasFocus()) && !m_passingOn) {
        const QScopedValueRollback guard(m_passingOn, true);
        QCoreApplication::sendEvent(editor, event);
        return;
    }
    if (event->key() == Qt::Key_Escape && m_model->openRow() >= 0) {
        cancelRow();
        return;
    }
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && !cellEditor() && !commitRow())
        return; // Enter belongs to the default button, which waits as usual
    if (event->matches(QKeySequence::Copy))
        return copyCells();
    if (event->matches(QKeySequence::Paste))
        return pasteCells();
    if (event->key() == Qt::Key_Delete && event->modifiers() == Qt::NoModifier) {
        const QModelIndexList rows = selectionModel()->selectedRows();
        if (rows.isEmpty())
            m_model->setData(currentIndex(), QString(), Qt::EditRole);
        else if (m_allowDelete)
            deleteRows(rows);
        return;
    }
    QTableView::keyPressEvent(event);
}

void BoundGrid::hideEvent(QHideEvent* event)
{
    if (!event->spontaneous())
        commitRow();
    QTableView::hideEvent(event);
}

void BoundGrid::changeEvent(QEvent* event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        applyHeights();
        applyColumns();
    }
}

void BoundGrid::updateGeometries()
{
    QTableView::updateGeometries();
    const int frame = frameWidth();
    m_caption->setGeometry(frame, frame, width() - 2 * frame, m_caption->sizeHint().height() + 2 * CellMargin);
    m_caption->raise();
}

// Tab from the last cell doesn't wrap to the first record.
QModelIndex BoundGrid::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    const QModelIndex from = currentIndex();
    const QModelIndex to = QTableView::moveCursor(action, modifiers);
    const bool wraps =
        (action == MoveNext && to.row() < from.row()) || (action == MovePrevious && to.row() > from.row());
    return wraps ? from : to;
}

void BoundGrid::focusMoved(const QWidget* now)
{
    if (!now || qobject_cast<const QMdiArea*>(now) || qobject_cast<QMessageBox*>(now->window()))
        return; // the whole window went into the background or behind a message, or changes; the grid keeps its focus
    const bool before = std::exchange(m_focused, belongsTo(now, *this));
    m_guard->watch(m_focused);
    if (before != m_focused) { // left from a cell's editor, the view itself hears nothing of it
        update();
        viewport()->update();
    }
    if (!before || m_focused || m_committing || !isVisible() || commitRow())
        return;
    m_focused = true;
    m_guard->watch(true);
    m_guard->dropPress();
    activateWindow();
    setFocus();
}

QWidget* BoundGrid::cellEditor() const
{
    return state() == EditingState ? indexWidget(currentIndex()) : nullptr;
}

void BoundGrid::commitOpenEditor()
{
    if (QWidget* editor = cellEditor()) {
        commitData(editor);
        closeEditor(editor, QAbstractItemDelegate::NoHint);
    }
}

// The nearest visible cell to the one asked for.
void BoundGrid::makeCurrent(int row, int column)
{
    const int lastColumn = m_model->columnCount() - 1;
    column = std::min(column, lastColumn);
    while (column >= 0 && column < lastColumn && isColumnHidden(column))
        ++column;
    setCurrentIndex(m_model->index(std::min(row, m_model->rowCount() - 1), column));
}

void BoundGrid::applyAllowed()
{
    m_model->setAllowed(m_allowUpdate, m_allowAddNew);
    applyColumns();
    makeCurrent(0, 0);
}

void BoundGrid::applyColumns()
{
    const QScopedValueRollback guard(m_layingOut, true);
    const auto& columns = m_model->columns();
    horizontalHeader()->setStretchLastSection(m_stretched < 0);
    for (int column = 0; column < columns.size(); ++column) {
        setColumnHidden(column, columns[column].hidden); // first, as a hidden heading asks for no room
        setColumnWidth(column, m_byHand.value(columns[column].field, minimumWidthOf(column)));
    }
    stretch();
}

// Headings are never cut off, and texts only in the stretched column.
int BoundGrid::minimumWidthOf(int column) const
{
    const int texts = column == stretchColumn() ? 0 : sizeHintForColumn(column);
    return std::max({twipsToPixels(columns()[column].width, this), horizontalHeader()->sectionSizeHint(column), texts});
}

void BoundGrid::setStretchColumn(int column)
{
    m_stretched = column;
    applyColumns();
}

int BoundGrid::stretchColumn() const
{
    return m_stretched < 0 ? m_model->columnCount() - 1 : m_stretched;
}

void BoundGrid::stretch()
{
    if (m_stretched < 0 || m_stretched >= columns().size() || m_byHand.contains(columns()[m_stretched].field))
        return;
    const QScopedValueRollback guard(m_layingOut, true);
    const int others = horizontalHeader()->length() - columnWidth(m_stretched);
    setColumnWidth(m_stretched,
                   std::max(viewport()->width() - others, horizontalHeader()->sectionSizeHint(m_stretched)));
}

void BoundGrid::columnWidened(int column, int width)
{
    m_byHand.insert(columns()[column].field, width);
    stretch();
}

void BoundGrid::resizeEvent(QResizeEvent* event)
{
    QTableView::resizeEvent(event);
    stretch();
}

void BoundGrid::applyHeights()
{
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 2 * CellMargin);
    verticalHeader()->setFixedWidth(fontMetrics().horizontalAdvance(u'M') + 4 * CellMargin);
    const int captionHeight = m_caption->text().isEmpty() ? 0 : m_caption->sizeHint().height() + 2 * CellMargin;
    static_cast<HeadingRow*>(horizontalHeader())->setRoomAbove(captionHeight);
    BoundGrid::updateGeometries();
}

} // namespace orlo::widgets
