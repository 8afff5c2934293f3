// SPDX-License-Identifier: MIT
/// Single steps for a tool that counts instructions.
#pragma once

#include "content.h"

class QString;

/// Prepares a browser, runs a step once in CountedStep(), and prints its name and the count of items. The steps: "key"
/// types the last letter of a word with the tab "All"; "open" attaches the library; "rename" gives one item another
/// name; "onebuild" is the lower bound of one build of the list.
void CountStep(const Content& in_content, const QString& in_step);
