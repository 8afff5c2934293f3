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
/// Cost:
///   - A change of the items, a key stroke or another tab only raises a flag and requests a repaint. ItemAdded() and
///     ItemRemoved() raise their flag before anything else. However many of them come between two paints, the browser
///     remembers no more than after one. A hidden browser does nothing else, but for one look for removed items when
///     the event loop goes on.
///   - The next paint does the rest. It builds the item list again if items changed: one pass over the library and one
///     sort of the names. It searches if the list, the search text or the tab changed; the search reads what the build
///     kept. Then it draws the rows in sight, and reads the name and the dirty mark of each.
///   - A notified change of tags or of a source-control state reads and updates that one item at once.
///   - A repaint request covers the rectangle of the list, or the whole widget when no part of the list is visible.
///   - State icons are composed once for each look (kind, state, flags) and build.
///
/// What a data layer must do:
///   - It is installed before the first browser is made and outlives the last one.
///   - It announces each new name by ItemNameChanged(), and each compound that becomes or ceases to be a signature by
///     LibraryInvalidated(). A search reads names, tags and signatures as the last build read them. Rows draw the names
///     of the moment.
///   - It neither runs the event loop nor changes the library inside a read. Otherwise the browser may show stale or
///     repeated rows until the next build. It starts no build while another one runs; a library that is attached
///     meanwhile is read at the next paint.
///   - It may throw. The browser catches nothing.
///   - It may offer the services "RevisionControlUIHelper" and "RevisionControlPropertiesMgr". The browser uses them
///     when they are there.
///
/// For people:
///   - A row can be dragged out for copying, see nodebrowser/dragformat.h.
///   - A double click on a compound makes it the application's compound target.
///   - The tool tip of a compound shows its source-control state. Other rows have none.
///   - A right press opens the context menu of the row. A menu without entries is executed too: Qt 5.15 and 6.4 show an
///     empty frame; from Qt 6.8 on the toolkit shows nothing.
///   - The wheel scrolls by three rows, however far it turned. A wheel event that only begins or ends a touch-pad
///     gesture, without a turn, does nothing. A delta of zero without a phase scrolls down.
///   - At most 4,000 characters of a name are drawn.
///
/// For hosts:
///   - The browser holds copies of accessors and no data of its own. It observes the library and its table of contents
///     until it dies or gets another library. It changes items only through the data layer, and follows the
///     notifications like every other observer.
///   - A creation, tag or save command works on the library that was attached when it began, even if the host attaches
///     another one while the dialog is open.
///   - OnCheckOutItem() and OnMakeItemWritable() have no entry in the context menu. A host connects its own actions to
///     these slots, in the string form.
///   - OnDatasourceChange() does nothing when its sender is not an action.
///   - The browser has no preferred size.
///   - Delete it with deleteLater() in slots of its signal and during drags.
///   - Use it on the thread of the user interface only.
class NODEBROWSER_EXPORT CNodeBrowser : public QWidget,
                                        public vireo::datamodel::IItemTOCNotification,
                                        public vireo::datamodel::IItemLibraryNotification,
                                        private IRevisionControlPropertiesMgr_Slot
{
    Q_OBJECT

public:
    /// A browser without a parent and without a library, which shows nothing.
    explicit CNodeBrowser(eConfigType in_config);
    /// Ends its observation. Commands that wait for a dialog end without a change.
    ~CNodeBrowser() override;

    /// Attaches a library instead of the one before. The item list is built at once; the rows follow at the next paint.
    /// An invalid library empties the list at the next paint, but requests none. The selected row stays the same row.
    void SetItemLibrary(const vireo::datamodel::ItemLibraryAccessor& in_library);

    /// The command manager that all changes are made with; null, as at first, makes them without undo. It stays the
    /// host's and must outlive the browser or be replaced before it dies.
    void SetCommandManager(hmx::fwk::ICommandManager* in_commands);
    /// The command manager that was set last; null for none.
    hmx::fwk::ICommandManager* GetCommandManager() const;

    /// The selected item; the invalid identity when no row is selected. The selection is a row, not an item. After a
    /// change of the search or the library the same row may hold another item, or none. Until the paint that follows
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

    /// Appends the action of a command to a menu, which owns the action. The action is always enabled. When it is
    /// triggered, the command works on the library that is attached at that moment. Any other value adds nothing.
    void CreateMenuCommand(eMenuCommand in_command, QMenu* in_menu);

Q_SIGNALS:
    /// The user picked a row: by a left press, by a right press once its menu has closed, or by Enter in the search
    /// field. It is also sent for the row that was selected before, and by Enter when there are no rows: GetSelection()
    /// tells what is selected. It is never sent because the selection is lost or the rows change.
    void SelectionChanged();

protected Q_SLOTS:
    /// \name The header
    /// What the browser's own scroll bar, search field and tabs call. The rows follow at the next paint.
    /// \{

    /// Scrolls to where the scroll bar stands. The argument is not used.
    void SliderValueChanged(int value);
    /// Searches for a text, see docs/searching.md.
    void SearchTextChange(const QString& text);
    /// Emits SelectionChanged(). Selects the first row before, when no row is selected.
    void EnterPressed();
    /// Shows other kinds of item: 0 nodes, 1 types, 2 all, 3 signatures, 4 global constants. Any other value shows
    /// none.
    void TabChanged(int index);
    /// \}

    /// \name Commands on the library
    /// What the actions of CreateMenuCommand() call. They pass the command manager on.
    /// \{

    /// Asks for a name and makes a signature, which becomes the application's compound target.
    void OnNewSignature();
    /// Asks for a name and a signature and makes a compound, which becomes the application's compound target.
    void OnNewCompound();
    /// Like OnNewCompound(), for a compound whose graph runs in a loop.
    void OnNewLoopCompound();
    /// Saves what has changed in the library. Shows no message: a host that reports failures saves by itself.
    void OnSaveGraphLibrary();
    /// \}

    /// Empties the search field, for the browser's own clear button. The argument is not used.
    void ClearButton(bool in_bChecked);

    /// \name Commands on the selected row
    /// What the context menu calls. A derived browser may do something else instead. Each looks the row up again, and
    /// does nothing when there is no such row any more. Those that need a service do nothing without it, or when it
    /// does not know the item's object.
    /// \{

    /// Asks for a name and renames the compound.
    virtual void OnRenameItem();
    /// Does nothing: the menu shows "Delete" disabled. A derived browser has to open a menu of its own to use it.
    virtual void OnDeleteItem();
    /// Checks the item's object out, through the service "RevisionControlUIHelper". Not in the menu.
    virtual void OnCheckOutItem();
    /// Makes the item's object writable, through the same service. Not in the menu.
    virtual void OnMakeItemWritable();
    /// Shows the files of the item's object, through the same service.
    virtual void OnShowItemFiles();
    /// Shows the item's tags, and writes them if the user changed them.
    virtual void OnEditItemTags();
    /// Moves the compound to the data source of the menu entry that sent the signal. Does nothing for another sender.
    virtual void OnDatasourceChange();
    /// \}

protected:
    /// How many rows the last paint laid out, those out of sight included. For a derived browser that reports on them.
    std::size_t GetRowCount() const;
    /// The item of a row; an invalid accessor for a row that does not exist.
    vireo::datamodel::ItemAccessor GetRowItem(std::uint64_t in_row) const;
    /// The tags of an item as the search sees them: its own and the name of its type.
    std::set<std::string> GetSearchTags(const vireo::datamodel::ItemID& in_item) const;
    /// The items that have a tag, as the search sees them; none for the empty tag.
    std::set<vireo::datamodel::ItemID> GetTaggedItems(const std::string& in_tag) const;

    /// Whether an item passes the tab and the search text, and how relevant it is: a lower score is more relevant.
    /// \param out_score written only when the item passes
    bool CompareToFilter(vireo::datamodel::ItemAccessor& in_item, std::size_t* out_score) const;

    /// Opens the context menu of a row, which becomes the selected one.
    /// \param in_position in screen pixels
    virtual void PopContexMenu(const QPoint& in_position, std::size_t in_row);

    /// \name Events
    /// A derived browser that overrides one of them calls it, or loses what it does.
    /// \{

    /// Tool tips and the wheel.
    bool event(QEvent* in_event) override;
    /// Does the work that was left to this paint, then draws the rows in sight.
    void paintEvent(QPaintEvent* in_event) override;
    /// Arranges the header and the scroll bar.
    void resizeEvent(QResizeEvent* in_event) override;
    /// Selects, and opens the context menu. Does not call QWidget::mousePressEvent().
    void mousePressEvent(QMouseEvent* in_event) override;
    /// Starts a drag of the selected row.
    void mouseMoveEvent(QMouseEvent* in_event) override;
    /// Makes a compound the application's compound target.
    void mouseDoubleClickEvent(QMouseEvent* in_event) override;
    /// \}

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
