#include "reporting/view/ZoomBox.h"

#include "reporting/view/PageView.h"

#include <QLineEdit>
#include <QSignalBlocker>

#include <algorithm>
#include <array>
#include <cmath>

namespace orlo::reporting
{

namespace
{

constexpr std::array Percents{25, 50, 75, 100, 125, 150, 200, 300, 400};

} // namespace

ZoomBox::ZoomBox(PageView& view) : m_view(view)
{
    setObjectName(QStringLiteral("cboZoom"));
    setAccessibleName(QStringLiteral("Zoom"));
    setToolTip(QStringLiteral("Zoom"));
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setCompleter(nullptr);
    lineEdit()->setObjectName(QStringLiteral("txtZoom"));
    lineEdit()->setAccessibleName(QStringLiteral("Zoom"));
    addItem(QStringLiteral("Fit Width"));
    addItem(QStringLiteral("Fit Page"));
    for (const int percent : Percents)
        addItem(QStringLiteral("%1%").arg(percent));
    setMaxVisibleItems(count());
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
    connect(this, &QComboBox::textActivated, this, &ZoomBox::takeZoom);
    connect(lineEdit(), &QLineEdit::returnPressed, this, [this] { takeZoom(currentText()); });
    connect(lineEdit(), &QLineEdit::editingFinished, this, [this] { // left by Tab or the mouse
        if (lineEdit()->isModified())
            takeZoom(currentText());
    });
    connect(&m_view, &PageView::zoomChanged, this, &ZoomBox::showZoom);
}

void ZoomBox::showZoom()
{
    const QSignalBlocker quiet(this);
    const QString percent = QStringLiteral("%1%").arg(std::lround(m_view.zoom() * 100));
    QString text = percent;
    if (m_view.fit() == PageView::Fit::Width)
        text = itemText(0);
    else if (m_view.fit() == PageView::Fit::Page)
        text = itemText(1);
    setCurrentIndex(findText(text));
    setEditText(text);
    setAccessibleDescription(QStringLiteral("Zoom, %1").arg(percent)); // on X11 the name is taken by the choice
}

void ZoomBox::takeZoom(const QString& text)
{
    if (text == itemText(0)) {
        m_view.setFit(PageView::Fit::Width);
    } else if (text == itemText(1)) {
        m_view.setFit(PageView::Fit::Page);
    } else {
        if (const double percent = QString(text).remove(u'%').trimmed().toDouble(); percent > 0)
            m_view.setZoom(percent / 100);
    }
    const bool isLeft = !hasFocus();
    showZoom();
    if (!isLeft)
        m_view.setFocus();
}

void ZoomBox::step(int direction)
{
    const auto percent = static_cast<int>(std::lround(m_view.zoom() * 100));
    if (direction > 0) {
        const auto* larger = std::upper_bound(Percents.begin(), Percents.end(), percent);
        if (larger != Percents.end())
            m_view.setZoom(*larger / 100.0);
    } else {
        const auto* notSmaller = std::lower_bound(Percents.begin(), Percents.end(), percent);
        if (notSmaller != Percents.begin())
            m_view.setZoom(*std::prev(notSmaller) / 100.0);
    }
}

} // namespace orlo::reporting
