// SPDX-License-Identifier: MIT
/// A store that saves item by item.
#pragma once

#include "memorymodel/library.h"
#include "memorymodel/store.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>

/// Calls a function with each item that is to be saved. It returns why the item could not be saved, or an empty text.
class ItemWriter : public memorymodel::Store
{
public:
    using Write = std::function<std::string(const vireo::datamodel::ItemID&)>;

    explicit ItemWriter(Write in_write) : m_write(std::move(in_write)) {}

    memorymodel::CommitAnswer Commit(const memorymodel::CommitRequest& in_request) override
    {
        memorymodel::CommitAnswer answer;
        for (const vireo::datamodel::ItemID& item : in_request.m_items)
        {
            const std::string error = m_write(item);
            if (error.empty())
                answer.m_saved.push_back(item);
            else
                answer.m_messages.push_back(error);
        }
        answer.m_isWritten = !answer.m_saved.empty();
        return answer;
    }

private:
    const Write m_write;
};

inline void SetWriter(memorymodel::Library& io_library, ItemWriter::Write in_write)
{
    io_library.SetStore(std::make_shared<ItemWriter>(std::move(in_write)));
}
