// SPDX-License-Identifier: MIT
#include "contract/trial.h"

#include <cstdio>
#include <exception>

using namespace vireo::datamodel;

namespace contract
{
namespace
{

struct FeatureName
{
    unsigned m_feature;
    const char* m_name;
};

const FeatureName gFeatureNames[] = {
    {eRemoving, "removing items"},
    {eClosing, "closing the library"},
    {eTagging, "setting tags"},
    {eRenaming, "renaming compounds"},
    {eCreating, "creating compounds"},
    {eCommitting, "committing"},
    {eUndoing, "undo"},
    {eDatabase, "the object database"},
    {eServices, "the services"},
    {eSourceControl, "source control"},
    {eCompoundTarget, "the compound target"},
    {eSeveralLayers, "several data layers"},
};

std::string Describe(const ItemWish& in_wish)
{
    std::string text = std::string("items of type ") + in_wish.m_type;
    text += in_wish.m_signature ? " that are signatures" : "";
    text += in_wish.m_loop ? " that are loops" : "";
    text += in_wish.m_readOnly ? " that are read-only" : "";
    text += in_wish.m_parent ? " with a parent" : "";
    text += in_wish.m_specializes ? " that specialize another" : "";
    text += in_wish.m_withUID ? "" : " without a database object";
    text += in_wish.m_forGraphs ? "" : " that no graph takes";
    return in_wish.m_source == "Local" ? text : text + " in the source " + in_wish.m_source;
}

} // namespace

std::unique_ptr<BoundaryFixture> Trial::MakeFixture() const
{
    std::unique_ptr<BoundaryFixture> fixture = Call("making a fixture", m_maker);
    ExpectThat("making a fixture", "a fixture", fixture != nullptr, "null");
    return fixture;
}

void Trial::Restart()
{
    m_fixture.reset();
    m_fixture = MakeFixture();
}

ItemLibraryAccessor Trial::GetLibrary()
{
    const ItemLibraryAccessor library =
        Call("BoundaryFixture::GetLibrary()", [this] { return m_fixture->GetLibrary(); });
    Expect("BoundaryFixture::GetLibrary()", eValid, ValidityOf(library));
    return library;
}

void Trial::Note(const std::string& in_text)
{
    if (m_notes.find(in_text) == std::string::npos)
        m_notes += (m_notes.empty() ? "" : ", ") + in_text;
}

bool Trial::Has(unsigned in_features)
{
    const unsigned missing = in_features & ~m_fixture->GetFeatures();
    for (const FeatureName& feature : gFeatureNames)
        if (missing & feature.m_feature)
            Note(feature.m_name);
    return missing == 0;
}

bool Trial::CanAdd(const ItemWish& in_wish)
{
    const bool can = m_fixture->CanAdd(in_wish);
    if (!can)
        Note(Describe(in_wish));
    return can;
}

void Trial::Need(unsigned in_features)
{
    if (!Has(in_features))
        throw NotChecked();
}

ItemID Trial::Add(const ItemWish& in_wish)
{
    if (!CanAdd(in_wish))
        throw NotChecked();
    const ItemID item = Call("BoundaryFixture::Add()", [&] { return m_fixture->Add(in_wish); });
    ExpectThat("BoundaryFixture::Add()", "the identity of the new item", item.IsValid(), Show(item));
    m_hasAdded = true;
    return item;
}

void Trial::Remove(const ItemID& in_item, hmx::fwk::ICommandManager* in_commands)
{
    Call("BoundaryFixture::Remove()", [&] { m_fixture->Remove(in_item, in_commands); });
}

std::string AsAgreed(const ItemWish& in_wish)
{
    return ", after CanAdd() agreed to " + Describe(in_wish);
}

void BoundaryFixture::Missing(const char* in_function)
{
    ExpectThat(std::string("BoundaryFixture::") + in_function, "an implementation, because of GetFeatures()", false,
               "none");
}

std::string Show(bool in_value)
{
    return in_value ? "true" : "false";
}

std::string Show(int in_value)
{
    return std::to_string(in_value);
}

std::string Show(std::size_t in_value)
{
    return std::to_string(in_value);
}

std::string Show(const char* in_text)
{
    return in_text ? Show(std::string(in_text)) : "null";
}

std::string Show(const std::string& in_text)
{
    return '"' + Printable(in_text) + '"';
}

std::string Show(const TypeName& in_type)
{
    for (const char* const type : {VireoType::gPolymorphicSolver, VireoType::gCompound, VireoType::gGlobalConstant,
                                   VireoType::gSolver, LibType::gType})
        if (type == in_type.m_name)
            return "the constant " + Show(type);
    return in_type.m_name ? "a pointer to another text " + Show(in_type.m_name) : "null";
}

std::string Show(const ItemID& in_item)
{
    return in_item.IsValid() ? in_item.Serialize() : "the invalid identity";
}

std::string Show(eValidity in_validity)
{
    return in_validity == eValid ? "a valid accessor" : "an invalid accessor";
}

std::string Printable(const std::string& in_text)
{
    std::string text;
    for (const char character : in_text)
    {
        const unsigned code = static_cast<unsigned char>(character);
        char escaped[8];
        std::snprintf(escaped, sizeof escaped, "\\x%02X", code);
        text += code >= 0x20 && code < 0x7F ? std::string(1, character) : std::string(escaped);
    }
    return text;
}

void ExpectThat(const std::string& in_operation, const std::string& in_expected, bool in_holds,
                const std::string& in_got)
{
    if (!in_holds)
        throw Broken{in_operation + ": expected " + in_expected + "; got " + in_got};
}

void ReportException(const std::string& in_operation)
{
    try
    {
        throw;
    }
    catch (const Broken&)
    {
        throw;
    }
    catch (const NotChecked&)
    {
        throw;
    }
    catch (const std::exception& error)
    {
        throw Broken{in_operation + ": expected an answer; got the exception " + Show(error.what())};
    }
    catch (...)
    {
        throw Broken{in_operation + ": expected an answer; got an exception"};
    }
}

} // namespace contract
