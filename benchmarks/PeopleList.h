#pragma once

#include "PackFile.h"
#include "Painting.h"
#include "Table.h"
#include "widgets/Form.h"
#include "widgets/ListBox.h"

#include <QCoreApplication>
#include <QEvent>
#include <QListView>
#include <QStringListModel>

namespace orlo::bench
{

/// The list of a form of people, and a plain list that shows the same: "Last, First M.".
template <class F>
struct PeopleList {
    QByteArray table;
    int rows;

    [[nodiscard]] QByteArray select() const
    {
        return "Select * From " + table + " Where Active = 'Y' Order by Last_Name, First_Name";
    }

    /// Opens the form from scratch.
    double open() const
    {
        widgets::Instance<F>::unload();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return timed([this] {
            auto& form = widgets::Instance<F>::get();
            form.show();
            auto& list = *form.template findChild<widgets::ListBox*>(QString::fromLatin1("lb" + table));
            paint(*list.viewport());
            if (list.listCount() != rows)
                qFatal("the list isn't full");
        });
    }

    /// Reads the same query into a list and does nothing else.
    double fillPlain(const PlainDatabase& plain) const
    {
        return timed([&] {
            QStringList texts;
            const auto people = plain.prepare(select());
            while (step(people))
                texts.append(textOf(people, 2) + QLatin1String(", ") + textOf(people, 1) + u' ' + textOf(people, 3) +
                             QLatin1String(". "));
            QStringListModel model(texts);
            QListView list;
            list.setUniformItemSizes(true);
            list.setModel(&model);
            list.show();
            paint(*list.viewport());
            if (model.rowCount() != rows)
                qFatal("the list has %d rows", model.rowCount());
        });
    }
};

} // namespace orlo::bench
