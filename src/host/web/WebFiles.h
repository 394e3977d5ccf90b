// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/http/HttpResource.h"

#include <QHash>
#include <QString>

/// The content browser's page: the files of one folder, read once and served from memory. A path is
/// looked up in that table and never becomes a file name. A file NAME.gz is the compressed form of
/// NAME. What lies in "assets" has its hash in its name and is cached for good; everything else is
/// asked for again each time.
class WebFiles : public HttpResource {
public:
    /// A folder with more of either is not read at all: it is not the page's.
    static constexpr int MaxFiles = 500;
    static constexpr qint64 MaxBytes = 32 * 1024 * 1024;

    explicit WebFiles(const QString &folder);

    bool isEmpty() const { return m_files.isEmpty(); }
    bool owns(const QByteArray &path) const override;
    void get(const HttpRequest &request, Respond respond) override;

private:
    struct File {
        QByteArray type;
        QByteArray body;
        QByteArray zipped;
        QByteArray tag; ///< ETag, with its quotes
    };

    void read(const QString &folder);

    QHash<QByteArray, File> m_files;
};
