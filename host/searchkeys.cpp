// SPDX-License-Identifier: MIT
#include "host/searchkeys.h"

#include "host/librarybrowser.h"

#include <QKeyEvent>
#include <QLineEdit>

namespace host
{

SearchKeys::SearchKeys(LibraryBrowser& in_browser) : QObject(&in_browser), m_browser(in_browser)
{
    m_browser.GetSearchField().installEventFilter(this);
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
