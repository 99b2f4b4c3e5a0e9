#pragma once

#include "shell/forms/RecordsetVariable.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace orlo
{

/// The records that a form walks, and where it believes to stand among them. Knows no control.
class RecordWalk
{
public:
    /// Whether there are records to walk to; one without a value stays as it was.
    struct Ways {
        std::optional<bool> back;
        std::optional<bool> ahead;
    };

    /// Opens the records to walk from now on, and reads their number. Raises as Database::openRecordset().
    void openRecords(const QString& select);
    /// Reads the number of records anew. Raises Overflow (6) past 32767.
    void readRecordCount();
    /// The 1-based place of the current record, 0 for none.
    [[nodiscard]] int recordIndex() const { return mRecordIndex.toInt(); }
    /// Sets the place alone; the set stays where it stands.
    void setRecordIndex(int index) { mRecordIndex = QString::number(index); }
    /// Moves the set and the place to the 1-based position.
    void goTo(int position);

    /// Each moves the set and the place together, off either end, too, which settle() repairs. Raise
    /// NoCurrentRecord (3021) on an empty set.
    void stepToFirst();
    void stepToPrevious();
    void stepToNext();
    void stepToLast();
    /// Reads the number of records anew, brings a set that was stepped off an end back, and tells the ways from there.
    Ways settle();
    /// The ways by the place alone, as the walking forms show them: on a set of one record there is one back.
    [[nodiscard]] Ways ways() const;

    /// "Den 2 of 7", "Den (New)" or "None".
    [[nodiscard]] QString recordInfo(const QString& noun) const;

    RecordsetVariable rsRecords;
    std::int16_t mRecordCount = 0;
    QString mRecordIndex = QStringLiteral("0"); ///< 1-based place of the current record, "0" for none
    bool mNewRecord = false;                    ///< from cmdNew until the record is saved or cancelled
    std::int16_t mCurrentSID = 0;               ///< the key of the record on screen, of a new one the key to be
};

} // namespace orlo
