// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useRef } from "preact/hooks";

import { t } from "../i18n/i18n";
import { closeSheet, closeSheets, sheets, type Sheet } from "../model/menu";
import { player } from "../model/player";
import { moveAmong } from "./focus";
import { ImportSheet } from "./Files";
import { Icon } from "./icons";
import { KeysSheet } from "./KeysSheet";
import { MenuSheet } from "./MenuSheet";
import { NoticeBar } from "./Notices";
import { PlayingSheet } from "./PlayingSheet";

function titleOf(sheet: Sheet): string {
    switch (sheet.kind) {
        case "menu":
            return sheet.title || t("Menu");
        case "import":
            return t("Where to import");
        case "playing":
            return player.value.title || t("Player");
        default:
            return t("Keys");
    }
}

function Content({ sheet }: { sheet: Sheet }) {
    switch (sheet.kind) {
        case "menu":
            return <MenuSheet path={sheet.path} />;
        case "import":
            return <ImportSheet files={sheet.files} />;
        case "playing":
            return <PlayingSheet />;
        default:
            return <KeysSheet />;
    }
}

const keyOf = (sheet: Sheet) => (sheet.kind === "menu" ? sheet.path : sheet.kind);

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
            {top && <NoticeBar />}
        </dialog>
    );
}
