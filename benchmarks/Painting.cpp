#include "Painting.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

namespace orlo::bench
{

namespace
{

class Paints final : public QObject
{
public:
    explicit Paints(QWidget& widget) { widget.installEventFilter(this); }

    [[nodiscard]] bool any() const { return m_any; }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        m_any = m_any || event->type() == QEvent::Paint;
        return false;
    }

private:
    bool m_any = false;
};

} // namespace

void paint(QWidget& widget)
{
    const Paints paints(widget);
    QCoreApplication::sendPostedEvents(); // first any pending layout
    for (int round = 0; round < 10 && !paints.any(); ++round)
        QCoreApplication::processEvents();
    if (!paints.any())
        qFatal("%s wasn't painted", qPrintable(widget.objectName()));
}

} // namespace orlo::bench
