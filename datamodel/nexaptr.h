// SPDX-License-Identifier: MIT
/// Counted pointers to interfaces of the object database. Dereferencing a null one throws.
#pragma once

#include "datamodel/export.h"

#include <exception>
#include <memory>
#include <string>
#include <utility>

namespace nexa4
{

/// The base of the database's exceptions. The text says where it happened.
class DATAMODEL_EXPORT ExBase : public std::exception
{
public:
    class NullPtr;

    /// \param in_function the function that failed, with its class and namespace
    /// \param in_file its source file's name, without a folder
    ExBase(const char* in_reason, const std::string& in_function, const char* in_file, int in_line);

    /// "FILE(LINE): FUNCTION: REASON"
    const char* what() const noexcept override { return m_text.c_str(); }

private:
    std::string m_text;
};

/// Thrown when a null NEXAPtr is dereferenced.
class DATAMODEL_EXPORT ExBase::NullPtr : public ExBase
{
public:
    /// Takes what ExBase takes, but for the reason.
    NullPtr(const std::string& in_function, const char* in_file, int in_line);
};

/// While a guard lives, database errors are thrown but not printed on its thread. Guards may be nested.
class DATAMODEL_EXPORT DisableErrorReportingGuard
{
public:
    /// Silences reports on this thread.
    DisableErrorReportingGuard();
    /// Lets them through again when it was the last guard of the thread. To be destroyed on the thread that made it.
    ~DisableErrorReportingGuard();
    DisableErrorReportingGuard(const DisableErrorReportingGuard&) = delete;
    DisableErrorReportingGuard& operator=(const DisableErrorReportingGuard&) = delete;

    /// Whether a guard lives on this thread.
    static bool IsErrorReportingDisabled();
};

/// Prints one line of diagnosis to standard error.
DATAMODEL_EXPORT void PrintDebugString(const char* in_text);

/// Reports unless reporting is disabled, then throws ExBase::NullPtr.
/// \param in_interface the interface's qualified name
[[noreturn]] DATAMODEL_EXPORT void ThrowNullPtr(const char* in_interface);

class IDataModelMgr;
class IDatabase;
class IDataSource;
class IDbObject;
class IHelper;
class ITypeAsset;
class IValueAsset;

/// The qualified name of a database interface, for messages.
template <class T> const char* InterfaceName();
/// \cond the same for each interface
template <> inline const char* InterfaceName<IDataModelMgr>()
{
    return "nexa4::IDataModelMgr";
}
template <> inline const char* InterfaceName<IDatabase>()
{
    return "nexa4::IDatabase";
}
template <> inline const char* InterfaceName<IDataSource>()
{
    return "nexa4::IDataSource";
}
template <> inline const char* InterfaceName<IDbObject>()
{
    return "nexa4::IDbObject";
}
template <> inline const char* InterfaceName<IHelper>()
{
    return "nexa4::IHelper";
}
template <> inline const char* InterfaceName<ITypeAsset>()
{
    return "nexa4::ITypeAsset";
}
template <> inline const char* InterfaceName<IValueAsset>()
{
    return "nexa4::IValueAsset";
}
/// \endcond

/// What all counted pointers share: the pointee and checked access to it.
template <class T> class NEXAPtrBase
{
public:
    /// The pointee. When there is none, throws ExBase::NullPtr. Prints its message first with PrintDebugString(),
    /// unless error reporting is disabled. The message names this function for T, this header, and line 102 whatever
    /// the real line is: people search their logs for it.
    T* GetPointeeNotNull() const
    {
        if (!m_pointee)
            ThrowNullPtr(InterfaceName<T>());
        return m_pointee.get();
    }

protected:
    NEXAPtrBase() = default;
    /// Shares the pointee; null is allowed.
    explicit NEXAPtrBase(std::shared_ptr<T> in_pointee) : m_pointee(std::move(in_pointee)) {}
    ~NEXAPtrBase() = default;
    NEXAPtrBase(const NEXAPtrBase&) = default;
    NEXAPtrBase(NEXAPtrBase&&) = default;
    NEXAPtrBase& operator=(const NEXAPtrBase&) = default;
    NEXAPtrBase& operator=(NEXAPtrBase&&) = default;

    std::shared_ptr<T> m_pointee; ///< null in a null pointer
};

/// A counted pointer to a database interface. Two are equal when they have the same pointee.
template <class T> class NEXAPtr : public NEXAPtrBase<T>
{
public:
    /// The null pointer.
    NEXAPtr() = default;
    /// Shares the pointee; null is allowed. Made by implementations.
    explicit NEXAPtr(std::shared_ptr<T> in_pointee) : NEXAPtrBase<T>(std::move(in_pointee)) {}

    /// False for the null pointer.
    bool IsValid() const { return this->m_pointee != nullptr; }

    /// The pointee. Throws ExBase::NullPtr when there is none.
    T* operator->() const { return this->GetPointeeNotNull(); }

    /// Equal when the pointee is the same object. Null pointers are equal.
    friend bool operator==(const NEXAPtr& in_left, const NEXAPtr& in_right)
    {
        return in_left.m_pointee == in_right.m_pointee;
    }
    /// The opposite of operator==().
    friend bool operator!=(const NEXAPtr& in_left, const NEXAPtr& in_right) { return !(in_left == in_right); }
};

} // namespace nexa4
