#include "widgets/NestedLoop.h"

#include <QCoreApplication>
#include <QList>
#include <QPointer>

#include <utility>

namespace orlo::widgets
{

namespace
{

struct Closed {
    QPointer<QObject> object;
    int depth;
};

int running = 0;
QList<Closed>& closed()
{
    static QList<Closed> objects;
    return objects;
}

void deleteClosed()
{
    for (const Closed& entry : std::exchange(closed(), {}))
        if (!entry.object)
            continue;
        else if (running > entry.depth)
            closed().append(entry);
        else
            delete entry.object;
}

} // namespace

NestedLoop::NestedLoop()
{
    ++running;
}

// The handler that ran the loop must return first.
NestedLoop::~NestedLoop()
{
    --running;
    if (!closed().isEmpty())
        QMetaObject::invokeMethod(qApp, deleteClosed, Qt::QueuedConnection);
}

int NestedLoop::depth()
{
    return running;
}

void NestedLoop::deleteAtDepth(QObject& object, int depth)
{
    closed().append({&object, depth});
}

} // namespace orlo::widgets
