#include "widgets/BoundGrid.h"

#include "platform/RuntimeError.h"
#include "widgets/BoundGridModel.h"
#include "widgets/CellMargin.h"
#include "widgets/DataControl.h"
#include "widgets/MessageBox.h"
#include "widgets/Twips.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QScopedValueRollback>
#include <QTimer>

#include <algorithm>

namespace orlo::widgets
{

namespace
{

// The column headings, with room above them for the grid's caption.
class HeadingRow : public QHeaderView
{
public:
    explicit HeadingRow(QWidget* parent) : QHeaderView(Qt::Horizontal, parent)
    {
        setHighlightSections(false);
        setSectionsClickable(false);
        setMinimumSectionSize(1);
        setStretchLastSection(true);
    }

    void setRoomAbove(int pixels) { setViewportMargins(0, pixels, 0, 0); }

    [[nodiscard]] QSize sizeHint() const override
    {
        return QHeaderView::sizeHint() + QSize(0, viewportMargins().top());
    }
};

// Swallows the mouse press that took the focus out of a grid whose row was refused: the user was brought back to the
// row, so the button that he pressed isn't to act. It lives until the press is dealt with.
class PressSwallower : public QObject
{
public:
    PressSwallower()
    {
        qApp->installEventFilter(this);
        QTimer::singleShot(0, this, &QObject::deleteLater);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseButtonRelease:
            return watched->isWidgetType();
        default:
            return false;
        }
    }
};

} // namespace

BoundGrid::BoundGrid(QWidget* parent)
    : QTableView(parent), m_model(new BoundGridModel(this)), m_caption(new QLabel(this))
{
    setHorizontalHeader(new HeadingRow(this));
    setModel(m_model);
    setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
    setSelectionMode(ContiguousSelection);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setTabKeyNavigation(false); // Tab leaves the grid; from a cell's editor it goes to the next cell
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

    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { focusMoved(now); });
}

BoundGrid::~BoundGrid()
{
    disconnect(qApp, nullptr, this, nullptr); // the focus moves once more while the base class goes
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

QString BoundGrid::columnText(int column) const
{
    if (column < 0 || column >= m_model->columnCount())
        throw platform::RuntimeError(platform::SubscriptOutOfRange, objectName());
    return m_model->index(row(), column).data().toString();
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
    message(refusal->error.description(), caption());
    return false;
}

void BoundGrid::cancelRow()
{
    if (QWidget* editor = cellEditor())
        closeEditor(editor, QAbstractItemDelegate::RevertModelCache);
    const QModelIndex before = currentIndex();
    const int row = before.row();
    m_model->cancel();
    if (row >= 0)
        makeCurrent(row, before.column()); // the row of a dropped new record is the empty line again
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
    if (m_committing || m_model->openRow() == current.row() || !m_model->write())
        return;
    // The mouse or key event that moved on is finished first: a message within it would leave the button pressed.
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
    // While the window isn't the active one, the keys that follow the one that opened an editor still come here.
    if (QWidget* editor = cellEditor(); editor && !m_passingOn) {
        const QScopedValueRollback guard(m_passingOn, true);
        QCoreApplication::sendEvent(editor, event);
        return;
    }
    if (event->key() == Qt::Key_Escape && m_model->openRow() >= 0) {
        cancelRow();
        return;
    }
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

// Tab from the last cell doesn't start over at the first record.
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
    if (!now)
        return; // the whole window went to the back, the grid keeps the focus in it
    const bool before = std::exchange(m_focused, now == this || isAncestorOf(now));
    if (!before || m_focused || m_committing || !isVisible() || commitRow())
        return;
    setFocus();
    new PressSwallower;
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

// From the last one up, so that the numbers of those that are left hold.
void BoundGrid::deleteRows(QModelIndexList rows)
{
    std::sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.row() > b.row(); });
    QList<int> numbers;
    for (const QModelIndex& index : std::as_const(rows))
        numbers.append(index.row());
    m_model->cancel();
    for (const int number : std::as_const(numbers)) {
        try {
            m_model->removeRecord(number);
        } catch (const platform::RuntimeError& error) {
            const QScopedValueRollback guard(m_committing, true);
            message(error.description(), caption());
            return;
        }
    }
}

// The nearest cell to the one asked for that can be seen.
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
    const auto& columns = m_model->columns();
    for (int column = 0; column < columns.size(); ++column) {
        setColumnWidth(column, std::max(twipsToPixels(columns[column].width, this),
                                        horizontalHeader()->sectionSizeHint(column))); // a heading is never cut off
        setColumnHidden(column, columns[column].hidden);
    }
}

void BoundGrid::applyHeights()
{
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 2 * CellMargin);
    verticalHeader()->setFixedWidth(fontMetrics().horizontalAdvance(u'M') + 4 * CellMargin);
    const int captionHeight = m_caption->text().isEmpty() ? 0 : m_caption->sizeHint().height() + 2 * CellMargin;
    static_cast<HeadingRow*>(horizontalHeader())->setRoomAbove(captionHeight);
    updateGeometries();
}

} // namespace orlo::widgets
