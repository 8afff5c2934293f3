// SPDX-License-Identifier: MIT
#include "bounds.h"

#include "datamodel/helpers.h"
#include "datamodel/revisioncontrol.h"
#include "peerrows.h"

#include <algorithm>
#include <cstring>

using nexa4::DbObjectId;
using nexa4::IDbObject;
using nexa4::IRevisionControlUIHelper;
using nexa4::ITypeAsset;
using nexa4::NEXAHandle;
using nexa4::NEXAPtr;
using namespace vireo::datamodel;

namespace
{

const char gNameEnd = '\n';

/// The first occurrence of a word in a range of text; the end of the range when there is none.
const char* FindWord(const char* in_begin, const char* in_end, const std::string& in_word)
{
#if defined(__GLIBC__)
    const void* const found =
        memmem(in_begin, static_cast<std::size_t>(in_end - in_begin), in_word.data(), in_word.size());
    return found ? static_cast<const char*>(found) : in_end;
#else
    return std::search(in_begin, in_end, in_word.begin(), in_word.end());
#endif
}

/// The reads that the marks of an item need: its database object, the object's source, and its kind of asset.
std::size_t ReadObject(IRevisionControlUIHelper& in_helper, const ItemID& in_item)
{
    const char* const uid = ItemIDUnlock::GetItemIDUID(in_item);
    if (!DbObjectId::IsUID(uid))
        return 0;
    const NEXAHandle<IDbObject> handle = in_helper.FindObject(DbObjectId(uid));
    const NEXAPtr<IDbObject> object = handle.operator->();
    if (!object.IsValid())
        return 0;
    const std::size_t state = object->GetDataSource()->GetState() == nexa4::eDataSourceReadOnly;
    const NEXAPtr<ITypeAsset> asset =
        NEXAHandle<ITypeAsset>::AssignCast(handle.GetInstance(), handle.GetCacheIndex()).operator->();
    return state + (asset.IsValid() && asset->IsLoaded() && asset->IsBuiltIn());
}

std::size_t ReadItem(const ItemLibraryAccessor& in_library, IRevisionControlUIHelper& in_helper, const char* in_type,
                     ItemAccessor& in_item)
{
    if (!Helpers::IsValidGraphItemType(in_type, in_item) || in_item.GetValue(gParentKey).IsValid() ||
        in_item.GetValue(gSpecializesKey).IsValid())
        return 0;
    const ItemID id = in_item.GetItemID();
    const std::size_t signature = in_type == VireoType::gCompound && Helpers::IsAbstractFunction(in_item);
    return signature + ReadObject(in_helper, id) + in_library.GetItemName(id, true, nullptr).size() +
           in_library.GetItemTags(id, gApplicationTagsKey).size();
}

} // namespace

std::string JoinLowerNames(const std::vector<NamedItem>& in_items)
{
    std::string text;
    for (const NamedItem& item : in_items)
        text += LowerText(QString::fromLatin1(item.m_name.c_str())) + gNameEnd;
    return text;
}

std::size_t CountOccurrences(const std::string& in_text, const std::vector<std::string>& in_words)
{
    std::size_t count = 0;
    const char* const end = in_text.data() + in_text.size();
    for (const std::string& word : in_words)
        for (const char* found = FindWord(in_text.data(), end, word); found != end;
             found = FindWord(found + word.size(), end, word))
            ++count;
    return count;
}

std::size_t ReadBoundary(const ItemLibraryAccessor& in_library)
{
    std::size_t read = 0;
    IRevisionControlUIHelper& helper = *hmxGetService<IRevisionControlUIHelper>("RevisionControlUIHelper");
    const ItemTOCAccessor toc = GetTOC(in_library);
    for (const char* const type : {VireoType::gPolymorphicSolver, VireoType::gCompound, VireoType::gGlobalConstant,
                                   VireoType::gSolver, LibType::gType})
        for (ItemIterator iterator = toc.IterateItems(type); !iterator.IsAtEnd(); iterator.Next())
        {
            ItemAccessor item = iterator.GetItem();
            read += ReadItem(in_library, helper, type, item);
        }
    return read;
}
