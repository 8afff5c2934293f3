// SPDX-License-Identifier: MIT
/// What people do with items, as changes of documents that can be taken back.
#pragma once

#include "memorymodel/store.h"
#include "workspace/content.h"

#include <memory>
#include <string>

/// Each returns null, and nothing is changed, when the documents cannot take the change. Texts are 8-bit Latin-1.
///
/// A step keeps the bytes that it has changed, and takes them back exactly. When a document has been read anew
/// meanwhile, or changed by something that is not to be undone, it plans afresh: it finds the item by its identity and
/// gives it the name, tags or source that it had. It fails, and nothing changes, when there is no such item any more.
namespace workspace
{

using StepPtr = std::unique_ptr<memorymodel::Step>;
using ContentPtr = std::shared_ptr<Content>;

/// Characters of the old name that Latin-1 lacks do not come back by writing "?".
StepPtr MakeRename(const ContentPtr& in_content, const vireo::datamodel::ItemID& in_item, const std::string& in_name);
/// Each tag that is as before keeps its characters, also those that Latin-1 lacks.
StepPtr MakeTagging(const ContentPtr& in_content, const vireo::datamodel::ItemID& in_item, const std::string& in_tags);
StepPtr MakeMove(const ContentPtr& in_content, const vireo::datamodel::ItemID& in_item,
                 const memorymodel::DataSource& in_target);
StepPtr MakeCreation(const ContentPtr& in_content, memorymodel::Creation& io_creation);
StepPtr MakeRemoval(const ContentPtr& in_content, const vireo::datamodel::ItemID& in_item);

} // namespace workspace
