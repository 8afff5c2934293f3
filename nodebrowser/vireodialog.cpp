// SPDX-License-Identifier: MIT
#include "nodebrowser/vireodialog.h"

#include "datamodel/helpers.h"
#include "qtcompat/latin1.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/find_iterator.hpp>
#include <boost/algorithm/string/finder.hpp>
#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/trim.hpp>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QVariant>

#include <map>
#include <vector>

using qtcompat::FromLatin1;
using vireo::datamodel::Helpers;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemIDUnlock;
using vireo::datamodel::ItemIterator;
using vireo::datamodel::ItemLibraryAccessor;
using vireo::datamodel::VireoType;

namespace
{

const QSize gDialogSize(370, 130);
const QSize gFieldSize(220, 20);
const int gLabelLeft = 10;
const int gFieldLeft = 120;
const int gRowTops[] = {10, 40, 70};
const int gLabelDrop = 2; // puts a label's text on the line of the field beside it
const QPoint gOkPosition(100, 100);
const QPoint gCancelPosition(190, 100);

void PlaceLabel(QLabel& out_label, int in_row)
{
    out_label.move(gLabelLeft, gRowTops[in_row] + gLabelDrop);
}

void PlaceField(QWidget& out_field, int in_row)
{
    out_field.setGeometry(QRect(QPoint(gFieldLeft, gRowTops[in_row]), gFieldSize));
}

/// The signatures of a library by name. Of several with the same name, the last one in the library counts.
std::map<std::string, ItemID> FindSignatures(const ItemLibraryAccessor& in_library)
{
    std::map<std::string, ItemID> signatures;
    const vireo::datamodel::ItemTOCAccessor toc = GetTOC(in_library);
    for (ItemIterator iterator = toc.IterateItems(VireoType::gCompound); !iterator.IsAtEnd(); iterator.Next())
    {
        ItemAccessor item = iterator.GetItem();
        if (item.IsValid() && Helpers::IsAbstractFunction(item))
            signatures[in_library.GetItemName(item.GetItemID(), true, nullptr)] = item.GetItemID();
    }
    return signatures;
}

/// Splits a text at semicolons, trims the pieces, and joins those that are not empty.
std::string NormaliseTags(const std::string& in_text)
{
    using Pieces = boost::split_iterator<std::string::const_iterator>;
    std::vector<std::string> tags;
    const auto separator = boost::token_finder(boost::is_any_of(";"), boost::token_compress_on);
    for (Pieces piece(in_text.begin(), in_text.end(), separator); piece != Pieces(); ++piece)
    {
        const std::string tag = boost::trim_copy(std::string(piece->begin(), piece->end()));
        if (!tag.empty())
            tags.push_back(tag);
    }
    return boost::join(tags, ";");
}

/// A list of a library's signatures to choose from, with "None" first.
QComboBox* CreateSignatureList(const ItemLibraryAccessor& in_library, QWidget* in_parent)
{
    QComboBox* const list = new QComboBox(in_parent);
    list->addItem(FromLatin1("None"), QVariant(FromLatin1("")));
    for (const auto& signature : FindSignatures(in_library))
        list->addItem(FromLatin1(signature.first.c_str()),
                      QVariant(FromLatin1(ItemIDUnlock::GetItemIDUID(signature.second))));
    list->setCurrentIndex(0);
    return list;
}

} // namespace

// Anybody may destroy a child widget of a dialog, so each pointer becomes null with its widget.
struct CVireoCompoundCreateDialog::Private
{
    QPointer<QLineEdit> m_categoryEdit;
    QPointer<QLineEdit> m_nameEdit;
    QPointer<QComboBox> m_signatureCombo; // null too when the dialog was made without signatures
    QString m_kindWord;
    QString m_category;
    QString m_compoundName;
    QString m_baseClass;
};

CVireoCompoundCreateDialog::CVireoCompoundCreateDialog(ItemLibraryAccessor in_library, const char* in_kindWord,
                                                       const char* in_defaultName, bool in_withSignature)
    : m_private(new Private)
{
    const QString kindWord = FromLatin1(in_kindWord);
    m_private->m_kindWord = kindWord;
    // The Tab key visits the widgets in the order in which they are made.
    QPushButton* const okButton = new QPushButton(FromLatin1("Ok"), this);
    QPushButton* const cancelButton = new QPushButton(FromLatin1("Cancel"), this);
    // A letter of Latin-1 may have a capital that Latin-1 lacks.
    const QByteArray capitalised = (kindWord.left(1).toUpper() + kindWord.mid(1)).toLatin1();
    QLabel* const nameLabel = new QLabel(FromLatin1(capitalised.constData()) + FromLatin1(" name: "), this);
    QLineEdit* const nameEdit = new QLineEdit(FromLatin1(in_defaultName), this);
    QLabel* const categoryLabel = new QLabel(FromLatin1("Category: "), this);
    QLineEdit* const categoryEdit = new QLineEdit(this);
    PlaceLabel(*nameLabel, 0);
    PlaceLabel(*categoryLabel, 1);
    PlaceField(*nameEdit, 0);
    PlaceField(*categoryEdit, 1);
    if (in_withSignature)
    {
        PlaceLabel(*new QLabel(FromLatin1("Signature: "), this), 2);
        m_private->m_signatureCombo = CreateSignatureList(in_library, this);
        PlaceField(*m_private->m_signatureCombo, 2);
    }
    m_private->m_nameEdit = nameEdit;
    m_private->m_categoryEdit = categoryEdit;
    okButton->setDefault(true);
    connect(okButton, SIGNAL(clicked()), this, SLOT(OnOk()));
    connect(cancelButton, SIGNAL(clicked()), this, SLOT(OnCancel()));
    okButton->move(gOkPosition);
    cancelButton->move(gCancelPosition);
    // The size is the same without the signature row, so that the dialogs for all kinds of items look alike.
    setFixedSize(gDialogSize);
    setWindowTitle(FromLatin1("Create ") + kindWord);
}

CVireoCompoundCreateDialog::~CVireoCompoundCreateDialog() = default;

const QString& CVireoCompoundCreateDialog::GetCompoundName() const
{
    return m_private->m_compoundName;
}

const QString& CVireoCompoundCreateDialog::GetCategory() const
{
    return m_private->m_category;
}

const QString& CVireoCompoundCreateDialog::GetBaseClass() const
{
    return m_private->m_baseClass;
}

void CVireoCompoundCreateDialog::OnOk()
{
    // Without the edit there is no name to read.
    if (!m_private->m_nameEdit)
    {
        OnCancel();
        return;
    }
    m_private->m_category = FromLatin1("");
    m_private->m_compoundName = FromLatin1("");
    QString name = m_private->m_nameEdit->text();
    if (name.isEmpty())
    {
        QMessageBox box(QMessageBox::Critical, FromLatin1("Invalid Name"),
                        FromLatin1("The ") + m_private->m_kindWord + FromLatin1(" name is invalid."), QMessageBox::Ok,
                        nullptr, Qt::WindowFlags(Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint));
        box.exec();
        return;
    }
    for (int i = 0; i < name.size(); ++i)
        if (!name.at(i).isLetterOrNumber())
            name[i] = QLatin1Char('_');
    m_private->m_baseClass = FromLatin1("");
    const QComboBox* const signatures = m_private->m_signatureCombo;
    if (signatures && signatures->currentIndex() != 0)
        m_private->m_baseClass = signatures->itemData(signatures->currentIndex(), Qt::UserRole).toString();
    m_private->m_compoundName = name;
    m_private->m_category = m_private->m_categoryEdit ? m_private->m_categoryEdit->text() : FromLatin1("");
    accept();
}

void CVireoCompoundCreateDialog::OnCancel()
{
    m_private->m_category = FromLatin1("");
    m_private->m_compoundName = FromLatin1("");
    reject();
}

// The dialog's destructor deletes those of these widgets that still exist. A pointer becomes null with its widget.
struct CItemTagsEditorDialog::Private
{
    QPointer<QPushButton> m_okButton;
    QPointer<QPushButton> m_cancelButton;
    QPointer<QLabel> m_nameCaption;
    QPointer<QLabel> m_nameLabel;
    QPointer<QLabel> m_tagsCaption;
    QPointer<QLineEdit> m_tagsEdit;
    QPointer<QLabel> m_hintLabel;
    std::string m_itemTags;
};

CItemTagsEditorDialog::CItemTagsEditorDialog(const char* in_itemName, const char* in_itemTags) : m_private(new Private)
{
    m_private->m_itemTags = in_itemTags;
    m_private->m_okButton = new QPushButton(FromLatin1("Ok"), this);
    m_private->m_cancelButton = new QPushButton(FromLatin1("Cancel"), this);
    m_private->m_nameCaption = new QLabel(FromLatin1("Name: "), this);
    m_private->m_nameLabel = new QLabel(FromLatin1(in_itemName), this);
    // A name may look like markup.
    m_private->m_nameLabel->setTextFormat(Qt::PlainText);
    m_private->m_tagsCaption = new QLabel(FromLatin1("Tags: "), this);
    m_private->m_tagsEdit = new QLineEdit(FromLatin1(in_itemTags), this);
    // The hint has no parent on purpose, so it is never shown.
    m_private->m_hintLabel = new QLabel(FromLatin1("State machine tags: Condition, TransitionBlend"));
    m_private->m_okButton->setDefault(true);
    connect(m_private->m_okButton, SIGNAL(clicked()), this, SLOT(OnOk()));
    connect(m_private->m_cancelButton, SIGNAL(clicked()), this, SLOT(OnCancel()));
    PlaceLabel(*m_private->m_nameCaption, 0);
    PlaceLabel(*m_private->m_tagsCaption, 1);
    PlaceLabel(*m_private->m_hintLabel, 2);
    PlaceField(*m_private->m_nameLabel, 0);
    PlaceField(*m_private->m_tagsEdit, 1);
    m_private->m_okButton->move(gOkPosition);
    m_private->m_cancelButton->move(gCancelPosition);
    setFixedSize(gDialogSize);
    setWindowTitle(FromLatin1("Edit Item Tags"));
}

CItemTagsEditorDialog::~CItemTagsEditorDialog()
{
    delete m_private->m_okButton;
    delete m_private->m_cancelButton;
    delete m_private->m_nameCaption;
    delete m_private->m_nameLabel;
    delete m_private->m_tagsCaption;
    delete m_private->m_tagsEdit;
    delete m_private->m_hintLabel;
}

const std::string& CItemTagsEditorDialog::GetItemTags() const
{
    return m_private->m_itemTags;
}

void CItemTagsEditorDialog::OnOk()
{
    // Without the edit there are no tags to return. Empty tags would make the caller delete those of the item.
    if (!m_private->m_tagsEdit)
    {
        reject();
        return;
    }
    // The data layer takes tags as a C string, which ends at a null character. The text after one must not count as a
    // change.
    m_private->m_itemTags = NormaliseTags(m_private->m_tagsEdit->text().toLatin1().constData());
    accept();
}

void CItemTagsEditorDialog::OnCancel()
{
    reject();
}
