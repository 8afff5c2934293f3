// SPDX-License-Identifier: MIT
/// A manager of the revision-control properties.
#pragma once

#include "datamodel/revisioncontrol.h"
#include "tests/nodebrowser/support/recorder.h"

#include <memory>

/// A properties manager in the hands of a test. It writes down "connect", "has", "read" and "disconnect".
class FakePropertiesManager : public IRevisionControlPropertiesMgr
{
public:
    explicit FakePropertiesManager(Recorder& out_recorder) : m_recorder(out_recorder) {}

    void GetSourceControlEnabled(bool* out_enabled) override
    {
        m_recorder.Command(QString::fromLatin1("read"));
        *out_enabled = m_enabled;
    }
    void Connect(IRevisionControlPropertiesMgr_Slot* in_slot, RevisionControlConnection& out_connection) override
    {
        m_recorder.Command(QString::fromLatin1("connect"));
        m_slot = in_slot;
        Recorder& recorder = m_recorder;
        out_connection.Hold(std::shared_ptr<void>(
            nullptr, [&recorder](void*) { recorder.Command(QString::fromLatin1("disconnect")); }));
    }
    bool HasProperties() override
    {
        m_recorder.Command(QString::fromLatin1("has"));
        return m_has;
    }

    /// Notifies the connected slot of a change, or with null that the manager is going away.
    void Notify(IRevisionControlPropertiesMgr* in_manager) { m_slot->OnRevisionControlPropertiesChange(in_manager); }

    bool m_enabled = false;
    bool m_has = true;
    IRevisionControlPropertiesMgr_Slot* m_slot = nullptr;

private:
    Recorder& m_recorder;
};
