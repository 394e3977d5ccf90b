// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import "./browser";

// @ts-expect-error: a script that the page's tests use as well, without types
import { Radio as Untyped } from "../radio.mjs";

type Told = Record<string, unknown>;
export interface Call {
    readonly method: string;
    readonly params: Told;
}

/** The radio of radio.mjs. */
export interface Radio {
    state: Told;
    outputs: unknown[];
    stars: Set<string>;
    presets: Map<number, Told>;
    ends: number | null;
    alarms: Told[];
    missed: unknown[];
    ringing: string | null;
    calls: Call[];
    playing: Told;
    readonly now: Told;
    tell(message: Told): void;
    change(members: Told): void;
    changed(what: string, params?: Told): void;
    answer(call: Call): Told | null;
    called(method: string): Told[];
}

/** A socket whose other end is a radio, or with null a host that knows none of its methods. */
class Socket {
    static readonly OPEN = 1;
    static radio: Radio | null = null;
    /** Keeps answers back until release(). */
    static held: (() => void)[] | null = null;
    readyState = 1;
    onopen = () => {};
    onclose = () => {};
    onmessage = (_event: { data: string }) => {};

    constructor() {
        queueMicrotask(() => this.onopen());
        if (Socket.radio)
            Socket.radio.tell = (message) => this.#receive(message);
    }

    #receive(message: Told): void {
        this.onmessage({ data: JSON.stringify({ jsonrpc: "2.0", ...message }) });
    }

    send(text: string): void {
        const call = JSON.parse(text) as Call & { id: number };
        const answer = Socket.radio?.answer(call) ?? { error: { code: -32601, message: "no such method" } };
        const deliver = () => this.#receive({ id: call.id, ...answer });
        if (Socket.held)
            Socket.held.push(deliver);
        else
            queueMicrotask(deliver);
    }
}

export const turn = () => new Promise((later) => setImmediate(later));

/** Connects the models to a new radio, or to a host without its methods. */
export async function connect(radio: Radio | null = new Untyped() as Radio): Promise<Radio> {
    const { host } = await import("../../src/model/host");
    // Other tests have sockets of their own.
    Object.assign(globalThis, { WebSocket: Socket });
    Socket.radio = radio;
    host.isOpen.value = false;
    host.open();
    await turn();
    if (radio)
        radio.calls = [];
    return radio ?? (new Untyped() as Radio);
}

/** Keeps the radio's answers back until the returned function is called. */
export function hold(): () => void {
    const held: (() => void)[] = [];
    Socket.held = held;
    return () => {
        Socket.held = null;
        for (const deliver of held)
            deliver();
    };
}
