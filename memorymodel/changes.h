// SPDX-License-Identifier: MIT
/// The changes of a library that can be undone.
#pragma once

#include "memorymodel/librarycontext.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <string>

namespace memorymodel
{

/// One change of one item, to be done, undone and redone any number of times. It notifies each time, and does nothing
/// once it has nothing to change any more: the library is closed, or the item is gone for good.
class Change
{
public:
    virtual ~Change() = default;

    /// What the change does, for a menu; to be asked right before it is done for the first time.
    virtual QString GetText() const = 0;

    /// Does or undoes it with everything around it: the bracket, the notifications.
    void Run(bool in_forward);

    /// Does it for the first time: as one command of a command manager of this data layer, otherwise for good.
    /// \return false when there was nothing to change
    static bool Do(const std::shared_ptr<Change>& in_change, hmx::fwk::ICommandManager* in_commands);

    /// Does or undoes it without a word.
    void Apply(bool in_forward);

protected:
    Change(const std::shared_ptr<LibraryContext>& in_library, std::shared_ptr<Item> in_item);

    /// Whether it would change anything now.
    virtual bool IsDue(const LibraryContext& in_library, bool in_forward) const = 0;
    virtual void TellBefore(LibraryContext& in_library, bool in_forward) const;
    virtual void Write(LibraryContext& in_library, bool in_forward) = 0;
    virtual void TellAfter(LibraryContext& in_library, bool in_forward) const = 0;

    /// "compound Blend"
    QString GetItemText() const;

    const std::shared_ptr<Item> m_item;

private:
    template <class Step> bool RunAround(bool in_forward, const Step& in_step);
    /// Whether it is due and the item's source has not become read-only since the change was made.
    bool MayRun(const LibraryContext& in_library, bool in_forward) const;

    const std::weak_ptr<LibraryContext> m_library;
    const bool m_evenReadOnly;
};

/// An item comes to its library or leaves it.
class PresenceChange : public Change
{
public:
    PresenceChange(const std::shared_ptr<LibraryContext>& in_library, std::shared_ptr<Item> in_item, bool in_comes);

    QString GetText() const override;

protected:
    bool IsDue(const LibraryContext& in_library, bool in_forward) const override;
    void TellBefore(LibraryContext& in_library, bool in_forward) const override;
    void Write(LibraryContext& in_library, bool in_forward) override;
    void TellAfter(LibraryContext& in_library, bool in_forward) const override;

private:
    const bool m_comes;
};

/// The content of an item changes, and its revision with it: going back to a committed state makes the item clean.
class ContentChange : public Change
{
protected:
    ContentChange(const std::shared_ptr<LibraryContext>& in_library, std::shared_ptr<Item> in_item);

    bool IsDue(const LibraryContext& in_library, bool in_forward) const override;
    void Write(LibraryContext& in_library, bool in_forward) override;

    virtual bool IsContent(bool in_after) const = 0;
    virtual void SetContent(bool in_after) = 0;
    /// Takes the item's content as what it was before.
    virtual void KeepContent() = 0;

private:
    std::uint64_t m_revisions[2] = {0, 0}; ///< before, after
    bool m_kept = false;                   ///< whether the state before is known: from the first time on
};

class NameChange : public ContentChange
{
public:
    NameChange(const std::shared_ptr<LibraryContext>& in_library, std::shared_ptr<Item> in_item, std::string in_name);

    QString GetText() const override;

protected:
    void TellAfter(LibraryContext& in_library, bool in_forward) const override;
    bool IsContent(bool in_after) const override;
    void SetContent(bool in_after) override;
    void KeepContent() override;

private:
    std::string m_names[2];
};

class TagsChange : public ContentChange
{
public:
    TagsChange(const std::shared_ptr<LibraryContext>& in_library, std::shared_ptr<Item> in_item, std::string in_key,
               std::string in_tags);

    QString GetText() const override;

protected:
    void TellAfter(LibraryContext& in_library, bool in_forward) const override;
    bool IsContent(bool in_after) const override;
    void SetContent(bool in_after) override;
    void KeepContent() override;

private:
    const std::string m_key;
    std::string m_tags[2];
};

/// An item moves to another source of its library. Observers get LibraryInvalidated(), since whether the item takes
/// changes and whether it came with the product depend on the source.
class SourceChange : public ContentChange
{
public:
    SourceChange(const std::shared_ptr<LibraryContext>& in_library, std::shared_ptr<Item> in_item,
                 std::shared_ptr<DataSource> in_target);

    QString GetText() const override;

protected:
    bool IsDue(const LibraryContext& in_library, bool in_forward) const override;
    void TellAfter(LibraryContext& in_library, bool in_forward) const override;
    bool IsContent(bool in_after) const override;
    void SetContent(bool in_after) override;
    void KeepContent() override;

private:
    std::shared_ptr<DataSource> m_sources[2];
};

} // namespace memorymodel
