// SPDX-License-Identifier: MIT
/// The pictures of a row: the icon of an item's kind, and that icon with its marks.
#pragma once

#include "nodebrowser/itemkind.h"

#include <QPixmap>

#include <map>
#include <tuple>
#include <utility>

namespace nodebrowser
{

/// How far the factory mark moves the icon of a factory item to the right, in pixels.
const int gFactoryMarkWidth = 7;

/// The icon of a kind of item; null for an unknown kind.
QPixmap TypeIcon(eItemKind in_kind);

/// What decides how an icon is marked.
struct IconMarks
{
    unsigned m_accessState = 0;
    bool m_factoryItem = false;
    bool m_readOnlySource = false;
    bool m_versioningActive = false;
};

/// An icon as painted: with the factory mark at its left for a factory item, and with the badge of its source-control
/// state, except on a factory item from a read-only source. It has the icon's device pixel ratio.
QPixmap ComposeStateIcon(const QPixmap& in_icon, const IconMarks& in_marks);

/// The composed icons of a list: items of one kind with the same marks share one picture, which is composed when the
/// first of them asks for it.
class StateIcons
{
public:
    StateIcons() = default;
    // The pictures are pointed at.
    StateIcons(const StateIcons&) = delete;
    StateIcons& operator=(const StateIcons&) = delete;

    /// The icon stays where it is. Costs one look-up among the icons in use.
    const QPixmap& Find(eItemKind in_kind, const IconMarks& in_marks);

private:
    using Key = std::tuple<eItemKind, unsigned, bool, bool, bool>;
    std::map<Key, QPixmap> m_icons;
    const std::pair<const Key, QPixmap>* m_last = nullptr; // neighbours in a list are mostly alike
};

} // namespace nodebrowser
