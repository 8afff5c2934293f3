// SPDX-License-Identifier: MIT
/// The log of what a data layer is asked for, and the hooks that act from inside of a call. FakeLayer and SpyLayer both
/// write it, in one format.
#pragma once

#include "datamodel/itemid.h"
#include "qtcompat/latin1.h"

#include <QString>
#include <QStringList>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// A call that a data layer got.
struct RecordedCall
{
    QString m_line;
    vireo::datamodel::ItemID m_item; ///< the item that the call is about; invalid when it is about none
    bool m_isCommand;
};

/// Writes down calls, one line each: a word, the item or what else the call is about, and the arguments. An item is
/// written as the first 40 characters of its name, a text of the caller in quotes, a missing one as null.
///
/// Lines of what it takes to show a library:
///   library+40 NAME, library-40 NAME     an observer of the library came or went; the number is the code it passed
///   contents+39 NAME, contents-39 NAME   the same for the table of contents
///   contents of NAME                     the table of contents was asked for
///   iterate TYPE                         the items of a type were asked for; a build of the list asks for five types
///   valid TYPE ITEM                      whether an item is one for graphs
///   identity ITEM, value ITEM 'KEY'      questions to the item itself
///   name ITEM, tags ITEM 'KEY', read-only ITEM, dirty ITEM, model ITEM, signature ITEM, uid ITEM
///   used 'NAME'                          whether a name is in use
///   service 'NAME'                       a service was looked up
///   active, icon STATE                   whether there is source control at all; an icon of a state was asked for
///   notify library, notify contents      no call of the browser: its observers are about to be notified
/// An observer that passes another context than that of its accessor has "wrong context" at the end of its line.
///
/// All other calls are commands:
///   odd name ITEM                        a name was read that is not the plain display name
///   model ITEM with error                a model was read together with the reason why there may be none
///   can modify ITEM, with source: yes
///   rename ITEM to 'NAME', MANAGER
///   tag ITEM under 'KEY' with 'TAGS', MANAGER
///   create 'NAME', signature: no, base class: null, category: null, MANAGER
///   create loop 'NAME', base class: null, category: null, MANAGER
///   pre-commit
///   commit, everything: no, source: UID, messages: 0
///   target ITEM, root ITEM
///   find UID, check out UID …, make writable UID …, show files UID …
///   query 'TEXT', loaded: yes
///   database helper
///   move UID to 'SOURCE', with content: yes
///   request COUNT for TASK               the source-control states of so many objects
///   task ended TASK
class Recorder
{
public:
    using Hook = std::function<void()>;

    /// Writes down a call that showing a library takes. The hooks of the line run before this returns, and what they
    /// throw is thrown to the caller.
    void Show(const QString& in_line, const vireo::datamodel::ItemID& in_item = vireo::datamodel::ItemID())
    {
        Record(RecordedCall{in_line, in_item, false});
    }

    /// The same for a command.
    void Command(const QString& in_line, const vireo::datamodel::ItemID& in_item = vireo::datamodel::ItemID())
    {
        Record(RecordedCall{in_line, in_item, true});
    }

    /// Does something from inside of each later call whose line begins with a text: before the call is answered. What a
    /// hook calls itself runs no hooks.
    void When(const char* in_beginning, Hook in_hook)
    {
        m_hooks.emplace_back(qtcompat::FromLatin1(in_beginning), std::move(in_hook));
    }

    /// The same for the next such call alone.
    void WhenNext(const char* in_beginning, Hook in_hook)
    {
        const std::shared_ptr<bool> done = std::make_shared<bool>(false);
        When(in_beginning, [done, in_hook] {
            if (*done)
                return;
            *done = true;
            in_hook();
        });
    }

    void ForgetHooks() { m_hooks.clear(); }

    /// All lines.
    QStringList Log() const
    {
        return Select([](const RecordedCall&) { return true; });
    }

    /// The lines of the commands.
    QStringList Commands() const
    {
        return Select([](const RecordedCall& in_call) { return in_call.m_isCommand; });
    }

    /// The lines that begin with one of some texts, which are separated by "|".
    QStringList Lines(const char* in_beginnings) const
    {
        const QStringList beginnings = qtcompat::FromLatin1(in_beginnings).split(QLatin1Char('|'));
        return Select([&beginnings](const RecordedCall& in_call) {
            for (int i = 0; i < beginnings.size(); ++i)
                if (in_call.m_line.startsWith(beginnings.at(i)))
                    return true;
            return false;
        });
    }

    /// How many lines begin with one of some texts.
    int Count(const char* in_beginnings) const { return static_cast<int>(Lines(in_beginnings).size()); }

    /// How many calls about an item have a line that begins with a text.
    int Count(const char* in_beginning, const vireo::datamodel::ItemID& in_item) const
    {
        int count = 0;
        for (const RecordedCall& call : m_calls)
            if (call.m_item == in_item && call.m_line.startsWith(QLatin1String(in_beginning)))
                ++count;
        return count;
    }

    /// How often the list was built.
    int CountRebuilds() const { return Count("iterate PolymorphicSolver"); }

    void Forget() { m_calls.clear(); }

    std::vector<RecordedCall> m_calls;

private:
    template <class Condition> QStringList Select(Condition in_condition) const
    {
        QStringList lines;
        for (const RecordedCall& call : m_calls)
            if (in_condition(call))
                lines << call.m_line;
        return lines;
    }

    void Record(RecordedCall in_call)
    {
        const QString line = in_call.m_line;
        m_calls.push_back(std::move(in_call));
        if (m_inHook)
            return;
        struct Guard
        {
            explicit Guard(bool& out_flag) : m_flag(out_flag) { m_flag = true; }
            ~Guard() { m_flag = false; }
            bool& m_flag;
        } const guard(m_inHook);
        // By number: a hook may set another one.
        for (std::size_t i = 0; i < m_hooks.size(); ++i)
            if (line.startsWith(m_hooks[i].first))
                Hook(m_hooks[i].second)();
    }

    std::vector<std::pair<QString, Hook>> m_hooks;
    bool m_inHook = false;
};

/// How many lines of a log begin with a text.
inline int CountLines(const QStringList& in_log, const char* in_beginning)
{
    int count = 0;
    for (int i = 0; i < in_log.size(); ++i)
        if (in_log.at(i).startsWith(QLatin1String(in_beginning)))
            ++count;
    return count;
}

/// Where the first line that begins with a text stands in a log, and the last one; -1 when there is none.
inline int FirstLine(const QStringList& in_log, const char* in_beginning)
{
    for (int i = 0; i < in_log.size(); ++i)
        if (in_log.at(i).startsWith(QLatin1String(in_beginning)))
            return i;
    return -1;
}

inline int LastLine(const QStringList& in_log, const char* in_beginning)
{
    for (int i = static_cast<int>(in_log.size()) - 1; i >= 0; --i)
        if (in_log.at(i).startsWith(QLatin1String(in_beginning)))
            return i;
    return -1;
}

/// A text of a caller as a log shows it: in quotes, or "null".
inline QString Quoted(const char* in_text)
{
    return in_text ? QString::fromLatin1("'%1'").arg(qtcompat::FromLatin1(in_text)) : QString::fromLatin1("null");
}

inline QString YesOrNo(bool in_value)
{
    return QString::fromLatin1(in_value ? "yes" : "no");
}

/// The name of an item as a log shows it: without the end of a very long one, which many lines would have.
inline QString LoggedName(const std::string& in_name)
{
    return qtcompat::FromLatin1(in_name.substr(0, 40));
}

/// A word and a name, as most lines are.
inline QString RecordLine(const char* in_word, const std::string& in_name)
{
    return QString::fromLatin1("%1 ").arg(QLatin1String(in_word)) + LoggedName(in_name);
}

/// The line of an observer that came or went.
inline QString ObserverLine(const char* in_what, int in_kind, const QString& in_name, bool in_ownContext)
{
    return QString::fromLatin1("%1%2 %3%4")
        .arg(QLatin1String(in_what))
        .arg(in_kind)
        .arg(in_name)
        .arg(QLatin1String(in_ownContext ? "" : " wrong context"));
}
