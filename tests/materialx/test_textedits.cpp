// SPDX-License-Identifier: MIT
#include "materialx/textedits.h"

#include "tests/materialx/memorylibrary.h"
#include "tests/support/testmain.h"

#include <functional>

using materialx::Document;
using materialx::Edit;

namespace
{

using MakeEdit = std::function<Edit(const Document&)>;

QByteArray Bytes(const std::string& in_text)
{
    return QByteArray(in_text.data(), static_cast<int>(in_text.size()));
}

/// Makes an edit, takes it back, and gives what the bytes were in between.
QByteArray EditAndUndo(const QByteArray& in_before, const MakeEdit& in_make)
{
    Document document = MakeDocument(in_before.toStdString());
    const Edit edit = in_make(document);
    if (const std::optional<materialx::Fault> fault = document.Apply(edit))
        throw std::runtime_error(fault->m_reason);
    const QByteArray after = Bytes(document.GetBytes());
    if (document.Apply(Inverse(edit)) || Bytes(document.GetBytes()) != in_before)
        throw std::runtime_error("Undoing does not bring back the bytes");
    return after;
}

std::size_t FirstElement(const Document& in_document)
{
    return in_document.GetDeclarations().at(0).m_span.m_begin;
}

} // namespace

/// Edits compared byte by byte. Each is also undone, and then compared with the bytes at the start.
class TextEditsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void attributeIsSet_data();
    void attributeIsSet();
    void attributeIsRemoved_data();
    void attributeIsRemoved();
    void elementsAreAppended_data();
    void elementsAreAppended();
    void firstElementOfADocumentWithoutBytes();
    void elementIsRemoved_data();
    void elementIsRemoved();
    void elementIsCopied_data();
    void elementIsCopied();
};

void TextEditsTest::attributeIsSet_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char* in_name, const QByteArray& in_before, const char* in_value,
                        const QByteArray& in_after) {
        QTest::newRow(in_name) << in_before << QByteArray(in_value) << in_after;
    };
    row("behind the last one", "<materialx><nodedef name=\"a\" node=\"b\"/></materialx>", "U",
        "<materialx><nodedef name=\"a\" node=\"b\" uiname=\"U\"/></materialx>");
    row("space before the end of the tag", "<materialx><nodedef name=\"a\" /></materialx>", "U",
        "<materialx><nodedef name=\"a\" uiname=\"U\" /></materialx>");
    row("element with content", "<materialx><nodedef name=\"a\" ><input/></nodedef></materialx>", "U",
        "<materialx><nodedef name=\"a\" uiname=\"U\" ><input/></nodedef></materialx>");
    row("single quotes", "<materialx><nodedef name='a'/></materialx>", "it's \"U\"",
        "<materialx><nodedef name='a' uiname='it&apos;s \"U\"'/></materialx>");
    row("double quotes", "<materialx><nodedef name=\"a\"/></materialx>", "it's \"U\"",
        "<materialx><nodedef name=\"a\" uiname=\"it's &quot;U&quot;\"/></materialx>");
    row("the quotes of the one in front", "<materialx><nodedef name=\"a\" node='b'/></materialx>", "U",
        "<materialx><nodedef name=\"a\" node='b' uiname='U'/></materialx>");
    row("one attribute a line", "<materialx>\n  <nodedef name=\"a\"\n           node=\"b\"\n  />\n</materialx>", "U",
        "<materialx>\n  <nodedef name=\"a\"\n           node=\"b\"\n           uiname=\"U\"\n  />\n</materialx>");
    row("tabs and CRLF", "<materialx>\r\n\t<nodedef\tname = 'a'\r\n\t\tnode='b'>\r\n\t</nodedef>\r\n</materialx>\r\n",
        "U",
        "<materialx>\r\n\t<nodedef\tname = 'a'\r\n\t\tnode='b'\r\n\t\tuiname='U'>\r\n\t</nodedef>\r\n</materialx>\r\n");
    row("byte order mark, no line end at the end", "\xEF\xBB\xBF<materialx>\n<nodedef name='a'/>\n</materialx>", "U",
        "\xEF\xBB\xBF<materialx>\n<nodedef name='a' uiname='U'/>\n</materialx>");
    row("entities elsewhere", "<materialx><nodedef name='&#228;' doc='&lt;&amp;&gt;&quot;&#x9;>'/></materialx>", "U",
        "<materialx><nodedef name='&#228;' doc='&lt;&amp;&gt;&quot;&#x9;>' uiname='U'/></materialx>");
    row("comments beside the tag",
        "<materialx><!-- <nodedef uiname='no'/> --><nodedef name='a'><!-- uiname='no' --></nodedef></materialx>", "U",
        "<materialx><!-- <nodedef uiname='no'/> --><nodedef name='a' uiname='U'><!-- uiname='no' "
        "--></nodedef></materialx>");
    row("no attributes", "<materialx><nodedef/></materialx>", "U", "<materialx><nodedef uiname=\"U\"/></materialx>");
    row("another value", "<materialx><nodedef uiname = 'old &amp; &#65;'  name='a'/></materialx>", "new & <own>",
        "<materialx><nodedef uiname = 'new &amp; &lt;own>'  name='a'/></materialx>");
    row("an attribute whose name ends alike", "<materialx><nodedef myuiname='a' ui:uiname='b'/></materialx>", "U",
        "<materialx><nodedef myuiname='a' ui:uiname='b' uiname='U'/></materialx>");
    row("the name inside a value", "<materialx><nodedef doc=\"uiname='x'\" uiname='y'/></materialx>", "U",
        "<materialx><nodedef doc=\"uiname='x'\" uiname='U'/></materialx>");
    row("a sign that ends tags inside a value", "<materialx><nodedef doc='a > /> b' name='n'/></materialx>", "U",
        "<materialx><nodedef doc='a > /> b' name='n' uiname='U'/></materialx>");
    row("white space in the value", "<materialx><nodedef name='a'/></materialx>", "a\tb\nc\rd",
        "<materialx><nodedef name='a' uiname='a&#9;b&#10;c&#13;d'/></materialx>");
    row("letters beyond ASCII", "<materialx><nodedef name='a'/></materialx>", "\xE9\x95\xB7\xC3\xA4",
        "<materialx><nodedef name='a' uiname='\xE9\x95\xB7\xC3\xA4'/></materialx>");
}

void TextEditsTest::attributeIsSet()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, after);
    QCOMPARE(EditAndUndo(before,
                         [&](const Document& in_document) {
                             return materialx::SetAttribute(in_document.GetBytes(), FirstElement(in_document), "uiname",
                                                            value.toStdString());
                         }),
             after);
    Document document = MakeDocument(after.toStdString());
    QCOMPARE(Bytes(document.GetDeclarations().at(0).m_uiName), value);
}

void TextEditsTest::attributeIsRemoved_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char* in_name, const char* in_before, const char* in_after) {
        QTest::newRow(in_name) << QByteArray(in_before) << QByteArray(in_after);
    };
    row("last", "<materialx><nodedef name='a' uiname='U' /></materialx>",
        "<materialx><nodedef name='a' /></materialx>");
    row("first", "<materialx><nodedef uiname=\"U\" name='a'/></materialx>",
        "<materialx><nodedef name='a'/></materialx>");
    row("on a line of its own", "<materialx><nodedef name='a'\r\n\tuiname = 'U'\r\n\tnode='b'/></materialx>",
        "<materialx><nodedef name='a'\r\n\tnode='b'/></materialx>");
    row("the only one", "<materialx><nodedef uiname='U'/></materialx>", "<materialx><nodedef/></materialx>");
    row("not there", "<materialx><nodedef name='uiname'/></materialx>",
        "<materialx><nodedef name='uiname'/></materialx>");
}

void TextEditsTest::attributeIsRemoved()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QCOMPARE(EditAndUndo(before,
                         [](const Document& in_document) {
                             return materialx::RemoveAttribute(in_document.GetBytes(), FirstElement(in_document),
                                                               "uiname");
                         }),
             after);
}

void TextEditsTest::elementsAreAppended_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char* in_name, const char* in_before, const char* in_after) {
        QTest::newRow(in_name) << QByteArray(in_before) << QByteArray(in_after);
    };
    row("two spaces", "<materialx>\n  <a/>\n</materialx>\n", "<materialx>\n  <a/>\n  <n/>\n  <m/>\n</materialx>\n");
    row("a tab, CRLF, spaces at the end of tags", "<materialx>\r\n\t<a />\r\n</materialx>\r\n",
        "<materialx>\r\n\t<a />\r\n\t<n />\r\n\t<m />\r\n</materialx>\r\n");
    row("CR alone", "<materialx>\r <a/>\r</materialx>", "<materialx>\r <a/>\r <n/>\r <m/>\r</materialx>");
    row("no indentation", "<materialx>\n<a/>\n</materialx>", "<materialx>\n<a/>\n<n/>\n<m/>\n</materialx>");
    row("empty lines and a comment at the end", "<materialx>\n  <a/>\n\n  <!-- end -->\n\n</materialx>",
        "<materialx>\n  <a/>\n\n  <!-- end -->\n  <n/>\n  <m/>\n\n</materialx>");
    row("all on one line", "<materialx><a/></materialx>", "<materialx><a/>\n  <n/>\n  <m/>\n</materialx>");
    row("end tag behind the last element", "<materialx>\n   <a/> </materialx>",
        "<materialx>\n   <a/> \n   <n/>\n   <m/>\n</materialx>");
    row("no elements", "<?xml version='1.0'?>\r\n<materialx version='1.39'></materialx>",
        "<?xml version='1.0'?>\r\n<materialx version='1.39'>\r\n  <n/>\r\n  <m/>\r\n</materialx>");
    row("empty outermost element", "<materialx version='1.39' />\n<!-- end -->",
        "<materialx version='1.39'>\n  <n />\n  <m />\n</materialx>\n<!-- end -->");
    row("empty outermost element without attributes", "<materialx/>", "<materialx>\n  <n/>\n  <m/>\n</materialx>");
    row("byte order mark", "\xEF\xBB\xBF<materialx>\n\t\t<a/>\n</materialx>",
        "\xEF\xBB\xBF<materialx>\n\t\t<a/>\n\t\t<n/>\n\t\t<m/>\n</materialx>");
}

void TextEditsTest::elementsAreAppended()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QCOMPARE(EditAndUndo(before,
                         [](const Document& in_document) {
                             const materialx::Style style = StyleOf(in_document);
                             return AppendElements(in_document, {style.m_indent + "<n" + style.m_emptyEnd,
                                                                 style.m_indent + "<m" + style.m_emptyEnd});
                         }),
             after);
}

void TextEditsTest::firstElementOfADocumentWithoutBytes()
{
    Document document;
    const Edit edit = AppendElements(document, {"  <n/>"}, "<materialx version=\"1.38\">");
    QVERIFY(!document.Apply(edit));
    QCOMPARE(Bytes(document.GetBytes()),
             QByteArray("<?xml version=\"1.0\"?>\n<materialx version=\"1.38\">\n  <n/>\n</materialx>\n"));
    QCOMPARE(document.GetDeclarations().size(), std::size_t(1));
    QVERIFY(!document.Apply(Inverse(edit)));
    QVERIFY(document.IsEmpty());
    QVERIFY(document.GetDeclarations().empty());
}

void TextEditsTest::elementIsRemoved_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char* in_name, const char* in_before, const char* in_after) {
        QTest::newRow(in_name) << QByteArray(in_before) << QByteArray(in_after);
    };
    row("on lines of its own", "<materialx>\n  <a/>\n  <x>\n  </x>\n  <b/>\n</materialx>",
        "<materialx>\n  <a/>\n  <b/>\n</materialx>");
    row("with the comment right above", "<materialx>\r\n\t<a/>\r\n\r\n\t<!-- x\r\n\t is -->\r\n\t<x/>\r\n</materialx>",
        "<materialx>\r\n\t<a/>\r\n\r\n</materialx>");
    row("only the nearest comment", "<materialx>\n  <!-- all -->\n  <!-- x -->\n  <x/>\n</materialx>",
        "<materialx>\n  <!-- all -->\n</materialx>");
    row("an empty line between", "<materialx>\n  <!-- all -->\n\n  <x/>\n</materialx>",
        "<materialx>\n  <!-- all -->\n\n</materialx>");
    row("a comment on the line of another element", "<materialx>\n  <a/> <!-- a -->\n  <x/>\n</materialx>",
        "<materialx>\n  <a/> <!-- a -->\n</materialx>");
    row("a comment in front of it on its line", "<materialx>\n  <!-- x --> <x/>\n  <b/>\n</materialx>",
        "<materialx>\n  <b/>\n</materialx>");
    row("a comment behind it", "<materialx>\n  <x/> <!-- what -->\n  <b/>\n</materialx>",
        "<materialx>\n   <!-- what -->\n  <b/>\n</materialx>");
    row("all on one line", "<materialx><a/><x><y/></x><b/></materialx>", "<materialx><a/><b/></materialx>");
    row("last on a line with another", "<materialx>\n  <a/> <x/> \n</materialx>", "<materialx>\n  <a/> \n</materialx>");
    row("the only element", "<materialx>\n  <x/>\n</materialx>", "<materialx>\n</materialx>");
    row("text that ends like a comment", "<materialx>\n  <!-- a --> -->\n  <x/>\n</materialx>",
        "<materialx>\n  <!-- a --> -->\n</materialx>");
    row("a comment above the outermost element", "<!-- file -->\n<materialx><x/>\n</materialx>",
        "<!-- file -->\n<materialx>\n</materialx>");
}

void TextEditsTest::elementIsRemoved()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QCOMPARE(EditAndUndo(before,
                         [](const Document& in_document) {
                             // The element is the one whose name is "x".
                             for (const materialx::Declaration& declaration : in_document.GetDeclarations())
                                 if (in_document.GetBytes()[declaration.m_span.m_begin + 1] == 'x')
                                     return RemoveElement(in_document, declaration.m_span);
                             return Edit();
                         }),
             after);
}

void TextEditsTest::elementIsCopied_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("copy");
    QTest::newRow("element alone") << QByteArray("<materialx><x a='1'/></materialx>") << QByteArray("\t<x a='1'/>");
    QTest::newRow("line ends and comment")
        << QByteArray("<materialx>\n  <!-- two\n  lines -->\n  <x>\n    <y/>\n  </x>\n</materialx>")
        << QByteArray("\t<!-- two\r\n  lines -->\r\n\t<x>\r\n    <y/>\r\n  </x>");
    QTest::newRow("CRLF stays") << QByteArray("<materialx>\r\n<x>\r\n</x></materialx>") << QByteArray("\t<x>\r\n</x>");
}

void TextEditsTest::elementIsCopied()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, copy);
    const Document document = MakeDocument(before.toStdString());
    materialx::Style style;
    style.m_lineEnd = "\r\n";
    style.m_indent = "\t";
    QCOMPARE(Bytes(CopyElement(document, document.GetDeclarations().at(0).m_span, style)), copy);
}

NODEBROWSER_TEST_MAIN(TextEditsTest)
#include "test_textedits.moc"
