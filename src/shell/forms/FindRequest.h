#pragma once

namespace orlo
{

/// What a find dialog was answered with, for the form that asked.
class FindRequest
{
public:
    /// The dialog ended with "find", or was cancelled.
    void SetFind(bool find)
    {
        mFindRequested = find;
        mSelectAllRequested = false;
    }
    /// The dialog ended with "select all".
    void SetSelectAll(bool selectAll)
    {
        mSelectAllRequested = selectAll;
        mFindRequested = false;
    }

protected:
    bool mFindRequested = false;      ///< the dialog's last answer was "find"
    bool mSelectAllRequested = false; ///< the dialog's last answer was "select all"
};

} // namespace orlo
