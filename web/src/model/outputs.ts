// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { isRecord } from "../rpc/Connection";
import { host } from "./host";
import { text } from "./rows";

/** Where the sound can go. The name comes from outside. */
export interface Output {
    readonly output: string;
    readonly name: string;
    readonly isCurrent: boolean;
    readonly isAvailable: boolean;
}

export function readOutputs(told: unknown): Output[] {
    const all: unknown[] = isRecord(told) && Array.isArray(told.outputs) ? told.outputs : [];
    return all.filter(isRecord).filter((each) => text(each.output) !== "").map((each) => ({
        output: text(each.output),
        name: text(each.name) || text(each.output),
        isCurrent: each.current === true,
        isAvailable: each.available === true,
    }));
}

/** Reject with an RpcError. */
export const listOutputs = async (): Promise<Output[]> => readOutputs(await host.call("outputs.list"));
export const chooseOutput = (output: string): Promise<unknown> => host.call("outputs.choose", { output });

/** Calls back whenever the outputs may have changed, until the returned function is called. */
const watchers = new Set<() => void>();
export function watchOutputs(changed: () => void): () => void {
    watchers.add(changed);
    return () => void watchers.delete(changed);
}

function tell(): void {
    for (const changed of [...watchers])
        changed();
}

host.on("outputs.changed", tell);
host.isOpen.subscribe((isOpen) => {
    if (isOpen)
        tell();
});
