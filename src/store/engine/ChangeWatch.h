#pragma once

#include <QDate>
#include <QString>

#include <functional>

namespace orlo::store
{

/// What a file's rows are about to go through.
struct Change {
    bool removes = false;
    QString table = {}; ///< that loses rows; empty where several things will happen
};

/// Tells somebody ahead of a file's changes, seldom: before the first one of each day and before each removal.
class ChangeWatch
{
public:
    /// False if the next change wants to be told of again, too.
    using Listener = std::function<bool(const Change&)>;

    void listen(Listener listener) { m_listener = std::move(listener); }
    /// To be called outside a transaction. What the listener raises is logged.
    void aboutTo(const Change& change);

private:
    Listener m_listener;
    QDate m_toldOn;
};

} // namespace orlo::store
