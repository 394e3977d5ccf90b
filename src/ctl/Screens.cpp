#include "ctl/Screens.h"

#include "api/values/VeskRowsRoles.h"
#include "ctl/ScreenText.h"

#include <limits>

namespace {

/// Rows that are asked for at once.
constexpr int Range = 100;

QVariantHash rowsParams(const CMPath &path, const QStringList &roles)
{
    QVariantHash params = pathParams(path);
    params.insert(QStringLiteral("roles"), roles);
    return params;
}

} // namespace

CtlStatus Screens::show(const CMPath &path)
{
    return m_session.options().json ? printAsJson(path) : print(path);
}

CtlStatus Screens::row(const CMPath &path, int index, const QStringList &roles, VeskRoles &row)
{
    QVariantHash params = rowsParams(path, roles);
    params.insert(QStringLiteral("first"), index);
    params.insert(QStringLiteral("last"), index);
    return m_session.call(QStringLiteral("getRows"), params, [&](const QVariantHash &result) {
        const QVariantList list = VeskRowsRoles(result).rows();
        if (list.isEmpty()) {
            return m_session.fail(
                CtlStatus::Failed, QStringLiteral("there is no row %1").arg(index));
        }
        row = namedRoles(roles, list.first().toList());
        return CtlStatus::Success;
    });
}

CtlStatus Screens::rows(const CMPath &path, const QStringList &roles, QList<VeskRoles> &rows)
{
    return m_session.call(
        QStringLiteral("getRows"), rowsParams(path, roles), [&](const QVariantHash &result) {
            const QVariantList list = VeskRowsRoles(result).rows();
            for (const QVariant &values : list)
                rows.append(namedRoles(roles, values.toList()));
            return CtlStatus::Success;
        });
}

CtlStatus Screens::print(const CMPath &path)
{
    std::ostream &out = m_session.terminal().out;
    bool titled = false;
    return fetch(rowsParams(path, rowLineRoles()), [&](int first, const QVariantHash &answer) {
        const VeskRowsRoles rows(answer);
        const QString title = printableText(rows.roles()[VeskRoles::Title()].toString());
        if (!titled && !title.isEmpty())
            out << m_session.style().bold(title) << '\n';
        titled = true;
        int index = first;
        const QVariantList list = rows.rows();
        for (const QVariant &row : list)
            out << rowLine(index++, row.toList(), m_session.style()) << '\n';
        out.flush();
    });
}

CtlStatus Screens::printAsJson(const CMPath &path)
{
    QVariantHash whole;
    QVariantList rows;
    const CtlStatus status = fetch(pathParams(path), [&](int, const QVariantHash &answer) {
        whole = answer;
        rows += VeskRowsRoles(answer).rows();
    });
    if (status == CtlStatus::Success) {
        whole.insert(QStringLiteral("rows"), rows);
        m_session.printJson(whole);
    }
    return status;
}

CtlStatus Screens::fetch(const QVariantHash &params, const TakeRows &take)
{
    const CtlOptions &options = m_session.options();
    const int last = options.last < 0 ? std::numeric_limits<int>::max() : options.last;
    int first = options.first;
    bool more = true;
    while (more) {
        QVariantHash range = params;
        range.insert(QStringLiteral("first"), first);
        range.insert(QStringLiteral("last"), qMin(last, first + Range - 1));
        const CtlStatus status
            = m_session.call(QStringLiteral("getRows"), range, [&](const QVariantHash &result) {
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
