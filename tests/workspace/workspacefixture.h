// SPDX-License-Identifier: MIT
/// A folder of documents as the contract of the boundary needs it.
#pragma once

#include "contract/boundaryfixture.h"
#include "memorymodel/accessstate.h"
#include "tests/workspace/openedfolder.h"

#include <sys/stat.h>

/// Items come as documents of another program would: each in a file of its own, which the workspace is told to look at.
class WorkspaceFixture : public contract::BoundaryFixture
{
public:
    WorkspaceFixture()
    {
        const QByteArray empty = "<materialx version=\"1.39\"/>\n";
        m_folder.Write(QStringLiteral("Shared/empty.mtlx"), empty);
        m_opened.reset(new Opened(m_folder.GetPath()));
        // Later, so that it is the last of the sources.
        m_folder.Write(QStringLiteral("Product/empty.mtlx"), empty);
        SetProductWritable(false);
        m_opened->GetWorkspace().Refresh(QStringLiteral("Product/empty.mtlx"));
    }

    ~WorkspaceFixture() override { SetProductWritable(true); }

    unsigned GetFeatures() const override { return contract::eAllFeatures; }
    vireo::datamodel::ItemLibraryAccessor GetLibrary() override { return m_opened->GetLibrary().GetAccessor(); }

    /// Every item has an identity and an object. Only definitions can be listed as nodes of a graph or not.
    bool CanAdd(const contract::ItemWish& in_wish) const override
    {
        using vireo::datamodel::LibType;
        using vireo::datamodel::VireoType;
        const bool isDefined = in_wish.m_type != LibType::gType && in_wish.m_type != VireoType::gGlobalConstant;
        const bool isSpecialPolymorphic = in_wish.m_specializes && in_wish.m_type == VireoType::gPolymorphicSolver;
        return in_wish.m_withUID && in_wish.m_forGraphs && !in_wish.m_name.empty() &&
               (isDefined || !(in_wish.m_parent || in_wish.m_specializes)) && !isSpecialPolymorphic;
    }

    ItemID Add(const contract::ItemWish& in_wish) override
    {
        memorymodel::Library& library = m_opened->GetLibrary();
        const std::size_t before = library.GetItems().size();
        const QString source =
            in_wish.m_source == "Local" ? QStringLiteral("local") : QString::fromStdString(in_wish.m_source);
        const QString file = QStringLiteral("%1/item%2.mtlx").arg(source).arg(++m_count, 4, 10, QLatin1Char('0'));
        SetProductWritable(true);
        const QString path = m_folder.Write(file, DocumentOf(in_wish));
        if (in_wish.m_readOnly)
            chmod(QFile::encodeName(path).constData(), 0444);
        SetProductWritable(false);
        m_opened->GetWorkspace().Refresh(file);
        const std::vector<ItemID> items = library.GetItems();
        for (std::size_t i = before; i < items.size(); ++i)
            if (library.GetAccessor().GetItemName(items[i], true, nullptr) == in_wish.m_name)
                return items[i];
        return ItemID();
    }

    void Remove(const ItemID& in_item, hmx::fwk::ICommandManager* in_commands) override
    {
        m_opened->GetLibrary().Remove(in_item, in_commands);
    }
    void Close() override { m_opened->GetLibrary().Close(); }

    hmx::fwk::ICommandManager* GetCommands() override { return m_opened->GetCommands(); }
    int GetCommandCount() override { return m_opened->GetStack().count(); }
    void Undo() override { m_opened->GetStack().undo(); }
    void Redo() override { m_opened->GetStack().redo(); }

    void Install() override { m_opened->GetLayer().Install(); }
    void MakeCurrent() override { m_opened->GetLayer().SetCurrentLibrary(&m_opened->GetLibrary()); }
    void SetService(const char* in_name, hmx::IBase* in_service) override
    {
        m_opened->GetLayer().SetService(in_name, in_service);
    }
    void SetSystemPresent(bool in_present) override { m_opened->GetLayer().SetSystemPresent(in_present); }
    ItemID GetCompoundTarget() override { return m_opened->GetLayer().GetCompoundTarget(); }

    void SetEnabled(bool in_enabled) override { GetControl().SetEnabled(in_enabled); }
    void SetHasProperties(bool in_has) override { GetControl().SetHasProperties(in_has); }
    void SetVersionControlActive(bool in_active) override { GetControl().SetVersionControlActive(in_active); }
    unsigned GetOneState() override { return memorymodel::eCheckedOutByOther; }
    unsigned GetOtherState() override { return memorymodel::eOutOfDate; }
    void SetState(const ItemID& in_item, unsigned in_state) override { GetControl().SetState(in_item, in_state); }

private:
    memorymodel::SourceControl& GetControl() { return m_opened->GetLayer().GetSourceControl(); }

    void SetProductWritable(bool in_writable)
    {
        chmod(QFile::encodeName(m_folder.GetPath(QStringLiteral("Product"))).constData(), in_writable ? 0755 : 0555);
    }

    static QByteArray Attribute(const char* in_name, const std::string& in_latin1)
    {
        return QByteArray(" ") + in_name + "=\"" + QString::fromLatin1(in_latin1.c_str()).toHtmlEscaped().toUtf8() +
               '"';
    }

    QByteArray DocumentOf(const contract::ItemWish& in_wish) const
    {
        using vireo::datamodel::LibType;
        using vireo::datamodel::VireoType;
        const QByteArray id = "item" + QByteArray::number(m_count);
        const QByteArray shown = Attribute("uiname", in_wish.m_name) + Attribute("tags", in_wish.m_tags);
        const QByteArray definition = "<nodedef name=\"ND_" + id + "\" node=\"" + id + '"';
        const QByteArray solved = "<implementation name=\"IM_" + id + "\" nodedef=\"ND_" + id + "\" target=\"t\"/>";
        const QByteArray other = "<nodedef name=\"ND_" + id + "_2\" node=\"" + id + "\"/>";
        QByteArray lines;
        if (in_wish.m_type == LibType::gType)
            lines = "<typedef" + Attribute("name", in_wish.m_name) + Attribute("semantic", in_wish.m_tags) + "/>";
        else if (in_wish.m_type == VireoType::gGlobalConstant)
            lines = "<unitdef" + Attribute("unittype", in_wish.m_tags) + "><unit" + Attribute("name", in_wish.m_name) +
                    "/></unitdef>";
        else if (in_wish.m_parent)
            lines = definition + "/><nodegraph name=\"NG\" nodedef=\"ND_" + id + "\"><" + id +
                    Attribute("name", in_wish.m_name) + "/></nodegraph>";
        else if (in_wish.m_type == VireoType::gPolymorphicSolver)
            // Without names of their own the definitions are no items.
            lines = "<nodedef node=\"" + id + '"' + shown + "/><nodedef node=\"" + id + "\"/>";
        else
        {
            lines = definition + shown + (in_wish.m_loop ? " loop=\"true\"/>" : "/>");
            if (in_wish.m_type == VireoType::gSolver)
                lines += solved;
            else if (!in_wish.m_signature)
                lines += "<nodegraph name=\"NG_" + id + "\" nodedef=\"ND_" + id + "\"/>";
            if (in_wish.m_specializes)
                lines += other;
        }
        return "<materialx version=\"1.39\">\n" + lines + "\n</materialx>\n";
    }

    DocumentFolder m_folder;
    std::unique_ptr<Opened> m_opened;
    int m_count = 0;
};
