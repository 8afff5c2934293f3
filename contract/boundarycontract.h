// SPDX-License-Identifier: MIT
/// The contract of the boundary, checked promise by promise against one implementation of the data layer.
///
/// A test program of an implementation is a fixture and a main function:
///
///     int main(int argc, char** argv)
///     {
///         QApplication application(argc, argv);
///         return contract::RunContract([] { return std::make_unique<MyFixture>(); }, argc, argv);
///     }
///
/// The names of promises as arguments check these alone. Nothing here depends on a test framework. To run the promises
/// as tests of one, ask GetPromises() and CheckPromise().
#pragma once

#include "contract/boundaryfixture.h"

#include <string>
#include <vector>

namespace contract
{

/// What became of a promise.
enum eOutcome
{
    eKept,       ///< checked, and no fault found
    eBroken,     ///< one fault found
    eNotChecked, ///< the implementation leaves out what the promise is about
};

/// What became of a promise, and why.
struct Result
{
    eOutcome m_outcome = eKept; ///< with eKept, parts may not have been checked: see the message
    /// Of a broken promise: "OPERATION: expected …; got …. What in the browser relies on it." Else what was not
    /// checked, and why; empty when all was. Printable ASCII: other characters are written as "\xE4".
    std::string m_message;
};

/// The names of all promises, for example "typesAreTheConstantsThemselves", in the order from reading to services.
std::vector<std::string> GetPromises();

/// Checks one promise on fixtures of its own. The first fault ends it: one message a promise. What the implementation
/// throws is caught and reported. A crash of the implementation is one of the program.
///
/// Needs a QCoreApplication; with eSourceControl a QGuiApplication. It processes events, and waits 5 seconds at most
/// for states of source control that never come.
/// \param in_promise one of GetPromises(); another name is a broken promise
Result CheckPromise(const std::string& in_promise, const FixtureMaker& in_maker);

/// Checks the promises that the arguments name, or all when they name none. Prints each message and a summary to
/// standard output.
/// \return 0 when at least one promise was checked and none is broken, else 1: the exit status of the program
int RunContract(const FixtureMaker& in_maker, int in_argc, const char* const* in_argv);

} // namespace contract
