// SPDX-License-Identifier: MIT
#include "host/searchkeys.h"

#include "host/librarybrowser.h"

#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>

namespace host
{

SearchKeys::SearchKeys(LibraryBrowser& in_browser) : QObject(&in_browser), m_browser(in_browser)
{
    m_browser.GetSearchField().installEventFilter(this);
}

QStringList SearchKeys::Describe()
{
    const auto name = [](Qt::Key in_key) { return QKeySequence(in_key).toString(QKeySequence::NativeText); };
    const QStringList moving = {name(Qt::Key_Up), name(Qt::Key_Down), name(Qt::Key_PageUp), name(Qt::Key_PageDown)};
    return {tr("Select another row: %1").arg(moving.join(QStringLiteral("; "))),
            tr("Add the selected node, or the first one: %1").arg(name(Qt::Key_Return)),
            tr("Clear the search: %1").arg(name(Qt::Key_Escape))};
}

bool SearchKeys::eventFilter(QObject*, QEvent* in_event)
{
    if (in_event->type() != QEvent::KeyPress)
        return false;
    const QKeyEvent& key = static_cast<const QKeyEvent&>(*in_event);
    const Qt::KeyboardModifiers others = key.modifiers() & ~Qt::KeypadModifier;
    return others == Qt::NoModifier && PressKey(key.key());
}

/// \return whether the field is not to see the key
bool SearchKeys::PressKey(int in_key)
{
    switch (in_key)
    {
    case Qt::Key_Down:
        m_browser.MoveSelection(1);
        return true;
    case Qt::Key_Up:
        m_browser.MoveSelection(-1);
        return true;
    case Qt::Key_PageDown:
        m_browser.MoveSelection(m_browser.GetPageSize());
        return true;
    case Qt::Key_PageUp:
        m_browser.MoveSelection(-m_browser.GetPageSize());
        return true;
    case Qt::Key_Escape:
        if (m_browser.GetSearchField().text().isEmpty())
            return false;
        m_browser.Search(QString());
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        m_browser.BringUpToDate();
        return false;
    default:
        return false;
    }
}

} // namespace host
