// SPDX-License-Identifier: MIT
/// The manual, as far as it is about the host.
#pragma once

#include <QTextBrowser>

namespace host
{

/// Shows the pages that are built into the program, beginning with the host's own. A link to a page that is not there,
/// since it is for programmers, is shown as text.
class ManualPages : public QTextBrowser
{
    Q_OBJECT

public:
    ManualPages();

    QVariant loadResource(int in_type, const QUrl& in_url) override;
};

} // namespace host
