// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { computed, signal } from "@preact/signals";

import { getRows, host, watch } from "./host";
import { current, replace, servicesPath } from "./navigation";
import { equalsBut, paramOf, prefixOf, type Path } from "./path";
import { RowType, type Row } from "./rows";

/** A search that a service offers: one of its query rows. */
export interface Query {
    readonly service: Path;
    readonly serviceTitle: string;
    readonly title: string;
    readonly key: string;
    readonly path: Path;
}

/** The rows of host:services; null until they are read. */
export const services = signal<readonly Row[] | null>(null);
export const queries = signal<readonly Query[]>([]);

/** The home screen: that of the only service, or the list of services. */
export const homePath = computed<Path>(() => {
    const all = services.value;
    return all?.length === 1 && all[0]!.path !== "" ? all[0]!.path : servicesPath;
});

export function serviceOf(path: Path): Row | undefined {
    const prefix = prefixOf(path);
    return services.value?.find((row) => row.path !== "" && prefixOf(row.path) === prefix);
}

/** The query whose results are on screen, with its text. */
export const activeQuery = computed(() => {
    for (const query of queries.value) {
        const text = paramOf(current.value, query.key);
        if (text !== null && equalsBut(query.path, current.value, query.key))
            return { query, text };
    }
    return null;
});

async function queriesOf(service: Row): Promise<Query[]> {
    if (service.searchPath === "")
        return [];
    const { rows } = await getRows(service.searchPath, 0, 19);
    return rows
        .filter((row) => row.type === RowType.query && row.queryPath !== "" && row.query !== "")
        .map((row) => ({
            service: service.path,
            serviceTitle: service.title,
            title: row.title,
            key: row.query,
            path: row.queryPath,
        }));
}

let run = 0;

export async function loadServices(): Promise<void> {
    const mine = ++run;
    try {
        const names = ["title", "description", "icon", "type", "path", "search", "disabled"];
        const { rows } = await getRows(servicesPath, 0, 99, names);
        if (mine !== run)
            return;
        services.value = rows;
        if (location.hash === "" && homePath.value !== servicesPath)
            replace(homePath.value, rows[0]!.title);
        const found = await Promise.allSettled(rows.map(queriesOf));
        if (mine === run)
            queries.value = found.flatMap((q) => (q.status === "fulfilled" ? q.value : []));
    } catch {
        // The list of services shows the error, and is read again when the connection is back.
    }
}

watch(servicesPath, () => void loadServices());
host.isOpen.subscribe((isOpen) => {
    if (isOpen)
        void loadServices();
});
