#pragma once

namespace orlo
{

/// A find dialog's answer, for the form that opened it.
class FindRequest
{
public:
    /// Tells whether the dialog ended with "find".
    void SetFind(bool find)
    {
        mFindRequested = find;
        mSelectAllRequested = false;
    }
    /// Tells whether the dialog ended with "select all".
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
