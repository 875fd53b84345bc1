#include "host/SecurityTypes.h"

#include "Tessar_Values.h"

QString securityTypeText(sim::SecurityKind kind)
{
    switch (kind) {
    case sim::SecurityKind::Share:
        return QStringLiteral("Share");
    case sim::SecurityKind::Fund:
        return QStringLiteral("Fund");
    case sim::SecurityKind::Bond:
        return Tessar_Values::MdcSecurityType::BondType;
    case sim::SecurityKind::Future:
        return QStringLiteral("Future");
    }
    return {};
}
