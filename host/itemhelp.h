// SPDX-License-Identifier: MIT
/// What is known about an item, in words.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace memorymodel
{
class Library;
}

namespace vireo
{
namespace datamodel
{
class ItemID;
}
} // namespace vireo

namespace host
{

/// An input or output of an item.
struct ItemPort
{
    QString m_name;
    QString m_type;
    QString m_value;
};

/// All texts are plain, and empty where nothing is known.
struct ItemHelp
{
    QString m_name; ///< in its own characters, also those that the rows of the browser cannot show
    QString m_kind; ///< for people
    QString m_icon; ///< a resource of the browser library
    QString m_source;
    QStringList m_tags;
    QString m_doc;
    QString m_group;
    std::vector<ItemPort> m_inputs;
    std::vector<ItemPort> m_outputs;
    int m_definitions = 0; ///< how many definitions the inputs and outputs come from
    QString m_document;
    int m_line = 0; ///< in the document, from 1
};

/// Collects what library and documents say about an item. An item that the library does not have has no name. Reads the
/// declarations of this item again; nothing is kept.
ItemHelp GetItemHelp(const memorymodel::Library& in_library, const vireo::datamodel::ItemID& in_item);

/// The name of an item in its own characters; empty for one that the library does not have. Reads its declarations
/// again.
QString GetFullName(const memorymodel::Library& in_library, const vireo::datamodel::ItemID& in_item);

/// The name of the signature that a compound is made for; empty where there is none. Linear time for a compound that is
/// made for one.
QString GetBaseName(const memorymodel::Library& in_library, const vireo::datamodel::ItemID& in_item);

/// "Blend – compound, Studio"; empty without a name.
QString GetHeadline(const ItemHelp& in_help);

/// A few lines for a tool tip, as HTML.
QString GetShortHelp(const ItemHelp& in_help);

/// All of it, as HTML.
/// \param in_base the signature that a compound is made for
QString GetLongHelp(const ItemHelp& in_help, const QString& in_base = QString());

} // namespace host
