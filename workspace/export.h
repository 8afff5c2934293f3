// SPDX-License-Identifier: MIT
/// The export macro of the workspace.
#pragma once

#if defined(WORKSPACE_STATIC)
#define WORKSPACE_EXPORT
#else
#define WORKSPACE_EXPORT __attribute__((visibility("default")))
#endif
