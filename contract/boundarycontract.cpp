// SPDX-License-Identifier: MIT
#include "contract/boundarycontract.h"

#include "contract/trial.h"

#include <cstdio>

namespace contract
{
namespace
{

Promises AllPromises()
{
    Promises all;
    for (const Promises& part :
         {ReadingPromises(), NotificationPromises(), WritingPromises(), DatabasePromises(), ServicePromises()})
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

Result Check(const Promise& in_promise, const FixtureMaker& in_maker)
{
    Result result;
    try
    {
        Trial trial(in_maker);
        try
        {
            trial.Need(in_promise.m_features);
            in_promise.m_check(trial);
            result.m_outcome = trial.IsIdle() ? eNotChecked : eKept;
        }
        catch (const NotChecked&)
        {
            result.m_outcome = eNotChecked;
        }
        catch (...)
        {
            ReportException("an operation of the promise");
        }
        result.m_message = trial.GetNotes().empty() ? "" : "Not checked: " + trial.GetNotes() + ".";
    }
    catch (const Broken& broken)
    {
        result.m_outcome = eBroken;
        result.m_message = broken.m_text + ". " + in_promise.m_reliance;
    }
    return result;
}

} // namespace

std::vector<std::string> GetPromises()
{
    std::vector<std::string> names;
    for (const Promise& promise : AllPromises())
        names.push_back(promise.m_name);
    return names;
}

Result CheckPromise(const std::string& in_promise, const FixtureMaker& in_maker)
{
    for (const Promise& promise : AllPromises())
        if (promise.m_name == in_promise)
            return Check(promise, in_maker);
    Result result;
    result.m_outcome = eBroken;
    result.m_message = "There is no promise " + Show(in_promise) + ".";
    return result;
}

int RunContract(const FixtureMaker& in_maker, int in_argc, const char* const* in_argv)
{
    std::vector<std::string> names;
    for (int i = 1; i < in_argc; ++i)
        names.push_back(in_argv[i]);
    int count[] = {0, 0, 0};
    for (const std::string& name : names.empty() ? GetPromises() : names)
    {
        const char* const words[] = {"kept", "broken", "not checked"};
        const Result result = CheckPromise(name, in_maker);
        ++count[result.m_outcome];
        if (!result.m_message.empty())
            std::printf("%s: %s\n    %s\n", words[result.m_outcome], Printable(name).c_str(), result.m_message.c_str());
        // What comes next may crash.
        std::fflush(stdout);
    }
    std::printf("%d kept, %d broken, %d not checked\n", count[eKept], count[eBroken], count[eNotChecked]);
    return count[eBroken] == 0 && count[eKept] > 0 ? 0 : 1;
}

} // namespace contract
