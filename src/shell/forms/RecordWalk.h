#pragma once

#include "shell/forms/RecordsetVariable.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace orlo
{

/// The records that a form walks through, and its position among them. Independent of any controls.
class RecordWalk
{
public:
    /// In which directions there are records; one without a value stays unchanged.
    struct Ways {
        std::optional<bool> back;
        std::optional<bool> ahead;
    };

    /// Opens the records to walk and counts them. Raises as Database::openRecordset().
    void openRecords(const QString& select);
    /// Counts the records again. Raises Overflow (6) past 32767.
    void readRecordCount();
    /// The position of the current record, from 1; 0 for none.
    [[nodiscard]] int recordIndex() const { return mRecordIndex.toInt(); }
    /// Sets the position only; the set doesn't move.
    void setRecordIndex(int index) { mRecordIndex = QString::number(index); }
    /// Moves set and position to a record, from 1.
    void goTo(int position);

    /// Move set and position together, possibly off either end, which settle() repairs. Raise NoCurrentRecord (3021) on
    /// an empty set.
    void stepToFirst();
    void stepToPrevious();
    void stepToNext();
    void stepToLast();
    /// Counts the records again, brings a set back that was moved off an end, and returns the directions from there.
    Ways settle();
    /// The directions by the position alone, as WalkingForm shows them: a set of one record has one backwards.
    [[nodiscard]] Ways ways() const;

    /// "Den 2 of 7", "Den (New)" or "None".
    [[nodiscard]] QString recordInfo(const QString& noun) const;

    RecordsetVariable rsRecords;
    std::int16_t mRecordCount = 0;
    QString mRecordIndex = QStringLiteral("0"); ///< 1-based place of the current record, "0" for none
    bool mNewRecord = false;                    ///< from cmdNew until the record is saved or cancelled
    std::int16_t mCurrentSID = 0;               ///< the key of the record on screen; for a new one its future key
};

} // namespace orlo
