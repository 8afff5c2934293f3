// SPDX-License-Identifier: MIT
/// The data layer in memory behind a wrapper that breaks one promise of the boundary on purpose.
#pragma once

#include "datamodel/provider.h"
#include "tests/contract/memoryfixture.h"

#include <memory>

namespace faulty
{

enum eFault
{
    eNoFault,
    eTypeNameIsACopy,
    eTypesAreComparedByCharacters,
    eIteratorSkips,
    eIteratorNeverEnds,
    eIterationIsReversed,
    eIdentityChanges,
    eNameIsUTF8,
    eGoneItemsThrow,
    eGoneItemsAnswer,
    eReadOnlyIsForgotten,
    eSolverOffersACompound,
    eCaseOfNamesIsIgnored,
    eSignaturesAreNotTold,
    eReadRunsTheEventLoop,
    eReadNotifies,
    eAdditionIsSilent,
    eTagsAreSilent,
    eTagsNotifyBeforeTheChange,
    eTagsNotifyTwice,
    eUnchangedTagsNotify,
    eTagsAreTrimmed,
    eRefusedTagsAreReportedAsSet,
    eRenamingIsSilent,
    eBracketsAreMissing,
    eUndoIsSilent,
    eObserversAreRegisteredTwice,
    eRemovedObserversAreCalled,
    eVetoIsIgnored,
    eDirtinessIsForgotten,
    eClosedLibraryStaysValid,
};

class FaultyLibrary;

/// What the layer in memory answers about items, for items of the wrapper.
class FaultyModel : public vireo::datamodel::IItemModel
{
public:
    explicit FaultyModel(eFault in_fault) : m_fault(in_fault) {}

    vireo::datamodel::ItemTOCAccessor GetTOC(const vireo::datamodel::ItemLibraryAccessor& in_library) override;
    bool IsNameInNodeLibraryHierarchy(const vireo::datamodel::ItemLibraryAccessor& in_library,
                                      const char* in_name) override;
    bool IsAbstractFunction(vireo::datamodel::ItemAccessor& in_item) override;
    bool IsValidGraphItemType(const char* in_typeName, vireo::datamodel::ItemAccessor& in_item) override;
    void SetGlobalVireoCompoundTarget(const vireo::datamodel::CompoundAccessor& in_target,
                                      const vireo::datamodel::CompoundAccessor& in_root) override;
    const char* GetItemIDUID(const vireo::datamodel::ItemID& in_item) override;
    hmx::fwk::ICommandManager* GetApplicationCommandManager() override;

    vireo::datamodel::IItemModel* m_inner = nullptr;

private:
    const eFault m_fault;
};

/// It has no services of its own and does not take turns with other layers.
class FaultyFixture : public memorymodel::MemoryFixture
{
public:
    explicit FaultyFixture(eFault in_fault);
    ~FaultyFixture() override;

    unsigned GetFeatures() const override;
    vireo::datamodel::ItemLibraryAccessor GetLibrary() override;
    void Undo() override;

private:
    Provider m_inner;
    FaultyModel m_model;
    std::shared_ptr<FaultyLibrary> m_library;
};

} // namespace faulty
