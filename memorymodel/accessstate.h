// SPDX-License-Identifier: MIT
/// The source-control states that the in-memory data layer knows.
#pragma once

namespace memorymodel
{

/// The access states that this data layer gives out, besides the boundary's 0 and 4194304.
enum eAccessState : unsigned
{
    eCheckedIn = 1,         ///< nobody is changing it
    eCheckedOut = 2,        ///< checked out here
    eCheckedOutByOther = 3, ///< checked out somewhere else
    eOutOfDate = 4,         ///< there is a newer version
    eWritable = 5,          ///< made writable without a check-out
    eAdded = 6,             ///< new here, not checked in yet
    eStaged = 7,            ///< changed here, and chosen for the next check-in
    eReadOnlyFile = 8,      ///< nobody is changing it, and its file may not be written
    eIgnored = 9,           ///< kept out of version control
    eConflicted = 10,       ///< changed here and somewhere else; somebody has to decide
    eWithoutState = 11,     ///< none of these: there is room for a badge, and no badge
};

} // namespace memorymodel
