// SPDX-License-Identifier: MIT
#include "searching.h"

#include "bounds.h"
#include "measure.h"
#include "subjects.h"

#include <QLineEdit>
#include <QScrollBar>

#include <cstdio>
#include <iterator>

namespace
{

/// One letter, growing words, two words, words in tags only, and a word that nothing has. Neighbours differ.
const char* const gTexts[] = {"b",        "bl", "ble",  "blend",      "blend c",       "blend colour",
                              "noise 3d", "e",  "wave", "procedural", "studio legacy", "zzzzzz"};

double TimeKey(const Panel& in_panel, const QString& in_text)
{
    const double time = TimeToFrame(in_panel, [&] { in_panel.m_field->setText(in_text); });
    Settle();
    return time;
}

double TimeLowerBound(const Panel& in_browser, const std::string& in_names, const QString& in_text)
{
    const std::vector<std::string> words = SplitPeerWords(in_text);
    volatile std::size_t found = 0;
    return Time([&] { found = CountOccurrences(in_names, words); }) + TimeRepaint(in_browser);
}

/// Whether the range of the browser's scroll bar fits so many rows.
bool HasRows(const Panel& in_browser, std::size_t in_rows)
{
    const int height = static_cast<int>(in_rows) * gRowHeight;
    const int available = gWindowHeight - gListTop;
    return in_browser.m_bar->isHidden() ? height <= available : in_browser.m_bar->maximum() == height - available;
}

/// Whether all windows found equally many rows.
bool Agree(const Subjects& in_subjects, const char* in_text)
{
    if (!in_subjects.m_list)
        return true;
    const std::size_t listRows = in_subjects.m_list->GetRowCount();
    const std::size_t treeRows = in_subjects.m_tree->GetRowCount();
    if (listRows == treeRows && HasRows(GetPanel(*in_subjects.m_browser), listRows))
        return true;
    std::fprintf(stderr, "\"%s\" finds %zu rows in the list view, %zu in the tree, and not as many in the browser\n",
                 in_text, listRows, treeRows);
    return false;
}

/// A row for all texts together, and one for the slowest of them.
void PrintKeys(std::size_t in_items, const std::vector<Samples>& in_texts)
{
    Samples all;
    std::vector<Figures> medians;
    for (const Samples& text : in_texts)
    {
        medians.push_back(Medians(text));
        for (std::size_t column = 0; column < all.size(); ++column)
            all[column].insert(all[column].end(), text[column].begin(), text[column].end());
    }
    PrintRow("key", in_items, Medians(all));
    PrintRow("key-max", in_items, Largest(medians));
}

} // namespace

bool MeasureKeys(const Content& in_content, const std::vector<NamedItem>& in_items)
{
    const std::string names = JoinLowerNames(in_items);
    const Subjects subjects(in_content);
    std::vector<Samples> samples(std::size(gTexts));
    for (int round = 0; round < gRepetitions; ++round)
        for (std::size_t i = 0; i < samples.size(); ++i)
        {
            const QString text = QString::fromLatin1(gTexts[i]);
            for (const Subject& subject : subjects.m_all)
                samples[i][subject.m_column].push_back(TimeKey(subject.m_panel, text));
            if (!Agree(subjects, gTexts[i]))
                return false;
            samples[i][eColumnLowerBound].push_back(TimeLowerBound(GetPanel(*subjects.m_browser), names, text));
        }
    PrintKeys(in_content.GetCount(), samples);
    return true;
}
