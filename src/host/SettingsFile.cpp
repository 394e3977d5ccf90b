#include "host/SettingsFile.h"

#include "api/core/log.h"
#include "api/web/VeskJson.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>

#include <fcntl.h>
#include <unistd.h>

VESK_LOGGER("Host")

namespace {

const QString &valuesKey()
{
    static const QString key = QStringLiteral("values");
    return key;
}

const QString &memberIdKey()
{
    static const QString key = QStringLiteral("memberId");
    return key;
}

/// Whether \a content has the form that is written.
bool isSettings(const QVariant &content)
{
    const QVariantHash members = content.toHash();
    const QVariant values = members.value(valuesKey());
    const QVariant memberId = members.value(memberIdKey());
    return content.userType() == QMetaType::QVariantHash
        && (values.isNull() || values.userType() == QMetaType::QVariantHash)
        && (memberId.isNull() || memberId.userType() == QMetaType::QString);
}

/// The name of a replaced file is on the disk only once its folder is.
void syncFolder(const QString &folder)
{
    const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

} // namespace

SettingsFile::SettingsFile(const QString &folder)
    : m_folder(folder)
    , m_file(folder.isEmpty() ? QString() : folder + QStringLiteral("/settings.json"))
{
}

KeptSettings SettingsFile::read()
{
    if (m_file.isEmpty() || !QFile::exists(m_file))
        return {};
    QFile file(m_file);
    QVariant content;
    VeskError error;
    if (file.open(QIODevice::ReadOnly)) {
        const QByteArray bytes = file.read(MaxSize + 1);
        if (bytes.size() <= MaxSize)
            content = VeskJson::parse(bytes, error);
    }
    if (!isSettings(content)) {
        keepAside();
        return {};
    }
    const QVariantHash members = content.toHash();
    return {members.value(valuesKey()).toHash(), members.value(memberIdKey()).toString()};
}

void SettingsFile::keepAside()
{
    const QString aside = m_file + QStringLiteral(".damaged");
    QFile::remove(aside);
    const bool kept = QFile::rename(m_file, aside);
    VESK_WARN("The settings in " << m_file << " cannot be read; starting without them."
                                 << (kept ? " The file is kept as " : " It cannot be kept as ")
                                 << aside);
}

bool SettingsFile::write(const KeptSettings &settings)
{
    if (m_file.isEmpty())
        return true;
    QVariantHash content {{valuesKey(), settings.values}};
    if (!settings.memberId.isEmpty())
        content.insert(memberIdKey(), settings.memberId);
    return writeBytes(VeskJson::write(content) + '\n');
}

bool SettingsFile::writeBytes(const QByteArray &bytes)
{
    if (!QDir().mkpath(m_folder)) {
        VESK_ERROR("The settings cannot be kept: no folder " << m_folder);
        return false;
    }
    // commit() brings the bytes to the disk before it replaces the file.
    QSaveFile file(m_file);
    const bool written = file.open(QIODevice::WriteOnly)
        && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner)
        && file.write(bytes) == bytes.size() && file.commit();
    if (!written) {
        VESK_ERROR("The settings cannot be kept in " << m_file << ": " << file.errorString());
        return false;
    }
    syncFolder(m_folder);
    return true;
}

QString SettingsFile::defaultFolder()
{
    const QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (QDir::isAbsolutePath(state))
        return state + QStringLiteral("/vesk");
    const QString home = qEnvironmentVariable("HOME");
    if (QDir::isAbsolutePath(home))
        return home + QStringLiteral("/.local/state/vesk");
    return ::geteuid() == 0 ? QStringLiteral("/var/lib/vesk") : QString();
}
