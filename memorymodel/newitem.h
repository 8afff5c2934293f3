// SPDX-License-Identifier: MIT
/// The description of an item to be added to a library.
#pragma once

#include "datamodel/itemid.h"
#include "memorymodel/export.h"

#include <memory>
#include <string>

namespace memorymodel
{

class DataSource;
class LibraryContents;
struct ItemDescription;

/// What an item is to be, written as one sentence:
///
///     library.Add(NewItem::Compound("Blend").Tags("color;mix").In(local));
///
/// Nothing happens until the description is handed to Library::Add(). Texts are 8-bit Latin-1.
class MEMORYMODEL_EXPORT NewItem
{
public:
    /// Copies the whole description: copies can be completed in different ways.
    NewItem(const NewItem& in_other);
    /// Like the copy constructor.
    NewItem& operator=(const NewItem& in_other);
    ~NewItem();

    /// \name The beginning of a description
    /// Each makes an item of a kind with this name. It can be changed, has no tags, and has a database object with a
    /// new identity, in the library's first data source.
    /// \{
    static NewItem Compound(std::string in_name);          ///< a compound with a graph
    static NewItem LoopCompound(std::string in_name);      ///< a compound whose graph runs in a loop
    static NewItem Signature(std::string in_name);         ///< a compound without a graph
    static NewItem Solver(std::string in_name);            ///< a node that the host computes
    static NewItem PolymorphicSolver(std::string in_name); ///< a node with several solvers behind it
    static NewItem GlobalConstant(std::string in_name);    ///< a named constant
    static NewItem Type(std::string in_name);              ///< a data type
    /// \}

    /// Tags joined by ";".
    NewItem& Tags(std::string in_tags);
    /// The data source, one of the library's; without this its first one.
    NewItem& In(DataSource& in_source);
    /// Gives the item a "Parent" value: it lives inside another item and is not listed. An empty text gives none.
    NewItem& Parent(std::string in_parent);
    /// Gives the item a "Specializes" value: it is a variant of another item and is not listed. An empty text gives
    /// none.
    NewItem& Specializes(std::string in_general);
    /// Refuses changes, whatever its data source says.
    NewItem& ReadOnly();
    /// Gives the item no database object: it has no identity there that is a UID.
    NewItem& WithoutUID();
    /// Gives the database object this identity instead of a new one. A text that is no UID gives a new one all the
    /// same; of several objects with one identity, the one added first is found by it.
    NewItem& UID(std::string in_uid);
    /// Gives the item a UID that no database object answers to.
    NewItem& WithoutObject();
    /// Marks its database object as an asset built into the product.
    NewItem& BuiltIn();
    /// Leaves the content of its database object out of memory.
    NewItem& Unloaded();
    /// Not a valid graph item of its type.
    NewItem& NotForGraphs();
    /// The base class of a compound: identity text of a signature.
    NewItem& BaseClass(std::string in_uid);
    /// The category of a compound.
    NewItem& Category(std::string in_category);

private:
    friend class LibraryContents;
    MEMORYMODEL_NO_EXPORT NewItem(const char* in_type, std::string in_name);

    std::unique_ptr<ItemDescription> m_private;
};

} // namespace memorymodel
