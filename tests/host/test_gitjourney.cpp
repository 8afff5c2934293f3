// SPDX-License-Identifier: MIT
#include "datamodel/helpers.h"
#include "host/graphcanvas.h"
#include "host/recentlibraries.h"
#include "host/samplelibrary.h"
#include "qtcompat/latin1.h"
#include "tests/host/windowjourney.h"
#include "tests/support/testmain.h"
#include "tests/workspace/gitfolder.h"
#include "workspace/versions.h"
#include "workspace/workspace.h"

#include <QComboBox>
#include <QDirIterator>
#include <QPushButton>

using workspace::eGitState;

namespace
{

/// The lines that differ from the last commit, each document's below its path.
QString DifferenceIn(const GitFolder& in_folder)
{
    QStringList lines;
    for (const QByteArray& line : in_folder.Git("diff --unified=0 --no-color").split('\n'))
        if (line.startsWith("+++ b/"))
            lines << QString::fromUtf8(line.mid(6));
        else if ((line.startsWith('+') || line.startsWith('-')) && !line.startsWith("---"))
            lines << QString::fromUtf8(line);
    return lines.join(QLatin1Char('\n'));
}

QString StatusOf(const GitFolder& in_folder)
{
    return QString::fromUtf8(in_folder.Git("status --porcelain")).trimmed();
}

// What renaming, tagging and moving are meant to change.
const char* const gMeant =
    "glass/glass.mtlx\n"
    "-  <nodedef name=\"ND_lens\" node=\"lens\" nodegroup=\"optics\" doc=\"Bends light towards a point.\">\n"
    "+  <nodedef name=\"ND_lens\" node=\"lens\" nodegroup=\"optics\" doc=\"Bends light towards a point.\" "
    "uiname=\"eye glass\" tags=\"Compound;round\">\n"
    "+  <attributedef name=\"AD_tags\" attrname=\"tags\" type=\"string\" value=\"\" elements=\"nodedef,nodegraph\"/>\n"
    "+  <nodegraph name=\"milky_way\">\n"
    "+    <night_sky name=\"backdrop_sky\" type=\"color3\"/>\n"
    "+    <twinkle name=\"flicker\" type=\"float\"/>\n"
    "+    <dust name=\"haze\" type=\"color3\"/>\n"
    "+    <output name=\"out\" type=\"color3\" nodename=\"haze\"/>\n"
    "+  </nodegraph>\n"
    "sky/graphs.mtlx\n"
    "-  <nodegraph name=\"milky_way\">\n"
    "-    <night_sky name=\"backdrop_sky\" type=\"color3\"/>\n"
    "-    <twinkle name=\"flicker\" type=\"float\"/>\n"
    "-    <dust name=\"haze\" type=\"color3\"/>\n"
    "-    <output name=\"out\" type=\"color3\" nodename=\"haze\"/>\n"
    "-  </nodegraph>";

} // namespace

/// A person's day at a library of documents that is in a repository, with git beside.
class TestGitJourney : public WindowJourney
{
    Q_OBJECT

private Q_SLOTS:
    void aDayInARepository();

private:
    void AddOpening();
    void AddRename();
    void AddTags();
    void AddMove();
    void AddCreation();
    void AddSave();
    void AddUndo();
    void AddCommit();

    /// Searches for an item that nothing else is found with, selects it, and needs the state that git has of it.
    void LookAtBadge(const QString& in_search, const QString& in_name, eGitState in_state, Journey::Check in_check)
    {
        SearchFor(in_search, {in_name});
        Step(
            QStringLiteral("look at the badge of ") + in_name, [this] { return ClickAt(Row(0)); },
            [this, in_state, in_check] {
                const vireo::datamodel::ItemID selected = m_window->GetBrowser().GetSelection();
                if (!selected.IsValid() || Versions().GetDocuments(selected).front().m_state != in_state)
                    return Needs(false, workspace::WordsFor(in_state));
                return in_check();
            });
    }

    workspace::Versions& Versions() const { return m_window->GetWorkspace()->GetVersions(); }
    int CountSteps() { return m_layer.GetCommandManager().GetStack().index(); }
    QWidget* Canvas() const { return m_window->findChild<host::GraphCanvas*>(); }

    /// The badge of the first row.
    QImage Badge() const
    {
        const int left = 2;
        const int width = 7;
        return m_window->GetBrowser().grab(QRect(left, gListTop, width, gRowHeight)).toImage();
    }

    const GitFolder m_folder;
    QImage m_unchanged; ///< the badge of a document that is as in the last commit
};

void TestGitJourney::AddOpening()
{
    Step(
        QStringLiteral("the window opens"), [] { return QStringList(QStringLiteral("get_num_desktops")); },
        [this] { return Needs(m_window->isActiveWindow(), "the active window"); });
    OpenInMenuBar(QStringLiteral("&File"), QStringLiteral("&Quit"));
    Step(
        QStringLiteral("open the recent libraries"),
        [] {
            QMenu* const menu = OpenPopup();
            for (QAction* const entry : menu->actions())
                if (qobject_cast<host::RecentMenu*>(entry->menu()))
                    return ClickAt(menu->mapToGlobal(menu->actionGeometry(entry).center()));
            return QStringList();
        },
        [] { return Needs(qobject_cast<host::RecentMenu*>(OpenPopup()), "the recent libraries"); });
    Step(
        QStringLiteral("open the library"),
        [] { return ClickAt(CentreOfEntry(OpenPopup()->actions().first()->text())); },
        [this] {
            return Both(Needs(!OpenPopup() && m_window->GetWorkspace(), "the library"),
                        Same(m_window->GetWorkspace() ? Rows().join(QLatin1Char('|')) : QString(),
                             QStringLiteral("add|checkerboard|kaleidoscope|lens|milky_way|mix|night_sky|noise2d|"
                                            "twinkle")));
        });
    LookAtBadge(QStringLiteral("lens"), QStringLiteral("lens"), eGitState::eUnchanged, [this] {
        m_unchanged = Badge();
        return QString();
    });
}

void TestGitJourney::AddRename()
{
    ChooseInContextMenu(QStringLiteral("Rename lens"),
                        [] { return Needs(InDialog<QLineEdit>() && InDialog<QLineEdit>()->hasFocus(), "the dialog"); });
    Step(
        QStringLiteral("type a name"), [] { return TypeText(QStringLiteral("eye glass")); },
        [] { return Same(InDialog<QLineEdit>()->text(), QStringLiteral("eye glass")); });
    Step(
        QStringLiteral("Enter renames"), [] { return PressKeys({QStringLiteral("Return")}); },
        [this] {
            return Needs(!QApplication::activeModalWidget() && CountSteps() == 1 &&
                             m_window->GetLibrary().FindByName("eye glass").IsValid(),
                         "the new name");
        });
}

void TestGitJourney::AddTags()
{
    SearchFor(QStringLiteral("eye"), {QStringLiteral("eye glass")});
    ChooseInContextMenu(QStringLiteral("Edit Tags for eye glass"),
                        [] { return Needs(InDialog<QLineEdit>(), "the dialog"); });
    Step(
        QStringLiteral("go to the tags"), [] { return ClickAt(CentreOf(*InDialog<QLineEdit>())); },
        [] { return Needs(InDialog<QLineEdit>()->hasFocus(), "the focus in the tags"); });
    Step(
        QStringLiteral("type tags"),
        [] { return PressKeys({QStringLiteral("ctrl+a")}) + TypeText(QStringLiteral("Compound;round")); },
        [] { return Same(InDialog<QLineEdit>()->text(), QStringLiteral("Compound;round")); });
    Step(
        QStringLiteral("Enter sets the tags"), [] { return PressKeys({QStringLiteral("Return")}); },
        [this] { return Needs(!QApplication::activeModalWidget() && CountSteps() == 2, "the new tags"); });
}

void TestGitJourney::AddMove()
{
    SearchFor(QStringLiteral("milky"), {QStringLiteral("milky_way")});
    ChooseInContextMenu(QStringLiteral("Compound source"),
                        [] { return Needs(EntryInFront(QStringLiteral("glass")), "the sources"); });
    Step(
        QStringLiteral("move to glass"), [] { return ClickAt(CentreOfEntry(QStringLiteral("glass"))); },
        [this] { return Needs(!OpenPopup() && CountSteps() == 3, "the move"); });
}

void TestGitJourney::AddCreation()
{
    OpenInMenuBar(QStringLiteral("&Library"), QStringLiteral("&New"));
    Step(
        QStringLiteral("open its submenu"), [] { return ClickAt(CentreOfEntry(QStringLiteral("&New"))); },
        [] { return Needs(EntryInFront(QStringLiteral("Public compound")), "the submenu"); });
    Step(
        QStringLiteral("new compound"), [] { return ClickAt(CentreOfEntry(QStringLiteral("Public compound"))); },
        [] { return Needs(InDialog<QComboBox>(), "the dialog"); });
    Step(
        QStringLiteral("go to its name"), [] { return ClickAt(CentreOf(*InDialog<QLineEdit>())); },
        [] { return Needs(InDialog<QLineEdit>()->hasFocus(), "the focus in the name"); });
    Step(
        QStringLiteral("type its name"),
        [] { return PressKeys({QStringLiteral("ctrl+a")}) + TypeText(QStringLiteral("prism")); },
        [] { return Same(InDialog<QLineEdit>()->text(), QStringLiteral("prism")); });
    Step(
        QStringLiteral("confirm"),
        [] {
            for (const QPushButton* const button : QApplication::activeModalWidget()->findChildren<QPushButton*>())
                if (button->text() == QStringLiteral("Ok"))
                    return ClickAt(CentreOf(*button));
            return QStringList();
        },
        [this] {
            return Needs(!QApplication::activeModalWidget() && CountSteps() == 4 &&
                             m_window->GetLibrary().FindByName("prism").IsValid(),
                         "the new compound");
        });
}

void TestGitJourney::AddSave()
{
    Step(
        QStringLiteral("save"), [] { return PressKeys({QStringLiteral("ctrl+s")}); },
        [this] {
            return Same(m_window->statusBar()->currentMessage(),
                        QStringLiteral("Saved 3 documents: glass/glass.mtlx, local/local.mtlx, sky/graphs.mtlx"));
        });
    LookAtBadge(QStringLiteral("eye"), QStringLiteral("eye glass"), eGitState::eChanged, [this] {
        return Both(
            Needs(Badge() != m_unchanged, "another badge"),
            Both(Same(DifferenceIn(m_folder), QString::fromLatin1(gMeant)),
                 Same(StatusOf(m_folder), QStringLiteral("M glass/glass.mtlx\n M sky/graphs.mtlx\n?? local/"))));
    });
}

void TestGitJourney::AddUndo()
{
    Step(
        QStringLiteral("leave the search field"), [this] { return ClickAt(CentreOf(*Canvas())); },
        [this] { return Needs(Canvas()->hasFocus(), "the focus"); });
    for (int steps = 3; steps >= 0; --steps)
        Step(
            QStringLiteral("undo down to %1").arg(steps), [] { return PressKeys({QStringLiteral("ctrl+z")}); },
            [this, steps] { return Needs(CountSteps() == steps, "one step less"); });
    Step(
        QStringLiteral("save what was undone"), [] { return PressKeys({QStringLiteral("ctrl+s")}); },
        [this] {
            return Both(Same(m_window->statusBar()->currentMessage(),
                             QStringLiteral("Saved 3 documents: glass/glass.mtlx, local/local.mtlx, sky/graphs.mtlx")),
                        Same(StatusOf(m_folder), QString()));
        });
    LookAtBadge(QStringLiteral("lens"), QStringLiteral("lens"), eGitState::eUnchanged,
                [this] { return Needs(Badge() == m_unchanged, "the first badge"); });
}

void TestGitJourney::AddCommit()
{
    Step(
        QStringLiteral("leave the search field again"), [this] { return ClickAt(CentreOf(*Canvas())); },
        [this] { return Needs(Canvas()->hasFocus(), "the focus"); });
    Step(
        QStringLiteral("redo the name"), [] { return PressKeys({QStringLiteral("ctrl+shift+z")}); },
        [this] { return Needs(CountSteps() == 1, "the step"); });
    Step(
        QStringLiteral("save the name"), [] { return PressKeys({QStringLiteral("ctrl+s")}); },
        [this] {
            return Same(m_window->statusBar()->currentMessage(), QStringLiteral("Saved 1 document: glass/glass.mtlx"));
        });
    LookAtBadge(QStringLiteral("eye"), QStringLiteral("eye glass"), eGitState::eChanged,
                [this] { return Needs(Badge() != m_unchanged, "another badge"); });
    Step(
        QStringLiteral("commit from outside"),
        [this] {
            m_folder.Commit("Second");
            return QStringList(QStringLiteral("get_num_desktops"));
        },
        [this] { return Needs(Badge() == m_unchanged, "the badge of what is committed"); });
    Step(
        QStringLiteral("leave"), [] { return PressKeys({QStringLiteral("ctrl+q")}); },
        [this] { return Needs(!m_window->isVisible(), "the end, without a question"); });
}

void TestGitJourney::aDayInARepository()
{
    const QDir observatory(QStringLiteral(OBSERVATORY_FOLDER));
    QDirIterator files(observatory.path(), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
    {
        QFile file(files.next());
        QVERIFY(file.open(QIODevice::ReadOnly));
        m_folder.GetDocuments().Write(observatory.relativeFilePath(file.fileName()), file.readAll());
    }
    m_folder.Commit();
    host::AddRecentLibrary(m_folder.GetPath());
    const QString fault = Begin(QStringLiteral(JOURNEY_FOLDER));
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
    ShowWindow(host::AddSampleLibrary(m_layer));

    AddOpening();
    AddRename();
    AddTags();
    AddMove();
    AddCreation();
    AddSave();
    AddUndo();
    AddCommit();
    const QString missing = m_journey->Run();
    QVERIFY2(missing.isEmpty(), qPrintable(missing));
    m_window.reset();
}

NODEBROWSER_TEST_MAIN(TestGitJourney)
#include "test_gitjourney.moc"
