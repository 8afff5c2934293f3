// SPDX-License-Identifier: MIT
/// The contract of the boundary, checked line by line against one implementation of the data layer.
#pragma once

#include "contract/boundaryfixture.h"

#include <QObject>

#include <memory>

namespace contract
{

/// Derive a test class from this one and say how a fixture is made; every test function gets a fixture of its own.
class BoundaryContract : public QObject
{
    Q_OBJECT

protected:
    virtual std::unique_ptr<BoundaryFixture> MakeFixture() = 0;

    std::unique_ptr<BoundaryFixture> m_fixture;

private Q_SLOTS:
    void init();
    void cleanup();

    // Reading
    void typesAreTheConstantsThemselves();
    void itemsAreListedUnderTheirTypeInOrderOfAddition();
    void otherPointersListNothing();
    void iteratorKeepsToTheItemsItBeganWith();
    void identitiesAreNeverReused();
    void itemThatIsGoneAnswersNothing();
    void namesTagsAndValuesAreRead();
    void readOnlyComesFromItemOrSource();
    void modelsOfferWhatTheirKindOffers_data();
    void modelsOfferWhatTheirKindOffers();
    void missingModelIsExplained();
    void helpersTellSignaturesAndGraphItems();
    void nodeNamesAreFoundLetterByLetter();

    // Notifications
    void addingNotifiesInsideABracket();
    void removingNotifiesWhileTheItemStillAnswers();
    void tagsNotifyOnceAndOnlyWhenTheyChange();
    void renamingNotifiesOnceAndOnlyWhenItHappens();
    void otherKindsAndContextsAreNotRegistered();
    void observerIsRegisteredOnce();
    void observersAreNotifiedInOrderOfRegistration();
    void observerMayRemoveItselfAndOthersInACall();
    void observerAddedInACallIsNotifiedLater();
    void observerMayWriteInACall();
    void closingNotifiesAndEmptiesEverything();
    void closingInsideACallIsHarmless();

    // Writing
    void writeIsOneCommandThatUndoesAndRedoes();
    void refusedWritesLeaveNoCommand();
    void writeWithoutAManagerIsDoneForGood();
    void foreignManagerIsTreatedLikeNone();
    void removalComesBackWithTheSameIdentity();
    void renameRefuses_data();
    void renameRefuses();
    void compoundTakesChangesByItemAndSource();
    void dirtinessFollowsTheCommittedState();
    void commitAsksAndNotifies();
    void vetoStopsTheCommit();
    void commitOfOneSourceLeavesTheOthers();

    // Creating
    void createdCompoundIsThereAndListed_data();
    void createdCompoundIsThereAndListed();
    void creationIsOneCommandWithOneIdentity();
    void creationRefuses_data();
    void creationRefuses();
    void baseClassIsTheUIDOfASignature();
    void compoundTargetIsRemembered();

    // The database
    void uidLeadsToTheObjectAndItsSource();
    void itemWithoutAUIDHasNoObject();
    void handleFollowsItsItem();
    void resourcesAreQueriedInOrder();
    void otherQueriesMatchNothing();
    void resourcesStandForTheirSources();
    void movingIsOneCommandThatInvalidates();
    void movingRefuses_data();
    void movingRefuses();

    // Services and source control
    void servicesAreFoundByNameAndInterface();
    void servicesComeAndGo();
    void propertiesNotifyConnectedSlots();
    void endOfTheManagerNotifiesWithNull();
    void requestedStatesArriveLater();
    void requestsOfAnEndedTaskAreDropped();
    void requestsOutliveItemsAndLibraries();
    void checkingOutAndMakingWritableSetStates();
    void badgeIsPaintedOnlyWhenActiveAndKnown();

    // Two data layers
    void layersTakeTurns();
    void deadLayerIsNotPutBack();
};

} // namespace contract
