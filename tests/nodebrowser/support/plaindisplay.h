// SPDX-License-Identifier: MIT
/// A source-control display without source control.
#pragma once

#include "datamodel/provider.h"

#include <QPixmap>
#include <QString>

#include <list>

/// Shows the icons that it is handed as they are, so that their pixels can be found again, and has nothing to say about
/// objects. Installed for as long as it lives.
class PlainDisplay : public ISourceControlDisplay
{
public:
    PlainDisplay()
    {
        m_before = InstallProvider(Provider());
        Provider provider = m_before;
        provider.m_sourceControl = this;
        InstallProvider(provider);
    }
    ~PlainDisplay() override { InstallProvider(m_before); }
    PlainDisplay(const PlainDisplay&) = delete;
    PlainDisplay& operator=(const PlainDisplay&) = delete;

    void RequestObjectStates(const ScsTask&, const std::list<nexa4::NEXAHandle<nexa4::IDbObject>>&) override {}
    void TaskEnded(const ScsTask&) override {}
    bool IsFileVersionControlActive() override
    {
        ++m_activeQueries;
        return m_active;
    }
    QPixmap GetAssetStateIcon(const QPixmap& in_base, unsigned, bool, bool) override { return in_base; }
    QString GetToolTip(const nexa4::NEXAHandle<nexa4::IDbObject>&, const QString&) override { return QString(); }

    bool m_active = true;
    int m_activeQueries = 0; ///< how often it was asked whether there is any source control

private:
    Provider m_before;
};
