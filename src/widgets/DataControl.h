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

/// The source of a bound grid's records: a database and a record source.
class DataControl : public QObject
{
    Q_OBJECT

public:
    explicit DataControl(QObject* parent = nullptr);

    /// Where to find the open database. It is asked at every refresh(), since the file may be closed and opened again.
    void setDatabase(std::function<store::Database&()> database);
    /// A table, a stored query or a Select statement. It takes effect at the next refresh().
    void setRecordSource(const QString& source);
    [[nodiscard]] const QString& recordSource() const { return m_source; }
    /// Opens the record source anew. Raises 91 without a database, and what opening a record set raises.
    void refresh();
    /// The record set of the last refresh(); null before the first.
    [[nodiscard]] store::Recordset* recordset() { return m_recordset ? &*m_recordset : nullptr; }

Q_SIGNALS:
    /// The old record set still stands: the moment to write what is open on it.
    void aboutToRefresh();
    /// After the set was opened anew.
    void refreshed();

private:
    std::function<store::Database&()> m_database;
    QString m_source;
    std::optional<store::Recordset> m_recordset;
};

} // namespace orlo::widgets
