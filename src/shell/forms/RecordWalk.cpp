#include "shell/forms/RecordWalk.h"

#include "platform/Conversion.h"
#include "shell/forms/Module1.h"

namespace orlo
{

void RecordWalk::openRecords(const QString& select)
{
    rsRecords = database().openRecordset(select);
    mNewRecord = false;
    readRecordCount();
}

void RecordWalk::readRecordCount()
{
    mRecordCount = platform::toInt16(rsRecords->recordCount());
}

void RecordWalk::goTo(int position)
{
    rsRecords->moveFirst();
    rsRecords->move(position - 1);
    setRecordIndex(position);
}

void RecordWalk::stepToFirst()
{
    rsRecords->moveFirst();
    setRecordIndex(1);
}

void RecordWalk::stepToPrevious()
{
    rsRecords->movePrevious();
    setRecordIndex(recordIndex() - 1);
}

void RecordWalk::stepToNext()
{
    rsRecords->moveNext();
    setRecordIndex(recordIndex() + 1);
}

void RecordWalk::stepToLast()
{
    rsRecords->moveLast();
    readRecordCount();
    setRecordIndex(mRecordCount);
}

RecordWalk::Ways RecordWalk::settle()
{
    readRecordCount();
    if (mRecordCount == 0) {
        setRecordIndex(0);
        return {.back = false, .ahead = false};
    }
    if (rsRecords->bof()) {
        rsRecords->moveFirst();
        setRecordIndex(1);
        return {.back = false, .ahead = std::nullopt};
    }
    if (rsRecords->eof()) {
        rsRecords->moveLast();
        setRecordIndex(mRecordCount);
        return {.back = std::nullopt, .ahead = false};
    }
    return {.back = recordIndex() != 1, .ahead = recordIndex() != mRecordCount};
}

RecordWalk::Ways RecordWalk::ways() const
{
    const int index = recordIndex();
    const bool walks = !mNewRecord && mRecordCount != 0;
    const bool ahead = walks && index < mRecordCount;
    return {.back = walks && (index > 1 || !ahead), .ahead = ahead};
}

QString RecordWalk::recordInfo(const QString& noun) const
{
    if (mNewRecord)
        return noun + QStringLiteral(" (New)");
    if (mRecordCount == 0)
        return QStringLiteral("None");
    return QStringLiteral("%1 %2 of %3").arg(noun, mRecordIndex.trimmed()).arg(mRecordCount);
}

} // namespace orlo
