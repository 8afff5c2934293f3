// SPDX-License-Identifier: MIT
// Random sessions at a folder of documents: edits, saves, reloads, undo, and other writers.
//
// NODEBROWSER_ROUND_TRIPS is how many sessions there are with each kind of library.

#include "contract/support.h"
#include "tests/support/random.h"
#include "tests/support/testmain.h"
#include "tests/workspace/openedfolder.h"

#include <cstdio>

using namespace vireo::datamodel;

namespace
{

/// What happened in all sessions, so that none of it can be missing.
struct Counts
{
    int m_changes = 0;
    int m_refusals = 0;
    int m_saves = 0;
    int m_undos = 0;
    int m_foreign = 0;
};

/// One session. Every check returns what is wrong; an empty text when nothing is.
class Session
{
public:
    Session(const QString& in_folder, bool in_hasOthers, unsigned in_seed, Counts& io_counts)
        : m_hasOthers(in_hasOthers), m_random(in_seed), m_counts(io_counts)
    {
        CopyDocuments(in_folder, m_folder);
        m_atStart = FilesBelow(m_folder.GetPath());
        m_opened.reset(new Opened(m_folder.GetPath()));
        m_itemsAtStart = Describe(m_opened->GetLibrary());
    }

    QString Run(int in_steps)
    {
        for (int step = 0; step < in_steps; ++step)
            if (const QString wrong = Step(); !wrong.isEmpty())
                return wrong;
        if (const QString wrong = SaveAndCompare(); !wrong.isEmpty())
            return wrong;
        while (m_opened->GetStack().canUndo())
            m_opened->GetStack().undo();
        if (const QString wrong = SaveAndCompare(); !wrong.isEmpty() || m_hasOthers)
            return wrong;
        if (Describe(m_opened->GetLibrary()) != m_itemsAtStart)
            return QStringLiteral("the items are not those at the start");
        Files now = FilesBelow(m_folder.GetPath());
        now.remove(QStringLiteral("local/"));
        return Difference(m_atStart, now);
    }

private:
    QString Step()
    {
        const int first = m_hasOthers ? 0 : 1;
        switch (m_random.Between(first, 11))
        {
        case 0:
            return WriteAsSomebodyElse();
        case 1:
            return SaveAndCompare();
        case 2:
            ++m_counts.m_undos;
            m_opened->GetStack().undo();
            return QString();
        case 3:
            m_opened->GetStack().redo();
            return QString();
        case 4:
            m_opened->GetWorkspace().Refresh();
            return QString();
        case 5:
        case 6:
            Count(m_opened->GetLibrary().Rename(AnyItem(), AnyText(), m_opened->GetCommands()));
            return QString();
        case 7:
        case 8:
            Count(contract::SetTags(m_opened->Get(), AnyItem(),
                                    (AnyText() + (m_random.OneIn(2) ? ";" + AnyText() : "")).c_str(),
                                    m_opened->GetCommands()));
            return QString();
        case 9:
            Create();
            return QString();
        case 10:
            Count(m_opened->GetLibrary().Remove(AnyItem(), m_opened->GetCommands()));
            return QString();
        default:
            Move();
            return QString();
        }
    }

    void Count(bool in_isDone) { ++(in_isDone ? m_counts.m_changes : m_counts.m_refusals); }

    /// Any item that takes changes, if one is found soon.
    ItemID AnyItem()
    {
        const std::vector<ItemID> items = m_opened->GetLibrary().GetItems();
        for (int tries = 0; tries < 50 && !items.empty(); ++tries)
        {
            const ItemID item = items[static_cast<std::size_t>(m_random.Below(static_cast<int>(items.size())))];
            if (!m_opened->Get().ItemIsReadOnly(item))
                return item;
        }
        return ItemID();
    }

    std::string AnyText() { return m_random.Text("abXY01 _&<\"'?\xE4\xDF", 1, 6); }

    void Create()
    {
        const std::string name = AnyText();
        const std::string category = m_random.OneIn(2) ? AnyText() : std::string();
        const ItemID base = AnyItem();
        const std::string uid =
            m_opened->GetLibrary().IsSignature(base) ? ItemIDUnlock::GetItemIDUID(base) : std::string();
        CompoundModifierAccessor compound;
        LoopCompoundModifierAccessor loop;
        Count(m_random.OneIn(3)
                  ? loop.CreateAndSetFromNewLoopCompound(m_opened->Get(), name.c_str(), uid.c_str(), category.c_str(),
                                                         m_opened->GetCommands())
                        .IsValid()
                  : compound
                        .CreateAndSetFromNewCompound(m_opened->Get(), name.c_str(), m_random.OneIn(2), uid.c_str(),
                                                     category.c_str(), m_opened->GetCommands())
                        .IsValid());
    }

    void Move()
    {
        const auto& sources = m_opened->GetLibrary().GetDataSources();
        const ItemID item = AnyItem();
        const auto source = static_cast<std::size_t>(m_random.Below(static_cast<int>(sources.size())));
        Count(item.IsValid() && m_opened->Move(item, sources[source]->GetName().c_str()));
    }

    /// Moves everything in a document that has no edits, and changes an item in it now and then.
    QString WriteAsSomebodyElse()
    {
        const QStringList changed = m_opened->GetWorkspace().GetChangedDocuments();
        const Files files = FilesBelow(m_folder.GetPath());
        for (auto file = files.begin(); file != files.end(); ++file)
        {
            const auto end = file.value().lastIndexOf("</materialx>");
            if (changed.contains(file.key()) || end < 0 || !m_random.OneIn(3))
                continue;
            QByteArray bytes = file.value();
            const QByteArray number = QByteArray::number(++m_counts.m_foreign);
            bytes.insert(end, "<nodedef name=\"ND_foreign" + number + "\" node=\"foreign" + number + "\"/>\n");
            const auto behindStart = bytes.indexOf("<materialx");
            bytes.insert(bytes.indexOf('>', behindStart) + 1, "\n<!-- foreign -->");
            m_folder.Write(file.key(), bytes);
            m_opened->GetWorkspace().Refresh(file.key());
        }
        return QString();
    }

    /// Saves, and compares the library with one that is opened now.
    QString SaveAndCompare()
    {
        ++m_counts.m_saves;
        if (!m_opened->Commit())
            return QString::fromUtf8(m_opened->GetMessages());
        for (const ItemID& item : m_opened->GetLibrary().GetItems())
            if (m_opened->Get().ItemIsDirty(item))
                return QStringLiteral("an item is dirty after the save");
        const QStringList now = Describe(m_opened->GetLibrary());
        const QStringList fresh = Describe(Opened(m_folder.GetPath()).GetLibrary());
        m_opened->GetLayer().Install();
        for (const QString& line : now)
            if (!fresh.contains(line))
                return QStringLiteral("only in memory: ") + line;
        for (const QString& line : fresh)
            if (!now.contains(line))
                return QStringLiteral("only on disk: ") + line;
        return now == fresh ? QString() : QStringLiteral("there are several of some item");
    }

    const bool m_hasOthers;
    Random m_random;
    Counts& m_counts;
    DocumentFolder m_folder;
    Files m_atStart;
    QStringList m_itemsAtStart;
    std::unique_ptr<Opened> m_opened;
};

int SessionCount()
{
    const int wanted = qEnvironmentVariableIntValue("NODEBROWSER_ROUND_TRIPS");
    return wanted > 0 ? wanted : 30; // twenty seconds without the optimiser
}

} // namespace

class TestRoundTrips : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Thousands of saves wait for the disk, unless it is one in memory.
    void initTestCase()
    {
        if (QFileInfo(QStringLiteral("/dev/shm")).isWritable())
            qputenv("TMPDIR", "/dev/shm");
    }

    void whatIsInMemoryIsOnDiskAndUndoBringsTheFilesBack_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<bool>("hasOthers");
        QTest::newRow("corner cases") << QStringLiteral(TEST_DATA_FOLDER "/library") << false;
        QTest::newRow("a small library") << QStringLiteral(TEST_DATA_FOLDER "/observatory") << false;
        QTest::newRow("a small library, other writers") << QStringLiteral(TEST_DATA_FOLDER "/observatory") << true;
        const QString named = qEnvironmentVariable("NODEBROWSER_MATERIALX_FOLDER");
        const QString standard = named.isEmpty() ? QStringLiteral(STANDARD_LIBRARY_FOLDER) : named;
        if (QFileInfo(standard).isDir())
            QTest::newRow("libraries of the standard") << standard << false;
    }

    void whatIsInMemoryIsOnDiskAndUndoBringsTheFilesBack()
    {
        QFETCH(QString, folder);
        QFETCH(bool, hasOthers);
        const unsigned seed = TestSeed(4711);
        Counts counts;
        const int sessions = IsSeedGiven() ? 1 : SessionCount();
        for (int i = 0; i < sessions; ++i)
        {
            Session session(folder, hasOthers, seed + static_cast<unsigned>(i), counts);
            const QString wrong = session.Run(30);
            QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("seed %1: %2").arg(seed + unsigned(i)).arg(wrong)));
        }
        std::printf("%d sessions: %d changes, %d refusals, %d saves, %d undos, %d foreign writes\n", sessions,
                    counts.m_changes, counts.m_refusals, counts.m_saves, counts.m_undos, counts.m_foreign);
        QVERIFY(counts.m_changes > 5 * sessions);
        QVERIFY(counts.m_saves > 2 * sessions);
        QCOMPARE(counts.m_foreign > 0, hasOthers);
    }
};

NODEBROWSER_TEST_MAIN(TestRoundTrips)
#include "test_roundtrips.moc"
