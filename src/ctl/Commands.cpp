#include "ctl/Commands.h"

#include "api/values/VeskRoles.h"
#include "api/values/VeskRowsRoles.h"
#include "api/web/VeskJson.h"
#include "ctl/ScreenText.h"

#include <limits>

namespace {

/// Rows that are asked for at once.
constexpr int Range = 100;

const CMPath &servicesPath()
{
    static const CMPath path(QStringLiteral("host"), QStringLiteral("services"));
    return path;
}

QVariantHash pathParams(const CMPath &path)
{
    return {{QStringLiteral("path"), path.toEncoded()}};
}

/// A device without an account is no failure: TuneIn says so with fault code 7.
bool saysNotLinked(const RpcAnswer &answer)
{
    return answer.name.endsWith(QLatin1String(":7"));
}

} // namespace

Commands::Commands(const CtlOptions &options, bool colours, std::ostream &out, std::ostream &errors)
    : m_options(options)
    , m_style(colours)
    , m_out(out)
    , m_errors(errors)
    , m_client(options.host)
{
}

CtlStatus Commands::run()
{
    switch (m_options.command) {
    case CtlOptions::Ls:
        return ls();
    case CtlOptions::Search:
        return search();
    case CtlOptions::Get:
        return get();
    case CtlOptions::Set:
        return set();
    }
    return CtlStatus::BadUsage;
}

CtlStatus Commands::ls()
{
    if (!m_options.path.isEmpty())
        return showScreen(m_options.path);
    int services = 0;
    CMPath only;
    const CtlStatus status = findService(services, only);
    if (status != CtlStatus::Success)
        return status;
    return showScreen(services == 1 && !only.isEmpty() ? only : servicesPath());
}

CtlStatus Commands::search()
{
    CMPath service = m_options.path;
    if (service.isEmpty()) {
        int services = 0;
        const CtlStatus status = findService(services, service);
        if (status != CtlStatus::Success)
            return status;
        if (service.isEmpty()) {
            return fail(CtlStatus::BadUsage,
                QStringLiteral("there is not one service but several or none: name one with --in"));
        }
    }
    QVariantHash params = pathParams(service);
    params.insert(QStringLiteral("roles"), QStringList {VeskRoles::Search()});
    CMPath query;
    const CtlStatus status
        = call(QStringLiteral("getData"), params, [&](const QVariantHash &result) {
              const QVariantList values = result.value(QStringLiteral("values")).toList();
              const VeskRoles searches(values.value(0).toHash());
              return findQuery(searches.path(), query);
          });
    return status == CtlStatus::Success ? showScreen(query) : status;
}

CtlStatus Commands::findQuery(const CMPath &searches, CMPath &query)
{
    if (searches.isEmpty())
        return fail(CtlStatus::Failed, QStringLiteral("this service offers no search"));
    QVariantHash params = pathParams(searches);
    params.insert(QStringLiteral("roles"),
        QStringList {VeskRoles::Type(), VeskRoles::Query(), VeskRoles::QueryPath()});
    return call(QStringLiteral("getRows"), params, [&](const QVariantHash &result) {
        const QVariantList rows = VeskRowsRoles(result).rows();
        for (const QVariant &row : rows) {
            const QVariantList values = row.toList();
            query = CMPath::fromEncoded(values.value(2).toString());
            if (values.value(0).toInt() == VeskRolesType::query && !query.isEmpty()) {
                query.addParam(values.value(1).toString(), m_options.text);
                return CtlStatus::Success;
            }
        }
        return fail(CtlStatus::Failed, QStringLiteral("this service offers no search"));
    });
}

CtlStatus Commands::get()
{
    QVariantHash params = pathParams(m_options.path);
    params.insert(QStringLiteral("roles"), m_options.roles);
    return call(QStringLiteral("getData"), params, [&](const QVariantHash &result) {
        if (m_options.json) {
            printJson(result);
            return CtlStatus::Success;
        }
        const QVariantList values = result.value(QStringLiteral("values")).toList();
        for (const QVariant &value : values)
            m_out << printableText(plainText(value)).toStdString() << '\n';
        return CtlStatus::Success;
    });
}

CtlStatus Commands::set()
{
    QVariantHash params = pathParams(m_options.path);
    params.insert(QStringLiteral("role"), VeskRoles::Value());
    params.insert(QStringLiteral("value"), m_options.text);
    return call(QStringLiteral("setData"), params, [&](const QVariantHash &result) {
        if (m_options.json)
            printJson(result);
        return CtlStatus::Success;
    });
}

CtlStatus Commands::findService(int &services, CMPath &only)
{
    QVariantHash params = pathParams(servicesPath());
    params.insert(QStringLiteral("roles"), QStringList {VeskRoles::Path()});
    return call(QStringLiteral("getRows"), params, [&](const QVariantHash &result) {
        QList<CMPath> usable;
        const QVariantList rows = VeskRowsRoles(result).rows();
        for (const QVariant &row : rows) {
            const CMPath path = CMPath::fromEncoded(row.toList().value(0).toString());
            if (!path.isEmpty())
                usable.append(path);
        }
        services = rows.size();
        only = usable.size() == 1 ? usable.first() : CMPath();
        return CtlStatus::Success;
    });
}

CtlStatus Commands::showScreen(const CMPath &path)
{
    return m_options.json ? printScreenAsJson(path) : printScreen(path);
}

CtlStatus Commands::printScreen(const CMPath &path)
{
    QVariantHash params = pathParams(path);
    params.insert(QStringLiteral("roles"), rowLineRoles());
    bool titled = false;
    return fetchRows(params, [&](int first, const QVariantHash &answer) {
        const VeskRowsRoles rows(answer);
        const QString title = printableText(rows.roles()[VeskRoles::Title()].toString());
        if (!titled && !title.isEmpty())
            m_out << m_style.bold(title) << '\n';
        titled = true;
        int index = first;
        const QVariantList list = rows.rows();
        for (const QVariant &row : list)
            m_out << rowLine(index++, row.toList(), m_style) << '\n';
        m_out.flush();
    });
}

CtlStatus Commands::printScreenAsJson(const CMPath &path)
{
    QVariantHash whole;
    QVariantList rows;
    const CtlStatus status = fetchRows(pathParams(path), [&](int, const QVariantHash &answer) {
        whole = answer;
        rows += VeskRowsRoles(answer).rows();
    });
    if (status == CtlStatus::Success) {
        whole.insert(QStringLiteral("rows"), rows);
        printJson(whole);
    }
    return status;
}

CtlStatus Commands::fetchRows(const QVariantHash &params,
    const std::function<void(int first, const QVariantHash &answer)> &take)
{
    const int last = m_options.last < 0 ? std::numeric_limits<int>::max() : m_options.last;
    int first = m_options.first;
    bool more = true;
    while (more) {
        QVariantHash range = params;
        range.insert(QStringLiteral("first"), first);
        range.insert(QStringLiteral("last"), qMin(last, first + Range - 1));
        const CtlStatus status
            = call(QStringLiteral("getRows"), range, [&](const QVariantHash &result) {
                  const VeskRowsRoles rows(result);
                  take(first, result);
                  first += rows.rows().size();
                  more = !rows.rows().isEmpty() && first < rows.rowsCount() && first <= last;
                  return CtlStatus::Success;
              });
        if (status != CtlStatus::Success)
            return status;
    }
    return CtlStatus::Success;
}

CtlStatus Commands::call(const QString &method, const QVariantHash &params, const Take &take)
{
    const RpcAnswer answer = m_client.call(method, params);
    if (answer.kind == RpcAnswer::Result)
        return take(answer.result.toHash());
    return report(answer);
}

CtlStatus Commands::report(const RpcAnswer &answer)
{
    if (answer.kind == RpcAnswer::NoHost) {
        return fail(CtlStatus::NoHost,
            QStringLiteral("no host at %1: %2").arg(m_options.host, answer.message));
    }
    if (saysNotLinked(answer) && !m_options.json) {
        m_out << "not linked\n";
        return CtlStatus::Success;
    }
    return fail(CtlStatus::Failed,
        answer.title.isEmpty() ? answer.message
                               : QStringLiteral("%1: %2").arg(answer.title, answer.message));
}

CtlStatus Commands::fail(CtlStatus status, const QString &message)
{
    m_errors << "veskctl: " << printableText(message).toStdString() << '\n';
    return status;
}

void Commands::printJson(const QVariant &value)
{
    m_out << printableJson(VeskJson::write(value)).toStdString() << '\n';
}
