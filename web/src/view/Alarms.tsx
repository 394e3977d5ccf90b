// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useId, useState } from "preact/hooks";

import { t, tn } from "../i18n/i18n";
import { alarms, draft, enableAlarm, removeAlarm, setAlarm, wantedOf, type Alarm, type Source, type Wanted } from "../model/alarms";
import { asRpcError } from "../model/menu";
import { player, PlayState } from "../model/player";
import { presets, type Item } from "../model/presets";
import { OwnScreen } from "./OwnScreen";
import { dayAndTime, dayName, daysText, timeOfDay } from "./time";
import { errorText } from "./words";

const weekDays = [1, 2, 3, 4, 5, 6, 7];
const fades = [0, 10, 30, 60, 120, 300];
const volumes = [10, 20, 30, 40, 50, 60, 70, 80, 90, 100];

/** A new alarm plays a row, or what plays, or else the first preset. */
function newAlarm(item: Item | null): Wanted {
    const first = [...(presets.peek()?.keys() ?? [])][0];
    const isSilent = player.peek().state === PlayState.stopped;
    const source: Source = item
        ? { is: "row", item }
        : isSilent && first !== undefined ? { is: "preset", number: first } : { is: "kept" };
    return { id: "", time: "07:00", days: [1, 2, 3, 4, 5], isEnabled: true, volume: null, fade: 30, source };
}

function clockTime(time: string): string {
    return time === "" ? "" : timeOfDay(new Date(`2024-01-01T${time}`));
}

function fadeText(seconds: number): string {
    if (seconds === 0)
        return t("At once");
    return seconds % 60 === 0 ? tn("In %n minute", "In %n minutes", seconds / 60) : tn("In %n second", "In %n seconds", seconds);
}

/** The choices with the present value among them. */
const withValue = (all: readonly number[], value: number) => [...new Set([...all, value])].sort((a, b) => a - b);

/** What is heard of an alarm that has nothing to play, or cannot have it. */
const toneText = () => t("The radio’s own tone");

interface Choice {
    readonly key: string;
    readonly text: string;
    readonly source: Source;
}

/** What an alarm can play; \a kept is the title of what it had. */
function choices(item: Item | null, kept: string): Choice[] {
    const now = player.value;
    const all: Choice[] = [];
    if (kept !== "")
        all.push({ key: "kept", text: kept, source: { is: "kept" } });
    else if (now.state !== PlayState.stopped)
        all.push({ key: "kept", text: t("What plays: %1", now.title || t("Untitled")), source: { is: "kept" } });
    else if (!item)
        all.push({ key: "kept", text: toneText(), source: { is: "kept" } });
    if (item)
        all.unshift({ key: "row", text: item.title || t("Untitled"), source: { is: "row", item } });
    for (const { number, title } of presets.value?.values() ?? [])
        all.push({ key: `preset ${number}`, text: t("Preset %1: %2", number, title || t("Untitled")), source: { is: "preset", number } });
    return all;
}

const keyOf = (source: Source) => (source.is === "preset" ? `preset ${source.number}` : source.is);

function Days({ days, choose }: { days: readonly number[]; choose(days: number[]): void }) {
    return (
        <fieldset class="days">
            <legend>{t("Days")}</legend>
            <div>
                {weekDays.map((day) => (
                    <label key={day}>
                        <input
                            type="checkbox"
                            aria-label={dayName(day, "long")}
                            checked={days.includes(day)}
                            onChange={(event) => choose(event.currentTarget.checked
                                ? [...days, day].sort() : days.filter((each) => each !== day))}
                        />
                        <span aria-hidden="true">{dayName(day, "short")}</span>
                    </label>
                ))}
            </div>
            <p class="quiet-text">{days.length === 0 ? t("Without a day it goes off once.") : daysText(days)}</p>
        </fieldset>
    );
}

interface FormProps {
    start: Wanted;
    /** Title of what the alarm has; empty for a new one. */
    kept: string;
    item: Item | null;
    close(): void;
}

function AlarmForm({ start, kept, item, close }: FormProps) {
    const [wanted, setWanted] = useState(start);
    const [problem, setProblem] = useState("");
    const [isBusy, setBusy] = useState(false);
    const change = (part: Partial<Wanted>) => setWanted({ ...wanted, ...part });
    const all = choices(item, kept);
    const chosen = all.find(({ key }) => key === keyOf(wanted.source)) ?? all[0];
    const save = async () => {
        if (isBusy || !chosen)
            return;
        setBusy(true);
        try {
            await setAlarm({ ...wanted, source: chosen.source });
            close();
        } catch (error) {
            setProblem(errorText(asRpcError(error)));
            setBusy(false);
        }
    };
    return (
        <form
            class="fields"
            onSubmit={(event) => {
                event.preventDefault();
                void save();
            }}
        >
            <label>
                {t("Time")}
                <input type="time" required value={wanted.time} onInput={(event) => change({ time: event.currentTarget.value })} />
            </label>
            <Days days={wanted.days} choose={(days) => change({ days })} />
            {chosen && (
                <label>
                    {t("What to play")}
                    <select
                        value={chosen.key}
                        onChange={(event) => change({ source: all.find(({ key }) => key === event.currentTarget.value)!.source })}
                    >
                        {all.map(({ key, text }) => <option key={key} value={key}>{text}</option>)}
                    </select>
                </label>
            )}
            <label>
                {t("Volume")}
                <select
                    value={wanted.volume ?? -1}
                    onChange={(event) => change({ volume: event.currentTarget.value === "-1" ? null : Number(event.currentTarget.value) })}
                >
                    <option value={-1}>{t("As it is set then")}</option>
                    {withValue(volumes, wanted.volume ?? 10).map((each) => <option key={each} value={each}>{t("%1 %", each)}</option>)}
                </select>
            </label>
            <label>
                {t("Becomes as loud as that")}
                <select value={wanted.fade} onChange={(event) => change({ fade: Number(event.currentTarget.value) })}>
                    {withValue(fades, wanted.fade).map((each) => <option key={each} value={each}>{fadeText(each)}</option>)}
                </select>
            </label>
            {problem !== "" && <p class="bad" role="alert" dir="auto">{problem}</p>}
            <p class="buttons">
                <button type="submit" class="filled">{t("Save")}</button>
                <button type="button" onClick={close}>{t("Cancel")}</button>
            </p>
        </form>
    );
}

function Removing({ alarm, close }: { alarm: Alarm; close(): void }) {
    const id = useId();
    return (
        <div class="fields" role="group" aria-labelledby={id}>
            <p id={id}>{t("Remove the alarm at %1?", clockTime(alarm.time))}</p>
            <p class="buttons">
                <button type="button" class="filled danger" onClick={() => void removeAlarm(alarm)}>{t("Remove")}</button>
                <button type="button" onClick={close}>{t("Keep it")}</button>
            </p>
        </div>
    );
}

function AlarmCard({ alarm }: { alarm: Alarm }) {
    const [opened, setOpened] = useState<"" | "form" | "question">("");
    const time = clockTime(alarm.time);
    const close = () => setOpened("");
    return (
        <li class={alarm.isEnabled ? "card device alarm" : "card device alarm off"}>
            <div class="device-head">
                <div class="texts">
                    <h3><span class="alarm-time">{time}</span> {daysText(alarm.days)}</h3>
                    <p dir="auto">{alarm.title || toneText()}</p>
                    <p class="quiet-text">
                        {[
                            alarm.next ? t("Next: %1", dayAndTime(alarm.next)) : "",
                            alarm.volume === null ? "" : t("%1 %", alarm.volume),
                        ].filter((each) => each !== "").join(" · ")}
                    </p>
                </div>
                <input
                    class="switch"
                    type="checkbox"
                    role="switch"
                    aria-label={t("Alarm at %1", time)}
                    checked={alarm.isEnabled}
                    onChange={async ({ currentTarget }) => {
                        if (!(await enableAlarm(alarm, currentTarget.checked)))
                            currentTarget.checked = alarm.isEnabled;
                    }}
                />
            </div>
            {opened === "form" && <AlarmForm start={wantedOf(alarm)} kept={alarm.title || toneText()} item={null} close={close} />}
            {opened === "question" && <Removing alarm={alarm} close={close} />}
            {opened === "" && (
                <p class="buttons">
                    <button type="button" aria-label={t("Change the alarm at %1", time)} onClick={() => setOpened("form")}>{t("Change")}</button>
                    <button type="button" aria-label={t("Remove the alarm at %1", time)} onClick={() => setOpened("question")}>{t("Remove …")}</button>
                </p>
            )}
        </li>
    );
}

/** The alarms, and a form for a new one. */
export function AlarmsView() {
    const known = alarms.value;
    const made = draft.value;
    // Left with the screen.
    useEffect(() => () => {
        draft.value = null;
    }, []);
    return (
        <OwnScreen title={t("Alarms")}>
            {made ? (
                <section class="card" aria-labelledby="new-alarm">
                    <h2 id="new-alarm">{t("New alarm")}</h2>
                    <AlarmForm start={newAlarm(made.item)} kept="" item={made.item} close={() => (draft.value = null)} />
                </section>
            ) : known && (
                <p class="buttons add-alarm">
                    <button type="button" class="filled" onClick={() => (draft.value = { item: null })}>{t("Add an alarm")}</button>
                </p>
            )}
            {known?.all.length === 0 && !made && <p class="quiet-text">{t("None is set.")}</p>}
            {known && known.all.length > 0 && (
                <ul role="list">
                    {known.all.map((alarm) => <AlarmCard key={alarm.id} alarm={alarm} />)}
                </ul>
            )}
        </OwnScreen>
    );
}
