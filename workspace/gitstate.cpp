// SPDX-License-Identifier: MIT
#include "workspace/gitstate.h"

#include "memorymodel/accessstate.h"

#include <git2.h>

namespace workspace
{
namespace
{

const unsigned gStagedFlags = GIT_STATUS_INDEX_NEW | GIT_STATUS_INDEX_MODIFIED | GIT_STATUS_INDEX_DELETED |
                              GIT_STATUS_INDEX_RENAMED | GIT_STATUS_INDEX_TYPECHANGE;
const unsigned gChangedFlags = GIT_STATUS_WT_MODIFIED | GIT_STATUS_WT_DELETED | GIT_STATUS_WT_TYPECHANGE |
                               GIT_STATUS_WT_RENAMED | GIT_STATUS_WT_UNREADABLE;

} // namespace

eGitState GitStateOf(unsigned in_flags, bool in_mayWrite)
{
    if (in_flags & GIT_STATUS_CONFLICTED)
        return eGitState::eConflicted;
    if (in_flags & gChangedFlags)
        return eGitState::eChanged;
    // Also a file that is to leave the next commit, and stays in its folder.
    if (in_flags & gStagedFlags)
        return eGitState::eStaged;
    if (in_flags & GIT_STATUS_WT_NEW)
        return eGitState::eUntracked;
    if (in_flags & GIT_STATUS_IGNORED)
        return eGitState::eIgnored;
    return in_mayWrite ? eGitState::eUnchanged : eGitState::eReadOnly;
}

unsigned AccessStateOf(eGitState in_state)
{
    switch (in_state)
    {
    case eGitState::eUnchanged:
        return memorymodel::eCheckedIn;
    case eGitState::eIgnored:
        return memorymodel::eIgnored;
    case eGitState::eReadOnly:
        return memorymodel::eReadOnlyFile;
    case eGitState::eUntracked:
        return memorymodel::eAdded;
    case eGitState::eStaged:
        return memorymodel::eStaged;
    case eGitState::eChanged:
        return memorymodel::eCheckedOut;
    case eGitState::eConflicted:
        return memorymodel::eConflicted;
    case eGitState::eNone:
        break;
    }
    return memorymodel::eWithoutState;
}

const char* WordsFor(eGitState in_state)
{
    switch (in_state)
    {
    case eGitState::eUnchanged:
        return "Unchanged";
    case eGitState::eIgnored:
        return "Ignored";
    case eGitState::eReadOnly:
        return "Unchanged, read-only";
    case eGitState::eUntracked:
        return "Untracked";
    case eGitState::eStaged:
        return "Staged";
    case eGitState::eChanged:
        return "Changed";
    case eGitState::eConflicted:
        return "In conflict";
    case eGitState::eNone:
        break;
    }
    return "Not saved yet";
}

} // namespace workspace
