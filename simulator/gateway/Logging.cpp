#include "gateway/Logging.h"

Q_LOGGING_CATEGORY(gatewayLog, "varnel.simulator")
