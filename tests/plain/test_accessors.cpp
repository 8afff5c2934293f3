// SPDX-License-Identifier: MIT
// Accessors over a context of the test's own: pointing, liveness, and what invalid ones answer.

#include "datamodel/compoundmodifier.h"
#include "datamodel/itemlibrary.h"
#include "datamodel/itemlibrarymodifier.h"
#include "datamodel/models.h"

#include <gtest/gtest.h>

#include <list>
#include <memory>
#include <string>
#include <utility>

using namespace vireo::datamodel;

namespace
{

/// A compound that can be switched off, and that counts what it is asked.
class Compound : public IContext, public IItem, public ICompound, public ICompoundModifier
{
public:
    bool IsAlive() const override { return m_alive; }
    ItemID GetItemID() const override { return ItemID(VireoType::gCompound, 1, 5); }
    CSimpleValue GetValue(const char* in_key) const override { return CSimpleValue(std::string(in_key) == gParentKey); }
    bool CanModifyCompound(bool in_withSource) const override { return in_withSource; }
    void RenameCompound(const char* in_newName, hmx::fwk::ICommandManager*) override { m_name = in_newName; }

    bool m_alive = true;
    std::string m_name;
};

class Nothing : public IContext
{
public:
    bool IsAlive() const override { return true; }
};

} // namespace

TEST(Accessors, pointingTakesBothSteps)
{
    const ContextPtr context = std::make_shared<Compound>();
    CompoundAccessor compound;
    EXPECT_FALSE(compound.IsValid());
    compound.ResetContext(context);
    EXPECT_FALSE(compound.IsValid());
    EXPECT_TRUE(compound.GetContext() == context);
    compound.RefreshInterfacePointer();
    EXPECT_TRUE(compound.IsValid());
    compound.ResetContext(ContextPtr());
    EXPECT_FALSE(compound.IsValid());
    EXPECT_FALSE(compound.GetContext());
}

TEST(Accessors, viewingNeedsTheInterface)
{
    const UnspecifiedAccessor model(std::make_shared<Compound>());
    EXPECT_TRUE(model.IsValid());
    EXPECT_TRUE(CompoundAccessor(model).IsValid());
    EXPECT_TRUE(ItemAccessor(model).IsValid());
    EXPECT_FALSE(LoopCompoundAccessor(model).IsValid());
    EXPECT_FALSE(FunctionAccessor(model).IsValid());
    EXPECT_FALSE(TypeDescriptorAccessor(model).IsValid());
    EXPECT_FALSE(CompoundAccessor(UnspecifiedAccessor(std::make_shared<Nothing>())).IsValid());
    EXPECT_FALSE(UnspecifiedAccessor().IsValid());
}

TEST(Accessors, copyTakesTheOtherAccessorsContext)
{
    const CompoundAccessor compound(UnspecifiedAccessor(std::make_shared<Compound>()));
    ItemAccessor item;
    item.CopyFromOtherBaseAccessor(compound);
    EXPECT_TRUE(item.GetItemID() == compound.GetItemID());
    item.CopyFromOtherBaseAccessor(CompoundAccessor());
    EXPECT_FALSE(item.IsValid());
}

TEST(Accessors, validityFollowsTheThing)
{
    const std::shared_ptr<Compound> context = std::make_shared<Compound>();
    const ItemAccessor item((UnspecifiedAccessor(context)));
    EXPECT_TRUE(item.GetItemID().IsValid());
    EXPECT_TRUE(item.GetValue(gParentKey).IsValid());
    EXPECT_FALSE(item.GetValue(gSpecializesKey).IsValid());
    context->m_alive = false;
    EXPECT_FALSE(item.IsValid());
    EXPECT_FALSE(item.GetItemID().IsValid());
    EXPECT_FALSE(item.GetValue(gParentKey).IsValid());
    context->m_alive = true;
    EXPECT_TRUE(item.IsValid());
}

TEST(Accessors, aMovedAccessorIsInvalid)
{
    ItemAccessor item((UnspecifiedAccessor(std::make_shared<Compound>())));
    const ItemAccessor other(std::move(item));
    EXPECT_TRUE(other.IsValid());
    EXPECT_FALSE(item.IsValid()); // NOLINT(bugprone-use-after-move): this is what is tested
    EXPECT_FALSE(item.GetItemID().IsValid());
}

TEST(Accessors, validityIsTheSameSeenAsAnyAccessor)
{
    const LoopCompoundAccessor loop((UnspecifiedAccessor(std::make_shared<Compound>())));
    const BaseAccessor& any = loop;
    EXPECT_FALSE(loop.IsValid());
    EXPECT_FALSE(any.IsValid());
}

TEST(Accessors, compoundModifierAsksForInitialize)
{
    const std::shared_ptr<Compound> context = std::make_shared<Compound>();
    CompoundModifierAccessor compound;
    compound.ResetContext(context);
    compound.RefreshInterfacePointer();
    EXPECT_FALSE(compound.CanModifyCompound(true));
    compound.RenameCompound("Early", nullptr);
    EXPECT_TRUE(context->m_name.empty());
    compound.Initialize();
    EXPECT_TRUE(compound.CanModifyCompound(true));
    EXPECT_FALSE(compound.CanModifyCompound(false));
    compound.RenameCompound("Late", nullptr);
    EXPECT_EQ(context->m_name, std::string("Late"));
}

TEST(Accessors, pointingElsewhereAsksForInitializeAgain)
{
    CompoundModifierAccessor compound((UnspecifiedAccessor(std::make_shared<Compound>())));
    compound.Initialize();
    EXPECT_TRUE(compound.CanModifyCompound(true));
    compound.CopyFromOtherBaseAccessor(UnspecifiedAccessor(std::make_shared<Compound>()));
    EXPECT_FALSE(compound.CanModifyCompound(true));
}

TEST(Accessors, invalidAccessorsAnswerNothing)
{
    const ItemID id(VireoType::gCompound, 1, 1);
    const ItemLibraryAccessor library;
    std::string error = "untouched";
    EXPECT_TRUE(library.GetItemName(id, true, nullptr).empty());
    EXPECT_TRUE(library.GetItemTags(id, gApplicationTagsKey).empty());
    EXPECT_FALSE(library.ItemIsReadOnly(id));
    EXPECT_FALSE(library.ItemIsDirty(id));
    EXPECT_FALSE(library.GetModel(id, &error).IsValid());
    library.AddObserver(nullptr, eItemLibraryNotificationKind, ContextPtr());
    library.RemoveObserver(nullptr, eItemLibraryNotificationKind, ContextPtr());

    const ItemTOCAccessor toc;
    EXPECT_TRUE(toc.IterateItems(VireoType::gCompound).IsAtEnd());
    toc.AddObserver(nullptr, eItemTOCNotificationKind, ContextPtr());
    toc.RemoveObserver(nullptr, eItemTOCNotificationKind, ContextPtr());

    bool written = true;
    std::list<std::string> messages;
    EXPECT_FALSE(ItemLibraryModifierAccessor().CommitToDisk(written, &messages, false, nexa4::UID_Null()));
    EXPECT_FALSE(written);
    EXPECT_TRUE(messages.empty());
    EXPECT_FALSE(ItemLibraryModifierAccessor().SetItemTags(id, gApplicationTagsKey, "a", nullptr));
    EXPECT_FALSE(LowLevelItemLibraryAccessor().PreCommit());
}

TEST(Accessors, creatingInAnInvalidLibraryLeavesTheModifierInvalid)
{
    CompoundModifierAccessor compound((UnspecifiedAccessor(std::make_shared<Compound>())));
    EXPECT_FALSE(compound.CreateAndSetFromNewCompound(ItemLibraryAccessor(), "A", false, "", "", nullptr).IsValid());
    EXPECT_FALSE(compound.IsValid());
    LoopCompoundModifierAccessor loop;
    EXPECT_FALSE(loop.CreateAndSetFromNewLoopCompound(ItemLibraryAccessor(), "A", "", "", nullptr).IsValid());
    EXPECT_FALSE(loop.IsValid());
}

TEST(Accessors, iteratorWithoutItemsIsAtItsEnd)
{
    ItemIterator nothing;
    EXPECT_TRUE(nothing.IsAtEnd());
    nothing.Next();
    EXPECT_TRUE(nothing.IsAtEnd());
    EXPECT_FALSE(nothing.GetItem().IsValid());
    EXPECT_TRUE(ItemIterator(std::unique_ptr<IItemIterator>()).IsAtEnd());
}
