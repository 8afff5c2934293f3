# SPDX-License-Identifier: MIT
# Makes a page of the site from one that is also read as it is. The licence line goes, or it would come before the
# title. Of two pages with the project's name, one gets another. Blocks in Graphviz's language become drawings that look
# alike. A link to the folder of an example leads to the page of its code. A link to another folder, or to a file without
# an ending, becomes its text: the site has pages only.
1s/^<!-- SPDX-License-Identifier: MIT -->$//
s/^# nodebrowser$/# The read-me/
/^```dot$/,/^```$/{
    s/^```dot$/\\dot/
    s/^```$/\\enddot/
    s/^digraph .*{$/& graph [fontname=sans, fontsize=10, ranksep=0.35] node [fontname=sans, fontsize=10, shape=box]/
    s/^digraph .*]$/& edge [fontname=sans, fontsize=9, arrowsize=0.7]/
}
/^```[a-z]/,/^```$/b
/^    /b
s/\[\([^]]*\)\](\.\.\/examples\/\([a-z-]*\))/<a href="example_code_\2.html">\1<\/a>/g
s/\[\([^]]\{1,\}\)\](\([^):# ]*\/\)\{0,1\}[^):# ./]*)/\1/g
