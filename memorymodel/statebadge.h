// SPDX-License-Identifier: MIT
/// The badges of the source-control states, and their names.
#pragma once

#include <QPixmap>

#include <map>
#include <tuple>

namespace memorymodel
{

/// Puts badges beside icons and keeps the results. Must not outlive the application object, like every pixmap.
class StateBadges
{
public:
    /// An icon as it is shown with a state.
    ///
    /// With its own space, the icon gets a column of 7 device-independent pixels at its left, and the badge stands
    /// there on the icon's lower edge. The column comes with every state but 0, with the requested state too, so that
    /// the icon stays where it is when the badge comes. Without its own space, the icon has such a column already: it
    /// keeps its size, and the badge is painted over its bottom right corner.
    ///
    /// A badge is at most 7 by 7 device-independent pixels; states that eAccessState does not name have none. The
    /// result has the icon's device pixel ratio. For the same icon and state it is the same pixmap, as long as no more
    /// than a few hundred different ones are in use; then it costs one look-up.
    /// \param in_ownSpace false when the icon's leftmost 7 pixels are taken by another mark
    QPixmap Decorate(const QPixmap& in_base, unsigned in_state, bool in_ownSpace);

private:
    std::map<std::tuple<qint64, unsigned, bool>, QPixmap> m_shared;
};

/// A state in people's words, "Checked out"; "Unknown state" for one that is none.
const char* GetStateText(unsigned in_state);

} // namespace memorymodel
