// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/Outputs.h"

#include "api/core/Language.h"
#include "api/core/Mutex.h"
#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/nodes/CMValuesWorker.h"
#include "host/sound/SoundOutput.h"

#include <algorithm>
#include <thread>

VESK_LOGGER("Sound")

namespace {

TrString words(const char *text, const QString &value = QString())
{
    QVector<TrArg> values;
    if (!value.isNull())
        values.append(TrArg(value));
    return TrString(QStringLiteral("Player"), QString::fromLatin1(text), QString(), -1, values);
}

bool isDevice(const AudioOutputSpec &spec)
{
    return spec.kind == AudioOutputSpec::Alsa || spec.kind == AudioOutputSpec::Pulse
        || spec.kind == AudioOutputSpec::PipeWire;
}

TrString nameOf(const AudioOutputSpec &spec)
{
    switch (spec.kind) {
    case AudioOutputSpec::Auto:
        return words(QT_TRANSLATE_NOOP("Player", "The machine's output"));
    case AudioOutputSpec::Null:
        return words(QT_TRANSLATE_NOOP("Player", "Nowhere"));
    default:
        return Language::ntr(spec.text());
    }
}

} // namespace

const CMPath &playerOutputPath()
{
    static const CMPath path(QStringLiteral("settings"), QStringLiteral("player/output"));
    return path;
}

/// By which other threads reach the object, as long as it is there. Any thread.
struct Outputs::Mailbox {
    VeskMutex mutex;
    Outputs *outputs VESK_GUARDED_BY(mutex) = nullptr;

    template <class Act>
    void post(Act act)
    {
        const VeskMutexLock lock(mutex);
        if (Outputs *there = outputs) {
            QMetaObject::invokeMethod(
                there, [there, act = std::move(act)] { act(*there); }, Qt::QueuedConnection);
        }
    }
};

Outputs::Outputs(std::shared_ptr<SoundOutput> sound, CMValuesWorker *values,
    const std::optional<AudioOutputSpec> &given, Probe probe, QObject *parent)
    : QObject(parent)
    , m_sound(std::move(sound))
    , m_values(values)
    , m_given(given)
    , m_probe(std::move(probe))
    , m_mailbox(std::make_shared<Mailbox>())
    , m_giveUp(this)
    , m_look(this)
{
    {
        const VeskMutexLock lock(m_mailbox->mutex);
        m_mailbox->outputs = this;
    }
    m_giveUp.setSingleShot(true);
    m_look.setSingleShot(true);
    connect(&m_giveUp, &QTimer::timeout, this, &Outputs::answer);
    connect(&m_look, &QTimer::timeout, this, &Outputs::ask);
    connect(m_sound.get(), &SoundOutput::failed, this, &Outputs::onFailed, Qt::QueuedConnection);
    connect(
        m_sound.get(), &SoundOutput::outputChanged, this, &Outputs::changed, Qt::QueuedConnection);
    connect(
        m_sound.get(), &SoundOutput::healthChanged, this,
        [this](const TrString &problem) {
            m_problem = problem;
            Q_EMIT changed();
        },
        Qt::QueuedConnection);
    connect(m_values, &CMValuesWorker::valueChanged, this, &Outputs::follow);
    if (!m_given)
        follow(playerOutputPath());
}

Outputs::~Outputs()
{
    const VeskMutexLock lock(m_mailbox->mutex);
    m_mailbox->outputs = nullptr;
}

AudioOutputSpec Outputs::current() const
{
    return m_sound->spec();
}

void Outputs::list(Listed listed)
{
    VESK_ASSERT_OWN_THREAD();
    m_waiting.push_back(std::move(listed));
    m_giveUp.start(AskTime);
    ask();
}

/// Asks the sound systems, unless a thread is at it.
void Outputs::ask()
{
    if (m_isAsking)
        return;
    m_isAsking = true;
    std::thread([mailbox = m_mailbox, probe = m_probe] {
        veskSetThreadName(QStringLiteral("Outputs"));
        mailbox->post([devices = probe()](Outputs &outputs) { outputs.take(devices); });
    }).detach();
}

void Outputs::take(const QVector<OutputDevice> &devices)
{
    m_isAsking = false;
    const auto isSame = [](const OutputDevice &a, const OutputDevice &b) {
        return a.spec == b.spec && a.name == b.name;
    };
    const bool isNew
        = !std::equal(devices.begin(), devices.end(), m_devices.begin(), m_devices.end(), isSame);
    m_devices = devices;
    answer();
    if (isNew)
        Q_EMIT changed();
    if (!m_isLost)
        return;
    if (!isThere(current())) {
        m_look.start(LookTime);
        return;
    }
    VESK_INFO("the output " << current().text() << " is there again");
    m_isLost = false;
    m_problem = {};
    Q_EMIT changed();
    Q_EMIT deviceIsBack();
}

/// Answers with what is known.
void Outputs::answer()
{
    m_giveUp.stop();
    const QVector<ListedOutput> all = listed();
    for (const Listed &each : std::exchange(m_waiting, {}))
        each(all);
}

QVector<ListedOutput> Outputs::listed() const
{
    const AudioOutputSpec now = current();
    QVector<ListedOutput> all {{AudioOutputSpec {}, nameOf({}), false, true}};
    const auto add = [&](const AudioOutputSpec &spec, const TrString &name, bool isAvailable) {
        const bool isListed = std::any_of(
            all.begin(), all.end(), [&](const ListedOutput &each) { return each.spec == spec; });
        if (!isListed)
            all.append({spec, name, false, isAvailable});
    };
    for (const OutputDevice &device : m_devices)
        add(device.spec, Language::ntr(device.name), true);
    if (m_given)
        add(*m_given, nameOf(*m_given), isThere(*m_given));
    add(now, nameOf(now), isThere(now));
    for (ListedOutput &each : all)
        each.isCurrent = each.spec == now;
    return all;
}

/// A named device is there if the sound system lists it; of all else nobody knows before it is
/// used. ALSA's names that are not listed are those of its configuration.
bool Outputs::isThere(const AudioOutputSpec &spec) const
{
    const bool isListed = std::any_of(m_devices.begin(), m_devices.end(),
        [&](const OutputDevice &device) { return device.spec == spec; });
    if (isListed || !isDevice(spec))
        return true;
    if (spec.device.isEmpty()) {
        return std::any_of(m_devices.begin(), m_devices.end(),
            [&](const OutputDevice &device) { return device.spec.kind == spec.kind; });
    }
    return spec.kind == AudioOutputSpec::Alsa && !m_isLost;
}

void Outputs::choose(const QString &output, Chosen chosen)
{
    VESK_ASSERT_OWN_THREAD();
    const auto spec = AudioOutputSpec::parse(output);
    if (!spec)
        return chosen(failure(Language::ntr(spec.error())));
    if (!spec->isForClients() && (!m_given || *spec != *m_given) && *spec != current()) {
        return chosen(
            failure(words(QT_TRANSLATE_NOOP("Player",
                              "The output \"%1\" can only be given when the player is started."),
                output)));
    }
    // A sound system says only late, with the first sound, that it has no such device.
    list([this, spec = *spec, chosen = std::move(chosen)](const QVector<ListedOutput> &) {
        if (!isThere(spec)) {
            return chosen(failure(words(
                QT_TRANSLATE_NOOP("Player", "There is no sound device \"%1\"."), spec.text())));
        }
        use(spec, [this, spec, chosen](const auto &result) {
            if (result)
                keep(spec);
            chosen(result);
        });
    });
}

/// What clients may not name is there again when the host is started with it.
void Outputs::keep(const AudioOutputSpec &spec)
{
    m_isWriting = true;
    m_values->setValue(playerOutputPath(),
        VeskValue::fromString(spec.isForClients() ? spec.text() : AudioOutputSpec().text()));
    m_isWriting = false;
}

void Outputs::use(const AudioOutputSpec &spec, Chosen chosen)
{
    m_sound->setOutput(spec, [mailbox = m_mailbox, chosen = std::move(chosen)](const auto &result) {
        mailbox->post([chosen, result](Outputs &outputs) {
            if (result) {
                outputs.m_isLost = false;
                outputs.m_look.stop();
                outputs.m_problem = {};
            }
            chosen(result);
            Q_EMIT outputs.changed();
        });
    });
}

void Outputs::follow(const CMPath &path)
{
    if (path != playerOutputPath() || m_isWriting)
        return;
    const auto spec = AudioOutputSpec::parse(
        m_values->value(path).value(VeskValueType::toString(VeskValueType::string_)).toString());
    if (!spec || *spec == current())
        return;
    use(*spec, [this](const Result<void, TrString> &result) {
        if (!result)
            m_problem = result.error();
    });
}

void Outputs::onFailed(const TrString &problem)
{
    VESK_WARN("the output " << current().text() << ": " << problem.toSourceString());
    const QVector<ListedOutput> known = listed();
    const auto one = std::find_if(
        known.begin(), known.end(), [](const ListedOutput &each) { return each.isCurrent; });
    m_problem = isDevice(current())
        ? words(QT_TRANSLATE_NOOP("Player", "The sound device \"%1\" has gone or does not work."),
            one->name.toString())
        : problem;
    if (isDevice(current())) {
        m_isLost = true;
        m_look.start(LookTime);
    }
    Q_EMIT changed();
}
