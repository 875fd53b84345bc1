#pragma once

#include <QtGlobal>

/// Marks every class and constant that the host terminal defines and the library only uses.
/// A host defines VARNEL_HOST_BUILD while it compiles its definitions.
#if defined(VARNEL_HOST_STATIC)
#    define VARNEL_HOST_API
#elif defined(VARNEL_HOST_BUILD)
#    define VARNEL_HOST_API Q_DECL_EXPORT
#else
#    define VARNEL_HOST_API Q_DECL_IMPORT
#endif
