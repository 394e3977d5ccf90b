// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { signal } from "@preact/signals";

import { isRecord, RpcError, type Params } from "../rpc/Connection";
import { pageUrls } from "./access";
import { host } from "./host";
import { text } from "./rows";

export type Role = "listener" | "owner";

/** A paired device. Its name comes from outside. */
export interface Device {
    readonly id: string;
    readonly name: string;
    readonly role: Role;
    /** Milliseconds since the epoch; null if it was never seen. */
    readonly seen: number | null;
    /** The address that it came from last; empty if that is not known. */
    readonly address: string;
    readonly isConnected: boolean;
    /** It is the one that shows this page. */
    readonly isCurrent: boolean;
}

export function readDevices(told: unknown): Device[] {
    const all: unknown[] = isRecord(told) && Array.isArray(told.devices) ? told.devices : [];
    return all.filter(isRecord).filter((device) => text(device.id) !== "").map((device) => {
        const seen = Date.parse(text(device.seen));
        return {
            id: text(device.id),
            name: text(device.name),
            role: device.role === "owner" ? "owner" : "listener",
            seen: Number.isNaN(seen) ? null : seen,
            address: text(device.address),
            isConnected: device.connected === true,
            isCurrent: device.current === true,
        };
    });
}

/** A pairing that lets a device in. */
export interface OpenPairing {
    readonly is: "open";
    /** Empty if it was started elsewhere: only who starts a pairing is told its code. */
    readonly code: string;
    readonly role: Role;
    /** When it ends, in milliseconds since the epoch. */
    readonly until: number;
    readonly urls: readonly string[];
    readonly fingerprint: string;
}

export type Pairing =
    | OpenPairing
    | { readonly is: "closed" | "failed" | "expired" }
    | { readonly is: "paired"; readonly name: string };

const closed: Pairing = { is: "closed" };
/** Milliseconds by which the ends of one and the same pairing may differ, as they are told. */
const tolerance = 2000;

function secondsIn(told: Params): number {
    return typeof told.seconds === "number" ? told.seconds : 0;
}

/** The pairing after the host told its state, which came after \a before. */
export function nextPairing(before: Pairing, told: Params, now: number): Pairing {
    switch (told.state) {
        case "open": {
            const until = now + secondsIn(told) * 1000;
            // One that ends later has another code.
            return before.is === "open" && Math.abs(until - before.until) < tolerance
                ? before
                : { is: "open", code: "", role: "listener", until, urls: [], fingerprint: "" };
        }
        case "paired":
            return { is: "paired", name: isRecord(told.device) ? text(told.device.name) : "" };
        case "failed":
        case "expired":
            return { is: told.state };
        default:
            return closed;
    }
}

/** The pairing of a response to pairing.start. */
export function startedPairing(told: unknown, now: number): Pairing {
    const answer = isRecord(told) ? told : {};
    return {
        is: "open",
        code: text(answer.code),
        role: answer.role === "owner" ? "owner" : "listener",
        until: now + secondsIn(answer) * 1000,
        urls: pageUrls(answer.urls),
        fingerprint: text(answer.fingerprint),
    };
}

/** Null until they are read. */
export const devices = signal<readonly Device[] | null>(null);
export const pairing = signal<Pairing>(closed);
/** Why the devices could not be read, or a pairing not be started; null otherwise. */
export const devicesError = signal<RpcError | null>(null);

async function attempt(run: () => Promise<void>): Promise<void> {
    try {
        await run();
        devicesError.value = null;
    } catch (error) {
        if (!(error instanceof RpcError))
            throw error;
        devicesError.value = error;
    }
}

export async function loadDevices(): Promise<void> {
    await attempt(async () => {
        devices.value = readDevices(await host.call("devices.list"));
        const told = await host.call("pairing.state");
        const next = nextPairing(pairing.peek(), isRecord(told) ? told : {}, Date.now());
        // What became of an earlier pairing is no news.
        pairing.value = next.is === "open" ? next : pairing.peek().is === "open" ? next : pairing.peek();
    });
}

export async function startPairing(role: Role): Promise<void> {
    await attempt(async () => {
        pairing.value = startedPairing(await host.call("pairing.start", { role }), Date.now());
    });
}

export async function stopPairing(): Promise<void> {
    await attempt(async () => {
        await host.call("pairing.stop");
        pairing.value = closed;
    });
}

/** Reject with an RpcError. The host is asked for the list again whenever something changed. */
export async function changeDevice(device: Device, name: string, role: Role): Promise<void> {
    const { id } = device;
    if (name !== device.name)
        await host.call("devices.rename", { id, name });
    if (role !== device.role)
        await host.call("devices.setRole", { id, role });
}

export async function revokeDevice({ id }: Device): Promise<void> {
    await host.call("devices.revoke", { id });
}

let watching = 0;

/** Reads the devices, and again when they change, until the returned function is called. */
export function watchDevices(): () => void {
    ++watching;
    const stop = host.isOpen.subscribe((isOpen) => {
        if (isOpen)
            void loadDevices();
    });
    return () => {
        --watching;
        stop();
    };
}

host.on("devices.changed", () => {
    if (watching > 0)
        void loadDevices();
});
host.on("pairing.changed", (told) => {
    if (watching > 0)
        pairing.value = nextPairing(pairing.peek(), told, Date.now());
});
