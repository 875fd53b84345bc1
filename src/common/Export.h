#pragma once

/// @file
/// The macro that marks what hosts use.

#include <QtGlobal>

#if defined(VARNEL_WEBSDK_STATIC)
/// Marks the five classes that hosts use; everything else stays inside the library. VARNEL_WEBSDK_STATIC, for users of
/// the static archive, comes with the CMake target VarnelWebSDK::VarnelWebSDK.
#    define VARNEL_WEBSDK_API
#elif defined(VARNEL_WEBSDK_BUILD)
#    define VARNEL_WEBSDK_API Q_DECL_EXPORT
#else
#    define VARNEL_WEBSDK_API Q_DECL_IMPORT
#endif
