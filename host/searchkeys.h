// SPDX-License-Identifier: MIT
/// What the keys of the search field do with the rows below it.
#pragma once

#include <QObject>
#include <QStringList>

namespace host
{

class LibraryBrowser;

/// Up, Down, Page Up and Page Down move the selected row. Escape empties the field; in an empty field it goes to
/// whoever else wants it. Enter finds the rows of all that was typed before it picks one.
///
/// Belongs to the browser.
class SearchKeys : public QObject
{
    Q_OBJECT

public:
    explicit SearchKeys(LibraryBrowser& in_browser);

    /// The keys and what they do, a line each, for people.
    static QStringList Describe();

protected:
    bool eventFilter(QObject* in_field, QEvent* in_event) override;

private:
    bool PressKey(int in_key);

    LibraryBrowser& m_browser;
};

} // namespace host
