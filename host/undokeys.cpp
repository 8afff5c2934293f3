// SPDX-License-Identifier: MIT
#include "host/undokeys.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QUndoStack>

#include <algorithm>

namespace host
{

namespace
{

bool IsRedo(const QKeyEvent& in_key)
{
    const QList<QKeySequence> keys = GetRedoKeys();
    const int pressed = in_key.key() | static_cast<int>(in_key.modifiers() & ~Qt::KeypadModifier);
    return std::any_of(keys.begin(), keys.end(),
                       [pressed](const QKeySequence& in_keys) { return in_keys == QKeySequence(pressed); });
}

} // namespace

QList<QKeySequence> GetRedoKeys()
{
    QList<QKeySequence> keys = QKeySequence::keyBindings(QKeySequence::Redo);
    const QKeySequence everywhere(QStringLiteral("Ctrl+Y"));
    if (!keys.contains(everywhere))
        keys.append(everywhere);
    return keys;
}

UndoKeys::UndoKeys(QLineEdit& in_field, QUndoStack& in_stack) : QObject(&in_field), m_field(in_field)
{
    m_field.installEventFilter(this);
    connect(&in_stack, &QUndoStack::indexChanged, this, &UndoKeys::EndHistory);
}

bool UndoKeys::eventFilter(QObject*, QEvent* in_event)
{
    // Before a shortcut gets a key, this event asks whoever has the focus. To accept it is to keep the key.
    const bool asks = in_event->type() == QEvent::ShortcutOverride;
    if (!asks && in_event->type() != QEvent::KeyPress)
        return false;
    const QKeyEvent& key = static_cast<const QKeyEvent&>(*in_event);
    const bool undoes = key.matches(QKeySequence::Undo);
    if (!undoes && !IsRedo(key))
        return false;
    const bool isOwn = undoes ? m_field.isUndoAvailable() : m_field.isRedoAvailable();
    if (asks)
        in_event->setAccepted(isOwn);
    else if (isOwn && undoes)
        m_field.undo();
    else if (isOwn)
        m_field.redo();
    return true;
}

void UndoKeys::EndHistory()
{
    const int cursor = m_field.cursorPosition();
    const int selectionStart = m_field.selectionStart();
    const int selectionLength = static_cast<int>(m_field.selectedText().size());
    m_field.setText(m_field.text()); // the same text: nobody is told
    m_field.setCursorPosition(cursor);
    if (selectionStart >= 0)
        m_field.setSelection(selectionStart, selectionLength);
}

} // namespace host
