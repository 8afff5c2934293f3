/// The pictures of a row: the icon of an item's type, and that icon with its marks.
#pragma once

#include "datamodel/item.h"

#include <QPixmap>

/// How far the factory mark moves the icon of a factory item to the right, in pixels.
const int gFactoryMarkWidth = 7;

/// The icon of an item's type; null for an unknown type.
QPixmap TypeIcon(vireo::datamodel::ItemAccessor& in_item);

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
