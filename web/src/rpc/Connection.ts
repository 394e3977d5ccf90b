// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { signal } from "@preact/signals";

/** An error response of the host, or the reason why there is no response. */
export class RpcError extends Error {
    /** The connection was lost before the response. Not a code of the host's. */
    static readonly lost = 1;
    static readonly noMethod = -32601;
    /** The service failed, or responded with an error. */
    static readonly failed = -32000;
    static readonly noNode = -32001;
    /** The row to be played is no longer in the list. */
    static readonly notInList = -32004;
    /** Opening the path would change something, and no list offered it to this connection. */
    static readonly notOffered = -32005;
    /** The caller cancelled the request. */
    static readonly cancelled = -32006;
    /** Only an owner of the host may do that. */
    static readonly notAllowed = -32007;
    /** `name` of the error that ends pending requests when a plug-in process ends. */
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

/** Milliseconds before the next attempt: exponential backoff, up to five seconds. */
export function reconnectDelay(attempt: number): number {
    return Math.min(5000, 250 * 2 ** Math.min(attempt, 10));
}

/** Milliseconds after which a request counts as lost; the host ends its requests sooner, after a minute. */
const silenceLimit = 70_000;

/** JSON-RPC 2.0 over one WebSocket, which reconnects by itself. See docs/rpc.md. */
export class Connection {
    /** Whether the connection is open; null until the first attempt has ended. */
    readonly isOpen = signal<boolean | null>(null);
    /** Attempts that failed, and connections that were lost, since the last one was opened. */
    readonly failures = signal(0);

    #socket: WebSocket | null = null;
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
            this.isOpen.value = true;
            this.failures.value = 0;
        };
        socket.onmessage = (event) => this.#receive(event.data);
        socket.onclose = () => this.#closed(socket);
    }

    /** Skips the wait before the next attempt. */
    hurry(): void {
        if (this.#socket === null)
            this.open();
    }

    on(method: string, heard: Heard): void {
        const all = this.#heard.get(method) ?? new Set();
        this.#heard.set(method, all.add(heard));
    }

    /** Rejects with an RpcError. Aborting \a signal cancels the request, at the host too. */
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
        // The host's own explanation of a failed service is better than the plug-in's message.
        waiting.reject(new RpcError(Number(code), textOf(problem) || textOf(text), textOf(name), textOf(title)));
    }

    #closed(socket: WebSocket): void {
        // open() may have replaced this socket already.
        if (socket !== this.#socket)
            return;
        this.#socket = null;
        this.isOpen.value = false;
        const waiting = [...this.#waiting.values()];
        this.#waiting.clear();
        for (const { reject } of waiting)
            reject(new RpcError(RpcError.lost, ""));
        this.#retry = setTimeout(() => this.open(), reconnectDelay(this.failures.value++));
    }
}
