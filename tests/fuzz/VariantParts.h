#pragma once

#include "Decisions.h"

#include <QCborValue>
#include <QJsonValue>
#include <QVariant>

/// What random trees are made of. Each of these is small when the decisions are over. None takes two decisions in one
/// expression that leaves their order to the compiler: the same bytes give the same tree everywhere.

/// Any value at all, containers too.
QVariant anyValue(Decisions &decisions);
QVariantList anyList(Decisions &decisions);
QVariantMap anyMap(Decisions &decisions);
QVariantHash anyHash(Decisions &decisions);

/// A variant of any number type, the characters among them.
QVariant anyNumber(Decisions &decisions);
/// For as many types as there are: small, near an end of a type, near what a double holds exactly, or anything.
quint64 anyWhole(Decisions &decisions);
double anyDouble(Decisions &decisions);

QString anyText(Decisions &decisions);
/// Few and short, so that the keys of one map meet: the same again, or different only in one awkward character.
QString anyKey(Decisions &decisions);
QByteArray anyBytes(Decisions &decisions);

/// A variant that holds a JSON or a CBOR value, array, object or document.
QVariant anyDocument(Decisions &decisions);
QJsonValue anyJson(Decisions &decisions);
QCborValue anyCbor(Decisions &decisions);

/// A variant of any other type: times, addresses, geometry, pointers, enumerations, types of our own.
QVariant anyOther(Decisions &decisions);
QDateTime anyDateTime(Decisions &decisions);
QUrl anyUrl(Decisions &decisions);
QUuid anyUuid(Decisions &decisions);
