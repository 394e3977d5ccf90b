#include "ctl/ScreenCommands.h"

#include "ctl/ScreenText.h"

CtlStatus ScreenCommands::show()
{
    return atPlace([&](const CMPath &path) { return m_screens.show(path); });
}

CtlStatus ScreenCommands::get()
{
    return atPlace([&](const CMPath &path) {
        QVariantHash params = pathParams(path);
        params.insert(QStringLiteral("roles"), m_session.options().roles);
        return m_session.ask(params, [&](const QVariantHash &result) {
            printValues(result);
            return CtlStatus::Success;
        });
    });
}

CtlStatus ScreenCommands::set()
{
    return atPlace([&](const CMPath &path) {
        QVariantHash params = pathParams(path);
        params.insert(QStringLiteral("role"), VeskRoles::Value());
        params.insert(QStringLiteral("value"), m_session.options().text);
        return m_session.act(QStringLiteral("setData"), params);
    });
}

CtlStatus ScreenCommands::atPlace(const std::function<CtlStatus(const CMPath &path)> &action)
{
    CMPath path;
    const CtlStatus status = m_places.resolve(m_session.options().place, path);
    return status == CtlStatus::Success ? action(path) : status;
}

void ScreenCommands::printValues(const QVariantHash &result)
{
    if (m_session.options().json)
        return m_session.printJson(result);
    const QVariantList values = result.value(QStringLiteral("values")).toList();
    for (const QVariant &value : values)
        m_session.printText(plainText(value));
}
