// SPDX-License-Identifier: MIT
#include "count.h"

#include "countedstep.h"
#include "measure.h"
#include "panel.h"

#include <QLineEdit>
#include <QString>

#include <cstdio>

void CountStep(const Content& in_content, const QString& in_step)
{
    const std::unique_ptr<CNodeBrowser> browser = ShowBrowser();
    const auto open = [&] { browser->SetItemLibrary(in_content.m_library.GetAccessor()); };
    QLineEdit* const field = GetPanel(*browser).m_field;
    if (in_step == QLatin1String("open"))
    {
        CountedStep(*browser, open);
    }
    else
    {
        open();
        Settle();
        field->setText(QLatin1String("nois"));
        Settle();
        CountedStep(*browser, [field] { field->setText(QLatin1String("noise")); });
    }
    std::printf("%s\t%zu\n", in_step.toLatin1().constData(), in_content.GetCount());
}
