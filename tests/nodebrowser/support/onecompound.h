// SPDX-License-Identifier: MIT
/// A browser of one compound.
#pragma once

#include "qtcompat/latin1.h"
#include "tests/nodebrowser/support/commandbrowser.h"
#include "tests/nodebrowser/support/fakelayer.h"

/// A browser on a library that writes down what it is asked for. It has one compound "Blend" with an object; its row is
/// selected, and nothing is written down yet.
template <class Browser = CommandBrowser> struct OneCompound
{
    OneCompound() : m_compound(m_layer.AddCompound("Blend")), m_object(m_layer.GiveObject(m_compound))
    {
        m_compound.m_tags = "color;mix";
        m_browser.SetCommandManager(&m_layer.m_commands);
        ShowLibrary(m_browser, m_layer.GetAccessor());
        m_browser.Select(0);
        m_layer.Forget();
    }

    QString Uid() const { return qtcompat::FromLatin1(m_compound.m_uid.c_str()); }

    FakeLayer m_layer;
    FakeCompound& m_compound;
    const std::shared_ptr<FakeObject> m_object;
    Browser m_browser;
};
