#include "tests/ctl/FakeHost.h"

#include "api/web/VeskJson.h"
#include "ctl/Commands.h"
#include "ctl/CtlCommandLine.h"

#include <gtest/gtest.h>

#include <sstream>
#include <unistd.h>

FakeHost::FakeHost(const Results &results)
    : m_results(results)
    , m_server([this](const ScriptedServer::Request &request) { return answer(request); })
{
}

QString FakeHost::url() const
{
    return QStringLiteral("http://127.0.0.1:%1/").arg(m_server.port());
}

void FakeHost::setResult(const QString &call, const QByteArray &result)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_results.insert(call, result);
}

void FakeHost::setScreen(const QString &path, const QList<VeskRoles> &rows)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_screens.insert(path, rows);
}

QStringList FakeHost::asked() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_asked;
}

QVariantHash FakeHost::lastParams() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_lastParams;
}

QVariantHash FakeHost::paramsOf(const QString &method) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_paramsOf.value(method);
}

void FakeHost::prepare(const QString &, const QVariantHash &) { }

ScriptedServer::Response FakeHost::answer(const ScriptedServer::Request &request)
{
    VeskError error;
    const QVariantHash call = VeskJson::parse(request.body, error).toHash();
    const QVariantHash params = call.value(QStringLiteral("params")).toHash();
    const QString method = call.value(QStringLiteral("method")).toString();
    QString name = method;
    if (params.contains(QStringLiteral("path")))
        name += QLatin1Char(' ') + params.value(QStringLiteral("path")).toString();
    if (params.value(QStringLiteral("first")).toInt() > 0)
        name += QLatin1Char(' ') + params.value(QStringLiteral("first")).toString();

    const std::lock_guard<std::mutex> lock(m_mutex);
    m_asked.append(name);
    m_lastParams = params;
    m_paramsOf.insert(method, params);
    if (request.method != "POST" || request.target != "/jsonrpc"
        || request.header("Content-Type") != "application/json")
        return {400, "bad request", {}, ScriptedServer::End::Complete, 0};
    prepare(method, params);
    return {200, "{\"jsonrpc\":\"2.0\",\"id\":1," + resultFor(name, method, params) + "}", {},
        ScriptedServer::End::Complete, 0};
}

QByteArray FakeHost::resultFor(
    const QString &call, const QString &method, const QVariantHash &params)
{
    const QString path = params.value(QStringLiteral("path")).toString();
    if (m_results.contains(call) || method != QLatin1String("getRows")
        || !m_screens.contains(path)) {
        return m_results.value(call, R"("error":{"code":-32001,"message":"nothing there"})");
    }
    const QList<VeskRoles> screen = m_screens.value(path);
    const int first = params.value(QStringLiteral("first")).toInt();
    const int last = params.value(QStringLiteral("last"), first + 99).toInt();
    QVariantList rows;
    for (int i = first; i <= last && i < screen.size(); ++i) {
        QVariantList values;
        const QStringList roles = params.value(QStringLiteral("roles")).toStringList();
        for (const QString &role : roles)
            values.append(screen.at(i)[role]);
        rows.append(QVariant(values));
    }
    return "\"result\":"
        + VeskJson::write(QVariantHash {{QStringLiteral("rowsCount"), screen.size()},
            {QStringLiteral("rows"), rows}, {QStringLiteral("roles"), QVariantHash()}});
}

Outcome run(const QString &url, const QStringList &arguments, const QByteArray &input)
{
    const CtlCommandLine line = parseCtlCommandLine(arguments, url);
    EXPECT_TRUE(line.run) << line.text.toStdString();
    std::ostringstream out;
    std::ostringstream errors;
    int pipe[2] = {-1, -1};
    EXPECT_EQ(::pipe(pipe), 0);
    EXPECT_EQ(::write(pipe[1], input.constData(), static_cast<size_t>(input.size())), input.size());
    ::close(pipe[1]);
    CtlTerminal terminal {out, errors};
    terminal.input = pipe[0];
    const auto status = static_cast<int>(runCommand(line.options, terminal));
    ::close(pipe[0]);
    return {status, out.str(), errors.str()};
}

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

VeskRoles row(int type, const char *title, const char *path)
{
    VeskRoles roles;
    roles.setType(type);
    roles.insert(VeskRoles::Title(), QString::fromUtf8(title));
    roles.insert(VeskRoles::Path(), QString::fromUtf8(path));
    return roles;
}
