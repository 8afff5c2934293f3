// SPDX-License-Identifier: MIT
/// The dialogs that name a new compound and that edit an item's tags.
#pragma once

#include "datamodel/itemlibrary.h"
#include "nodebrowser/export.h"

#include <QDialog>
#include <QPointer>
#include <QString>

#include <string>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

/// Asks for the name, the category and, if wanted, the signature of a new compound, loop compound or signature. It only
/// gathers three texts; the caller creates the item.
///
///     CVireoCompoundCreateDialog dialog(library, "compound", "compound", true);
///     dialog.exec();
///     if (!dialog.GetCompoundName().isEmpty())
///         create(dialog.GetCompoundName(), dialog.GetCategory(), dialog.GetBaseClass());
///
/// The name decides whether the user agreed, not the result of exec(): it is empty after Cancel and after Escape.
/// Filling the list of signatures reads all compounds of the library once, in the constructor; the library is not kept.
class NODEBROWSER_EXPORT CVireoCompoundCreateDialog : public QDialog
{
    Q_OBJECT

public:
    /// \param in_kindWord what is made, in lower case: it stands in the title, the name's label and the error message;
    ///     never null
    /// \param in_defaultName the name to start with; never null
    /// \param in_withSignature whether the user may choose a signature that the new item implements
    CVireoCompoundCreateDialog(vireo::datamodel::ItemLibraryAccessor in_library, const char* in_kindWord,
                               const char* in_defaultName, bool in_withSignature);

    /// The name, in which everything but letters and digits has become an underscore.
    const QString& GetCompoundName() const { return m_compoundName; }
    /// The category as typed; may be empty.
    const QString& GetCategory() const { return m_category; }
    /// The database identity of the chosen signature; empty for none.
    const QString& GetBaseClass() const { return m_baseClass; }

private Q_SLOTS:
    void OnOk();
    void OnCancel();

private:
    void CreateSignatureRow(const vireo::datamodel::ItemLibraryAccessor& in_library);
    void PlaceWidgets();

    QPushButton* m_okButton;
    QPushButton* m_cancelButton;
    QLabel* m_categoryLabel;
    QLineEdit* m_categoryEdit;
    QLabel* m_nameLabel;
    QLineEdit* m_nameEdit;
    QLabel* m_signatureLabel = nullptr;
    QComboBox* m_signatureCombo = nullptr;
    QString m_kindWord;
    QString m_category;
    QString m_compoundName;
    QString m_baseClass;
};

/// Lets the user edit the tags of an item as one text, and normalises it on OK: white space around each tag and empty
/// tags go. It writes nothing; the caller compares the result with the old tags and stores it.
class NODEBROWSER_EXPORT CItemTagsEditorDialog : public QDialog
{
    Q_OBJECT

public:
    /// \param in_itemName shown above the tags; never null
    /// \param in_itemTags the tags joined by ";"; never null
    CItemTagsEditorDialog(const char* in_itemName, const char* in_itemTags);
    ~CItemTagsEditorDialog() override;

    /// The tags joined by ";": as passed in until OK is pressed, as typed and normalised afterwards. What was typed ends at
    /// the first null character.
    const std::string& GetItemTags() const { return m_itemTags; }

private Q_SLOTS:
    void OnOk();
    void OnCancel();

private:
    QPushButton* m_okButton;
    QPushButton* m_cancelButton;
    QLabel* m_nameCaption;
    QLabel* m_nameLabel;
    QLabel* m_tagsCaption;
    QLineEdit* m_tagsEdit;
    QPointer<QLabel> m_hintLabel; // has no parent: whoever closes all windows may destroy it first
    std::string m_itemTags;
};
