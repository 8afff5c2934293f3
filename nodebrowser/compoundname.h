// SPDX-License-Identifier: MIT
/// Which texts can be names of compounds.
#pragma once

#include <QString>
#include <QValidator>

/// A name starts with a letter, a digit, a mark or an underscore, and may go on with white space too. Letters of every
/// script count; characters that take two 16-bit units do not. An empty text is on its way to a name.
QValidator::State CheckCompoundName(const QString& in_name);

/// Whether two names differ at most in the case of Latin-1 letters.
bool IsSameNameButCase(const QString& in_left, const QString& in_right);

/// Keeps out of an edit what cannot become the name of a compound.
class CompoundNameValidator : public QValidator
{
public:
    explicit CompoundNameValidator(QObject* in_parent) : QValidator(in_parent) {}

    State validate(QString& in_text, int& out_position) const override;
};
