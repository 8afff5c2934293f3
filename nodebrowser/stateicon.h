// SPDX-License-Identifier: MIT
/// The icons of a row: the icon of an item's kind, and that icon with its marks.
#pragma once

#include "nodebrowser/itemkind.h"

#include <QPixmap>

#include <map>
#include <tuple>
#include <utility>

namespace nodebrowser
{

/// The room of the factory mark at the left of the icon, in pixels.
const int gFactoryMarkWidth = 7;

/// The icon of a kind of item for a device pixel ratio; null for an unknown kind.
QPixmap TypeIcon(eItemKind in_kind, double in_ratio);

/// What determines the marks of an icon.
struct IconMarks
{
    unsigned m_accessState = 0;
    bool m_factoryItem = false;
    bool m_readOnlySource = false;
    bool m_versioningActive = false;
};

/// An icon as painted. A factory item gets the factory mark at its left. Every item gets the badge of its
/// source-control state, except a factory item from a read-only source. The result has the icon's device pixel ratio.
QPixmap ComposeStateIcon(const QPixmap& in_icon, const IconMarks& in_marks);

/// The composed icons of a list, for one device pixel ratio at a time. Items of one kind with the same marks share one
/// icon. It is composed for the first of them.
class StateIcons
{
public:
    StateIcons() = default;
    // Records point at the icons.
    StateIcons(const StateIcons&) = delete;
    StateIcons& operator=(const StateIcons&) = delete;

    /// The reference stays valid as long as this object. Costs one look-up among the icons in use.
    const QPixmap& Find(eItemKind in_kind, const IconMarks& in_marks);

    /// Composes all icons again for another ratio, at first it is 1. What Find() returned shows the new ones. Costs
    /// nothing when the ratio stays the same.
    void SetPixelRatio(double in_ratio);

private:
    using Key = std::tuple<eItemKind, unsigned, bool, bool, bool>;
    QPixmap Compose(const Key& in_key) const;

    std::map<Key, QPixmap> m_icons;
    const std::pair<const Key, QPixmap>* m_last = nullptr; // the icon found last: neighbours mostly look alike
    double m_ratio = 1.0;                                  // of icons that are composed
    double m_commonRatio = 1.0;                            // of all icons; 0 when they may differ
};

} // namespace nodebrowser
