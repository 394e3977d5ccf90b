// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { signal } from "@preact/signals";
import { useEffect, useRef, useState } from "preact/hooks";

import { t } from "../i18n/i18n";
import { isOwner } from "../model/access";
import { exported, formats, importFile, maxSize } from "../model/files";
import { asRpcError, closeSheets, openSheet } from "../model/menu";
import { announce } from "../model/notices";
import { importers, type Service } from "../model/services";
import { download } from "./download";
import { Icon } from "./icons";
import { errorText } from "./words";

/** Files dropped at a time. */
const maxFiles = 20;

let isImporting = false;

/** Imports one file after the other; a notice tells what became of each. */
async function importAll(service: Service, files: readonly File[]): Promise<void> {
    if (isImporting)
        return announce({ kind: "failed", text: t("Another import is under way.") });
    isImporting = true;
    const lines: string[] = [];
    let hasFailed = false;
    const tell = (line: string, isBad: boolean) => {
        lines.push(line);
        hasFailed ||= isBad;
        announce({ kind: hasFailed ? "failed" : "told", text: lines.join("\n") });
    };
    for (const file of files.slice(0, maxFiles)) {
        if (file.size > maxSize) {
            tell(t("%1 is larger than 1 MiB.", file.name), true);
            continue;
        }
        try {
            const { added, known, skipped, message } = await importFile(service, file);
            const counts = t("%1: %2 added, %3 known already, %4 skipped.", file.name, added, known, skipped);
            tell(message === "" ? counts : `${counts} ${message}`, false);
        } catch (error) {
            // A folder cannot be read, nor a file that is gone by now.
            const why = error instanceof DOMException ? t("It cannot be read.") : errorText(asRpcError(error));
            tell(`${file.name}: ${why}`, true);
        }
    }
    if (files.length > maxFiles)
        tell(t("Only the first %1 files were imported.", maxFiles), true);
    isImporting = false;
}

/** Imports into the only service that takes files, or asks into which. */
function importSomewhere(files: readonly File[]): void {
    if (files.length === 0)
        return;
    const [first, ...others] = importers.peek();
    if (first && others.length === 0)
        void importAll(first, files);
    else if (first)
        openSheet({ kind: "import", files });
}

/** The services that take files, to choose one. */
export function ImportSheet({ files }: { files: readonly File[] }) {
    return (
        <ul class="menu-rows" role="list">
            {importers.value.map((service) => (
                <li key={service.path}>
                    <div class="row">
                        <button
                            type="button"
                            class="body"
                            data-main
                            onClick={() => {
                                closeSheets();
                                void importAll(service, files);
                            }}
                        >
                            <span class="texts"><span class="title" dir="auto">{service.title}</span></span>
                        </button>
                    </div>
                </li>
            ))}
        </ul>
    );
}

const isDragged = signal(false);

/** Takes files that are dropped anywhere on the page, while a service takes some. */
export function DropZone() {
    useEffect(() => {
        const hasFiles = (event: DragEvent) => importers.peek().length > 0 && (event.dataTransfer?.types.includes("Files") ?? false);
        const over = (event: DragEvent) => {
            if (!hasFiles(event))
                return;
            event.preventDefault();
            event.dataTransfer!.dropEffect = "copy";
            isDragged.value = true;
        };
        // Without a related target, the pointer has left the window.
        const leave = (event: DragEvent) => {
            if (event.relatedTarget === null)
                isDragged.value = false;
        };
        const drop = (event: DragEvent) => {
            isDragged.value = false;
            if (!hasFiles(event))
                return;
            event.preventDefault();
            importSomewhere([...event.dataTransfer!.files]);
        };
        window.addEventListener("dragover", over);
        window.addEventListener("dragleave", leave);
        window.addEventListener("drop", drop);
        return () => {
            window.removeEventListener("dragover", over);
            window.removeEventListener("dragleave", leave);
            window.removeEventListener("drop", drop);
        };
    }, []);
    if (!isDragged.value)
        return null;
    const [first, ...others] = importers.value;
    return (
        <div class="drop" aria-hidden="true">
            <p><Icon shape="folder" />{others.length === 0 ? t("Drop files to add their stations to %1", first?.title ?? "") : t("Drop files to add their stations")}</p>
        </div>
    );
}

/** Buttons for what a service does with files, on its first screen. */
export function FileTools({ service }: { service: Service }) {
    const input = useRef<HTMLInputElement>(null);
    const [format, setFormat] = useState<string>(formats[0]);
    const save = async () => {
        try {
            const { name, data } = await exported(service, format);
            download(name, data);
        } catch (error) {
            announce({ kind: "failed", text: errorText(asRpcError(error)) });
        }
    };
    return (
        <div class="buttons files">
            {service.importPath !== "" && isOwner.value && (
                <>
                    <button type="button" onClick={() => input.current?.click()}>{t("Import files …")}</button>
                    <input
                        ref={input}
                        type="file"
                        multiple
                        hidden
                        accept=".m3u,.m3u8,.pls,.xspf,.opml,.xml"
                        onChange={(event) => {
                            const files = [...(event.currentTarget.files ?? [])];
                            event.currentTarget.value = "";
                            if (files.length > 0)
                                void importAll(service, files);
                        }}
                    />
                </>
            )}
            {service.exportPath !== "" && (
                <span>
                    <button type="button" onClick={() => void save()}>{t("Export")}</button>
                    <select aria-label={t("Format")} value={format} onChange={(event) => setFormat(event.currentTarget.value)}>
                        {formats.map((each) => <option key={each} value={each}>{each.toUpperCase()}</option>)}
                    </select>
                </span>
            )}
        </div>
    );
}
