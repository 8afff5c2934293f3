// SPDX-License-Identifier: MIT
#include "materialx/identity.h"

#include <QByteArray>
#include <QHash>

#include <algorithm>
#include <unordered_map>

namespace materialx
{
namespace
{

const char* KindWord(eKind in_kind)
{
    switch (in_kind)
    {
    case eKind::eType:
        return "type";
    case eKind::eGlobalConstant:
        return "constant";
    case eKind::ePolymorphicSolver:
        return "polymorphic";
    case eKind::eSolver:
        return "solver";
    case eKind::eCompound:
        return "compound";
    case eKind::eSignature:
        break;
    }
    return "signature";
}

/// Zero bytes divide the parts, since no text of a document has one.
std::string IdentityName(const Item& in_item)
{
    std::string name(KindWord(in_item.m_kind));
    const auto append = [&name](const std::string& in_part) { name.append(1, '\0').append(in_part); };
    if (!in_item.m_parent.empty())
        append(in_item.m_parent);
    append(in_item.m_name);
    return name;
}

} // namespace

bool AreAlike(const Item& in_a, const Item& in_b)
{
    return in_a.m_kind == in_b.m_kind && in_a.m_isLoop == in_b.m_isLoop && in_a.m_name == in_b.m_name &&
           in_a.m_shownName == in_b.m_shownName && in_a.m_tags == in_b.m_tags && in_a.m_parent == in_b.m_parent &&
           in_a.m_specializes == in_b.m_specializes && in_a.m_source == in_b.m_source;
}

std::vector<std::string> IdentityNames(const std::vector<Item>& in_items)
{
    std::vector<std::string> names;
    names.reserve(in_items.size());
    std::unordered_map<std::string, std::size_t> occurrences;
    occurrences.reserve(in_items.size());
    for (const Item& item : in_items)
    {
        std::string name = IdentityName(item);
        if (const std::size_t earlier = occurrences[name]++)
            name.append(1, '\0').append(std::to_string(earlier + 1));
        names.push_back(std::move(name));
    }
    return names;
}

QUuid MakeIdentity(const std::string& in_identityName)
{
    // Made for this purpose, once and for ever: another one would give every item another identity.
    static const QUuid space(0x5b0d1f6e, 0x4c5d, 0x4f0e, 0x9a, 0x37, 0x61, 0x8e, 0xd2, 0x0b, 0xc4, 0x79);
    return QUuid::createUuidV5(space, QByteArray(in_identityName.data(), static_cast<int>(in_identityName.size())));
}

std::vector<QUuid> MakeIdentities(const std::vector<Item>& in_items)
{
    std::vector<QUuid> identities;
    identities.reserve(in_items.size());
    for (const std::string& name : IdentityNames(in_items))
        identities.push_back(MakeIdentity(name));
    return identities;
}

Differences Compare(const std::vector<Item>& in_before, const std::vector<Item>& in_after)
{
    Differences differences;
    const std::vector<std::string> before = IdentityNames(in_before);
    const std::vector<std::string> after = IdentityNames(in_after);
    std::unordered_map<std::string_view, std::size_t> known;
    known.reserve(before.size());
    for (std::size_t i = 0; i < before.size(); ++i)
        known.emplace(before[i], i);
    std::vector<bool> isThere(before.size(), false);
    for (std::size_t i = 0; i < after.size(); ++i)
    {
        const auto found = known.find(after[i]);
        if (found == known.end())
        {
            differences.m_new.push_back(i);
            continue;
        }
        isThere[found->second] = true;
        if (!AreAlike(in_before[found->second], in_after[i]))
            differences.m_changed.emplace_back(found->second, i);
    }
    for (std::size_t i = 0; i < before.size(); ++i)
        if (!isThere[i])
            differences.m_gone.push_back(i);
    return differences;
}

std::optional<std::string> FindDifference(const Document& in_document, const std::string& in_bytes)
{
    if (in_document.IsEmpty() && in_bytes.empty())
        return std::nullopt;
    Document read;
    std::size_t line = 1;
    if (const std::optional<Fault> fault = read.Read(in_bytes, &line))
        return "Line " + std::to_string(line) + ": " + fault->m_reason;
    const std::vector<Declaration>& meant = in_document.GetDeclarations();
    const std::vector<Declaration>& found = read.GetDeclarations();
    const std::size_t common = std::min(meant.size(), found.size());
    for (std::size_t i = 0; i < common; ++i)
        if (!SayTheSame(meant[i], found[i]))
            return "Line " + std::to_string(LineOf(in_bytes, found[i].m_span.m_begin)) + ": The element \"" +
                   found[i].m_name + "\" is not the one that was meant.";
    if (meant.size() != found.size())
        return "There are " + std::to_string(found.size()) + " elements where " + std::to_string(meant.size()) +
               " were meant.";
    return std::nullopt;
}

} // namespace materialx
