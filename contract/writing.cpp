// SPDX-License-Identifier: MIT
#include "contract/boundarycontract.h"
#include "contract/notificationspy.h"
#include "contract/support.h"

#include <QtTest>

#include <list>

using namespace vireo::datamodel;

namespace contract
{
namespace
{

class ForeignManager : public hmx::fwk::ICommandManager
{
};

} // namespace

void BoundaryContract::writeIsOneCommandThatUndoesAndRedoes()
{
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    NotificationSpy spy(library);

    QVERIFY(SetTags(library, id, "a", m_fixture->GetCommands()));
    QCOMPARE(m_fixture->GetCommandCount(), 1);
    QCOMPARE(spy.Take(), QByteArray("begin, tags Blend ApplicationTags, end"));
    ModifierOf(library, id).RenameCompound("Mix", m_fixture->GetCommands());
    QCOMPARE(m_fixture->GetCommandCount(), 2);
    QCOMPARE(spy.Take(), QByteArray("begin, name Mix, end"));

    m_fixture->Undo();
    QCOMPARE(spy.Take(), QByteArray("begin, name Blend, end"));
    m_fixture->Undo();
    QCOMPARE(spy.Take(), QByteArray("begin, tags Blend ApplicationTags, end"));
    QVERIFY(library.GetItemTags(id, gApplicationTagsKey).empty());
    m_fixture->Redo();
    QCOMPARE(spy.Take(), QByteArray("begin, tags Blend ApplicationTags, end"));
    QCOMPARE(library.GetItemTags(id, gApplicationTagsKey), std::string("a"));
    m_fixture->Redo();
    QCOMPARE(spy.Take(), QByteArray("begin, name Mix, end"));
    QCOMPARE(m_fixture->GetCommandCount(), 2);
}

void BoundaryContract::refusedWritesLeaveNoCommand()
{
    ItemWish closed(VireoType::gCompound, "Closed");
    closed.m_source = "Product";
    const ItemID id = m_fixture->Add(closed);
    const ItemID open = m_fixture->Add(ItemWish(VireoType::gCompound, "Open"));
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    NotificationSpy spy(library);
    QVERIFY(!SetTags(library, id, "a", m_fixture->GetCommands()));
    QVERIFY(SetTags(library, open, "", m_fixture->GetCommands()));
    ModifierOf(library, id).RenameCompound("Other", m_fixture->GetCommands());
    ModifierOf(library, open).RenameCompound("Open", m_fixture->GetCommands());
    CompoundModifierAccessor created;
    created.CreateAndSetFromNewCompound(library, "Open", false, "", "", m_fixture->GetCommands());
    QCOMPARE(m_fixture->GetCommandCount(), 0);
    QCOMPARE(spy.Take(), QByteArray());
}

void BoundaryContract::writeWithoutAManagerIsDoneForGood()
{
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    QVERIFY(SetTags(library, id, "a", nullptr));
    QCOMPARE(m_fixture->GetCommandCount(), 0);
    QCOMPARE(library.GetItemTags(id, gApplicationTagsKey), std::string("a"));
}

void BoundaryContract::foreignManagerIsTreatedLikeNone()
{
    ForeignManager foreign;
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    NotificationSpy spy(library);
    QVERIFY(SetTags(library, id, "a", &foreign));
    QCOMPARE(spy.Take(), QByteArray("begin, tags Blend ApplicationTags, end"));
    QCOMPARE(library.GetItemTags(id, gApplicationTagsKey), std::string("a"));
    QCOMPARE(m_fixture->GetCommandCount(), 0);
}

void BoundaryContract::removalComesBackWithTheSameIdentity()
{
    m_fixture->Add(ItemWish(VireoType::gSolver, "first"));
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gSolver, "second"));
    m_fixture->Add(ItemWish(VireoType::gSolver, "third"));
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    const ItemAccessor item((library.GetModel(id, nullptr)));
    NotificationSpy spy(library);

    m_fixture->Remove(id, m_fixture->GetCommands());
    QCOMPARE(Listed(library, VireoType::gSolver), QByteArray("first third"));
    QVERIFY(!item.IsValid());
    QCOMPARE(spy.Take(), QByteArray("begin, removed second, end"));
    m_fixture->Undo();
    QCOMPARE(Listed(library, VireoType::gSolver), QByteArray("first second third"));
    QVERIFY(item.GetItemID() == id);
    QCOMPARE(spy.Take(), QByteArray("begin, added second, end"));
    m_fixture->Redo();
    QCOMPARE(Listed(library, VireoType::gSolver), QByteArray("first third"));
    QCOMPARE(spy.Take(), QByteArray("begin, removed second, end"));
    m_fixture->Undo();
    QCOMPARE(Listed(library, VireoType::gSolver), QByteArray("first second third"));
}

void BoundaryContract::renameRefuses_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("readOnly");
    QTest::addColumn<QByteArray>("source");
    QTest::newRow("empty name") << QByteArray("") << false << QByteArray("Local");
    QTest::newRow("no name") << QByteArray() << false << QByteArray("Local");
    QTest::newRow("a compound's name") << QByteArray("Compound") << false << QByteArray("Local");
    QTest::newRow("a constant's name") << QByteArray("GlobalConstant") << false << QByteArray("Local");
    QTest::newRow("read-only item") << QByteArray("Free") << true << QByteArray("Local");
    QTest::newRow("read-only source") << QByteArray("Free") << false << QByteArray("Product");
}

void BoundaryContract::renameRefuses()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, readOnly);
    QFETCH(QByteArray, source);
    for (const char* const type : AllTypes())
        m_fixture->Add(ItemWish(type, type));
    ItemWish wish(VireoType::gCompound, "Blend");
    wish.m_readOnly = readOnly;
    wish.m_source = source.constData();
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    const ItemID id = m_fixture->Add(wish);
    NotificationSpy spy(library);
    ModifierOf(library, id).RenameCompound(name.isNull() ? nullptr : name.constData(), m_fixture->GetCommands());
    QCOMPARE(library.GetItemName(id, true, nullptr), std::string("Blend"));
    QCOMPARE(spy.Take(), QByteArray());
    QCOMPARE(m_fixture->GetCommandCount(), 0);
}

void BoundaryContract::compoundTakesChangesByItemAndSource()
{
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    const CompoundModifierAccessor open = ModifierOf(library, m_fixture->Add(ItemWish(VireoType::gCompound, "open")));
    ItemWish closed(VireoType::gCompound, "closed");
    closed.m_readOnly = true;
    const CompoundModifierAccessor closedItem = ModifierOf(library, m_fixture->Add(closed));
    ItemWish product(VireoType::gCompound, "product");
    product.m_source = "Product";
    const CompoundModifierAccessor productItem = ModifierOf(library, m_fixture->Add(product));

    QVERIFY(open.CanModifyCompound(true));
    QVERIFY(open.CanModifyCompound(false));
    QVERIFY(!closedItem.CanModifyCompound(true));
    QVERIFY(!closedItem.CanModifyCompound(false));
    QVERIFY(!productItem.CanModifyCompound(true));
    QVERIFY(productItem.CanModifyCompound(false));
}

void BoundaryContract::dirtinessFollowsTheCommittedState()
{
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    QVERIFY(!library.ItemIsDirty(id));
    SetTags(library, id, "a", m_fixture->GetCommands());
    QVERIFY(library.ItemIsDirty(id));
    m_fixture->Undo();
    QVERIFY(!library.ItemIsDirty(id));
    m_fixture->Redo();
    QVERIFY(library.ItemIsDirty(id));
    QVERIFY(Commit(library));
    QVERIFY(!library.ItemIsDirty(id));
    m_fixture->Undo();
    QVERIFY(library.ItemIsDirty(id));
    m_fixture->Redo();
    QVERIFY(!library.ItemIsDirty(id));

    // Undoing does not bring the committed state back when something came in between that cannot be undone.
    SetTags(library, id, "b", m_fixture->GetCommands());
    ModifierOf(library, id).RenameCompound("Mix", nullptr);
    m_fixture->Undo();
    QVERIFY(library.ItemIsDirty(id));
}

void BoundaryContract::commitAsksAndNotifies()
{
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    const ItemLibraryModifierAccessor writer(library);
    SetTags(library, id, "a", nullptr);
    NotificationSpy spy(library);
    bool dirtyBefore = false;
    bool dirtyAfter = true;
    spy.m_reaction = [&](const QByteArray& in_call) {
        (in_call == "precommit" ? dirtyBefore : dirtyAfter) = library.ItemIsDirty(id);
    };
    QVERIFY(LowLevelItemLibraryAccessor(library).PreCommit());
    QCOMPARE(spy.Take(), QByteArray());

    bool written = false;
    std::list<std::string> messages;
    QVERIFY(writer.CommitToDisk(written, &messages, false, nexa4::UID_Null()));
    QVERIFY(written);
    QVERIFY(messages.empty());
    QCOMPARE(spy.Take(), QByteArray("precommit, postcommit"));
    QVERIFY(dirtyBefore);
    QVERIFY(!dirtyAfter);

    QVERIFY(writer.CommitToDisk(written, nullptr, false, nexa4::UID_Null()));
    QVERIFY(!written);
    QVERIFY(writer.CommitToDisk(written, nullptr, true, nexa4::UID_Null()));
    QVERIFY(written);
    QCOMPARE(m_fixture->GetCommandCount(), 0);
}

void BoundaryContract::vetoStopsTheCommit()
{
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    SetTags(library, id, "a", nullptr);
    NotificationSpy first(library);
    NotificationSpy second(library);
    first.m_veto = true;
    bool written = true;
    QVERIFY(!ItemLibraryModifierAccessor(library).CommitToDisk(written, nullptr, false, nexa4::UID_Null()));
    QVERIFY(!written);
    QVERIFY(library.ItemIsDirty(id));
    QCOMPARE(first.Take(), QByteArray("precommit"));
    QVERIFY(!second.Take().contains("postcommit"));
    first.m_veto = false;
    QVERIFY(Commit(library));
    QVERIFY(!library.ItemIsDirty(id));
}

void BoundaryContract::createdCompoundIsThereAndListed_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("compound") << int(eCompoundKind);
    QTest::newRow("loop compound") << int(eLoopKind);
    QTest::newRow("signature") << int(eSignatureKind);
}

void BoundaryContract::createdCompoundIsThereAndListed()
{
    QFETCH(int, kind);
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    NotificationSpy spy(library);
    CompoundModifierAccessor compound;
    LoopCompoundModifierAccessor loop;
    const ItemID id =
        kind == eLoopKind
            ? loop.CreateAndSetFromNewLoopCompound(library, "New", nullptr, nullptr, nullptr)
            : compound.CreateAndSetFromNewCompound(library, "New", kind == eSignatureKind, nullptr, nullptr, nullptr);
    QCOMPARE(spy.Take(), QByteArray("begin, added New, end"));
    QCOMPARE(loop.IsValid(), kind == eLoopKind);
    QCOMPARE(compound.IsValid(), kind != eLoopKind);
    if (compound.IsValid())
        QVERIFY(compound.CanModifyCompound(true));
    QVERIFY(id.GetType() == VireoType::gCompound);
    QCOMPARE(Listed(library, VireoType::gCompound), QByteArray("New"));
    const UnspecifiedAccessor model = library.GetModel(id, nullptr);
    QCOMPARE(LoopCompoundAccessor(model).IsValid(), kind == eLoopKind);
    ItemAccessor item(model);
    QCOMPARE(Helpers::IsAbstractFunction(item), kind == eSignatureKind);
    QVERIFY(library.ItemIsDirty(id));
    QVERIFY(!library.ItemIsReadOnly(id));
}

void BoundaryContract::creationIsOneCommandWithOneIdentity()
{
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    NotificationSpy spy(library);
    CompoundModifierAccessor compound;
    const ItemID id =
        compound.CreateAndSetFromNewCompound(library, "New", false, "", "Colour", m_fixture->GetCommands());
    QCOMPARE(m_fixture->GetCommandCount(), 1);
    QCOMPARE(spy.Take(), QByteArray("begin, added New, end"));
    m_fixture->Undo();
    QCOMPARE(spy.Take(), QByteArray("begin, removed New, end"));
    QVERIFY(!compound.IsValid());
    QCOMPARE(Listed(library, VireoType::gCompound), QByteArray());
    m_fixture->Redo();
    QCOMPARE(spy.Take(), QByteArray("begin, added New, end"));
    QVERIFY(compound.IsValid());
    QCOMPARE(library.GetItemName(id, true, nullptr), std::string("New"));
    QVERIFY(library.ItemIsDirty(id));
}

void BoundaryContract::creationRefuses_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("baseClass");
    QTest::newRow("empty name") << QByteArray("") << QByteArray("");
    QTest::newRow("a compound's name") << QByteArray("Compound") << QByteArray("");
    QTest::newRow("a solver's name") << QByteArray("Solver") << QByteArray("");
    QTest::newRow("a polymorphic solver's name") << QByteArray("PolymorphicSolver") << QByteArray("");
    QTest::newRow("a constant's name") << QByteArray("GlobalConstant") << QByteArray("");
    QTest::newRow("no such base class") << QByteArray("Free") << QByteArray("0A0B0C0D-0000-4000-8000-0123456789AB");
    QTest::newRow("base class is no UID") << QByteArray("Free") << QByteArray("Signature");
}

void BoundaryContract::creationRefuses()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, baseClass);
    for (const char* const type : AllTypes())
        m_fixture->Add(ItemWish(type, type));
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    NotificationSpy spy(library);
    CompoundModifierAccessor compound;
    QVERIFY(!compound
                 .CreateAndSetFromNewCompound(library, name.constData(), false, baseClass.constData(), nullptr,
                                              m_fixture->GetCommands())
                 .IsValid());
    QVERIFY(!compound.IsValid());
    LoopCompoundModifierAccessor loop;
    QVERIFY(!loop.CreateAndSetFromNewLoopCompound(library, name.constData(), baseClass.constData(), nullptr,
                                                  m_fixture->GetCommands())
                 .IsValid());
    QVERIFY(!loop.IsValid());
    QCOMPARE(spy.Take(), QByteArray());
    QCOMPARE(m_fixture->GetCommandCount(), 0);
}

void BoundaryContract::baseClassIsTheUIDOfASignature()
{
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    const std::string signature = ItemIDUnlock::GetItemIDUID(m_fixture->Add(WishOfKind(eSignatureKind, "Signature")));
    const std::string plain = ItemIDUnlock::GetItemIDUID(m_fixture->Add(WishOfKind(eCompoundKind, "Plain")));
    CompoundModifierAccessor compound;
    QVERIFY(compound.CreateAndSetFromNewCompound(library, "A", false, signature.c_str(), "", nullptr).IsValid());
    QVERIFY(!compound.CreateAndSetFromNewCompound(library, "B", false, plain.c_str(), "", nullptr).IsValid());
    QVERIFY(!compound.IsValid());
}

void BoundaryContract::compoundTargetIsRemembered()
{
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    QVERIFY(!m_fixture->GetCompoundTarget().IsValid());
    const CompoundAccessor compound(m_fixture->GetLibrary().GetModel(id, nullptr));
    Helpers::SetGlobalVireoCompoundTarget(compound, CompoundAccessor());
    QVERIFY(m_fixture->GetCompoundTarget() == id);
    Helpers::SetGlobalVireoCompoundTarget(CompoundAccessor(), CompoundAccessor());
    QVERIFY(!m_fixture->GetCompoundTarget().IsValid());
}

} // namespace contract
