// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/store/StateVersion.h"

#include "api/core/log.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QStringList>

#include <algorithm>
#include <climits>
#include <optional>
#include <utility>

VESK_LOGGER("Host")

namespace {

/// A longer file is no number.
constexpr std::size_t MaxSize = 64;

/// One beyond all that there can be is INT_MAX.
std::optional<int> numberIn(const std::string &bytes)
{
    QByteArray digits = QByteArray::fromStdString(bytes);
    if (digits.endsWith('\n'))
        digits.chop(1);
    const bool isNumber = !digits.isEmpty()
        && std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (!isNumber)
        return std::nullopt;
    bool fits = false;
    const int number = digits.toInt(&fits);
    return fits ? number : INT_MAX;
}

std::optional<int> numberIn(const Result<files::KeptFile::Content, files::Problem> &content)
{
    return content && *content ? numberIn(**content) : std::nullopt;
}

bool isMissing(const Result<files::KeptFile::Content, files::Problem> &content)
{
    return content && !*content;
}

} // namespace

StateVersion::StateVersion(const QString &folder, Steps steps)
    : m_folder(folder)
    , m_steps(std::move(steps))
    , m_file(QFile::encodeName(folder + QStringLiteral("/version")).toStdString(), MaxSize)
{
}

const StateVersion::Steps &StateVersion::released()
{
    static const Steps steps {
        {}, // 1: folders from before had the same files, and no number
    };
    return steps;
}

/// Of a file that is damaged the copy counts.
Result<int, QString> StateVersion::read() const
{
    const auto content = m_file.read();
    if (const auto number = numberIn(content))
        return *number;
    const auto copy = m_file.readLastGood();
    if (const auto number = numberIn(copy))
        return *number;
    if (isMissing(content) && isMissing(copy))
        return 0;
    const auto &unread = isMissing(content) ? copy : content;
    return failure(
        QStringLiteral("there is no telling which version the state folder %1 has (%2): write the "
                       "right one into the file \"version\" in it, 1 for Vesk 0.1 (this program "
                       "knows up to %3), or choose another folder with --state-dir. Nothing in it "
                       "was changed")
            .arg(m_folder,
                unread ? QStringLiteral("its file holds no number")
                       : QString::fromStdString(unread.error().text),
                QString::number(newest())));
}

Result<int, QString> StateVersion::checked() const
{
    auto version = read();
    if (!version || *version <= newest())
        return version;
    return failure(QStringLiteral(
        "the state folder %1 has version %2, and this program knows up to %3: install "
        "the version of Vesk that wrote it, or choose another folder with "
        "--state-dir. Nothing in it was changed")
                       .arg(m_folder,
                           *version == INT_MAX ? QStringLiteral("2147483647 or later")
                                               : QString::number(*version),
                           QString::number(newest())));
}

Result<void, QString> StateVersion::check() const
{
    if (m_folder.isEmpty())
        return {};
    if (const auto version = checked(); !version)
        return failure(version.error());
    return {};
}

Result<void, QString> StateVersion::bringUpToDate(const Result<void, files::Problem> &held)
{
    if (m_folder.isEmpty())
        return {};
    const auto found = checked();
    if (!found)
        return failure(found.error());
    for (int version = isNew() ? newest() : *found; version < newest(); ++version) {
        const Step &step = m_steps[static_cast<std::size_t>(version)];
        if (!step)
            continue;
        auto done = held;
        if (done)
            done = step(m_folder);
        if (done)
            done = write(version + 1);
        if (done)
            continue;
        return failure(
            QStringLiteral("the state folder %1 cannot be brought from version %2 to %3: "
                           "%4. What it held is still there for the version of Vesk that "
                           "wrote it")
                .arg(m_folder, QString::number(version), QString::number(version + 1),
                    QString::fromStdString(done.error().text)));
    }
    if (isWritten(newest()))
        return {};
    if (const auto written = held ? write(newest()) : held; !written) {
        VESK_WARN("The version of " << m_folder << " cannot be written: " << written.error().text);
    }
    return {};
}

bool StateVersion::isNew() const
{
    const QStringList entries = QDir(m_folder).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    return entries.isEmpty() || entries == QStringList {QStringLiteral("lock")};
}

bool StateVersion::isWritten(int version) const
{
    return numberIn(m_file.read()) == version && numberIn(m_file.readLastGood()) == version;
}

Result<void, files::Problem> StateVersion::write(int version)
{
    const std::string bytes = std::to_string(version) + '\n';
    // The copy first: once there is a later number, no damage leads back to an earlier one.
    if (auto written = m_file.writeLastGood(bytes); !written)
        return written;
    if (const auto present = m_file.read(); !numberIn(present) && !isMissing(present)) {
        if (auto moved = m_file.setAside(); !moved)
            return failure(std::move(moved).error());
    }
    return m_file.write(bytes);
}
