// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/PluginDescriptor.h"

#include "api/core/qtversions.h"
#include "api/values/CMPath.h"
#include "api/web/VeskJson.h"
#include "plugin/runtime/PluginApi.h"
#include "plugin/supervision/MemberReader.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace {

constexpr int Format = 1;
/// Removing texts can leave new ones. No honest address nests them deeper.
constexpr int MostRounds = 8;

ChangingAddresses readChanging(const QVariant &value, QString &error)
{
    MemberReader reader(value, QStringLiteral("changing"), error);
    reader.knowsOnly({QStringLiteral("base"), QStringLiteral("words"), QStringLiteral("leftOut"),
        QStringLiteral("parameter"), QStringLiteral("values")});
    ChangingAddresses changing;
    changing.base = reader.text(QStringLiteral("base"));
    changing.words = reader.texts(QStringLiteral("words"), true);
    changing.leftOut = reader.texts(QStringLiteral("leftOut"));
    changing.parameter = reader.text(QStringLiteral("parameter"));
    changing.values = reader.texts(QStringLiteral("values"));
    if (changing.words.isEmpty() && changing.parameter.isEmpty())
        reader.fail(QStringLiteral("neither \"words\" nor \"parameter\""));
    if (!changing.values.isEmpty() && changing.parameter.isEmpty())
        reader.fail(QStringLiteral("\"values\" without \"parameter\""));
    return changing;
}

ServiceAnswerForm readAnswers(const QVariant &value, QString &error)
{
    MemberReader reader(value, QStringLiteral("answers"), error);
    reader.knowsOnly({QStringLiteral("status"), QStringLiteral("good")});
    const ServiceAnswerForm form {
        reader.texts(QStringLiteral("status")), reader.texts(QStringLiteral("good"))};
    if (form.status.isEmpty() || form.good.isEmpty())
        reader.fail(QStringLiteral("\"status\" or \"good\" is missing"));
    return form;
}

ExcuseDeclaration readExcuse(const QVariant &value, QString &error)
{
    static const QStringList meanings {QStringLiteral("incompatible"), QStringLiteral("noStream"),
        QStringLiteral("otherCountry"), QStringLiteral("forbidden")};
    MemberReader reader(value, QStringLiteral("excuses"), error);
    reader.knowsOnly({QStringLiteral("file"), QStringLiteral("means")});
    const QString file = reader.text(QStringLiteral("file"));
    if (!file.startsWith(QLatin1Char('/')) || file.count(QLatin1Char('*')) > 1)
        reader.fail(QStringLiteral("\"file\" does not begin with \"/\", or has two \"*\""));
    const int meaning = meanings.indexOf(reader.text(QStringLiteral("means")));
    if (meaning < 0) {
        reader.fail(QStringLiteral("\"means\" is none of ") + meanings.join(QStringLiteral(", ")));
        return {};
    }
    return {file, static_cast<ExcuseDeclaration::Meaning>(meaning)};
}

PluginNeeds readNeeds(MemberReader &reader)
{
    PluginNeeds needs;
    for (const QString &need : reader.texts(QStringLiteral("needs"))) {
        if (need == QLatin1String("network"))
            needs.network = true;
        else if (need == QLatin1String("store"))
            needs.store = true;
        else if (need == QLatin1String("folder"))
            needs.folder = true;
        else
            reader.fail(QStringLiteral("\"needs\" holds none of network, store, folder"));
    }
    return needs;
}

bool holdsWord(const QString &text, const QStringList &words)
{
    int begin = 0;
    for (int i = 0; i <= text.size(); ++i) {
        if (i < text.size() && isLetterOrDigit(text.at(i)))
            continue;
        const VeskStringRef word = veskMid(text, begin, i - begin);
        if (std::any_of(words.begin(), words.end(),
                [&](const QString &each) { return word.compare(each, Qt::CaseInsensitive) == 0; }))
            return true;
        begin = i + 1;
    }
    return false;
}

/// Checks \a base as it is and after each removal.
bool isChangingBase(const ChangingAddresses &changing, const QString &base)
{
    QString text = base;
    for (int round = 0; round < MostRounds; ++round) {
        if (text.isEmpty())
            return false;
        const int size = text.size();
        if (!isPlain(text) || holdsWord(text, changing.words))
            return true;
        for (const QString &out : changing.leftOut) {
            text.remove(out);
            if (holdsWord(text, changing.words))
                return true;
        }
        if (text.size() == size)
            return false;
        // The segment in front of it may have been removed.
        if (text.startsWith(QLatin1Char('/')))
            text.remove(0, 1);
    }
    return true;
}

bool hasParameter(const ChangingAddresses &changing, const CMPath &path)
{
    if (changing.parameter.isEmpty() || !path.hasParam(changing.parameter))
        return false;
    return changing.values.isEmpty()
        || changing.values.contains(path.param(changing.parameter), Qt::CaseInsensitive);
}

/// What is at \a base below \a root.
CMPath below(const CMPath &root, const QString &base)
{
    const bool joins = root.base().isEmpty() || base.isEmpty();
    return CMPath(root.prefix(), root.base()) + (joins ? base : QLatin1Char('/') + base);
}

/// Before everything else: what is too new has members that are not known here.
void readApi(MemberReader &reader, PluginDescriptor &descriptor)
{
    const QVariant format = reader.value(QStringLiteral("format"));
    if (format.userType() != QMetaType::LongLong || format.toLongLong() != Format)
        reader.fail(QStringLiteral("\"format\" is not %1").arg(Format));
    const QString api = QStringLiteral("api");
    descriptor.api = reader.text(api);
    if (descriptor.api.isEmpty())
        return;
    static const QRegularExpression form(QStringLiteral("\\A(\\d{1,4})\\.(\\d{1,4})\\z"));
    const QRegularExpressionMatch match = form.match(descriptor.api);
    if (!match.hasMatch())
        return reader.fail(api, QStringLiteral("is no MAJOR.MINOR"));
    const QString problem = apiProblem(match.captured(1).toInt(), match.captured(2).toInt());
    if (!problem.isEmpty())
        reader.fail(problem);
}

void readTexts(MemberReader &reader, PluginDescriptor &descriptor)
{
    descriptor.name = reader.needed(QStringLiteral("name"));
    descriptor.version = reader.needed(QStringLiteral("version"));
    reader.needed(QStringLiteral("api"));
    const QString context = QStringLiteral("context");
    descriptor.context = reader.has(context) ? reader.needed(context) : descriptor.id;
    const QString translations = QStringLiteral("translations");
    descriptor.translations = reader.text(translations);
    if (reader.has(translations) && !isPlain(descriptor.translations))
        reader.fail(translations, QStringLiteral("is no folder beside the file"));
}

void readSettings(MemberReader &reader, PluginDescriptor &descriptor)
{
    const QString settings = QStringLiteral("settings");
    for (const QVariant &entry : reader.list(settings)) {
        const auto setting = SettingDeclaration::read(entry, descriptor.id, reader.error());
        for (const SettingDeclaration &other : std::as_const(descriptor.settings)) {
            if (other.path == setting.path)
                reader.fail(settings, QStringLiteral("has %1 twice").arg(other.path.toEncoded()));
        }
        descriptor.settings.append(setting);
    }
}

} // namespace

Result<PluginDescriptor, QString> PluginDescriptor::fromJson(const QByteArray &json)
{
    VeskError unreadable;
    const QVariant value = VeskJson::parse(json, unreadable);
    if (!unreadable.isEmpty())
        return failure(QStringLiteral("this is no JSON"));
    QString error;
    MemberReader reader(value, QString(), error);
    PluginDescriptor descriptor;
    readApi(reader, descriptor);
    reader.knowsOnly({QStringLiteral("format"), QStringLiteral("id"), QStringLiteral("name"),
        QStringLiteral("version"), QStringLiteral("api"), QStringLiteral("context"),
        QStringLiteral("translations"), QStringLiteral("needs"), QStringLiteral("settings"),
        QStringLiteral("screens"), QStringLiteral("changing"), QStringLiteral("deviceSetting"),
        QStringLiteral("answers"), QStringLiteral("excuses")});
    descriptor.id = reader.text(QStringLiteral("id"));
    if (descriptor.id.isEmpty() || !isWord(descriptor.id))
        reader.fail(QStringLiteral("\"id\" is no word"));
    for (const QVariant &entry : reader.list(QStringLiteral("changing")))
        descriptor.changing.append(readChanging(entry, error));
    if (reader.has(QStringLiteral("deviceSetting"))) {
        descriptor.deviceSetting
            = CMPath::fromEncoded(reader.text(QStringLiteral("deviceSetting")));
        if (descriptor.deviceSetting.isEmpty())
            reader.fail(QStringLiteral("\"deviceSetting\" is no path"));
    }
    if (reader.has(QStringLiteral("answers")))
        descriptor.answers = readAnswers(reader.value(QStringLiteral("answers")), error);
    for (const QVariant &entry : reader.list(QStringLiteral("excuses")))
        descriptor.excuses.append(readExcuse(entry, error));
    descriptor.needs = readNeeds(reader);
    readSettings(reader, descriptor);
    if (reader.has(QStringLiteral("screens"))) {
        descriptor.screens = ServiceScreens::read(reader.value(QStringLiteral("screens")), error);
    }
    readTexts(reader, descriptor);
    if (!error.isEmpty())
        return failure(error);
    return descriptor;
}

QString PluginDescriptor::catalogueFolder(const QString &library) const
{
    if (translations.isEmpty())
        return {};
    return QFileInfo(library).absolutePath() + QLatin1Char('/') + translations;
}

QString PluginDescriptor::fileOf(const QString &library)
{
    const QFileInfo info(library);
    return info.absolutePath() + QLatin1Char('/') + info.completeBaseName()
        + QStringLiteral(".json");
}

Result<PluginDescriptor, QString> PluginDescriptor::read(const QString &file)
{
    // O_NONBLOCK: opening a FIFO would wait for its writer.
    const int descriptor
        = ::open(QFile::encodeName(file).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return failure(QString::fromLocal8Bit(std::strerror(errno)));
    }
    struct stat status { };
    QFile opened;
    opened.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return failure(QStringLiteral("this is no regular file"));
    const QByteArray json = opened.read(MaxBytes + 1);
    if (json.size() > MaxBytes)
        return failure(QStringLiteral("this is longer than %1 bytes").arg(MaxBytes));
    return fromJson(json);
}

CMPath pathBelow(const CMPath &root, const QString &path)
{
    const CMPath relative = CMPath::fromEncoded(QStringLiteral("x:") + path);
    CMPath absolute = below(root, relative.base());
    for (const auto &param : relative.paramList())
        absolute.addParam(param.first, param.second);
    return absolute;
}

bool changesSomething(
    const QVector<ChangingAddresses> &changing, const CMPath &root, const CMPath &path)
{
    return std::any_of(changing.begin(), changing.end(), [&](const ChangingAddresses &each) {
        if (!path.startsWith(below(root, each.base)))
            return false;
        return hasParameter(each, path)
            || (!each.words.isEmpty() && isChangingBase(each, path.base()));
    });
}
