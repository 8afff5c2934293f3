// SPDX-License-Identifier: MIT
#include "contract/boundarycontract.h"
#include "contract/notificationspy.h"
#include "contract/support.h"

#include <QtTest>

#include <memory>

using namespace vireo::datamodel;

namespace contract
{

void BoundaryContract::addingNotifiesInsideABracket()
{
    NotificationSpy spy(m_fixture->GetLibrary());
    m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    QCOMPARE(spy.Take(), QByteArray("begin, added Blend, end"));
}

void BoundaryContract::removingNotifiesWhileTheItemStillAnswers()
{
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    NotificationSpy spy(library);
    bool answersAtRemoval = false;
    bool answersAtEnd = true;
    spy.m_reaction = [&](const QByteArray& in_call) {
        if (in_call.startsWith("removed"))
            answersAtRemoval = library.GetModel(id, nullptr).IsValid();
        if (in_call == "end")
            answersAtEnd = library.GetModel(id, nullptr).IsValid();
    };
    m_fixture->Remove(id, nullptr);
    QCOMPARE(spy.Take(), QByteArray("begin, removed Blend, end"));
    QVERIFY(answersAtRemoval);
    QVERIFY(!answersAtEnd);
    m_fixture->Remove(id, nullptr);
    QCOMPARE(spy.Take(), QByteArray());
}

void BoundaryContract::tagsNotifyOnceAndOnlyWhenTheyChange()
{
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gSolver, "Solve"));
    ItemWish closed(VireoType::gSolver, "Closed");
    closed.m_readOnly = true;
    const ItemID closedItem = m_fixture->Add(closed);
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    NotificationSpy spy(library);

    QVERIFY(SetTags(library, id, "a;b", nullptr));
    QCOMPARE(spy.Take(), QByteArray("begin, tags Solve ApplicationTags, end"));
    QVERIFY(SetTags(library, id, "a;b", nullptr));
    QVERIFY(!SetTags(library, closedItem, "a", nullptr));
    QVERIFY(!SetTags(library, ItemID(), "a", nullptr));
    QCOMPARE(spy.Take(), QByteArray());

    const ItemLibraryModifierAccessor writer(library);
    QVERIFY(!writer.SetItemTags(id, nullptr, "a", nullptr));
    QVERIFY(writer.SetItemTags(id, "Keywords", " odd;; text ", nullptr));
    QCOMPARE(spy.Take(), QByteArray("begin, tags Solve Keywords, end"));
    QCOMPARE(library.GetItemTags(id, "Keywords"), std::string(" odd;; text "));
    QCOMPARE(library.GetItemTags(id, gApplicationTagsKey), std::string("a;b"));
    QVERIFY(writer.SetItemTags(id, "Keywords", nullptr, nullptr));
    QVERIFY(library.GetItemTags(id, "Keywords").empty());
}

void BoundaryContract::renamingNotifiesOnceAndOnlyWhenItHappens()
{
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    const CompoundModifierAccessor compound = ModifierOf(library, id);
    NotificationSpy spy(library);
    compound.RenameCompound("blend", nullptr);
    QCOMPARE(spy.Take(), QByteArray("begin, name blend, end"));
    compound.RenameCompound("blend", nullptr);
    QCOMPARE(spy.Take(), QByteArray());
    QCOMPARE(library.GetItemName(id, true, nullptr), std::string("blend"));
}

void BoundaryContract::otherKindsAndContextsAreNotRegistered()
{
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    const ItemTOCAccessor toc = GetTOC(library);
    NotificationSpy spy(library);
    spy.Stop();
    library.AddObserver(&spy, eItemTOCNotificationKind, library.GetContext());
    library.AddObserver(&spy, eItemLibraryNotificationKind, ContextPtr());
    library.AddObserver(nullptr, eItemLibraryNotificationKind, library.GetContext());
    toc.AddObserver(&spy, eItemLibraryNotificationKind, toc.GetContext());
    toc.AddObserver(&spy, eItemTOCNotificationKind, ContextPtr());
    toc.AddObserver(nullptr, eItemTOCNotificationKind, toc.GetContext());
    m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    QCOMPARE(spy.Take(), QByteArray());

    library.AddObserver(&spy, eItemLibraryNotificationKind, library.GetContext());
    library.RemoveObserver(&spy, eItemTOCNotificationKind, library.GetContext());
    m_fixture->Add(ItemWish(VireoType::gCompound, "Mix"));
    QCOMPARE(spy.Take(), QByteArray("begin, end"));
}

void BoundaryContract::observerIsRegisteredOnce()
{
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    const ItemTOCAccessor toc = GetTOC(library);
    NotificationSpy spy(library);
    library.AddObserver(&spy, eItemLibraryNotificationKind, library.GetContext());
    toc.AddObserver(&spy, eItemTOCNotificationKind, toc.GetContext());
    m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    QCOMPARE(spy.Take(), QByteArray("begin, added Blend, end"));
    spy.Stop();
    spy.Stop();
    m_fixture->Add(ItemWish(VireoType::gCompound, "Mix"));
    QCOMPARE(spy.Take(), QByteArray());
}

void BoundaryContract::observersAreNotifiedInOrderOfRegistration()
{
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    NotificationSpy first(library);
    NotificationSpy second(library);
    QByteArray order;
    first.m_reaction = [&](const QByteArray& in_call) { order += "1 " + in_call + " "; };
    second.m_reaction = [&](const QByteArray& in_call) { order += "2 " + in_call + " "; };
    m_fixture->Add(ItemWish(VireoType::gCompound, "A"));
    QCOMPARE(order, QByteArray("1 begin 2 begin 1 added A 2 added A 1 end 2 end "));
}

void BoundaryContract::observerMayRemoveItselfAndOthersInACall()
{
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    NotificationSpy first(library);
    std::unique_ptr<NotificationSpy> second(new NotificationSpy(library));
    NotificationSpy third(library);
    first.m_reaction = [&](const QByteArray& in_call) {
        if (in_call != "added A")
            return;
        first.Stop();
        second.reset();
    };
    m_fixture->Add(ItemWish(VireoType::gCompound, "A"));
    QCOMPARE(first.Take(), QByteArray("begin, added A"));
    QVERIFY(!second);
    QCOMPARE(third.Take(), QByteArray("begin, added A, end"));
}

void BoundaryContract::observerAddedInACallIsNotifiedLater()
{
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    NotificationSpy first(library);
    std::vector<std::unique_ptr<NotificationSpy>> later;
    first.m_reaction = [&](const QByteArray& in_call) {
        if (in_call == "added A")
            for (int i = 0; i < 50; ++i)
                later.emplace_back(new NotificationSpy(library));
    };
    m_fixture->Add(ItemWish(VireoType::gCompound, "A"));
    QCOMPARE(later.size(), std::size_t(50));
    for (const std::unique_ptr<NotificationSpy>& spy : later)
        QVERIFY(!spy->Take().contains("added A"));
    m_fixture->Add(ItemWish(VireoType::gCompound, "B"));
    for (const std::unique_ptr<NotificationSpy>& spy : later)
        QCOMPARE(spy->Take(), QByteArray("begin, added B, end"));
}

void BoundaryContract::observerMayWriteInACall()
{
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    NotificationSpy spy(library);
    spy.m_reaction = [&](const QByteArray& in_call) {
        if (in_call == "tags Blend ApplicationTags" && library.GetItemTags(id, gApplicationTagsKey) == "a")
            SetTags(library, id, "b", m_fixture->GetCommands());
    };
    QVERIFY(SetTags(library, id, "a", m_fixture->GetCommands()));
    QCOMPARE(library.GetItemTags(id, gApplicationTagsKey), std::string("b"));
    QCOMPARE(m_fixture->GetCommandCount(), 2);
    spy.m_reaction = nullptr;
    m_fixture->Undo();
    QCOMPARE(library.GetItemTags(id, gApplicationTagsKey), std::string("a"));
    m_fixture->Undo();
    QCOMPARE(library.GetItemTags(id, gApplicationTagsKey), std::string());
    m_fixture->Redo();
    m_fixture->Redo();
    QCOMPARE(library.GetItemTags(id, gApplicationTagsKey), std::string("b"));

    // While the stack itself is at work a write takes effect as well, whatever becomes of it on the stack.
    spy.m_reaction = [&](const QByteArray& in_call) {
        if (in_call.startsWith("tags"))
            ModifierOf(library, id).RenameCompound("Renamed", m_fixture->GetCommands());
    };
    m_fixture->Undo();
    spy.m_reaction = nullptr;
    QCOMPARE(library.GetItemTags(id, gApplicationTagsKey), std::string("a"));
    QCOMPARE(library.GetItemName(id, true, nullptr), std::string("Renamed"));
}

void BoundaryContract::closingNotifiesAndEmptiesEverything()
{
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    const ItemTOCAccessor toc = GetTOC(library);
    const UnspecifiedAccessor model = library.GetModel(id, nullptr);
    ItemIterator iterator = toc.IterateItems(VireoType::gCompound);
    NotificationSpy spy(library);
    bool hasItem = true;
    spy.m_reaction = [&](const QByteArray& in_call) {
        if (in_call == "invalidated")
            hasItem = model.IsValid() || !toc.IterateItems(VireoType::gCompound).IsAtEnd();
    };
    SetTags(library, id, "a", m_fixture->GetCommands());
    spy.Take();

    m_fixture->Close();
    QCOMPARE(spy.Take(), QByteArray("begin, invalidated, end"));
    QVERIFY(!hasItem);
    QVERIFY(!library.IsValid());
    QVERIFY(!toc.IsValid());
    QVERIFY(!model.IsValid());
    QVERIFY(!iterator.GetItem().IsValid());
    QVERIFY(!GetTOC(library).IsValid());
    QVERIFY(library.GetItemName(id, true, nullptr).empty());
    m_fixture->Undo();
    m_fixture->Redo();
    spy.Stop();
    QCOMPARE(spy.Take(), QByteArray());
}

void BoundaryContract::closingInsideACallIsHarmless()
{
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    NotificationSpy first(library);
    std::unique_ptr<NotificationSpy> second(new NotificationSpy(library));
    first.m_reaction = [&](const QByteArray& in_call) {
        if (in_call == "added A")
            m_fixture->Close();
        if (in_call == "invalidated")
            second.reset();
    };
    m_fixture->Add(ItemWish(VireoType::gCompound, "A"));
    QVERIFY(!library.IsValid());
    QCOMPARE(first.Take(), QByteArray("begin, added A, begin, invalidated, end, end"));
    QVERIFY(!m_fixture->Add(ItemWish(VireoType::gCompound, "B")).IsValid());
}

} // namespace contract
