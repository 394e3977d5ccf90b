// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect } from "preact/hooks";

import { changesFavorites } from "../model/favorites";
import { closeSheets, isMenu } from "../model/menu";
import { isShown, player } from "../model/player";
import { Artwork } from "./Artwork";
import { MenuSheet } from "./MenuSheet";
import { Controls, StateLine } from "./PlayerBar";

/** All details of what plays. */
export function PlayingSheet() {
    const now = player.value;
    const isThere = isShown.value;
    useEffect(() => {
        if (!isThere)
            closeSheets();
    }, [isThere]);
    return (
        <>
            <div class="playing-now">
                <Artwork icon={now.icon} fallback="radio" />
                <div class="words">
                    {now.streamTitle && <p class="on-air" dir="auto">{now.streamTitle}</p>}
                    {now.description && now.description !== now.streamTitle && (
                        <p class="about" dir="auto">{now.description}</p>
                    )}
                    <p><StateLine now={now} /></p>
                    <div class="controls"><Controls now={now} /></div>
                </div>
            </div>
            {isMenu(now.contextPath) && (
                <MenuSheet key={now.contextPath} path={now.contextPath} isShown={(row) => !changesFavorites(row)} />
            )}
        </>
    );
}
