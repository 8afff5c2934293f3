// SPDX-License-Identifier: MIT
/// The badges of the source-control states, and their names.
#pragma once

#include <QPixmap>

#include <map>
#include <tuple>

namespace memorymodel
{

/// Paints badges onto icons and keeps the results. Must not outlive the application object, like every pixmap.
class StateBadges
{
public:
    /// A copy of an icon with a state's badge in its bottom right corner; the icon as it is for a state without one,
    /// which is each that eAccessState does not name.
    ///
    /// A badge is at most 8 by 8 device-independent pixels. Copies are shared: for the same icon and state they are the
    /// same pixmap, as long as no more than a few hundred different ones are in use. A shared one costs one look-up.
    /// \param in_ownSpace false when the icon's leftmost 7 pixels must stay free
    QPixmap Decorate(const QPixmap& in_base, unsigned in_state, bool in_ownSpace);

private:
    std::map<std::tuple<qint64, unsigned, bool>, QPixmap> m_shared;
};

/// A state in people's words, "Checked out"; "Unknown state" for one that is none.
const char* GetStateText(unsigned in_state);

} // namespace memorymodel
