// SPDX-License-Identifier: MIT
#include "nodebrowser/accessiblelist.h"

#include <QAccessible>
#include <QAccessibleInterface>
#include <QAccessibleWidget>
#include <QStringList>
#include <QWidget>

#include <algorithm>
#include <map>

namespace nodebrowser
{
namespace
{

class AccessibleBrowser;

/// The rows of a widget, and what was made for those who asked.
struct ShownRows
{
    IAccessibleRows* m_rows = nullptr;
    AccessibleBrowser* m_made = nullptr; // owned by the toolkit
};

/// By widget: the toolkit's factories know nothing but that.
std::map<QObject*, ShownRows>& GetShown()
{
    static std::map<QObject*, ShownRows> shown;
    return shown;
}

/// What rows and list have in common: neither is an object of the toolkit.
class AccessiblePart : public QAccessibleInterface
{
public:
    AccessiblePart(QWidget& in_widget, IAccessibleRows& in_rows) : m_widget(in_widget), m_rows(in_rows) {}

    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return m_widget.windowHandle(); }
    QRect rect() const override
    {
        const QRect inWidget = GetRect();
        return QRect(m_widget.mapToGlobal(inWidget.topLeft()), inWidget.size());
    }
    void setText(QAccessible::Text, const QString&) override {}

protected:
    /// In pixels of the widget.
    virtual QRect GetRect() const = 0;

    QWidget& m_widget;
    IAccessibleRows& m_rows;
};

/// The names of the actions. They have no blanks, so that scripts can use them.
QString SelectAction()
{
    return QString::fromLatin1("Select");
}

QString OpenAction()
{
    return QString::fromLatin1("Open");
}

/// A row stands for whatever item is in it.
class AccessibleRow : public AccessiblePart, public QAccessibleActionInterface
{
public:
    AccessibleRow(QWidget& in_widget, IAccessibleRows& in_rows, QAccessibleInterface& in_list, std::size_t in_row)
        : AccessiblePart(in_widget, in_rows), m_list(in_list), m_row(in_row)
    {
    }

    bool isValid() const override { return m_row < m_rows.GetAccessibleCount(); }
    QAccessibleInterface* parent() const override { return &m_list; }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::ListItem; }

    /// The name of the item, and its kind as the description. No state of the toolkit says "modified", so the
    /// description does.
    QString text(QAccessible::Text in_text) const override
    {
        const RowInWords words = GetWords();
        if (in_text == QAccessible::Name)
            return words.m_name;
        if (in_text == QAccessible::Description)
            return words.m_modified ? words.m_kind + QString::fromLatin1(", modified") : words.m_kind;
        return QString();
    }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.invalid = !isValid();
        state.selectable = true;
        state.selected = m_rows.GetSelectedRow() == m_row;
        state.offscreen = !m_rows.GetRowLayout().ListRect().intersects(GetRect());
        state.invisible = state.offscreen || !m_widget.isVisible();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType in_type) override
    {
        return in_type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }

    QStringList actionNames() const override
    {
        QStringList names(SelectAction());
        if (GetWords().m_opens)
            names << OpenAction();
        return names;
    }

    void doAction(const QString& in_name) override
    {
        if (in_name == SelectAction())
            m_rows.SelectRow(m_row);
        else if (in_name == OpenAction())
            m_rows.OpenRow(m_row);
    }

    QStringList keyBindingsForAction(const QString&) const override { return QStringList(); }

    int GetRow() const { return static_cast<int>(m_row); }

private:
    /// Reaches out of the list's rectangle when the row is not all in sight.
    QRect GetRect() const override
    {
        const RowLayout layout = m_rows.GetRowLayout();
        return QRect(0, layout.RowTop(m_row), layout.m_width, gRowHeight);
    }

    RowInWords GetWords() const
    {
        RowInWords words;
        m_rows.PutInWords(m_row, words);
        return words;
    }

    QAccessibleInterface& m_list;
    const std::size_t m_row;
};

class AccessibleList : public AccessiblePart
{
public:
    using AccessiblePart::AccessiblePart;

    ~AccessibleList() override
    {
        for (const auto& row : m_made)
            QAccessible::deleteAccessibleInterface(row.second);
    }

    bool isValid() const override { return true; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&m_widget); }
    QAccessible::Role role() const override { return QAccessible::List; }
    int childCount() const override { return static_cast<int>(m_rows.GetAccessibleCount()); }

    QAccessibleInterface* child(int in_index) const override
    {
        if (in_index < 0 || in_index >= childCount())
            return nullptr;
        QAccessible::Id& id = m_made[in_index];
        if (!id)
            id = QAccessible::registerAccessibleInterface(new AccessibleRow(
                m_widget, m_rows, const_cast<AccessibleList&>(*this), static_cast<std::size_t>(in_index)));
        return QAccessible::accessibleInterface(id);
    }

    QAccessibleInterface* childAt(int in_x, int in_y) const override
    {
        return child(static_cast<int>(m_rows.GetRowLayout().RowAt(m_widget.mapFromGlobal(QPoint(in_x, in_y)))));
    }

    int indexOfChild(const QAccessibleInterface* in_child) const override
    {
        const auto* const row = dynamic_cast<const AccessibleRow*>(in_child);
        return row && row->parent() == this ? row->GetRow() : -1;
    }

    QString text(QAccessible::Text in_text) const override
    {
        if (in_text == QAccessible::Name)
            return QString::fromLatin1("Items");
        if (in_text == QAccessible::Description)
            return QString::fromLatin1("%1 found").arg(childCount());
        return QString();
    }

    QAccessible::State state() const override { return QAccessible::State(); }

private:
    QRect GetRect() const override { return m_rows.GetRowLayout().ListRect(); }

    mutable std::map<int, QAccessible::Id> m_made; // by row
};

/// The browser: the widgets around the list, and behind them the list.
class AccessibleBrowser : public QAccessibleWidget
{
public:
    AccessibleBrowser(QWidget& in_widget, IAccessibleRows& in_rows)
        : QAccessibleWidget(&in_widget, QAccessible::Grouping),
          m_list(QAccessible::registerAccessibleInterface(new AccessibleList(in_widget, in_rows)))
    {
        GetShown()[&in_widget].m_made = this;
    }

    ~AccessibleBrowser() override
    {
        QAccessible::deleteAccessibleInterface(m_list);
        const auto shown = std::find_if(GetShown().begin(), GetShown().end(),
                                        [this](const auto& in_entry) { return in_entry.second.m_made == this; });
        if (shown != GetShown().end())
            shown->second.m_made = nullptr;
    }

    QAccessibleInterface* GetList() const { return QAccessible::accessibleInterface(m_list); }

    int childCount() const override { return QAccessibleWidget::childCount() + 1; }

    QAccessibleInterface* child(int in_index) const override
    {
        return in_index == QAccessibleWidget::childCount() ? GetList() : QAccessibleWidget::child(in_index);
    }

    int indexOfChild(const QAccessibleInterface* in_child) const override
    {
        return in_child == GetList() ? QAccessibleWidget::childCount() : QAccessibleWidget::indexOfChild(in_child);
    }

    QAccessibleInterface* childAt(int in_x, int in_y) const override
    {
        QAccessibleInterface* const widget = QAccessibleWidget::childAt(in_x, in_y);
        return !widget && GetList()->rect().contains(in_x, in_y) ? GetList() : widget;
    }

private:
    const QAccessible::Id m_list;
};

QAccessibleInterface* MakeInterface(const QString&, QObject* in_object)
{
    const auto shown = GetShown().find(in_object);
    return shown == GetShown().end() ? nullptr
                                     : new AccessibleBrowser(*static_cast<QWidget*>(in_object), *shown->second.m_rows);
}

void Notify(QAccessibleInterface* in_source, QAccessible::Event in_type)
{
    if (!in_source)
        return;
    QAccessibleEvent event(in_source, in_type);
    QAccessible::updateAccessibility(&event);
}

/// The list of a widget; null when nobody has asked for it, so that nobody is interested.
QAccessibleInterface* FindListener(QWidget& in_widget)
{
    const AccessibleBrowser* const made = GetShown()[&in_widget].m_made;
    return made ? made->GetList() : nullptr;
}

} // namespace

void ShowRows(QWidget& in_widget, IAccessibleRows& in_rows)
{
    static bool installed = false;
    if (!installed)
        QAccessible::installFactory(MakeInterface);
    installed = true;
    GetShown()[&in_widget].m_rows = &in_rows;
}

void HideRows(QWidget& in_widget)
{
    // What was made refers to the rows.
    if (AccessibleBrowser* const made = GetShown()[&in_widget].m_made)
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(made));
    GetShown().erase(&in_widget);
}

void NotifyRowsFound(QWidget& in_widget)
{
    Notify(FindListener(in_widget), QAccessible::DescriptionChanged);
}

void NotifyRowSelected(QWidget& in_widget)
{
    if (QAccessibleInterface* const list = FindListener(in_widget))
        Notify(list->child(static_cast<int>(GetShown()[&in_widget].m_rows->GetSelectedRow())), QAccessible::Selection);
}

} // namespace nodebrowser
