// SPDX-License-Identifier: MIT
/// The changes of a library that can be undone.
#pragma once

#include "memorymodel/librarycontents.h"
#include "memorymodel/store.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace memorymodel
{

/// One change of one item. It can be done, undone and redone any number of times, and notifies each time.
///
/// A change that has nothing to change any more does nothing: its library is closed, or its item is gone for good.
class Change
{
public:
    virtual ~Change() = default;

    /// What the change does, for a menu. Ask right before it is done for the first time: it names the item.
    virtual QString GetText() const = 0;

    /// Gives the change its store's part, before it is done for the first time. It runs right before the library
    /// changes, and when it cannot, the change is not made.
    void SetStep(std::unique_ptr<Step> in_step) { m_step = std::move(in_step); }

    /// Does or undoes the change, with its notifications.
    void Run(bool in_forward);

    /// Calls in_apply, which has to lead to Apply() and return its answer, with the notifications of the change around
    /// it.
    /// \return false when nothing was changed; in_apply is not called when there is nothing to change
    bool RunAround(bool in_forward, const std::function<bool()>& in_apply);

    /// Does or undoes the change and notifies nobody.
    /// \return false when nothing was changed
    bool Apply(bool in_forward);

protected:
    Change(const std::shared_ptr<LibraryContents>& in_library, std::shared_ptr<Item> in_item);

    /// Whether it would change anything now.
    virtual bool IsDue(const LibraryContents& in_library, bool in_forward) const = 0;
    virtual void NotifyBefore(LibraryContents& io_library, bool in_forward) const;
    virtual void Write(LibraryContents& io_library, bool in_forward) = 0;
    virtual void NotifyAfter(LibraryContents& io_library, bool in_forward) const = 0;

    /// "compound Blend"
    QString GetItemText() const;

    const std::shared_ptr<Item> m_item;

private:
    /// Whether the change is due, and the item's source has not become read-only since the change was made.
    bool MayRun(const LibraryContents& in_library, bool in_forward) const;

    const std::weak_ptr<LibraryContents> m_library;
    const bool m_evenReadOnly;    ///< the source was read-only when the change was made
    std::unique_ptr<Step> m_step; ///< null without a store
};

/// An item comes to its library or leaves it.
class PresenceChange : public Change
{
public:
    PresenceChange(const std::shared_ptr<LibraryContents>& in_library, std::shared_ptr<Item> in_item, bool in_comes);

    QString GetText() const override;

protected:
    bool IsDue(const LibraryContents& in_library, bool in_forward) const override;
    void NotifyBefore(LibraryContents& io_library, bool in_forward) const override;
    void Write(LibraryContents& io_library, bool in_forward) override;
    void NotifyAfter(LibraryContents& io_library, bool in_forward) const override;

private:
    const bool m_comes;
};

/// The content of an item changes, and its revision with it. An item that goes back to its committed state is clean.
class ContentChange : public Change
{
protected:
    ContentChange(const std::shared_ptr<LibraryContents>& in_library, std::shared_ptr<Item> in_item);

    bool IsDue(const LibraryContents& in_library, bool in_forward) const override;
    void Write(LibraryContents& io_library, bool in_forward) override;

    virtual bool IsContent(bool in_after) const = 0;
    virtual void SetContent(bool in_after) = 0;
    /// Keeps the item's present content, for undoing.
    virtual void KeepContent() = 0;

private:
    std::uint64_t m_revisions[2] = {0, 0}; ///< before, after
    bool m_kept = false;                   ///< whether the content before is kept: from the first time on
};

class NameChange : public ContentChange
{
public:
    NameChange(const std::shared_ptr<LibraryContents>& in_library, std::shared_ptr<Item> in_item, std::string in_name);

    QString GetText() const override;

protected:
    void NotifyAfter(LibraryContents& io_library, bool in_forward) const override;
    bool IsContent(bool in_after) const override;
    void SetContent(bool in_after) override;
    void KeepContent() override;

private:
    std::string m_names[2];
};

class TagsChange : public ContentChange
{
public:
    TagsChange(const std::shared_ptr<LibraryContents>& in_library, std::shared_ptr<Item> in_item, std::string in_key,
               std::string in_tags);

    QString GetText() const override;

protected:
    void NotifyAfter(LibraryContents& io_library, bool in_forward) const override;
    bool IsContent(bool in_after) const override;
    void SetContent(bool in_after) override;
    void KeepContent() override;

private:
    const std::string m_key;
    std::string m_tags[2];
};

/// An item moves to another source of its library. Observers get LibraryInvalidated(): the source decides whether the
/// item takes changes, and whether it came with the product.
class SourceChange : public ContentChange
{
public:
    SourceChange(const std::shared_ptr<LibraryContents>& in_library, std::shared_ptr<Item> in_item,
                 std::shared_ptr<DataSource> in_target);

    QString GetText() const override;

protected:
    bool IsDue(const LibraryContents& in_library, bool in_forward) const override;
    void NotifyAfter(LibraryContents& io_library, bool in_forward) const override;
    bool IsContent(bool in_after) const override;
    void SetContent(bool in_after) override;
    void KeepContent() override;

private:
    std::shared_ptr<DataSource> m_sources[2];
};

} // namespace memorymodel
