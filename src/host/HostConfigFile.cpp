// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/HostConfigFile.h"

#include "api/web/VeskJson.h"
#include "host/HostOptions.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

using Done = Result<void, QString>;

constexpr qint64 MaxSize = 1024 * 1024;

Result<QVariantHash, QString> readObject(const QString &file)
{
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return failure(source.errorString());
    const QByteArray bytes = source.read(MaxSize + 1);
    if (bytes.size() > MaxSize)
        return failure(QStringLiteral("the file is too large"));
    VeskError error;
    const QVariant content = VeskJson::parse(bytes, error);
    if (!error.isEmpty()) {
        return failure(
            QStringLiteral("%1 at byte %2").arg(error.message(), QString::number(error.offset())));
    }
    if (content.userType() != QMetaType::QVariantHash)
        return failure(QStringLiteral("an object is needed"));
    return content.toHash();
}

/// The values of a member, as they are set one by one.
Result<QVariantList, QString> valuesOf(HostOption::Kind kind, const QVariant &member)
{
    if (kind == HostOption::Repeated) {
        if (member.userType() != QMetaType::QVariantList)
            return failure(QStringLiteral("a list is needed"));
        return member.toList();
    }
    if (kind != HostOption::Assignment)
        return QVariantList {member};
    if (member.userType() != QMetaType::QVariantHash)
        return failure(QStringLiteral("an object of paths and values is needed"));
    QVariantList values;
    const QVariantHash entries = member.toHash();
    for (auto it = entries.constBegin(); it != entries.constEnd(); ++it)
        values.append(QVariant(QVariantHash {{it.key(), it.value()}}));
    return values;
}

Done setMember(const QString &key, const QVariant &member, const QString &folder,
    HostConfigMembers which, HostOptions &options)
{
    const QVector<HostOption> &known = hostOptions();
    const auto option = std::find_if(known.begin(), known.end(),
        [&key](const HostOption &each) { return key == QLatin1String(each.key); });
    if (option == known.end())
        return failure(QStringLiteral("there is no \"%1\"").arg(key));
    const bool isValues = option->kind == HostOption::Assignment;
    if (isValues != (which == HostConfigMembers::Values))
        return {};
    const auto values = valuesOf(option->kind, member);
    if (!values)
        return failure(QStringLiteral("%1: %2").arg(key, values.error()));
    for (const QVariant &value : *values) {
        if (const Done done = option->set(options, value, folder); !done)
            return failure(QStringLiteral("%1: %2").arg(key, done.error()));
    }
    return {};
}

} // namespace

Result<QVariantHash, QString> readHostConfigFile(const QString &file)
{
    const auto members = readObject(file);
    if (!members)
        return failure(QStringLiteral("%1: %2").arg(file, members.error()));
    return *members;
}

Done applyHostConfig(
    const QVariantHash &members, const QString &file, HostConfigMembers which, HostOptions &options)
{
    const QString folder = QFileInfo(file).absolutePath();
    for (auto it = members.constBegin(); it != members.constEnd(); ++it) {
        const Done done = setMember(it.key(), it.value(), folder, which, options);
        if (!done)
            return failure(QStringLiteral("%1: %2").arg(file, done.error()));
    }
    return {};
}
