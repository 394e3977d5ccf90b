#include "host/SettingsStore.h"

#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/values/VeskValuePaths.h"
#include "host/HostValues.h"

#include <QRandomGenerator>
#include <QRegularExpression>

VESK_LOGGER("Host")

namespace {

bool isMemberId(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("^[0-9a-f]{32}\\z"));
    return form.match(text).hasMatch();
}

QString newMemberId()
{
    QString id;
    for (int part = 0; part < 2; ++part) {
        const quint64 bits = QRandomGenerator::system()->generate64();
        id += QStringLiteral("%1").arg(bits, 16, 16, QLatin1Char('0'));
    }
    return id;
}

} // namespace

SettingsStore::SettingsStore(const QString &folder, CMValuesWorker *values, QObject *parent)
    : QObject(parent)
    , m_file(folder)
    , m_values(values)
{
}

SettingsStore::~SettingsStore()
{
    flush();
}

void SettingsStore::load()
{
    m_kept = m_file.read();
    applyKept();
    ensureMemberId();
    veskConnect(m_values, &CMValuesWorker::valueChanged, this, &SettingsStore::valueChanged);
    flush();
}

void SettingsStore::applyKept()
{
    for (auto it = m_kept.values.constBegin(); it != m_kept.values.constEnd(); ++it) {
        const CMPath path = CMPath::fromEncoded(it.key());
        const HostValueDefinition *definition = findHostValue(path);
        if (!definition || definition->access != CMValuesWorker::Writable) {
            VESK_WARN("A setting that is kept is not known here: " << path);
            continue;
        }
        const VeskValue value = CMValuesWorker::fromPlain(it.value(), definition->initial.type());
        if (value.isEmpty())
            VESK_WARN("A setting that is kept has no fitting value: " << path);
        else if (!m_values->setValue(path, value))
            VESK_INFO("A setting that is kept is overruled at start: " << path);
    }
}

void SettingsStore::ensureMemberId()
{
    if (!isMemberId(m_kept.memberId)) {
        m_kept.memberId = newMemberId();
        m_dirty = true;
    }
    m_values->setValue(VeskSystemMemberIdPath(), VeskValue::fromString(m_kept.memberId));
}

void SettingsStore::valueChanged(const CMPath &path, const VeskValue &value)
{
    const HostValueDefinition *definition = findHostValue(path);
    if (!definition || definition->access != CMValuesWorker::Writable)
        return;
    // Only what differs is kept, so that a better default of a later version counts.
    if (value == definition->initial)
        m_kept.values.remove(path.toEncoded());
    else
        m_kept.values.insert(path.toEncoded(), plainValue(value));
    changed();
}

void SettingsStore::changed()
{
    m_dirty = true;
    // Changes that come together are written together.
    if (!m_scheduled)
        QMetaObject::invokeMethod(
            this, [this] { flush(); }, Qt::QueuedConnection);
    m_scheduled = true;
}

bool SettingsStore::flush()
{
    m_scheduled = false;
    if (!m_dirty)
        return true;
    m_dirty = !m_file.write(m_kept);
    return !m_dirty;
}
