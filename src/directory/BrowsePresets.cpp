// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/BrowsePages.h"
#include "directory/Rows.h"

namespace directory {

namespace {

Json addressRow(const Preset &preset)
{
    Json row = linkRow(preset.name.empty() ? preset.url : preset.name, preset.url, preset.id);
    row["preset_id"] = preset.id;
    row["item"] = "url";
    return row;
}

/// Null for a preset whose station or show has gone from the data file.
Json presetRow(const Context &context, const Preset &preset)
{
    Json row;
    if (const Station *station = context.catalog().station(preset.id))
        row = stationRow(context, *station, StationText::Frequency);
    else if (const Show *show = context.catalog().show(preset.id))
        row = showRow(context, *show);
    else if (const Topic *topic = context.catalog().topic(preset.id))
        row = topicRow(context, *topic);
    else if (!preset.url.empty())
        row = addressRow(preset);
    else
        return row;
    if (preset.number > 0)
        row["preset_number"] = std::to_string(preset.number);
    row["is_preset"] = "true";
    return row;
}

Json presetRows(const Context &context, const Library &library, const std::string &folder)
{
    Json rows = Json::array();
    for (const Preset &preset : library.presets()) {
        if (!folder.empty() && preset.folder != folder)
            continue;
        Json row = presetRow(context, preset);
        if (!row.is_null())
            rows.push_back(std::move(row));
    }
    return rows;
}

std::string ownerOf(const Context &context)
{
    const std::string userName = context.param("username");
    if (const Account *named = context.members().account(userName))
        return named->userName;
    const Account *joined = context.members().joined(context.param("serial"));
    return joined ? joined->userName : std::string();
}

} // namespace

Answer presetsPage(const Context &context)
{
    const Library *library = context.library();
    if (!library) {
        // An unknown user name: an empty answer without a title. A new device simply has no presets
        // yet.
        return context.param("username").empty()
            ? success(context.word("favorites"), nothingRows(context))
            : success({});
    }
    const std::string owner = ownerOf(context);
    const std::string title
        = owner.empty() ? context.word("favorites") : owner + "'s " + context.word("favorites");
    const std::string id = context.param("id");
    if (id.empty() && library->folders().size() > 1) {
        Json rows = Json::array();
        for (const Folder &folder : library->folders())
            rows.push_back(linkRow(folder.name,
                context.api("Browse.ashx", {{"c", "presets"}, {"id", folder.id}}), folder.id));
        return success(title, std::move(rows));
    }
    if (!id.empty() && !library->folder(id))
        return failure("400", "Invalid ID for browse", "request.idInvalid");
    return success(title, orNothing(context, presetRows(context, *library, id)));
}

} // namespace directory
