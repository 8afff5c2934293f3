// SPDX-License-Identifier: MIT
/// A service of another class than the one that is looked up under its name.
#pragma once

#include "datamodel/system.h"

/// Offers nothing: whoever looks it up for an interface has to take it for none.
class OtherService : public hmx::IBase
{
};
