// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/CMPathForm.h"

#include "api/core/percent.h"
#include "api/core/vesk.h"
#include "api/values/CMPath.h"

namespace {

QString keyText(const QString &key)
{
    return QLatin1Char('&') + veskPercentEncode(key) + QLatin1Char('=');
}

} // namespace

CMPathForm::CMPathForm(const CMPath &path, std::initializer_list<Blank> blanks)
    : m_start(CMPath(path.prefix(), path.base()).toEncoded())
{
    auto own = path.paramList().begin();
    const auto ownEnd = path.paramList().end();
    const auto takeOwn = [&own] {
        const QString text = keyText(own->first) + veskPercentEncode(own->second);
        ++own;
        return text;
    };
    const QString *last = nullptr;
    for (const Blank &blank : blanks) {
        VESK_ASSERT(!last || *last < blank.key);
        last = &blank.key;
        QString before;
        while (own != ownEnd && own->first < blank.key)
            before += takeOwn();
        VESK_ASSERT(own == ownEnd || own->first != blank.key);
        if (blank.optional)
            m_parts.append({before, keyText(blank.key), true});
        else
            m_parts.append({QString(), before + keyText(blank.key), false});
    }
    while (own != ownEnd)
        m_end += takeOwn();
}

QString CMPathForm::toEncoded(std::initializer_list<QStringView> values) const
{
    VESK_ASSERT(int(values.size()) == m_parts.size());
    if (m_start.isEmpty())
        return QString();
    VeskPercentBuffer out;
    out.appendEncoded(m_start);
    const QStringView *value = values.begin();
    for (const Part &part : m_parts) {
        if (!part.before.isEmpty())
            out.appendEncoded(part.before);
        if (!part.optional || !value->isEmpty()) {
            out.appendEncoded(part.key);
            out.append(*value);
        }
        ++value;
    }
    if (!m_end.isEmpty())
        out.appendEncoded(m_end);
    QString text = out.toString();
    // Whichever parameter comes first was written with "&".
    if (text.size() > m_start.size())
        text[m_start.size()] = QLatin1Char('?');
    return text;
}
