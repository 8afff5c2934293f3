// SPDX-License-Identifier: MIT
/// Which texts can be names of compounds.
#pragma once

#include <QString>
#include <QValidator>

namespace nodebrowser
{

/// A name consists of letters, digits, marks, underscores and white space, and does not start with white space. Letters
/// of every script count. Characters of two 16-bit units do not. An empty text can still become a name.
QValidator::State CheckCompoundName(const QString& in_name);

/// Whether two names differ at most in the case of Latin-1 letters.
bool IsSameNameButCase(const QString& in_left, const QString& in_right);

/// Lets only names of compounds be typed into an edit.
class CompoundNameValidator : public QValidator
{
public:
    explicit CompoundNameValidator(QObject* in_parent) : QValidator(in_parent) {}

    State validate(QString& in_text, int& out_position) const override;
};

} // namespace nodebrowser
