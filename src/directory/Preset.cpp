// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Endpoints.h"
#include "directory/Rows.h"

#include <algorithm>

namespace directory {

namespace {

constexpr std::size_t MaxAddress = 2000;

Answer invalidId()
{
    return failure("400", "Invalid ID", "request.idInvalid");
}
Answer invalidFolder()
{
    return failure("400", "Invalid folder", "request.idInvalid");
}

bool known(const Catalog &catalog, const std::string &id)
{
    return catalog.station(id) || catalog.show(id) || catalog.topic(id);
}

Answer add(const Context &context, Library &library)
{
    Preset preset;
    preset.id = context.param("id");
    preset.url = context.param("url");
    preset.name = context.param("name");
    preset.folder = context.param("folderId");
    if (preset.id.empty() && preset.url.empty())
        return invalidId();
    const bool address
        = preset.url.rfind("http://", 0) == 0 || preset.url.rfind("https://", 0) == 0;
    const bool sized = preset.url.size() <= MaxAddress && preset.name.size() <= MaxAddress;
    if (!preset.url.empty() ? !address || !sized : !known(context.catalog(), preset.id))
        return invalidId();
    const int number = parseNumber(context.param("presetNumber"));
    preset.number = number > 0 ? number : static_cast<int>(library.presets().size()) + 1;
    return library.add(std::move(preset))
        ? success({})
        : failure("400", "There is no such folder or no room for more presets");
}

Answer remove(const Context &context, Library &library)
{
    const std::string id = context.param("id");
    if (id.empty())
        return invalidId();
    // Removing is idempotent: a preset that is not there is no error.
    library.remove(id, context.param("folderId"));
    return success({});
}

Answer addFolder(const Context &context, Library &library)
{
    const std::string name = context.param("name");
    const std::optional<std::string> id = library.addFolder(name);
    return id ? success({}, Json::array({textRow(name, *id)}))
              : failure("400", "The folder's name is empty or taken, or there is no room for it");
}

Answer listFolders(const Library &library)
{
    Json rows = Json::array();
    for (const Folder &folder : library.folders())
        rows.push_back(textRow(folder.name, folder.id));
    return success({}, std::move(rows));
}

Answer change(const Context &context, Library &library)
{
    const std::string c = lowered(context.param("c"));
    if (c == "add")
        return add(context, library);
    if (c == "remove")
        return remove(context, library);
    if (c == "addfolder")
        return addFolder(context, library);
    if (c == "removefolder")
        return library.removeFolder(context.param("folderId")) ? success({}) : invalidFolder();
    if (c == "renamefolder")
        return library.renameFolder(context.param("folderId"), context.param("name"))
            ? success({})
            : invalidFolder();
    if (c == "listfolders")
        return listFolders(library);
    return failure("404", "Invalid method", "api.methodNotFound");
}

Answer presetOf(const Context &context)
{
    const std::string userName = context.param("username");
    if (!userName.empty() && !context.members().authenticate(userName, context.param("password")))
        return failure("403", "Forbidden");
    Library *library = context.members().change(userName, context.param("serial"));
    if (!library)
        return failure("400", "A serial or a user name is needed");
    return change(context, *library);
}

} // namespace

Answer preset(const Context &context)
{
    return notStored(presetOf(context));
}

} // namespace directory
