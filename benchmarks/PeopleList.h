#pragma once

#include "PackFile.h"
#include "Table.h"
#include "widgets/Form.h"
#include "widgets/ListBox.h"

#include <QCoreApplication>
#include <QEvent>
#include <QListWidget>

namespace orlo::bench
{

/// The list of a form on people, and a plain one that shows the same: "Last, First M.".
template <class F>
struct PeopleList {
    QByteArray table;
    int rows;

    [[nodiscard]] QByteArray select() const
    {
        return "Select * From " + table + " Where Active = 'Y' Order by Last_Name, First_Name";
    }

    /// Opens the form anew.
    double open() const
    {
        widgets::Instance<F>::unload();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return timed([this] {
            auto& form = widgets::Instance<F>::get();
            form.show();
            if (form.template findChild<widgets::ListBox*>(QString::fromLatin1("lb" + table))->listCount() != rows)
                qFatal("the list isn't full");
        });
    }

    /// Reads the same query into a list and nothing else.
    double fillPlain(const PlainDatabase& plain) const
    {
        return timed([&] {
            QListWidget list;
            list.show();
            const auto people = plain.prepare(select());
            while (step(people))
                list.addItem(textOf(people, 2) + QLatin1String(", ") + textOf(people, 1) + u' ' + textOf(people, 3) +
                             QLatin1String(". "));
            if (list.count() != rows)
                qFatal("the list has %d rows", list.count());
        });
    }
};

} // namespace orlo::bench
