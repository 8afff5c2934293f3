// SPDX-License-Identifier: MIT
/// The browser of a node library: search it, scroll it, select in it, drag out of it.
#pragma once

#include "datamodel/item.h"
#include "datamodel/itemlibrary.h"
#include "datamodel/notifications.h"
#include "datamodel/revisioncontrol.h"
#include "nodebrowser/export.h"

#include <QPoint>
#include <QString>
#include <QWidget>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>

class QMenu;

/// Which of its two forms a browser takes.
enum eConfigType : int
{
    eConfigNodeBrowser = 0,  ///< the full browser, with the tabs "Nodes", "Types", "All"
    eConfigTypeSelector = 1, ///< types only: no tabs, no context menu. Any value but 0 means this one.
};

/// A panel that lists the items of one item library as rows of an icon and a name, below a search field.
///
/// A host creates it, puts it anywhere it puts widgets, attaches a library and a command manager, and listens to
/// SelectionChanged():
///
///     CNodeBrowser* browser = new CNodeBrowser(eConfigNodeBrowser);
///     browser->SetItemLibrary(library);
///     browser->SetCommandManager(vireo::datamodel::GetApplicationCommandManager());
///     connect(browser, SIGNAL(SelectionChanged()), this, SLOT(ShowSelection()));
///
/// The data layer must be installed before the first browser is made and must outlive the last one. The browser holds
/// copies of accessors. It observes the library and its table of contents until it dies or gets another library. It owns
/// no data: it changes items only through the data layer, whose notifications it follows like every other observer.
///
/// Cost: a change of the items, a key stroke or a tab only raises a flag and requests a repaint. Tags and states of single
/// items are read at once. The next paint does the rest: it rebuilds the item list if items changed (one pass over the
/// library, one sort of the names), searches what that build read if the search or the list changed, and draws the rows in
/// sight, with one name look-up each. A hidden browser does nothing.
///
/// A search reads the names and tags, and whether a compound is a signature, as the last build read them; rows draw the
/// names of the moment. So the data layer announces each new name by ItemNameChanged(), and each compound that becomes or
/// ceases to be a signature by LibraryInvalidated(). State icons are composed once for each look (kind, state, flags) and
/// build. At most 4,000 characters of a name are drawn.
///
/// A data layer must neither run the event loop nor change the library inside a read. Where one does, the browser may show
/// stale or repeated rows until the next rebuild: no build starts while another one runs, and a library that is attached
/// meanwhile is read at the next paint.
///
/// For people: a row is dragged out for copying, see nodebrowser/dragformat.h. A double click makes a compound the
/// application's compound target. Hovering over a compound shows its source-control tool tip. For hosts:
/// OnCheckOutItem() and OnMakeItemWritable() are slots to connect to, in the string form, from a menu or a tool bar of the
/// host. The browser has no size of its own.
///
/// Services used when there: "RevisionControlUIHelper" and "RevisionControlPropertiesMgr". What the data layer throws
/// passes through uncaught. Delete a browser with deleteLater() from slots of its signal and during drags.
///
/// Use it on the thread of the user interface only.
class NODEBROWSER_EXPORT CNodeBrowser : public QWidget,
                                        public vireo::datamodel::IItemTOCNotification,
                                        public vireo::datamodel::IItemLibraryNotification,
                                        private IRevisionControlPropertiesMgr_Slot
{
    Q_OBJECT

public:
    /// A browser without a parent and without a library, which shows nothing.
    explicit CNodeBrowser(eConfigType in_config);
    ~CNodeBrowser() override;

    /// Attaches a library in the place of the one before. The item list is built at once, the rows follow at the next
    /// paint. An invalid library empties the list at the next paint, but requests none. The selected row keeps its number.
    void SetItemLibrary(const vireo::datamodel::ItemLibraryAccessor& in_library);

    /// The command manager that all changes are made with; null, as at first, makes them without undo. It stays the
    /// host's and must outlive the browser or be replaced before it dies.
    void SetCommandManager(hmx::fwk::ICommandManager* in_commands);
    hmx::fwk::ICommandManager* GetCommandManager() const;

    /// The selected item; the invalid identity when no row is selected. The selection is a row, not an item: after a
    /// change of the search or the library the same row may hold another item, or none. Until the paint after
    /// SetItemLibrary(), old rows resolve against the new list.
    vireo::datamodel::ItemID GetSelection();

    /// Whether the selected item is a type.
    bool IsSelectionType();

    /// The commands that a host can put into menus of its own.
    enum eMenuCommand
    {
        eNewSignature = 0,     ///< "Compound signature"
        eNewCompound = 1,      ///< "Public compound"
        eNewLoopCompound = 2,  ///< "Public looping compound"
        eSaveGraphLibrary = 3, ///< "Save graph library"
    };

    /// Appends the action of a command to a menu, which owns it. It is always enabled and acts on the library that the
    /// browser has when it is triggered. Any other value adds nothing.
    void CreateMenuCommand(eMenuCommand in_command, QMenu* in_menu);

Q_SIGNALS:
    /// The user picked a row: by a left press, by a right press once its menu has closed, or by Enter in the search
    /// field. Sent also for the row that was selected before, and by Enter when there are no rows: ask GetSelection() for
    /// what is selected. Never sent when the selection is lost or the rows change.
    void SelectionChanged();

protected Q_SLOTS:
    void SliderValueChanged(int value);
    void SearchTextChange(const QString& text);
    void EnterPressed();
    void TabChanged(int index);
    void OnNewSignature();
    void OnNewCompound();
    void OnNewLoopCompound();
    void OnSaveGraphLibrary();
    void ClearButton(bool in_bChecked);
    virtual void OnRenameItem();
    virtual void OnDeleteItem();
    virtual void OnCheckOutItem();
    virtual void OnMakeItemWritable();
    virtual void OnShowItemFiles();
    virtual void OnEditItemTags();
    virtual void OnDatasourceChange();

protected:
    /// The rows as the last paint laid them out, for a derived browser that reports on them. A row that is not there has an
    /// invalid accessor and no tags.
    std::size_t GetRowCount() const;
    vireo::datamodel::ItemAccessor GetRowItem(std::uint64_t in_row) const;
    /// The tags of an item as the search sees them: its own and the name of its type.
    std::set<std::string> GetSearchTags(const vireo::datamodel::ItemID& in_item) const;
    /// The items that have a tag, as the search sees them; none for the empty tag.
    std::set<vireo::datamodel::ItemID> GetTaggedItems(const std::string& in_tag) const;

    /// Whether an item passes the tab and the search text, and how relevant it is: the lower the score, the more.
    /// \param out_score written only when the item passes
    bool CompareToFilter(vireo::datamodel::ItemAccessor& in_item, std::size_t* out_score) const;

    /// Opens the context menu of a row, which becomes the selected one.
    /// \param in_position in screen pixels
    virtual void PopContexMenu(const QPoint& in_position, std::size_t in_row);

    bool event(QEvent* in_event) override;
    void paintEvent(QPaintEvent* in_event) override;
    void resizeEvent(QResizeEvent* in_event) override;
    void mousePressEvent(QMouseEvent* in_event) override;
    void mouseMoveEvent(QMouseEvent* in_event) override;
    void mouseDoubleClickEvent(QMouseEvent* in_event) override;

private:
    void ItemAdded(vireo::datamodel::ItemAccessor& in_item) override;
    void ItemRemoved(vireo::datamodel::ItemAccessor& in_item) override;
    void OnBeginChanges(vireo::datamodel::ItemLibraryAccessor& in_library) override;
    void OnEndChanges(vireo::datamodel::ItemLibraryAccessor& in_library) override;
    void LibraryInvalidated(vireo::datamodel::ItemLibraryAccessor& in_library) override;
    void ItemNameChanged(vireo::datamodel::ItemLibraryAccessor& in_library,
                         const vireo::datamodel::ItemID& in_item) override;
    void ItemTagsChanged(vireo::datamodel::ItemLibraryAccessor& in_library, const vireo::datamodel::ItemID& in_item,
                         const char* in_key) override;
    void ItemAccessStateChanged(vireo::datamodel::ItemLibraryAccessor& in_library,
                                const vireo::datamodel::ItemID& in_item, long in_state) override;
    void OnPreCommit(vireo::datamodel::ItemLibraryAccessor& in_library, bool* out_veto) override;
    void OnPostCommit(vireo::datamodel::ItemLibraryAccessor& in_library) override;
    void OnRevisionControlPropertiesChange(IRevisionControlPropertiesMgr* in_manager) override;

    struct Private;
    const std::unique_ptr<Private> m_private;
};
