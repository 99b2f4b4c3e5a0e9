#pragma once

#include "store/engine/Recordset.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace orlo::store
{
class Database;
}

namespace orlo::widgets
{

/// Supplies a bound grid with records: a database and a record source.
class DataControl : public QObject
{
    Q_OBJECT

public:
    explicit DataControl(QObject* parent = nullptr);

    /// Sets the function that returns the open database. It is called at every refresh(), since the file may have been
    /// reopened.
    void setDatabase(std::function<store::Database&()> database);
    /// Sets a table, a stored query or a Select statement, used from the next refresh() on.
    void setRecordSource(const QString& source);
    [[nodiscard]] const QString& recordSource() const { return m_source; }
    /// Opens the record source again. Raises 91 without a database, and what opening a record set raises.
    void refresh();
    /// The record set of the last refresh(); null before the first.
    [[nodiscard]] store::Recordset* recordset() { return m_recordset ? &*m_recordset : nullptr; }

Q_SIGNALS:
    /// Emitted while the old record set still exists: the last moment to write to it.
    void aboutToRefresh();
    /// Emitted after the record set was reopened.
    void refreshed();

private:
    std::function<store::Database&()> m_database;
    QString m_source;
    std::optional<store::Recordset> m_recordset;
};

} // namespace orlo::widgets
