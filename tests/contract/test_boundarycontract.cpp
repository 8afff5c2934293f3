// SPDX-License-Identifier: MIT
// What the contract of the boundary reports of an implementation that breaks it, or that leaves something out.

#include "contract/boundarycontract.h"
#include "tests/contract/faultylayer.h"
#include "tests/support/testmain.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <string>

using namespace faulty;

namespace
{

struct Case
{
    eFault m_fault;
    const char* m_promise;
    const char* m_message; ///< the numbers of identities are replaced by "N"
};

const Case gCases[] = {
    {eTypeNameIsACopy, "typesAreTheConstantsThemselves",
     "IterateItems(), GetType() of its item: expected the constant \"Solver\"; got a pointer to another text "
     "\"Solver\"."
     " The browser compares type names by address."},
    {eTypesAreComparedByCharacters, "otherPointersListNothing",
     "IterateItems() of a copy of the type name: expected 0; got 1."
     " The browser asks for each type by its constant and shows all that it gets, as items of that type."},
    {eIteratorSkips, "itemsAreListedUnderTheirTypeInOrderOfAddition",
     "IterateItems() of type PolymorphicSolver: expected \"PolymorphicSolverc PolymorphicSolvera "
     "PolymorphicSolverb\"; got \"PolymorphicSolverc PolymorphicSolverb\"."
     " The browser shows items of equal names in the order of the table of contents."},
    {eIteratorNeverEnds, "iteratorKeepsToTheItemsItBeganWith",
     "IterateItems(): expected an end; got more items than were added."
     " The browser steps through a type until the end, whatever changes meanwhile."},
    {eIterationIsReversed, "itemsAreListedUnderTheirTypeInOrderOfAddition",
     "IterateItems() of type PolymorphicSolver: expected \"PolymorphicSolverc PolymorphicSolvera "
     "PolymorphicSolverb\"; got \"PolymorphicSolverb PolymorphicSolvera PolymorphicSolverc\"."
     " The browser shows items of equal names in the order of the table of contents."},
    {eIdentityChanges, "identityStaysTheSame",
     "GetItemID() of an iterated item: expected Compound:N; got Compound:N."
     " The browser finds rows, the selection and the item of a notification by the identity that it read "
     "in a rebuild."},
    {eNameIsUTF8, "namesAndTagsAreLatin1",
     "GetItemName() of a name in Latin-1: expected \"\\xC4hnlich \\xFC\"; got \"\\xC3\\x84hnlich \\xC3\\xBC\"."
     " The browser draws and searches names and tags as 8-bit Latin-1."},
    {eGoneItemsThrow, "itemThatIsGoneAnswersNothing",
     "GetItemTags(): expected an answer; got the exception \"no such row\"."
     " The browser asks about items that may be gone: in rows until the next rebuild, and after a menu or "
     "a dialog. What is thrown then reaches the host's event loop."},
    {eGoneItemsAnswer, "itemThatIsGoneAnswersNothing",
     "GetItemName() of a removed item: expected \"\"; got \"Blend\"."
     " The browser asks about items that may be gone: in rows until the next rebuild, and after a menu or "
     "a dialog. What is thrown then reaches the host's event loop."},
    {eReadOnlyIsForgotten, "readOnlyComesFromItemOrSource",
     "ItemIsReadOnly() of an item that is read-only, after CanAdd() agreed to items of type Solver that are read-only: "
     "expected true; got false."
     " The browser offers to edit the tags of an item that takes changes only."},
    {eSolverOffersACompound, "modelsOfferWhatTheirKindOffers",
     "GetModel(), the interfaces of a solver: expected \"IContext IFunction\"; got \"IContext ICompound "
     "ICompoundModifier IFunction\"."
     " The browser tells by the interfaces of a model what a double click opens, what can be renamed, and "
     "what the type selector accepts."},
    {eCaseOfNamesIsIgnored, "nodeNamesAreFoundLetterByLetter",
     "IsNameInNodeLibraryHierarchy() of \"blend\": expected false; got true."
     " The browser's dialogs refuse names that are in use."},
    {eSignaturesAreNotTold, "helpersTellSignatures",
     "IsAbstractFunction() of a signature, after CanAdd() agreed to items of type Compound that are signatures: "
     "expected true; got false."
     " The browser shows signatures with an icon and in a tab of their own."},
    {eReadRunsTheEventLoop, "readsNeitherNotifyNorRunTheEventLoop",
     "GetItemTags(): expected an answer at once; got a run of the event loop."
     " The browser reads inside its paint event; otherwise its rows are stale or repeated until the next "
     "rebuild."},
    {eReadNotifies, "readsNeitherNotifyNorRunTheEventLoop",
     "GetItemName(), its notifications: expected \"\"; got \"postcommit\"."
     " The browser reads inside its paint event; otherwise its rows are stale or repeated until the next "
     "rebuild."},
    {eAdditionIsSilent, "addingNotifiesInsideABracket",
     "adding an item, its notifications: expected \"begin, added Blend, end\"; got \"begin, end\"."
     " The browser rebuilds its rows after the call. The host's observers beside it wait for the end of "
     "the bracket."},
    {eTagsAreSilent, "tagsNotifyOnceAndOnlyWhenTheyChange",
     "SetItemTags(), its notifications: expected \"begin, tags Solve ApplicationTags, end\"; got \"begin, "
     "end\"."
     " The browser searches the tags that it read last: when the library was built and inside "
     "ItemTagsChanged()."},
    {eTagsNotifyBeforeTheChange, "changesAreThereWhenTheyAreNotified",
     "GetItemTags() inside ItemTagsChanged(): expected \"mix\"; got \"\"."
     " The browser reads the tags inside ItemTagsChanged(), and names and items at its next paint, which "
     "may come inside the notification."},
    {eTagsNotifyTwice, "tagsNotifyOnceAndOnlyWhenTheyChange",
     "SetItemTags(), its notifications: expected \"begin, tags Solve ApplicationTags, end\"; got \"begin, "
     "tags Solve ApplicationTags, tags Solve ApplicationTags, end\"."
     " The browser searches the tags that it read last: when the library was built and inside "
     "ItemTagsChanged()."},
    {eUnchangedTagsNotify, "tagsNotifyOnceAndOnlyWhenTheyChange",
     "SetItemTags() of the tags that the item has, its notifications: expected \"\"; got \"begin, tags Solve "
     "ApplicationTags, end\"."
     " The browser searches the tags that it read last: when the library was built and inside "
     "ItemTagsChanged()."},
    {eTagsAreTrimmed, "tagsAreStoredAsTheyAre",
     "GetItemTags() after SetItemTags(): expected \" odd;; text \\xE4;a;a\"; got \"odd;; text \\xE4;a;a\"."
     " The browser shows in its dialog what it gets, and writes that back with what people changed."},
    {eRefusedTagsAreReportedAsSet, "tagsNotifyOnceAndOnlyWhenTheyChange",
     "SetItemTags() of a read-only item, after CanAdd() agreed to items of type Solver that are read-only: "
     "expected false; got true."
     " The browser searches the tags that it read last: when the library was built and inside "
     "ItemTagsChanged()."},
    {eRenamingIsSilent, "renamingNotifiesOnceAndOnlyWhenItHappens",
     "RenameCompound(), its notifications: expected \"begin, name blend, end\"; got \"begin, end\"."
     " The browser searches the names of the last rebuild, and rebuilds after ItemNameChanged()."},
    {eBracketsAreMissing, "addingNotifiesInsideABracket",
     "adding an item, its notifications: expected \"begin, added Blend, end\"; got \"added Blend\"."
     " The browser rebuilds its rows after the call. The host's observers beside it wait for the end of "
     "the bracket."},
    {eUndoIsSilent, "writeIsOneCommandThatUndoesAndRedoes",
     "undoing RenameCompound(), its notifications: expected \"begin, name Blend, end\"; got \"\"."
     " The browser passes the host's command manager to each write, and people undo each as one step that "
     "the rows follow."},
    {eObserversAreRegisteredTwice, "observerIsRegisteredOnce",
     "AddObserver() twice, the notifications: expected \"begin, added Blend, end\"; got \"begin, begin, added "
     "Blend, added Blend, end, end\"."
     " The browser registers when a library is attached, and is removed or destroyed inside notifications "
     "too."},
    {eRemovedObserversAreCalled, "observerMayRemoveItselfAndOthersInACall",
     "the notifications of an observer that removes itself: expected \"begin, added A\"; got \"begin, added "
     "A, end\"."
     " The browser registers when a library is attached, and is removed or destroyed inside notifications "
     "too."},
    {eVetoIsIgnored, "vetoStopsTheCommit",
     "CommitToDisk() against a veto: expected false; got true."
     " A host's observer keeps the browser's \"Save\" from writing."},
    {eDirtinessIsForgotten, "dirtinessFollowsTheCommittedState",
     "ItemIsDirty() after a change: expected true; got false."
     " The browser draws a \"*\" behind the name of what is not committed."},
    {eClosedLibraryStaysValid, "closingNotifiesAndEmptiesEverything",
     "IsValid() of a closed library: expected an invalid accessor; got a valid accessor."
     " The browser keeps its accessors when a library ends, and shows no rows because they are invalid."},
};

contract::FixtureMaker MakerOf(eFault in_fault)
{
    return [in_fault] { return std::unique_ptr<contract::BoundaryFixture>(new FaultyFixture(in_fault)); };
}

/// A message with "N" for the two numbers of each identity.
std::string WithoutNumbers(const std::string& in_message)
{
    const std::size_t length = 33;
    std::string message = in_message;
    for (std::size_t at = 0; at + length <= message.size(); ++at)
    {
        const std::string part = message.substr(at, length);
        const bool isNumbers = part[16] == '-' && std::count_if(part.begin(), part.end(), [](unsigned char in_digit) {
                                                      return std::isxdigit(in_digit) != 0;
                                                  }) == 32;
        if (isNumbers)
            message.replace(at, length, "N");
    }
    return message;
}

/// A fixture that leaves things out.
class SmallFixture : public memorymodel::MemoryFixture
{
public:
    SmallFixture(unsigned in_features, bool in_addsCompounds)
        : m_features(in_features), m_addsCompounds(in_addsCompounds)
    {
    }

    unsigned GetFeatures() const override { return m_features; }
    bool CanAdd(const contract::ItemWish& in_wish) const override
    {
        return m_addsCompounds && in_wish.m_type == vireo::datamodel::VireoType::gCompound && !in_wish.m_readOnly;
    }

private:
    const unsigned m_features;
    const bool m_addsCompounds;
};

contract::FixtureMaker SmallMaker(unsigned in_features, bool in_addsCompounds)
{
    return [=] { return std::unique_ptr<contract::BoundaryFixture>(new SmallFixture(in_features, in_addsCompounds)); };
}

/// A fixture that says it has everything, and has next to nothing.
class BoastfulFixture : public contract::BoundaryFixture
{
public:
    unsigned GetFeatures() const override { return contract::eAllFeatures; }
    vireo::datamodel::ItemLibraryAccessor GetLibrary() override { return m_memory.GetLibrary(); }
    vireo::datamodel::ItemID Add(const contract::ItemWish& in_wish) override { return m_memory.Add(in_wish); }

private:
    memorymodel::MemoryFixture m_memory;
};

/// A fixture that puts every item into "Local", whatever the wish says, and refuses none.
class CarelessFixture : public memorymodel::MemoryFixture
{
public:
    vireo::datamodel::ItemID Add(const contract::ItemWish& in_wish) override
    {
        contract::ItemWish wish = in_wish;
        wish.m_source = "Local";
        return memorymodel::MemoryFixture::Add(wish);
    }
};

int Run(const contract::FixtureMaker& in_maker, const char* in_promise)
{
    const char* const arguments[] = {"program", in_promise};
    return contract::RunContract(in_maker, 2, arguments);
}

} // namespace

class TestBoundaryContract : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void faultIsReported_data()
    {
        QTest::addColumn<int>("index");
        int index = 0;
        for (const Case& fault : gCases)
            QTest::newRow((std::string(fault.m_promise) + " " + std::to_string(fault.m_fault)).c_str()) << index++;
    }

    void faultIsReported()
    {
        QFETCH(int, index);
        const Case& fault = gCases[index];
        const contract::Result broken = contract::CheckPromise(fault.m_promise, MakerOf(fault.m_fault));
        QCOMPARE(QByteArray(WithoutNumbers(broken.m_message).c_str()), QByteArray(fault.m_message));
        QCOMPARE(int(broken.m_outcome), int(contract::eBroken));
        const contract::Result kept = contract::CheckPromise(fault.m_promise, MakerOf(eNoFault));
        QVERIFY2(kept.m_message.empty(), kept.m_message.c_str());
        QCOMPARE(int(kept.m_outcome), int(contract::eKept));
    }

    void eachFaultHasASentenceOfItsOwn()
    {
        std::set<std::string> sentences;
        std::set<int> faults;
        for (const Case& fault : gCases)
        {
            sentences.insert(fault.m_message);
            faults.insert(fault.m_fault);
        }
        QCOMPARE(sentences.size(), sizeof gCases / sizeof gCases[0]);
        QCOMPARE(faults.size(), std::size_t(eClosedLibraryStaysValid));
    }

    void wrapperWithoutAFaultKeepsEveryPromise()
    {
        int notChecked = 0;
        for (const std::string& promise : contract::GetPromises())
        {
            const contract::Result result = contract::CheckPromise(promise, MakerOf(eNoFault));
            QVERIFY2(result.m_outcome != contract::eBroken, result.m_message.c_str());
            notChecked += result.m_outcome == contract::eNotChecked;
        }
        // The wrapper has no services of its own and does not take turns.
        QCOMPARE(notChecked, 4);
    }

    void namesOfPromisesDiffer()
    {
        const std::vector<std::string> promises = contract::GetPromises();
        QCOMPARE(std::set<std::string>(promises.begin(), promises.end()).size(), promises.size());
        QVERIFY(promises.size() > 60);
    }

    void whatIsLeftOutIsNotChecked_data()
    {
        QTest::addColumn<QByteArray>("promise");
        QTest::addColumn<int>("outcome");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("a feature") << QByteArray("identitiesAreNeverReused") << int(contract::eNotChecked)
                                   << QByteArray("Not checked: removing items.");
        QTest::newRow("two features") << QByteArray("writeIsOneCommandThatUndoesAndRedoes")
                                      << int(contract::eNotChecked) << QByteArray("Not checked: setting tags, undo.");
        QTest::newRow("all items") << QByteArray("namesAndTagsAreLatin1") << int(contract::eNotChecked)
                                   << QByteArray("Not checked: items of type Solver.");
        QTest::newRow("one kind of item") << QByteArray("compoundTakesChangesByItemAndSource") << int(contract::eKept)
                                          << QByteArray("Not checked: items of type Compound that are read-only.");
        QTest::newRow("nothing") << QByteArray("addingNotifiesInsideABracket") << int(contract::eKept) << QByteArray();
    }

    void whatIsLeftOutIsNotChecked()
    {
        QFETCH(QByteArray, promise);
        QFETCH(int, outcome);
        QFETCH(QByteArray, message);
        const contract::Result result = contract::CheckPromise(promise.constData(), SmallMaker(0, true));
        QCOMPARE(QByteArray(result.m_message.c_str()), message);
        QCOMPARE(int(result.m_outcome), outcome);
    }

    void itemOtherThanWishedIsReportedWithItsWish()
    {
        const contract::Result result =
            contract::CheckPromise("readOnlyComesFromItemOrSource", [] { return std::make_unique<CarelessFixture>(); });
        QCOMPARE(int(result.m_outcome), int(contract::eBroken));
        QCOMPARE(QByteArray(result.m_message.c_str()),
                 QByteArray("ItemIsReadOnly() in a read-only source, after CanAdd() agreed to items of type Solver in "
                            "the source Product: expected true; got false."
                            " The browser offers to edit the tags of an item that takes changes only."));
    }

    void promiseWithoutAnyItemIsNotChecked()
    {
        const contract::Result result = contract::CheckPromise("typesAreTheConstantsThemselves", SmallMaker(0, false));
        QCOMPARE(int(result.m_outcome), int(contract::eNotChecked));
    }

    void featureWithoutItsFunctionIsReported()
    {
        const contract::Result result = contract::CheckPromise(
            "vetoStopsTheCommit", [] { return std::unique_ptr<contract::BoundaryFixture>(new BoastfulFixture); });
        QVERIFY2(result.m_outcome == contract::eKept, result.m_message.c_str());
        const contract::Result missing = contract::CheckPromise(
            "identitiesAreNeverReused", [] { return std::unique_ptr<contract::BoundaryFixture>(new BoastfulFixture); });
        QCOMPARE(int(missing.m_outcome), int(contract::eBroken));
        QVERIFY2(missing.m_message.find("BoundaryFixture::Remove(): expected an implementation, because of "
                                        "GetFeatures(); got none.") == 0,
                 missing.m_message.c_str());
    }

    void fixtureThatCannotBeMadeIsReported()
    {
        const contract::Result none =
            contract::CheckPromise("identityStaysTheSame", [] { return std::unique_ptr<contract::BoundaryFixture>(); });
        QVERIFY2(none.m_message.find("making a fixture: expected a fixture; got null.") == 0, none.m_message.c_str());
        const contract::Result thrown =
            contract::CheckPromise("identityStaysTheSame", []() -> std::unique_ptr<contract::BoundaryFixture> {
                throw std::runtime_error("no such file \xE4");
            });
        QVERIFY2(thrown.m_message.find("making a fixture: expected an answer; got the exception "
                                       "\"no such file \\xE4\".") == 0,
                 thrown.m_message.c_str());
    }

    void unknownPromiseIsBroken()
    {
        const contract::Result result = contract::CheckPromise("nothingOfTheKind", MakerOf(eNoFault));
        QCOMPARE(int(result.m_outcome), int(contract::eBroken));
        QCOMPARE(QByteArray(result.m_message.c_str()), QByteArray("There is no promise \"nothingOfTheKind\"."));
    }

    void statusOfTheProgramTellsWhetherPromisesAreKept()
    {
        QCOMPARE(Run(MakerOf(eNoFault), "namesAndTagsAreLatin1"), 0);
        QCOMPARE(Run(MakerOf(eNameIsUTF8), "namesAndTagsAreLatin1"), 1);
        QCOMPARE(Run(MakerOf(eNameIsUTF8), "typesAreTheConstantsThemselves"), 0);
        QCOMPARE(Run(MakerOf(eNoFault), "servicesComeAndGo"), 1); // not checked
        QCOMPARE(Run(MakerOf(eNoFault), "nothingOfTheKind"), 1);
    }
};

NODEBROWSER_TEST_MAIN(TestBoundaryContract)
#include "test_boundarycontract.moc"
