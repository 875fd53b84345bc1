#include "platform/Logging.h"

Q_LOGGING_CATEGORY(terminalLog, "varnel.terminal")
