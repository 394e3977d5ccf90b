// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/HttpSettings.h"

#include "api/core/Mutex.h"
#include "api/core/vesk.h"
#include "api/web/ConnectionGuard.h"
#include "api/web/private/SystemCertificates.h"

#include <QtGlobal>

#ifndef VESK_VERSION
#define VESK_VERSION "0.1.0"
#endif

namespace {

constexpr long MaxRedirects = 5;

/// Never destroyed: a thread may start an exchange while the process ends.
struct SharedSettings {
    VeskMutex mutex;
    std::shared_ptr<const HttpSettings> settings VESK_GUARDED_BY(mutex)
        = std::make_shared<HttpSettings>();
};

SharedSettings &sharedSettings()
{
    static auto &shared = *new SharedSettings;
    return shared;
}

/// Replaces the settings by a copy that \a change has worked on.
template <class Change>
void changeSettings(const Change &change)
{
    SharedSettings &shared = sharedSettings();
    const VeskMutexLock lock(shared.mutex);
    const HttpSettings &before = *shared.settings;
    auto changed = std::make_shared<HttpSettings>();
    for (const curl_slist *entry = before.connectTo; entry; entry = entry->next)
        changed->connectTo = curl_slist_append(changed->connectTo, entry->data);
    changed->certificates = before.certificates;
    change(*changed);
    shared.settings = changed;
}

bool startsWithIgnoringCase(std::string_view text, std::string_view start)
{
    return text.size() >= start.size()
        && qstrnicmp(text.data(), start.data(), static_cast<uint>(start.size())) == 0;
}

/// The status by which libcurl decides whether the head is a redirect.
long statusOf(CURL *easy)
{
    long code = 0;
    curl_easy_getinfo(easy, CURLINFO_RESPONSE_CODE, &code);
    return code;
}

} // namespace

std::shared_ptr<const HttpSettings> HttpSettings::current()
{
    SharedSettings &shared = sharedSettings();
    const VeskMutexLock lock(shared.mutex);
    return shared.settings;
}

void HttpSettings::setConnectTo(const QStringList &entries)
{
    changeSettings([&entries](HttpSettings &changed) {
        curl_slist_free_all(changed.connectTo);
        changed.connectTo = nullptr;
        for (const QString &entry : entries)
            changed.connectTo = curl_slist_append(changed.connectTo, entry.toUtf8().constData());
    });
}

void HttpSettings::setCertificates(const QByteArray &pem)
{
    changeSettings([&pem](HttpSettings &changed) { changed.certificates = pem; });
}

void HttpSettings::applyTo(CURL *easy) const
{
    curl_easy_setopt(easy, CURLOPT_CONNECT_TO, connectTo);
    if (certificates.isEmpty())
        return;
    curl_blob blob {const_cast<char *>(certificates.constData()), std::size_t(certificates.size()),
        CURL_BLOB_NOCOPY};
    curl_easy_setopt(easy, CURLOPT_CAINFO_BLOB, &blob);
}

void setUpHttpHandle(CURL *easy)
{
    const auto set = [easy](CURLoption option, auto value) {
        VESK_ASSERT(curl_easy_setopt(easy, option, value) == CURLE_OK);
    };
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_OPENSOCKETFUNCTION, &openHttpSocket);
    // A name server that does not answer must not hold up this thread when a time-out ends the
    // wait.
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_USERAGENT, "Vesk/" VESK_VERSION);
    set(CURLOPT_PATH_AS_IS, 1L);
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    set(CURLOPT_MAXREDIRS, MaxRedirects);
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    set(CURLOPT_SSLVERSION, long(CURL_SSLVERSION_TLSv1_2));
    // A hashed folder alone, if there is one: reading the one big file takes 16 ms for every
    // connection.
    const auto orNone
        = [](const QByteArray &name) { return name.isEmpty() ? nullptr : name.data(); };
    const SystemCertificates certificates = SystemCertificates::current();
    set(CURLOPT_CAINFO, orNone(certificates.file));
    set(CURLOPT_CAPATH, orNone(certificates.folder));
}

void HttpRedirectRule::start(bool isHttps)
{
    m_bytes = 0;
    m_hasLocation = false;
    m_isHttps = isHttps;
}

HttpRedirectRule::Verdict HttpRedirectRule::takeLine(std::string_view line, CURL *easy)
{
    return takeLine(line, statusOf(easy));
}

HttpRedirectRule::Verdict HttpRedirectRule::takeLine(std::string_view line, long status)
{
    m_bytes += line.size();
    if (m_bytes > MaxHeadBytes)
        return TooLong;
    if (startsWithIgnoringCase(line, "HTTP/"))
        m_hasLocation = false;
    else if (!m_hasLocation && startsWithIgnoringCase(line, "Location:") && status / 100 == 3)
        return mayFollow(line.substr(sizeof "Location:" - 1)) ? Fine : ForbiddenRedirect;
    return Fine;
}

bool HttpRedirectRule::mayFollow(std::string_view location)
{
    const auto begin = location.find_first_not_of(" \t\r\n\v\f");
    if (begin == std::string_view::npos)
        return true;
    // Of several, libcurl follows the first that is not empty.
    m_hasLocation = true;
    location.remove_prefix(begin);
    const auto colon = location.find(':');
    if (colon == std::string_view::npos || location.find_first_of("/?#") < colon)
        return true;
    const std::string_view scheme = location.substr(0, colon);
    const bool isHttps = scheme.size() == 5 && startsWithIgnoringCase(scheme, "https");
    const bool isHttp = scheme.size() == 4 && startsWithIgnoringCase(scheme, "http");
    if (!isHttps && (!isHttp || m_isHttps))
        return false;
    m_isHttps = isHttps;
    return true;
}
