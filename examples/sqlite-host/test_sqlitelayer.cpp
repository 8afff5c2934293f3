// SPDX-License-Identifier: MIT
// Tells where the SQLite data layer breaks a promise of the boundary.
#include "sqlitelayer.h"

#include <contract/boundarycontract.h>

#include <QCoreApplication>
#include <QTemporaryDir>

using namespace vireo::datamodel;

namespace
{

class SqliteFixture : public contract::BoundaryFixture
{
public:
    unsigned GetFeatures() const override { return contract::eRemoving | contract::eTagging | contract::eRenaming; }

    ItemLibraryAccessor GetLibrary() override { return m_layer.GetLibrary(); }

    bool CanAdd(const contract::ItemWish& in_wish) const override
    {
        const bool isKnown = in_wish.m_type == VireoType::gSolver || in_wish.m_type == VireoType::gCompound;
        return isKnown && in_wish.m_source == "Local" && in_wish.m_forGraphs && !in_wish.m_signature &&
               !in_wish.m_loop && !in_wish.m_readOnly && !in_wish.m_parent && !in_wish.m_specializes;
    }

    ItemID Add(const contract::ItemWish& in_wish) override
    {
        return m_layer.Add(in_wish.m_type, in_wish.m_name, in_wish.m_tags);
    }

    void Remove(const ItemID& in_item, hmx::fwk::ICommandManager*) override { m_layer.Remove(in_item); }

private:
    QTemporaryDir m_folder;
    SqliteLayer m_layer{m_folder.filePath(QLatin1String("nodes.sqlite"))};
};

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    return contract::RunContract([] { return std::make_unique<SqliteFixture>(); }, argc, argv);
}
