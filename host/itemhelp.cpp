// SPDX-License-Identifier: MIT
#include "host/itemhelp.h"

#include "datamodel/helpers.h"
#include "datamodel/itemlibrary.h"
#include "host/findworkspace.h"
#include "host/itemlabel.h"
#include "memorymodel/library.h"
#include "qtcompat/latin1.h"
#include "workspace/workspace.h"

#include <QCoreApplication>

using qtcompat::FromLatin1;
using vireo::datamodel::ItemID;

namespace host
{

namespace
{

const int gShortDoc = 200;  // characters
const int gShortPorts = 6;  // names
const int gShortValue = 40; // characters
const QLatin1String gBreak("<br/>");

class Words
{
    Q_DECLARE_TR_FUNCTIONS(host::ItemHelp)
};

QString FromUtf8(const std::string& in_text)
{
    return QString::fromStdString(in_text);
}

QStringList TagsOf(const memorymodel::Library& in_library, const ItemID& in_item)
{
    const std::string tags = in_library.GetAccessor().GetItemTags(in_item, vireo::datamodel::gApplicationTagsKey);
    return tags.empty() ? QStringList() : FromLatin1(tags).split(QLatin1Char(';'));
}

std::vector<ItemPort> PortsOf(const std::vector<materialx::Port>& in_ports)
{
    std::vector<ItemPort> ports;
    ports.reserve(in_ports.size());
    for (const materialx::Port& port : in_ports)
        ports.push_back({FromUtf8(port.m_name), FromUtf8(port.m_type), FromUtf8(port.m_value)});
    return ports;
}

void TakeDescription(const materialx::Description& in_description, ItemHelp& io_help)
{
    io_help.m_name = FromUtf8(in_description.m_name);
    io_help.m_tags.clear();
    for (const std::string& tag : in_description.m_tags)
        io_help.m_tags << FromUtf8(tag);
    io_help.m_doc = FromUtf8(in_description.m_doc);
    io_help.m_group = FromUtf8(in_description.m_group);
    io_help.m_inputs = PortsOf(in_description.m_inputs);
    io_help.m_outputs = PortsOf(in_description.m_outputs);
    io_help.m_definitions = static_cast<int>(in_description.m_definitions);
    io_help.m_document = in_description.m_document;
    io_help.m_line = static_cast<int>(in_description.m_line);
}

QString Shorten(const QString& in_text, int in_length)
{
    return in_text.size() <= in_length ? in_text : in_text.left(in_length - 1) + QChar(0x2026);
}

QString Escape(const QString& in_text)
{
    return in_text.toHtmlEscaped();
}

QString Paragraph(const QString& in_html)
{
    return QStringLiteral("<p>%1</p>").arg(in_html);
}

/// "Tags: a, b", or nothing without a text.
QString Fact(const QString& in_word, const QString& in_text)
{
    return in_text.isEmpty() ? QString() : QStringLiteral("%1: %2").arg(Escape(in_word), Escape(in_text)) + gBreak;
}

QString WithoutLastBreak(const QString& in_lines)
{
    return in_lines.left(in_lines.size() - gBreak.size());
}

QString PlaceOf(const ItemHelp& in_help)
{
    return in_help.m_document.isEmpty()
               ? QString()
               : Words::tr("%1, line %2").arg(in_help.m_document, QString::number(in_help.m_line));
}

QString NamesOf(const std::vector<ItemPort>& in_ports)
{
    QStringList names;
    for (const ItemPort& port : in_ports)
        if (names.size() < gShortPorts)
            names << port.m_name;
    const int hidden = static_cast<int>(in_ports.size()) - gShortPorts;
    if (hidden > 0)
        names << Words::tr("%n more", nullptr, hidden);
    return names.join(QStringLiteral(", "));
}

QString Table(const QString& in_title, const std::vector<ItemPort>& in_ports)
{
    if (in_ports.empty())
        return QString();
    QString rows;
    for (const ItemPort& port : in_ports)
        rows += QStringLiteral("<tr><td><b>%1</b>&nbsp;&nbsp;</td><td>%2&nbsp;&nbsp;</td><td>%3</td></tr>")
                    .arg(Escape(port.m_name), Escape(port.m_type), Escape(Shorten(port.m_value, gShortValue)));
    return QStringLiteral("<p>%1</p><table cellspacing=\"0\" cellpadding=\"1\">%2</table>").arg(Escape(in_title), rows);
}

} // namespace

ItemHelp GetItemHelp(const memorymodel::Library& in_library, const ItemID& in_item)
{
    ItemHelp help;
    const memorymodel::DataSource* const source = in_library.GetSourceOf(in_item);
    if (!source)
        return help;
    const ItemLabel& label = GetItemLabel(in_library, in_item);
    help.m_name = GetItemName(in_library, in_item);
    help.m_kind = Words::tr(label.m_text);
    help.m_icon = QLatin1String(label.m_icon);
    help.m_source = FromLatin1(source->GetName());
    help.m_tags = TagsOf(in_library, in_item);
    help.m_group = FromLatin1(in_library.GetCategory(in_item));
    const std::shared_ptr<workspace::Workspace> workspace = FindWorkspace(in_library);
    if (const auto description = workspace ? workspace->Describe(in_item) : std::nullopt)
        TakeDescription(*description, help);
    return help;
}

QString GetFullName(const memorymodel::Library& in_library, const ItemID& in_item)
{
    const std::shared_ptr<workspace::Workspace> workspace = FindWorkspace(in_library);
    const auto description = workspace ? workspace->Describe(in_item) : std::nullopt;
    return description ? FromUtf8(description->m_name) : GetItemName(in_library, in_item);
}

QString GetBaseName(const memorymodel::Library& in_library, const ItemID& in_item)
{
    const std::string base = in_library.GetBaseClass(in_item);
    if (base.empty())
        return QString();
    for (const ItemID& item : in_library.GetItems())
        if (in_library.IsSignature(item) && base == vireo::datamodel::ItemIDUnlock::GetItemIDUID(item))
            return GetFullName(in_library, item);
    return QString();
}

QString GetHeadline(const ItemHelp& in_help)
{
    return in_help.m_name.isEmpty()
               ? QString()
               : Words::tr("%1 \u2013 %2, %3").arg(in_help.m_name, in_help.m_kind, in_help.m_source);
}

QString GetShortHelp(const ItemHelp& in_help)
{
    if (in_help.m_name.isEmpty())
        return QString();
    QString text = QStringLiteral("<b>%1</b> \u2013 %2").arg(Escape(in_help.m_name), Escape(in_help.m_kind)) + gBreak;
    if (!in_help.m_doc.isEmpty())
        text += Escape(Shorten(in_help.m_doc, gShortDoc)) + gBreak;
    text += Fact(Words::tr("Inputs"), NamesOf(in_help.m_inputs));
    text += Fact(Words::tr("Outputs"), NamesOf(in_help.m_outputs));
    text += Fact(Words::tr("Source"), in_help.m_source);
    text += Fact(Words::tr("Document"), PlaceOf(in_help));
    return WithoutLastBreak(text);
}

QString GetLongHelp(const ItemHelp& in_help, const QString& in_base)
{
    if (in_help.m_name.isEmpty())
        return Paragraph(Escape(Words::tr("Select an item to read about it.")));
    QString text = QStringLiteral("<h3>%1</h3>").arg(Escape(in_help.m_name));
    if (!in_help.m_doc.isEmpty())
        text += Paragraph(Escape(in_help.m_doc));
    QString facts = Fact(Words::tr("Kind"), in_help.m_kind);
    facts += Fact(Words::tr("Group"), in_help.m_group);
    facts += Fact(Words::tr("Signature"), in_base);
    facts += Fact(Words::tr("Tags"), in_help.m_tags.join(QStringLiteral(", ")));
    facts += Fact(Words::tr("Source"), in_help.m_source);
    facts += Fact(Words::tr("Document"), PlaceOf(in_help));
    if (in_help.m_definitions > 1)
        facts += Fact(Words::tr("Definitions"), QString::number(in_help.m_definitions));
    text += Paragraph(WithoutLastBreak(facts));
    text += Table(Words::tr("Inputs"), in_help.m_inputs);
    text += Table(Words::tr("Outputs"), in_help.m_outputs);
    return text;
}

} // namespace host
