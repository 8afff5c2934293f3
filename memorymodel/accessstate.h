// SPDX-License-Identifier: MIT
/// The source-control states that the in-memory data layer knows.
#pragma once

namespace memorymodel
{

/// The access states that this data layer gives out, besides the boundary's 0 and 4194304.
enum eAccessState : unsigned
{
    eCheckedIn = 1,         ///< nobody is changing it; what each object starts with
    eCheckedOut = 2,        ///< checked out here
    eCheckedOutByOther = 3, ///< checked out somewhere else
    eOutOfDate = 4,         ///< there is a newer version
    eWritable = 5,          ///< made writable without a check-out
    eAdded = 6,             ///< new here, not checked in yet
};

} // namespace memorymodel
