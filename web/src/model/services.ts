// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { batch, computed, signal } from "@preact/signals";

import { isRecord, RpcError } from "../rpc/Connection";
import { isOwner } from "./access";
import { getRows, host, watch } from "./host";
import { current, emptyAddress, leave, openCrumb, replace, searchPath, servicesPath } from "./navigation";
import { equalsBut, paramOf, prefixOf, withParam, type Path } from "./path";
import { pathIn, readRow, readRows, rolesIn, RowType, text, type Roles, type Row } from "./rows";

/** A row of host:services, with what the service says of itself. */
export interface Service extends Row {
    readonly id: string;
    readonly favorites: FavoritesRole | null;
    readonly account: AccountRole | null;
    /** The values that take and give files; empty for none. */
    readonly importPath: Path;
    readonly exportPath: Path;
}

export interface FavoritesRole {
    readonly path: Path;
    /** The menu entries that add an item to the favorites or remove it, without parameters. */
    readonly toggle: readonly Path[];
    /** Parameters of a menu's path that identify its item. */
    readonly ids: readonly string[];
}

export interface AccountRole {
    readonly path: Path;
    /** The type code of the account's value, and its key. */
    readonly type: number;
    readonly key: string;
}

/** A search that a service offers: one of its query rows. */
export interface Query {
    readonly service: Path;
    readonly serviceTitle: string;
    readonly title: string;
    readonly key: string;
    readonly path: Path;
}

/** The searches of one service: being read, read, or not readable. */
export interface Searches {
    readonly service: Service;
    readonly queries: readonly Query[] | null;
    readonly error: RpcError | null;
}

/** The rows of host:services; null until they are read. */
export const services = signal<readonly Service[] | null>(null);
/** Of the services that search, in the order of the services. */
export const searches = signal<readonly Searches[]>([]);
export const queries = computed<readonly Query[]>(() => searches.value.flatMap((each) => each.queries ?? []));

/** The home screen: that of the only service, or the list of services. */
export const homePath = computed<Path>(() => {
    const all = services.value;
    return all?.length === 1 && all[0]!.path !== "" ? all[0]!.path : servicesPath;
});

/** Opens the home screen. */
export function openHome(): void {
    openCrumb(homePath.peek(), "");
    awaitHome();
}

/** Goes back to where somebody came from, or to the home screen. */
export function leaveForHome(): void {
    leave(homePath.peek());
    awaitHome();
}

/** Before the services are known, their list stands for the home screen. */
function awaitHome(): void {
    if (services.peek() === null && current.peek() === servicesPath)
        emptyAddress();
}

export function serviceOf(path: Path): Service | undefined {
    const prefix = prefixOf(path);
    return services.value?.find((row) => row.path !== "" && prefixOf(row.path) === prefix);
}

/** The services that take files from this page. */
export const importers = computed(() => (
    isOwner.value ? (services.value ?? []).filter((service) => service.importPath !== "") : []));

const textKey = "q";

/** The page's own screen with what all services find. */
export function searchFor(wanted: string): Path {
    return withParam(searchPath, textKey, wanted);
}

/** What is searched for at the path; null for any other screen. */
export function searchedText(path: Path): string | null {
    return path.startsWith(searchPath + "?") ? paramOf(path, textKey) : null;
}

/** What is searched for on a screen, and in which search; null for all of them. */
export function searchAt(path: Path): { query: Query | null; text: string } | null {
    const wanted = searchedText(path);
    if (wanted !== null)
        return { query: null, text: wanted };
    for (const query of queries.value) {
        const found = paramOf(path, query.key);
        if (found !== null && equalsBut(query.path, path, query.key))
            return { query, text: found };
    }
    return null;
}

export const activeSearch = computed(() => searchAt(current.value));

/** The roles that the host itself knows; for the others, all services are asked. */
const declaredRoles = ["path", "id", "search", "favorites", "account", "import", "export"];
const serviceRoles = ["title", "description", "icon", "type", "disabled", ...declaredRoles];
/** Milliseconds after which the page does with these alone until the others are there. */
const patience = 1000;

function texts(value: unknown): string[] {
    return Array.isArray(value) ? value.map(text).filter((each) => each !== "") : [];
}

export function readService(roles: Roles): Service {
    const { favorites, account } = roles;
    const row = readRow(roles);
    return {
        ...row,
        id: text(roles.id),
        favorites: isRecord(favorites) && pathIn(favorites) !== "" ? {
            path: pathIn(favorites),
            toggle: texts(favorites.toggle),
            ids: texts(favorites.ids),
        } : null,
        account: isRecord(account) && pathIn(account) !== "" ? {
            path: pathIn(account),
            type: typeof account.type === "number" ? account.type : 0,
            key: text(account.key),
        } : null,
        importPath: pathIn(roles.import),
        exportPath: pathIn(roles.export),
    };
}

async function queriesOf(service: Service): Promise<Query[]> {
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

/** Reads the searches of a service, again if they could not be read. */
export async function loadSearches(service: Service): Promise<void> {
    const mine = run;
    const set = (queries: readonly Query[] | null, error: RpcError | null) => {
        if (mine === run)
            searches.value = searches.peek().map((old) => (
                old.service.path === service.path ? { service, queries, error } : old));
    };
    try {
        set(await queriesOf(service), null);
    } catch (error) {
        if (!(error instanceof RpcError))
            throw error;
        // A lost connection has a notice of its own, and all is read again when it is back.
        if (error.code !== RpcError.lost)
            set(null, error);
    }
}

/** Null if the list could not be read. */
async function readServices(names: readonly string[]): Promise<Service[] | null> {
    const result = await host.call("getRows", { path: servicesPath, roles: names, first: 0, last: 99 });
    // What the host itself keeps is on a screen of the page's own.
    const isService = ({ path }: Service) => prefixOf(path) !== prefixOf(servicesPath);
    return readRows(result, names).problem === "" ? rolesIn(result, names).map(readService).filter(isService) : null;
}

function takeServices(all: readonly Service[]): void {
    const known = searches.peek();
    batch(() => {
        services.value = all;
        searches.value = all.filter((service) => service.searchPath !== "").map((service) => ({
            service,
            queries: known.find((old) => old.service.path === service.path)?.queries ?? null,
            error: null,
        }));
    });
    if (location.hash === "" && homePath.value !== servicesPath)
        replace(homePath.value, all[0]!.title);
    // Each by itself, so that a slow service delays no other one.
    for (const { service } of searches.peek())
        void loadSearches(service);
}

export async function loadServices(): Promise<void> {
    const mine = ++run;
    let isWhole = false;
    // A service that is busy would otherwise keep the others from being searched.
    const hurry = setTimeout(() => {
        void readServices(declaredRoles).then((all) => {
            if (mine === run && all && !isWhole && services.peek() === null)
                takeServices(all.map((service) => ({ ...service, title: service.id })));
        }, () => {});
    }, patience);
    try {
        const all = await readServices(serviceRoles);
        if (mine !== run || !all)
            return;
        isWhole = true;
        takeServices(all);
    } catch {
        // The list of services shows the error, and is read again when the connection is back.
    } finally {
        clearTimeout(hurry);
    }
}

watch(servicesPath, () => void loadServices());
host.isOpen.subscribe((isOpen) => {
    if (isOpen)
        void loadServices();
});
