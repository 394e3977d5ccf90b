// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/access/PairingResource.h"

#include "api/core/ThreadCheck.h"
#include "api/web/VeskJson.h"
#include "host/access/Pairing.h"

#include <utility>

namespace {

/// What a device sends.
struct PairingRequest {
    QString code;
    QString name;
    bool isBearer = false;
};

/// With an empty code for what is none.
PairingRequest requestIn(const QByteArray &body)
{
    if (body.size() > PairingResource::MaxBody)
        return {};
    VeskError error;
    const QVariantHash members = VeskJson::parse(body, error).toHash();
    const QVariant code = members.value(QStringLiteral("code"));
    const QVariant name = members.value(QStringLiteral("name"));
    const QVariant bearer = members.value(QStringLiteral("bearer"));
    const bool isRequest = code.userType() == QMetaType::QString
        && name.userType() == QMetaType::QString
        && (bearer.isNull() || bearer.userType() == QMetaType::Bool);
    if (!isRequest)
        return {};
    return {code.toString(), name.toString().trimmed(), bearer.toBool()};
}

HttpResponse responseOf(unsigned code, const QVariantHash &members)
{
    HttpResponse response;
    response.code = code;
    response.type = QByteArrayLiteral("application/json");
    response.body = VeskJson::write(members);
    response.headers.append(qMakePair(QByteArray("Cache-Control"), QByteArray("no-store")));
    return response;
}

HttpResponse refusalOf(const Pairing::Refused &refused)
{
    const auto response = [](unsigned code, const char *error) {
        return responseOf(code, {{QStringLiteral("error"), QString::fromLatin1(error)}});
    };
    switch (refused.reason) {
    case Pairing::Refusal::Closed:
        return response(409, "closed");
    case Pairing::Refusal::Invalid:
        return response(400, "invalid");
    case Pairing::Refusal::WrongCode:
        return responseOf(403,
            {{QStringLiteral("error"), QStringLiteral("wrongCode")},
                {QStringLiteral("left"), refused.left}});
    case Pairing::Refusal::Ended:
        return response(403, "ended");
    case Pairing::Refusal::NotSaved:
        break;
    }
    return response(503, "notSaved");
}

QByteArray cookieOf(const QByteArray &token, const QByteArray &path, bool isSecure)
{
    return PairingResource::cookieName() + '=' + token + "; Path=" + path
        + "; Max-Age=" + QByteArray::number(PairingResource::CookieSeconds)
        + "; HttpOnly; SameSite=Strict" + (isSecure ? "; Secure" : "");
}

QVariant deviceOf(const PairedDevice &device)
{
    return QVariantHash {{QStringLiteral("id"), device.id}, {QStringLiteral("name"), device.name},
        {QStringLiteral("role"), accessRoleName(device.role)}};
}

} // namespace

PairingResource::PairingResource(Pairing *pairing, QByteArray basePath)
    : m_pairing(pairing)
    , m_basePath(basePath.isEmpty() ? QByteArrayLiteral("/") : std::move(basePath))
{
}

bool PairingResource::owns(const QByteArray &path) const
{
    return path == "/pair";
}

void PairingResource::get(const HttpRequest &request, Respond respond)
{
    VESK_ASSERT_THREAD(m_thread);
    const PairingRequest sent = requestIn(request.body);
    const auto answer = [path = m_basePath, isBearer = sent.isBearer, isSecure = request.isSecure,
                            respond = std::move(respond)](const auto &added) {
        if (!added)
            return respond(refusalOf(added.error()));
        QVariantHash members {{QStringLiteral("device"), deviceOf(added->device)}};
        if (isBearer)
            members.insert(QStringLiteral("token"), QString::fromLatin1(added->token));
        HttpResponse response = responseOf(200, members);
        if (!isBearer)
            response.headers.append(
                qMakePair(QByteArray("Set-Cookie"), cookieOf(added->token, path, isSecure)));
        respond(response);
    };
    m_pairing->redeem(sent.code, sent.name, request.peer, answer);
}
