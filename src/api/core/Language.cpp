// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/Language.h"

#include "api/core/Mutex.h"
#include "api/core/vesk.h"

#include <QCoreApplication>
#include <QDir>
#include <QPointer>
#include <QRegularExpression>
#include <QThread>
#include <QTranslator>

#include <memory>

namespace {

struct State {
    VeskMutex mutex;
    QString current VESK_GUARDED_BY(mutex) = QStringLiteral("en");
    /// Main thread only; owned by the application object.
    QPointer<QTranslator> translator;
};

State &state()
{
    static State theState;
    return theState;
}

/// The tags to look up for \a language: the tag itself, then with its last subtag removed, and so
/// on (RFC 4647, section 3.4). Empty unless it is a language tag, because the tags become part of
/// file names.
QStringList lookupTags(const QString &language)
{
    static const QRegularExpression tag(
        QStringLiteral("\\A[A-Za-z]{2,8}([-_][A-Za-z0-9]{1,8}){0,8}\\z"));
    QStringList tags;
    if (!tag.match(language).hasMatch())
        return tags;
    const QStringList parts
        = QString(language).replace(QLatin1Char('_'), QLatin1Char('-')).split(QLatin1Char('-'));
    for (int count = parts.size(); count > 0; --count)
        tags.append(parts.mid(0, count).join(QLatin1Char('-')));
    return tags;
}

std::unique_ptr<QTranslator> loadCatalogue(const QStringList &tags, const QStringList &folders)
{
    auto translator = std::make_unique<QTranslator>();
    for (const QString &folder : folders) {
        for (const QString &tag : tags) {
            const QString file = QStringLiteral("vesk_") + tag + QStringLiteral(".qm");
            if (QDir(folder).exists(file) && translator->load(QDir(folder).filePath(file)))
                return translator;
        }
    }
    return nullptr;
}

} // namespace

bool Language::setCurrent(const QString &language, const QStringList &folders)
{
    QCoreApplication *const application = QCoreApplication::instance();
    VESK_ASSERT(application && QThread::currentThread() == application->thread());

    const QStringList tags = lookupTags(language);
    std::unique_ptr<QTranslator> next = loadCatalogue(tags, folders);
    const bool isEnglish
        = !tags.isEmpty() && tags.last().compare(QLatin1String("en"), Qt::CaseInsensitive) == 0;
    const bool ok = next || isEnglish;

    // Installs the new translator before deleting the old one: another thread that translates a
    // text meanwhile gets the old or the new language, not the source text.
    QTranslator *const former = state().translator;
    if (next) {
        next->setParent(application);
        QCoreApplication::installTranslator(next.get());
    }
    state().translator = next.release();
    delete former;

    State &shared = state();
    const VeskMutexLock lock(shared.mutex);
    shared.current = language;
    return ok;
}

QString Language::current()
{
    State &shared = state();
    const VeskMutexLock lock(shared.mutex);
    return shared.current;
}
