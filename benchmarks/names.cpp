// SPDX-License-Identifier: MIT
#include "names.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>

namespace
{

using Words = std::vector<std::string>;

// How the made-up libraries got their shape. A large site has thousands of packages: nearly half of them hold one to
// three nodes, a few hold hundreds, and 100,000 nodes come from about 5,600 packages. Names come in families: one
// operation, spelt once per type of value. They have 3 to 34 characters, mostly 12 to 24. A package spells all of its
// names one way. The tags of a node are the group of its operation, its package, and for most nodes the operation or
// the site that made the package. Joined they have 15 to 55 characters. A group is shared by a twentieth of all nodes,
// a package's tag by its nodes alone.

const Words gActions = {"add",  "blend", "clamp",  "convert", "curve", "divide", "extract", "fade",
                        "fill", "grade", "invert", "merge",   "mix",   "noise",  "offset",  "project",
                        "ramp", "remap", "sample", "scale",   "shift", "smooth", "split",   "warp"};
const Words gThings = {"angle",  "area",  "bump",  "cell", "channel", "colour", "depth", "edge",
                       "fabric", "float", "fract", "grid", "height",  "image",  "light", "mask",
                       "matrix", "point", "ray",   "rim",  "shadow",  "time",   "uv",    "wave"};
const Words gTypes = {"float",   "integer", "boolean", "colour3",  "colour4",  "vector2", "vector3",
                      "vector4", "matrix3", "matrix4", "filename", "colour3F", "surface", "type"};
const Words gGroups = {"adjustment",   "application", "channel",   "colourspace", "composite",
                       "conditional",  "convolution", "geometric", "lighting",    "logical",
                       "material",     "math",        "organise",  "procedural",  "procedural2d",
                       "procedural3d", "shader",      "texture2d", "texture3d",   "translation"};
const Words gSites = {"archive", "atelier", "core",  "fx",   "garden", "hall", "harbour", "house",
                      "lab",     "legacy",  "loft",  "mill", "north",  "open", "plain",   "river",
                      "south",   "studio",  "tools", "user", "vault",  "west", "workshop"};

/// How many nodes a package has. All are as likely.
const std::size_t gPackageSizes[] = {1, 1, 1, 1, 2, 2, 2, 3, 3, 4, 5, 6, 8, 10, 12, 15, 20, 27, 36, 200};

/// How a package spells a name.
enum eSpelling
{
    eUnderscores, ///< "blend_edge_colour3"
    ePrefixed,    ///< "ND_blend_edge_colour3"
    eCapitals,    ///< "BlendEdgeColour3"
    eBlanks,      ///< "Blend Edge Colour3"
    eSpellings,
};

std::size_t Below(std::size_t in_end, std::mt19937& in_random)
{
    return in_random() % in_end;
}

const std::string& Pick(const Words& in_words, std::mt19937& in_random)
{
    return in_words[Below(in_words.size(), in_random)];
}

std::string Capitalised(std::string in_word)
{
    if (in_word[0] >= 'a' && in_word[0] <= 'z')
        in_word[0] = static_cast<char>(in_word[0] - 'a' + 'A');
    return in_word;
}

std::string Spell(const Words& in_words, eSpelling in_spelling)
{
    std::string name = in_spelling == ePrefixed ? "ND_" : "";
    for (std::size_t i = 0; i < in_words.size(); ++i)
    {
        if (i > 0 && in_spelling != eCapitals)
            name += in_spelling == eBlanks ? ' ' : '_';
        name += in_spelling == eCapitals || in_spelling == eBlanks ? Capitalised(in_words[i]) : in_words[i];
    }
    return name;
}

/// The nodes of one package, appended up to a number of items.
void MakePackage(std::size_t in_end, std::mt19937& in_random, std::vector<NamedItem>& io_items)
{
    const eSpelling spelling = static_cast<eSpelling>(Below(eSpellings, in_random));
    const std::string site = Pick(gSites, in_random);
    const std::string package = site + '_' + Pick(gThings, in_random) + '_' + std::to_string(Below(1000, in_random));
    const std::size_t end =
        std::min(in_end, io_items.size() + gPackageSizes[Below(std::size(gPackageSizes), in_random)]);
    while (io_items.size() < end)
    {
        Words family = {Pick(gActions, in_random)};
        for (std::size_t more = Below(3, in_random); more > 0; --more)
            family.push_back(Pick(gThings, in_random));
        std::string tags = Pick(gGroups, in_random) + ';' + package;
        if (const std::size_t further = Below(3, in_random))
            tags += ';' + (further == 1 ? Spell(family, eUnderscores) : site);
        const std::size_t first = Below(gTypes.size(), in_random);
        const std::size_t types = 1 + Below(gTypes.size() / 2, in_random);
        for (std::size_t i = 0; i < types && io_items.size() < end; ++i)
        {
            Words words = family;
            if (types > 1)
                words.push_back(gTypes[(first + i) % gTypes.size()]);
            io_items.push_back({Spell(words, spelling), tags});
        }
    }
}

} // namespace

std::vector<NamedItem> MakeItems(std::size_t in_count)
{
    std::mt19937 random(4711u); // the same numbers on every machine
    std::vector<NamedItem> items;
    items.reserve(in_count);
    while (items.size() < in_count)
        MakePackage(in_count, random, items);
    return items;
}

std::vector<NamedItem> ReadItems(const std::string& in_file)
{
    std::vector<NamedItem> items;
    std::ifstream file(in_file);
    for (std::string line; std::getline(file, line);)
    {
        const std::size_t tab = line.find('\t');
        NamedItem item;
        item.m_name = line.substr(0, tab);
        if (tab != std::string::npos)
            item.m_tags = line.substr(tab + 1);
        items.push_back(item);
    }
    return items;
}

std::vector<NamedItem> RepeatItems(const std::vector<NamedItem>& in_items, std::size_t in_count)
{
    std::vector<NamedItem> items;
    items.reserve(in_count);
    for (std::size_t i = 0; i < in_count; ++i)
        items.push_back(in_items[i % in_items.size()]);
    return items;
}
