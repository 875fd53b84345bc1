#pragma once

#include "HostApi.h"

/// The host bus as seen by its presenters: only the kinds of thread a presenter may ask for.
class VARNEL_HOST_API IMessageInterface {
public:
    /// Kinds of thread on which a presenter lives. The library uses this one only.
    enum ThreadType {
        WebThreadType = 15, ///< the kind that the web message center registers with
    };
};
