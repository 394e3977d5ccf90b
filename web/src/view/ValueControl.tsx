import { useEffect, useId, useState } from "preact/hooks";

import { fullTag, languageName, languagePath, languages, t } from "../i18n/i18n";
import { bestLanguage } from "../i18n/plural";
import { setData } from "../model/host";
import { asRpcError } from "../model/menu";
import { announce } from "../model/notices";
import type { Row } from "../model/rows";
import type { Screen } from "../model/Screen";

interface Props {
    screen: Screen;
    row: Row;
    isActive: boolean;
}

/** A value and what changes it, by the value's type. */
export function ValueControl({ screen, row, isActive }: Props) {
    const id = useId();
    const write = async (value: unknown) => {
        try {
            await setData(row.path, "value", value);
        } catch (error) {
            announce({ kind: "failed", text: asRpcError(error).message || t("Something went wrong.") });
        }
        screen.changed();
    };
    const common = { id, "data-main": true, tabIndex: isActive ? 0 : -1 };
    return (
        <div class="body value">
            <label class="texts" for={id}>
                <span class="title">{row.title || t("Untitled")}</span>
                {row.description && <span class="description">{row.description}</span>}
            </label>
            <Control row={row} common={common} write={write} />
        </div>
    );
}

interface ControlProps {
    row: Row;
    common: { id: string; tabIndex: number };
    write(value: unknown): Promise<void>;
}

function Control({ row, common, write }: ControlProps) {
    const value = row.value;
    if (value?.type === "bool") {
        return (
            <input
                {...common}
                class="switch"
                type="checkbox"
                role="switch"
                checked={value.value}
                onChange={(event) => void write(event.currentTarget.checked)}
            />
        );
    }
    if (value?.type === "string" && row.path === languagePath) {
        return (
            <select
                {...common}
                value={bestLanguage(value.value, languages) ?? ""}
                onChange={(event) => void write(fullTag(event.currentTarget.value))}
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

/** Written when the field is left or Enter is pressed. */
function TextField({ row, common, write }: ControlProps) {
    const known = row.value && "value" in row.value ? row.value.value : "";
    const [text, setText] = useState(String(known));
    useEffect(() => setText(String(known)), [known]);
    const isNumber = typeof known === "number";
    const save = () => {
        if (text !== String(known))
            void write(isNumber ? Number(text) : text);
    };
    return (
        <input
            {...common}
            class="text"
            type="text"
            inputmode={isNumber ? "decimal" : "text"}
            autocomplete="off"
            spellcheck={false}
            value={text}
            onInput={(event) => setText(event.currentTarget.value)}
            onBlur={save}
            onKeyDown={(event) => {
                if (event.key === "Enter")
                    save();
                if (event.key === "Escape")
                    setText(String(known));
            }}
        />
    );
}
