// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useRef } from "preact/hooks";

import { t } from "../i18n/i18n";
import { closeSheet, closeSheets, sheets, type Sheet } from "../model/menu";
import type { Path } from "../model/path";
import { player } from "../model/player";
import type { Item } from "../model/presets";
import { serviceOf } from "../model/services";
import { moveAmong } from "./focus";
import { ImportSheet } from "./Files";
import { Icon } from "./icons";
import { hasItemTools, ItemTools } from "./ItemTools";
import { KeysSheet } from "./KeysSheet";
import { MenuSheet } from "./MenuSheet";
import { NoticeBar } from "./Notices";
import { OutputsSheet } from "./OutputsSheet";
import { PlayingSheet } from "./PlayingSheet";
import { PresetsSheet } from "./PresetsSheet";
import { Ringing } from "./Ringing";
import { SleepSheet } from "./SleepSheet";

function titleOf(sheet: Sheet): string {
    switch (sheet.kind) {
        case "menu":
            return sheet.title || t("Menu");
        case "import":
            return t("Where to import");
        case "playing":
            return player.value.title || t("Player");
        case "presets":
            return t("Which preset?");
        case "sleep":
            return t("Sleep timer");
        case "outputs":
            return t("Output");
        default:
            return t("Keys");
    }
}

function Content({ sheet }: { sheet: Sheet }) {
    switch (sheet.kind) {
        case "menu":
            return <RowMenu path={sheet.path} item={sheet.item} />;
        case "import":
            return <ImportSheet files={sheet.files} />;
        case "playing":
            return <PlayingSheet />;
        case "presets":
            return <PresetsSheet item={sheet.item} />;
        case "sleep":
            return <SleepSheet />;
        case "outputs":
            return <OutputsSheet />;
        default:
            return <KeysSheet />;
    }
}

/** A menu of a service's, and before it what this radio does with the row that it belongs to. */
function RowMenu({ path, item }: { path: Path; item: Item | undefined }) {
    if (!item)
        return <MenuSheet path={path} />;
    return (
        <>
            <ItemTools item={item} />
            {path !== "" && (
                <>
                    {hasItemTools() && <h3 class="in-sheet" dir="auto">{serviceOf(path)?.title ?? ""}</h3>}
                    <MenuSheet path={path} />
                </>
            )}
        </>
    );
}

const keyOf = (sheet: Sheet) => (sheet.kind === "menu" ? `${sheet.path} ${sheet.item?.path ?? ""}` : sheet.kind);

/** The modal dialog with the topmost sheet. */
export function Sheets() {
    const dialog = useRef<HTMLDialogElement>(null);
    const heading = useRef<HTMLHeadingElement>(null);
    const open = sheets.value;
    const top = open[open.length - 1];
    const isOpen = top !== undefined;
    useEffect(() => {
        if (isOpen && !dialog.current?.open)
            dialog.current?.showModal();
        else if (!isOpen && dialog.current?.open)
            dialog.current.close();
    }, [isOpen]);
    useEffect(() => {
        if (isOpen)
            heading.current?.focus();
    }, [isOpen, open.length]);
    return (
        <dialog
            ref={dialog}
            aria-labelledby="sheet-title"
            onCancel={(event) => {
                // Escape closes one sheet, not the dialog with all of them.
                event.preventDefault();
                closeSheet();
            }}
            onClose={closeSheets}
            onClick={(event) => {
                if (event.target === dialog.current)
                    closeSheets();
            }}
            onKeyDown={(event) => moveAmong(event.currentTarget, event)}
        >
            {top && (
                <div class={`sheet ${top.kind}`}>
                    <div class="sheet-head">
                        {open.length > 1 && (
                            <button type="button" class="round" aria-label={t("Back")} onClick={closeSheet}>
                                <Icon shape="back" />
                            </button>
                        )}
                        <h2 id="sheet-title" ref={heading} tabIndex={-1} dir="auto">{titleOf(top)}</h2>
                        <button type="button" class="round" aria-label={t("Close")} onClick={closeSheets}>
                            <Icon shape="close" />
                        </button>
                    </div>
                    <Content key={keyOf(top)} sheet={top} />
                </div>
            )}
            {/* Elements outside a modal dialog are inert: not operable, and not read by screen readers. */}
            {top && <><Ringing /><NoticeBar /></>}
        </dialog>
    );
}
