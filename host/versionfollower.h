// SPDX-License-Identifier: MIT
/// What the window does about version control, besides its menu.
#pragma once

#include "datamodel/itemtoc.h"
#include "host/silentobserver.h"

#include <QObject>
#include <QString>

class QMainWindow;

namespace memorymodel
{
class DataLayer;
class Library;
} // namespace memorymodel

namespace workspace
{
class Versions;
}

namespace host
{

class LibraryBrowser;

/// What git has of a library. Null for one in memory. It is there until the library is closed.
workspace::Versions* FindVersions(const memorymodel::Library& in_library);

/// Waits until the states that were asked for are known, for pictures.
void WaitForStates(const memorymodel::Library& in_library);

/// Lets git be asked from now on. Shows what cannot be done, and why a repository cannot be read. Completes a tool tip
/// that is open when the last commit becomes known. Lets the browser ask for the states anew after changes for which it
/// builds its list: what it builds has none. Does nothing for a library in memory.
class VersionFollower final : public QObject, private SilentObserver, private vireo::datamodel::IItemTOCNotification
{
    Q_OBJECT

public:
    /// The library may go first; the others stay longer than this object.
    VersionFollower(memorymodel::DataLayer& in_layer, const memorymodel::Library& in_library,
                    LibraryBrowser& in_browser, QMainWindow& in_window);
    ~VersionFollower() override;

private Q_SLOTS:
    void OnStatesRead();
    void OnHistoryRead();
    void OnRefused(const QString& in_reason);

private:
    using ItemAccessor = vireo::datamodel::ItemAccessor;

    void OnEndChanges(ItemLibraryAccessor&) override;
    void LibraryInvalidated(ItemLibraryAccessor&) override { m_isRebuilt = true; }
    void ItemNameChanged(ItemLibraryAccessor&, const ItemID&) override { m_isRebuilt = true; }
    void ItemAdded(ItemAccessor&) override { m_isRebuilt = true; }
    void ItemRemoved(ItemAccessor&) override { m_isRebuilt = true; }

    memorymodel::DataLayer& m_layer;
    LibraryBrowser& m_browser;
    QMainWindow& m_window;
    const ItemLibraryAccessor m_library;
    const vireo::datamodel::ItemTOCAccessor m_contents;
    workspace::Versions* const m_versions; ///< only compared after the library has gone
    QString m_problem;                     ///< the last one that was shown
    bool m_isRebuilt = false;
};

} // namespace host
