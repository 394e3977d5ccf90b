// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Directory.h"

#include "directory/Endpoints.h"
#include "directory/Pictures.h"

namespace directory {

Directory::Directory(
    Catalog catalog, Clock clock, std::unique_ptr<AccountsFile> accounts, MembersContent members)
    : m_catalog(std::move(catalog))
    , m_search(m_catalog)
    , m_clock(std::move(clock))
    , m_streams(m_catalog)
    , m_accounts(std::move(accounts))
    , m_members(std::move(members))
{
}

Directory::~Directory()
{
    if (m_accounts && m_unsure)
        m_accounts->write(m_members.content());
}

Answer Directory::handle(const ApiRequest &request)
{
    const std::string &path = request.path;
    if (request.method != "GET" && request.method != "HEAD" && request.method != "POST")
        return textAnswer(405, "Only GET, HEAD and POST are known here.");
    if (path.rfind("/logo/", 0) == 0)
        return logoPicture(path);
    if (path.rfind("/service/Audio/", 0) == 0)
        return placeholderAudio(path);

    const Context context(request, m_catalog, m_members, m_clock());
    if (path.rfind("/stream/", 0) == 0)
        return m_streams.answer(context);
    if (path == MelodyPath)
        return m_streams.melodies(context);
    const std::string page = lowered(path);
    if (page == "/" || page == "/browse.ashx")
        return browse(context);
    if (page == "/search.ashx")
        return m_search.answer(context);
    if (page == "/tune.ashx")
        return tune(context);
    if (page == "/describe.ashx")
        return describe(context);
    if (page == "/report.ashx")
        return report(context);
    if (page == "/preset.ashx")
        return kept(context, preset);
    if (page == "/account.ashx")
        return kept(context, account);
    if (page == "/config.ashx")
        return config(context);
    if (page == "/mydevice")
        return kept(context, claimPage);
    if (page == "/mydevice.css")
        return claimStyle();
    return textAnswer(404, "There is nothing here.");
}

Answer Directory::kept(const Context &context, Answer (*page)(const Context &))
{
    if (!m_accounts)
        return page(context);
    MembersContent before = m_members.content();
    Answer answer = page(context);
    if (!m_members.takeChanges())
        return answer;
    m_unsure = !m_accounts->write(m_members.content());
    if (!m_unsure)
        return answer;
    m_members = Members(std::move(before));
    return page == claimPage ? claimNotKept() : notKept();
}

} // namespace directory
