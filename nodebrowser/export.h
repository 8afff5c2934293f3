// SPDX-License-Identifier: MIT
/// The export macros of the browser library: NODEBROWSER_EXPORT puts a class on its public surface,
/// NODEBROWSER_NO_EXPORT takes a member of such a class off it.
#pragma once

#if defined(NODEBROWSER_STATIC)
#define NODEBROWSER_EXPORT
#elif defined(_WIN32)
#if defined(NODEBROWSER_BUILD)
#define NODEBROWSER_EXPORT __declspec(dllexport)
#else
#define NODEBROWSER_EXPORT __declspec(dllimport)
#endif
#else
#define NODEBROWSER_EXPORT __attribute__((visibility("default")))
#endif

#if defined(__GNUC__) && !defined(_WIN32)
#define NODEBROWSER_NO_EXPORT __attribute__((visibility("hidden")))
#else
#define NODEBROWSER_NO_EXPORT
#endif
