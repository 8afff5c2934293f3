// SPDX-License-Identifier: MIT
/// The dialogs that name a new compound and that edit an item's tags.
#pragma once

#include "datamodel/itemlibrary.h"
#include "nodebrowser/export.h"

#include <QDialog>
#include <QString>

#include <memory>
#include <string>

/// Asks for the name, the category and, if wanted, the signature of a new compound, loop compound or signature. The
/// dialog only gathers three texts. The caller creates the item.
///
///     CVireoCompoundCreateDialog dialog(library, "compound", "compound", true);
///     dialog.exec();
///     if (!dialog.GetCompoundName().isEmpty())
///         create(dialog.GetCompoundName(), dialog.GetCategory(), dialog.GetBaseClass());
///
/// The name tells whether the user agreed, not the result of exec(). The name is empty after Cancel and after Escape.
/// The constructor reads all compounds of the library once, to list the signatures. It keeps no reference to the
/// library.
class NODEBROWSER_EXPORT CVireoCompoundCreateDialog : public QDialog
{
    Q_OBJECT

public:
    /// \param in_kindWord the kind of the new item, in lower case, for the title, a label and the error message; never
    ///     null
    /// \param in_defaultName the name to start with; never null
    /// \param in_withSignature whether the user may choose a signature that the new item implements
    CVireoCompoundCreateDialog(vireo::datamodel::ItemLibraryAccessor in_library, const char* in_kindWord,
                               const char* in_defaultName, bool in_withSignature);
    ~CVireoCompoundCreateDialog() override;

    /// The name as typed, with an underscore for each character that is no letter and no digit.
    const QString& GetCompoundName() const;
    /// The category as typed. It may be empty.
    const QString& GetCategory() const;
    /// The database identity of the chosen signature. It is empty when none was chosen.
    const QString& GetBaseClass() const;

private Q_SLOTS:
    void OnOk();
    void OnCancel();

private:
    struct Private;
    const std::unique_ptr<Private> m_private;
};

/// Lets the user edit the tags of an item as one text. OK normalises the text: it removes empty tags and the white
/// space around each tag. The dialog writes nothing. The caller compares the result with the old tags and stores it.
class NODEBROWSER_EXPORT CItemTagsEditorDialog : public QDialog
{
    Q_OBJECT

public:
    /// \param in_itemName shown above the tags; never null
    /// \param in_itemTags the tags joined by ";"; never null
    CItemTagsEditorDialog(const char* in_itemName, const char* in_itemTags);
    ~CItemTagsEditorDialog() override;

    /// The tags joined by ";". Until OK is pressed they are as passed in; then they are as typed, and normalised. A
    /// null character ends what was typed.
    const std::string& GetItemTags() const;

private Q_SLOTS:
    void OnOk();
    void OnCancel();

private:
    struct Private;
    const std::unique_ptr<Private> m_private;
};
