// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { Connection, RpcError, type Params } from "../rpc/Connection";
import type { Path } from "./path";
import { readRows, rowRoles, type RowsAnswer } from "./rows";

/** The WebSocket lies beside the page, which may lie anywhere behind a proxy. */
function socketUrl(): string {
    const url = new URL("./ws", location.href);
    url.protocol = url.protocol === "https:" ? "wss:" : "ws:";
    return url.href;
}

/** The host that served this page. */
export const host = new Connection(socketUrl());

export async function getRows(
    path: Path, first: number, last: number, roles: readonly string[] = rowRoles, refresh = false,
    signal?: AbortSignal,
): Promise<RowsAnswer> {
    const params = { path, roles, first, last };
    const answer = readRows(await host.call("getRows", refresh ? { ...params, refresh } : params, signal), roles);
    // The list is not empty: the service could not be reached. See `problem` in docs/rpc.md.
    if (answer.problem !== "")
        throw new RpcError(RpcError.failed, answer.problem);
    return answer;
}

/** Reads \a roles of a path. \a poll tells the host that errors are expected, so that it does not log them. */
export async function getData(path: Path, roles: readonly string[], poll = false): Promise<unknown[]> {
    const result = (await host.call("getData", poll ? { path, roles, poll } : { path, roles })) as { values?: unknown[] };
    return result.values ?? [];
}

export async function setData(path: Path, role: string, value: unknown): Promise<unknown> {
    const result = (await host.call("setData", { path, role, value })) as { value?: unknown };
    return result.value;
}

type Changed = () => void;
const watchers = new Map<Path, Set<Changed>>();

/** Subscribes to changes at the path, and again after a reconnect. Returns the function that unsubscribes. */
export function watch(path: Path, changed: Changed): () => void {
    let all = watchers.get(path);
    if (!all) {
        all = new Set();
        watchers.set(path, all);
        subscribe("subscribe", path);
    }
    all.add(changed);
    return () => {
        all.delete(changed);
        if (all.size > 0 || watchers.get(path) !== all)
            return;
        watchers.delete(path);
        subscribe("unsubscribe", path);
    };
}

function subscribe(method: string, path: Path): void {
    // Without a connection this fails; all subscriptions are made again once there is one.
    host.call(method, { path }).catch(() => {});
}

host.on("changed", (params: Params) => {
    for (const changed of [...(watchers.get(String(params.path)) ?? [])])
        changed();
});

host.isOpen.subscribe((isOpen) => {
    if (isOpen) {
        for (const path of watchers.keys())
            subscribe("subscribe", path);
    }
});
