#pragma once

#include <QtGlobal>

/// Marks the five classes that hosts use; everything else stays inside the library.
#if defined(VARNEL_WEBSDK_STATIC)
#    define VARNEL_WEBSDK_API
#elif defined(VARNEL_WEBSDK_BUILD)
#    define VARNEL_WEBSDK_API Q_DECL_EXPORT
#else
#    define VARNEL_WEBSDK_API Q_DECL_IMPORT
#endif
