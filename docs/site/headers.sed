# SPDX-License-Identifier: MIT
# Hides what the compiler writes by itself: a special member that is defaulted or deleted, unless a comment says
# something about it. The line stays, so that line numbers are right.
/^ *\/\/\//{
    :comment
    n
    /^ *\/\/\//b comment
    b
}
/= \(default\|delete\);$/s/.*//
