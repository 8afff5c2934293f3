// SPDX-License-Identifier: MIT
/// What the boundary needs of the application's framework: services looked up by name, and undo.
#pragma once

#include "datamodel/export.h"

namespace vireo
{
namespace datamodel
{
class ItemLibraryAccessor;
}
} // namespace vireo

namespace hmx
{

/// The base of every service. Callers cast it at run time to the interface that they want. A service without that
/// interface counts as absent.
class DATAMODEL_EXPORT IBase
{
public:
    virtual ~IBase() = default;
};

/// The host application.
class DATAMODEL_EXPORT ISystem
{
public:
    virtual ~ISystem() = default;
    /// The service with a name; null when there is none. It belongs to the system. Callers look it up again for each
    /// use, since services come and go.
    virtual IBase* GetService(const char* in_name) = 0;
};

namespace fwk
{

/// The host's undo stack. Callers pass it to the operations that change data, and never look inside. The data layer
/// that receives it knows how to add a command.
class DATAMODEL_EXPORT ICommandManager
{
public:
    virtual ~ICommandManager() = default;
};

/// The service "NEXADBProxy": the application's connection to its database.
class DATAMODEL_EXPORT INEXADBProxy : public IBase
{
public:
    /// The library that the application works on; an invalid accessor when it has none.
    virtual vireo::datamodel::ItemLibraryAccessor GetItemLibrary() = 0;
};

} // namespace fwk
} // namespace hmx

/// The system; null when there is none, and then every service is absent.
DATAMODEL_EXPORT hmx::ISystem* hmxGetSystem();

/// Looks a service up by name and casts it; null when it is absent. Costs the system's look-up and one run-time cast.
template <class Service> Service* hmxGetService(const char* in_name)
{
    hmx::ISystem* const system = hmxGetSystem();
    return system ? dynamic_cast<Service*>(system->GetService(in_name)) : nullptr;
}
