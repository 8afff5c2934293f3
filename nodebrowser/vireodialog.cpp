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
const int gLabelDrop = 2; // a label's text stands on the line of the field beside it
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

/// The signatures of a library by name; of several with one name the last one met.
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

/// Splits a text at semicolons, trims the pieces and joins what is left of them.
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

} // namespace

CVireoCompoundCreateDialog::CVireoCompoundCreateDialog(ItemLibraryAccessor in_library, const char* in_kindWord,
                                                       const char* in_defaultName, bool in_withSignature)
    : m_kindWord(FromLatin1(in_kindWord))
{
    m_okButton = new QPushButton(FromLatin1("Ok"), this);
    m_cancelButton = new QPushButton(FromLatin1("Cancel"), this);
    // A letter may have a capital that Latin-1 lacks.
    const QByteArray capitalised = (m_kindWord.left(1).toUpper() + m_kindWord.mid(1)).toLatin1();
    m_nameLabel = new QLabel(FromLatin1(capitalised.constData()) + FromLatin1(" name: "), this);
    m_nameEdit = new QLineEdit(FromLatin1(in_defaultName), this);
    m_categoryLabel = new QLabel(FromLatin1("Category: "), this);
    m_categoryEdit = new QLineEdit(this);
    if (in_withSignature)
        CreateSignatureRow(in_library);
    m_okButton->setDefault(true);
    connect(m_okButton, SIGNAL(clicked()), this, SLOT(OnOk()));
    connect(m_cancelButton, SIGNAL(clicked()), this, SLOT(OnCancel()));
    PlaceWidgets();
    setWindowTitle(FromLatin1("Create ") + m_kindWord);
}

void CVireoCompoundCreateDialog::CreateSignatureRow(const ItemLibraryAccessor& in_library)
{
    m_signatureLabel = new QLabel(FromLatin1("Signature: "), this);
    m_signatureCombo = new QComboBox(this);
    m_signatureCombo->addItem(FromLatin1("None"), QVariant(FromLatin1("")));
    for (const auto& signature : FindSignatures(in_library))
        m_signatureCombo->addItem(FromLatin1(signature.first.c_str()),
                                  QVariant(FromLatin1(ItemIDUnlock::GetItemIDUID(signature.second))));
    m_signatureCombo->setCurrentIndex(0);
}

void CVireoCompoundCreateDialog::PlaceWidgets()
{
    PlaceLabel(*m_nameLabel, 0);
    PlaceLabel(*m_categoryLabel, 1);
    PlaceField(*m_nameEdit, 0);
    PlaceField(*m_categoryEdit, 1);
    if (m_signatureCombo)
    {
        PlaceLabel(*m_signatureLabel, 2);
        PlaceField(*m_signatureCombo, 2);
    }
    m_okButton->move(gOkPosition);
    m_cancelButton->move(gCancelPosition);
    // Also without the signature row, so that the three kinds of item are asked for in windows of one size.
    setFixedSize(gDialogSize);
}

void CVireoCompoundCreateDialog::OnOk()
{
    m_category = FromLatin1("");
    m_compoundName = FromLatin1("");
    const QString category = m_categoryEdit->text();
    QString name = m_nameEdit->text();
    if (name.isEmpty())
    {
        QMessageBox box(QMessageBox::Critical, FromLatin1("Invalid Name"),
                        FromLatin1("The ") + m_kindWord + FromLatin1(" name is invalid."), QMessageBox::Ok, nullptr,
                        Qt::WindowFlags(Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint));
        box.exec();
        return;
    }
    for (int i = 0; i < name.size(); ++i)
        if (!name.at(i).isLetterOrNumber())
            name[i] = QLatin1Char('_');
    m_baseClass = FromLatin1("");
    if (m_signatureCombo && m_signatureCombo->currentIndex() != 0)
        m_baseClass = m_signatureCombo->itemData(m_signatureCombo->currentIndex(), Qt::UserRole).toString();
    m_compoundName = name;
    m_category = category;
    accept();
}

void CVireoCompoundCreateDialog::OnCancel()
{
    m_category = FromLatin1("");
    m_compoundName = FromLatin1("");
    reject();
}

CItemTagsEditorDialog::CItemTagsEditorDialog(const char* in_itemName, const char* in_itemTags) : m_itemTags(in_itemTags)
{
    m_okButton = new QPushButton(FromLatin1("Ok"), this);
    m_cancelButton = new QPushButton(FromLatin1("Cancel"), this);
    m_nameCaption = new QLabel(FromLatin1("Name: "), this);
    m_nameLabel = new QLabel(FromLatin1(in_itemName), this);
    // A name that reads like markup is a name all the same.
    m_nameLabel->setTextFormat(Qt::PlainText);
    m_tagsCaption = new QLabel(FromLatin1("Tags: "), this);
    m_tagsEdit = new QLineEdit(FromLatin1(in_itemTags), this);
    // Kept out of the dialog on purpose: without a parent it is never shown.
    m_hintLabel = new QLabel(FromLatin1("State machine tags: Condition, TransitionBlend"));
    m_okButton->setDefault(true);
    connect(m_okButton, SIGNAL(clicked()), this, SLOT(OnOk()));
    connect(m_cancelButton, SIGNAL(clicked()), this, SLOT(OnCancel()));
    PlaceLabel(*m_nameCaption, 0);
    PlaceLabel(*m_tagsCaption, 1);
    PlaceLabel(*m_hintLabel, 2);
    PlaceField(*m_nameLabel, 0);
    PlaceField(*m_tagsEdit, 1);
    m_okButton->move(gOkPosition);
    m_cancelButton->move(gCancelPosition);
    setFixedSize(gDialogSize);
    setWindowTitle(FromLatin1("Edit Item Tags"));
}

CItemTagsEditorDialog::~CItemTagsEditorDialog()
{
    delete m_okButton;
    delete m_cancelButton;
    delete m_nameCaption;
    delete m_nameLabel;
    delete m_tagsCaption;
    delete m_tagsEdit;
    delete m_hintLabel;
}

void CItemTagsEditorDialog::OnOk()
{
    // The data layer takes tags as a C string: what stands behind a null character would be lost there, but make the tags
    // differ from the old ones.
    m_itemTags = NormaliseTags(m_tagsEdit->text().toLatin1().constData());
    accept();
}

void CItemTagsEditorDialog::OnCancel()
{
    reject();
}
