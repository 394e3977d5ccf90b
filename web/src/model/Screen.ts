// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { batch, signal } from "@preact/signals";

import { RpcError } from "../rpc/Connection";
import { getRows, host, watch } from "./host";
import type { Shape } from "./layout";
import type { Path } from "./path";
import { rowRoles, RowType, type Roles, type Row, type RowsAnswer } from "./rows";

/** Rows that are asked for together. */
export const pageSize = 100;
/** Pages that are kept, those nearest to what is shown. */
export const maxPages = 20;
const maxRunning = 2;
const settleTime = 40;
/** A screen that a service did not survive so often in a row is not asked for again by itself. */
export const maxInterruptions = 3;

/** An answer that takes longer is said to do so. */
export const patience = 3000;
/** After an error a screen that is shown is read again by itself, later each time. */
export const healTimes = [5000, 10_000, 20_000, 30_000];

/** `anew` means that a list which the host has kept is too old. */
export type GetRows = (
    path: Path, first: number, last: number, anew: boolean, signal: AbortSignal,
) => Promise<RowsAnswer>;

const readRange: GetRows = (path, first, last, anew, signal) => getRows(path, first, last, rowRoles, anew, signal);

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
    /** An answer takes long. */
    readonly isSlow = signal(false);
    /** The reader did not want to wait for the answer any more. */
    readonly isCancelled = signal(false);
    /** Counts what came; who shows rows depends on it. */
    readonly version = signal(0);

    readonly #pages = new Map<number, { rows: readonly Row[]; epoch: number }>();
    readonly #running = new Set<number>();
    #epoch = 0;
    /** The last epoch whose answers are not wanted. */
    #cancelled = -1;
    /** The next range is read from the service, the others come with it. */
    #isOld = true;
    /** Takes back what is asked for. */
    #aborter = new AbortController();
    #first = 0;
    #last = pageSize - 1;
    #users = 0;
    #leave: (() => void) | null = null;
    #settle: ReturnType<typeof setTimeout> | undefined;
    #interruptions = 0;
    #heal: ReturnType<typeof setTimeout> | undefined;
    #healed = 0;
    #patience: ReturnType<typeof setTimeout> | undefined;
    /** How rows stand that do not stand as most do, also of pages that are not kept any more. */
    readonly #shapes = new Map<number, Shape>();

    constructor(readonly path: Path, private readonly read: GetRows = readRange) {}

    get title(): string {
        const title = this.roles.value.title;
        return typeof title === "string" ? title : "";
    }

    row(index: number): Row | undefined {
        return this.#pages.get(Math.floor(index / pageSize))?.rows[index % pageSize];
    }

    get shapes(): ReadonlyMap<number, Shape> {
        return this.#shapes;
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
        clearTimeout(this.#heal);
        clearTimeout(this.#patience);
        this.#patience = undefined;
        this.isSlow.value = false;
        this.#abandon();
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
        clearTimeout(this.#heal);
        ++this.#epoch;
        this.#isOld = true;
        this.isCancelled.value = false;
        this.#fetch();
    }

    /** Waits for no answer any more; what comes late is not taken. */
    cancel(): void {
        this.#abandon();
        this.#waitOn();
        this.isCancelled.value = true;
    }

    /** The service need not go on with what is not looked at any more. */
    #abandon(): void {
        this.#cancelled = this.#epoch++;
        this.#running.clear();
        this.#aborter.abort();
        this.#aborter = new AbortController();
    }

    /** After an error: forgets it and tries again. */
    retry(): void {
        this.error.value = null;
        this.#interruptions = 0;
        this.#healed = 0;
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
        if (this.isCancelled.peek())
            return;
        while (this.#running.size < maxRunning) {
            const page = this.#missing();
            if (page === undefined)
                return;
            this.#running.add(page);
            void this.#fetchPage(page, this.#epoch);
            this.#waitOn();
        }
    }

    /** While something is asked for that is in sight, patience is limited. */
    #waitOn(): void {
        const waits = this.#users > 0 && [...this.#running].some((page) => !this.#pages.has(page));
        if (!waits) {
            clearTimeout(this.#patience);
            this.#patience = undefined;
            this.isSlow.value = false;
        } else {
            this.#patience ??= setTimeout(() => (this.isSlow.value = true), patience);
        }
    }

    /** What went wrong may be over soon; what cannot work is not tried again. */
    #healLater(error: RpcError): void {
        const isFinal = error.code === RpcError.noNode || error.code === RpcError.notOffered;
        if (this.#users === 0 || isFinal || this.#interruptions >= maxInterruptions)
            return;
        const wait = healTimes[Math.min(this.#healed++, healTimes.length - 1)]!;
        clearTimeout(this.#heal);
        this.#heal = setTimeout(() => this.reload(), wait);
    }

    async #fetchPage(page: number, epoch: number): Promise<void> {
        const first = page * pageSize;
        let failed = false;
        try {
            const isOld = this.#isOld;
            this.#isOld = false;
            const answer = await this.read(this.path, first, first + pageSize - 1, isOld, this.#aborter.signal);
            if (this.#isWanted(page, epoch))
                this.#take(page, epoch, answer);
        } catch (error) {
            failed = true;
            if (!this.#isWanted(page, epoch))
                return;
            if (error instanceof RpcError && error.name === RpcError.interrupted)
                ++this.#interruptions;
            // A lost connection says so itself, and all is read again when it is back.
            if (!(error instanceof RpcError))
                throw error;
            if (error.code !== RpcError.lost) {
                this.error.value = error;
                this.#healLater(error);
            }
        } finally {
            if (this.#isWanted(page, epoch))
                this.#running.delete(page);
            this.#waitOn();
        }
        if (!failed || epoch !== this.#epoch)
            this.#fetch();
    }

    /** An answer from before cancel() is for nobody. */
    #isWanted(page: number, epoch: number): boolean {
        return epoch > this.#cancelled && this.#running.has(page);
    }

    #take(page: number, epoch: number, answer: RowsAnswer): void {
        batch(() => {
            this.#pages.set(page, { rows: answer.rows, epoch });
            this.#shape(page, answer.rows);
            if (epoch === this.#epoch) {
                this.#healed = 0;
                this.count.value = answer.count;
                this.roles.value = answer.roles;
                this.error.value = null;
                this.#interruptions = 0;
            }
            this.#forget();
            ++this.version.value;
        });
    }

    #shape(page: number, rows: readonly Row[]): void {
        for (let i = 0; i < pageSize; ++i) {
            const row = rows[i];
            const shape = row ? shapeOf(row) : "cell";
            if (shape === "cell")
                this.#shapes.delete(page * pageSize + i);
            else
                this.#shapes.set(page * pageSize + i, shape);
        }
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

/** Folders, stations and what can be run stand beside each other; a row without any role is none. */
function shapeOf(row: Row): Shape {
    if (row.isEmpty)
        return "none";
    const isCell = row.type === RowType.container || row.type === RowType.audio || row.type === RowType.activate;
    return isCell ? "cell" : "line";
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
