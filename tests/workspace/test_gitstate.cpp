// SPDX-License-Identifier: MIT
// Git's flags as states, access states and words.

#include "datamodel/sourcecontrol.h"
#include "memorymodel/accessstate.h"
#include "memorymodel/datalayer.h"
#include "tests/support/testmain.h"
#include "workspace/gitstate.h"

#include <git2.h>

#include <set>

using namespace workspace;

Q_DECLARE_METATYPE(workspace::eGitState)

class TestGitState : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flagsMakeAState_data()
    {
        QTest::addColumn<unsigned>("flags");
        QTest::addColumn<bool>("mayWrite");
        QTest::addColumn<eGitState>("state");
        const auto row = [](const char* in_name, int in_flags, bool in_mayWrite, eGitState in_state) {
            QTest::newRow(in_name) << unsigned(in_flags) << in_mayWrite << in_state;
        };
        row("current", GIT_STATUS_CURRENT, true, eGitState::eUnchanged);
        row("current, read-only", GIT_STATUS_CURRENT, false, eGitState::eReadOnly);
        row("new in the index", GIT_STATUS_INDEX_NEW, true, eGitState::eStaged);
        row("changed in the index", GIT_STATUS_INDEX_MODIFIED, true, eGitState::eStaged);
        row("renamed in the index", GIT_STATUS_INDEX_RENAMED, true, eGitState::eStaged);
        row("another type in the index", GIT_STATUS_INDEX_TYPECHANGE, true, eGitState::eStaged);
        row("gone from the index", GIT_STATUS_INDEX_DELETED, true, eGitState::eStaged);
        row("gone from the index, and kept", GIT_STATUS_INDEX_DELETED | GIT_STATUS_WT_NEW, true, eGitState::eStaged);
        row("staged, read-only", GIT_STATUS_INDEX_MODIFIED, false, eGitState::eStaged);
        row("changed", GIT_STATUS_WT_MODIFIED, true, eGitState::eChanged);
        row("changed, read-only", GIT_STATUS_WT_MODIFIED, false, eGitState::eChanged);
        row("deleted", GIT_STATUS_WT_DELETED, false, eGitState::eChanged);
        row("another type", GIT_STATUS_WT_TYPECHANGE, true, eGitState::eChanged);
        row("renamed", GIT_STATUS_WT_RENAMED, true, eGitState::eChanged);
        row("unreadable", GIT_STATUS_WT_UNREADABLE, true, eGitState::eChanged);
        row("staged, and changed again", GIT_STATUS_INDEX_MODIFIED | GIT_STATUS_WT_MODIFIED, true, eGitState::eChanged);
        row("untracked", GIT_STATUS_WT_NEW, true, eGitState::eUntracked);
        row("untracked, read-only", GIT_STATUS_WT_NEW, false, eGitState::eUntracked);
        row("ignored", GIT_STATUS_IGNORED, true, eGitState::eIgnored);
        row("ignored, read-only", GIT_STATUS_IGNORED, false, eGitState::eIgnored);
        row("in conflict", GIT_STATUS_CONFLICTED, true, eGitState::eConflicted);
        row("in conflict, and changed", GIT_STATUS_CONFLICTED | GIT_STATUS_WT_MODIFIED, true, eGitState::eConflicted);
    }

    void flagsMakeAState()
    {
        QFETCH(unsigned, flags);
        QFETCH(bool, mayWrite);
        QFETCH(eGitState, state);
        QCOMPARE(int(GitStateOf(flags, mayWrite)), int(state));
    }

    void eachStateHasAnAccessStateABadgeAndWords_data()
    {
        QTest::addColumn<eGitState>("state");
        QTest::addColumn<unsigned>("accessState");
        QTest::addColumn<QByteArray>("words");
        const auto row = [](eGitState in_state, unsigned in_accessState, const char* in_words) {
            QTest::newRow(in_words) << in_state << in_accessState << QByteArray(in_words);
        };
        row(eGitState::eUnchanged, memorymodel::eCheckedIn, "Unchanged");
        row(eGitState::eIgnored, memorymodel::eIgnored, "Ignored");
        row(eGitState::eReadOnly, memorymodel::eReadOnlyFile, "Unchanged, read-only");
        row(eGitState::eUntracked, memorymodel::eAdded, "Untracked");
        row(eGitState::eStaged, memorymodel::eStaged, "Staged");
        row(eGitState::eChanged, memorymodel::eCheckedOut, "Changed");
        row(eGitState::eConflicted, memorymodel::eConflicted, "In conflict");
        row(eGitState::eNone, memorymodel::eWithoutState, "Not saved yet");
    }

    void eachStateHasAnAccessStateABadgeAndWords()
    {
        QFETCH(eGitState, state);
        QFETCH(unsigned, accessState);
        QFETCH(QByteArray, words);
        QCOMPARE(AccessStateOf(state), accessState);
        QCOMPARE(QByteArray(WordsFor(state)), words);
        const memorymodel::DataLayer layer;
        QPixmap icon(20, 20);
        icon.fill(Qt::transparent);
        const QImage decorated = ScsUtils::getAssetStateIcon(icon, accessState, true, true).toImage();
        QCOMPARE(decorated.width(), 27);
        bool isPainted = false;
        for (int y = 0; y < decorated.height(); ++y)
            for (int x = 0; x < decorated.width(); ++x)
                isPainted = isPainted || qAlpha(decorated.pixel(x, y)) != 0;
        QCOMPARE(isPainted, state != eGitState::eNone);
    }

    void theOrderIsThatOfImportance()
    {
        const eGitState states[] = {eGitState::eNone,     eGitState::eUnchanged, eGitState::eIgnored,
                                    eGitState::eReadOnly, eGitState::eUntracked, eGitState::eStaged,
                                    eGitState::eChanged,  eGitState::eConflicted};
        for (std::size_t i = 1; i < std::size(states); ++i)
            QVERIFY(states[i - 1] < states[i]);
    }
};

NODEBROWSER_TEST_MAIN(TestGitState)
#include "test_gitstate.moc"
