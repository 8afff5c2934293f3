// SPDX-License-Identifier: MIT
#include "contract/boundarycontract.h"
#include "contract/support.h"

#include <QtTest>

#include <set>
#include <string>

using namespace vireo::datamodel;

namespace contract
{

void BoundaryContract::init()
{
    m_fixture = MakeFixture();
}

void BoundaryContract::cleanup()
{
    m_fixture.reset();
}

void BoundaryContract::typesAreTheConstantsThemselves()
{
    for (const char* const type : AllTypes())
    {
        const ItemID id = m_fixture->Add(ItemWish(type, "An item"));
        QVERIFY(id.GetType() == type);
        const ItemIterator item = GetTOC(m_fixture->GetLibrary()).IterateItems(type);
        QVERIFY(item.GetItem().GetItemID().GetType() == type);
    }
}

void BoundaryContract::itemsAreListedUnderTheirTypeInOrderOfAddition()
{
    for (const char* const name : {"c", "a", "b"})
        for (const char* const type : AllTypes())
            m_fixture->Add(ItemWish(type, std::string(type) + name));
    for (const char* const type : AllTypes())
        QCOMPARE(Listed(m_fixture->GetLibrary(), type), QByteArray("%c %a %b").replace("%", type));
}

void BoundaryContract::otherPointersListNothing()
{
    m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    const std::string copy = VireoType::gCompound;
    const ItemTOCAccessor toc = GetTOC(m_fixture->GetLibrary());
    QVERIFY(toc.IterateItems(copy.c_str()).IsAtEnd());
    QVERIFY(toc.IterateItems(nullptr).IsAtEnd());
    QVERIFY(toc.IterateItems(VireoType::gSolver).IsAtEnd());
    QVERIFY(!toc.IterateItems(VireoType::gCompound).IsAtEnd());
}

void BoundaryContract::iteratorKeepsToTheItemsItBeganWith()
{
    const ItemID first = m_fixture->Add(ItemWish(VireoType::gSolver, "first"));
    const ItemID second = m_fixture->Add(ItemWish(VireoType::gSolver, "second"));
    const ItemID third = m_fixture->Add(ItemWish(VireoType::gSolver, "third"));
    ItemIterator iterator = GetTOC(m_fixture->GetLibrary()).IterateItems(VireoType::gSolver);
    QVERIFY(iterator.GetItem().GetItemID() == first);

    m_fixture->Remove(second, nullptr);
    m_fixture->Add(ItemWish(VireoType::gSolver, "fourth"));
    QCOMPARE(Listed(m_fixture->GetLibrary(), VireoType::gSolver), QByteArray("first third fourth"));

    iterator.Next();
    QVERIFY(!iterator.IsAtEnd());
    QVERIFY(!iterator.GetItem().IsValid());
    iterator.Next();
    QVERIFY(iterator.GetItem().GetItemID() == third);
    iterator.Next();
    QVERIFY(iterator.IsAtEnd());
    iterator.Next();
    QVERIFY(iterator.IsAtEnd());
    QVERIFY(!iterator.GetItem().IsValid());
}

void BoundaryContract::identitiesAreNeverReused()
{
    std::set<ItemID> ids;
    std::set<std::string> texts;
    for (int i = 0; i < 20; ++i)
    {
        const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
        ids.insert(id);
        texts.insert(id.Serialize());
        m_fixture->Remove(id, nullptr);
    }
    const std::unique_ptr<BoundaryFixture> other = MakeFixture();
    const ItemID elsewhere = other->Add(ItemWish(VireoType::gCompound, "Blend"));
    ids.insert(elsewhere);
    texts.insert(elsewhere.Serialize());
    QCOMPARE(ids.size(), std::size_t(21));
    QCOMPARE(texts.size(), std::size_t(21));
}

void BoundaryContract::itemThatIsGoneAnswersNothing()
{
    ItemWish wish(VireoType::gCompound, "Blend");
    wish.m_tags = "mix";
    wish.m_readOnly = true;
    const ItemID id = m_fixture->Add(wish);
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    const UnspecifiedAccessor model = library.GetModel(id, nullptr);
    QVERIFY(model.IsValid());
    m_fixture->Remove(id, nullptr);

    for (const ItemID& gone : {id, ItemID(), ItemID(VireoType::gCompound, 123456789, 0)})
    {
        QVERIFY(library.GetItemName(gone, true, nullptr).empty());
        QVERIFY(library.GetItemTags(gone, gApplicationTagsKey).empty());
        QVERIFY(!library.ItemIsReadOnly(gone));
        QVERIFY(!library.ItemIsDirty(gone));
        QVERIFY(!library.GetModel(gone, nullptr).IsValid());
        QVERIFY(!nexa4::DbObjectId::IsUID(ItemIDUnlock::GetItemIDUID(gone)));
        QVERIFY(!ItemLibraryModifierAccessor(library).SetItemTags(gone, gApplicationTagsKey, "a", nullptr));
    }
    QVERIFY(!model.IsValid());
}

void BoundaryContract::namesTagsAndValuesAreRead()
{
    ItemWish wish(VireoType::gSolver, "\xC4hnlich \xFC");
    wish.m_tags = "colour;mix";
    const ItemID plain = m_fixture->Add(wish);
    ItemWish nested(VireoType::gCompound, "Nested");
    nested.m_parent = true;
    m_fixture->Add(nested);
    ItemWish special(VireoType::gGlobalConstant, "Special");
    special.m_specializes = true;
    m_fixture->Add(special);

    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    QCOMPARE(library.GetItemName(plain, true, nullptr), std::string("\xC4hnlich \xFC"));
    QCOMPARE(library.GetItemTags(plain, "ApplicationTags"), std::string("colour;mix"));
    QVERIFY(library.GetItemTags(plain, "OtherTags").empty());
    QVERIFY(library.GetItemTags(plain, nullptr).empty());

    const ItemTOCAccessor toc = GetTOC(library);
    const ItemAccessor plainItem = toc.IterateItems(VireoType::gSolver).GetItem();
    QVERIFY(!plainItem.GetValue(gParentKey).IsValid());
    QVERIFY(!plainItem.GetValue(gSpecializesKey).IsValid());
    const ItemAccessor nestedItem = toc.IterateItems(VireoType::gCompound).GetItem();
    QVERIFY(nestedItem.GetValue("Parent").IsValid());
    QVERIFY(!nestedItem.GetValue("Specializes").IsValid());
    QVERIFY(!nestedItem.GetValue("Other").IsValid());
    QVERIFY(!nestedItem.GetValue(nullptr).IsValid());
    const ItemAccessor specialItem = toc.IterateItems(VireoType::gGlobalConstant).GetItem();
    QVERIFY(!specialItem.GetValue("Parent").IsValid());
    QVERIFY(specialItem.GetValue("Specializes").IsValid());
}

void BoundaryContract::readOnlyComesFromItemOrSource()
{
    const ItemID open = m_fixture->Add(ItemWish(VireoType::gSolver, "open"));
    ItemWish closed(VireoType::gSolver, "closed");
    closed.m_readOnly = true;
    const ItemID closedItem = m_fixture->Add(closed);
    ItemWish product(VireoType::gSolver, "product");
    product.m_source = "Product";
    const ItemID productItem = m_fixture->Add(product);

    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    QVERIFY(!library.ItemIsReadOnly(open));
    QVERIFY(library.ItemIsReadOnly(closedItem));
    QVERIFY(library.ItemIsReadOnly(productItem));
}

void BoundaryContract::modelsOfferWhatTheirKindOffers_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("compound");
    QTest::addColumn<bool>("loop");
    QTest::addColumn<bool>("function");
    QTest::addColumn<bool>("type");
    QTest::newRow("compound") << int(eCompoundKind) << true << false << true << false;
    QTest::newRow("loop compound") << int(eLoopKind) << true << true << true << false;
    QTest::newRow("signature") << int(eSignatureKind) << true << false << true << false;
    QTest::newRow("solver") << int(eSolverKind) << false << false << true << false;
    QTest::newRow("polymorphic solver") << int(ePolymorphicKind) << false << false << true << false;
    QTest::newRow("constant") << int(eConstantKind) << false << false << false << false;
    QTest::newRow("type") << int(eTypeKind) << false << false << false << true;
}

void BoundaryContract::modelsOfferWhatTheirKindOffers()
{
    QFETCH(int, kind);
    QFETCH(bool, compound);
    QFETCH(bool, loop);
    QFETCH(bool, function);
    QFETCH(bool, type);
    const ItemID id = m_fixture->Add(WishOfKind(kind, "It"));
    const UnspecifiedAccessor model = m_fixture->GetLibrary().GetModel(id, nullptr);
    QVERIFY(model.IsValid());
    QCOMPARE(CompoundAccessor(model).IsValid(), compound);
    QCOMPARE(CompoundModifierAccessor(model).IsValid(), compound);
    QCOMPARE(LoopCompoundAccessor(model).IsValid(), loop);
    QCOMPARE(LoopCompoundModifierAccessor(model).IsValid(), loop);
    QCOMPARE(FunctionAccessor(model).IsValid(), function);
    QCOMPARE(TypeDescriptorAccessor(model).IsValid(), type);
    QVERIFY(CompoundAccessor(model).GetItemID() == (compound ? id : ItemID()));
}

void BoundaryContract::missingModelIsExplained()
{
    std::string error;
    QVERIFY(!m_fixture->GetLibrary().GetModel(ItemID(), &error).IsValid());
    QVERIFY(!error.empty());
    error.clear();
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    QVERIFY(m_fixture->GetLibrary().GetModel(id, &error).IsValid());
    QVERIFY(error.empty());
}

void BoundaryContract::helpersTellSignaturesAndGraphItems()
{
    ItemWish signature(VireoType::gCompound, "Signature");
    signature.m_signature = true;
    const ItemID id = m_fixture->Add(signature);
    m_fixture->Add(ItemWish(VireoType::gCompound, "Plain"));
    ItemWish outside(VireoType::gCompound, "Outside");
    outside.m_forGraphs = false;
    m_fixture->Add(outside);

    ItemIterator iterator = GetTOC(m_fixture->GetLibrary()).IterateItems(VireoType::gCompound);
    ItemAccessor item = iterator.GetItem();
    QVERIFY(Helpers::IsAbstractFunction(item));
    QVERIFY(Helpers::IsValidGraphItemType(VireoType::gCompound, item));
    QVERIFY(!Helpers::IsValidGraphItemType(VireoType::gSolver, item));
    iterator.Next();
    ItemAccessor plain = iterator.GetItem();
    QVERIFY(!Helpers::IsAbstractFunction(plain));
    QVERIFY(Helpers::IsValidGraphItemType(VireoType::gCompound, plain));
    iterator.Next();
    ItemAccessor other = iterator.GetItem();
    QVERIFY(!Helpers::IsValidGraphItemType(VireoType::gCompound, other));

    m_fixture->Remove(id, nullptr);
    QVERIFY(!Helpers::IsAbstractFunction(item));
    QVERIFY(!Helpers::IsValidGraphItemType(VireoType::gCompound, item));
}

void BoundaryContract::nodeNamesAreFoundLetterByLetter()
{
    const ItemID compound = m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    m_fixture->Add(ItemWish(VireoType::gGlobalConstant, "Pi"));
    m_fixture->Add(ItemWish(VireoType::gSolver, "Solve"));
    m_fixture->Add(ItemWish(VireoType::gPolymorphicSolver, "Add"));
    m_fixture->Add(ItemWish(LibType::gType, "Colour"));
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    for (const char* const used : {"Blend", "Pi", "Solve", "Add"})
        QVERIFY2(IsNameInNodeLibraryHierarchy(library, used), used);
    for (const char* const free : {"blend", "Blend ", "Blen", "", "Colour"})
        QVERIFY2(!IsNameInNodeLibraryHierarchy(library, free), free);
    QVERIFY(!IsNameInNodeLibraryHierarchy(library, nullptr));
    QVERIFY(!IsNameInNodeLibraryHierarchy(ItemLibraryAccessor(), "Blend"));
    m_fixture->Remove(compound, nullptr);
    QVERIFY(!IsNameInNodeLibraryHierarchy(library, "Blend"));
}

} // namespace contract
