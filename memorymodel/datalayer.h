// SPDX-License-Identifier: MIT
/// The whole data layer in memory: what a host without a data layer of its own embeds, and what tests run against.
#pragma once

#include "datamodel/provider.h"
#include "memorymodel/commandmanager.h"
#include "memorymodel/export.h"
#include "memorymodel/library.h"
#include "memorymodel/sourcecontrol.h"

#include <functional>
#include <memory>
#include <string>

namespace memorymodel
{

/// A complete implementation of the boundary. Making one installs it. Destroying the one that is installed puts back
/// what was installed before it. It must outlive every browser that works on its libraries. It keeps pixmaps, so it
/// must be destroyed before the QApplication.
///
///     memorymodel::DataLayer layer;
///     memorymodel::Library& library = layer.AddLibrary("Nodes");
///     library.Add(NewItem::Compound("Blend").Tags("color;mix"));
///     browser.SetItemLibrary(library.GetAccessor());
///     browser.SetCommandManager(&layer.GetCommandManager());
///
/// All libraries of a data layer share one object database. Its objects move between the sources of their own library
/// with the application's command manager: one command each, and the library's observers get LibraryInvalidated().
///
/// One thread: the user interface's.
class MEMORYMODEL_EXPORT DataLayer
{
public:
    /// Makes a data layer without libraries and installs it.
    DataLayer();
    /// Closes all libraries and notifies the slots of its properties manager of the end.
    ~DataLayer();
    DataLayer(const DataLayer&) = delete;
    DataLayer& operator=(const DataLayer&) = delete;

    /// Makes this the installed data layer again after another one had its turn.
    void Install();

    /// Makes an empty library. It lives until RemoveLibrary() or until the data layer dies.
    Library& AddLibrary(std::string in_name);

    /// Closes a library (see Library::Close()) and destroys it, also from inside one of its notifications. Accessors,
    /// handles, commands and requests that are left over are invalid and do no harm.
    void RemoveLibrary(Library& in_library);

    /// The library that the service "NEXADBProxy" hands out. Null for none, as at first.
    void SetCurrentLibrary(Library* in_library);

    /// The application's command manager: what vireo::datamodel::GetApplicationCommandManager() returns.
    CommandManager& GetCommandManager();

    /// The switches and states of source control.
    SourceControl& GetSourceControl();

    /// Replaces a service, or takes it away (null). At first "RevisionControlUIHelper",
    /// "RevisionControlPropertiesMgr" and "NEXADBProxy" are there. The service stays the caller's.
    void SetService(const std::string& in_name, hmx::IBase* in_service);
    /// Puts the data layer's own service of that name back.
    void RestoreService(const std::string& in_name);
    /// Whether hmxGetSystem() answers at all (true at first).
    void SetSystemPresent(bool in_present);

    /// The compound that the application edits; invalid for none, and for one that is gone.
    vireo::datamodel::ItemID GetCompoundTarget() const;
    /// The compound that the target is shown inside of; invalid when it is shown by itself.
    vireo::datamodel::ItemID GetCompoundTargetRoot() const;
    /// Called after each setting of the target, also when it is the same one again.
    void SetCompoundTargetHandler(std::function<void()> in_handler);

private:
    class Implementation;
    std::unique_ptr<Implementation> m_private;
};

} // namespace memorymodel
