// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"
#include "ctl/HostCertificate.h"
#include "ctl/Interruption.h"
#include "ctl/QrText.h"

#include <QElapsedTimer>

#include <algorithm>

namespace {

/// Light text on a dark ground, whatever the terminal's colours are.
constexpr char QrColours[] = "\033[97;40m";
constexpr char NoColours[] = "\033[0m";

QString deviceName(const QVariantHash &state)
{
    return state.value(QStringLiteral("device")).toHash().value(QStringLiteral("name")).toString();
}

/// Shows a code with which one device can pair with the host, until that is over.
class PairingWatch {
public:
    explicit PairingWatch(HostSession &session)
        : m_session(session)
    {
        m_session.client().setNotified([this](const QString &method, const QVariantHash &params) {
            if (method == QLatin1String("pairing.changed"))
                take(params);
        });
    }
    ~PairingWatch() { m_session.client().setNotified({}); }

    PairingWatch(const PairingWatch &) = delete;
    PairingWatch &operator=(const PairingWatch &) = delete;

    CtlResult<> run();

private:
    void take(const QVariantHash &state);
    void show(const QVariantHash &pairing);
    void showQr(const QString &address);
    CtlResult<> tellEnd();

    HostSession &m_session;
    /// What the pairing had left when it began.
    int m_seconds = 0;
    QElapsedTimer m_elapsed;
    /// The state that ended it; empty before.
    QVariantHash m_end;
    bool m_isReplaced = false;
    bool m_isInterrupted = false;
};

CtlResult<> PairingWatch::run()
{
    const bool owner = m_session.options().owner;
    const auto pairing = m_session.call(QStringLiteral("pairing.start"),
        {{QStringLiteral("role"), owner ? QStringLiteral("owner") : QStringLiteral("listener")}});
    if (!pairing)
        return failure(pairing.error());
    m_seconds = pairing->value(QStringLiteral("seconds")).toInt();
    m_elapsed.start();
    bool isConnected = true;
    {
        const Interruption interruption(
            m_session.terminal().output, [this] { m_isInterrupted = true; });
        if (m_session.options().json)
            m_session.printJson(*pairing);
        else
            show(*pairing);
        m_session.terminal().out.flush();
        isConnected = m_session.client().waitUntil(
            [this] { return m_isInterrupted || m_isReplaced || !m_end.isEmpty(); });
        if (!m_end.isEmpty())
            return tellEnd();
    }
    if (m_isReplaced) {
        return m_session.fail(CtlStatus::Failed,
            ctlText("another code was made for this host; this one is worth nothing any more"));
    }
    if (!isConnected)
        return m_session.fail(CtlStatus::NoHost, ctlText("the host is gone"));
    // A second signal ends the program, if the host takes long.
    if (const auto stopped = m_session.call(QStringLiteral("pairing.stop")); !stopped)
        return failure(stopped.error());
    return m_session.fail(CtlStatus::Failed, ctlText("the pairing was stopped"));
}

void PairingWatch::take(const QVariantHash &state)
{
    if (state.value(QStringLiteral("state")) != QLatin1String("open")) {
        m_end = state;
        return;
    }
    // One that has more time left than ours is another one. A second is for what was rounded.
    const qint64 left = m_seconds - m_elapsed.elapsed() / 1000;
    m_isReplaced = state.value(QStringLiteral("seconds")).toInt() > left + 1;
}

void PairingWatch::show(const QVariantHash &pairing)
{
    const QString code = pairing.value(QStringLiteral("code")).toString();
    const QStringList urls = pairing.value(QStringLiteral("urls")).toStringList();
    const QString fingerprint = pairing.value(QStringLiteral("fingerprint")).toString();
    std::ostream &out = m_session.terminal().out;
    out << ctlText("Code: ").toStdString() << m_session.style().bold(printableText(code)) << '\n';
    if (!urls.isEmpty())
        showQr(urls.first() + QStringLiteral("pair#") + code);
    m_session.printText(
        ctlText("For %1 seconds it can be entered at one of these addresses:").arg(m_seconds));
    for (const QString &url : urls)
        m_session.printText(QStringLiteral("    ") + url + QStringLiteral("pair"));
    if (!urls.isEmpty()) {
        m_session.printText(ctlText("or with: veskctl --host %1 join %2")
                                .arg(shellWord(urls.first()), shellWord(code)));
    }
    if (!fingerprint.isEmpty()) {
        m_session.printText(ctlText("The fingerprint of the certificate is:"));
        const QStringList lines
            = m_session.isForTerminal() ? fingerprintLines(fingerprint) : QStringList {fingerprint};
        for (const QString &line : lines)
            m_session.printText(QStringLiteral("    ") + line);
    }
}

void PairingWatch::showQr(const QString &address)
{
    const CtlTerminal &terminal = m_session.terminal();
    if (!m_session.isForTerminal() || !terminal.unicode)
        return;
    const QStringList lines = qrText(address, terminal.width);
    for (const QString &line : lines) {
        terminal.out << (terminal.colours ? QrColours : "") << line.toStdString()
                     << (terminal.colours ? NoColours : "") << '\n';
    }
}

CtlResult<> PairingWatch::tellEnd()
{
    const QString state = m_end.value(QStringLiteral("state")).toString();
    if (state == QLatin1String("paired")) {
        m_session.tell(ctlText("%1: paired").arg(deviceName(m_end)), m_end);
        return {};
    }
    if (state == QLatin1String("failed")) {
        return m_session.fail(CtlStatus::Failed,
            ctlText("wrong codes were entered too often; the pairing has ended"));
    }
    if (state == QLatin1String("expired"))
        return m_session.fail(CtlStatus::Failed, ctlText("nobody entered the code in time"));
    return m_session.fail(CtlStatus::Failed, ctlText("the pairing was stopped"));
}

} // namespace

void addPairCommand(Command app, CtlCommandLine &line)
{
    addCommand(app, "pair", "Show a code that lets another device in", line,
        [](HostSession &session) { return PairingWatch(session).run(); })
        .addFlag("--owner", line.options.owner, "Also to the settings, accounts and devices");
}
