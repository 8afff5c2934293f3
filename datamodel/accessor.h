// SPDX-License-Identifier: MIT
/// The accessors' common ground: a shared context in the data layer and a pointer to the one interface of it that the
/// accessor speaks.
#pragma once

#include "datamodel/export.h"

#include <memory>

namespace vireo
{
namespace datamodel
{

/// A thing in the data layer that accessors point at: a library, a table of contents, an item, a model. An
/// implementation derives one class from it and from the interfaces that the thing offers.
class DATAMODEL_EXPORT IContext
{
public:
    virtual ~IContext() = default;

    /// False once the thing is gone: the item was removed, the library was closed. All its accessors are then invalid.
    /// They become valid again if the thing comes back, for example by undo. A thing that goes drops its observers,
    /// because nobody can remove them through an invalid accessor.
    virtual bool IsAlive() const = 0;
};

/// How contexts are passed and kept. A null one is no context.
using ContextPtr = std::shared_ptr<IContext>;

/// What every accessor is: a value that shares a context and speaks one interface of it. Copies are cheap and
/// interchangeable; a copy keeps the context's memory, never the thing itself alive. Copies must be cheap in every
/// value of the boundary, so values keep their fields in the header: a private part would cost an allocation for each
/// copy.
///
/// Pointing an accessor elsewhere takes two steps that the caller writes out:
///
///     compound.ResetContext(model.GetContext());
///     if (compound.GetContext())
///         compound.RefreshInterfacePointer();
///
/// Between the two steps it is invalid. An invalid accessor answers every read with an empty result and refuses every
/// write. RefreshInterfacePointer() costs one run-time cast. Every operation costs one test of IsAlive() and one
/// virtual call.
class DATAMODEL_EXPORT BaseAccessor
{
public:
    /// The context pointed at; null when there is none.
    const ContextPtr& GetContext() const { return m_context; }

    /// True when there is a context that offers the interface and its thing still exists.
    bool IsValid() const { return m_context && m_interface && m_context->IsAlive(); }

    /// Points at another context, or at none, and forgets the interface.
    void ResetContext(const ContextPtr& in_context)
    {
        m_context = in_context;
        m_interface = nullptr;
    }

    /// Finds the interface in the context; the accessor stays invalid when the context does not offer it.
    void RefreshInterfacePointer() { m_interface = m_context ? FindInterface(*m_context) : nullptr; }

    /// Takes both steps: points at the context of another accessor, whatever interface that one speaks.
    void CopyFromOtherBaseAccessor(const BaseAccessor& in_other)
    {
        ResetContext(in_other.GetContext());
        if (m_context)
            RefreshInterfacePointer();
    }

protected:
    BaseAccessor() = default;
    ~BaseAccessor() = default;
    BaseAccessor(const BaseAccessor&) = default;
    BaseAccessor(BaseAccessor&&) = default;
    BaseAccessor& operator=(const BaseAccessor&) = default;
    BaseAccessor& operator=(BaseAccessor&&) = default;

    /// The interface that this accessor speaks; null when the context does not offer it.
    virtual void* FindInterface(IContext& in_context) const = 0;

    ContextPtr m_context;        ///< null while it points at nothing
    void* m_interface = nullptr; ///< what FindInterface() found; belongs to the context
};

/// An accessor that speaks this one interface.
template <class Interface> class InterfaceAccessor : public BaseAccessor
{
public:
    /// Points at nothing, and is invalid.
    InterfaceAccessor() = default;

    /// Views the context of another accessor.
    explicit InterfaceAccessor(const BaseAccessor& in_other) { CopyFromOtherBaseAccessor(in_other); }

protected:
    /// The interface, or null when the accessor is invalid.
    Interface* GetInterface() const { return IsValid() ? static_cast<Interface*>(m_interface) : nullptr; }

private:
    void* FindInterface(IContext& in_context) const final { return dynamic_cast<Interface*>(&in_context); }
};

/// An accessor whose interface is not fixed yet: what ItemLibraryAccessor::GetModel() returns before the caller views
/// it as a compound, a type and so on. It accepts any context.
class DATAMODEL_EXPORT UnspecifiedAccessor : public InterfaceAccessor<IContext>
{
public:
    /// Points at nothing, and is invalid.
    UnspecifiedAccessor() = default;
    /// Points at a context. Null makes an invalid accessor.
    explicit UnspecifiedAccessor(const ContextPtr& in_context)
    {
        ResetContext(in_context);
        RefreshInterfacePointer();
    }
};

} // namespace datamodel
} // namespace vireo
