// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import type { ComponentChildren } from "preact";
import { useEffect, useRef, useState } from "preact/hooks";

import { t, tn } from "../i18n/i18n";
import { alarms, nextAlarm } from "../model/alarms";
import { exportLibrary, importLibrary, maxLibrary, readLibrary } from "../model/library";
import { asRpcError, openSheet } from "../model/menu";
import { alarmsPath, open } from "../model/navigation";
import { announce } from "../model/notices";
import { player } from "../model/player";
import { hasLibrary } from "../model/presets";
import { RowType } from "../model/rows";
import { minutesLeft, sleep } from "../model/sleep";
import { clearRecents, libraryPath, recentsPath, starsPath } from "../model/stars";
import { volume } from "../model/volume";
import { download } from "./download";
import { moveAmong } from "./focus";
import { OwnScreen } from "./OwnScreen";
import { Presets } from "./Presets";
import { RowsGroup } from "./RowsGroup";
import { useScreen } from "./ScreenView";
import { dayAndTime, timeOfDay, useMinutes } from "./time";
import { VolumeControl } from "./VolumeControl";
import { errorText } from "./words";

function Line({ title, description, children }: { title: string; description: string; children: ComponentChildren }) {
    return (
        <div class="row">
            <div class="body value">
                <span class="texts">
                    <span class="title">{title}</span>
                    {description !== "" && <span class="description" dir="auto">{description}</span>}
                </span>
                {children}
            </div>
        </div>
    );
}

function sleepText(): string {
    const until = sleep.value?.until ?? null;
    return until === null
        ? t("Off")
        : `${tn("%n minute left", "%n minutes left", minutesLeft(until))} · ${t("until %1", timeOfDay(new Date(until)))}`;
}

function alarmText(): string {
    const next = nextAlarm.value;
    return next ? [dayAndTime(next.next!), next.title].filter((each) => each !== "").join(" · ") : t("None is set.");
}

function Lines() {
    useMinutes();
    const { output, outputProblem } = player.value;
    return (
        <div class="rows flow radio-lines">
            {volume.value !== null && <Line title={t("Volume")} description=""><VolumeControl /></Line>}
            {output !== "" && (
                <Line title={t("Output")} description={outputProblem}>
                    <button type="button" class="plain-button" aria-haspopup="dialog" onClick={() => openSheet({ kind: "outputs" })}>
                        {t("Choose the output")}
                    </button>
                </Line>
            )}
            {sleep.value !== null && (
                <Line title={t("Sleep timer")} description={sleepText()}>
                    <button type="button" class="plain-button" aria-haspopup="dialog" onClick={() => openSheet({ kind: "sleep" })}>
                        {t("Set the timer")}
                    </button>
                </Line>
            )}
            {alarms.value !== null && (
                <Line title={t("Alarms")} description={alarmText()}>
                    <a
                        class="plain-button"
                        href={"#" + alarmsPath}
                        onClick={(event) => {
                            event.preventDefault();
                            open(alarmsPath, t("Alarms"));
                        }}
                    >
                        {t("Show the alarms")}
                    </a>
                </Line>
            )}
        </div>
    );
}

/** What is wrong with what this radio keeps, in the host's words. */
function LibraryProblem() {
    const screen = useScreen(libraryPath);
    screen.version.value;
    useEffect(() => screen.show(0, 9), [screen]);
    const rows = Array.from({ length: Math.min(screen.count.value ?? 0, 10) }, (_, index) => screen.row(index));
    const problem = rows.find((row) => row?.type === RowType.header && row.disabled);
    return (
        <div role="alert">
            {problem && (
                <p class="problem-line bad"><span dir="auto">{problem.title}</span>: <span dir="auto">{problem.description}</span></p>
            )}
        </div>
    );
}

/** Empties the list of what was heard, after a question. */
function ClearRecents() {
    const [isAsking, setAsking] = useState(false);
    if (!isAsking)
        return <button type="button" class="plain-button" onClick={() => setAsking(true)}>{t("Clear …")}</button>;
    return (
        <span class="buttons" role="group" aria-label={t("Clear the list?")}>
            <button
                type="button"
                class="filled danger"
                onClick={() => {
                    setAsking(false);
                    void clearRecents();
                }}
            >
                {t("Clear the list")}
            </button>
            <button type="button" onClick={() => setAsking(false)}>{t("Keep it")}</button>
        </span>
    );
}

/** Stars and presets as a file, and back. */
function LibraryFile() {
    const input = useRef<HTMLInputElement>(null);
    const save = async () => {
        try {
            download("vesk-library.json", JSON.stringify(await exportLibrary(), null, 2) + "\n");
        } catch (error) {
            announce({ kind: "failed", text: errorText(asRpcError(error)) });
        }
    };
    const read = async (file: File) => {
        const library = file.size <= maxLibrary ? readLibrary(await file.text()) : null;
        if (!library)
            return announce({ kind: "failed", text: t("%1 is not a library that was exported here.", file.name) });
        try {
            const { favorites, presets } = await importLibrary(library);
            announce({
                kind: "told",
                text: `${tn("%n star was added.", "%n stars were added.", favorites)} ${tn("%n preset was set.", "%n presets were set.", presets)}`,
            });
        } catch (error) {
            announce({ kind: "failed", text: errorText(asRpcError(error)) });
        }
    };
    return (
        <div class="rows flow">
            <Line title={t("Stars and presets as a file")} description={t("To keep them, or to take them to another radio.")}>
                <span class="buttons">
                    <button type="button" onClick={() => void save()}>{t("Export")}</button>
                    <button type="button" onClick={() => input.current?.click()}>{t("Import …")}</button>
                    <input
                        ref={input}
                        type="file"
                        hidden
                        accept=".json,application/json"
                        onChange={(event) => {
                            const [file] = event.currentTarget.files ?? [];
                            event.currentTarget.value = "";
                            if (file)
                                void read(file);
                        }}
                    />
                </span>
            </Line>
        </div>
    );
}

/** What this radio is and keeps, whatever the services do: presets, stars, what was heard, alarms, volume. */
export function RadioView() {
    return (
        <OwnScreen title={t("This radio")}>
            <div onKeyDown={(event) => moveAmong(event.currentTarget, event)}>
                <Presets />
                <Lines />
                {hasLibrary.value && (
                    <>
                        <LibraryProblem />
                        <RowsGroup
                            groupKey={recentsPath}
                            title={t("Heard lately")}
                            path={recentsPath}
                            empty={t("What you play will be listed here.")}
                            tools={<ClearRecents />}
                        />
                        <RowsGroup
                            groupKey={starsPath}
                            title={t("With a star on this radio")}
                            path={starsPath}
                            empty={t("Nothing has a star yet. The player and the menu of each station have one to press.")}
                        />
                        <LibraryFile />
                    </>
                )}
            </div>
        </OwnScreen>
    );
}
