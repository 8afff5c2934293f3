// SPDX-License-Identifier: MIT
#include "materialx/description.h"

#include "tests/materialx/memorylibrary.h"
#include "tests/support/costs.h"
#include "tests/support/testmain.h"

#include <memory>

using materialx::Description;
using materialx::DeclarationIndex;
using materialx::Item;
using materialx::Library;
using materialx::Port;

namespace
{

/// Each port as "name type=value".
QStringList TextsOf(const std::vector<Port>& in_ports)
{
    QStringList texts;
    for (const Port& port : in_ports)
        texts << QString::fromStdString(port.m_name + ' ' + port.m_type + '=' + port.m_value);
    return texts;
}

QStringList Words(const char* in_words)
{
    return QString::fromUtf8(in_words).split(QLatin1Char('|'), Qt::SkipEmptyParts);
}

/// The definitions with a "node" value, as indices into the only document.
std::vector<DeclarationIndex> DefinitionsOf(const Library& in_library, const char* in_node)
{
    std::vector<DeclarationIndex> found;
    const auto& all = in_library.m_documents[0].m_document.GetDeclarations();
    for (std::size_t i = 0; i < all.size(); ++i)
        if (all[i].m_node == in_node)
            found.push_back({0, i});
    return found;
}

Description DescribeAlone(const Library& in_library, const char* in_name)
{
    const Item item = FindItem(in_library, in_name);
    return Describe(in_library, item, {item.m_declaration});
}

const std::string gForest =
    "<materialx version=\"1.39\">\n"
    "  <!-- Trees. -->\n"
    "  <nodedef name=\"ND_leaf\" node=\"leaf\" nodegroup=\"plants\" uiname=\"L\xc4\x93\x61\x66\"\n"
    "           doc=\"Falls &amp; grows &lt;again&gt;\">\n"
    "    <input name=\"green\" type=\"color3\" value=\"0, 1, 0\" doc=\"not this one\"/>\n"
    "    <input name=\"size\" type=\"float\"/>\n"
    "    <output name=\"out\" type=\"color3\" value=\"no value of an output\"/>\n"
    "    <uiparameter name=\"other\" type=\"none\"/>\n"
    "  </nodedef>\n"
    "  <nodegraph name=\"NG_free\" doc=\"Free\">\n"
    "    <input name=\"wind\" type=\"vector3\"/>\n"
    "    <leaf name=\"one\" type=\"color3\" doc=\"The first\"/>\n"
    "    <output name=\"shade\" type=\"color3\" nodename=\"one\"/>\n"
    "  </nodegraph>\n"
    "  <typedef name=\"bark\" semantic=\"surface\" doc=\"Rough\"/>\n"
    "  <unitdef name=\"U\" unittype=\"height\" doc=\"not this one\">\n"
    "    <unit name=\"trunk\" doc=\"As high as a trunk\"/>\n"
    "  </unitdef>\n"
    "</materialx>\n";

} // namespace

class TestDescription : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDefinitionSaysAllOfIt()
    {
        const Description leaf = DescribeAlone(MakeLibrary({{"wood/trees.mtlx", gForest}}), "leaf");
        QCOMPARE(QString::fromStdString(leaf.m_name), QString::fromUtf8("L\xc4\x93\x61\x66"));
        QCOMPARE(leaf.m_doc, std::string("Falls & grows <again>"));
        QCOMPARE(leaf.m_group, std::string("plants"));
        QCOMPARE(leaf.m_tags, (std::vector<std::string>{"plants", "wood"}));
        QCOMPARE(TextsOf(leaf.m_inputs), Words("green color3=0, 1, 0|size float="));
        QCOMPARE(TextsOf(leaf.m_outputs), Words("out color3="));
        QCOMPARE(leaf.m_definitions, std::size_t(1));
        QCOMPARE(leaf.m_document, QStringLiteral("wood/trees.mtlx"));
        QCOMPARE(leaf.m_line, std::size_t(3));
    }

    void otherItemsSayWhatTheyHave_data()
    {
        QTest::addColumn<QString>("doc");
        QTest::addColumn<QString>("group");
        QTest::addColumn<QString>("inputs");
        QTest::addColumn<QString>("outputs");
        QTest::addColumn<int>("line");
        QTest::newRow("NG_free") << "Free" << "" << "wind vector3=" << "shade color3=" << 10;
        QTest::newRow("bark") << "Rough" << "surface" << "" << "" << 15;
        QTest::newRow("trunk") << "As high as a trunk" << "height" << "" << "" << 16;
    }

    void otherItemsSayWhatTheyHave()
    {
        QFETCH(QString, doc);
        QFETCH(QString, group);
        QFETCH(QString, inputs);
        QFETCH(QString, outputs);
        QFETCH(int, line);
        const Description found = DescribeAlone(MakeLibrary({{"trees.mtlx", gForest}}), QTest::currentDataTag());
        QCOMPARE(QString::fromStdString(found.m_doc), doc);
        QCOMPARE(QString::fromStdString(found.m_group), group);
        QCOMPARE(TextsOf(found.m_inputs).join(QLatin1Char('|')), inputs);
        QCOMPARE(TextsOf(found.m_outputs).join(QLatin1Char('|')), outputs);
        QCOMPARE(static_cast<int>(found.m_line), line);
    }

    void aNodeInsideAGraphHasItsOwnDoc()
    {
        const Library library = MakeLibrary({{"trees.mtlx", gForest}});
        for (const Item& item : materialx::MakeItems(library))
            if (item.m_parent == "NG_free")
            {
                const Description found = Describe(library, item, {item.m_declaration});
                QCOMPARE(found.m_doc, std::string("The first"));
                QVERIFY(found.m_inputs.empty() && found.m_outputs.empty());
                return;
            }
        QFAIL("no node inside the graph");
    }

    void severalDefinitionsAreOneInterface()
    {
        const Library library =
            MakeLibrary({{"a.mtlx", "<materialx>"
                                    "<nodedef name='A' node='mix'><input name='in' type='float' value='0'/>"
                                    "<input name='amount' type='float' value='0.5'/><output name='out' type='float'/>"
                                    "</nodedef>"
                                    "<nodedef name='B' node='mix'><input name='in' type='color3' value='0, 0, 0'/>"
                                    "<input name='amount' type='float' value='0.5'/><output name='out' type='color3'/>"
                                    "</nodedef>"
                                    "<nodedef name='C' node='mix'><input name='in' type='float' value='0'/>"
                                    "<input name='mask' type='float'/><output name='out' type='float'/></nodedef>"
                                    "</materialx>"}});
        const Description mix = Describe(library, FindItem(library, "mix"), DefinitionsOf(library, "mix"));
        QCOMPARE(TextsOf(mix.m_inputs), Words("in float, color3=|amount float=0.5|mask float="));
        QCOMPARE(TextsOf(mix.m_outputs), Words("out float, color3="));
        QCOMPARE(mix.m_definitions, std::size_t(3));
    }

    void whatIsInheritedComesFirstAndIsReplaced()
    {
        const Library library = MakeLibrary(
            {{"a.mtlx", "<materialx>"
                        "<nodedef name='New' node='paint' inherit='Old'><input name='gloss' type='float' value='9'/>"
                        "<input name='coat' type='float'/></nodedef></materialx>"},
             {"b.mtlx", "<materialx><nodedef name='Old' node='oldpaint'>"
                        "<input name='base' type='color3'/><input name='gloss' type='float' value='1'/>"
                        "<output name='out' type='surface'/></nodedef></materialx>"}});
        const Description paint = DescribeAlone(library, "paint");
        QCOMPARE(TextsOf(paint.m_inputs), Words("base color3=|gloss float=9|coat float="));
        QCOMPARE(TextsOf(paint.m_outputs), Words("out surface="));
    }

    void definitionsThatInheritInACircleEnd()
    {
        const Library library =
            MakeLibrary({{"a.mtlx", "<materialx><nodedef name='A' node='a' inherit='B'><input name='one' type='t'/>"
                                    "</nodedef><nodedef name='B' node='b' inherit='A'><input name='two' type='t'/>"
                                    "</nodedef></materialx>"}});
        QStringList inputs = TextsOf(DescribeAlone(library, "a").m_inputs);
        inputs.sort();
        QCOMPARE(inputs, Words("one t=|two t="));
    }

    void manyDefinitionsThatInherit_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("from one") << QByteArray("<nodedef name='%' node='n' inherit='base'/>");
        QTest::newRow("types") << QByteArray("<nodedef name='%' node='n'><input name='in' type='long_type_%'/>"
                                             "</nodedef>");
    }

    void manyDefinitionsThatInherit()
    {
        QFETCH(QByteArray, line);
        const double growth = GrowthOf(
            [&line](int in_size) {
                QByteArray text = "<materialx>";
                for (int i = 0; i < in_size; ++i)
                    text += QByteArray(line).replace('%', QByteArray::number(i));
                text += "<nodedef name='base' node='b'/></materialx>";
                auto library = std::make_shared<Library>(MakeLibrary({{"a.mtlx", text.toStdString()}}));
                return [library, item = FindItem(*library, "n"), all = DefinitionsOf(*library, "n")] {
                    if (Describe(*library, item, all).m_definitions != all.size())
                        throw std::runtime_error("These are not the definitions");
                };
            },
            4000);
        QVERIFY2(growth < gMostGrowth, qPrintable(QString::number(growth)));
    }

    void documentsInOtherEncodingsAreDescribed()
    {
        const std::string latin =
            "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<materialx>\n"
            "<nodedef name='N' node='caf\xe9' doc='\xe9'><input name='\xe9' type='t'/></nodedef>\n"
            "</materialx>";
        const Description found = DescribeAlone(MakeLibrary({{"a.mtlx", latin}}), "caf\xc3\xa9");
        QCOMPARE(found.m_doc, std::string("\xc3\xa9"));
        QCOMPARE(TextsOf(found.m_inputs), Words("\xc3\xa9 t="));
        QCOMPARE(found.m_line, std::size_t(3));
    }
};

NODEBROWSER_TEST_MAIN(TestDescription)
#include "test_description.moc"
