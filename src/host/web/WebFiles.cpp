// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/web/WebFiles.h"

#include "api/core/log.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>

VESK_LOGGER("Host.Web")

namespace {

struct Type {
    const char *suffix;
    const char *name;
};

/// Files of other types are not served.
constexpr Type Types[] = {
    {".html", "text/html; charset=utf-8"},
    {".js", "text/javascript; charset=utf-8"},
    {".css", "text/css; charset=utf-8"},
    {".txt", "text/plain; charset=utf-8"},
    {".svg", "image/svg+xml"},
    {".png", "image/png"},
    {".webmanifest", "application/manifest+json"},
};

QByteArray typeOf(const QByteArray &path)
{
    for (const Type &type : Types) {
        if (path.endsWith(type.suffix))
            return type.name;
    }
    return {};
}

/// The page runs its own scripts, styles and service worker and reaches its own server, nothing
/// else. \a host is one that the server has checked; it stands here because 'self' means no
/// WebSocket everywhere. Whether the browser came over TLS is known to a proxy alone. The only
/// sound is a silence that the page makes, and the only trusted type the address of its service
/// worker.
QByteArray pagePolicy(const QByteArray &host)
{
    return "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; "
           "manifest-src 'self'; worker-src 'self'; media-src blob:; connect-src 'self' ws://"
        + host + " wss://" + host
        + "; base-uri 'none'; form-action 'none'; frame-ancestors 'none'; "
          "require-trusted-types-for 'script'; trusted-types vesk";
}

bool acceptsGzip(const QByteArray &acceptEncoding)
{
    for (const QByteArray &entry : acceptEncoding.split(',')) {
        const QList<QByteArray> parts = entry.split(';');
        if (parts.first().trimmed().toLower() != "gzip")
            continue;
        const QByteArray weight = parts.value(1).trimmed().replace(" ", "");
        return !weight.startsWith("q=") || weight.mid(2).toDouble() > 0;
    }
    return false;
}

/// The pages stand where no file of theirs is named.
QByteArray fileOf(const QByteArray &path)
{
    if (path == "/")
        return "/index.html";
    return path == "/pair" ? QByteArray("/pair/index.html") : path;
}

bool namesTag(const QByteArray &ifNoneMatch, const QByteArray &tag)
{
    for (QByteArray entry : ifNoneMatch.split(',')) {
        entry = entry.trimmed();
        if (entry.startsWith("W/"))
            entry.remove(0, 2);
        if (entry == tag || entry == "*")
            return true;
    }
    return false;
}

} // namespace

WebFiles::WebFiles(const QString &folder)
{
    // An iterator over no folder walks through the current one.
    if (!folder.isEmpty())
        read(folder);
    if (!m_files.contains("/index.html"))
        m_files.clear();
}

void WebFiles::read(const QString &folder)
{
    const QDir root(folder);
    QDirIterator files(
        folder, QDir::Files | QDir::NoSymLinks | QDir::Readable, QDirIterator::Subdirectories);
    QHash<QByteArray, QByteArray> zipped;
    qint64 bytes = 0;
    while (files.hasNext()) {
        QFile file(files.next());
        bytes += file.size();
        if (m_files.size() + zipped.size() >= MaxFiles || bytes > MaxBytes) {
            VESK_ERROR("There is too much in " << folder << " for a page.");
            m_files.clear();
            return;
        }
        QByteArray path = "/" + root.relativeFilePath(file.fileName()).toUtf8();
        const bool isZipped = path.endsWith(".gz");
        if (isZipped)
            path.chop(3);
        const QByteArray type = typeOf(path);
        if (type.isEmpty() || !file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray content = file.readAll();
        if (isZipped) {
            zipped.insert(path, content);
            continue;
        }
        const QByteArray digest = QCryptographicHash::hash(content, QCryptographicHash::Sha256);
        m_files.insert(path, {type, content, {}, "\"" + digest.left(12).toHex() + "\""});
    }
    for (auto it = zipped.constBegin(); it != zipped.constEnd(); ++it) {
        const auto file = m_files.find(it.key());
        if (file != m_files.end())
            file->zipped = it.value();
    }
}

bool WebFiles::owns(const QByteArray &path) const
{
    return m_files.contains(fileOf(path));
}

void WebFiles::get(const HttpRequest &request, Respond respond)
{
    const QByteArray path = fileOf(request.path);
    const File file = m_files.value(path);
    HttpResponse response;
    // One tag for both forms: a client keeps the one that it was sent.
    response.headers = {{"ETag", file.tag}, {"Vary", "Accept-Encoding"},
        {"Cache-Control",
            path.startsWith("/assets/") ? "public, max-age=31536000, immutable" : "no-cache"},
        {"Cross-Origin-Opener-Policy", "same-origin"}};
    if (file.type.startsWith("text/html"))
        response.headers << qMakePair(
            QByteArray("Content-Security-Policy"), pagePolicy(request.host));
    if (namesTag(request.ifNoneMatch, file.tag)) {
        response.code = 304;
        return respond(response);
    }
    response.type = file.type;
    const bool zip = !file.zipped.isEmpty() && acceptsGzip(request.acceptEncoding);
    response.body = zip ? file.zipped : file.body;
    if (zip)
        response.headers << qMakePair(QByteArray("Content-Encoding"), QByteArray("gzip"));
    respond(response);
}
