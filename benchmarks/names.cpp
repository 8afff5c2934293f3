// SPDX-License-Identifier: MIT
#include "names.h"

#include <fstream>
#include <random>

namespace
{

const std::vector<std::string> gActions = {
    "Add", "Blend", "Clamp",  "Convert", "Curve", "Divide", "Extract", "Fade",  "Filter", "Grade",  "Invert", "Merge",
    "Mix", "Noise", "Offset", "Project", "Ramp",  "Remap",  "Sample",  "Scale", "Shift",  "Smooth", "Split",  "Warp"};
const std::vector<std::string> gThings = {
    "Angle",  "Area",  "Bump",  "Cell", "Channel", "Colour", "Depth", "Edge",   "Fabric",  "Float", "Fractal", "Grid",
    "Height", "Image", "Light", "Mask", "Matrix",  "Normal", "Point", "Shadow", "Surface", "Time",  "Vector",  "Wave"};
const std::vector<std::string> gQualities = {"2D",   "3D",    "Bright", "Clean", "Coarse", "Dark", "Fast",   "Fine",
                                             "Hard", "Large", "Local",  "Old",   "Plain",  "Soft", "Sparse", "World"};
const std::vector<std::string> gTags = {"adjustment",  "artist",     "channel", "colour",   "composite", "conditional",
                                        "convolution", "geometric",  "legacy",  "lighting", "math",      "organisation",
                                        "pattern",     "procedural", "render",  "studio",   "texture",   "utility"};

const std::string& Pick(const std::vector<std::string>& in_words, std::mt19937& in_random)
{
    return in_words[in_random() % in_words.size()];
}

} // namespace

std::vector<NamedItem> MakeItems(std::size_t in_count)
{
    std::mt19937 random(4711u);
    std::vector<NamedItem> items;
    items.reserve(in_count);
    while (items.size() < in_count)
    {
        NamedItem item;
        item.m_name = Pick(gActions, random) + Pick(gThings, random);
        for (std::size_t more = random() % 3; more > 0; --more)
            item.m_name += Pick(gQualities, random);
        item.m_name += std::to_string(items.size());
        const std::string& first = Pick(gTags, random);
        const std::string* second = &first;
        while (second == &first)
            second = &Pick(gTags, random);
        item.m_tags = first + ";" + *second + ";" + Pick(gThings, random);
        items.push_back(item);
    }
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
