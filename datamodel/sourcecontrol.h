// SPDX-License-Identifier: MIT
/// Source control as the user sees it: states, badges, tool tips.
#pragma once

#include "datamodel/export.h"
#include "datamodel/nexahandle.h"
#include "datamodel/objectdatabase.h"

#include <QPixmap>
#include <QString>

#include <list>
#include <string>

/// A task that requests the source-control states of objects. Make it with new and end it with DeleteMe(), never with
/// delete: the data layer may still work for it. Without a data layer it does nothing. The library of this header frees
/// its memory, so on Windows both must use one run-time library (/MD).
class DATAMODEL_EXPORT ScsTask
{
public:
    /// \param in_name for diagnosis: who asks; never null
    explicit ScsTask(const char* in_name);
    ScsTask(const ScsTask&) = delete;
    ScsTask& operator=(const ScsTask&) = delete;

    /// The name that it was made with.
    const std::string& GetName() const { return m_name; }

    /// Requests the states of objects. Returns at once. The states arrive later, never inside this call: the observers
    /// of an object's library get one ItemAccessStateChanged() per object, in the order of the request, between one
    /// pair of OnBeginChanges() and OnEndChanges(). Handles that are invalid then are skipped.
    void RequestObjectStates(const std::list<nexa4::NEXAHandle<nexa4::IDbObject>>& in_objects);

    /// Ends the task and deletes it. Requests that are not answered yet are dropped.
    void DeleteMe();

private:
    ~ScsTask() = default;

    std::string m_name;
};

/// Without a data layer version control is not active, icons are returned unchanged, and tool tips are empty.
struct DATAMODEL_EXPORT ScsUtils
{
    /// Whether files are under version control at all.
    static bool IsFileVersionControlActive();

    /// An icon with the badge of a state. It depends on what it is given alone: callers keep one picture for all items
    /// that look alike.
    /// \param in_base the icon without a badge; the result has its height and its device pixel ratio
    /// \param in_state the access state of the item
    /// \param in_active whether versioning is shown; without it the icon comes back as it is
    /// \param in_ownSpace true for an icon without a mark beside it: the result may be wider by 7 pixels at its left,
    ///     for the badge to stand in. False: the result has the icon's size, and the badge leaves its leftmost 7 pixels
    ///     free
    static QPixmap getAssetStateIcon(QPixmap& in_base, unsigned in_state, bool in_active, bool in_ownSpace);

    /// What source control knows about an object, as text of a tool tip; empty for an invalid object.
    /// \param in_icon resource name of the icon to show with the text
    static QString GetToolTip(nexa4::NEXAHandle<nexa4::IDbObject> in_object, const QString& in_icon);
};
