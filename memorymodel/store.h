// SPDX-License-Identifier: MIT
/// What a library is kept in when it is not in memory alone.
#pragma once

#include "datamodel/itemid.h"
#include "memorymodel/export.h"

#include <list>
#include <memory>
#include <string>
#include <vector>

namespace memorymodel
{

class DataSource;

/// The store's part of one change of a library. It belongs to the change, and ends with it. One that is used as it is
/// agrees to everything and does nothing.
class MEMORYMODEL_EXPORT Step
{
public:
    virtual ~Step();

    /// Makes the change in the store, or takes it back. Called right before the library changes: when the change is
    /// done, undone and redone. Nobody is notified meanwhile, and the library is not to be changed here.
    /// \return false when the store cannot; then it is as before, and so is the library
    virtual bool Run(bool in_forward);

    /// Called after each run that succeeded, when the change itself was notified, before OnEndChanges(). The place to
    /// tell the library what else has changed in the store: Library::Follow(), Drop() and Add().
    virtual void Settle();
};

/// A node that is about to be made.
struct Creation
{
    vireo::datamodel::ItemID m_item;      ///< its identity from now on
    std::string m_name;                   ///< not empty, and of no other node
    std::string m_baseClass;              ///< the UID of a signature of the library; empty for none
    std::string m_category;               ///< free text
    bool m_isSignature = false;           ///< an interface without a graph
    bool m_isLoop = false;                ///< its graph runs in a loop
    const DataSource* m_source = nullptr; ///< where it goes; takes changes
    std::string m_uid;                    ///< for the store to set: the UID of its object; empty for a new one
    std::string m_tags;                   ///< for the store to set
};

/// What is to be saved.
struct CommitRequest
{
    bool m_isEverything = false;                   ///< also what has no changes
    const DataSource* m_only = nullptr;            ///< the one source to save; null for all
    std::vector<vireo::datamodel::ItemID> m_items; ///< what that comes to, in the order of Library::GetItems()
};

/// What came of it.
struct CommitAnswer
{
    bool m_isWritten = false;                      ///< whether anything was written
    std::vector<vireo::datamodel::ItemID> m_saved; ///< those of the items that are safe now
    std::list<std::string> m_messages;             ///< why something could not be saved, a sentence each
};

/// Keeps a library somewhere. It is asked before each change, and may refuse; it is told to save. Implement what the
/// store takes part in; the rest is done in memory alone. Texts are 8-bit Latin-1.
///
/// The library holds its store until it is closed, and each change that can be undone holds the store's step.
class MEMORYMODEL_EXPORT Store
{
public:
    virtual ~Store();

    /// \name What is about to change
    /// Each returns the step for a change, or null to refuse it. Nothing has changed yet, and nothing may change here.
    /// \{

    /// An item gets another name. It may be the empty one.
    virtual std::unique_ptr<Step> Rename(const vireo::datamodel::ItemID& in_item, const std::string& in_name);
    /// An item gets other tags under a key.
    virtual std::unique_ptr<Step> SetTags(const vireo::datamodel::ItemID& in_item, const std::string& in_key,
                                          const std::string& in_tags);
    /// An item goes to another source.
    virtual std::unique_ptr<Step> Move(const vireo::datamodel::ItemID& in_item, const DataSource& in_target);
    /// A node is made.
    virtual std::unique_ptr<Step> Create(Creation& io_creation);
    /// An item goes.
    virtual std::unique_ptr<Step> Remove(const vireo::datamodel::ItemID& in_item);
    /// \}

    /// Saves. The library then makes the items that are safe clean, and no others.
    virtual CommitAnswer Commit(const CommitRequest& in_request) = 0;

    /// Called when the library ends, or gets another store. From then on the library is not to be used, and no step
    /// runs any more; one that is running has changed the library for the last time.
    virtual void Close();
};

/// Why an item is not what it was.
enum class eFollowing
{
    eChange, ///< a change of the library changed it, too, and takes that back when it is undone
    eNews,   ///< it changed in the store without the library
};

/// An item as its store has it.
struct StoredItem
{
    std::string m_name;                   ///< as people see it
    std::string m_tags;                   ///< the application's tags, joined by ";"
    const DataSource* m_source = nullptr; ///< of the library
    bool m_isReadOnly = false;            ///< whatever the source says
};

} // namespace memorymodel
