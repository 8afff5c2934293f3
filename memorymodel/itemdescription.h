// SPDX-License-Identifier: MIT
/// The private part of a NewItem.
#pragma once

#include <string>
#include <utility>

namespace memorymodel
{

class DataSource;

/// What was asked for, and what holds when nothing was.
struct ItemDescription
{
    ItemDescription(const char* in_type, std::string in_name) : m_type(in_type), m_name(std::move(in_name)) {}

    const char* m_type; ///< a type-name constant
    std::string m_name;
    std::string m_tags;
    std::string m_parent;
    std::string m_specializes;
    std::string m_uid;
    std::string m_baseClass;
    std::string m_category;
    const DataSource* m_source = nullptr;
    bool m_signature = false;
    bool m_loop = false;
    bool m_readOnly = false;
    bool m_withUID = true;
    bool m_withObject = true;
    bool m_builtIn = false;
    bool m_loaded = true;
    bool m_forGraphs = true;
};

} // namespace memorymodel
