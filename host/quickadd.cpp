// SPDX-License-Identifier: MIT
#include "host/quickadd.h"

#include "host/itemhelp.h"
#include "host/librarybrowser.h"
#include "host/searchkeys.h"
#include "memorymodel/library.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

using vireo::datamodel::ItemID;

namespace host
{

namespace
{

const QSize gSize(280, 330);

} // namespace

QuickAdd::QuickAdd(const memorymodel::Library& in_library, QWidget* in_parent)
    : QFrame(in_parent, Qt::Popup), m_browser(new LibraryBrowser)
{
    setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
    setAccessibleName(tr("Add node"));
    QVBoxLayout* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(1, 1, 1, 1);
    rows->addWidget(m_browser);
    resize(gSize);
    QLineEdit& field = m_browser->GetSearchField();
    field.setPlaceholderText(tr("Add a node: type, then press Enter"));
    setFocusProxy(&field);
    new SearchKeys(*m_browser);
    // Installed later, asked before: Escape closes at once, whatever was typed.
    field.installEventFilter(this);
    m_browser->installEventFilter(this);
    connect(&field, &QLineEdit::returnPressed, this, &QuickAdd::Choose);
    m_browser->SetToolTips(
        [&in_library](const ItemID& in_item) { return GetShortHelp(GetItemHelp(in_library, in_item)); });
    m_browser->SetItemLibrary(in_library.GetAccessor());
}

void QuickAdd::OpenAt(const QPoint& in_screen)
{
    m_browser->Search(QString());
    m_browser->ClearSelection();
    const QScreen* screen = QGuiApplication::screenAt(in_screen);
    const QRect room = (screen ? screen : QGuiApplication::primaryScreen())->availableGeometry();
    move(std::max(room.left(), std::min(in_screen.x(), room.right() - width())),
         std::max(room.top(), std::min(in_screen.y(), room.bottom() - height())));
    show();
    m_browser->GetSearchField().setFocus(Qt::PopupFocusReason);
}

void QuickAdd::Choose()
{
    const ItemID item = m_browser->GetSelection();
    if (item.IsValid())
        Q_EMIT Chosen(item);
}

bool QuickAdd::eventFilter(QObject* in_object, QEvent* in_event)
{
    if (in_object != m_browser)
    {
        const bool closes =
            in_event->type() == QEvent::KeyPress && static_cast<const QKeyEvent&>(*in_event).key() == Qt::Key_Escape;
        if (closes)
            close();
        return closes;
    }
    const QEvent::Type type = in_event->type();
    if (type != QEvent::MouseButtonPress && type != QEvent::MouseButtonRelease && type != QEvent::MouseMove)
        return false;
    const QMouseEvent& mouse = static_cast<const QMouseEvent&>(*in_event);
    if (type == QEvent::MouseButtonRelease && mouse.button() == Qt::LeftButton)
        Choose();
    // No menu and no drag: this browser is here to choose.
    return type == QEvent::MouseMove || (type == QEvent::MouseButtonPress && mouse.button() != Qt::LeftButton);
}

void QuickAdd::keyPressEvent(QKeyEvent* in_event)
{
    if (in_event->key() == Qt::Key_Escape)
        close();
    else
        QFrame::keyPressEvent(in_event);
}

} // namespace host
