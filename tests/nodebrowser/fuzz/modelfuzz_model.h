// SPDX-License-Identifier: MIT
/// What a browser must be like, worked out a second time from plain rules and from what the library says.
#pragma once

#include "datamodel/helpers.h"
#include "datamodel/itemlibrary.h"
#include "datamodel/itemtoc.h"
#include "datamodel/notifications.h"
#include "datamodel/sourcecontrol.h"
#include "tests/nodebrowser/fuzz/modelfuzz_world.h"
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/pictures.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QPoint>
#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

/// Follows the same events as the browser beside it, in the same order: it must be attached right after the browser,
/// and be told of a paint, a press and so on right before the browser. It keeps no rows of its own where the order is
/// open: among equal names it takes over the browser's order, after it has compared the rest.
class PlainModel : private vireo::datamodel::IItemTOCNotification, private vireo::datamodel::IItemLibraryNotification
{
public:
    using ItemID = vireo::datamodel::ItemID;
    using ItemAccessor = vireo::datamodel::ItemAccessor;
    using Tags = std::set<std::string>;

    struct Record
    {
        ItemAccessor m_item;
        std::string m_name; ///< when the list was built, folded
        const char* m_type = nullptr;
        bool m_signature = false;
        bool m_readOnly = false;
        bool m_factory = false;
        bool m_controlled = false;
        unsigned m_state = 0;
        bool m_badged = false; ///< whether versioning was shown when the icon was composed
    };

    PlainModel(World& in_world, bool in_tabs)
        : m_world(in_world), m_listTop(in_tabs ? gBrowserTop : gListTop), m_mode(in_tabs ? 0 : 1)
    {
        m_connected = m_world.HasSystem();
        PropertiesChanged();
    }
    ~PlainModel() override
    {
        StopObserving();
        delete m_removal;
    }
    PlainModel(const PlainModel&) = delete;
    PlainModel& operator=(const PlainModel&) = delete;

    // What happens to the browser.

    void Attach(const vireo::datamodel::ItemLibraryAccessor& in_library)
    {
        StopObserving();
        m_library = in_library;
        m_toc = GetTOC(m_library);
        m_library.AddObserver(this, vireo::datamodel::eItemLibraryNotificationKind, m_library.GetContext());
        m_toc.AddObserver(this, vireo::datamodel::eItemTOCNotificationKind, m_toc.GetContext());
        m_statesStale = true;
        BuildList(false);
    }

    void PropertiesChanged()
    {
        if (!m_connected)
            return;
        const bool enabled = m_world.IsEnabledByProperties() && m_world.IsVersionControlActive();
        if (enabled == m_enabled)
            return;
        m_enabled = enabled;
        if (enabled)
        {
            m_statesStale = true;
            m_paintDue = true;
            return;
        }
        for (Record& record : m_records)
            SetState(record, 0);
    }

    void SetMode(int in_mode)
    {
        m_mode = in_mode;
        m_relayoutNeeded = true;
        m_paintDue = true;
    }

    void SetText(const QString& in_text)
    {
        m_words = SplitWords(in_text);
        m_relayoutNeeded = true;
        m_paintDue = true;
    }

    void Resize(const QSize& in_size)
    {
        m_size = in_size;
        FitBar();
    }

    /// Moves the scroll bar, which keeps to its range.
    void ScrollTo(int in_value)
    {
        const int value = std::max(0, std::min(in_value, m_maximum));
        m_paintDue = m_paintDue || value != m_offset;
        m_offset = value;
    }

    void Wheel(const QPoint& in_position, int in_delta)
    {
        if (in_position.x() >= 0 && in_position.x() < m_size.width() && in_position.y() >= m_listTop &&
            in_position.y() < m_size.height())
            ScrollTo(m_offset + (in_delta > 0 ? -72 : 72));
    }

    /// \return whether the press picks a row
    bool Press(const QPoint& in_position, Qt::MouseButton in_button)
    {
        const int row = RowAt(in_position);
        const bool picks =
            row >= 0 && (in_button == Qt::LeftButton || (in_button == Qt::RightButton && m_listTop == gBrowserTop));
        m_selectedRow = picks ? row : -1;
        m_signals += picks ? 1 : 0;
        if (picks && in_button == Qt::LeftButton)
            m_dragStart = in_position;
        return picks;
    }

    void Enter()
    {
        if (m_selectedRow < 0 || m_selectedRow >= RowCount())
            m_selectedRow = 0;
        ++m_signals;
    }

    void Paint()
    {
        m_requested = false;
        m_relaidOut = false;
        if (m_rebuildNeeded || m_statesStale)
        {
            m_rebuildNeeded = false;
            m_requested = m_statesStale;
            m_statesStale = false;
            BuildList(m_requested);
        }
        if (m_relayoutNeeded)
            LayOut();
        m_paintDue = false;
    }

    /// Compares the rows that the browser has laid out in this paint, and takes over its order where that is open.
    /// \return what is wrong
    template <class Browser> QString TakeOver(Browser& in_browser)
    {
        if (!m_relaidOut)
            return QString();
        if (static_cast<int>(in_browser.GetRowCount()) != RowCount())
            return QString::fromLatin1("%1 rows instead of %2").arg(in_browser.GetRowCount()).arg(RowCount());
        for (int row = 0; row < RowCount(); ++row)
        {
            const ItemID id = in_browser.GetRowItem(static_cast<std::size_t>(row)).GetItemID();
            int other = row;
            while (other < RowCount() && AreEqual(m_rows[Index(row)], m_rows[Index(other)]) &&
                   RecordOf(other).m_item.GetItemID() != id)
                ++other;
            if (other == RowCount() || !AreEqual(m_rows[Index(row)], m_rows[Index(other)]))
                return QString::fromLatin1("row %1 holds another item than %2")
                    .arg(row)
                    .arg(QString::fromLatin1(RecordOf(row).m_name.c_str()));
            std::swap(m_rows[Index(row)], m_rows[Index(other)]);
        }
        return QString();
    }

    // What the browser must be like.

    bool IsPaintDue() const { return m_paintDue; }
    /// Whether the rows are older than the list or the search.
    bool IsPending() const { return m_rebuildNeeded || m_statesStale || m_relayoutNeeded; }
    bool IsRelayoutNeeded() const { return m_relayoutNeeded; }
    bool HasRequestedStates() const { return m_requested; }
    int GetSignalCount() const { return m_signals; }
    int GetOffset() const { return m_offset; }
    int GetMaximum() const { return m_maximum; }
    int GetPage() const { return m_page; }
    bool IsBarShown() const { return m_barShown; }
    int RowCount() const { return static_cast<int>(m_rows.size()); }
    QPoint GetDragStart() const { return m_dragStart; }
    const std::vector<Record>& GetRecords() const { return m_records; }

    /// -1 when there is no row.
    int RowAt(const QPoint& in_point) const
    {
        if (in_point.x() >= m_size.width() || in_point.y() <= m_listTop)
            return -1;
        const int row = (m_offset - m_listTop + in_point.y()) / gRowHeight;
        return row < RowCount() ? row : -1;
    }

    const Record& RecordOf(int in_row) const { return m_records[m_rows[Index(in_row)].m_record]; }

    bool HasSelectedRow() const { return m_selectedRow >= 0 && m_selectedRow < RowCount(); }

    ItemID GetSelection() const { return HasSelectedRow() ? RecordOf(m_selectedRow).m_item.GetItemID() : ItemID(); }

    Tags GetTags(const ItemID& in_item) const
    {
        const std::map<ItemID, Tags>::const_iterator found = m_tags.find(in_item);
        return found == m_tags.end() ? Tags() : found->second;
    }

    /// The items of every tag, for both ways of the index: no item is found by the empty tag.
    std::map<std::string, std::set<ItemID>> GetItemsByTag() const
    {
        std::map<std::string, std::set<ItemID>> items;
        for (const std::pair<const ItemID, Tags>& entry : m_tags)
            for (const std::string& tag : entry.second)
                if (!tag.empty())
                    items[tag].insert(entry.first);
        return items;
    }

    /// The items whose states were asked for by the last paint that asked.
    const std::set<ItemID>& GetRequested() const { return m_requestedItems; }

    bool IsShown(const Record& in_record, std::size_t& out_score) const
    {
        const ItemID id = in_record.m_item.GetItemID();
        const bool there = id.IsValid();
        if (!PassesMode(in_record, there))
            return false;
        const std::string name = Lower(m_library.GetItemName(id, true, nullptr));
        const std::size_t none = 10000;
        std::size_t score = m_words.empty() ? 0 : none;
        std::size_t index = 0;
        const Tags tags = GetTags(id);
        for (const std::string& word : m_words)
        {
            const std::size_t place = name.find(word);
            if (place == 0)
            {
                score = index;
                break;
            }
            if (place != std::string::npos)
                score = m_words.size() + index;
            else
                for (const std::string& tag : tags)
                    if (score == none && FoldAscii(tag).find(FoldAscii(word)) != std::string::npos)
                        score = 1000;
            ++index;
        }
        if (score != none)
            out_score = score;
        return score != none;
    }

    /// The browser's picture without its children, in the colours of UsePlainColours().
    QImage Draw(const QWidget& in_browser) const
    {
        QImage picture(in_browser.size(), QImage::Format_RGB32);
        picture.fill(in_browser.palette().color(QPalette::Window).rgb());
        QPainter painter(&picture);
        painter.setFont(in_browser.font());
        painter.setPen(in_browser.palette().color(QPalette::WindowText));
        painter.setClipRect(QRect(0, m_listTop, m_size.width(), m_size.height() - m_listTop));
        for (int row = 0; row < RowCount(); ++row)
        {
            const int top = m_listTop - m_offset + gRowHeight * row;
            if (top + gRowHeight > m_listTop && top < m_size.height())
                DrawRow(painter, in_browser, row, top);
        }
        return picture;
    }

private:
    struct Row
    {
        std::size_t m_score;
        std::size_t m_record;
    };

    /// Is deleted when the event loop goes on after a removal: a list that still has the item is rebuilt.
    class Removal : public QObject
    {
    public:
        explicit Removal(PlainModel& io_model) : m_model(io_model) { deleteLater(); }
        ~Removal() override
        {
            for (const Record& record : m_model.m_records)
                if (!record.m_item.IsValid())
                    m_model.RequestRebuild();
        }
        Removal(const Removal&) = delete;
        Removal& operator=(const Removal&) = delete;

    private:
        PlainModel& m_model;
    };

    void ItemAdded(ItemAccessor&) override { RequestRebuild(); }
    void ItemRemoved(ItemAccessor&) override
    {
        RequestRebuild();
        if (!m_removal)
            m_removal = new Removal(*this);
    }
    void OnBeginChanges(vireo::datamodel::ItemLibraryAccessor&) override {}
    void OnEndChanges(vireo::datamodel::ItemLibraryAccessor&) override {}
    void LibraryInvalidated(vireo::datamodel::ItemLibraryAccessor&) override { RequestRebuild(); }
    void ItemNameChanged(vireo::datamodel::ItemLibraryAccessor&, const ItemID&) override { RequestRebuild(); }
    void ItemTagsChanged(vireo::datamodel::ItemLibraryAccessor&, const ItemID& in_item, const char* in_key) override
    {
        if (std::strcmp(in_key, "ApplicationTags") == 0 && m_tags.count(in_item))
            m_tags[in_item] = ReadTags(in_item);
    }
    void ItemAccessStateChanged(vireo::datamodel::ItemLibraryAccessor&, const ItemID& in_item, long in_state) override
    {
        for (Record& record : m_records)
            if (record.m_item.GetItemID() == in_item)
            {
                if (SetState(record, static_cast<unsigned>(in_state)))
                    m_paintDue = true;
                return;
            }
    }
    void OnPreCommit(vireo::datamodel::ItemLibraryAccessor&, bool*) override {}
    void OnPostCommit(vireo::datamodel::ItemLibraryAccessor&) override {}

    static std::size_t Index(int in_row) { return static_cast<std::size_t>(in_row); }

    void StopObserving()
    {
        m_library.RemoveObserver(this, vireo::datamodel::eItemLibraryNotificationKind, m_library.GetContext());
        m_toc.RemoveObserver(this, vireo::datamodel::eItemTOCNotificationKind, m_toc.GetContext());
    }

    void RequestRebuild()
    {
        m_rebuildNeeded = true;
        m_paintDue = true;
    }

    bool SetState(Record& out_record, unsigned in_state)
    {
        if (out_record.m_state == in_state)
            return false;
        out_record.m_state = in_state;
        out_record.m_badged = IsVersioningShown();
        return true;
    }

    bool IsVersioningShown() const { return m_enabled && m_world.IsVersionControlActive(); }

    void BuildList(bool in_requestStates)
    {
        m_records.clear();
        m_tags.clear();
        m_relayoutNeeded = true;
        if (in_requestStates)
            m_requestedItems.clear();
        if (!m_toc.IsValid())
            return;
        using vireo::datamodel::VireoType;
        const char* const types[] = {vireo::datamodel::LibType::gType, VireoType::gSolver, VireoType::gGlobalConstant,
                                     VireoType::gCompound, VireoType::gPolymorphicSolver};
        for (const char* const type : types)
            for (vireo::datamodel::ItemIterator item = m_toc.IterateItems(type); !item.IsAtEnd(); item.Next())
                if (m_world.GetTraits(item.GetItem().GetItemID()).m_listed)
                    AddRecord(item.GetItem(), in_requestStates);
        m_paintDue = true;
    }

    void AddRecord(const ItemAccessor& in_item, bool in_requestState)
    {
        const ItemID id = in_item.GetItemID();
        const Traits traits = m_world.GetTraits(id);
        const memorymodel::DataSource* const source = m_world.GetSourceOf(id);
        Record record;
        record.m_item = in_item;
        record.m_name = FoldAscii(m_library.GetItemName(id, true, nullptr));
        record.m_type = id.GetType();
        record.m_signature = m_world.IsSignature(id);
        record.m_badged = IsVersioningShown();
        if (m_world.HasHelper() && traits.m_object)
        {
            record.m_readOnly = source->IsReadOnly();
            record.m_factory = m_world.IsFactorySource(source);
            if (!(record.m_readOnly && record.m_factory) && traits.m_loaded && traits.m_builtIn)
                record.m_readOnly = record.m_factory = true;
        }
        record.m_controlled = record.m_type == vireo::datamodel::VireoType::gCompound && !record.m_readOnly;
        if (in_requestState && m_world.HasHelper() && traits.m_uid && record.m_controlled)
        {
            record.m_state = 4194304;
            if (traits.m_object)
                m_requestedItems.insert(id);
        }
        m_records.push_back(record);
        m_tags[id] = ReadTags(id);
    }

    Tags ReadTags(const ItemID& in_item) const
    {
        Tags tags;
        const std::string joined = m_library.GetItemTags(in_item, "ApplicationTags");
        std::size_t begin = 0;
        while (!joined.empty() && begin != std::string::npos)
        {
            const std::size_t end = joined.find(';', begin);
            tags.insert(joined.substr(begin, end == std::string::npos ? end : end - begin));
            begin = end == std::string::npos ? end : end + 1;
        }
        tags.insert(in_item.GetType());
        return tags;
    }

    void LayOut()
    {
        m_relayoutNeeded = false;
        m_relaidOut = true;
        m_rows.clear();
        if (!m_toc.IsValid())
            return;
        for (std::size_t i = 0; i < m_records.size(); ++i)
        {
            Row row = {0, i};
            if (IsShown(m_records[i], row.m_score))
                m_rows.push_back(row);
        }
        std::stable_sort(m_rows.begin(), m_rows.end(), [this](const Row& in_left, const Row& in_right) {
            if (in_left.m_score != in_right.m_score)
                return in_left.m_score < in_right.m_score;
            return CompareBytes(m_records[in_left.m_record].m_name, m_records[in_right.m_record].m_name) < 0;
        });
        m_contentHeight = gRowHeight * RowCount();
        FitBar();
    }

    bool AreEqual(const Row& in_left, const Row& in_right) const
    {
        return in_left.m_score == in_right.m_score &&
               m_records[in_left.m_record].m_name == m_records[in_right.m_record].m_name;
    }

    void FitBar()
    {
        const int available = m_size.height() - m_listTop;
        m_barShown = available < m_contentHeight;
        if (!m_barShown)
        {
            ScrollTo(0);
            return;
        }
        m_page = std::abs(available); // the toolkit drops the sign
        m_maximum = m_contentHeight - available;
        ScrollTo(m_offset);
    }

    bool PassesMode(const Record& in_record, bool in_there) const
    {
        using vireo::datamodel::VireoType;
        const char* const type = in_there ? in_record.m_type : nullptr;
        const bool compound = type == VireoType::gCompound;
        switch (m_mode)
        {
        case 0:
            return type == VireoType::gSolver || type == VireoType::gPolymorphicSolver ||
                   (compound && !in_record.m_signature);
        case 1:
            return type == vireo::datamodel::LibType::gType;
        case 2:
            return true;
        case 3:
            return compound && in_record.m_signature;
        case 4:
            return type == VireoType::gGlobalConstant;
        default:
            return false;
        }
    }

    void DrawRow(QPainter& in_painter, const QWidget& in_browser, int in_row, int in_top) const
    {
        const Record& record = RecordOf(in_row);
        const ItemID id = record.m_item.GetItemID();
        const int width = m_size.width();
        if (in_row == m_selectedRow)
            in_painter.fillRect(QRect(QPoint(0, in_top), QPoint(width, in_top + gRowHeight)), BandColour(in_browser));
        const int left = record.m_factory || (record.m_controlled && m_enabled) ? 2 : 9;
        in_painter.drawPixmap(left, in_top + 2, ComposeIcon(record));
        QString name = QString::fromLatin1(m_library.GetItemName(id, true, nullptr).c_str());
        if (m_library.ItemIsDirty(id))
            name += QLatin1Char('*');
        in_painter.drawText(QRect(QPoint(35, in_top), QPoint(width, in_top + gRowHeight)),
                            Qt::AlignLeft | Qt::AlignVCenter, name);
    }

    static QPixmap ComposeIcon(const Record& in_record)
    {
        using vireo::datamodel::VireoType;
        const char* name = ":solver.png";
        if (in_record.m_type == VireoType::gCompound)
            name = in_record.m_signature ? ":signature.png" : ":compound.png";
        else if (in_record.m_type == VireoType::gGlobalConstant)
            name = ":constant.png";
        else if (in_record.m_type == vireo::datamodel::LibType::gType)
            name = ":type.png";
        QPixmap icon(QString::fromLatin1(name));
        if (in_record.m_factory)
        {
            const QPixmap mark(QString::fromLatin1(":./res/projectbrowser/PB_Factory.png"));
            QPixmap marked(icon.width() + 7, icon.height());
            marked.fill(Qt::transparent);
            QPainter painter(&marked);
            painter.drawPixmap(7, 0, icon);
            painter.drawPixmap(0, marked.height() - mark.height(), mark);
            painter.end();
            icon = marked;
            if (in_record.m_readOnly)
                return icon;
        }
        return ScsUtils::getAssetStateIcon(icon, in_record.m_state, in_record.m_badged, !in_record.m_factory);
    }

    static std::string FoldAscii(std::string in_text)
    {
        static const char upper[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
        for (char& character : in_text)
            if (character && std::strchr(upper, character))
                character = static_cast<char>(character + 32);
        return in_text;
    }

    /// Below, at or above 0, by the values of the bytes without a sign.
    static int CompareBytes(const std::string& in_left, const std::string& in_right)
    {
        const std::size_t length = std::min(in_left.size(), in_right.size());
        for (std::size_t i = 0; i < length; ++i)
            if (in_left[i] != in_right[i])
                return static_cast<unsigned char>(in_left[i]) < static_cast<unsigned char>(in_right[i]) ? -1 : 1;
        return in_left.size() < in_right.size() ? -1 : in_left.size() > in_right.size() ? 1 : 0;
    }

    static std::string Lower(const std::string& in_text)
    {
        return QString::fromLatin1(in_text.c_str()).toLower().toLatin1().constData();
    }

    static std::set<std::string> SplitWords(const QString& in_text)
    {
        std::set<std::string> words;
        const QByteArray text = in_text.toLower().toLatin1();
        std::string word;
        for (int i = 0; i < text.size(); ++i)
        {
            const char character = text.at(i);
            if (!std::strchr(" \t\n\v\f\r", character))
                word += character;
            else if (i == 0 || !std::strchr(" \t\n\v\f\r", text.at(i - 1)))
            {
                words.insert(word);
                word.clear();
            }
        }
        if (!text.isEmpty())
            words.insert(word);
        return words;
    }

    World& m_world;
    vireo::datamodel::ItemLibraryAccessor m_library;
    vireo::datamodel::ItemTOCAccessor m_toc;
    std::vector<Record> m_records;
    std::map<ItemID, Tags> m_tags;
    std::set<ItemID> m_requestedItems;
    std::set<std::string> m_words;
    std::vector<Row> m_rows;
    QSize m_size;
    QPoint m_dragStart;
    const int m_listTop;
    int m_mode;
    int m_contentHeight = 0;
    int m_offset = 0;
    int m_maximum = 99;
    int m_page = 10;
    int m_selectedRow = -1; ///< not a row of the list: none
    int m_signals = 0;
    bool m_barShown = false;
    bool m_connected = false;
    bool m_enabled = false;
    bool m_statesStale = true;
    bool m_rebuildNeeded = false;
    bool m_relayoutNeeded = false;
    bool m_paintDue = false;
    bool m_requested = false;
    bool m_relaidOut = false;
    QPointer<QObject> m_removal; ///< null unless the event loop has still to go on after a removal
};
