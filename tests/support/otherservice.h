// SPDX-License-Identifier: MIT
/// A service of the wrong class for its name.
#pragma once

#include "datamodel/system.h"

/// It offers no interface. Whoever looks it up must treat it as absent.
class OtherService : public hmx::IBase
{
};
