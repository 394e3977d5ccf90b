// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useId, useState } from "preact/hooks";

import { fullTag, languageName, languages, t } from "../i18n/i18n";
import { bestLanguage } from "../i18n/plural";
import { setData } from "../model/host";
import { languagePath } from "../model/language";
import { asRpcError } from "../model/menu";
import type { Row } from "../model/rows";
import type { Screen } from "../model/Screen";
import { errorText } from "./words";

interface Props {
    screen: Screen;
    row: Row;
    isActive: boolean;
}

/** The control for a row's value, by the value's type. */
export function ValueControl({ screen, row, isActive }: Props) {
    const id = useId();
    const [problem, setProblem] = useState("");
    const write = async (value: unknown) => {
        setProblem("");
        try {
            await setData(row.path, "value", value);
            screen.changed();
            return true;
        } catch (error) {
            setProblem(errorText(asRpcError(error)));
            return false;
        }
    };
    const common = { id, "data-main": true, tabIndex: isActive ? 0 : -1 };
    const [about, wrong] = [`${id}-about`, `${id}-wrong`];
    return (
        <div class="body value">
            <div class="texts">
                <label class="title" for={id} dir="auto">{row.title || t("Untitled")}</label>
                {row.description && <span class="description" id={about} dir="auto">{row.description}</span>}
                {row.pinned && <span class="description">{t("Fixed when the host was started.")}</span>}
                <span class="description bad" id={wrong} role="alert" dir="auto">{problem}</span>
            </div>
            <Control row={row} common={{ ...common, "aria-describedby": `${about} ${wrong}` }} write={write} />
        </div>
    );
}

interface ControlProps {
    row: Row;
    common: { id: string; tabIndex: number; "aria-describedby": string };
    /** Resolves to false if the value was refused. */
    write(value: unknown): Promise<boolean>;
}

function Control({ row, common, write }: ControlProps) {
    const value = row.value;
    const isFixed = row.pinned;
    if (value?.type === "bool") {
        return (
            <input
                {...common}
                class="switch"
                type="checkbox"
                role="switch"
                checked={value.value}
                disabled={isFixed}
                onChange={async ({ currentTarget }) => {
                    if (!(await write(currentTarget.checked)))
                        currentTarget.checked = value.value;
                }}
            />
        );
    }
    if (value?.type === "string" && row.path === languagePath) {
        return (
            <select
                {...common}
                value={bestLanguage(value.value, languages) ?? ""}
                disabled={isFixed}
                onChange={async ({ currentTarget }) => {
                    if (!(await write(fullTag(currentTarget.value))))
                        currentTarget.value = bestLanguage(value.value, languages) ?? "";
                }}
            >
                {languages.map((tag) => (
                    <option key={tag} value={tag} lang={tag}>{languageName(tag)}</option>
                ))}
            </select>
        );
    }
    if (value?.type === "string" || value?.type === "number")
        return <TextField key={String(value.value)} row={row} common={common} write={write} />;
    return <span {...common} class="fixed">–</span>;
}

/** A text field that writes its value on Enter and when it loses the focus. */
function TextField({ row, common, write }: ControlProps) {
    const known = row.value && "value" in row.value ? row.value.value : "";
    const [text, setText] = useState(String(known));
    useEffect(() => setText(String(known)), [known]);
    const isNumber = typeof known === "number";
    const save = async () => {
        if (text !== String(known) && !(await write(isNumber ? Number(text) : text)))
            setText(String(known));
    };
    return (
        <input
            {...common}
            class="text"
            type="text"
            inputmode={isNumber ? "decimal" : "text"}
            autocomplete="off"
            spellcheck={false}
            dir="auto"
            readOnly={row.pinned}
            value={text}
            onInput={(event) => setText(event.currentTarget.value)}
            onBlur={() => void save()}
            onKeyDown={(event) => {
                if (event.key === "Enter")
                    void save();
                if (event.key === "Escape")
                    setText(String(known));
            }}
        />
    );
}
