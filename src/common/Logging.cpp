#include "common/Logging.h"

Q_LOGGING_CATEGORY(lcWebSdk, "varnel.websdk")
