// SPDX-License-Identifier: MIT
#include "materialx/identity.h"
#include "materialx/moving.h"
#include "materialx/newnode.h"
#include "materialx/operations.h"
#include "tests/materialx/documents.h"
#include "tests/materialx/memorylibrary.h"
#include "tests/support/random.h"
#include "tests/support/testmain.h"

#include <algorithm>
#include <set>

using materialx::Change;
using materialx::DeclarationIndex;
using materialx::Item;
using materialx::Library;
using materialx::Plan;

namespace
{

bool IsSame(const DeclarationIndex& in_a, const DeclarationIndex& in_b)
{
    return in_a.m_document == in_b.m_document && in_a.m_declaration == in_b.m_declaration;
}

std::vector<std::string> SplitTags(const std::string& in_tags)
{
    std::vector<std::string> tags;
    for (const QByteArray& tag : QByteArray::fromStdString(in_tags).split(';'))
        tags.push_back(tag.toStdString());
    return in_tags.empty() ? std::vector<std::string>() : tags;
}

std::string Text(const Item& in_item)
{
    return "item " + in_item.m_name + " shown as " + in_item.m_shownName;
}

/// People at a library: random steps, each checked against a reading of the new bytes from scratch.
class Session
{
public:
    Session(Library in_library, unsigned in_seed)
        : m_library(std::move(in_library)), m_atStart(BytesOf(m_library)), m_random(in_seed)
    {
    }

    /// One step; an empty text when all is as meant.
    std::string Step()
    {
        m_items = MakeItems(m_library);
        switch (m_random.Below(8))
        {
        case 0:
            return Undo();
        case 1:
        case 2:
            return Rename();
        case 3:
        case 4:
            return SetTags();
        case 5:
            return AddNode();
        default:
            return Move();
        }
    }

    /// Takes back all steps; an empty text when the bytes are those at the start.
    std::string UndoAll()
    {
        while (!m_done.empty())
            if (const std::string difference = Undo(); !difference.empty())
                return difference;
        std::vector<std::string> bytes = BytesOf(m_library);
        for (std::size_t i = m_atStart.size(); i < bytes.size(); ++i)
            if (!bytes[i].empty())
                return "a document that was made is still there";
        bytes.resize(m_atStart.size());
        return bytes == m_atStart ? std::string() : "the bytes are not those at the start";
    }

    std::size_t GetStepCount() const { return m_stepCount; }
    std::size_t GetRefusalCount() const { return m_refusalCount; }

private:
    const Item& AnyItem()
    {
        return m_items[static_cast<std::size_t>(m_random.Below(static_cast<int>(m_items.size())))];
    }

    std::string AnyText()
    {
        return m_random.Text("abcXYZ019 _;:/\\&<>\"'\t.", 1, 8) + (m_random.OneIn(3) ? "\xC3\xA4\xE9\x95\xB7" : "");
    }

    /// Makes a change, and compares what a fresh reading of the changed documents gives.
    std::string Make(const Change& in_change)
    {
        if (const std::optional<materialx::Fault> fault = Apply(in_change, m_library))
            return fault->m_reason;
        ++m_stepCount;
        for (const materialx::DocumentEdit& edit : in_change)
        {
            const materialx::Document& document = m_library.m_documents[edit.m_document].m_document;
            if (std::optional<std::string> difference = FindDifference(document, document.GetBytes()))
                return *difference;
            if (document.IsEmpty())
                continue;
            const materialx::Document fresh = MakeDocument(document.GetBytes());
            for (std::size_t i = 0; i < fresh.GetDeclarations().size(); ++i)
                if (fresh.GetDeclarations()[i].m_span.m_begin != document.GetDeclarations()[i].m_span.m_begin ||
                    fresh.GetDeclarations()[i].m_span.m_end != document.GetDeclarations()[i].m_span.m_end)
                    return "a place is wrong";
            if (fresh.GetOutline().m_contentEnd != document.GetOutline().m_contentEnd)
                return "the end is wrong";
        }
        return std::string();
    }

    /// Makes the change of a plan, and compares the items with those that were meant.
    std::string Make(const Plan& in_plan, const std::vector<Item>& in_meant)
    {
        if (!in_plan.m_refusal.empty())
        {
            ++m_refusalCount;
            return std::string();
        }
        if (const std::string difference = Make(in_plan.m_change); !difference.empty())
            return difference;
        m_done.push_back(in_plan.m_change);
        const std::vector<Item> items = MakeItems(m_library);
        const materialx::Differences differences = Compare(in_meant, items);
        if (!differences.m_gone.empty())
            return "gone: " + Text(in_meant[differences.m_gone[0]]);
        if (!differences.m_new.empty())
            return "new: " + Text(items[differences.m_new[0]]);
        if (!differences.m_changed.empty())
            return "changed: " + Text(in_meant[differences.m_changed[0].first]) + " into " +
                   Text(items[differences.m_changed[0].second]);
        return std::string();
    }

    std::string Undo()
    {
        if (m_done.empty())
            return std::string();
        const Change change = m_done.back();
        m_done.pop_back();
        return Make(Inverse(change));
    }

    /// The listed items of a declaration, and what it is the first declaration of.
    template <class Function> std::vector<Item> With(const Item& in_item, Function in_change)
    {
        std::vector<Item> meant = m_items;
        for (Item& item : meant)
            if (item.m_parent.empty() && IsSame(item.m_declaration, in_item.m_declaration))
                in_change(item);
        return meant;
    }

    std::string Rename()
    {
        const Item item = AnyItem();
        const std::string name = m_random.OneIn(4) ? item.m_name : AnyText();
        const Plan plan = materialx::Rename(m_library, item, name);
        const bool isPlain = name == item.m_name;
        if (name == item.m_shownName)
            return Make(plan, m_items);
        return Make(plan, With(item, [&](Item& io_item) { io_item.m_shownName = isPlain ? io_item.m_name : name; }));
    }

    std::string SetTags()
    {
        const Item item = AnyItem();
        const Plan plan = materialx::SetTags(m_library, item, m_tags = m_random.OneIn(6) ? "" : AnyText());
        if (plan.m_change.empty())
            return Make(plan, m_items);
        return Make(plan, With(item, [&](Item& io_item) { io_item.m_tags = SplitTags(m_tags); }));
    }

    std::string AddNode()
    {
        const std::size_t document =
            m_random.OneIn(3) ? static_cast<std::size_t>(m_random.Below(static_cast<int>(m_library.m_documents.size())))
                              : FindOrAddDocument(QStringLiteral("local/local.mtlx"), m_library);
        const auto kind = static_cast<materialx::eNewKind>(m_random.Below(3));
        const materialx::NewNode node = {kind, AnyText(), m_random.OneIn(2) ? AnyText() : std::string(),
                                         m_random.OneIn(2) ? DeclarationOf(m_library, AnyItem().m_declaration).m_name
                                                           : std::string()};
        std::string nodeDef;
        const Plan plan = materialx::AddNode(m_library, document, node, &nodeDef);
        std::vector<Item> meant = m_items;
        Item& item = meant.emplace_back();
        item.m_kind =
            kind == materialx::eNewKind::eSignature ? materialx::eKind::eSignature : materialx::eKind::eCompound;
        item.m_isLoop = kind == materialx::eNewKind::eLoopCompound;
        item.m_name = nodeDef.substr(std::min<std::size_t>(3, nodeDef.size()));
        item.m_shownName = node.m_name;
        for (const std::string& tag : {node.m_category, m_library.m_documents[document].m_topFolder})
            if (!tag.empty() && (item.m_tags.empty() || item.m_tags[0] != tag))
                item.m_tags.push_back(tag);
        item.m_source = m_library.m_documents[document].m_source;
        return Make(plan, meant);
    }

    /// What moves has another source then, and with it another tag of a folder. Everything else stays as it is.
    std::string Move()
    {
        const Item item = AnyItem();
        const auto source = static_cast<std::size_t>(m_random.Below(static_cast<int>(m_library.m_sources.size())));
        const Plan plan = materialx::Move(m_library, item, source);
        if (!plan.m_refusal.empty() || plan.m_change.empty())
            return Make(plan, m_items);
        std::set<std::string> moved;
        for (const DeclarationIndex& index : ElementsOf(m_library, item))
        {
            moved.insert(DeclarationOf(m_library, index).m_name);
            moved.insert(DeclarationOf(m_library, index).m_node);
        }
        const std::vector<Item> before = m_items;
        if (const std::string difference = Make(plan.m_change); !difference.empty())
            return difference;
        m_done.push_back(plan.m_change);
        const std::vector<Item> after = MakeItems(m_library);
        const materialx::Differences differences = Compare(before, after);
        if (!differences.m_gone.empty() || !differences.m_new.empty())
            return "an item is gone or new after moving " + Text(item);
        for (const auto& [old, now] : differences.m_changed)
        {
            const Item& is = after[now];
            const bool mayChange = moved.count(is.m_name) != 0 || moved.count(is.m_parent) != 0;
            // Which definition of several is the first may change with their documents.
            const bool isFirstOfSeveral = is.m_kind == materialx::eKind::ePolymorphicSolver;
            if (!mayChange || (is.m_shownName != before[old].m_shownName && !isFirstOfSeveral))
                return "another item changed: " + Text(is) + " when moving " + Text(item);
        }
        for (const Item& is : after)
            if (is.m_name == item.m_name && is.m_kind == item.m_kind && is.m_parent.empty() &&
                is.m_specializes == item.m_specializes)
                for (const DeclarationIndex& index : ElementsOf(m_library, is))
                    if (m_library.m_documents[index.m_document].m_source != source)
                        return "an element did not move";
        return std::string();
    }

    Library m_library;
    const std::vector<std::string> m_atStart;
    Random m_random;
    std::vector<Item> m_items;
    std::vector<Change> m_done;
    std::string m_tags;
    std::size_t m_stepCount = 0;
    std::size_t m_refusalCount = 0;
};

Library ReadOrThrow(const QString& in_path)
{
    Library library;
    if (const std::optional<materialx::Error> error = ReadLibrary(in_path, library))
        throw std::runtime_error(error->GetText().toStdString());
    return library;
}

/// The same library with other line ends, tabs and single quotes, and without the last line end.
Library WithOtherStyle(Library in_library)
{
    for (materialx::LibraryDocument& document : in_library.m_documents)
    {
        QByteArray bytes = QByteArray::fromStdString(document.m_document.GetBytes()).trimmed();
        bytes.replace("\n", "\r\n").replace("  ", "\t");
        document.m_document = MakeDocument("\xEF\xBB\xBF" + bytes.toStdString());
    }
    return in_library;
}

} // namespace

/// Random steps and their undoing on whole libraries. After each step the library is as meant, and after undoing all
/// the bytes are those at the start.
class RandomEditsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void librariesOfTheTests_data();
    void librariesOfTheTests();
    void librariesOfTheStandard();

private:
    static void Run(const Library& in_library, int in_sessions, int in_steps)
    {
        const unsigned seed = TestSeed(10);
        std::size_t steps = 0;
        std::size_t refusals = 0;
        for (int i = 0; i < in_sessions; ++i)
        {
            Session session(in_library, seed + static_cast<unsigned>(i));
            for (int step = 0; step < in_steps; ++step)
            {
                const std::string difference = session.Step();
                QVERIFY2(difference.empty(), difference.c_str());
            }
            const std::string difference = session.UndoAll();
            QVERIFY2(difference.empty(), difference.c_str());
            steps += session.GetStepCount();
            refusals += session.GetRefusalCount();
        }
        const auto all = static_cast<std::size_t>(in_sessions) * static_cast<std::size_t>(in_steps);
        QVERIFY2(steps > all / 2, std::to_string(steps).c_str());
        QVERIFY2(refusals > 0 && refusals < all * 3 / 4, std::to_string(refusals).c_str());
    }
};

void RandomEditsTest::librariesOfTheTests_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("isOtherStyle");
    for (const char* const folder : {"library", "observatory"})
    {
        const QString path = QStringLiteral(TEST_DATA_FOLDER "/") + QString::fromLatin1(folder);
        QTest::newRow(folder) << path << false;
        QTest::newRow(qPrintable(QString::fromLatin1(folder) + QStringLiteral(", other style"))) << path << true;
    }
}

void RandomEditsTest::librariesOfTheTests()
{
    QFETCH(QString, folder);
    QFETCH(bool, isOtherStyle);
    const Library library = ReadOrThrow(folder);
    Run(isOtherStyle ? WithOtherStyle(library) : library, 40, 40);
}

void RandomEditsTest::librariesOfTheStandard()
{
    const QString named = qEnvironmentVariable("NODEBROWSER_MATERIALX_FOLDER");
    const QString folder = named.isEmpty() ? QStringLiteral(STANDARD_LIBRARY_FOLDER) : named;
    if (!QFileInfo(folder).isDir())
        QSKIP("The node libraries of the standard are not there");
    Run(ReadOrThrow(folder), 2, 40);
}

NODEBROWSER_TEST_MAIN(RandomEditsTest)
#include "test_randomedits.moc"
