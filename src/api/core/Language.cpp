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

#include <algorithm>
#include <memory>
#include <vector>

namespace {

/// The catalogues of a plug-in.
struct Catalogues {
    QString folder;
    QString name;
    QPointer<QTranslator> translator {};
};

struct State {
    VeskMutex mutex;
    QString current VESK_GUARDED_BY(mutex) = QStringLiteral("en");
    // Main thread only; the translators are owned by the application object.
    QPointer<QTranslator> translator;
    std::vector<Catalogues> added;
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

bool isMainThread()
{
    QCoreApplication *const application = QCoreApplication::instance();
    return application && QThread::currentThread() == application->thread();
}

std::unique_ptr<QTranslator> loadCatalogue(
    const QString &name, const QStringList &tags, const QStringList &folders)
{
    auto translator = std::make_unique<QTranslator>();
    for (const QString &folder : folders) {
        for (const QString &tag : tags) {
            const QString file = name + QLatin1Char('_') + tag + QStringLiteral(".qm");
            if (QDir(folder).exists(file) && translator->load(QDir(folder).filePath(file)))
                return translator;
        }
    }
    return nullptr;
}

/// Installs the new translator before deleting the old one: another thread that translates a text
/// meanwhile gets the old or the new language, not the source text.
void replace(QPointer<QTranslator> &translator, std::unique_ptr<QTranslator> next)
{
    QTranslator *const former = translator;
    if (next) {
        next->setParent(QCoreApplication::instance());
        QCoreApplication::installTranslator(next.get());
    }
    translator = next.release();
    delete former;
}

} // namespace

bool Language::setCurrent(const QString &language, const QStringList &folders)
{
    VESK_ASSERT(isMainThread());
    const QStringList tags = lookupTags(language);
    std::unique_ptr<QTranslator> next = loadCatalogue(QStringLiteral("vesk"), tags, folders);
    const bool isEnglish
        = !tags.isEmpty() && tags.last().compare(QLatin1String("en"), Qt::CaseInsensitive) == 0;
    const bool ok = next || isEnglish;

    // The host's last: it is the first to be asked.
    for (Catalogues &catalogues : state().added) {
        replace(catalogues.translator,
            loadCatalogue(catalogues.name, tags, QStringList {catalogues.folder}));
    }
    replace(state().translator, std::move(next));

    State &shared = state();
    const VeskMutexLock lock(shared.mutex);
    shared.current = language;
    return ok;
}

void Language::addCatalogues(const QString &folder, const QString &name)
{
    VESK_ASSERT(isMainThread());
    std::vector<Catalogues> &added = state().added;
    const bool isThere = std::any_of(added.begin(), added.end(),
        [&](const Catalogues &each) { return each.folder == folder && each.name == name; });
    if (!isThere)
        added.push_back({folder, name});
}

QString Language::current()
{
    State &shared = state();
    const VeskMutexLock lock(shared.mutex);
    return shared.current;
}
