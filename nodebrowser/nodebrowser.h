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
#include <list>
#include <memory>
#include <set>
#include <string>
#include <vector>

class BrowserItem;
class ItemNumbers;
class QAction;
class QHelpEvent;
class QLineEdit;
class QMenu;
class QPainter;
class QPushButton;
class QScrollBar;
class QTabBar;
class RowTexts;
class ScsTask;
class SearchIndex;
class StateIcons;
class TagIndex;
struct RowLayout;

/// Which of its two forms a browser takes.
enum eConfigType : int
{
    eConfigNodeBrowser = 0,  ///< the full browser, with the tabs "Nodes", "Types", "All"
    eConfigTypeSelector = 1, ///< types only: no tabs, no context menu; so does every other value but 0
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
/// copies of accessors, observes the library and its table of contents until it dies or gets another library, and never
/// owns data: it changes items only through the data layer, which tells it of the change like everybody else.
///
/// Cost: a change of the items, a key stroke or a tab only raises a flag and asks for a repaint; tags and states of single
/// items are taken in at once. The next paint rebuilds the item list if items changed (one pass over the library, and one
/// sort of the names), searches the names and tags prepared then if the search or the list changed (the data layer is
/// asked for nothing), and draws the rows in sight, with a name look-up each. While it is hidden nothing is done. It holds
/// about 300 bytes an item.
///
/// For people: a row is dragged out as "vireo/toc.key" data, one QString in a QDataStream with the item's
/// ItemID::Serialize(), for copying only. A double click makes a compound the application's compound target. Hovering
/// over a compound shows its source-control tool tip. For hosts: OnCheckOutItem() and OnMakeItemWritable() are slots to
/// connect to, in the string form, from a menu or a tool bar of the host. The browser has no size of its own.
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

    /// Attaches a library in the place of the one before; the item list is built at once, the rows follow at the next
    /// paint. An invalid library is accepted and shows nothing from the next paint on, which it does not ask for. The row
    /// selected before stays selected by its number.
    void SetItemLibrary(const vireo::datamodel::ItemLibraryAccessor& in_library);

    /// The command manager that all changes are made with; null, as at first, makes them without undo. It stays the
    /// host's and must outlive the browser or be replaced before it dies.
    void SetCommandManager(hmx::fwk::ICommandManager* in_commands);
    hmx::fwk::ICommandManager* GetCommandManager() const;

    /// The selected item; the invalid identity when no row is selected. The selection is a row, not an item: after a
    /// change of the search or the library the same row may hold another item, or none, and between SetItemLibrary() and
    /// the next paint the rows before are numbers into the new list.
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
    /// The rows as the last paint laid them out, for a derived browser that reports on them. An invalid accessor and no
    /// tags for a row that is not there.
    std::size_t GetRowCount() const { return m_visibleItems.size(); }
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
    using ObjectHandles = std::list<nexa4::NEXAHandle<nexa4::IDbObject>>;

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

    void CreateHeader();
    void ConnectHeader();
    void ConnectRevisionControl();
    void StopObserving();

    void RequestRebuild();
    void RefreshItems();
    void BuildAllItemList(ObjectHandles* out_handles);
    void AppendItems(const char* in_type, ObjectHandles* out_handles);
    void ForgetItemsThatLeft();
    std::string ReadSearchTags(const vireo::datamodel::ItemID& in_item) const;

    void SetSourceControlEnabled(bool in_enabled);
    bool isSourceControlEnabled() const { return m_sourceControlEnabled; }
    bool IsVersioningShown() const;

    void UpdateVisibleItems();
    std::vector<std::uint64_t> FilterItemByItem() const;
    void UpdateList();
    void UpdateScrollbar();
    RowLayout GetRowLayout() const;
    std::size_t GetItemIndexAt(const QPoint& in_point) const;
    const BrowserItem* FindRow(std::uint64_t in_row) const;

    void DrawRow(QPainter& in_painter, const RowLayout& in_layout, std::size_t in_row);
    QAction* AddAction(QMenu& out_menu, const QString& in_text, const char* in_slot);
    void FillContextMenu(QMenu& out_menu, const vireo::datamodel::ItemID& in_item);
    void FillDataSourceMenu(QMenu& out_menu, const nexa4::NEXAHandle<nexa4::IDbObject>& in_compound);
    void CreateCompound(const char* in_kindWord, bool in_signature);
    bool FindSelectedObject(nexa4::IRevisionControlUIHelper*& out_helper,
                            nexa4::NEXAHandle<nexa4::IDbObject>& out_object) const;

    void ShowToolTip(QHelpEvent& in_event);
    bool ScrollByWheel(const QWheelEvent& in_event);

    std::list<RevisionControlConnection> m_revisionControlConnections;
    bool m_statesStale = true;
    hmx::fwk::ICommandManager* m_commandManager = nullptr;
    vireo::datamodel::ItemLibraryAccessor m_library;
    vireo::datamodel::ItemTOCAccessor m_toc;
    QScrollBar* m_scrollBar = nullptr;
    QLineEdit* m_searchField = nullptr;
    QPushButton* m_clearButton = nullptr;
    QTabBar* m_tabBar = nullptr;
    int m_filterMode = -1;
    int m_listTop = 0;
    ScsTask* m_scsTask = nullptr;
    bool m_sourceControlEnabled = false;
    std::set<std::string> m_searchWords; // the lowered search text, split once per key stroke
    bool m_relayoutNeeded = false;
    bool m_rebuildNeeded = false;
    int m_contentHeight = 0;
    std::unique_ptr<RowTexts> m_rowTexts;
    QPoint m_dragStart;
    std::uint64_t m_selectedRow; // not below the number of rows: none
    int m_scrollOffset = 0;
    std::vector<std::uint64_t> m_visibleItems; // places in the display order of the item list
    // The item list, in the library's order; what follows goes by the numbers that the items have in it.
    std::vector<BrowserItem> m_items;
    std::unique_ptr<StateIcons> m_icons;
    std::unique_ptr<ItemNumbers> m_itemNumbers;
    std::set<vireo::datamodel::ItemID> m_leavingItems; // told to leave, but not seen to be gone
    std::unique_ptr<TagIndex> m_tagIndex;
    std::unique_ptr<SearchIndex> m_searchIndex;
    const eConfigType m_config;
};
