// SPDX-License-Identifier: MIT
#include "importers/materialxdocument.h"

#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

namespace importers
{
namespace
{

/// Reads one document. After a fault every loop ends, because the XML reader delivers no further element.
class DocumentReader
{
public:
    DocumentReader(QIODevice& io_device, std::size_t in_document, MaterialXElements& io_elements)
        : m_xml(&io_device), m_document(in_document), m_elements(io_elements)
    {
        // A colon belongs to the name in MaterialX: "studio:blend" is a node, and nothing declares the prefix.
        m_xml.setNamespaceProcessing(false);
    }

    void Read()
    {
        m_xml.readNext();
        m_encoding = m_xml.documentEncoding().toString(); // known only while the reader stands at the declaration
        if (m_xml.readNextStartElement() && !IsElement("materialx"))
            m_xml.raiseError(QStringLiteral("No MaterialX document"));
        while (m_xml.readNextStartElement())
            ReadDeclaration();
        while (!m_xml.atEnd())
            m_xml.readNext();
    }

    const QXmlStreamReader& GetXml() const { return m_xml; }
    /// As declared; empty when nothing is.
    const QString& GetEncoding() const { return m_encoding; }

private:
    // Each of these starts at the opening tag of its element and ends at the closing one.

    void ReadDeclaration()
    {
        if (IsElement("unitdef"))
            ReadUnitDef();
        else if (IsElement("nodegraph"))
            ReadNodeGraph();
        else
        {
            if (IsElement("typedef"))
                AddType();
            else if (IsElement("nodedef"))
                AddNodeDef();
            else if (IsElement("implementation"))
                m_elements.m_implementations.push_back({Attribute("nodedef"), Attribute("nodegraph")});
            m_xml.skipCurrentElement();
        }
    }

    void AddType()
    {
        const QString name = Attribute("name");
        if (!name.isEmpty())
            m_elements.m_types.push_back({name, Attribute("semantic"), m_document});
    }

    void AddNodeDef()
    {
        const QString node = Attribute("node");
        if (!node.isEmpty())
            m_elements.m_nodeDefs.push_back({Attribute("name"), node, Attribute("nodegroup"), m_document});
    }

    void ReadUnitDef()
    {
        const QString unitType = Attribute("unittype");
        while (m_xml.readNextStartElement())
        {
            const QString name = Attribute("name");
            if (IsElement("unit") && !name.isEmpty())
                m_elements.m_units.push_back({name, unitType, m_document});
            m_xml.skipCurrentElement();
        }
    }

    void ReadNodeGraph()
    {
        NodeGraphElement graph = {Attribute("name"), Attribute("nodedef"), {}, m_document};
        while (m_xml.readNextStartElement())
        {
            const QString name = Attribute("name");
            if (!IsGraphInterface() && !name.isEmpty())
                graph.m_nodes.push_back({name, m_xml.qualifiedName().toString()});
            m_xml.skipCurrentElement();
        }
        if (!graph.m_name.isEmpty())
            m_elements.m_nodeGraphs.push_back(std::move(graph));
    }

    /// Whether an element inside a node graph is something else than a node. A node's element is called like what it is
    /// an instance of, so any name may be one.
    bool IsGraphInterface() const
    {
        return IsElement("input") || IsElement("output") || IsElement("parameter") || IsElement("token") ||
               IsElement("backdrop");
    }

    bool IsElement(const char* in_name) const { return m_xml.qualifiedName() == QLatin1String(in_name); }
    QString Attribute(const char* in_name) const { return m_xml.attributes().value(QLatin1String(in_name)).toString(); }

    QXmlStreamReader m_xml;
    QString m_encoding;
    std::size_t m_document;
    MaterialXElements& m_elements;
};

bool IsUTF8(const QByteArray& in_text)
{
    const QByteArray text = ' ' + in_text; // a byte order mark would be dropped at the very start
    return QString::fromUtf8(text).toUtf8() == text;
}

/// The line of the fault that stopped a reader.
///
/// The XML reader decodes block by block. It reports a wrong byte before it has counted the lines of the byte's block,
/// so its own line number is too low then. This looks for the first line with a wrong byte in what the reader took from
/// the file: such a line comes before any other fault in its block.
qint64 FaultLine(const DocumentReader& in_reader, QFile& io_file)
{
    const qint64 taken = io_file.pos();
    io_file.seek(0);
    const QByteArray start = io_file.peek(2);
    const bool isUTF16 = start == "\xFF\xFE" || start == "\xFE\xFF";
    const QString& encoding = in_reader.GetEncoding();
    const bool isDeclaredUTF8 =
        encoding.isEmpty() || encoding.compare(QLatin1String("UTF-8"), Qt::CaseInsensitive) == 0;
    if (isDeclaredUTF8 && !isUTF16)
        for (qint64 line = 1; io_file.pos() < taken; ++line)
            if (!IsUTF8(io_file.readLine()))
                return line;
    return in_reader.GetXml().lineNumber();
}

} // namespace

std::optional<MaterialXError> ReadDocument(const QString& in_file, std::size_t in_document,
                                           MaterialXElements& io_elements)
{
    const QFileInfo info(in_file);
    if (!info.exists())
        return MaterialXError{in_file, 1, QStringLiteral("No such file or folder")};
    if (!info.isFile())
        return MaterialXError{in_file, 1, QStringLiteral("Not a file")}; // reading from a pipe could wait for ever
    QFile file(in_file);
    if (!file.open(QIODevice::ReadOnly))
        return MaterialXError{in_file, 1, file.errorString()};
    DocumentReader reader(file, in_document, io_elements);
    reader.Read();
    const QXmlStreamReader& xml = reader.GetXml();
    if (file.error() != QFileDevice::NoError)
        return MaterialXError{in_file, xml.lineNumber(), file.errorString()};
    if (xml.hasError())
        return MaterialXError{in_file, FaultLine(reader, file), xml.errorString()};
    return std::nullopt;
}

} // namespace importers
