// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { signal } from "@preact/signals";

/** What the host answered in place of a result, or why there is no answer. */
export class RpcError extends Error {
    /** There was no answer: the connection went first. */
    static readonly lost = 1;
    /** The service answered with an error, or could not answer. */
    static readonly failed = -32000;
    static readonly noNode = -32001;
    /** The row that was to be played is not in the list any more. */
    static readonly notInList = -32004;
    /** The address changes something, and no list offered it. */
    static readonly notOffered = -32005;
    /** The caller took the request back. */
    static readonly cancelled = -32006;
    /** Name of the error that a service's end gives to what it owed. */
    static readonly interrupted = "host:interrupted";

    constructor(
        readonly code: number,
        message: string,
        override readonly name: string = "",
        readonly title: string = "",
    ) {
        super(message);
    }
}

export type Params = Record<string, unknown>;
type Heard = (params: Params) => void;

interface Waiting {
    resolve(result: unknown): void;
    reject(error: RpcError): void;
}

export function isRecord(value: unknown): value is Record<string, unknown> {
    return typeof value === "object" && value !== null && !Array.isArray(value);
}

function textOf(value: unknown): string {
    return typeof value === "string" ? value : "";
}

/** Milliseconds before the next attempt: soon at first, then every few seconds. */
export function reconnectDelay(attempt: number): number {
    return Math.min(5000, 250 * 2 ** Math.min(attempt, 10));
}

const silenceLimit = 70_000;

/** JSON-RPC over one WebSocket that comes back by itself. */
export class Connection {
    /** Whether calls get through; null until the first attempt has ended. */
    readonly isOpen = signal<boolean | null>(null);

    #socket: WebSocket | null = null;
    #attempt = 0;
    #retry: ReturnType<typeof setTimeout> | undefined;
    #id = 0;
    readonly #waiting = new Map<number, Waiting>();
    readonly #heard = new Map<string, Set<Heard>>();

    constructor(private readonly url: string) {}

    open(): void {
        clearTimeout(this.#retry);
        const socket = new WebSocket(this.url);
        this.#socket = socket;
        socket.onopen = () => {
            this.#attempt = 0;
            this.isOpen.value = true;
        };
        socket.onmessage = (event) => this.#receive(event.data);
        socket.onclose = () => this.#closed(socket);
    }

    /** Tries again at once, when it waits for its next attempt. */
    hurry(): void {
        if (this.#socket === null)
            this.open();
    }

    on(method: string, heard: Heard): void {
        const all = this.#heard.get(method) ?? new Set();
        this.#heard.set(method, all.add(heard));
    }

    /** With a signal that is aborted the request is taken back, so that the host ends what it does for it. */
    call(method: string, params: Params = {}, signal?: AbortSignal): Promise<unknown> {
        const socket = this.#socket;
        if (socket === null || socket.readyState !== WebSocket.OPEN)
            return Promise.reject(new RpcError(RpcError.lost, ""));
        const id = ++this.#id;
        return new Promise((resolve, reject) => {
            signal?.addEventListener("abort", () => this.#cancel(id), { once: true });
            const timer = setTimeout(() => {
                if (this.#waiting.delete(id))
                    reject(new RpcError(RpcError.lost, ""));
            }, silenceLimit);
            this.#waiting.set(id, {
                resolve: (result) => {
                    clearTimeout(timer);
                    resolve(result);
                },
                reject: (error) => {
                    clearTimeout(timer);
                    reject(error);
                },
            });
            socket.send(JSON.stringify({ jsonrpc: "2.0", id, method, params }));
        });
    }

    #cancel(id: number): void {
        const waiting = this.#waiting.get(id);
        if (!waiting)
            return;
        this.#waiting.delete(id);
        waiting.reject(new RpcError(RpcError.cancelled, ""));
        this.#socket?.send(JSON.stringify({ jsonrpc: "2.0", method: "cancel", params: { id } }));
    }

    #receive(data: unknown): void {
        const message: unknown = JSON.parse(String(data));
        if (!isRecord(message))
            return;
        if (typeof message.method === "string") {
            const params = isRecord(message.params) ? message.params : {};
            for (const heard of this.#heard.get(message.method) ?? [])
                heard(params);
            return;
        }
        const waiting = this.#waiting.get(Number(message.id));
        if (!waiting)
            return;
        this.#waiting.delete(Number(message.id));
        if (!isRecord(message.error))
            return waiting.resolve(message.result);
        const { code, message: text, data: details } = message.error;
        const { name, title, problem } = isRecord(details) ? details : { name: "", title: "", problem: "" };
        // What the host knows of the service says more than what the service's plug-in made of it.
        waiting.reject(new RpcError(Number(code), textOf(problem) || textOf(text), textOf(name), textOf(title)));
    }

    #closed(socket: WebSocket): void {
        if (socket !== this.#socket)
            return;
        this.#socket = null;
        this.isOpen.value = false;
        const waiting = [...this.#waiting.values()];
        this.#waiting.clear();
        for (const { reject } of waiting)
            reject(new RpcError(RpcError.lost, ""));
        this.#retry = setTimeout(() => this.open(), reconnectDelay(this.#attempt++));
    }
}
