// SPDX-License-Identifier: MIT
/// Single steps for a tool that counts their instructions.
#pragma once

#include "content.h"

class QString;

/// Prepares a browser, runs the step "key" or "open" once as CountedStep(), and prints its name and the number of items.
/// "key" types the last letter of a word with the tab "All"; "open" attaches the library.
void CountStep(const Content& in_content, const QString& in_step);
