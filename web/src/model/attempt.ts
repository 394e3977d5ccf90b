// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { t } from "../i18n/i18n";
import { RpcError } from "../rpc/Connection";
import { announce } from "./notices";

/** Runs a request of the reader's. If it fails, that is announced, and the result is false. */
export async function attempt(run: () => Promise<unknown>): Promise<boolean> {
    try {
        await run();
        return true;
    } catch (error) {
        if (!(error instanceof RpcError))
            throw error;
        if (error.code === RpcError.lost)
            announce({ kind: "lost", text: "" });
        else if (error.code === RpcError.notAllowed)
            announce({ kind: "failed", text: t("Only an owner of this host may do that.") });
        else
            announce({ kind: "failed", text: error.message });
        return false;
    }
}
