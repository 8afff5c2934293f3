// SPDX-License-Identifier: MIT
// What a workspace tells about an item, and that it follows changes.

#include "tests/support/testmain.h"
#include "tests/workspace/openedfolder.h"

using materialx::Description;

namespace
{

std::string NamesOf(const std::vector<materialx::Port>& in_ports)
{
    std::string names;
    for (const materialx::Port& port : in_ports)
        names += port.m_name + ':' + port.m_type + ' ';
    return names;
}

const QByteArray gColours = "<materialx version=\"1.39\">\n"
                            "  <nodedef name=\"ND_red\" node=\"red\" doc=\"Warm\">\n"
                            "    <output name=\"out\" type=\"color3\"/>\n"
                            "  </nodedef>\n"
                            "  <nodedef name=\"ND_mix_a\" node=\"mix\"><input name=\"fg\" type=\"float\"/></nodedef>\n"
                            "  <nodedef name=\"ND_blue\" node=\"blue\"/>\n"
                            "</materialx>\n";
const QByteArray gMore = "<materialx version=\"1.39\">\n"
                         "  <nodedef name=\"ND_mix_b\" node=\"mix\"><input name=\"fg\" type=\"color3\"/>"
                         "<input name=\"bg\" type=\"color3\"/></nodedef>\n"
                         "</materialx>\n";

} // namespace

class TestDescribing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachItemIsDescribed()
    {
        const DocumentFolder folder;
        folder.Write(QStringLiteral("paint/colours.mtlx"), gColours);
        folder.Write(QStringLiteral("paint/more.mtlx"), gMore);
        Opened opened(folder.GetPath());
        const auto red = opened.GetWorkspace().Describe(opened.Find("red"));
        QVERIFY(red);
        QCOMPARE(red->m_doc, std::string("Warm"));
        QCOMPARE(red->m_document, QStringLiteral("paint/colours.mtlx"));
        QCOMPARE(red->m_line, std::size_t(2));
        QCOMPARE(NamesOf(red->m_outputs), std::string("out:color3 "));

        const auto mix = opened.GetWorkspace().Describe(opened.Find("mix"));
        QVERIFY(mix);
        QCOMPARE(mix->m_definitions, std::size_t(2));
        QCOMPARE(NamesOf(mix->m_inputs), std::string("fg:float, color3 bg:color3 "));
        // One of the definitions alone.
        const auto special = opened.GetWorkspace().Describe(opened.Find("ND_mix_b"));
        QVERIFY(special);
        QCOMPARE(NamesOf(special->m_inputs), std::string("fg:color3 bg:color3 "));
    }

    void whatIsNotThereIsNotDescribed()
    {
        const DocumentFolder folder;
        folder.Write(QStringLiteral("colours.mtlx"), gColours);
        Opened opened(folder.GetPath());
        QVERIFY(!opened.GetWorkspace().Describe(vireo::datamodel::ItemID()));
        const auto red = opened.Find("red");
        QVERIFY(opened.GetWorkspace().Describe(red));
        opened.GetLayer().RemoveLibrary(opened.GetLibrary());
        QVERIFY(!opened.GetWorkspace().Describe(red));
    }

    void changesAreDescribed()
    {
        const DocumentFolder folder;
        folder.Write(QStringLiteral("paint/colours.mtlx"), gColours);
        Opened opened(folder.GetPath());
        const auto red = opened.Find("red");
        QVERIFY(opened.GetLibrary().Rename(red, "Crimson", opened.GetCommands()));
        QCOMPARE(opened.GetWorkspace().Describe(red)->m_name, std::string("Crimson"));
        opened.GetStack().undo();
        QCOMPARE(opened.GetWorkspace().Describe(red)->m_name, std::string("red"));

        QByteArray changed = gColours;
        changed.replace("\n  <nodedef name=\"ND_red\"", "\n\n\n  <nodedef name=\"ND_red\"").replace("Warm", "Hot");
        folder.Write(QStringLiteral("paint/colours.mtlx"), changed);
        opened.GetWorkspace().Refresh();
        QCOMPARE(opened.GetWorkspace().Describe(red)->m_doc, std::string("Hot"));
        QCOMPARE(opened.GetWorkspace().Describe(red)->m_line, std::size_t(4));
    }

    void theStoreOfTheLibraryIsTheWorkspace()
    {
        const DocumentFolder folder;
        folder.Write(QStringLiteral("colours.mtlx"), gColours);
        Opened opened(folder.GetPath());
        QVERIFY(opened.GetLibrary().GetStore().get() == &opened.GetWorkspace());
        opened.GetLibrary().Close();
        QVERIFY(!opened.GetLibrary().GetStore());
    }
};

NODEBROWSER_TEST_MAIN(TestDescribing)
#include "test_describing.moc"
