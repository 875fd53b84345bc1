#pragma once

/// @file
/// The macro that marks what the host defines.

#include <QtGlobal>

#if defined(VARNEL_HOST_STATIC)
/// Marks every class and constant that the host terminal defines and the library only uses.
/// A host defines VARNEL_HOST_BUILD while it compiles its definitions; a host that is linked statically defines
/// VARNEL_HOST_STATIC everywhere. The CMake function varnel_implements_host() defines them.
#    define VARNEL_HOST_API
#elif defined(VARNEL_HOST_BUILD)
#    define VARNEL_HOST_API Q_DECL_EXPORT
#else
#    define VARNEL_HOST_API Q_DECL_IMPORT
#endif
