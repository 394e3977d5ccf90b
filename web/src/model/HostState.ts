// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { signal } from "@preact/signals";

import { RpcError } from "../rpc/Connection";
import { host } from "./host";

/**
 * Something that the host tells when it is asked with a method, and that is read again when a notification says that it has
 * changed. Null until it is read, and with a host that has no such method.
 */
export class HostState<T> {
    readonly value = signal<T | null>(null);
    #run = 0;

    constructor(private readonly method: string, notification: string, private readonly read: (told: unknown) => T) {
        host.on(notification, () => void this.refresh());
        host.isOpen.subscribe((isOpen) => {
            if (isOpen)
                void this.refresh();
        });
    }

    async refresh(): Promise<void> {
        const run = ++this.#run;
        try {
            const told = await host.call(this.method);
            if (run === this.#run)
                this.value.value = this.read(told);
        } catch (error) {
            if (run === this.#run && error instanceof RpcError && error.code === RpcError.noMethod)
                this.value.value = null;
            // After any other error what was known stays, until it is read again.
        }
    }
}
