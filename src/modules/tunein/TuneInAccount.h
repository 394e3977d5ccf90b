// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMNode.h"
#include "api/tunein/VeskTuneInResponse.h"
#include "api/values/VeskTuneInAccount.h"

class CMTuneInWorker;
class TuneInSettings;
class VeskUrl;

/// The link between this device and a TuneIn account. Reading the node's value asks TuneIn which
/// account the device is linked to; writing a VeskValue that holds a VeskTuneInAccount runs that
/// account's operation. Each is one POST over HTTPS; nothing of it is kept, credentials least of
/// all. Worker's thread only, which every exchange blocks.
///
/// A reply's value holds an account with only the operation and the fields that TuneIn returned.
/// A device without an account reads as the error for TuneIn's fault 7.
class TuneInAccountNode : public CMNode {
public:
    static TuneInAccountNode *create(CMTuneInWorker *tiWorker, const CMPath &path);
    ~TuneInAccountNode() override;

    /// Success returns an empty error and sets \a url to the call for the account's operation. An
    /// unknown operation, or a user name without password or the reverse, leaves \a url unchanged.
    CMError prepareUrl(const VeskTuneInAccount &account, VeskUrl &url);

    /// Takes requests for the node's own path only. Holds the node's mutex throughout, the exchange
    /// included.
    bool getDataRequest(const CMGetDataRequest &request) override;
    /// Takes writes of the value only. No lock is held.
    bool setDataRequest(const CMSetDataRequest &request) override;

    /// Completes \a reply with what TuneIn's answer to \a operation says: a VeskValue with an
    /// account, or an error. The operation must be one of the eight.
    void processResponse(const VeskTuneInResponse &response,
        const VeskTuneInAccountOperation::Enum &operation, CMReply<QVariant> reply);
    void processResponseAuthenticate(const VeskTuneInResponse &response, CMReply<QVariant> reply);
    /// A device without an account is a success with an empty user name.
    void processResponseQuery(const VeskTuneInResponse &response, CMReply<QVariant> reply);
    void processResponseClaim(const VeskTuneInResponse &response, CMReply<QVariant> reply);

private:
    TuneInAccountNode(CMTuneInWorker *tiWorker, const CMPath &path);

    QVariant queryAccount(const CMGetDataRequest &request);

    CMTuneInWorker *m_tiWorker;
    const TuneInSettings *m_settings;
};
