// SPDX-License-Identifier: MIT
/// What assistive technology and test tools see of the rows: a list with a child for each row. From Qt 5 on; with Qt 4
/// the functions do nothing.
#pragma once

#include "nodebrowser/rowlayout.h"

#include <QString>

#include <cstddef>

class QWidget;

namespace nodebrowser
{

/// A row in words.
struct RowInWords
{
    QString m_name;
    QString m_kind;
    bool m_modified = false;
    bool m_opens = false; ///< whether OpenRow() does something
};

/// The rows of a browser. A row that does not exist has no words, and nothing is done with it.
class IAccessibleRows
{
public:
    virtual std::size_t GetAccessibleCount() const = 0;
    virtual std::size_t GetSelectedRow() const = 0;

    /// \return whether there is such a row
    virtual bool PutInWords(std::size_t in_row, RowInWords& out_words) const = 0;

    virtual RowLayout GetRowLayout() const = 0;

    /// Selects a row as a click does, and scrolls until it is in sight.
    virtual void SelectRow(std::size_t in_row) = 0;

    /// Opens a row as a double click does.
    virtual void OpenRow(std::size_t in_row) = 0;

protected:
    ~IAccessibleRows() = default;
};

/// Shows the rows of a widget to assistive technology, until HideRows(). Makes nothing before somebody asks.
void ShowRows(QWidget& in_widget, IAccessibleRows& in_rows);
void HideRows(QWidget& in_widget);

// What changed. Costs one look-up while nobody has asked for the rows.
void NotifyRowsFound(QWidget& in_widget);
void NotifyRowSelected(QWidget& in_widget);

} // namespace nodebrowser
