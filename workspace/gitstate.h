// SPDX-License-Identifier: MIT
/// What git's flags say of a document, and how that is shown.
#pragma once

namespace workspace
{

/// The state that git has of a document. The greater one matters more to a person: an item has the greatest of its
/// documents. First comes what needs a decision, then what is not committed yet, then what keeps from working.
enum class eGitState
{
    eNone,      ///< there is no file, and git knows of none
    eUnchanged, ///< as in the last commit
    eIgnored,   ///< kept out by a rule of the repository
    eReadOnly,  ///< unchanged, but the file may not be written
    eUntracked, ///< in no commit, and not chosen for the next one
    eStaged,    ///< chosen for the next commit as it is
    eChanged,   ///< not as in the last commit, and not all of it is chosen for the next one
    eConflicted ///< a merge has left it to a person
};

/// \param in_flags of git_status_t
/// \param in_mayWrite whether the file's permissions let it be written
eGitState GitStateOf(unsigned in_flags, bool in_mayWrite);

/// The access state that browsers get. It has a badge (memorymodel/accessstate.h), but for eNone.
unsigned AccessStateOf(eGitState in_state);

/// The state in people's words.
const char* WordsFor(eGitState in_state);

} // namespace workspace
