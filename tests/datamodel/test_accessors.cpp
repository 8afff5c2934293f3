// SPDX-License-Identifier: MIT
// Accessors over a context of the test's own: pointing, liveness, and what invalid ones answer.

#include "datamodel/compoundmodifier.h"
#include "datamodel/itemlibrary.h"
#include "datamodel/itemlibrarymodifier.h"
#include "datamodel/models.h"
#include "tests/support/testmain.h"

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

class TestAccessors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pointingTakesBothSteps()
    {
        const ContextPtr context = std::make_shared<Compound>();
        CompoundAccessor compound;
        QVERIFY(!compound.IsValid());
        compound.ResetContext(context);
        QVERIFY(!compound.IsValid());
        QVERIFY(compound.GetContext() == context);
        compound.RefreshInterfacePointer();
        QVERIFY(compound.IsValid());
        compound.ResetContext(ContextPtr());
        QVERIFY(!compound.IsValid());
        QVERIFY(!compound.GetContext());
    }

    void viewingNeedsTheInterface()
    {
        const UnspecifiedAccessor model(std::make_shared<Compound>());
        QVERIFY(model.IsValid());
        QVERIFY(CompoundAccessor(model).IsValid());
        QVERIFY(ItemAccessor(model).IsValid());
        QVERIFY(!LoopCompoundAccessor(model).IsValid());
        QVERIFY(!FunctionAccessor(model).IsValid());
        QVERIFY(!TypeDescriptorAccessor(model).IsValid());
        QVERIFY(!CompoundAccessor(UnspecifiedAccessor(std::make_shared<Nothing>())).IsValid());
        QVERIFY(!UnspecifiedAccessor().IsValid());
    }

    void copyTakesTheOtherAccessorsContext()
    {
        const CompoundAccessor compound(UnspecifiedAccessor(std::make_shared<Compound>()));
        ItemAccessor item;
        item.CopyFromOtherBaseAccessor(compound);
        QVERIFY(item.GetItemID() == compound.GetItemID());
        item.CopyFromOtherBaseAccessor(CompoundAccessor());
        QVERIFY(!item.IsValid());
    }

    void validityFollowsTheThing()
    {
        const std::shared_ptr<Compound> context = std::make_shared<Compound>();
        const ItemAccessor item((UnspecifiedAccessor(context)));
        QVERIFY(item.GetItemID().IsValid());
        QVERIFY(item.GetValue(gParentKey).IsValid());
        QVERIFY(!item.GetValue(gSpecializesKey).IsValid());
        context->m_alive = false;
        QVERIFY(!item.IsValid());
        QVERIFY(!item.GetItemID().IsValid());
        QVERIFY(!item.GetValue(gParentKey).IsValid());
        context->m_alive = true;
        QVERIFY(item.IsValid());
    }

    void aMovedAccessorIsInvalid()
    {
        ItemAccessor item((UnspecifiedAccessor(std::make_shared<Compound>())));
        const ItemAccessor other(std::move(item));
        QVERIFY(other.IsValid());
        QVERIFY(!item.IsValid()); // NOLINT(bugprone-use-after-move): this is what is tested
        QVERIFY(!item.GetItemID().IsValid());
    }

    void validityIsTheSameSeenAsAnyAccessor()
    {
        const LoopCompoundAccessor loop((UnspecifiedAccessor(std::make_shared<Compound>())));
        const BaseAccessor& any = loop;
        QVERIFY(!loop.IsValid());
        QVERIFY(!any.IsValid());
    }

    void compoundModifierAsksForInitialize()
    {
        const std::shared_ptr<Compound> context = std::make_shared<Compound>();
        CompoundModifierAccessor compound;
        compound.ResetContext(context);
        compound.RefreshInterfacePointer();
        QVERIFY(!compound.CanModifyCompound(true));
        compound.RenameCompound("Early", nullptr);
        QVERIFY(context->m_name.empty());
        compound.Initialize();
        QVERIFY(compound.CanModifyCompound(true));
        QVERIFY(!compound.CanModifyCompound(false));
        compound.RenameCompound("Late", nullptr);
        QCOMPARE(context->m_name, std::string("Late"));
    }

    void pointingElsewhereAsksForInitializeAgain()
    {
        CompoundModifierAccessor compound((UnspecifiedAccessor(std::make_shared<Compound>())));
        compound.Initialize();
        QVERIFY(compound.CanModifyCompound(true));
        compound.CopyFromOtherBaseAccessor(UnspecifiedAccessor(std::make_shared<Compound>()));
        QVERIFY(!compound.CanModifyCompound(true));
    }

    void invalidAccessorsAnswerNothing()
    {
        const ItemID id(VireoType::gCompound, 1, 1);
        const ItemLibraryAccessor library;
        std::string error = "untouched";
        QVERIFY(library.GetItemName(id, true, nullptr).empty());
        QVERIFY(library.GetItemTags(id, gApplicationTagsKey).empty());
        QVERIFY(!library.ItemIsReadOnly(id));
        QVERIFY(!library.ItemIsDirty(id));
        QVERIFY(!library.GetModel(id, &error).IsValid());
        library.AddObserver(nullptr, eItemLibraryNotificationKind, ContextPtr());
        library.RemoveObserver(nullptr, eItemLibraryNotificationKind, ContextPtr());

        const ItemTOCAccessor toc;
        QVERIFY(toc.IterateItems(VireoType::gCompound).IsAtEnd());
        toc.AddObserver(nullptr, eItemTOCNotificationKind, ContextPtr());
        toc.RemoveObserver(nullptr, eItemTOCNotificationKind, ContextPtr());

        bool written = true;
        std::list<std::string> messages;
        QVERIFY(!ItemLibraryModifierAccessor().CommitToDisk(written, &messages, false, nexa4::UID_Null()));
        QVERIFY(!written);
        QVERIFY(messages.empty());
        QVERIFY(!ItemLibraryModifierAccessor().SetItemTags(id, gApplicationTagsKey, "a", nullptr));
        QVERIFY(!LowLevelItemLibraryAccessor().PreCommit());
    }

    void creatingInAnInvalidLibraryLeavesTheModifierInvalid()
    {
        CompoundModifierAccessor compound((UnspecifiedAccessor(std::make_shared<Compound>())));
        QVERIFY(!compound.CreateAndSetFromNewCompound(ItemLibraryAccessor(), "A", false, "", "", nullptr).IsValid());
        QVERIFY(!compound.IsValid());
        LoopCompoundModifierAccessor loop;
        QVERIFY(!loop.CreateAndSetFromNewLoopCompound(ItemLibraryAccessor(), "A", "", "", nullptr).IsValid());
        QVERIFY(!loop.IsValid());
    }

    void iteratorWithoutItemsIsAtItsEnd()
    {
        ItemIterator nothing;
        QVERIFY(nothing.IsAtEnd());
        nothing.Next();
        QVERIFY(nothing.IsAtEnd());
        QVERIFY(!nothing.GetItem().IsValid());
        QVERIFY(ItemIterator(std::unique_ptr<IItemIterator>()).IsAtEnd());
    }
};

NODEBROWSER_TEST_MAIN(TestAccessors)
#include "test_accessors.moc"
