// SPDX-License-Identifier: MIT
/// One promise put to the test: the fixture it runs on, and what is expected of it.
#pragma once

#include "contract/boundaryfixture.h"

#include "datamodel/accessor.h"
#include "datamodel/itemid.h"

#include <memory>
#include <string>
#include <vector>

namespace contract
{

/// Thrown where an expectation fails: "OPERATION: expected …; got …". No std::exception, so that no implementation
/// and no check takes it for one of its own.
struct Broken
{
    std::string m_text;
};

/// Thrown where the implementation leaves out what the promise is about.
struct NotChecked
{
};

class Trial
{
public:
    explicit Trial(const FixtureMaker& in_maker) : m_maker(in_maker), m_fixture(MakeFixture()) {}

    BoundaryFixture& GetFixture() { return *m_fixture; }
    std::unique_ptr<BoundaryFixture> MakeFixture() const;
    void EndFixture() { m_fixture.reset(); }
    /// Goes on with a new fixture.
    void Restart();

    vireo::datamodel::ItemLibraryAccessor GetLibrary();
    hmx::fwk::ICommandManager* GetCommands() { return m_fixture->GetCommands(); }

    /// Whether the implementation has these features. Notes those that it lacks as not checked.
    bool Has(unsigned in_features);
    /// Whether the implementation knows such items. Notes the wish as not checked when it does not.
    bool CanAdd(const ItemWish& in_wish);
    /// Ends the trial as not checked when the implementation lacks one of these features.
    void Need(unsigned in_features);

    /// Adds an item. Ends the trial as not checked when the implementation does not know such items.
    vireo::datamodel::ItemID Add(const ItemWish& in_wish);
    void Remove(const vireo::datamodel::ItemID& in_item, hmx::fwk::ICommandManager* in_commands);

    /// What was not checked, with commas between.
    const std::string& GetNotes() const { return m_notes; }
    /// Whether nothing could be checked, because the implementation knows none of the items.
    bool IsIdle() const { return !m_notes.empty() && !m_hasAdded; }

private:
    void Note(const std::string& in_text);

    const FixtureMaker& m_maker;
    std::unique_ptr<BoundaryFixture> m_fixture;
    std::string m_notes;
    bool m_hasAdded = false;
};

/// A promise: its name, the features it needs, what in the browser relies on it, and the check.
struct Promise
{
    const char* m_name;
    unsigned m_features;
    const char* m_reliance;
    void (*m_check)(Trial&);
};

using Promises = std::vector<Promise>;

Promises ReadingPromises();
Promises NotificationPromises();
Promises WritingPromises();
Promises DatabasePromises();
Promises ServicePromises();

/// A type name as the boundary compares it: by pointer.
struct TypeName
{
    const char* m_name;

    friend bool operator==(const TypeName& in_left, const TypeName& in_right)
    {
        return in_left.m_name == in_right.m_name;
    }
};

enum eValidity
{
    eInvalid,
    eValid,
};

inline eValidity ValidityOf(const vireo::datamodel::BaseAccessor& in_accessor)
{
    return in_accessor.IsValid() ? eValid : eInvalid;
}

/// To be put behind an operation that shows whether Add() made what was wished: the wish, and that CanAdd() has agreed.
std::string AsAgreed(const ItemWish& in_wish);

// Values as messages show them.
std::string Show(bool in_value);
std::string Show(int in_value);
std::string Show(std::size_t in_value);
std::string Show(const char* in_text);
std::string Show(const std::string& in_text);
std::string Show(const TypeName& in_type);
std::string Show(const vireo::datamodel::ItemID& in_item);
std::string Show(eValidity in_validity);
/// A text without what is not printable ASCII.
std::string Printable(const std::string& in_text);

/// Expects something that no single value says. The texts are shown as they are.
/// \param in_operation begins with the operation that is asked for what was got
void ExpectThat(const std::string& in_operation, const std::string& in_expected, bool in_holds,
                const std::string& in_got);

/// Expects a value.
template <class Expected, class Got>
void Expect(const std::string& in_operation, const Expected& in_expected, const Got& in_got)
{
    ExpectThat(in_operation, Show(in_expected), in_got == in_expected, Show(in_got));
}

/// Reports what the implementation has thrown in an operation. To be called where it was caught.
[[noreturn]] void ReportException(const std::string& in_operation);

/// Calls an operation; an exception breaks the promise that it answers.
template <class Operation> auto Call(const char* in_name, const Operation& in_operation) -> decltype(in_operation())
{
    try
    {
        return in_operation();
    }
    catch (...)
    {
        ReportException(in_name);
    }
}

} // namespace contract
