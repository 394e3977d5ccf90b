// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

class CMPath;

/// The plug-in's configuration: loaded once from the host's value tree before other threads exist,
/// then read from any thread. Later changes of the host's values have no effect.
class TuneInSettings {
public:
    /// Reads every value from the host and returns true. Values that the host does not hold stay
    /// empty; only the serial has fallbacks.
    bool load();

    /// The id under which the host knows this service. Set by the worker, after load().
    void setServiceId(const QString &serviceId) { m_serviceId = serviceId; }
    const QString &serviceId() const { return m_serviceId; }
    const QString &browseIndexUrl() const { return m_browseIndexUrl; }
    const QString &partnerId() const { return m_partnerId; }
    /// At most 32 characters: the member id, else the Ethernet address.
    const QString &serial() const { return m_serial; }
    /// Formats in the web API's notation ("mp3,aac"); empty leaves the choice to TuneIn.
    const QString &supportedStreams() const { return m_supportedStreams; }
    bool childElementsInSingleList() const { return m_childElementsInSingleList; }
    bool enabledFixItWizard() const { return m_enabledFixItWizard; }

private:
    void loadSerial();

    QString m_serviceId;
    QString m_partnerId;
    QString m_serial;
    QString m_browseIndexUrl;
    QString m_supportedStreams;
    bool m_childElementsInSingleList = false;
    bool m_enabledFixItWizard = false;
};
