#pragma once

#include <QByteArray>
#include <QVariant>

/// \a value as VeskJson::write() promises it.
QByteArray writeJson(const QVariant &value);
