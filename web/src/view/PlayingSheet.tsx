// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect } from "preact/hooks";

import { t } from "../i18n/i18n";
import { changesFavorites } from "../model/favorites";
import { closeSheets, isMenu } from "../model/menu";
import { isShown, player } from "../model/player";
import { openQuiet } from "../model/quiet";
import { serviceOf } from "../model/services";
import { Artwork } from "./Artwork";
import { Icon } from "./icons";
import { hasPlayingTools, PlayingTools } from "./ItemTools";
import { MenuSheet } from "./MenuSheet";
import { Controls, StateLine } from "./PlayerBar";
import { Behind, SeekBar, SeekSteps } from "./SeekBar";
import { VolumeControl } from "./VolumeControl";

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
                    <div class="controls">
                        <Controls now={now} />
                        <button type="button" class="round" aria-label={t("Quiet view")} onClick={openQuiet}>
                            <Icon shape="clock" />
                        </button>
                    </div>
                </div>
            </div>
            <div class="sliders">
                <SeekSteps now={now}><SeekBar now={now} /></SeekSteps>
                <Behind now={now} />
                <VolumeControl />
            </div>
            <PlayingTools />
            {isMenu(now.contextPath) && (
                <>
                    {hasPlayingTools() && <h3 class="in-sheet" dir="auto">{serviceOf(now.contextPath)?.title ?? ""}</h3>}
                    <MenuSheet key={now.contextPath} path={now.contextPath} isShown={(row) => !changesFavorites(row)} />
                </>
            )}
        </>
    );
}
