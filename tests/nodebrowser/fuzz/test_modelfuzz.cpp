// SPDX-License-Identifier: MIT
#include "qtcompat/qtcompat.h"
#include "tests/nodebrowser/fuzz/modelfuzz_model.h"
#include "tests/nodebrowser/fuzz/modelfuzz_person.h"
#include "tests/nodebrowser/fuzz/modelfuzz_world.h"
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/support/testcompat.h"
#include "tests/support/testmain.h"

#include <QChildEvent>
#include <QHelpEvent>
#include <QToolTip>
#include <QWheelEvent>

#include <cstdio>
#include <deque>
#include <memory>

using vireo::datamodel::ItemID;
using vireo::datamodel::ItemLibraryAccessor;

namespace
{

/// A browser that tells its model of everything just before it takes it in itself.
class FuzzBrowser : public ProbedBrowser
{
public:
    FuzzBrowser(World& in_world, eConfigType in_config)
        : ProbedBrowser(in_config), m_model(in_world, in_config == eConfigNodeBrowser), m_world(in_world)
    {
        UsePlainColours(*this);
    }

    void Attach(const ItemLibraryAccessor& in_library)
    {
        SetItemLibrary(in_library);
        m_model.Attach(in_library);
    }

    /// The first thing that was found to be wrong.
    const QString& GetFailure() const { return m_failure; }
    void Fail(const QString& in_failure)
    {
        if (m_failure.isEmpty())
            m_failure = in_failure;
    }

    int m_drags = 0;
    PlainModel m_model;

protected:
    void paintEvent(QPaintEvent* in_event) override
    {
        const std::size_t requests = m_world.GetLayer().GetSourceControl().GetRequestCount();
        m_model.Paint();
        ProbedBrowser::paintEvent(in_event);
        Fail(m_model.TakeOver(*this));
        CompareRequests(requests);
    }

    void resizeEvent(QResizeEvent* in_event) override
    {
        m_model.Resize(size());
        ProbedBrowser::resizeEvent(in_event);
    }

    void mousePressEvent(QMouseEvent* in_event) override
    {
        const int paints = m_paints;
        const bool picks = m_model.Press(qtcompat::EventPosition(*in_event), in_event->button());
        const std::size_t menus = m_menuRows.size();
        ProbedBrowser::mousePressEvent(in_event);
        if (picks && in_event->button() == Qt::LeftButton && isVisible() && m_paints == paints)
            Fail(QString::fromLatin1("a press did not repaint at once"));
        if ((picks && in_event->button() == Qt::RightButton) != (m_menuRows.size() > menus))
            Fail(QString::fromLatin1("%1 menus for a press that %2")
                     .arg(m_menuRows.size() - menus)
                     .arg(QLatin1String(picks ? "picks a row" : "picks nothing")));
    }

    bool event(QEvent* in_event) override
    {
        if (in_event->type() == QEvent::Wheel)
        {
            const QWheelEvent& wheel = static_cast<const QWheelEvent&>(*in_event);
            m_model.Wheel(qtcompat::EventPosition(wheel), qtcompat::WheelDelta(wheel));
        }
        return ProbedBrowser::event(in_event);
    }

    void childEvent(QChildEvent* in_event) override
    {
        // Nothing else becomes a child once the browser is made, but for the widget that a drag of some platforms
        // needs.
        m_drags += in_event->added() && !in_event->child()->isWidgetType() ? 1 : 0;
        ProbedBrowser::childEvent(in_event);
    }

private:
    void CompareRequests(std::size_t in_before)
    {
        const memorymodel::SourceControl& sourceControl = m_world.GetLayer().GetSourceControl();
        const std::size_t expected = in_before + (m_model.HasRequestedStates() ? 1 : 0);
        if (sourceControl.GetRequestCount() != expected)
            Fail(QString::fromLatin1("states requested %1 times instead of %2")
                     .arg(sourceControl.GetRequestCount() - in_before)
                     .arg(expected - in_before));
        const std::vector<ItemID>& items = sourceControl.GetLastRequest();
        if (m_model.HasRequestedStates() && std::set<ItemID>(items.begin(), items.end()) != m_model.GetRequested())
            Fail(QString::fromLatin1("states of other items were requested"));
    }

    World& m_world;
    QString m_failure;
};

void SendMouse(QWidget& in_widget, QEvent::Type in_type, const QPoint& in_position, Qt::MouseButton in_button,
               Qt::MouseButtons in_buttons)
{
    QMouseEvent event(in_type, in_position, in_widget.mapToGlobal(in_position), in_button, in_buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(&in_widget, &event);
}

QString Say(const char* in_text)
{
    return QString::fromLatin1(in_text);
}

QString Say(const char* in_text, const QPoint& in_point)
{
    return QString::fromLatin1("%1 at %2, %3").arg(Say(in_text)).arg(in_point.x()).arg(in_point.y());
}

} // namespace

/// One run of the fuzz: somebody works with a browser, and the data layer does what it likes.
class FuzzRun : public QObject,
                private vireo::datamodel::IItemTOCNotification,
                private vireo::datamodel::IItemLibraryNotification
{
    Q_OBJECT

public:
    FuzzRun(memorymodel::DataLayer& in_layer, unsigned in_seed)
        : m_seed(in_seed), m_random(in_seed), m_world(in_layer, m_random), m_person([this] { HostActs(); })
    {
        m_world.m_propertiesChanged = [this] {
            if (m_browser)
                m_browser->m_model.PropertiesChanged();
        };
        m_world.GetLayer().SetCompoundTargetHandler([this] { ++m_targets; });
        MakeBrowser(eConfigNodeBrowser);
    }
    ~FuzzRun() override
    {
        m_world.m_propertiesChanged = nullptr;
        m_world.GetLayer().SetCompoundTargetHandler(nullptr);
        StopObserving();
        m_browser.reset();
    }

    /// \return what went wrong, empty when nothing did
    QString Run(int in_events)
    {
        for (int event = 0; event < in_events; ++event)
        {
            m_log.push_back(QString());
            if (m_log.size() > 10)
                m_log.pop_front();
            const QString what = DoSomething();
            m_log.back() = what + m_log.back();
            Settle();
            Check();
            if (!m_browser->GetFailure().isEmpty())
                return Report(event);
        }
        return QString();
    }

    int GetComparedPictures() const { return m_comparedPictures; }

private Q_SLOTS:
    void TextChanged(const QString& in_text) { m_browser->m_model.SetText(in_text); }
    void TabChanged(int in_index) { m_browser->m_model.SetMode(in_index); }
    void SelectionChanged()
    {
        ++m_signals;
        CheckSelection();
        ActFromInside("selection");
    }

private:
    // The observer that acts

    void ItemAdded(vireo::datamodel::ItemAccessor&) override { ActFromInside("added"); }
    void ItemRemoved(vireo::datamodel::ItemAccessor&) override { ActFromInside("removed"); }
    void OnBeginChanges(ItemLibraryAccessor&) override { ActFromInside("begin"); }
    void OnEndChanges(ItemLibraryAccessor&) override { ActFromInside("end"); }
    void LibraryInvalidated(ItemLibraryAccessor&) override { ActFromInside("invalidated"); }
    void ItemNameChanged(ItemLibraryAccessor&, const ItemID&) override { ActFromInside("name"); }
    void ItemTagsChanged(ItemLibraryAccessor&, const ItemID&, const char*) override { ActFromInside("tags"); }
    void ItemAccessStateChanged(ItemLibraryAccessor&, const ItemID&, long) override { ActFromInside("state"); }
    void OnPreCommit(ItemLibraryAccessor&, bool*) override { ActFromInside("commit"); }
    void OnPostCommit(ItemLibraryAccessor&) override { ActFromInside("committed"); }

    void ActFromInside(const char* in_where)
    {
        if (m_armed == 0 || !m_random.OneIn(3))
            return;
        --m_armed;
        Note(QString::fromLatin1("inside %1: %2").arg(Say(in_where)).arg(ActAsHost(true)));
    }

    void HostActs() { Note(Say("meanwhile: ") + ActAsHost(false)); }

    void Note(const QString& in_text) { m_log.back() += Say(" | ") + in_text; }

    /// What a host may do at any time.
    QString ActAsHost(bool in_insideNotification)
    {
        switch (m_random.Below(12))
        {
        case 0:
            return Attach();
        case 1:
            m_browser->repaint();
            return Say("repaint");
        case 2:
            return Resize();
        case 3:
            return SetText();
        default:
            return m_world.Act(in_insideNotification);
        }
    }

    // Setting up

    void MakeBrowser(eConfigType in_config)
    {
        StopObserving();
        m_browser.reset();
        m_signals = 0;
        m_browser.reset(new FuzzBrowser(m_world, in_config));
        connect(&m_browser->SearchField(), SIGNAL(textChanged(QString)), this, SLOT(TextChanged(QString)));
        if (m_browser->TabBar())
            connect(m_browser->TabBar(), SIGNAL(currentChanged(int)), this, SLOT(TabChanged(int)));
        connect(m_browser.get(), SIGNAL(SelectionChanged()), this, SLOT(SelectionChanged()));
        m_browser->SetCommandManager(&m_world.GetLayer().GetCommandManager());
        Attach();
        ShowBrowser(*m_browser, 200, 300);
        m_browser->m_drags = 0;
    }

    void StopObserving()
    {
        m_library.RemoveObserver(this, vireo::datamodel::eItemLibraryNotificationKind, m_library.GetContext());
        const vireo::datamodel::ItemTOCAccessor toc = GetTOC(m_library);
        toc.RemoveObserver(this, vireo::datamodel::eItemTOCNotificationKind, toc.GetContext());
    }

    void Observe()
    {
        m_library.AddObserver(this, vireo::datamodel::eItemLibraryNotificationKind, m_library.GetContext());
        const vireo::datamodel::ItemTOCAccessor toc = GetTOC(m_library);
        toc.AddObserver(this, vireo::datamodel::eItemTOCNotificationKind, toc.GetContext());
    }

    QString Attach()
    {
        QString name;
        StopObserving();
        m_library = m_world.AnyAccessor(name);
        const bool first = m_random.OneIn(2);
        if (first)
            Observe();
        m_browser->Attach(m_library);
        if (!first)
            Observe();
        return Say("attach ") + name;
    }

    // Events

    QPoint AnyPoint()
    {
        if (m_random.OneIn(4) || m_browser->m_model.RowCount() == 0)
            return QPoint(m_random.Between(-5, m_browser->width() + 5), m_random.Between(-5, m_browser->height() + 5));
        // Mostly on the rows in sight, and a little around them.
        const int rowsInSight = std::min(m_browser->m_model.RowCount() + 1, m_browser->height() / gRowHeight);
        return QPoint(m_random.Below(m_browser->width()),
                      m_browser->ListTop() + m_random.Between(-2, gRowHeight * std::max(rowsInSight, 1)));
    }

    template <class Step> void WithPerson(const Step& in_step)
    {
        m_person.Begin(static_cast<unsigned>(m_random.Below(1 << 30)));
        in_step();
        m_person.End();
    }

    QString DoSomething()
    {
        // Nobody touches what cannot be seen.
        if (!m_browser->isVisible())
            return m_random.OneIn(3) ? HideOrShow() : ActAsHost(false);
        const int what = m_windowsChange ? m_random.Below(1000) : m_random.Below(320);
        if (!m_windowsChange && m_random.OneIn(2))
            return ActAsHost(false);
        if (what < 160)
            return PressMouse();
        if (what < 190)
            return DoubleClick();
        if (what < 240)
            return MoveMouse();
        if (what < 320)
            return TurnWheel();
        if (what < 440)
            return TypeKey();
        if (what < 460)
        {
            m_browser->ClearingButton().click();
            return Say("clear");
        }
        if (what < 520)
            return PickTab();
        if (what < 560)
            return PressEnter();
        if (what < 600)
            return Resize();
        if (what < 630)
            return UseScrollBar();
        if (what < 650)
            return Hover();
        if (what < 690)
            return Command();
        if (what < 720)
            return Attach();
        if (what < 740)
        {
            m_armed = m_random.Between(1, 3);
            return Say("an observer that acts");
        }
        if (what < 750)
            return HideOrShow();
        if (what < 753)
        {
            const bool tabs = !m_random.OneIn(3);
            MakeBrowser(tabs ? eConfigNodeBrowser : eConfigTypeSelector);
            return Say(tabs ? "a new browser" : "a new selector");
        }
        if (what < 765)
        {
            hmx::fwk::ICommandManager* const commands =
                m_random.OneIn(3) ? nullptr : &m_world.GetLayer().GetCommandManager();
            m_browser->SetCommandManager(commands);
            return Say("another command manager");
        }
        return m_world.Act(false);
    }

    QString PressMouse()
    {
        static const Qt::MouseButton buttons[] = {Qt::LeftButton, Qt::LeftButton,   Qt::LeftButton,
                                                  Qt::LeftButton, Qt::MiddleButton, Qt::RightButton};
        const Qt::MouseButton button = buttons[m_random.Below(m_windowsChange ? 6 : 5)];
        const QPoint position = AnyPoint();
        WithPerson([&] { SendMouse(*m_browser, QEvent::MouseButtonPress, position, button, button); });
        if (m_random.OneIn(2))
            SendMouse(*m_browser, QEvent::MouseButtonRelease, position, button, Qt::NoButton);
        return Say(button == Qt::LeftButton    ? "left press"
                   : button == Qt::RightButton ? "right press"
                                               : "middle press",
                   position);
    }

    QString DoubleClick()
    {
        const QPoint position = AnyPoint();
        const PlainModel& model = m_browser->m_model;
        const int row = model.RowAt(position);
        const ItemID item = row >= 0 && !model.IsRelayoutNeeded() ? model.RecordOf(row).m_item.GetItemID() : ItemID();
        const bool comparable = !model.IsRelayoutNeeded();
        const int targets = m_targets;
        SendMouse(*m_browser, QEvent::MouseButtonDblClick, position,
                  m_random.OneIn(4) ? Qt::RightButton : Qt::LeftButton, Qt::NoButton);
        const bool compound = item.GetType() == vireo::datamodel::VireoType::gCompound;
        if (comparable &&
            (m_targets != targets + (compound ? 1 : 0) || (compound && m_world.GetLayer().GetCompoundTarget() != item)))
            m_browser->Fail(Say("the double click made another target"));
        return Say("double click", position);
    }

    QString MoveMouse()
    {
        const PlainModel& model = m_browser->m_model;
        const QPoint position = AnyPoint();
        const Qt::MouseButtons buttons = m_random.OneIn(4) ? Qt::NoButton : Qt::LeftButton;
        const bool starts = model.HasSelectedRow() && buttons == Qt::LeftButton &&
                            (position - model.GetDragStart()).manhattanLength() >= QApplication::startDragDistance();
        const bool comparable = !model.IsRelayoutNeeded();
        const int drags = m_browser->m_drags;
        m_person.SetDragWindow(m_browser.get());
        WithPerson([&] { SendMouse(*m_browser, QEvent::MouseMove, position, Qt::NoButton, buttons); });
        m_person.SetDragWindow(nullptr);
        if (comparable && m_browser->m_drags != drags + (starts ? 1 : 0))
            m_browser->Fail(Say("a drag too many or too few"));
        return Say("move", position);
    }

    QString TurnWheel()
    {
        static const int turns[] = {120, -120, 15, -600};
        const int turn = turns[m_random.Below(4)];
        const QPoint position = AnyPoint();
        QWheelEvent wheel = testcompat::MakeWheelEvent(position, m_browser->mapToGlobal(position), turn, Qt::Vertical);
        QCoreApplication::sendEvent(m_browser.get(), &wheel);
        return Say("wheel", position) + QString::fromLatin1(" by %1").arg(turn);
    }

    QString TypeKey()
    {
        QLineEdit& field = m_browser->SearchField();
        static const char* const keys[] = {"a", "b", "e", "n", "Z", " ", ";", "x", "1", "\xE4", "\xC4", "d", "m"};
        const int what = m_random.Below(10);
        if (what == 0)
            QTest::keyClick(&field, Qt::Key_Home);
        else if (what < 3)
            QTest::keyClick(&field, m_random.OneIn(2) ? Qt::Key_Backspace : Qt::Key_Delete);
        else if (what == 3)
            return SetText();
        else
        {
            const QString key = QString::fromLatin1(m_random.OneOf(keys));
            QTest::sendKeyEvent(QTest::Click, &field, Qt::Key_unknown, key, Qt::NoModifier);
        }
        return Say("search ") + field.text();
    }

    QString SetText()
    {
        static const char* const texts[] = {
            "",    "a",         "blend", "b a", "co typ",          " ",     "zed ", "\xC4",
            "MIX", "noise 2 x", "color", ";",   "compound solver", "state", "x\ty"};
        const QString text = QString::fromLatin1(m_random.OneOf(texts));
        m_browser->SearchField().setText(text);
        return Say("search for ") + text;
    }

    QString PickTab()
    {
        if (!m_browser->TabBar())
            return Say("no tab");
        if (m_random.OneIn(12))
        {
            const int mode = m_random.Between(3, 5);
            m_browser->m_model.SetMode(mode);
            QMetaObject::invokeMethod(m_browser.get(), "TabChanged", Q_ARG(int, mode));
            return QString::fromLatin1("mode %1").arg(mode);
        }
        const int tab = m_random.Below(3);
        QTest::mouseClick(m_browser->TabBar(), Qt::LeftButton, Qt::NoModifier,
                          m_browser->TabBar()->tabRect(tab).center());
        return QString::fromLatin1("tab %1").arg(tab);
    }

    QString PressEnter()
    {
        m_browser->m_model.Enter();
        QTest::keyClick(&m_browser->SearchField(), m_random.OneIn(2) ? Qt::Key_Return : Qt::Key_Enter);
        return Say("Enter");
    }

    QString Resize()
    {
        const QSize size(m_random.Between(60, 320),
                         m_random.OneIn(4) ? m_random.Between(30, 80) : m_random.Between(80, 500));
        m_browser->resize(size);
        return QString::fromLatin1("resize to %1 x %2").arg(size.width()).arg(size.height());
    }

    QString UseScrollBar()
    {
        PlainModel& model = m_browser->m_model;
        QScrollBar& bar = m_browser->ScrollBar();
        switch (m_random.Below(4))
        {
        case 0:
            model.ScrollTo(model.GetOffset() + 1);
            bar.triggerAction(QAbstractSlider::SliderSingleStepAdd);
            return Say("scroll a pixel");
        case 1:
            model.ScrollTo(model.GetOffset() + model.GetPage());
            bar.triggerAction(QAbstractSlider::SliderPageStepAdd);
            return Say("scroll a page");
        case 2:
            model.ScrollTo(model.GetOffset() - model.GetPage());
            bar.triggerAction(QAbstractSlider::SliderPageStepSub);
            return Say("scroll back a page");
        default:
        {
            const int value = m_random.Between(-10, model.GetMaximum() + 10);
            model.ScrollTo(value);
            bar.setValue(value);
            return QString::fromLatin1("scroll to %1").arg(value);
        }
        }
    }

    QString Hover()
    {
        const QPoint position = AnyPoint();
        const PlainModel& model = m_browser->m_model;
        const int row = model.RowAt(position);
        QHelpEvent help(QEvent::ToolTip, position, m_browser->mapToGlobal(position));
        if (model.IsRelayoutNeeded() || !m_browser->isVisible())
            return Say("no tip");
        const ItemID item = row >= 0 ? model.RecordOf(row).m_item.GetItemID() : ItemID();
        const bool compound = item.GetType() == vireo::datamodel::VireoType::gCompound;
        QCoreApplication::sendEvent(m_browser.get(), &help);
        const std::string name = m_library.GetItemName(item, true, nullptr) + '\n';
        if (help.isAccepted() != compound)
            m_browser->Fail(Say("a tip for another item"));
        if (compound && m_world.HasHelper() && m_world.GetTraits(item).m_object &&
            !(QToolTip::isVisible() && QToolTip::text().startsWith(QString::fromLatin1(name.c_str()))))
            m_browser->Fail(QToolTip::isVisible() ? Say("the tip ") + QToolTip::text() : Say("no tip"));
        return Say("tip", position);
    }

    QString Command()
    {
        static const char* const commands[] = {
            "OnNewCompound",      "OnNewLoopCompound", "OnNewSignature",     "OnRenameItem",    "OnEditItemTags",
            "OnSaveGraphLibrary", "OnCheckOutItem",    "OnMakeItemWritable", "OnShowItemFiles", "OnDeleteItem"};
        const char* const name = m_random.OneOf(commands);
        WithPerson([&] { QMetaObject::invokeMethod(m_browser.get(), name); });
        return Say(name);
    }

    QString HideOrShow()
    {
        m_browser->setVisible(!m_browser->isVisible());
        return Say(m_browser->isVisible() ? "show" : "hide");
    }

    // Checks

    void Check()
    {
        const PlainModel& model = m_browser->m_model;
        if (!m_browser->isVisible())
            return;
        if (model.IsPaintDue())
            m_browser->Fail(Say("no repaint was asked for"));
        if (model.IsPending() || m_random.OneIn(4))
            m_browser->repaint();
        if (m_signals != model.GetSignalCount())
            m_browser->Fail(QString::fromLatin1("%1 signals instead of %2").arg(m_signals).arg(model.GetSignalCount()));
        CheckSelection();
        CheckScrollBar();
        CheckTags();
        CheckFilter();
        if (m_random.OneIn(2))
        {
            CheckPicture();
            ++m_comparedPictures;
        }
    }

    void CheckSelection()
    {
        const PlainModel& model = m_browser->m_model;
        if (model.IsRelayoutNeeded())
            return;
        const ItemID selection = model.GetSelection();
        if (m_browser->GetSelection() != selection)
            m_browser->Fail(Say("another selection"));
        if (m_browser->IsSelectionType() != (selection.GetType() == vireo::datamodel::LibType::gType))
            m_browser->Fail(Say("whether the selection is a type"));
        for (int row = 0; row < model.RowCount(); ++row)
            if (m_browser->GetRowItem(static_cast<std::size_t>(row)).GetItemID() !=
                model.RecordOf(row).m_item.GetItemID())
                m_browser->Fail(QString::fromLatin1("row %1 changed without a layout").arg(row));
    }

    void CheckScrollBar()
    {
        const PlainModel& model = m_browser->m_model;
        const QScrollBar& bar = m_browser->ScrollBar();
        if (bar.minimum() != 0 || bar.maximum() != model.GetMaximum() || bar.value() != model.GetOffset() ||
            bar.pageStep() != model.GetPage() || bar.isHidden() == model.IsBarShown())
            m_browser->Fail(QString::fromLatin1("scroll bar at %1 of %2, page %3, instead of %4 of %5, page %6")
                                .arg(bar.value())
                                .arg(bar.maximum())
                                .arg(bar.pageStep())
                                .arg(model.GetOffset())
                                .arg(model.GetMaximum())
                                .arg(model.GetPage()));
    }

    void CheckTags()
    {
        const PlainModel& model = m_browser->m_model;
        const std::vector<PlainModel::Record>& records = model.GetRecords();
        for (const PlainModel::Record& record : records)
        {
            const ItemID item = record.m_item.GetItemID();
            if (m_browser->GetSearchTags(item) != model.GetTags(item))
                m_browser->Fail(Say("the tags of ") + QString::fromLatin1(record.m_name.c_str()));
        }
        const std::map<std::string, std::set<ItemID>> itemsByTag = model.GetItemsByTag();
        for (const std::pair<const std::string, std::set<ItemID>>& entry : itemsByTag)
        {
            if (m_browser->GetTaggedItems(entry.first) != entry.second)
                m_browser->Fail(Say("the items of the tag ") + QString::fromLatin1(entry.first.c_str()));
            m_tagsSeen.insert(entry.first);
        }
        for (const std::string& tag : m_tagsSeen)
            if (itemsByTag.count(tag) == 0 && !m_browser->GetTaggedItems(tag).empty())
                m_browser->Fail(Say("items of a tag that nobody has any more: ") + QString::fromLatin1(tag.c_str()));
        const ItemID stranger = m_world.AnyItem();
        if (m_browser->GetSearchTags(stranger) != model.GetTags(stranger))
            m_browser->Fail(Say("the tags of an item that is not listed"));
    }

    void CheckFilter()
    {
        const PlainModel& model = m_browser->m_model;
        const std::vector<PlainModel::Record>& records = model.GetRecords();
        for (std::size_t i = 0; i < records.size(); i += 1 + static_cast<std::size_t>(m_random.Below(8)))
        {
            std::size_t score = 12345;
            std::size_t expectedScore = 12345;
            vireo::datamodel::ItemAccessor item = records[i].m_item;
            const bool shown = m_browser->CompareToFilter(item, &score);
            if (shown != model.IsShown(records[i], expectedScore) || score != expectedScore)
                m_browser->Fail(Say("the score of ") + QString::fromLatin1(records[i].m_name.c_str()));
        }
    }

    void CheckPicture()
    {
        const QImage picture = PictureWithoutChildren(*m_browser);
        const QRect difference = Difference(picture, m_browser->m_model.Draw(*m_browser));
        if (!difference.isEmpty())
            m_browser->Fail(QString::fromLatin1("the picture differs from %1, %2 to %3, %4")
                                .arg(difference.left())
                                .arg(difference.top())
                                .arg(difference.right())
                                .arg(difference.bottom()));
    }

    QString Report(int in_event) const
    {
        QString report = QString::fromLatin1("%1\nseed %2, event %3; the last ones:")
                             .arg(m_browser->GetFailure())
                             .arg(m_seed)
                             .arg(in_event);
        for (const QString& line : m_log)
            report += QLatin1Char('\n') + line;
        return report;
    }

    const unsigned m_seed;
    Random m_random;
    World m_world;
    std::set<std::string> m_tagsSeen; // every tag that an item of the list had in this run
    Person m_person;
    std::unique_ptr<FuzzBrowser> m_browser;
    ItemLibraryAccessor m_library;
    std::deque<QString> m_log = std::deque<QString>(1);
    // The minimal platform warns now and then when the focus goes from one window to the next: only for drags.
    const bool m_windowsChange = qgetenv("QT_QPA_PLATFORM") != "minimal";
    int m_armed = 0;
    int m_signals = 0;
    int m_targets = 0;
    int m_comparedPictures = 0;
};

/// A model-based fuzz: after each of many random events the browser is compared with a plain model of it.
/// NODEBROWSER_SEED repeats a run, NODEBROWSER_EVENTS is the number of events.
class TestModelFuzz : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // What fades in is not there at once.
        QApplication::setEffectEnabled(Qt::UI_FadeTooltip, false);
        QApplication::setEffectEnabled(Qt::UI_AnimateTooltip, false);
        QApplication::setEffectEnabled(Qt::UI_FadeMenu, false);
        QApplication::setEffectEnabled(Qt::UI_AnimateMenu, false);
    }

    void theBrowserIsAsThePlainModelSays_data()
    {
        QTest::addColumn<unsigned>("seed");
        if (IsSeedGiven())
        {
            QTest::newRow("a given seed") << 0u;
            return;
        }
        QTest::newRow("one seed") << 20260101u;
        QTest::newRow("another seed") << 17u;
    }

    void theBrowserIsAsThePlainModelSays()
    {
        QFETCH(unsigned, seed);
        seed = TestSeed(seed);
        const int given = qgetenv("NODEBROWSER_EVENTS").toInt();
        const int events = given > 0 ? given : 8000;
        std::printf("%d events\n", events);
        FuzzRun run(m_layer, seed);
        QByteArray failure;
        RunInEventLoop([&] { failure = run.Run(events).toLatin1(); });
        QVERIFY2(failure.isEmpty(), failure.constData());
        // A browser that is hidden nearly always would look right, too.
        QVERIFY(run.GetComparedPictures() >= events / 10);
    }

    void cleanup()
    {
        QToolTip::hideText();
        QVERIFY(WaitFor([] { return !QToolTip::isVisible(); }));
    }

private:
    // One for all runs, since the factory objects of the first one are kept until the process ends.
    memorymodel::DataLayer m_layer;
};

NODEBROWSER_TEST_MAIN(TestModelFuzz)
#include "test_modelfuzz.moc"
