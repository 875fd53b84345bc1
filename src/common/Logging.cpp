#include "common/Logging.h"

Q_LOGGING_CATEGORY(lcWebSdk, "varnel.websdk")

QDebug logLine(QtMsgType level, const Operation &operation)
{
    const QMessageLogger logger(operation.file, operation.line, operation.function);
    QDebug line = level == QtWarningMsg ? logger.warning(lcWebSdk()) : logger.debug(lcWebSdk());
    line << operation.name;
    return line;
}
