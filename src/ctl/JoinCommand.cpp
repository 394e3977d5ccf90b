// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"
#include "ctl/PairingRequest.h"
#include "ctl/PasswordInput.h"

#include "api/web/VeskJson.h"
#include "api/web/VeskUrl.h"

#include <QSysInfo>

#include <unistd.h>

namespace {

bool isCode(const QString &text)
{
    constexpr int Digits = 6;
    return text.size() == Digits && std::all_of(text.begin(), text.end(), [](QChar character) {
        return character >= QLatin1Char('0') && character <= QLatin1Char('9');
    });
}

/// Lets this user into a host elsewhere, by the code that its owner was shown.
class Join {
public:
    explicit Join(HostSession &session)
        : m_session(session)
        , m_host(session.options().host)
        , m_known(session.terminal().knownHosts)
    {
    }

    CtlResult<> run();

private:
    CtlResult<> checkOptions();
    CtlResult<HostAccess> agreeOnHost();
    CtlResult<> agreeOnCertificate(const HostCertificate &certificate);
    CtlResult<> agreeOnPlainHttp();
    CtlResult<> confirm(const QStringList &question, const QString &otherwise);
    CtlResult<QVariantHash> sendCode(const QString &key);
    Failure<CtlStatus> refuse(const PairingResponse &response);
    Failure<CtlStatus> noHost(const PairingResponse &response);

    HostSession &m_session;
    const QString m_host;
    KnownHosts m_known;
};

CtlResult<> Join::run()
{
    if (const auto checked = checkOptions(); !checked)
        return checked;
    // What cannot be kept must not use up the code.
    if (const auto prepared = m_known.prepare(); !prepared)
        return m_session.fail(CtlStatus::Failed, prepared.error());
    auto access = agreeOnHost();
    if (!access)
        return failure(access.error());
    const auto answer = sendCode(access->key);
    if (!answer)
        return failure(answer.error());
    access->token = answer->value(QStringLiteral("token")).toString().toLatin1();
    if (!HostAccess::isToken(access->token))
        return noHost({});
    const QVariantHash device = answer->value(QStringLiteral("device")).toHash();
    if (const auto kept = m_known.keep(m_host, *access); !kept) {
        return m_session.fail(CtlStatus::Failed,
            ctlText("paired, but that could not be kept: %1. Remove the device \"%2\" there, and "
                    "pair again.")
                .arg(kept.error(), device.value(QStringLiteral("name")).toString()));
    }
    QVariantHash json {{QStringLiteral("host"), m_host}, {QStringLiteral("device"), device}};
    if (!access->fingerprint.isEmpty())
        json.insert(QStringLiteral("fingerprint"), access->fingerprint);
    const bool isOwner = device.value(QStringLiteral("role")) == QLatin1String("owner");
    m_session.tell((isOwner ? ctlText("paired with %1 as its owner, under the name \"%2\"")
                            : ctlText("paired with %1 as a listener, under the name \"%2\""))
                       .arg(m_host, device.value(QStringLiteral("name")).toString()),
        json);
    return {};
}

CtlResult<> Join::checkOptions()
{
    const CtlOptions &options = m_session.options();
    if (!options.hostIsGiven) {
        return m_session.fail(CtlStatus::BadUsage,
            ctlText("a program on the host's own machine needs no pairing; say with --host or "
                    "VESK_HOST where another host is"));
    }
    if (!isCode(options.code))
        return m_session.fail(CtlStatus::BadUsage, ctlText("a code is six digits"));
    if (!options.fingerprint.isEmpty() && typedFingerprint(options.fingerprint).isEmpty()) {
        return m_session.fail(
            CtlStatus::BadUsage, ctlText("a fingerprint is 64 hexadecimal digits (SHA-256)"));
    }
    return {};
}

/// By what the host will be known. Before that, nothing is sent that others must not read.
CtlResult<HostAccess> Join::agreeOnHost()
{
    const PairingResponse page = PairingRequest(m_host).look();
    if (page.refusal == HostRefusal::WantsTls)
        return m_session.fail(CtlStatus::Failed, m_session.refusalText(page.refusal, {}));
    // The page itself may be missing; the answer to the code will show whether it is a host.
    if (page.status == 0)
        return noHost(page);
    if (page.certificate.key.isEmpty()) {
        if (const auto agreed = agreeOnPlainHttp(); !agreed)
            return failure(agreed.error());
        return HostAccess();
    }
    const bool isNamed = !m_session.options().fingerprint.isEmpty();
    if (page.isOfAuthority && !isNamed)
        return HostAccess();
    if (const auto agreed = agreeOnCertificate(page.certificate); !agreed)
        return failure(agreed.error());
    return HostAccess {{}, page.certificate.key, page.certificate.fingerprint};
}

CtlResult<> Join::agreeOnCertificate(const HostCertificate &certificate)
{
    const QString named = typedFingerprint(m_session.options().fingerprint);
    if (named == certificate.fingerprint)
        return {};
    if (!named.isEmpty()) {
        return m_session.fail(CtlStatus::Failed,
            ctlText("%1 has another certificate, with the fingerprint %2. Nothing was sent.")
                .arg(m_host, certificate.fingerprint));
    }
    QStringList question {ctlText("The certificate of %1 is of no authority that this system "
                                  "knows. Its fingerprint is:")
                              .arg(m_host)};
    const QStringList lines = fingerprintLines(certificate.fingerprint);
    for (const QString &line : lines)
        question.append(QStringLiteral("    ") + line);
    question.append(ctlText("Is that the one that is shown with the code?"));
    return confirm(question,
        ctlText("the certificate is of no authority that this system knows; where nobody can be "
                "asked, say with --fingerprint which one is the host's"));
}

CtlResult<> Join::agreeOnPlainHttp()
{
    if (m_session.options().plainHttp || isThisMachine(VeskUrl(m_host).host()))
        return {};
    return confirm({ctlText("The connection to %1 is not encrypted: others in the network can read "
                            "what is sent, and come in the same way.")
                           .arg(m_host),
                       ctlText("Pair nevertheless?")},
        ctlText("the connection is not encrypted; where nobody can be asked, --plain-http says "
                "that this may be"));
}

/// Asks on the terminal; without one it is a failure, told by \a otherwise.
CtlResult<> Join::confirm(const QStringList &question, const QString &otherwise)
{
    const CtlTerminal &terminal = m_session.terminal();
    if (!::isatty(terminal.input))
        return m_session.fail(CtlStatus::Failed, otherwise);
    terminal.out.flush();
    QStringList lines;
    for (const QString &line : question)
        lines.append(printableText(line));
    terminal.errors << lines.join(QLatin1Char('\n')).toStdString() << " [y/N] " << std::flush;
    const QByteArray answer = readInputLine(terminal.input).trimmed().toLower();
    if (answer == "y" || answer == "yes")
        return {};
    return m_session.fail(CtlStatus::Failed, ctlText("not paired; nothing was sent"));
}

CtlResult<QVariantHash> Join::sendCode(const QString &key)
{
    const CtlOptions &options = m_session.options();
    const QString name = options.words.isEmpty() ? QSysInfo::machineHostName()
                                                 : options.words.join(QLatin1Char(' '));
    const PairingResponse response = PairingRequest(m_host).send(key,
        VeskJson::write(QVariantHash {{QStringLiteral("code"), options.code},
            {QStringLiteral("name"), name}, {QStringLiteral("bearer"), true}}));
    if (response.refusal != HostRefusal::None) {
        return m_session.fail(CtlStatus::Failed,
            m_session.refusalText(response.refusal, response.certificate.fingerprint));
    }
    if (response.status != 200)
        return refuse(response);
    VeskError error;
    return VeskJson::parse(response.body, error).toHash();
}

Failure<CtlStatus> Join::refuse(const PairingResponse &response)
{
    VeskError parseError;
    const QVariantHash json = VeskJson::parse(response.body, parseError).toHash();
    const QString error = json.value(QStringLiteral("error")).toString();
    QString text;
    if (error == QLatin1String("wrongCode")) {
        text = ctlText("that is not the code; attempts left: %1")
                   .arg(json.value(QStringLiteral("left")).toInt());
    } else if (error == QLatin1String("ended")) {
        text = ctlText("that is not the code, and it was the last attempt: have a new code shown");
    } else if (error == QLatin1String("closed")) {
        text = ctlText("%1 shows no code now: have one shown there (\"veskctl pair\")").arg(m_host);
    } else if (error == QLatin1String("invalid")) {
        text = ctlText("the host does not take that name");
    } else if (error == QLatin1String("notSaved")) {
        text = ctlText("the host could not save the device; nothing has changed");
    } else if (response.status == 429) {
        text = ctlText("too many attempts; try again later");
    } else {
        return noHost(response);
    }
    return m_session.fail(CtlStatus::Failed, text);
}

Failure<CtlStatus> Join::noHost(const PairingResponse &response)
{
    RpcAnswer answer;
    answer.message = response.problem;
    if (answer.message.isEmpty()) {
        answer.message = QStringLiteral("what answers is no vesk-host");
        if (response.status != 0 && response.status != 200)
            answer.message += QStringLiteral(" (HTTP code %1)").arg(response.status);
    }
    return m_session.report(answer);
}

} // namespace

void addJoinCommand(Command app, CtlCommandLine &line)
{
    CtlOptions &options = line.options;
    Command join = addCommand(app, "join", "Pair with the host that --host names", line,
        [](HostSession &session) { return Join(session).run(); });
    join.addOption("CODE", options.code, "The code that is shown there").required();
    join.addOption("NAME", options.words, "What this device is called there");
    join.addOption("--fingerprint", options.fingerprint,
            "The certificate's, instead of being asked about it")
        .valueName("SHA256");
    join.addFlag("--plain-http", options.plainHttp, "Also where the connection is not encrypted");
}
