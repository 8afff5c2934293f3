// SPDX-License-Identifier: MIT
/// Who gets the keys for undo and redo: a field with text, or the window.
#pragma once

#include <QKeySequence>
#include <QList>
#include <QObject>

class QLineEdit;
class QUndoStack;

namespace host
{

/// The keys for redo: those of the platform, and Ctrl+Y everywhere.
QList<QKeySequence> GetRedoKeys();

/// Leaves the keys to the window's shortcuts, unless the field has typing of its own to undo or to redo. A change of
/// the stack ends the history of the field, so that what was done last is undone first.
///
/// Belongs to the field; the stack must outlive it.
class UndoKeys : public QObject
{
    Q_OBJECT

public:
    UndoKeys(QLineEdit& in_field, QUndoStack& in_stack);

protected:
    bool eventFilter(QObject* in_field, QEvent* in_event) override;

private Q_SLOTS:
    void EndHistory();

private:
    QLineEdit& m_field;
};

} // namespace host
