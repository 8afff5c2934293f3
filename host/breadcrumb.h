// SPDX-License-Identifier: MIT
/// The way from the main graph to the compound that is shown.
#pragma once

#include "datamodel/itemid.h"

#include <QLabel>
#include <QStringList>

#include <vector>

namespace memorymodel
{
class Library;
}

namespace host
{

/// "Main graph › Blend › Mask": a line of links. It only shows and offers the way; whoever changes the compound tells
/// it.
class Breadcrumb : public QLabel
{
    Q_OBJECT

public:
    Breadcrumb();

    /// Begins anew, at the main graph.
    void SetLibrary(const memorymodel::Library* in_library);

    /// A compound is shown from inside of the last one: the next SetCompound() makes the way longer.
    void Enter(const vireo::datamodel::ItemID& in_compound);

    /// Ends the way at a compound: goes back to it when it is on the way, and otherwise begins anew. The invalid
    /// identity is the main graph.
    void SetCompound(const vireo::datamodel::ItemID& in_compound);

    /// Call it after a change of the library. Compounds that are gone leave the way.
    void Refresh();

    /// What comes before a compound on the way; the invalid identity for the main graph.
    vireo::datamodel::ItemID GetParentOf(const vireo::datamodel::ItemID& in_compound) const;

    /// The names on the way, from the main graph on.
    QStringList GetNames() const;

Q_SIGNALS:
    /// A part of the way was clicked; the invalid identity is the main graph.
    void Chosen(const vireo::datamodel::ItemID& in_compound);

private Q_SLOTS:
    void OnLinkActivated(const QString& in_link);

private:
    const memorymodel::Library* m_library = nullptr;
    std::vector<vireo::datamodel::ItemID> m_way; ///< from the main graph, which is not in it
};

} // namespace host
