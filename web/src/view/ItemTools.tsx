// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useState } from "preact/hooks";

import { t, tn } from "../i18n/i18n";
import { alarms, draft } from "../model/alarms";
import { openSheet } from "../model/menu";
import { alarmsPath, open } from "../model/navigation";
import { player } from "../model/player";
import { hasLibrary, type Item } from "../model/presets";
import { minutesLeft, sleep } from "../model/sleep";
import { hasStar, setStar } from "../model/stars";
import { Icon, type Shape } from "./icons";
import { useMinutes } from "./time";

interface ToolProps {
    shape: Shape;
    title: string;
    description?: string;
    pressed?: boolean;
    run(): void;
}

function Tool({ shape, title, description = "", pressed, run }: ToolProps) {
    return (
        <li>
            <div class="row">
                <button type="button" class="body activate" data-main aria-pressed={pressed} onClick={run}>
                    <span class={pressed ? "tool on" : "tool"}><Icon shape={shape} /></span>
                    <span class="texts">
                        <span class="title">{title}</span>
                        {description !== "" && <span class="description" dir="auto">{description}</span>}
                    </span>
                </button>
            </div>
        </li>
    );
}

/** Makes an alarm that plays the row, or what plays. */
function wakeWith(item: Item | null): void {
    draft.value = { item };
    open(alarmsPath, t("Alarms"));
}

function StarTool({ item }: { item: Item }) {
    const [isBusy, setBusy] = useState(false);
    const is = hasStar(item.path);
    if (is === null)
        return null;
    const change = async () => {
        if (isBusy)
            return;
        setBusy(true);
        await setStar(item.path, item.title, item, !is);
        setBusy(false);
    };
    return <Tool shape={is ? "starred" : "star"} title={t("Star on this radio")} pressed={is} run={() => void change()} />;
}

/** Whether this radio does anything with a row, and with what plays. */
export const hasItemTools = () => hasLibrary.value || alarms.value !== null;
export const hasPlayingTools = () => hasItemTools() || sleep.value !== null || player.value.output !== "";

/** What this radio does with a row, or with what plays: for null. */
function Keeping({ item }: { item: Item | null }) {
    return (
        <>
            {item && <StarTool item={item} />}
            {hasLibrary.value && (
                <Tool shape="preset" title={t("Save as a preset …")} run={() => openSheet({ kind: "presets", item })} />
            )}
            {alarms.value !== null && <Tool shape="alarm" title={t("Wake me with this …")} run={() => wakeWith(item)} />}
        </>
    );
}

export function ItemTools({ item }: { item: Item }) {
    if (!hasItemTools())
        return null;
    return (
        <section aria-labelledby="tools">
            <h3 class="in-sheet" id="tools">{t("This radio")}</h3>
            <ul class="menu-rows" role="list"><Keeping item={item} /></ul>
        </section>
    );
}

/** What this radio does while something plays. */
export function PlayingTools() {
    useMinutes();
    const { output } = player.value;
    const until = sleep.value?.until ?? null;
    if (!hasPlayingTools())
        return null;
    return (
        <section aria-labelledby="tools">
            <h3 class="in-sheet" id="tools">{t("This radio")}</h3>
            <ul class="menu-rows" role="list">
                <Keeping item={null} />
                {sleep.value !== null && (
                    <Tool
                        shape="moon"
                        title={t("Sleep timer …")}
                        description={until === null ? "" : tn("%n minute left", "%n minutes left", minutesLeft(until))}
                        run={() => openSheet({ kind: "sleep" })}
                    />
                )}
                {output !== "" && <Tool shape="speaker" title={t("Output …")} run={() => openSheet({ kind: "outputs" })} />}
            </ul>
        </section>
    );
}
