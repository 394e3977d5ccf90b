// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { batch, signal } from "@preact/signals";

import { RpcError } from "../rpc/Connection";
import { getRows, host, watch } from "./host";
import type { Shape } from "./layout";
import type { Path } from "./path";
import { rowRoles, RowType, type Roles, type Row, type RowsAnswer } from "./rows";

/** Rows requested at a time. */
export const pageSize = 100;
/** Pages kept per screen: those nearest to the visible rows. */
export const maxPages = 20;
const maxRunning = 2;
/** Milliseconds to wait for further changes before a reload. */
const settleTime = 40;
/** Milliseconds within which a view is drawn. */
export const drawTime = 200;
/** After so many interruptions of the service in a row, a screen is no longer reloaded automatically. */
export const maxInterruptions = 3;

/** Milliseconds after which a pending response is shown as slow. */
export const patience = 3000;
/** Milliseconds until a visible screen with an error is reloaded; the last one repeats. */
export const healTimes = [5000, 10_000, 20_000, 30_000];

/** Reads the rows \a first to \a last, inclusive. With \a anew the host must not use its snapshot of the list. */
export type GetRows = (
    path: Path, first: number, last: number, anew: boolean, signal: AbortSignal,
) => Promise<RowsAnswer>;

const readRange: GetRows = (path, first, last, anew, signal) => getRows(path, first, last, rowRoles, anew, signal);

/**
 * One screen: its own roles, its length, and the rows read so far. Rows are read in pages, visible
 * ones first. After a change at the path the visible rows are read again; the old ones are shown
 * until the response is there.
 *
 * Each reload begins a new epoch. Pages of an older epoch are shown, and read again when they
 * become visible.
 */
export class Screen {
    readonly roles = signal<Roles>({});
    /** Number of rows; null until the first response. */
    readonly count = signal<number | null>(null);
    readonly error = signal<RpcError | null>(null);
    /** A visible page without rows has been pending for longer than `patience`. */
    readonly isSlow = signal(false);
    /** The reader cancelled the request; nothing is read until the next reload. */
    readonly isCancelled = signal(false);
    /** Incremented by each response. Components that show rows read it to be drawn again. */
    readonly version = signal(0);

    readonly #pages = new Map<number, { rows: readonly Row[]; epoch: number }>();
    readonly #running = new Set<number>();
    #epoch = 0;
    /** Responses of this epoch and earlier ones are dropped. */
    #cancelled = -1;
    /** The next page is read from the service; the host serves the others from the same snapshot. */
    #isOld = true;
    /** Cancels the pending requests. */
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
    /** Shapes of the rows that are not cells, including those of dropped pages. */
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

    /** Enters ahead of the view that is about to be drawn, and leaves it to that. */
    expect(): void {
        this.enter();
        setTimeout(() => this.leave(), drawTime);
    }

    /** Subscribes to changes and reloads. Paired with leave(); calls nest. */
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

    /** Reloads after a change; changes within `settleTime` are merged into one reload. */
    changed(): void {
        clearTimeout(this.#settle);
        // This request may be what crashes the service, which other screens need as well.
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

    /** Cancels the pending requests on behalf of the reader. */
    cancel(): void {
        this.#abandon();
        this.#waitOn();
        this.isCancelled.value = true;
    }

    /** Cancels the pending requests, at the service too, and drops their responses. */
    #abandon(): void {
        this.#cancelled = this.#epoch++;
        this.#running.clear();
        this.#aborter.abort();
        this.#aborter = new AbortController();
    }

    /** Clears the error and reloads. */
    retry(): void {
        this.error.value = null;
        this.#interruptions = 0;
        this.#healed = 0;
        this.reload();
    }

    /** Sets the range of visible rows and reads what is missing of it. */
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

    /** Starts the timer for isSlow while a page without rows is pending, and stops it otherwise. */
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

    /** Schedules a reload, unless the error is permanent. */
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
            // A lost connection has a notice of its own, and all screens are reloaded when it is back.
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

    /** False for a response to a request made before the last #abandon(). */
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

/** Folders, stations and actions are cells; a row without any known role is not shown. */
function shapeOf(row: Row): Shape {
    if (row.isEmpty)
        return "none";
    const isCell = row.type === RowType.container || row.type === RowType.audio || row.type === RowType.activate;
    return isCell ? "cell" : "line";
}

/** Recently shown screens, kept so that going back needs no request. */
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

/** Screens that are mounted. */
export const shown = new Set<Screen>();

export function reloadShown(): void {
    for (const screen of shown)
        screen.retry();
}

host.isOpen.subscribe((isOpen) => {
    if (isOpen)
        reloadShown();
});
