// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/stations/StationsFixture.h"

#include "api/values/VeskValuePaths.h"

namespace {

constexpr unsigned long Deadline = 60000;

using ReplyData = std::shared_ptr<CMReplyData<QVariant>>;

template <class Make>
ReplyData ask(const Make &make)
{
    auto data = std::make_shared<CMReplyData<QVariant>>();
    CMRoot()->request(make(CMReply<QVariant>(data)));
    EXPECT_TRUE(data->waitForFinished(Deadline)) << "a request was not answered";
    return data;
}

QString messageOf(const ReplyData &data)
{
    return data->error().isEmpty() ? QString() : data->error().message().toString();
}

QString folderPath(const QString &folder)
{
    return folder.isEmpty() ? text("Stations:") : text("Stations:folder?id=") + folder;
}

} // namespace

/// The host's side of the store, reduced to what the plug-in sees of it.
class StationsFakeStore : public CMWorker {
public:
    explicit StationsFakeStore(std::shared_ptr<StationsStored> stored)
        : CMWorker({}, text("store"))
        , m_stored(std::move(stored))
    {
    }
    ~StationsFakeStore() override { stop(); }

protected:
    bool handleRequest(const CMRequest &request) override
    {
        if (request.kind() != CMRequest::SetData
            || request.path().toEncoded() != text("store:stations"))
            return false;
        const QVariantHash changes = CMSetDataRequest(request).value().toHash();
        const std::lock_guard<std::mutex> lock(m_stored->m_mutex);
        if (!m_stored->m_refusal.isEmpty()) {
            request.reply().setError(CMError(TrString(text("Test"), m_stored->m_refusal)));
            return true;
        }
        for (auto it = changes.constBegin(); it != changes.constEnd(); ++it) {
            if (it->isNull())
                m_stored->m_values.remove(it.key());
            else
                m_stored->m_values.insert(it.key(), it->toByteArray());
        }
        m_stored->m_writes.append(changes);
        request.reply().setValue(QVariant());
        return true;
    }
    void handleConnectChange(const CMPath &) override { }
    void handleDisconnectChange(const CMPath &) override { }

private:
    const std::shared_ptr<StationsStored> m_stored;
};

void StationsStored::refuse(const QString &error)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_refusal = error;
}

QVariantHash StationsStored::config() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    QVariantHash values;
    for (auto it = m_values.constBegin(); it != m_values.constEnd(); ++it)
        values.insert(it.key(), it.value());
    return {{text("path"), text("store:stations")}, {text("values"), values}};
}

QList<QVariantHash> StationsStored::writes() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_writes;
}

void StationsStored::set(const QString &key, const QByteArray &value)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_values.insert(key, value);
}

QHash<QString, QByteArray> StationsStored::values() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_values;
}

QStringList StationsShown::titles() const
{
    QStringList titles;
    for (const VeskRoles &row : rows)
        titles.append(row.title().toString());
    return titles;
}

VeskRoles StationsShown::row(const char *title) const
{
    for (const VeskRoles &row : rows) {
        if (row.title().toString() == text(title))
            return row;
    }
    ADD_FAILURE() << "no row \"" << title << "\" among: " << titles().join(text("; "));
    return {};
}

StationsFixture::StationsFixture()
{
    m_store = std::make_unique<WorkerThread>(
        [this]() -> QObject * { return new StationsFakeStore(m_stored); });
}

StationsFixture::~StationsFixture()
{
    m_thread.reset();
    m_store.reset();
}

void StationsFixture::start(const QString &folder)
{
    m_thread.reset(); // its name is taken until then
    QVariantHash config {{VeskService_Id(), text("stations")}, {text("store"), m_stored->config()}};
    if (!folder.isEmpty())
        config.insert(text("folder"), folder);
    m_thread = std::make_unique<WorkerThread>(
        [config]() -> QObject * { return new StationsWorker(config); });
}

StationsShown StationsFixture::rows(const CMPath &path, int first, int last)
{
    const ReplyData data = ask([&](const CMReply<QVariant> &reply) {
        return CMGetRowsRequest(path, VeskRoles::all(), first, last, reply);
    });
    StationsShown result;
    result.error = messageOf(data);
    const VeskRowsRoles answer(VeskHash(data->value().toHash()));
    result.count = answer.rowsCount();
    result.screen = answer.roles();
    const QVariantList rows = answer.rows();
    for (const QVariant &values : rows) {
        VeskRoles row;
        for (int i = 0; i < VeskRoles::all().size(); ++i) {
            const QVariant value = values.toList().value(i);
            if (!value.isNull())
                row.insert(VeskRoles::all().at(i), value);
        }
        result.rows.append(row);
    }
    return result;
}

VeskRoles StationsFixture::data(const CMPath &path)
{
    const ReplyData data = ask([&](const CMReply<QVariant> &reply) {
        return CMGetDataRequest(path, VeskRoles::all(), reply);
    });
    EXPECT_EQ(messageOf(data), QString());
    VeskRoles row;
    for (int i = 0; i < VeskRoles::all().size(); ++i)
        row.insert(VeskRoles::all().at(i), data->value().toList().value(i));
    return row;
}

ReplyData StationsFixture::set(const CMPath &path, const QString &role, const QVariant &value)
{
    return ask(
        [&](const CMReply<QVariant> &reply) { return CMSetDataRequest(path, role, value, reply); });
}

QString StationsFixture::activate(const VeskRoles &row)
{
    EXPECT_EQ(row.type(), VeskRolesType::Activate()) << row;
    return messageOf(set(row.path(), VeskRoles::Activate(), QVariant()));
}

QString StationsFixture::activate(const QString &path)
{
    return messageOf(set(CMPath::fromEncoded(path), VeskRoles::Activate(), QVariant()));
}

CMPath StationsFixture::asked(const VeskRoles &query, const QString &text)
{
    EXPECT_EQ(query.type(), VeskRolesType::Query()) << query;
    CMPath path = query.queryPath();
    path.addParam(query.query(), text);
    return path;
}

VeskRoles StationsFixture::add(const char *title, const char *address, const QString &folder)
{
    CMPath path(text("Stations"), text("do/add"),
        {{text("title"), text(title)}, {text("address"), text(address)}});
    path.addParam(text("folder"), folder);
    EXPECT_EQ(messageOf(set(path, VeskRoles::Activate(), QVariant())), QString());
    return itemCalled(title, folder);
}

QString StationsFixture::addFolder(const char *title, const QString &folder)
{
    CMPath path(text("Stations"), text("do/folder"), {{text("title"), text(title)}});
    path.addParam(text("folder"), folder);
    EXPECT_EQ(messageOf(set(path, VeskRoles::Activate(), QVariant())), QString());
    return itemCalled(title, folder).path().param(text("id"));
}

QStringList StationsFixture::list(const QString &folder)
{
    QStringList titles;
    const StationsShown screen = rows(folderPath(folder));
    for (const VeskRoles &row : screen.rows) {
        if (row.path().hasParam(text("id")) && row.path().base() != text("menu"))
            titles.append(row.title().toString());
    }
    return titles;
}

VeskRoles StationsFixture::itemCalled(const char *title, const QString &folder)
{
    return rows(folderPath(folder)).row(title);
}
