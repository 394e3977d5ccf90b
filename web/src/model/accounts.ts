// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { signal } from "@preact/signals";

import { isRecord, RpcError } from "../rpc/Connection";
import { claimLife, keepClaim, keptClaim, lookDelay, type Claim } from "./claim";
import { getData, setData } from "./host";
import type { Path } from "./path";
import { text } from "./rows";
import type { AccountRole } from "./services";

/** The SDK's codes of what is done to an account. */
const Operation = { join: 3, drop: 4, claim: 8 } as const;
/** Suffix of an error's name that means "not linked to an account". */
const notLinked = ":7";

export type Link =
    | { is: "unknown" }
    | { is: "none" } ///< the service has no accounts
    | { is: "failed"; error: RpcError }
    | { is: "unlinked" }
    | { is: "claiming"; code: string; message: string }
    | { is: "linked"; user: string };

/** The link between this device and an account of one service. */
export class Account {
    readonly link = signal<Link>({ is: "unknown" });
    /** Error of the last operation; null after success. */
    readonly error = signal<RpcError | null>(null);
    readonly isBusy = signal(false);

    #poll: ReturnType<typeof setTimeout> | undefined;
    #looks = 0;

    /** \a service is its root, \a role where its account is. */
    constructor(private readonly service: Path, private readonly role: AccountRole) {}

    #accountIn(value: unknown): Record<string, unknown> | null {
        const account = isRecord(value) && value.type === this.role.type ? value[this.role.key] : null;
        return isRecord(account) ? account : null;
    }

    /** Restores a claim that this tab was waiting for before a reload. */
    resume(): void {
        const claim = keptClaim(this.service);
        if (claim)
            this.#wait(claim);
    }

    async read(): Promise<void> {
        const link = await this.#query();
        if (link && this.link.value.is !== "claiming")
            this.link.value = link;
    }

    /** Requests a claim code and polls until it has been entered. */
    async claim(): Promise<void> {
        await this.#run({ operation: Operation.claim }, (account) => {
            this.#looks = 0;
            this.#wait({
                code: text(account.claimKey),
                message: text(account.claimMessage),
                since: Date.now(),
            });
        });
    }

    #wait(claim: Claim): void {
        keepClaim(this.service, claim);
        this.link.value = { is: "claiming", code: claim.code, message: claim.message };
        this.close();
        document.addEventListener("visibilitychange", this.#lookNow);
        window.addEventListener("focus", this.#lookNow);
        this.#poll = setTimeout(() => void this.look(), lookDelay(this.#looks));
    }

    /** Polls at once when the reader returns to the page: the code may have been entered meanwhile. */
    readonly #lookNow = () => {
        if (document.visibilityState === "visible")
            void this.look();
    };

    async cancel(): Promise<void> {
        this.#forget();
        this.link.value = { is: "unlinked" };
        await this.read();
    }

    join(userName: string, password: string): Promise<void> {
        return this.#change({ operation: Operation.join, userName, password });
    }

    drop(userName: string, password: string): Promise<void> {
        return this.#change({ operation: Operation.drop, userName, password });
    }

    /** Stops polling. */
    close(): void {
        clearTimeout(this.#poll);
        document.removeEventListener("visibilitychange", this.#lookNow);
        window.removeEventListener("focus", this.#lookNow);
    }

    #forget(): void {
        this.close();
        keepClaim(this.service, null);
    }

    /** Polls for the code once, and schedules the next poll while the claim is alive. */
    async look(): Promise<void> {
        clearTimeout(this.#poll);
        const link = document.visibilityState === "visible" ? await this.#query(true) : null;
        if (this.link.value.is !== "claiming")
            return;
        if (link?.is === "linked") {
            this.#forget();
            this.link.value = link;
            return;
        }
        const claim = keptClaim(this.service);
        clearTimeout(this.#poll);
        if (claim && Date.now() - claim.since < claimLife)
            this.#poll = setTimeout(() => void this.look(), lookDelay(++this.#looks));
    }

    async #query(poll = false): Promise<Link | null> {
        try {
            const [, value] = await getData(this.role.path, ["type", "value"], poll);
            const account = this.#accountIn(value);
            if (!account)
                return { is: "none" };
            const user = text(account.userName);
            return user === "" ? { is: "unlinked" } : { is: "linked", user };
        } catch (error) {
            if (!(error instanceof RpcError) || error.code === RpcError.lost)
                return null;
            if (error.name.endsWith(notLinked))
                return { is: "unlinked" };
            return error.code === RpcError.noNode ? { is: "none" } : { is: "failed", error };
        }
    }

    #change(account: Record<string, unknown>): Promise<void> {
        return this.#run(account, () => {
            this.#forget();
            this.link.value = { is: "unknown" };
            void this.read();
        });
    }

    async #run(
        account: Record<string, unknown>, done: (result: Record<string, unknown>) => void,
    ): Promise<void> {
        this.isBusy.value = true;
        this.error.value = null;
        try {
            const value = { type: this.role.type, [this.role.key]: account };
            done(this.#accountIn(await setData(this.role.path, "value", value)) ?? {});
        } catch (error) {
            if (!(error instanceof RpcError))
                throw error;
            this.error.value = error;
        } finally {
            this.isBusy.value = false;
        }
    }
}
