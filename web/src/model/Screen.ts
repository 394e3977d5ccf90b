import { batch, signal } from "@preact/signals";

import { RpcError } from "../rpc/Connection";
import { getRows, host, watch } from "./host";
import type { Path } from "./path";
import type { Roles, Row, RowsAnswer } from "./rows";

/** Rows that are asked for together. */
export const pageSize = 100;
/** Pages that are kept, those nearest to what is shown. */
export const maxPages = 20;
const maxRunning = 2;
const settleTime = 40;
/** A screen that a service did not survive so often in a row is not asked for again by itself. */
export const maxInterruptions = 3;

export type GetRows = (path: Path, first: number, last: number) => Promise<RowsAnswer>;

/**
 * One screen: its own roles, its length, and the rows that were looked at. Rows come by range, the
 * ones in sight first. Whatever changes at the path, the rows in sight are read again; until they
 * are there, the old ones stand.
 */
export class Screen {
    readonly roles = signal<Roles>({});
    /** Null until the first answer. */
    readonly count = signal<number | null>(null);
    readonly error = signal<RpcError | null>(null);
    /** Counts what came; who shows rows depends on it. */
    readonly version = signal(0);

    readonly #pages = new Map<number, { rows: readonly Row[]; epoch: number }>();
    readonly #running = new Set<number>();
    #epoch = 0;
    #first = 0;
    #last = pageSize - 1;
    #users = 0;
    #leave: (() => void) | null = null;
    #settle: ReturnType<typeof setTimeout> | undefined;
    #interruptions = 0;

    constructor(readonly path: Path, private readonly read: GetRows = getRows) {}

    get title(): string {
        const title = this.roles.value.title;
        return typeof title === "string" ? title : "";
    }

    row(index: number): Row | undefined {
        return this.#pages.get(Math.floor(index / pageSize))?.rows[index % pageSize];
    }

    get keptPages(): number {
        return this.#pages.size;
    }

    /** Follows changes from now on, and brings up to date what was read before. */
    enter(): void {
        if (this.#users++ > 0)
            return;
        this.#leave = watch(this.path, () => this.changed());
        this.reload();
    }

    leave(): void {
        if (--this.#users > 0)
            return;
        clearTimeout(this.#settle);
        this.#leave?.();
        this.#leave = null;
    }

    /** Something changed; several changes in a row are one. */
    changed(): void {
        clearTimeout(this.#settle);
        // It may be the very question that ends the service, which serves other screens as well.
        if (this.#interruptions >= maxInterruptions)
            return;
        this.#settle = setTimeout(() => this.reload(), settleTime);
    }

    reload(): void {
        ++this.#epoch;
        this.#fetch();
    }

    /** After an error: forgets it and tries again. */
    retry(): void {
        this.error.value = null;
        this.#interruptions = 0;
        this.reload();
    }

    /** These rows are in sight. */
    show(first: number, last: number): void {
        this.#first = first;
        this.#last = last;
        this.#fetch();
    }

    #missing(): number | undefined {
        const count = this.count.value;
        const end = count === null ? this.#first : Math.min(this.#last, Math.max(0, count - 1));
        for (let page = Math.floor(this.#first / pageSize); page * pageSize <= end; ++page) {
            if (!this.#running.has(page) && this.#pages.get(page)?.epoch !== this.#epoch)
                return page;
        }
        return undefined;
    }

    #fetch(): void {
        while (this.#running.size < maxRunning) {
            const page = this.#missing();
            if (page === undefined)
                return;
            this.#running.add(page);
            void this.#fetchPage(page, this.#epoch);
        }
    }

    async #fetchPage(page: number, epoch: number): Promise<void> {
        const first = page * pageSize;
        let failed = false;
        try {
            const answer = await this.read(this.path, first, first + pageSize - 1);
            this.#take(page, epoch, answer);
        } catch (error) {
            failed = true;
            if (error instanceof RpcError && error.name === RpcError.interrupted)
                ++this.#interruptions;
            // A lost connection says so itself, and all is read again when it is back.
            if (error instanceof RpcError && error.code !== RpcError.lost)
                this.error.value = error;
            else if (!(error instanceof RpcError))
                throw error;
        } finally {
            this.#running.delete(page);
        }
        if (!failed || epoch !== this.#epoch)
            this.#fetch();
    }

    #take(page: number, epoch: number, answer: RowsAnswer): void {
        batch(() => {
            this.#pages.set(page, { rows: answer.rows, epoch });
            if (epoch === this.#epoch) {
                this.count.value = answer.count;
                this.roles.value = answer.roles;
                this.error.value = null;
                this.#interruptions = 0;
            }
            this.#forget();
            ++this.version.value;
        });
    }

    #forget(): void {
        const middle = (this.#first + this.#last) / 2 / pageSize;
        const distance = (page: number) => Math.abs(page + 0.5 - middle);
        const count = this.count.value ?? 0;
        for (const page of [...this.#pages.keys()].sort((a, b) => distance(b) - distance(a))) {
            if (this.#pages.size > maxPages || page * pageSize >= Math.max(1, count))
                this.#pages.delete(page);
        }
    }
}

/** Screens that were shown lately, so that the way back is short. */
const maxScreens = 12;
const screens = new Map<Path, Screen>();

export function screenAt(path: Path): Screen {
    const screen = screens.get(path) ?? new Screen(path);
    screens.delete(path);
    screens.set(path, screen);
    for (const oldest of screens.keys()) {
        if (screens.size <= maxScreens)
            break;
        screens.delete(oldest);
    }
    return screen;
}

/** Screens that are shown now. */
export const shown = new Set<Screen>();

export function reloadShown(): void {
    for (const screen of shown)
        screen.retry();
}

host.isOpen.subscribe((isOpen) => {
    if (isOpen)
        reloadShown();
});
